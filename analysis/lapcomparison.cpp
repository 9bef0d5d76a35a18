#include "analysis/lapcomparison.h"

#include <algorithm>
#include <cmath>

namespace {

using Point = LapComparison::Point;
using Stretch = LapComparison::Stretch;

/// Seconds by which the difference must turn before another stretch begins. Less than this would
/// be rounded to zero in a table of hundredths.
constexpr double DifferenceFlutter = 0.005;

/// Metres per second by which a car slows down for a corner; a bump or a gear change takes less.
constexpr double SpeedFlutter = 3;

struct Turn {
    std::size_t index;
    bool isHigh;
};

/// The indices at which \a value, a function of an index below \a count, turns by at least
/// \a flutter.
template <typename Function>
std::vector<Turn> turns(std::size_t count, Function value, double flutter)
{
    std::vector<Turn> result;
    std::size_t lowest = 0; // since the last high turn
    std::size_t highest = 0; // since the last low turn
    bool rises = false;
    bool falls = false; // both are false until the direction is known
    for (std::size_t i = 1; i < count; ++i) {
        if (value(i) < value(lowest))
            lowest = i;
        if (value(i) > value(highest))
            highest = i;
        if (!falls && value(highest) - value(i) >= flutter) {
            result.push_back({highest, true});
            lowest = i;
            falls = true;
            rises = false;
        } else if (!rises && value(i) - value(lowest) >= flutter) {
            result.push_back({lowest, false});
            highest = i;
            rises = true;
            falls = false;
        }
    }
    return result;
}

Stretch stretch(const Point &begin, const Point &end)
{
    const double length = end.distance - begin.distance;
    return {begin.distance,
            end.distance,
            end.difference() - begin.difference(),
            {length / (end.times[0] - begin.times[0]), length / (end.times[1] - begin.times[1])}};
}

/// Cuts the lap where the difference turns, and where the first lap brakes for a corner.
std::vector<Stretch> cut(const std::vector<Point> &points)
{
    std::vector<std::size_t> cuts{0, points.size() - 1};
    const auto difference = [&points](std::size_t i) { return points[i].difference(); };
    std::vector<Turn> lead = turns(points.size(), difference, DifferenceFlutter);
    // The change before the first turn may be less than the flutter.
    if (!lead.empty() && std::abs(difference(lead.front().index)) < DifferenceFlutter)
        lead.erase(lead.begin());
    for (const Turn &turn : lead)
        cuts.push_back(turn.index);
    const auto speed = [&points](std::size_t i) { return points[i].speeds[0]; };
    for (const Turn &turn : turns(points.size(), speed, SpeedFlutter)) {
        if (turn.isHigh)
            cuts.push_back(turn.index);
    }
    std::sort(cuts.begin(), cuts.end());
    cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());

    std::vector<Stretch> stretches;
    for (std::size_t i = 1; i < cuts.size(); ++i)
        stretches.push_back(stretch(points[cuts[i - 1]], points[cuts[i]]));
    return stretches;
}

} // namespace

LapComparison::LapComparison(const LapByDistance &first, const LapByDistance &second, double step)
{
    const double length = first.length();
    const auto place = [&](double distance) {
        points.push_back({distance,
                          {first.time(distance), second.time(distance)},
                          {first.speed(distance), second.speed(distance)}});
    };
    // Multiplied instead of added up, so that a million steps of 0.1 m end where they should.
    const auto steps = static_cast<qint64>(std::ceil(length / step));
    for (qint64 i = 0; i < steps; ++i)
        place(double(i) * step);
    place(length);

    stretches = cut(points);
    std::stable_sort(stretches.begin(), stretches.end(), [](const Stretch &a, const Stretch &b) {
        return std::abs(a.seconds) > std::abs(b.seconds);
    });
}
