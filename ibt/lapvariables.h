// The variables of a recording that decide about laps. Whoever follows laps, or explains why a
// recording has none, asks here.
#pragma once

#include <array>
#include <cstddef>

/// A variable that decides which lap a tick belongs to, or where the lap ends.
enum class LapVariable {
    LapDistPct, ///< the place on the lap; without it no tick is followed
    SessionState, ///< before the start, or racing
    Lap, ///< the number of the lap
    IsOnTrack,
    OnPitRoad,
    LapLastLapTime,
    LapCurrentLapTime,
    SessionNum, ///< the session of the session info that is being driven
};
constexpr std::size_t LapVariableCount = std::size_t(LapVariable::SessionNum) + 1;

/// The names in the order of LapVariable, in the spelling of recordings. Equal names in other
/// letter cases are the same variable.
constexpr std::array<const char *, LapVariableCount> LapVariableNames = {
    "LapDistPct",     "SessionState",      "Lap",        "IsOnTrack", "OnPitRoad",
    "LapLastLapTime", "LapCurrentLapTime", "SessionNum",
};

constexpr const char *lapVariableName(LapVariable variable)
{
    return LapVariableNames[std::size_t(variable)];
}
