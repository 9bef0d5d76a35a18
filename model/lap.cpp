#include "model/lap.h"

#include <memory>

namespace ZEP {

namespace {

/// Takes ownership of \a channel, which is deleted if there is no memory for the pointer.
QSharedPointer<Channel> shared(Channel *channel)
{
    std::unique_ptr<Channel> owned(channel);
    QSharedPointer<Channel> result(channel);
    owned.release();
    return result;
}

} // namespace

QSharedPointer<Channel> Lap::channel(const QString &name) const
{
    return m_channels.value(name);
}

QSharedPointer<Channel> Lap::calculatedChannel(const QString &name) const
{
    return m_calculatedChannels.value(name);
}

bool Lap::containsCalculatedValue(const QString &name) const
{
    return m_calculatedValues.containsValue(name);
}

void Lap::setCalculatedValue(const QString &name, const Value &value)
{
    m_calculatedValues.addValue(name, value);
}

void Lap::setCalculatedValue(const QString &name, const QVariant &value, const QString &unit)
{
    m_calculatedValues.addValue(name, value, unit);
}

void Lap::addSample(const Sample &sample)
{
    const bool firstTick = m_channels.isEmpty();
    auto channel = m_channels.begin();
    auto value = sample.m_values.cbegin();
    const auto lastValue = sample.m_values.cend();

    while (channel != m_channels.end() || value != lastValue) {
        if (channel != m_channels.end() && (value == lastValue || value.key() >= channel.key())) {
            const bool measured = value != lastValue && value.key() == channel.key();
            channel.value()->data.append(measured ? value->value.toDouble() : Channel::NoData);
            ++channel;
            if (measured)
                ++value;
        } else {
            const auto opened = QSharedPointer<Channel>::create();
            opened->setUnit(value->unit());
            if (!firstTick)
                opened->data.fill(Channel::NoData, qMax(0, m_channels.first()->data.size() - 1));
            opened->data.append(value->value.toDouble());
            channel = ++m_channels.insert(channel, value.key(), opened);
            ++value;
        }
    }
}

void Lap::addChannel(Channel *channel, const QString &name)
{
    // Channels often arrive in ascending order. With the hint, their names are not searched for.
    m_channels.insert(m_channels.cend(), name, shared(channel));
}

void Lap::addCalculatedChannel(Channel *channel, const QString &name)
{
    m_calculatedChannels.insert(name, shared(channel));
}

void Lap::clear()
{
    m_channels.clear();
    m_calculatedChannels.clear();
    DynamicData::clear();
    m_calculatedValues.clear();
}

int Lap::size() const
{
    if (!m_channels.isEmpty())
        return m_channels.first()->data.size();
    if (!m_calculatedChannels.isEmpty())
        return m_calculatedChannels.first()->data.size();
    return 0;
}

Value Lap::value(const QString &name) const
{
    if (containsValue(name))
        return DynamicData::value(name);
    if (name == QLatin1String("Lap time"))
        return Value(getLapTime(), QString());
    return m_calculatedValues.value(name);
}

} // namespace ZEP
