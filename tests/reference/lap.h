// Laps of the plain importer: the same meaning as the host's, in as few lines as that takes.
#pragma once

#include <QDateTime>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QUuid>
#include <QVariant>
#include <QVector>

namespace reference {

/// 1e25 in single precision, widened: what a channel holds where nothing was measured.
constexpr double NoData = 1e25f;

struct Value {
    QVariant value;
    QString unit;
};

/// As QVariant converts; a number that rounds to none of 64 bits is 0, and true if it is positive.
int toInt(const QVariant &value);
qulonglong toULongLong(const QVariant &value);
bool toBool(const QVariant &value);

/// Values by name, in ascending name order.
using Values = QMap<QString, Value>;

/// The values of one car at one tick.
struct Sample {
    Values values;
    QVariant carId;
};

struct Channel {
    QVector<double> data;
    QString unit;

    /// The sample at \a index; NoData outside the channel.
    double sample(int index) const;
    /// Overwrites one sample; outside the channel it does nothing.
    void setSample(int index, double value);
};

/// Copies share the channels.
struct Lap {
    using Channels = QMap<QString, QSharedPointer<Channel>>;

    QDateTime dateTime;
    QString driverName;
    QString trackName;
    QString trackConfig;
    QString carName;
    QString fileName;
    QTime lapTime;
    QString source;
    QString plugin;
    QUuid lapId;
    QUuid stintId;
    QVariant carId;
    QUuid sessionId;
    int lapInSession = 0;
    int lapInStint = 0;
    int stintInSession = 0;
    int session = -1;
    int lapType = -1;
    bool completed = false;

    Values values; ///< the header's own values
    Channels channels; ///< recorded
    Channels calculatedChannels;
    Values calculatedValues;

    /// The recorded channel \a name, or null.
    QSharedPointer<Channel> channel(const QString &name) const { return channels.value(name); }
    /// Adds a recorded channel, in place of any other of that name.
    void addChannel(const QString &name, const Channel &channel);

    /// Appends one tick: every recorded channel gets its value, or NoData if the tick has none.
    ///
    /// A name that is new to a lap with channels starts a channel that is filled up to the length
    /// of the first channel less one. So a new name that sorts first, before the first channel
    /// has had its sample of this tick, stays one sample short; hosts know that.
    void addSample(const Sample &sample);

    /// True without recorded and calculated channels, whatever values there are.
    bool isEmpty() const { return channels.isEmpty() && calculatedChannels.isEmpty(); }
    /// Samples of the first recorded channel, else of the first calculated one, else 0.
    int size() const;
    /// Removes all channels and values; ids, names, times and flags stay.
    void clear();
    /// The header's own value \a name, else for "Lap time" the lap time, else the calculated one.
    Value value(const QString &name) const;
};

} // namespace reference
