// A whole import, the plain way.
#pragma once

#include <QString>
#include <QVector>

#include "tests/reference/lap.h"

namespace reference {

/// A message to the host during an import, as it reaches the host.
struct Message {
    QString text;
    int level; ///< 0: progress, -2: error
};

/// The laps and messages of one import. After an error there are no laps.
struct Import {
    QVector<Message> messages;
    QVector<Lap> laps; ///< as the reader closed them; copies share channels
};

/// Imports \a fileName, which it reads as a whole.
Import importFile(const QString &fileName, const QString &format);

} // namespace reference
