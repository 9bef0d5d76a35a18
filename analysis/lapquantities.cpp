#include "analysis/lapquantities.h"

#include "analysis/channelstatistics.h"

#include <cmath>

std::optional<Quantity> valueOf(const ZEP::Lap &lap, const QString &name)
{
    const ZEP::Value value = lap.value(name);
    bool isNumber = false;
    const double number = value.value.toDouble(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return Quantity{number, value.unit()};
}

std::optional<Quantity> meanOf(const ZEP::Lap &lap, const QString &name)
{
    const auto channel = lap.channel(name);
    if (!channel)
        return std::nullopt;
    const ChannelStatistics numbers = channelStatistics(*channel);
    if (numbers.valid == 0)
        return std::nullopt;
    return Quantity{numbers.mean, channel->unit()};
}

std::optional<Quantity> firstOf(const ZEP::Lap &lap, const QString &name)
{
    const auto channel = lap.channel(name);
    for (int i = 0; channel && i < channel->data.size(); ++i) {
        if (channel->isValid(i))
            return Quantity{channel->sample(i), channel->unit()};
    }
    return std::nullopt;
}

std::optional<Quantity> lastOf(const ZEP::Lap &lap, const QString &name)
{
    const auto channel = lap.channel(name);
    for (int i = channel ? channel->data.size() - 1 : -1; i >= 0; --i) {
        if (channel->isValid(i))
            return Quantity{channel->sample(i), channel->unit()};
    }
    return std::nullopt;
}

bool changesOnlyAtStops(const ZEP::Lap &lap, const QString &name)
{
    constexpr double Standing = 0.5; // in m/s, or in whatever unit
    const auto channel = lap.channel(name);
    const auto pitRoad = lap.channel(QStringLiteral("onpitroad"));
    const auto speed = lap.channel(QStringLiteral("speed"));
    const auto isStop = [&](int tick) {
        return (pitRoad && pitRoad->isValid(tick) && pitRoad->sample(tick) != 0)
            || (speed && speed->isValid(tick) && std::abs(speed->sample(tick)) < Standing);
    };
    int before = -1;
    for (int i = 0; channel && i < channel->data.size(); ++i) {
        if (!channel->isValid(i))
            continue;
        if (before >= 0 && channel->sample(i) != channel->sample(before) && !isStop(i)
            && !isStop(before))
            return false;
        before = i;
    }
    return true;
}
