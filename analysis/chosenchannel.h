#pragma once

#include "model/lap.h"

#include <QSharedPointer>
#include <QString>
#include <QVector>

/// A channel to show. A recorded and a calculated channel of a lap may have the same name.
struct ChosenChannel {
    QString name;
    bool isCalculated = false;

    /// The channel in \a lap, or null: a lap may lack channels that other laps of its file have.
    QSharedPointer<ZEP::Channel> in(const ZEP::Lap &lap) const;
};

/// The channels that at least one of \a laps has: recorded, then calculated, each sorted by name.
QVector<ChosenChannel> allChannels(const QVector<const ZEP::Lap *> &laps);
