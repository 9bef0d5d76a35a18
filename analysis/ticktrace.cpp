#include "analysis/ticktrace.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double NotKnown = std::numeric_limits<double>::quiet_NaN();

/// The samples of the channel called \a name, recorded or calculated, times \a factor; NaN for
/// missing ones. Empty if there is no such channel, or if none of its samples is valid.
QVector<double> samples(const ZEP::Lap &lap, const char *name, double factor = 1)
{
    const QString key = QString::fromLatin1(name);
    auto channel = lap.channel(key);
    if (!channel)
        channel = lap.calculatedChannel(key);
    if (!channel)
        return {};
    QVector<double> result(lap.size(), NotKnown);
    bool isEmpty = true;
    for (int i = 0; i < result.size(); ++i) {
        if (!channel->isValid(i) || !std::isfinite(channel->sample(i)))
            continue;
        result[i] = factor * channel->sample(i);
        isEmpty = false;
    }
    return isEmpty ? QVector<double>() : result;
}

/// Makes the distance of ticks before the line negative. The last tick is taken to be on this lap.
void unwrap(QVector<double> &distance, double trackLength)
{
    double next = NotKnown;
    for (int i = distance.size() - 1; i >= 0; --i) {
        double &here = distance[i];
        if (std::isnan(here))
            continue;
        if (here - next > trackLength / 2)
            here -= trackLength;
        next = here;
    }
}

/// The first tick from \a first on at which both are known; the size of \a a if there is none.
int firstKnown(const QVector<double> &a, const QVector<double> &b, int first)
{
    while (first < a.size() && (std::isnan(a.at(first)) || std::isnan(b.at(first))))
        ++first;
    return first;
}

} // namespace

double trackLength(const ZEP::Lap &lap)
{
    const QVector<double> distance = samples(lap, "lapdist");
    const QVector<double> fraction = samples(lap, "lapdistpct");
    int best = -1;
    for (int i = 0; i < std::min(distance.size(), fraction.size()); ++i) {
        if (distance.at(i) > 0 && fraction.at(i) > (best < 0 ? 0.5 : fraction.at(best)))
            best = i;
    }
    if (best >= 0)
        return distance.at(best) / fraction.at(best);

    const ZEP::Value named = lap.value(QStringLiteral("Track length"));
    const double length = named.value.toDouble();
    if (!std::isfinite(length) || length <= 0)
        return 0;
    if (named.unit() == QLatin1String("km"))
        return length * 1000;
    return named.unit() == QLatin1String("m") ? length : 0;
}

TickTrace tickTrace(const ZEP::Lap &lap, double trackLength)
{
    TickTrace trace;
    trace.distance = samples(lap, "lapdist");
    if (trace.distance.isEmpty() && trackLength > 0)
        trace.distance = samples(lap, "lapdistpct", trackLength);
    if (trackLength > 0)
        unwrap(trace.distance, trackLength);

    trace.time = samples(lap, "sessiontime");
    const bool isSessionTime = !trace.time.isEmpty();
    if (!isSessionTime)
        trace.time = samples(lap, "lapcurrentlaptime");
    if (trace.time.isEmpty())
        return trace;

    const int first =
        trace.distance.isEmpty() ? trace.time.size() : firstKnown(trace.distance, trace.time, 0);
    constexpr double nearLine = 0.01; // of the lap
    trace.isFromLine = first < trace.time.size() && trackLength > 0
        && trace.distance.at(first) < nearLine * trackLength;
    if (!isSessionTime)
        return trace;

    double start = *std::find_if(trace.time.cbegin(), trace.time.cend(),
                                 [](double time) { return !std::isnan(time); });
    if (trace.isFromLine) {
        // The line was crossed shortly before or after the first tick. If a race starts further
        // before the line, the time counts from the first tick.
        const int second = firstKnown(trace.distance, trace.time, first + 1);
        if (second < trace.time.size() && trace.distance.at(second) > trace.distance.at(first)
            && trace.distance.at(second) > 0) {
            const double slowness = (trace.time.at(second) - trace.time.at(first))
                / (trace.distance.at(second) - trace.distance.at(first));
            start = trace.time.at(first) - trace.distance.at(first) * slowness;
        }
    }
    for (double &time : trace.time)
        time -= start;
    return trace;
}
