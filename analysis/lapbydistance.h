#pragma once

#include "model/lap.h"

#include <QString>

#include <optional>
#include <vector>

/// A lap as a function of distance: when the car was where, and how fast it was there.
///
/// Ticks on which the car stood, rolled back or had no valid sample are passed over, so that there
/// is one time for each distance.
class LapByDistance
{
public:
    /// From the trace of \a lap, see tickTrace(), and its channel "speed" in m/s. Without a result
    /// \a problem says what the lap lacks: one of them, or a part of the way from line to line.
    static std::optional<LapByDistance> of(const ZEP::Lap &lap, QString *problem);

    /// Metres from line to line.
    double length() const { return m_length; }
    /// Seconds from the line to \a distance in metres. Between ticks, and from the last ones to the
    /// line, at an even speed.
    double time(double distance) const;
    /// Metres per second at \a distance in metres, as recorded.
    double speed(double distance) const;

private:
    /// \a values of the ticks as a straight line between the two ticks around \a distance.
    double interpolated(const std::vector<double> &values, double distance) const;

    std::vector<double> m_distances; ///< ascending, at least two
    std::vector<double> m_times; ///< since the line, ascending
    std::vector<double> m_speeds;
    double m_length = 0;
};
