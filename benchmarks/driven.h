#pragma once

#include <QString>

/// A recording made for measuring: a car that drives equal laps for as long as one likes, or stands
/// in the garage.
struct DrivenRecording {
    int variables; ///< at least 12
    qint64 records;
    int lapTicks; ///< 0: never leaves the garage

    /// Laps that an import returns, the last and unfinished one included.
    int laps() const;
    /// Ticks that those laps hold.
    qint64 recordedTicks() const;
    /// Writes the file \a fileName; false if that fails.
    bool write(const QString &fileName) const;
};
