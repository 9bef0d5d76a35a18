// A session info with every value that laps use, and the lap that results.
#pragma once

#include "reader/irtelemetryreader.h"

#include <QByteArray>

/// The other car in wholeText().
constexpr int OtherInText = 7;

/// A text in which all values differ. The player is in car 3.
inline QByteArray wholeText()
{
    return "---\n"
           "WeekendInfo:\n"
           " TrackDisplayName: A Track\n"
           " TrackConfigName: A Layout\n"
           " SessionID: 12\n"
           " SubSessionID: 34\n"
           " TrackDisplayShortName: Track\n"
           " TrackCity: A City\n"
           " TrackCountry: A Country\n"
           " TrackNumTurns: 17\n"
           " TrackSkies: Clear\n"
           " Official: 0\n"
           " Category: Road\n"
           " TrackLength: 3.70 km\n"
           " TrackSurfaceTemp: 31.5 C\n"
           " TrackAirTemp: 25.25 C\n"
           " TrackNorthOffset: 2.6253 rad\n"
           " WeekendOptions:\n"
           "  WeatherTemp: 26.75 C\n"
           "SessionInfo:\n"
           " Sessions:\n"
           " - SessionNum: 0\n"
           "   SessionType: Practice\n"
           " - SessionNum: 1\n"
           "   SessionType: Race\n"
           "DriverInfo:\n"
           " DriverCarIdx: 3\n"
           " DriverCarFuelKgPerLtr: 0.750\n"
           " DriverCarFuelMaxLtr: 110.000\n"
           " DriverCarMaxFuelPct: 0.500\n"
           " Drivers:\n"
           " - CarIdx: 3\n"
           "   UserName: A Driver\n"
           "   CarScreenName: A Car\n"
           "   TeamName: A Team\n"
           "   AbbrevName: Driver, A\n"
           "   IRating: 1350\n"
           "   LicString: R 0.01\n"
           "   Initials: AD\n"
           "   UserID: 42\n"
           "   CarPath: acar\n"
           "   CarClassID: 43\n"
           "   CarID: 44\n"
           "   CarClassShortName: A Class\n"
           "   ClubName: A Club\n"
           "   DivisionName: Division 1\n"
           "   LicColor: 0xfc0706\n"
           " - CarIdx: 7\n"
           "   UserName: Another Driver\n"
           "   CarScreenName: Another Car\n"
           "CarSetup:\n"
           " Chassis:\n"
           "  Rear:\n"
           "   FuelLevel: 30.0 L\n"
           "...\n";
}

/// The whole text with the line of \a key replaced by \a line, or removed if \a line is empty.
inline QByteArray textWith(const QByteArray &key, const QByteArray &line)
{
    QByteArray text = wholeText();
    const int begin = text.indexOf(key + ':');
    const int end = text.indexOf('\n', begin) + 1;
    const int lineBegin = text.lastIndexOf('\n', begin) + 1;
    if (line.isEmpty())
        return text.remove(lineBegin, end - lineBegin);
    return text.replace(begin, end - begin, line + '\n');
}

/// The whole text without the lines from \a first up to, but not including, \a last.
inline QByteArray textWithout(const QByteArray &first, const QByteArray &last)
{
    QByteArray text = wholeText();
    const int begin = text.indexOf(first);
    return text.remove(begin, text.indexOf(last) - begin);
}

/// A lap of \a car with the session info \a text, while the player's car is in session \a session.
inline ZEP::Lap lapOf(const QByteArray &text, int car = 3, int session = 0)
{
    iRTelemetryReader reader;
    reader.setYaml(text.constData());
    reader.updateCarList();
    if (reader.hasMyCar())
        reader.sample(reader.myCarIdx()).addValue(QStringLiteral("sessionnum"), session, QString());
    ZEP::Lap lap;
    reader.getSessionInfo(car, &lap);
    return lap;
}
