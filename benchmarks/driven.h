#pragma once

#include <QString>

/// A recording made for measuring. The car drives any number of equal laps, or stays in its garage.
struct DrivenRecording {
    int variables; ///< at least 12
    qint64 records;
    int lapTicks; ///< 0: never leaves the garage

    /// Laps that an import returns, including the unfinished last one.
    int laps() const;
    /// Ticks in those laps.
    qint64 recordedTicks() const;
    /// Writes the file \a fileName; false if that fails.
    bool write(const QString &fileName) const;
};
