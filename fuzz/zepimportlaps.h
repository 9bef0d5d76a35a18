#pragma once

class ByteSource;

// What `zepimport` makes of laps that hold anything. Each checks what it promises, see require().

/// Exports laps to CSV and reads it back: rows, titles, and samples to the bit.
void exportCsv(ByteSource *source);
/// Exports laps to JSON and reads it back.
void exportJson(ByteSource *source);
/// Names of channels as names of fields: each once, and fit for a MAT file.
void nameFields(ByteSource *source);
/// Compares two laps, and draws the difference.
void compareLaps(ByteSource *source);
/// Packs samples for a page, and unpacks them.
void packSamples(ByteSource *source);
/// Gathers what a page shows of laps.
void reportLaps(ByteSource *source);
