#pragma once

#include "analysis/lapbydistance.h"

#include <vector>

/// Two laps of one track side by side, place by place.
///
/// The difference is the time of the second lap minus that of the first: positive where the second
/// lap is slower so far.
struct LapComparison {
    /// Both laps at one distance from the line.
    struct Point {
        double distance; ///< m
        double times[2]; ///< s since the line
        double speeds[2]; ///< m/s

        double difference() const { return times[1] - times[0]; }
    };

    /// A part of the lap on which one lap gains on the other all the way. Losses of less than half
    /// a hundredth of a second do not count. It ends where the other lap begins to gain, or at the
    /// next corner if that comes first: where the first lap was fastest before it slows down by at
    /// least 3 m/s.
    struct Stretch {
        double begin; ///< m
        double end; ///< m
        double seconds; ///< what the second lap lost; negative if it gained
        double speeds[2]; ///< means over the stretch, m/s
    };

    /// Compares \a first with \a second every \a step metres (more than 0), from line to line.
    LapComparison(const LapByDistance &first, const LapByDistance &second, double step);

    std::vector<Point> points; ///< from the line to the line, at least two
    std::vector<Stretch> stretches; ///< the greatest loss or gain first
};
