#pragma once

class ByteSource;

// What `zepimport` does with laps of any content. Each function checks its promises with require().

/// Exports laps to CSV and reads it back: rows, titles, and samples to the bit.
void exportCsv(ByteSource *source);
/// Exports laps to JSON and reads it back.
void exportJson(ByteSource *source);
/// Turns names of channels into names of fields: each unique, and valid in a MAT file.
void nameFields(ByteSource *source);
/// Compares two laps, and draws the difference.
void compareLaps(ByteSource *source);
/// Packs samples for a page, and unpacks them.
void packSamples(ByteSource *source);
/// Collects the data that a page shows about laps.
void reportLaps(ByteSource *source);
