#pragma once

#include "model/channel.h"
#include "model/lapheader.h"
#include "model/sample.h"

#include <QMap>
#include <QMetaType>
#include <QSharedPointer>

namespace ZEP {

/// One lap of one car: its header, the channels recorded tick by tick, and the channels and values
/// calculated from them.
///
/// A copy of a lap shares its channels: a sample changed in one lap is changed in the other. Names
/// are case-sensitive and in ascending order.
class Lap : public LapHeader
{
public:
    /// The recorded channel called \a name, or null. Never inserts.
    QSharedPointer<ZEP::Channel> channel(const QString &name) const;
    /// The calculated channel called \a name, or null. Never inserts.
    QSharedPointer<ZEP::Channel> calculatedChannel(const QString &name) const;

    /// The recorded channels by name, ascending.
    const QMap<QString, QSharedPointer<ZEP::Channel>> &channels() const { return m_channels; }
    /// Names of the recorded channels, ascending.
    QList<QString> getAvailableChannels() const { return m_channels.keys(); }
    /// Names of the calculated channels, ascending.
    QList<QString> getAvailableCalculatedChannels() const { return m_calculatedChannels.keys(); }

    QList<QString> calculatedValuesNames() const { return m_calculatedValues.valueNameList(); }
    bool containsCalculatedValue(const QString &name) const;
    /// The calculated value called \a name, or a default Value.
    ZEP::Value calculatedValue(const QString &name) const { return m_calculatedValues.value(name); }
    void setCalculatedValue(const QString &name, const ZEP::Value &value);
    void setCalculatedValue(const QString &name, const QVariant &value, const QString &unit);
    void removeCalculatedValue(const QString &name) { m_calculatedValues.removeValue(name); }
    void removeAllCalculatedValues() { m_calculatedValues.removeValues(); }

    /// Appends one tick. Every value of \a sample is converted to double (0.0 if that fails) and
    /// appended to the recorded channel of its name. Channels without a value get Channel::NoData.
    ///
    /// A value without a channel opens one, in the value's unit, filled with NoData for the earlier
    /// ticks. Their number is taken from the first channel when the name has its turn, so a new
    /// channel that sorts first is one sample short. Hosts expect laps to be like that.
    void addSample(const ZEP::Sample &sample);

    /// Takes ownership of \a channel and replaces any recorded channel called \a name.
    void addChannel(ZEP::Channel *channel, const QString &name);
    /// Takes ownership of \a channel and replaces any calculated channel called \a name.
    void addCalculatedChannel(ZEP::Channel *channel, const QString &name);
    void removeChannel(const QString &name) { m_channels.remove(name); }
    void removeCalculatedChannel(const QString &name) { m_calculatedChannels.remove(name); }

    /// Removes all channels and values. The fixed fields of the header stay.
    void clear();

    /// Samples of the first recorded channel, else of the first calculated one, else 0.
    int size() const;
    /// True if there are no channels; values do not count.
    bool isEmpty() const { return m_channels.isEmpty() && m_calculatedChannels.isEmpty(); }

    /// The header's value called \a name. If there is none: the header's lap time for "Lap time",
    /// and the calculated value of that name for other names.
    ZEP::Value value(const QString &name) const;

private:
    QMap<QString, QSharedPointer<ZEP::Channel>> m_channels;
    QMap<QString, QSharedPointer<ZEP::Channel>> m_calculatedChannels;
    ZEP::DynamicData m_calculatedValues;
};

} // namespace ZEP

Q_DECLARE_METATYPE(ZEP::Lap)
