#pragma once

#include "model/lap.h"

#include <QVector>

/// The place and the time of a lap at each of its ticks. Laps are laid over each other by these.
struct TickTrace {
    /// Metres from the line, one for each tick; below 0 if a race starts before the line, NaN where
    /// unknown. Empty if the lap has no channel for it.
    QVector<double> distance;
    /// Seconds since the line, one for each tick, or since the first tick if the lap starts
    /// elsewhere; NaN where unknown. Empty if the lap has no channel for it.
    QVector<double> time;
    /// True if the lap starts at the line, or before it in a race. Then its times can be compared
    /// with those of other laps.
    bool isFromLine = false;
};

/// The length of the track of \a lap in metres: the distance divided by the fraction of the lap, at
/// the tick where that is most exact. If they were not recorded, the length that the source names;
/// 0 if it is unknown.
double trackLength(const ZEP::Lap &lap);

/// \a trackLength is the length of the lap's track in metres, 0 if it is unknown.
TickTrace tickTrace(const ZEP::Lap &lap, double trackLength);
