#pragma once

#include "inspect/finding.h"

#include <QPair>
#include <QVector>

#include <vector>

class QIODevice;
class QString;

/// Which records of a recording are not what the simulator wrote, and how to write a file without
/// them. If it makes the same laps, no lap is lost or changed by them.
struct RecordRepair {
    std::vector<qint64> foreign{}; ///< in order; the record before is repeated instead of each
    std::vector<qint64> renumbered{}; ///< in order; of these only the session's number is repeated
    int sessionOffset = -1; ///< where a record has it
    QVector<QPair<qint64, qint64>> missing{}; ///< before a record so many are missing
    QVector<qint64> repeated{}; ///< records that are left out

    /// Whether there is something to repair, and little enough to know what was there.
    bool isPossible(qint64 records) const;
    /// Writes \a fileName with its records repaired to \a to. False if that fails.
    bool write(const QString &fileName, QIODevice *to) const;
};

/// \a findings if laps are as they would be with sound records: what is only about records is no
/// damage.
QVector<Finding> findingsOutsideOfLaps(QVector<Finding> findings);
