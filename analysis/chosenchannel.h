#pragma once

#include "model/lap.h"

#include <QSharedPointer>
#include <QString>
#include <QVector>

/// A channel to show. Laps have recorded and calculated ones, and one of each may share a name.
struct ChosenChannel {
    QString name;
    bool isCalculated = false;

    /// The channel in \a lap, or null: a lap need not have every channel of its file.
    QSharedPointer<ZEP::Channel> in(const ZEP::Lap &lap) const;
};

/// The channels that any of \a laps has: recorded, then calculated, each by name.
QVector<ChosenChannel> allChannels(const QVector<const ZEP::Lap *> &laps);
