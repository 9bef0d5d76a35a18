#include "tools/demovariables.h"

#include "tools/drive.h"

#include <algorithm>

namespace {

constexpr double Unlimited = 32767; // laps
constexpr double WholeWeek = 604800; // s, the length of a session without an end
constexpr double TimedSession = 7200; // s

double sessionLength(const Drive &d)
{
    return d.weekend().session == SessionKind::Testing ? WholeWeek : TimedSession;
}

double lapsRemaining(const Drive &d)
{
    return d.weekend().raceLaps > 0 ? d.weekend().raceLaps - std::max(0, d.laps().completed())
                                    : Unlimited;
}

double sessionFlags(const Drive &d)
{
    constexpr qint32 Checkered = 0x1, Green = 0x4, Serviceable = 0x40000, Hidden = 0x10000000,
                     Ready = 0x20000000, Set = 0x40000000;
    switch (d.sessionState()) {
    case StateGetInCar:
    case StateWarmup:
        return Serviceable | Ready;
    case StateParadeLaps:
        return Serviceable | Set;
    case StateRacing:
        return Serviceable | Hidden | (d.weekend().session == SessionKind::Race ? Green : 0);
    default:
        return Serviceable | Hidden | Checkered;
    }
}

} // namespace

DemoVariables::DemoVariables(const DemoOptions &options)
{
    addSession();
    addComputer();
    addPlayer();
    addControls();
    addLaps();
    addMotion();
    addWeather();
    addPits();
    addSteeringWheel();
    addAdjustments();
    addEngine();
    addWheels(options.surfaceTemperatures);
}

void DemoVariables::fixed(const QByteArray &name, qint32 type, const char *unit, const char *desc,
                          double value)
{
    m_list.append({{name, type, unit, desc}, value, nullptr, 0});
}

void DemoVariables::moving(const QByteArray &name, qint32 type, const char *unit,
                           const QByteArray &desc, DemoVariable::Source source, int index,
                           int count)
{
    m_list.append({{name, type, unit, desc, count}, 0, source, index});
}

void DemoVariables::addSession()
{
    moving("SessionTime", irsdk_double, "s", "Time since the session began",
           [](const Drive &d, int) { return d.time(); });
    moving("SessionTick", irsdk_int, "", "Number of the tick",
           [](const Drive &d, int) { return double(d.tick()); });
    moving("SessionNum", irsdk_int, "", "Number of the session",
           [](const Drive &d, int) { return double(d.weekend().sessionNum); });
    moving("SessionState", irsdk_int, "irsdk_SessionState", "State of the session",
           [](const Drive &d, int) { return double(d.sessionState()); });
    fixed("SessionUniqueID", irsdk_int, "", "Identifies the session", 1);
    moving("SessionFlags", irsdk_bitField, "irsdk_Flags", "Flags shown",
           [](const Drive &d, int) { return sessionFlags(d); });
    moving("SessionTimeRemain", irsdk_double, "s", "Time until the session ends",
           [](const Drive &d, int) { return std::max(0.0, sessionLength(d) - d.time()); });
    moving("SessionLapsRemain", irsdk_int, "", "Laps until the session ends, older count",
           [](const Drive &d, int) { return lapsRemaining(d); });
    moving("SessionLapsRemainEx", irsdk_int, "", "Laps until the session ends",
           [](const Drive &d, int) { return lapsRemaining(d); });
    moving("SessionTimeTotal", irsdk_double, "s", "Length of the session",
           [](const Drive &d, int) { return sessionLength(d); });
    moving("SessionLapsTotal", irsdk_int, "", "Laps of the session", [](const Drive &d, int) {
        return d.weekend().raceLaps > 0 ? double(d.weekend().raceLaps) : Unlimited;
    });
    fixed("SessionJokerLapsRemain", irsdk_int, "", "Joker laps still to be driven");
    fixed("SessionOnJokerLap", irsdk_bool, "", "On a joker lap");
    moving("SessionTimeOfDay", irsdk_float, "s", "Time of day in the simulated world",
           [](const Drive &d, int) { return d.weekend().timeOfDay + d.time(); });
    fixed("DriverMarker", irsdk_bool, "", "The driver set a mark");
    fixed("PushToTalk", irsdk_bool, "", "Talk button pressed");
    fixed("PushToPass", irsdk_bool, "", "Boost button pressed");
    fixed("ManualBoost", irsdk_bool, "", "Hybrid boost asked for");
    fixed("ManualNoBoost", irsdk_bool, "", "Hybrid boost declined");
    moving("IsOnTrack", irsdk_bool, "", "The driver is in the car and physics run",
           [](const Drive &d, int) { return double(d.inCar()); });
    moving("IsOnTrackCar", irsdk_bool, "", "Physics of the car run",
           [](const Drive &d, int) { return double(d.inCar()); });
}

void DemoVariables::addComputer()
{
    moving("FrameRate", irsdk_float, "fps", "Frames drawn per second",
           [](const Drive &d, int) { return 143.5 + d.noise(0); });
    moving("CpuUsageFG", irsdk_float, "%", "Load of the drawing thread",
           [](const Drive &d, int) { return 0.26 + 0.08 * d.noise(1); });
    moving("GpuUsage", irsdk_float, "%", "Load of the graphics card",
           [](const Drive &d, int) { return 0.31 + 0.06 * d.noise(2); });
    moving("CpuUsageBG", irsdk_float, "%", "Load of the other threads",
           [](const Drive &d, int) { return 0.07 + 0.03 * d.noise(3); });
    moving("ChanAvgLatency", irsdk_float, "s", "Mean latency of the connection",
           [](const Drive &d, int) { return 0.033 + 0.0004 * d.noise(0); });
    moving("ChanLatency", irsdk_float, "s", "Latency of the connection",
           [](const Drive &d, int) { return 0.0333 + 0.002 * d.noise(1); });
    fixed("ChanQuality", irsdk_float, "%", "Quality of the connection", 1);
    fixed("ChanPartnerQuality", irsdk_float, "%", "Quality of the other end's connection", 1);
    fixed("ChanClockSkew", irsdk_float, "s", "Clock difference to the server");
    fixed("MemPageFaultSec", irsdk_float, "", "Page faults per second");
    fixed("MemSoftPageFaultSec", irsdk_float, "", "Soft page faults per second");
}

void DemoVariables::addPlayer()
{
    const auto position = [](const Drive &d, int) { return d.laps().best() > 0 ? 1.0 : 0.0; };
    moving("PlayerCarPosition", irsdk_int, "", "Position of the player", position);
    moving("PlayerCarClassPosition", irsdk_int, "", "Position of the player in class", position);
    fixed("PlayerCarClass", irsdk_int, "", "Identifies the class of the player's car");
    moving("PlayerTrackSurface", irsdk_int, "irsdk_TrkLoc", "Where the player's car is",
           [](const Drive &d, int) { return double(d.surface()); });
    moving("PlayerTrackSurfaceMaterial", irsdk_int, "irsdk_TrkSurf",
           "What the player's car stands on",
           [](const Drive &d, int) { return d.inWorld() ? 1.0 : -1.0; });
    moving("PlayerCarIdx", irsdk_int, "", "Index of the player's car",
           [](const Drive &d, int) { return double(d.weekend().playerCarIdx); });
    fixed("PlayerCarTeamIncidentCount", irsdk_int, "", "Incidents of the player's team");
    fixed("PlayerCarMyIncidentCount", irsdk_int, "", "Incidents of the player");
    fixed("PlayerCarDriverIncidentCount", irsdk_int, "", "Incidents of the team's driver");
    fixed("PlayerCarWeightPenalty", irsdk_float, "kg", "Weight penalty of the player");
    fixed("PlayerCarPowerAdjust", irsdk_float, "%", "Power adjustment of the player");
    fixed("PlayerCarDryTireSetLimit", irsdk_int, "", "Dry tyre sets allowed");
    fixed("PlayerCarTowTime", irsdk_float, "s", "Time left of being towed");
    moving("PlayerCarInPitStall", irsdk_bool, "", "The player's car stands in its stall",
           [](const Drive &d, int) { return double(d.surface() == InPitStall); });
    fixed("PlayerCarPitSvStatus", irsdk_int, "irsdk_PitSvStatus", "What keeps the crew");
    fixed("PlayerTireCompound", irsdk_int, "", "Tyre compound of the player's car");
    fixed("PlayerFastRepairsUsed", irsdk_int, "", "Fast repairs used by the player");
    moving("PaceMode", irsdk_int, "irsdk_PaceMode", "How the field is led",
           [](const Drive &d, int) { return d.sessionState() < StateRacing ? 0.0 : 4.0; });
    moving("OnPitRoad", irsdk_bool, "", "The player's car is between the pit cones",
           [](const Drive &d, int) { return double(d.onPitRoad()); });
    moving("EnterExitReset", irsdk_int, "", "What the reset key does: 0 enter, 1 exit, 2 reset",
           [](const Drive &d, int) { return !d.inCar()   ? 0.0
                                         : d.onPitRoad() ? 1.0
                                                         : 2.0; });
}

void DemoVariables::addLaps()
{
    moving("Lap", irsdk_int, "", "Laps started",
           [](const Drive &d, int) { return double(d.laps().lap()); });
    moving("LapCompleted", irsdk_int, "", "Laps completed",
           [](const Drive &d, int) { return double(d.laps().completed()); });
    moving("LapDist", irsdk_float, "m", "Distance since the start/finish line",
           [](const Drive &d, int) { return d.lapDistance(); });
    moving("LapDistPct", irsdk_float, "%", "Distance since the line as part of the lap",
           [](const Drive &d, int) { return d.lapFraction(); });
    fixed("CarDistAhead", irsdk_float, "m", "Distance to the next car ahead", 500000);
    fixed("CarDistBehind", irsdk_float, "m", "Distance to the next car behind", 500000);
    moving("LapBestLap", irsdk_int, "", "Number of the player's best lap",
           [](const Drive &d, int) { return double(d.laps().bestLap()); });
    moving("LapBestLapTime", irsdk_float, "s", "Time of the player's best lap",
           [](const Drive &d, int) { return d.laps().best(); });
    moving("LapLastLapTime", irsdk_float, "s", "Time of the player's last lap",
           [](const Drive &d, int) { return d.laps().last(); });
    moving("LapCurrentLapTime", irsdk_float, "s", "Running time of the player's lap",
           [](const Drive &d, int) { return d.laps().current(); });
    fixed("LapLasNLapSeq", irsdk_int, "", "Clean laps in a row, for the average");
    fixed("LapLastNLapTime", irsdk_float, "s", "Average time of the last laps");
    fixed("LapBestNLapLap", irsdk_int, "", "Last lap of the best average");
    fixed("LapBestNLapTime", irsdk_float, "s", "Best average time");

    // Here, the player's own best lap is always the best one.
    struct Delta {
        const char *name;
        const char *desc;
        bool toLast;
    };
    for (const Delta &delta : {Delta{"LapDeltaToBestLap", "best lap", false},
                               Delta{"LapDeltaToOptimalLap", "optimal lap", false},
                               Delta{"LapDeltaToSessionBestLap", "session's best lap", false},
                               Delta{"LapDeltaToSessionOptimalLap", "session's optimal", false},
                               Delta{"LapDeltaToSessionLastlLap", "session's last lap", true}}) {
        const QByteArray name(delta.name);
        const QByteArray desc(delta.desc);
        moving(
            name, irsdk_float, "s", "Time lost to the " + desc,
            [](const Drive &d, int toLast) {
                return toLast ? d.laps().deltaToLast() : d.laps().deltaToBest();
            },
            delta.toLast);
        moving(
            name + "_DD", irsdk_float, "s/s", "Rate of losing to the " + desc,
            [](const Drive &d, int toLast) { return toLast ? d.lossToLast() : d.lossToBest(); },
            delta.toLast);
        moving(name + "_OK", irsdk_bool, "", "There is a time for the " + desc,
               [](const Drive &d, int) { return double(d.laps().hasLast()); });
    }
}

void DemoVariables::addWeather()
{
    const auto trackTemperature = [](const Drive &d, int) { return d.weekend().trackTemperature; };
    moving("TrackTemp", irsdk_float, "C", "Track temperature, older name", trackTemperature);
    moving("TrackTempCrew", irsdk_float, "C", "Track temperature as measured by the crew",
           trackTemperature);
    moving("AirTemp", irsdk_float, "C", "Air temperature",
           [](const Drive &d, int) { return d.weekend().airTemperature; });
    fixed("TrackWetness", irsdk_int, "irsdk_TrackWetness", "How wet the track is", 1);
    moving("Skies", irsdk_int, "", "0 clear, 1 partly cloudy, 2 mostly cloudy, 3 overcast",
           [](const Drive &d, int) { return double(d.weekend().skies); });
    moving("AirDensity", irsdk_float, "kg/m^3", "Air density",
           [](const Drive &d, int) { return d.weekend().airDensity; });
    moving("AirPressure", irsdk_float, "Pa", "Air pressure",
           [](const Drive &d, int) { return d.weekend().airPressure; });
    moving("WindVel", irsdk_float, "m/s", "Wind speed",
           [](const Drive &d, int) { return d.weekend().windSpeed; });
    moving("WindDir", irsdk_float, "rad", "Wind direction",
           [](const Drive &d, int) { return d.weekend().windDirection; });
    moving("RelativeHumidity", irsdk_float, "%", "Relative humidity",
           [](const Drive &d, int) { return d.weekend().humidity; });
    fixed("FogLevel", irsdk_float, "%", "Fog");
    fixed("Precipitation", irsdk_float, "%", "Precipitation");
    fixed("SolarAltitude", irsdk_float, "rad", "Sun above the horizon", 0.71);
    fixed("SolarAzimuth", irsdk_float, "rad", "Sun clockwise from north", 2.65);
    fixed("WeatherDeclaredWet", irsdk_bool, "", "Rain tyres are allowed");
}
