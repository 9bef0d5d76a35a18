// Feeds a telemetry reader tick by tick, by the names of values.
#pragma once

#include "reader/irtelemetryreader.h"

#include <QByteArray>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <QVector>

/// The values of one car at one tick, without units.
using TickMap = QMap<QString, QVariant>;

Q_DECLARE_METATYPE(TickMap)

/// \a values, with \a more added to them or replacing them.
inline TickMap with(TickMap values, const TickMap &more)
{
    for (auto value = more.cbegin(); value != more.cend(); ++value)
        values.insert(value.key(), value.value());
    return values;
}

inline void addValues(ZEP::Sample *sample, const TickMap &values)
{
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        sample->addValue(value.key(), value.value(), QString());
}

/// One tick in which the cars of \a cars have these values, and no other car has any.
inline void tick(iRTelemetryReader *reader, const QMap<int, TickMap> &cars)
{
    reader->prepareTick();
    for (auto car = cars.cbegin(); car != cars.cend(); ++car)
        addValues(&reader->sample(car.key()), car.value());
    reader->processData();
}

inline void tick(iRTelemetryReader *reader, int car, const TickMap &values)
{
    tick(reader, {{car, values}});
}

/// The car itself, to which the reader gives read access only. Tests bring it into states that
/// would otherwise need a whole drive.
inline CarTracker &carOf(iRTelemetryReader *reader, int car)
{
    return const_cast<CarTracker &>(reader->car(car));
}

/// A session info with a driver for each of \a cars. The player is in car \a player, and session
/// 0 is of \a type.
inline QByteArray sessionInfoOf(int player, const QVector<int> &cars,
                                const QByteArray &type = "Practice")
{
    QByteArray text = "---\nSessionInfo:\n Sessions:\n - SessionNum: 0\n   SessionType: " + type
        + "\nDriverInfo:\n DriverCarIdx: " + QByteArray::number(player) + "\n Drivers:\n";
    for (const int car : cars) {
        const QByteArray number = QByteArray::number(car);
        text += " - CarIdx: " + number + "\n   UserName: Driver " + number + "\n   TeamName: Team "
            + number + '\n';
    }
    return text + "...\n";
}
