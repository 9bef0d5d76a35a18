#pragma once

#include "analysis/laps.h"
#include "model/lapheader.h"

#include <QDateTime>
#include <QString>

/// Where, in what, by whom and when the laps of a file were driven; texts are empty if not known.
struct SessionSummary {
    QString track;
    QString configuration; ///< layout of the track
    QString car;
    QString driver;
    QString session; ///< as the source names it, else sessionName()
    QDateTime date; ///< of the lap, else when the file was last changed
    bool isFileDate = false; ///< \a date is that of the file
};

/// "race", "practice" and so on; empty if it is not set.
QString sessionName(ZEP::Session session);

/// As the representative one of \a laps, which are not empty, tells. \a fileDate is the date where
/// no lap has one.
SessionSummary sessionSummary(const Laps &laps, const QDateTime &fileDate);
