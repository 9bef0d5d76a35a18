#include "analysis/lapbydistance.h"

#include "analysis/ticktrace.h"
#include "analysis/unitfactor.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

QString unknownUnitProblem(const QString &units)
{
    return QStringLiteral("cannot be compared: %1, which is not known here").arg(units);
}

} // namespace

std::optional<LapByDistance> LapByDistance::of(const ZEP::Lap &lap, QString *problem)
{
    const double length = trackLength(lap);
    const TickTrace trace = tickTrace(lap, length);
    const auto speed = lap.channel(QStringLiteral("speed"));
    const auto factor = unitFactor(speed ? speed->unit() : QString(), QStringLiteral("m/s"));
    if (!factor) {
        *problem = unknownUnitProblem(QStringLiteral("speed is in ") % speed->unit());
        return std::nullopt;
    }
    if (trace.distance.isEmpty() || trace.time.isEmpty() || !speed || !(length > 0)) {
        *problem = !trace.unknownUnits.isEmpty()
            ? unknownUnitProblem(trace.unknownUnits)
            : QStringLiteral("has no %1")
                  .arg(!speed                     ? "speed"
                           : trace.time.isEmpty() ? "time"
                                                  : "distance");
        return std::nullopt;
    }

    LapByDistance curve;
    curve.m_length = length;
    for (int i = 0; i < trace.time.size(); ++i) {
        const double distance = trace.distance.at(i);
        const double time = trace.time.at(i);
        const bool isFirst = curve.m_distances.empty();
        // Also false if one of them is unknown.
        const bool isProgress = isFirst
            ? distance >= 0 && std::isfinite(time)
            : distance > curve.m_distances.back() && time > curve.m_times.back();
        if (!isProgress || !speed->isValid(i) || !std::isfinite(speed->sample(i)))
            continue;
        curve.m_distances.push_back(distance);
        curve.m_times.push_back(time);
        curve.m_speeds.push_back(*factor * speed->sample(i));
    }
    const std::size_t count = curve.m_distances.size();
    if (count < 2) {
        *problem = QStringLiteral("has no distance");
        return std::nullopt;
    }
    const double last = curve.m_distances.back();
    if (!trace.isFromLine || !endsAtLine(curve.m_distances[count - 2], last, length)) {
        *problem = QStringLiteral("does not go from line to line, but from %1 m to %2 m of %3 m")
                       .arg(curve.m_distances.front(), 0, 'f', 0)
                       .arg(last, 0, 'f', 0)
                       .arg(length, 0, 'f', 0);
        return std::nullopt;
    }
    return curve;
}

double LapByDistance::interpolated(const std::vector<double> &values, double distance) const
{
    // The first tick at or after the distance. The outermost ticks serve the ends of the lap.
    const auto next = std::lower_bound(m_distances.begin() + 1, m_distances.end() - 1, distance);
    const auto i = std::size_t(std::distance(m_distances.begin(), next));
    const double part = (distance - m_distances[i - 1]) / (m_distances[i] - m_distances[i - 1]);
    return values[i - 1] + part * (values[i] - values[i - 1]);
}

double LapByDistance::time(double distance) const
{
    return interpolated(m_times, distance) - interpolated(m_times, 0); // 0 at the line
}

double LapByDistance::speed(double distance) const
{
    return interpolated(m_speeds, distance);
}
