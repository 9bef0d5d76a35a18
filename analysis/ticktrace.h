#pragma once

#include "model/lap.h"

#include <QVector>

/// Where a lap was at each of its ticks, and for how long it had been driven: what laps are laid
/// over each other by.
struct TickTrace {
    /// Metres from the line, one for each tick, below 0 where a race starts before it; NaN where it
    /// is not known. Empty if the lap has no channel that tells.
    QVector<double> distance;
    /// Seconds since the line, one for each tick, or since the first tick of a lap that starts
    /// elsewhere; NaN where it is not known. Empty if the lap has no channel that tells.
    QVector<double> time;
    /// The lap starts at the line, or in a race before it, so its times compare with those of other
    /// laps.
    bool isFromLine = false;
};

/// The length of the track of \a lap in metres: the distance by the fraction of the lap at the tick
/// that knows it best, else as the source names it; 0 if it is not known.
double trackLength(const ZEP::Lap &lap);

/// \a trackLength is that of the lap's track in metres, 0 if it is not known.
TickTrace tickTrace(const ZEP::Lap &lap, double trackLength);
