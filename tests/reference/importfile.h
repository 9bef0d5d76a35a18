// A whole import, the plain way.
#pragma once

#include <QString>
#include <QVector>

#include "tests/reference/lap.h"

namespace reference {

/// What the host is told while a file is imported, as it reaches the host.
struct Message {
    QString text;
    int level; ///< 0: progress, -2: error
};

/// Laps and messages of one import. After an error there are no laps.
struct Import {
    QVector<Message> messages;
    QVector<Lap> laps; ///< as the reader closed them; copies share channels
};

/// Imports \a fileName, which is read as a whole.
Import importFile(const QString &fileName, const QString &format);

} // namespace reference
