#pragma once

#include "analysis/laps.h"
#include "model/lapheader.h"

#include <QDateTime>
#include <QString>

/// Where, in which car, by whom and when the laps of a file were driven. Unknown texts are empty.
struct SessionSummary {
    QString track;
    QString configuration; ///< layout of the track
    QString car;
    QString driver;
    QString session; ///< as the source names it; if it does not, sessionName()
    QDateTime date; ///< of the lap; if it has none, when the file was last changed
    bool isFileDate = false; ///< true if \a date is that of the file
};

/// "race", "practice" and so on; empty if it is not set.
QString sessionName(ZEP::Session session);

/// Taken from the representativeLap() of \a laps, which must not be empty. \a fileDate is the date
/// if that lap has none.
SessionSummary sessionSummary(const Laps &laps, const QDateTime &fileDate);
