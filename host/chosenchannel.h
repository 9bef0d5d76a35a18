#pragma once

#include "model/lap.h"

#include <QSharedPointer>
#include <QString>

/// A channel to show. Laps have recorded and calculated ones, and one of each may share a name.
struct ChosenChannel {
    QString name;
    bool isCalculated = false;

    /// The channel in \a lap, or null: a lap need not have every channel of its file.
    QSharedPointer<ZEP::Channel> in(const ZEP::Lap &lap) const;
};
