// Compares the laps that the product makes of a recording with those of the plain importer.
#pragma once

#include "model/lap.h"
#include "model/sample.h"
#include "tests/reference/lap.h"

#include <QHash>
#include <QUuid>
#include <QVector>

/// Finds the first difference between laps of both importers, and says where it is.
///
/// Numbers are compared by their bits, except that all NaNs of calculated channels count as one.
/// The ids of laps and stints are random. So one object compares all laps of a run, and remembers
/// which id of one importer belongs to which id of the other.
class LapComparison
{
public:
    // All results are empty if nothing differs.

    QString difference(const QVector<ZEP::Lap *> &laps, const QVector<reference::Lap> &expected);
    QString difference(const ZEP::Lap &lap, const reference::Lap &expected);
    QString difference(const ZEP::Sample &sample, const reference::Sample &expected);
    QString difference(const QUuid &id, const QUuid &expected);

private:
    QString headerDifference(const ZEP::Lap &lap, const reference::Lap &expected);

    QHash<QUuid, QUuid> m_expectedIds; ///< by the product's id
    QHash<QUuid, QUuid> m_ids; ///< the other way round
};

/// The first difference in which laps share channels with each other; empty if there is none.
QString sharingDifference(const QVector<ZEP::Lap *> &laps, const QVector<reference::Lap> &expected);
