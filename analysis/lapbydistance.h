#pragma once

#include "model/lap.h"

#include <QString>

#include <optional>
#include <vector>

/// A lap as a function of distance: when the car was where, and how fast it was there.
///
/// Ticks at which the car stood, rolled back or had no valid sample are skipped, so that each
/// distance has one time.
class LapByDistance
{
public:
    /// From the tickTrace() of \a lap and its channel "speed", in any unit that unitFactor() knows.
    /// If there is no result, \a problem says what the lap lacks: one of them, a unit that is
    /// known, or a part of the way from line to line.
    static std::optional<LapByDistance> of(const ZEP::Lap &lap, QString *problem);

    /// Metres from line to line.
    double length() const { return m_length; }
    /// Seconds from the line to \a distance in metres. Between ticks, and between the outermost
    /// ticks and the line, the speed is taken as constant.
    double time(double distance) const;
    /// Metres per second at \a distance in metres, as recorded.
    double speed(double distance) const;

private:
    /// \a values of the ticks, interpolated linearly between the two ticks around \a distance.
    double interpolated(const std::vector<double> &values, double distance) const;

    std::vector<double> m_distances; ///< ascending, at least two
    std::vector<double> m_times; ///< since the line, ascending
    std::vector<double> m_speeds;
    double m_length = 0;
};
