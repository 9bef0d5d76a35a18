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
/// A lap holds its channels through shared pointers, and a copy of a lap shares them: a sample
/// changed through one is changed in the other. Names are case-sensitive and in ascending order.
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

    /// Appends one tick: every value of \a sample, converted to double (0.0 where that fails), goes
    /// to the recorded channel of its name; a channel without a value gets Channel::NoData.
    ///
    /// A value without a channel opens one, in the value's unit, filled up with NoData for the
    /// ticks before. The fill is measured on the first channel at the moment the name's turn comes,
    /// so a channel that sorts first stays one sample short; hosts know laps that way.
    void addSample(const ZEP::Sample &sample);

    /// Takes ownership of \a channel and replaces any recorded channel called \a name.
    void addChannel(ZEP::Channel *channel, const QString &name);
    /// Takes ownership of \a channel and replaces any calculated channel called \a name.
    void addCalculatedChannel(ZEP::Channel *channel, const QString &name);
    void removeChannel(const QString &name) { m_channels.remove(name); }
    void removeCalculatedChannel(const QString &name) { m_calculatedChannels.remove(name); }

    /// Removes all channels and values; the header's fixed fields stay.
    void clear();

    /// Samples of the first recorded channel, else of the first calculated one, else 0.
    int size() const;
    /// True when there is no channel; values do not count.
    bool isEmpty() const { return m_channels.isEmpty() && m_calculatedChannels.isEmpty(); }

    /// The header's value called \a name; else, for "Lap time", the header's lap time; else the
    /// calculated value of that name.
    ZEP::Value value(const QString &name) const;

private:
    QMap<QString, QSharedPointer<ZEP::Channel>> m_channels;
    QMap<QString, QSharedPointer<ZEP::Channel>> m_calculatedChannels;
    ZEP::DynamicData m_calculatedValues;
};

} // namespace ZEP

Q_DECLARE_METATYPE(ZEP::Lap)
