#include "host/lapcurve.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

/// How much of a lap may be missing at either end.
constexpr double MissingPart = 0.02;

/// On which side of the line the car is, by the fraction of the lap that is behind it.
constexpr double MiddleOfLap = 0.5;

/// The channels that make a curve.
struct Channels {
    QSharedPointer<ZEP::Channel> distance;
    QSharedPointer<ZEP::Channel> fraction;
    QSharedPointer<ZEP::Channel> clock;
    QSharedPointer<ZEP::Channel> speed;

    bool areValid(int tick) const
    {
        return distance->isValid(tick) && fraction->isValid(tick) && clock->isValid(tick)
            && speed->isValid(tick);
    }
};

std::optional<Channels> channels(const ZEP::Lap &lap, QString *problem)
{
    problem->clear();
    const auto named = [&lap, problem](const QString &name) {
        const auto channel = lap.channel(name);
        if (!channel && problem->isEmpty())
            *problem = QStringLiteral("has no channel '%1'").arg(name);
        return channel;
    };
    const Channels found{named(QStringLiteral("lapdist")), named(QStringLiteral("lapdistpct")),
                         named(QStringLiteral("sessiontime")), named(QStringLiteral("speed"))};
    if (!found.distance || !found.fraction || !found.clock || !found.speed)
        return std::nullopt;
    return found;
}

} // namespace

std::optional<LapCurve> LapCurve::of(const ZEP::Lap &lap, QString *problem)
{
    const std::optional<Channels> ticks = channels(lap, problem);
    if (!ticks)
        return std::nullopt;

    LapCurve curve;
    double lastFraction = 0;
    for (int i = 0; i < ticks->clock->data.size(); ++i) {
        if (!ticks->areValid(i))
            continue;
        const double distance = ticks->distance->sample(i);
        const double time = ticks->clock->sample(i);
        const double fraction = ticks->fraction->sample(i);
        if (curve.m_distances.empty()
                ? fraction > MiddleOfLap // not over the line yet
                : distance <= curve.m_distances.back() || time <= curve.m_times.back())
            continue;
        curve.m_distances.push_back(distance);
        curve.m_times.push_back(time);
        curve.m_speeds.push_back(ticks->speed->sample(i));
        lastFraction = fraction;
    }
    if (curve.m_distances.size() < 2) {
        *problem = QStringLiteral("has no distance");
        return std::nullopt;
    }

    const double begin = curve.m_distances.front();
    const double end = curve.m_distances.back();
    curve.m_length = end / lastFraction;
    const double missing = MissingPart * curve.m_length;
    if (!std::isfinite(curve.m_length) || begin > missing || curve.m_length - end > missing) {
        *problem = QStringLiteral("does not go from line to line, but from %1 m to %2 m")
                       .arg(begin, 0, 'f', 0)
                       .arg(end, 0, 'f', 0);
        return std::nullopt;
    }
    return curve;
}

double LapCurve::interpolated(const std::vector<double> &values, double distance) const
{
    // The first tick at or behind the distance; at the ends of the lap the outermost ones go on.
    const auto next = std::lower_bound(m_distances.begin() + 1, m_distances.end() - 1, distance);
    const auto i = std::size_t(std::distance(m_distances.begin(), next));
    const double part = (distance - m_distances[i - 1]) / (m_distances[i] - m_distances[i - 1]);
    return values[i - 1] + part * (values[i] - values[i - 1]);
}

double LapCurve::time(double distance) const
{
    return interpolated(m_times, distance) - interpolated(m_times, 0);
}

double LapCurve::speed(double distance) const
{
    return interpolated(m_speeds, distance);
}
