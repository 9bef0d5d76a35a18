// A session with two cars, for tests of what the reader makes of the player's and of another.
#pragma once

#include "tests/support/readerticks.h"

#include <QTime>

/// The car that the player drives unless a test says otherwise.
constexpr int Player = 3;
constexpr int Other = 5;

/// In the middle of the second lap.
const TickMap OnTrack{{"lapdistpct", 0.5f}, {"isontrack", true}, {"lap", 2}};

/// The lap time of a lap without one.
const QTime NoLapTime(0, 59, 59);

/// Has drivers in both cars, in session 0 of \a sessionType.
inline void addTwoCars(iRTelemetryReader *reader, const QByteArray &sessionType = "Practice")
{
    reader->setYaml(sessionInfoOf(Player, {Player, Other}, sessionType).constData());
    reader->updateCarList();
}

/// Gives \a car a lap that is ready to be closed.
inline void addOpenLap(iRTelemetryReader *reader, int car)
{
    ZEP::Sample sample;
    addValues(&sample, {{"lapdistpct", 0.5f}, {"sessiontime", 100.0}});
    reader->lap(car).addSample(sample);
}

/// The text of session \a number of \a type, with \a results.
inline QByteArray sessionWithResults(int number, const QByteArray &type, const QByteArray &results)
{
    return "---\nSessionInfo:\n Sessions:\n - SessionNum: " + QByteArray::number(number)
        + "\n   SessionType: " + type + "\n   ResultsPositions:\n" + results + "   End: 1\n";
}
