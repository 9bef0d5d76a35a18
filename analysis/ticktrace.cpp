#include "analysis/ticktrace.h"

#include "analysis/unitfactor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double NotKnown = std::numeric_limits<double>::quiet_NaN();

/// The channel called \a name, recorded or calculated; null if there is none.
QSharedPointer<ZEP::Channel> anyChannel(const ZEP::Lap &lap, const QString &name)
{
    const auto channel = lap.channel(name);
    return channel ? channel : lap.calculatedChannel(name);
}

/// The samples of the channel called \a name, converted to \a unit; NaN for missing ones. Empty if
/// there is no such channel, if none of its samples is valid, or if its own unit is not known; then
/// *unknownUnits names it.
QVector<double> samples(const ZEP::Lap &lap, const char *name, const char *unit,
                        QString *unknownUnits = nullptr)
{
    const auto channel = anyChannel(lap, QString::fromLatin1(name));
    if (!channel)
        return {};
    const std::optional<double> factor = unitFactor(channel->unit(), QLatin1String(unit));
    if (!factor) {
        if (unknownUnits)
            *unknownUnits += QStringLiteral("%1%2 is in %3")
                                 .arg(QLatin1String(unknownUnits->isEmpty() ? "" : ", "),
                                      QLatin1String(name), channel->unit());
        return {};
    }
    QVector<double> result(lap.size(), NotKnown);
    bool isEmpty = true;
    for (int i = 0; i < result.size(); ++i) {
        if (!channel->isValid(i) || !std::isfinite(channel->sample(i)))
            continue;
        result[i] = *factor * channel->sample(i);
        isEmpty = false;
    }
    return isEmpty ? QVector<double>() : result;
}

/// True if \a lap has no position at the tick \a i although it records positions.
bool isNowhere(const ZEP::Channel *latitude, const ZEP::Channel *longitude, int i)
{
    return latitude && longitude && latitude->sample(i) == 0 && longitude->sample(i) == 0;
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

/// Keeps of \a distance the longest stretch between two ticks at which the car \a isPut somewhere:
/// the lap was driven there. Before it the driver was not in the car, or after it no longer on the
/// track.
template <typename Function>
void keepDrivenStretch(QVector<double> &distance, Function isPut)
{
    int begin = 0;
    int drivenBegin = 0;
    int drivenEnd = 0;
    double driven = -1; // metres
    double least = 0;
    double greatest = 0;
    bool isKnown = false; // the two above, of the stretch from begin on
    for (int i = 0; i <= distance.size(); ++i) {
        if (i < distance.size() && !isPut(i)) {
            if (std::isnan(distance.at(i)))
                continue;
            least = isKnown ? std::min(least, distance.at(i)) : distance.at(i);
            greatest = isKnown ? std::max(greatest, distance.at(i)) : distance.at(i);
            isKnown = true;
            continue;
        }
        if (isKnown && greatest - least > driven) {
            driven = greatest - least;
            drivenBegin = begin;
            drivenEnd = i;
        }
        begin = i + 1;
        isKnown = false;
    }
    for (int i = 0; i < distance.size(); ++i) {
        if (i < drivenBegin || i >= drivenEnd)
            distance[i] = NotKnown;
    }
}

/// Metres from the line at each tick of \a lap; see TickTrace.
QVector<double> distances(const ZEP::Lap &lap, double trackLength, QString *unknownUnits)
{
    QVector<double> result = samples(lap, "lapdist", "m", unknownUnits);
    if (result.isEmpty() && trackLength > 0) {
        result = samples(lap, "lapdistpct", "pu", unknownUnits);
        for (double &distance : result)
            distance *= trackLength;
    }
    const auto latitude = anyChannel(lap, QStringLiteral("lat"));
    const auto longitude = anyChannel(lap, QStringLiteral("lon"));
    keepDrivenStretch(result, [&](int tick) {
        return result.at(tick) == 0 && isNowhere(latitude.data(), longitude.data(), tick);
    });
    if (trackLength > 0)
        unwrap(result, trackLength);
    return result;
}

/// The ticks without a position become NaN in both.
void clearNowhere(QVector<double> &latitude, QVector<double> &longitude)
{
    constexpr double Pole = 90;
    constexpr double DateLine = 180;
    if (latitude.isEmpty() || longitude.isEmpty()) {
        latitude.clear();
        longitude.clear();
    }
    for (int i = 0; i < latitude.size(); ++i) {
        const bool isPlace = std::abs(latitude.at(i)) <= Pole
            && std::abs(longitude.at(i)) <= DateLine
            && (latitude.at(i) != 0 || longitude.at(i) != 0);
        if (!isPlace)
            latitude[i] = longitude[i] = NotKnown;
    }
}

/// The first tick from \a first on at which both are known; the size of \a a if there is none.
int firstKnown(const QVector<double> &a, const QVector<double> &b, int first)
{
    while (first < a.size() && (std::isnan(a.at(first)) || std::isnan(b.at(first))))
        ++first;
    return first;
}

// What may be missing of a whole lap, as parts of its length. At few ticks a second it is up to a
// tick; a step of more than the last number is not the way of one tick.
constexpr double PartBeforeFirstTick = 0.01;
constexpr double PartAfterLastTick = 0.02;
constexpr double PartOfOneTick = 0.1;

/// True if a lap of \a length metres that has its first two ticks at these distances starts at the
/// line, or before it.
bool startsAtLine(double first, double second, double length)
{
    return first < PartBeforeFirstTick * length
        || first <= std::min(second - first, PartOfOneTick * length);
}

} // namespace

bool endsAtLine(double lastButOne, double last, double length)
{
    return last >= (1 - PartAfterLastTick) * length
        || length - last <= std::min(last - lastButOne, PartOfOneTick * length);
}

double trackLength(const ZEP::Lap &lap)
{
    const QVector<double> distance = samples(lap, "lapdist", "m");
    const QVector<double> fraction = samples(lap, "lapdistpct", "pu");
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
    trace.distance = distances(lap, trackLength, &trace.unknownUnits);
    trace.latitude = samples(lap, "lat", "deg", &trace.unknownUnits);
    trace.longitude = samples(lap, "lon", "deg", &trace.unknownUnits);
    clearNowhere(trace.latitude, trace.longitude);

    trace.time = samples(lap, "sessiontime", "s", &trace.unknownUnits);
    const bool isSessionTime = !trace.time.isEmpty();
    if (!isSessionTime)
        trace.time = samples(lap, "lapcurrentlaptime", "s", &trace.unknownUnits);
    if (trace.time.isEmpty())
        return trace;

    const int end = trace.distance.isEmpty() ? 0 : trace.time.size();
    const int first = end > 0 ? firstKnown(trace.distance, trace.time, 0) : 0;
    const int second = first < end ? firstKnown(trace.distance, trace.time, first + 1) : end;
    trace.isFromLine = first < end && trackLength > 0
        && startsAtLine(trace.distance.at(first), trace.distance.at(second < end ? second : first),
                        trackLength);
    if (!isSessionTime)
        return trace;

    double start = *std::find_if(trace.time.cbegin(), trace.time.cend(),
                                 [](double time) { return !std::isnan(time); });
    if (trace.isFromLine) {
        // The line was crossed shortly before or after the first tick. If a race starts further
        // before the line, the time counts from the first tick.
        if (second < end && trace.distance.at(second) > trace.distance.at(first)
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

std::optional<LapPart> recordedPart(const ZEP::Lap &lap)
{
    const double length = trackLength(lap);
    QVector<double> known = distances(lap, length, nullptr);
    known.erase(std::remove_if(known.begin(), known.end(), [](double d) { return std::isnan(d); }),
                known.end());
    if (known.isEmpty() || !(length > 0))
        return std::nullopt;
    const double second = known.at(known.size() > 1 ? 1 : 0);
    const double lastButOne = known.at(std::max(0, known.size() - 2));
    return LapPart{known.first(), known.last(), length,
                   startsAtLine(known.first(), second, length)
                       && endsAtLine(lastButOne, known.last(), length)};
}
