#include "analysis/lapsummary.h"

#include "analysis/lapquantities.h"

#include <algorithm>
#include <cmath>

namespace {

std::optional<Quantity> topSpeed(const ZEP::Lap &lap)
{
    const auto channel = lap.channel(QStringLiteral("speed"));
    if (!channel)
        return std::nullopt;
    std::optional<Quantity> top;
    for (int i = 0; i < channel->data.size(); ++i) {
        const double speed = channel->sample(i);
        if (channel->isValid(i) && (!top || speed > top->value))
            top = Quantity{speed, channel->unit()};
    }
    return top;
}

/// What \a channel rises by in total. A rise of less than a fiftieth of a litre, in whatever unit,
/// is no refuelling but the noise of a sensor.
double totalRise(const ZEP::Channel &channel)
{
    constexpr double Flutter = 0.02;
    double total = 0;
    std::optional<double> low; // since the last rise
    double high = 0; // since the last low
    const auto end = [&](double level) {
        if (low && high - *low >= Flutter)
            total += high - *low;
        low = high = level;
    };
    for (int i = 0; i < channel.data.size(); ++i) {
        const double level = channel.sample(i);
        if (!channel.isValid(i) || !std::isfinite(level))
            continue;
        if (!low || level < *low || high - level >= Flutter)
            end(level);
        high = std::max(high, level);
    }
    end(0);
    return total;
}

void summarizeFuel(const ZEP::Lap &lap, LapSummary *summary)
{
    const QString level = QStringLiteral("fuellevel");
    const std::optional<Quantity> first = firstOf(lap, level);
    const std::optional<Quantity> last = lastOf(lap, level);
    if (!first || !last)
        return;
    const double added = totalRise(*lap.channel(level));
    if (added > 0)
        summary->fuelAdded = Quantity{added, first->unit};
    summary->fuelUsed = Quantity{first->value - last->value + added, first->unit};
}

/// What is recorded of \a lap, if that is only a part of what its time is for.
std::optional<LapPart> partialLap(const ZEP::Lap &lap)
{
    if (!lap.getCompleted() || !lapTime(lap))
        return std::nullopt;
    const std::optional<LapPart> part = recordedPart(lap);
    return part && !part->isWhole ? part : std::nullopt;
}

/// The kind of \a lap, of which only \a part may have been recorded.
LapKind kindOf(const ZEP::Lap &lap, const std::optional<LapPart> &part)
{
    if (lap.size() == 0)
        return LapKind::Empty;
    if (!lap.getCompleted())
        return LapKind::Unfinished;
    if (part)
        return LapKind::Partial;
    switch (lap.getLapType()) {
    case ZEP::LapTypeOutLap:
        return LapKind::OutLap;
    case ZEP::LapTypeTimed:
        return LapKind::Timed;
    case ZEP::LapTypeNotSet:
        break;
    }
    return LapKind::Other;
}

/// The number of \a lap by the counter of the recording, from the middle of the lap: at its ends
/// the counter may still say, or already, that it is another one.
std::optional<double> countedAs(const ZEP::Lap &lap)
{
    const auto counter = lap.channel(QStringLiteral("lap"));
    const int middle = lap.size() / 2;
    return counter && counter->isValid(middle) ? std::optional<double>(counter->sample(middle))
                                               : std::nullopt;
}

/// How many laps were driven between \a lap and \a next that are in neither.
int lapsBetween(const ZEP::Lap &lap, const ZEP::Lap &next)
{
    constexpr double Most = 100; // more means that it does not count laps
    const std::optional<double> first = countedAs(lap);
    const std::optional<double> second = countedAs(next);
    const double between = first && second ? *second - *first - 1 : 0;
    return between > 0 && between <= Most ? int(between) : 0;
}

} // namespace

QString lapKindName(LapKind kind)
{
    switch (kind) {
    case LapKind::Timed:
        return QStringLiteral("timed");
    case LapKind::OutLap:
        return QStringLiteral("out-lap");
    case LapKind::Partial:
        return QStringLiteral("partial");
    case LapKind::Unfinished:
        return QStringLiteral("unfinished");
    case LapKind::Empty:
        return QStringLiteral("empty");
    case LapKind::Other:
        break;
    }
    return QStringLiteral("other");
}

LapKind lapKind(const ZEP::Lap &lap)
{
    return kindOf(lap, partialLap(lap));
}

std::optional<int> bestLap(const Laps &laps)
{
    std::optional<int> best;
    std::optional<int> bestTime;
    for (int i = 0; i < int(laps.size()); ++i) {
        const ZEP::Lap &lap = *laps[std::size_t(i)];
        const std::optional<int> time = lapTime(lap);
        if (time && (!bestTime || *time < *bestTime) && lapKind(lap) == LapKind::Timed) {
            best = i;
            bestTime = time;
        }
    }
    return best;
}

QString missingTimeReason(const ZEP::Lap &lap)
{
    switch (lapKind(lap)) {
    case LapKind::OutLap:
        return QStringLiteral("out-laps are not timed");
    case LapKind::Unfinished:
        return QStringLiteral("still being driven when the recording ended");
    case LapKind::Empty:
        return QStringLiteral("nothing was recorded of it");
    case LapKind::Timed:
    case LapKind::Partial:
    case LapKind::Other:
        break;
    }
    return QStringLiteral("no valid time was recorded");
}

void compareTimes(const QVector<LapSummary *> &laps)
{
    int best = -1;
    for (int i = 0; i < laps.size(); ++i) {
        const LapSummary &lap = *laps.at(i);
        if (lap.isTimed() && (best < 0 || *lap.time < *laps.at(best)->time))
            best = i;
    }
    for (int i = 0; i < laps.size(); ++i) {
        LapSummary &lap = *laps.at(i);
        lap.isBest = i == best;
        lap.gap.reset();
        if (best >= 0 && lap.time && lap.kind != LapKind::Partial)
            lap.gap = *lap.time - *laps.at(best)->time;
    }
}

QVector<LapSummary> summarize(const Laps &laps)
{
    QVector<LapSummary> summaries(int(laps.size()));
    QVector<LapSummary *> all;
    for (int i = 0; i < summaries.size(); ++i) {
        const ZEP::Lap &lap = *laps[std::size_t(i)];
        LapSummary &summary = summaries[i];
        summary.part = partialLap(lap);
        summary.kind = kindOf(lap, summary.part);
        summary.time = lapTime(lap);
        summary.topSpeed = topSpeed(lap);
        summarizeFuel(lap, &summary);
        if (i > 0)
            summary.missingBefore = lapsBetween(*laps[std::size_t(i - 1)], lap);
        all.append(&summary);
    }
    compareTimes(all);
    return summaries;
}

int representativeLap(const Laps &laps)
{
    if (const std::optional<int> best = bestLap(laps))
        return *best;
    int longest = 0;
    for (int i = 1; i < int(laps.size()); ++i) {
        if (laps[std::size_t(i)]->size() > laps[std::size_t(longest)]->size())
            longest = i;
    }
    return longest;
}
