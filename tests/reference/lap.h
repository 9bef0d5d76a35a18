// Laps of the plain importer: the same meaning as the host's, in as few lines as possible.
#pragma once

#include <QDateTime>
#include <QMap>
#include <QSharedPointer>
#include <QString>
#include <QUuid>
#include <QVariant>
#include <QVector>

namespace reference {

/// 1e25 in single precision, widened: the sample of a tick without a measurement.
constexpr double NoData = 1e25f;

struct Value {
    QVariant value;
    QString unit;
};

/// Converts as QVariant does. A number that does not fit into 64 bits after rounding becomes 0, or
/// true if it is positive.
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

    /// The sample at \a index; NoData if that is outside.
    double sample(int index) const;
    /// Overwrites one sample; does nothing if \a index is outside.
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
    /// Adds a recorded channel, and replaces any other of that name.
    void addChannel(const QString &name, const Channel &channel);

    /// Appends one tick: every recorded channel gets its value, or NoData if the tick has none.
    ///
    /// If the lap has channels, a new name starts a channel that is filled up to the length of the
    /// first channel minus one. So a new name that sorts first, before the first channel has its
    /// sample of this tick, is one sample short. Hosts expect that.
    void addSample(const Sample &sample);

    /// True if there are neither recorded nor calculated channels; values do not count.
    bool isEmpty() const { return channels.isEmpty() && calculatedChannels.isEmpty(); }
    /// Samples of the first recorded channel; without one, of the first calculated one; else 0.
    int size() const;
    /// Removes all channels and values; ids, names, times and flags stay.
    void clear();
    /// The header's own value \a name. If there is none: the lap time for "Lap time", and the
    /// calculated value for other names.
    Value value(const QString &name) const;
};

} // namespace reference
