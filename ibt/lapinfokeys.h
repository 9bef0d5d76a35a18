// The values of the session info that laps carry. Whoever reads them, or explains why a lap lacks
// one, asks here.
#pragma once

/// What a value has to look like.
enum class LapInfoKind {
    Text,
    Number,
    Measurement, ///< a number and a unit: "3.70 km"
};

/// A value of the session info, and its name in a lap; without one it is a part of the lap's header
/// or of other values.
struct LapInfoKey {
    const char *key;
    const char *name = nullptr;
    LapInfoKind kind = LapInfoKind::Text;
};

/// In "WeekendInfo".
constexpr LapInfoKey LapWeekendKeys[] = {
    {"TrackDisplayName"},
    {"TrackConfigName"},
    {"SessionID", nullptr, LapInfoKind::Number},
    {"SubSessionID", nullptr, LapInfoKind::Number},
    {"TrackNorthOffset", nullptr, LapInfoKind::Measurement},
    {"TrackDisplayShortName", "Track short name"},
    {"TrackCity", "Track city"},
    {"TrackCountry", "Track country"},
    {"TrackNumTurns", "Track turns", LapInfoKind::Number},
    {"TrackSkies", "Skies"},
    {"Official", "Official", LapInfoKind::Number},
    {"Category", "Category"},
    {"TrackLength", "Track length", LapInfoKind::Measurement},
    {"TrackSurfaceTemp", "Track surface temperature", LapInfoKind::Measurement},
    {"TrackAirTemp", "Air temperature", LapInfoKind::Measurement},
    {"WeekendOptions/WeatherTemp", "Weekend temperature", LapInfoKind::Measurement},
};

/// In "DriverInfo".
constexpr LapInfoKey LapFuelKeys[] = {
    {"DriverCarFuelKgPerLtr", nullptr, LapInfoKind::Number},
    {"DriverCarFuelMaxLtr", nullptr, LapInfoKind::Number},
    {"DriverCarMaxFuelPct", nullptr, LapInfoKind::Number},
};

/// In the driver's entry of "DriverInfo/Drivers".
constexpr LapInfoKey LapDriverKeys[] = {
    {"UserName"},
    {"CarScreenName"},
    {"LicColor"},
    {"TeamName", "Team"},
    {"AbbrevName", "Driver abbreviation"},
    {"IRating", "iRating", LapInfoKind::Number},
    {"LicString", "License"},
    {"Initials", "Driver initials"},
    {"UserID", "iRacing UserID", LapInfoKind::Number},
    {"CarPath", "iRacing car path"},
    {"CarClassID", "iRacing car class ID", LapInfoKind::Number},
    {"CarID", "iRacing car ID", LapInfoKind::Number},
    {"CarClassShortName", "Class"},
    {"ClubName", "Club"},
    {"DivisionName", "Division"},
};
