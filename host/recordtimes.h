#pragma once

#include "ibt/ibtformat.h"

#include <QString>

#include <optional>

class FindingList;

/// Watches the time from record to record: where ticks are missing, and where it runs backwards.
class RecordTimes
{
public:
    /// \a table has \a header.numVars entries.
    RecordTimes(const irsdk_header &header, const irsdk_varHeader *table);

    /// Whether records have a time to watch.
    bool isKnown() const { return m_timeOffset >= 0; }

    /// The next \a record.
    void add(const char *record);
    /// Adds what was seen to \a findings.
    void report(FindingList *findings) const;

private:
    /// What happened more than once, and where it did first.
    struct Event {
        qint64 count = 0;
        qint64 record = 0;
        double before = 0; ///< time of the record in front of it, in seconds
        double after = 0;
        double seconds = 0; ///< of all of them

        void add(qint64 atRecord, double from, double to);
    };

    void report(FindingList *findings, const Event &event, const char *kind,
                const QString &text) const;

    qint64 m_begin;
    qint64 m_recordSize;
    int m_tickRate;
    int m_timeOffset = -1; ///< of SessionTime in a record
    int m_sessionOffset = -1; ///< of SessionNum
    qint64 m_count = 0;
    double m_time = 0; ///< of the last record
    qint32 m_session = 0;
    Event m_gaps;
    Event m_returns;
};
