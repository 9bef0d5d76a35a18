#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// One column per variable of a recording, as doubles.
struct FloorColumns {
    std::vector<std::unique_ptr<double[]>> columns;
    std::int64_t records = 0;
};

/// Does only what an import cannot leave out: reads the records of \a fileName in blocks through
/// stdio and writes each variable into its own column.
///
/// It knows in advance what an import learns only at the end, the number of records. It has neither
/// laps nor names, it uses the last element of an array as an import does, and it expects a sound
/// recording. As with the laps of an import, every call allocates new columns and hands them out.
/// After any failure, the number of records is 0.
FloorColumns readFloor(const char *fileName);
