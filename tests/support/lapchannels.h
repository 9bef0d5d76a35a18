// Makes laps and channels from plain tables, and compares them with such tables.
#pragma once

#include "model/lap.h"
#include "tests/support/samebits.h"

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVector>

/// The sample of a tick without a measurement, as hosts know it.
constexpr double NoSample = 9.999999562023526e24;

/// The values of one tick, by name.
using Tick = QMap<QString, double>;
/// The samples of all channels, by name.
using Columns = QMap<QString, QVector<double>>;

Q_DECLARE_METATYPE(QVector<Tick>)
Q_DECLARE_METATYPE(Columns)

inline ZEP::Sample sampleOf(const Tick &values, const QString &unit = QString())
{
    ZEP::Sample sample;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        sample.addValue(value.key(), value.value(), unit);
    return sample;
}

/// A channel that a lap will own.
inline ZEP::Channel *newChannel(const QVector<double> &samples, const QString &unit = QString())
{
    auto *channel = new ZEP::Channel;
    channel->data = samples;
    channel->setUnit(unit);
    return channel;
}

inline Columns columnsOf(const ZEP::Lap &lap)
{
    Columns columns;
    for (const QString &name : lap.getAvailableChannels())
        columns.insert(name, lap.channel(name)->data);
    return columns;
}

/// The first difference between the channels of a lap and the expected ones; empty if none differs.
inline QString columnDifference(const Columns &actual, const Columns &expected)
{
    if (actual.keys() != expected.keys())
        return QStringLiteral("channels %1 instead of %2")
            .arg(actual.keys().join(QLatin1Char(',')), expected.keys().join(QLatin1Char(',')));
    for (const QString &name : actual.keys()) {
        const QString difference = bitDifference(actual.value(name), expected.value(name));
        if (!difference.isEmpty())
            return QStringLiteral("channel %1, %2").arg(name, difference);
    }
    return QString();
}

/// Fails the test function when the recorded channels of \a lap are not \a expected, bit by bit.
#define COMPARE_COLUMNS(lap, expected)                                                             \
    do {                                                                                           \
        const QString columnDifference_ = columnDifference(columnsOf(lap), (expected));            \
        QVERIFY2(columnDifference_.isEmpty(), qPrintable(columnDifference_));                      \
    } while (false)
