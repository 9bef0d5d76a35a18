#pragma once

#include "benchmarks/floor.h"
#include "benchmarks/importing.h"
#include "benchmarks/inputs.h"
#include "tests/reference/importfile.h"

#include <QString>

// Each check returns what is wrong, or a null string.

/// The numbers of laps and ticks are as expected, if known. The first, middle and last sample of
/// every channel of every lap is the value in the file at that tick.
QString checkLaps(const QByteArray &fileName, const Laps &laps,
                  const std::optional<ExpectedLaps> &expected);
/// Both importers return the same channels.
QString checkSame(const Laps &laps, const reference::Import &reference);
/// The columns contain the first and the last record.
QString checkFloor(const QByteArray &fileName, const FloorColumns &floor);
