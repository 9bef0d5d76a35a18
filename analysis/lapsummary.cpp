#include "analysis/lapsummary.h"

#include "analysis/lapquantities.h"

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

std::optional<Quantity> fuelUsed(const ZEP::Lap &lap)
{
    const QString level = QStringLiteral("fuellevel");
    const std::optional<Quantity> first = firstOf(lap, level);
    const std::optional<Quantity> last = lastOf(lap, level);
    if (!first || !last)
        return std::nullopt;
    return Quantity{first->value - last->value, first->unit};
}

} // namespace

QString lapKindName(LapKind kind)
{
    switch (kind) {
    case LapKind::Timed:
        return QStringLiteral("timed");
    case LapKind::OutLap:
        return QStringLiteral("out-lap");
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
    if (lap.size() == 0)
        return LapKind::Empty;
    if (!lap.getCompleted())
        return LapKind::Unfinished;
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

std::optional<int> bestLap(const Laps &laps)
{
    std::optional<int> best;
    std::optional<int> bestTime;
    for (int i = 0; i < int(laps.size()); ++i) {
        const ZEP::Lap &lap = *laps[std::size_t(i)];
        const std::optional<int> time = lapTime(lap);
        if (lapKind(lap) == LapKind::Timed && time && (!bestTime || *time < *bestTime)) {
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
    case LapKind::Other:
        break;
    }
    return QStringLiteral("no valid time was recorded");
}

QVector<LapSummary> summarize(const Laps &laps)
{
    const std::optional<int> best = bestLap(laps);
    QVector<LapSummary> summaries;
    for (int i = 0; i < int(laps.size()); ++i) {
        const ZEP::Lap &lap = *laps[std::size_t(i)];
        LapSummary summary;
        summary.kind = lapKind(lap);
        summary.time = lapTime(lap);
        if (best && summary.time)
            summary.gap = *summary.time - *lapTime(*laps[std::size_t(*best)]);
        summary.isBest = i == best;
        summary.topSpeed = topSpeed(lap);
        summary.fuelUsed = fuelUsed(lap);
        summaries.append(summary);
    }
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
