#pragma once

#include "ibt/ibtformat.h"

#include <QString>

class FindingList;

/// Watches the time from record to record: where ticks are missing, where it runs backwards, and
/// whether it is one at all.
class TickGaps
{
public:
    /// \a table has \a header.numVars entries.
    TickGaps(const irsdk_header &header, const irsdk_varHeader *table);

    /// Whether records have a time to watch.
    bool isKnown() const { return m_timeOffset >= 0; }

    /// The next \a record; nothing is seen of it unless isKnown().
    void add(const char *record);
    /// Whether the last record is of this time, in seconds, as far as its clock tells ticks apart.
    bool endsAt(double time) const;
    /// Whether the last record has a time.
    bool hasLast() const { return m_hasBefore; }
    /// The time of the last record that has one, in seconds; 0 if none has.
    double last() const { return m_time; }
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

    void reportRate(FindingList *findings, const QString &problem) const;
    void report(FindingList *findings, const Event &event, const char *kind,
                const QString &text) const;
    bool isMostSteps(const Event &event) const;

    qint64 m_begin;
    qint64 m_recordSize;
    int m_tickRate;
    int m_timeOffset = -1; ///< of SessionTime in a record
    int m_sessionOffset = -1; ///< of SessionNum
    qint64 m_count = 0;
    qint64 m_timed = 0; ///< records with a time that can be one
    double m_time = 0; ///< of the last one of them
    qint32 m_session = 0;
    bool m_hasBefore = false; ///< the last record has a time
    qint64 m_steps = 0; ///< from one time to a later one
    qint64 m_firstUntimed = -1;
    Event m_gaps;
    Event m_crowds; ///< far less than a tick
    Event m_returns;
    Event m_standstills;
};
