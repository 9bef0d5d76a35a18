#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// One column per variable of a recording, as doubles.
struct FloorColumns {
    std::vector<std::unique_ptr<double[]>> columns;
    std::int64_t records = 0;
};

/// What an import cannot do without, and no more: reads the records of \a fileName in blocks
/// through stdio and writes each variable into a column of its own.
///
/// It knows beforehand what an import learns only at the end (how many records there are), it has
/// neither laps nor names, it uses the last element of an array as an import does, and it expects
/// a sound recording. The columns are allocated anew and handed out, as the laps of an import are.
/// No records on any failure.
FloorColumns readFloor(const char *fileName);
