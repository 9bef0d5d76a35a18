#pragma once

#include "benchmarks/floor.h"
#include "benchmarks/importing.h"
#include "benchmarks/inputs.h"
#include "tests/reference/importfile.h"

#include <QString>

// Each check returns what is wrong, or a null string.

/// Laps and ticks are as expected where that is known, and the first, middle and last sample of
/// every channel of every lap is what the file holds at that tick.
QString checkLaps(const QByteArray &fileName, const Laps &laps,
                  const std::optional<ExpectedLaps> &expected);
/// Both importers give the same channels.
QString checkSame(const Laps &laps, const reference::Import &reference);
/// The first and the last record are in the columns.
QString checkFloor(const QByteArray &fileName, const FloorColumns &floor);
