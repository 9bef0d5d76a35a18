// Limits of recordings that both sides have to know: who imports a recording and who explains why
// it cannot be imported. They are here because the plug-in and its hosts share nothing else about
// recordings.
#pragma once

#include <cstdint>

/// Cars that a session can have; their numbers run from 0.
constexpr int IbtCarCount = 64;

/// True for the number of one of \a carCount cars.
constexpr bool isIbtCarIdx(int carIdx, int carCount = IbtCarCount)
{
    return carIdx >= 0 && carIdx < carCount;
}

/// The memory that the laps of a recording may take, in bytes: the larger of AlwaysAllowed and
/// AllowedPerRecordByte for each byte of its records.
///
/// Variables laid over each other, or a lap closed every other tick, could make terabytes of a
/// small file. Variables side by side make at most 8 bytes of each byte.
namespace IbtLapMemory {
constexpr std::int64_t MB = std::int64_t(1024) * 1024;
constexpr std::int64_t AlwaysAllowed = 256 * MB;
constexpr std::int64_t AllowedPerRecordByte = 64;
} // namespace IbtLapMemory
