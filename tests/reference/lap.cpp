#include "tests/reference/lap.h"

#include <cmath>

namespace reference {

namespace {

/// The sign of a number that does not fit into 64 bits; 0 for any other value.
int signOfHuge(const QVariant &value)
{
    const bool isText = value.userType() == QMetaType::QString;
    const double number = isText ? 0 : value.toDouble();
    if (number >= std::ldexp(1.0, 63))
        return 1;
    return number >= -std::ldexp(1.0, 63) ? 0 : -1; // -1 also for NaN
}

} // namespace

int toInt(const QVariant &value)
{
    return signOfHuge(value) == 0 ? value.toInt() : 0;
}

qulonglong toULongLong(const QVariant &value)
{
    return signOfHuge(value) == 0 ? value.toULongLong() : 0;
}

bool toBool(const QVariant &value)
{
    return signOfHuge(value) == 0 ? value.toBool() : signOfHuge(value) > 0;
}

double Channel::sample(int index) const
{
    if (index < 0 || index >= data.size())
        return NoData;
    return data.at(index);
}

void Channel::setSample(int index, double value)
{
    if (index < 0 || index >= data.size())
        return;
    data[index] = value;
}

void Lap::addChannel(const QString &name, const Channel &channel)
{
    channels.insert(name, QSharedPointer<Channel>::create(channel));
}

void Lap::addSample(const Sample &sample)
{
    const QList<QString> channelNames = channels.keys();
    const QList<QString> valueNames = sample.values.keys();

    if (channelNames.isEmpty()) {
        for (const QString &name : valueNames) {
            const Value value = sample.values.value(name);
            Channel channel;
            channel.unit = value.unit;
            channel.data.append(value.value.toDouble());
            addChannel(name, channel);
        }
        return;
    }

    int c = 0;
    int v = 0;
    while (c < channelNames.size() || v < valueNames.size()) {
        const bool channelsLeft = c < channelNames.size();
        const bool valuesLeft = v < valueNames.size();
        if (channelsLeft && (!valuesLeft || !(valueNames.at(v) < channelNames.at(c)))) {
            Channel &channel = *channels.value(channelNames.at(c));
            if (valuesLeft && valueNames.at(v) == channelNames.at(c)) {
                channel.data.append(sample.values.value(valueNames.at(v)).value.toDouble());
                ++c;
                ++v;
            } else {
                channel.data.append(NoData);
                ++c;
            }
        } else {
            const Value value = sample.values.value(valueNames.at(v));
            const int n = channels.first()->data.size();
            Channel channel;
            for (int i = 0; i < n - 1; ++i)
                channel.data.append(NoData);
            channel.unit = value.unit;
            channel.data.append(value.value.toDouble());
            addChannel(valueNames.at(v), channel);
            ++v;
        }
    }
}

int Lap::size() const
{
    if (!channels.isEmpty())
        return channels.first()->data.size();
    if (!calculatedChannels.isEmpty())
        return calculatedChannels.first()->data.size();
    return 0;
}

void Lap::clear()
{
    channels.clear();
    calculatedChannels.clear();
    values.clear();
    calculatedValues.clear();
}

Value Lap::value(const QString &name) const
{
    if (values.contains(name))
        return values.value(name);
    if (name == QLatin1String("Lap time"))
        return {lapTime, QString()};
    return calculatedValues.value(name);
}

} // namespace reference
