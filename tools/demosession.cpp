#include "tools/demosession.h"

#include "tools/circuit.h"
#include "tools/democar.h"
#include "tools/pace.h"
#include "tools/sessiontext.h"
#include "tools/weekend.h"

#include <QDateTime>

namespace {

struct SessionOfWeekend {
    const char *type;
    const char *name;
    const char *time;
};

constexpr SessionOfWeekend testing[] = {{"Offline Testing", "TESTING", "unlimited"}};
constexpr SessionOfWeekend official[] = {{"Practice", "PRACTICE", "7200.0000 sec"},
                                         {"Lone Qualify", "QUALIFY", "7200.0000 sec"},
                                         {"Race", "RACE", "7200.0000 sec"}};

void addWeather(SessionText &out, const Weekend &w)
{
    static const char *const skies[] = {"Clear", "Partly Cloudy", "Mostly Cloudy", "Overcast"};
    out.entry(1, "TrackWeatherType", "Static");
    out.entry(1, "TrackSkies", skies[w.skies]);
    out.entry(1, "TrackSurfaceTemp", SessionText::number(w.trackTemperature, 2) + " C");
    out.entry(1, "TrackAirTemp", SessionText::number(w.airTemperature, 2) + " C");
    out.entry(1, "TrackAirPressure", SessionText::number(w.airPressure / 3386.389, 2) + " Hg");
    out.entry(1, "TrackWindVel", SessionText::number(w.windSpeed, 2) + " m/s");
    out.entry(1, "TrackWindDir", SessionText::number(w.windDirection, 2) + " rad");
    out.entry(1, "TrackRelativeHumidity", SessionText::number(100 * w.humidity, 0) + " %");
    out.entry(1, "TrackFogLevel", "0 %");
    out.entry(1, "TrackPrecipitation", "0 %");
    out.entry(1, "TrackCleanup", 1);
    out.entry(1, "TrackDynamicTrack", 1);
    out.entry(1, "TrackVersion", "2025.02.18.01");
}

void addWeekendOptions(SessionText &out, const Weekend &w)
{
    const QDateTime date = QDateTime::fromSecsSinceEpoch(w.startDate, Qt::UTC);
    const int hour = int(w.timeOfDay / 3600);
    out.line(1, "WeekendOptions:");
    out.entry(2, "NumStarters", w.cars > 1 ? w.cars : 0);
    out.entry(2, "StartingGrid", "2x2 inline pole on left");
    out.entry(2, "QualifyScoring", "best lap");
    out.entry(2, "CourseCautions", "off");
    out.entry(2, "StandingStart", w.session == SessionKind::Race ? 1 : 0);
    out.entry(2, "ShortParadeLap", 0);
    out.entry(2, "Restarts", "single file");
    out.entry(2, "WeatherType", "Static");
    out.entry(2, "WindSpeed", SessionText::number(3.6 * w.windSpeed, 2) + " km/h");
    out.entry(2, "WeatherTemp", SessionText::number(w.airTemperature, 2) + " C");
    out.entry(2, "RelativeHumidity", SessionText::number(100 * w.humidity, 0) + " %");
    out.entry(2, "FogLevel", "0 %");
    out.entry(2, "TimeOfDay",
              QByteArray::number((hour + 11) % 12 + 1) + (hour < 12 ? ":00 am" : ":00 pm"));
    out.entry(2, "Date", date.date().toString(Qt::ISODate).toLatin1());
    out.entry(2, "EarthRotationSpeedupFactor", 1);
    out.entry(2, "Unofficial", w.session == SessionKind::Testing ? 1 : 0);
    out.entry(2, "CommercialMode", "consumer");
    out.entry(2, "NightMode", "variable");
    out.entry(2, "IsFixedSetup", 0);
    out.entry(2, "StrictLapsChecking", "default");
    out.entry(2, "HasOpenRegistration", 0);
    out.entry(2, "HardcoreLevel", 1);
    out.entry(2, "NumJokerLaps", 0);
    out.entry(2, "IncidentLimit", "unlimited");
    out.entry(2, "FastRepairsLimit", "unlimited");
    out.entry(2, "GreenWhiteCheckeredLimit", 0);
    out.line(1, "TelemetryOptions:");
    out.entry(2, "TelemetryDiskFile", "\"\"");
}

void addWeekend(SessionText &out, const Weekend &w, const Circuit &circuit)
{
    const bool test = w.session == SessionKind::Testing;
    out.line(0, "WeekendInfo:");
    out.entry(1, "TrackName", w.abroad ? "saltbush club" : "thornmere club");
    out.entry(1, "TrackID", 9001);
    out.entry(1, "TrackLength", SessionText::number(circuit.length() / 1000, 2) + " km");
    out.entry(1, "TrackLengthOfficial", SessionText::number(circuit.length() / 1000, 2) + " km");
    out.entry(1, "TrackDisplayName", w.abroad ? "Saltbush Downs" : "Thornmere Park");
    out.entry(1, "TrackDisplayShortName", w.abroad ? "Saltbush" : "Thornmere");
    out.entry(1, "TrackConfigName", "Club");
    out.entry(1, "TrackCity", "Ellwick");
    out.entry(1, "TrackCountry", "Norland");
    out.entry(1, "TrackAltitude", SessionText::number(Circuit::Altitude, 2) + " m");
    out.entry(1, "TrackLatitude", SessionText::number(circuit.line().latitude, 6) + " m");
    out.entry(1, "TrackLongitude", SessionText::number(circuit.line().longitude, 6) + " m");
    out.entry(1, "TrackNorthOffset", SessionText::number(Circuit::NorthOffset, 4) + " rad");
    out.entry(1, "TrackNumTurns", 8);
    out.entry(1, "TrackPitSpeedLimit",
              SessionText::number(3.6 * Circuit::PitSpeedLimit, 2) + " kph");
    out.entry(1, "TrackType", "road course");
    out.entry(1, "TrackDirection", "neutral");
    addWeather(out, w);
    out.entry(1, "SeriesID", test ? 0 : 4711);
    out.entry(1, "SeasonID", test ? 0 : 815);
    out.entry(1, "SessionID", test ? 0 : 20250117);
    out.entry(1, "SubSessionID", test ? 0 : 60431 + w.sessionNum);
    out.entry(1, "LeagueID", 0);
    out.entry(1, "Official", test ? 0 : 1);
    out.entry(1, "RaceWeek", 0);
    out.entry(1, "EventType", test ? "Test" : "Race");
    out.entry(1, "Category", "Road");
    out.entry(1, "SimMode", "full");
    out.entry(1, "TeamRacing", 0);
    out.entry(1, "MinDrivers", 0);
    out.entry(1, "MaxDrivers", 0);
    out.entry(1, "DCRuleSet", "None");
    out.entry(1, "QualifierMustStartRace", 0);
    out.entry(1, "NumCarClasses", 1);
    out.entry(1, "NumCarTypes", 1);
    out.entry(1, "HeatRacing", 0);
    out.entry(1, "BuildType", "Release");
    out.entry(1, "BuildTarget", "Members");
    out.entry(1, "BuildVersion", "2025.03.04.02");
    out.entry(1, "RaceFarm", "");
    addWeekendOptions(out, w);
    out.blank();
}

// The results of a session that was over before the recording began.
void addResults(SessionText &out, const Weekend &w, const Pace &pace)
{
    for (int position = 1; position <= w.cars; ++position) {
        const int car = (w.playerCarIdx + position - 1) % w.cars;
        const QByteArray best = SessionText::number(pace.lapTime() * (1.01 + 0.003 * position), 4);
        out.item(3, "Position", position);
        out.entry(5, "ClassPosition", position - 1);
        out.entry(5, "CarIdx", car);
        out.entry(5, "Lap", 4);
        out.entry(5, "Time", best);
        out.entry(5, "FastestLap", 4);
        out.entry(5, "FastestTime", best);
        out.entry(5, "LastTime", best);
        out.entry(5, "LapsLed", 0);
        out.entry(5, "LapsComplete", 12 - position);
        out.entry(5, "JokerLapsComplete", 0);
        out.entry(5, "LapsDriven", SessionText::number(12.4 - position, 3));
        out.entry(5, "Incidents", position % 3);
        out.entry(5, "ReasonOutId", 0);
        out.entry(5, "ReasonOutStr", "Running");
    }
}

void addSession(SessionText &out, const Weekend &w, const Pace &pace,
                const SessionOfWeekend &session, int index)
{
    const bool over = index < w.sessionNum;
    const bool byLaps = w.raceLaps > 0 && index == w.sessionNum;
    out.item(1, "SessionNum", index);
    out.entry(3, "SessionLaps", byLaps ? QByteArray::number(w.raceLaps) : "unlimited");
    out.entry(3, "SessionTime", session.time);
    out.entry(3, "SessionNumLapsToAvg", 0);
    out.entry(3, "SessionType", session.type);
    out.entry(3, "SessionTrackRubberState", "moderate usage");
    out.entry(3, "SessionName", session.name);
    out.entry(3, "SessionSubType", "");
    out.entry(3, "SessionSkipped", 0);
    out.entry(3, "SessionRunGroupsUsed", 0);
    out.entry(3, "SessionEnforceTireCompoundChange", 0);
    out.line(3, "ResultsPositions:");
    if (over)
        addResults(out, w, pace);
    out.line(3, "ResultsFastestLap:");
    out.item(3, "CarIdx", over ? w.playerCarIdx : 255);
    out.entry(5, "FastestLap", over ? 4 : 0);
    out.entry(5, "FastestTime", over ? SessionText::number(pace.lapTime() * 1.013, 4) : "-1.0000");
    out.entry(3, "ResultsAverageLapTime",
              over ? SessionText::number(pace.lapTime() * 1.03, 4) : "-1.0000");
    out.entry(3, "ResultsNumCautionFlags", 0);
    out.entry(3, "ResultsNumCautionLaps", 0);
    out.entry(3, "ResultsNumLeadChanges", 0);
    out.entry(3, "ResultsLapsComplete", over ? 11 : -1);
    out.entry(3, "ResultsOfficial", over ? 1 : 0);
}

void addSessions(SessionText &out, const Weekend &w, const Pace &pace)
{
    out.line(0, "SessionInfo:");
    out.line(1, "Sessions:");
    int index = 0;
    if (w.session == SessionKind::Testing) {
        for (const SessionOfWeekend &session : testing)
            addSession(out, w, pace, session, index++);
    } else {
        for (const SessionOfWeekend &session : official)
            addSession(out, w, pace, session, index++);
    }
    out.blank();
}

void addCameras(SessionText &out)
{
    out.line(0, "CameraInfo:");
    out.line(1, "Groups:");
    int group = 0;
    for (const char *name : {"Nose", "Gearbox", "Cockpit", "Scenic", "TV1", "TV2", "Pit Lane",
                             "Blimp", "Chase", "Far Chase"}) {
        out.item(1, "GroupNum", ++group);
        out.entry(3, "GroupName", name);
        out.line(3, "Cameras:");
        out.item(3, "CameraNum", 1);
        out.entry(5, "CameraName", QByteArray("Cam") + name);
    }
    out.blank();
}

void addRadio(SessionText &out, const Weekend &w)
{
    struct Frequency {
        const char *name;
        int priority;
        bool mutable_;
    };
    constexpr Frequency frequencies[] = {{"@ALLTEAMS", 12, true},     {"@DRIVERS", 15, true},
                                         {"@TEAM", 60, false},        {"@ADMIN", 90, false},
                                         {"@RACECONTROL", 80, false}, {"@PRIVATE", 70, false}};
    out.line(0, "RadioInfo:");
    out.entry(1, "SelectedRadioNum", 0);
    out.line(1, "Radios:");
    out.item(1, "RadioNum", 0);
    out.entry(3, "HopCount", 2);
    out.entry(3, "NumFrequencies", int(sizeof frequencies / sizeof frequencies[0]));
    out.entry(3, "TunedToFrequencyNum", 0);
    out.entry(3, "ScanningIsOn", 1);
    out.line(3, "Frequencies:");
    int index = 0;
    for (const Frequency &each : frequencies) {
        const QByteArray name(each.name);
        out.item(3, "FrequencyNum", index++);
        out.entry(5, "FrequencyName", "\"" + name + "\"");
        out.entry(5, "Priority", each.priority);
        out.entry(5, "CarIdx", name == "@TEAM" ? w.playerCarIdx : -1);
        out.entry(5, "EntryIdx", name == "@PRIVATE" ? w.playerCarIdx : -1);
        out.entry(5, "ClubID", 0);
        out.entry(5, "CanScan", 1);
        out.entry(5, "CanSquawk", 1);
        out.entry(5, "Muted", 0);
        out.entry(5, "IsMutable", each.mutable_ ? 1 : 0);
        out.entry(5, "IsDeletable", 0);
    }
    out.blank();
}

void addSectors(SessionText &out)
{
    out.line(0, "SplitTimeInfo:");
    out.line(1, "Sectors:");
    for (int sector = 0; sector < 3; ++sector) {
        out.item(1, "SectorNum", sector);
        out.entry(3, "SectorStartPct", SessionText::number(sector / 3.0, 6));
    }
    out.blank();
}

} // namespace

QByteArray demoSessionInfo(const Weekend &weekend, const Circuit &circuit, const Pace &pace,
                           double fuel)
{
    SessionText out;
    out.line(0, "---");
    addWeekend(out, weekend, circuit);
    addSessions(out, weekend, pace);
    addCameras(out);
    addRadio(out, weekend);
    addDemoDrivers(out, weekend, circuit, pace);
    addSectors(out);
    addDemoSetup(out, fuel);
    out.line(0, "...");
    return out.text();
}
