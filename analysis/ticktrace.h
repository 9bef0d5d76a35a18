#pragma once

#include "model/lap.h"

#include <QString>
#include <QVector>

#include <optional>

/// The place and the time of a lap at each of its ticks. Laps are laid over each other by these.
///
/// A record whose latitude and longitude are both exactly zero was written while the car was put
/// somewhere: it has no position, and a distance of zero is none either. Such a record divides the
/// lap, and only the longest part of it counts: distances elsewhere are unknown.
struct TickTrace {
    /// Metres from the line, one for each tick; below 0 if a race starts before the line, NaN where
    /// unknown. Empty if the lap has no channel for it.
    QVector<double> distance;
    /// Seconds since the line, one for each tick, or since the first tick if the lap starts
    /// elsewhere; NaN where unknown. Empty if the lap has no channel for it.
    QVector<double> time;
    /// Degrees, one for each tick; NaN where unknown. Empty if the lap lacks one of the channels.
    QVector<double> latitude;
    QVector<double> longitude; ///< the same
    /// True if the lap starts at the line, or before it in a race. Then its times can be compared
    /// with those of other laps.
    bool isFromLine = false;
    /// Names the channels that are in a unit that is not known here, as in "lapdist is in fathoms";
    /// they count as missing. Empty if there is none.
    QString unknownUnits;
};

/// The length of the track of \a lap in metres: the distance divided by the fraction of the lap, at
/// the tick where that is most exact. If they were not recorded, the length that the source names;
/// 0 if it is unknown.
double trackLength(const ZEP::Lap &lap);

/// \a trackLength is the length of the lap's track in metres, 0 if it is unknown.
TickTrace tickTrace(const ZEP::Lap &lap, double trackLength);

/// The part of the way from line to line that a lap has ticks of, in metres from the line.
struct LapPart {
    double begin; ///< below 0 if a race starts before the line
    double end;
    double length; ///< of the track
    bool isWhole; ///< nothing is missing, except less than a tick or a hundredth at each end
};

/// None if no distance was recorded, or if the length of the track is unknown.
std::optional<LapPart> recordedPart(const ZEP::Lap &lap);

/// True if a lap of \a length metres that has its last two ticks at these distances goes on to the
/// line: what is left is less than a tick, or than two hundredths of the lap.
bool endsAtLine(double lastButOne, double last, double length);
