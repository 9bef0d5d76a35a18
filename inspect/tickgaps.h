#pragma once

#include "ibt/ibtformat.h"
#include "inspect/findingkind.h"

#include <QString>

class FindingList;

/// Watches the time from record to record: where ticks are missing, where it goes backwards, and
/// whether it is a time at all.
class TickGaps
{
public:
    /// \a table has \a header.numVars entries.
    TickGaps(const irsdk_header &header, const irsdk_varHeader *table);

    /// Whether records have a time to watch.
    bool isKnown() const { return m_layout.timeOffset >= 0; }

    /// The next \a record; nothing is seen of it unless isKnown().
    void add(const char *record);
    /// Whether the last record has this time, in seconds, to within a tick or so.
    bool endsAt(double time) const;
    /// Whether the last record has a time.
    bool hasLast() const { return m_hasBefore; }
    /// The time of the last record that has one, in seconds; 0 if none has.
    double last() const { return m_time; }
    /// Adds what was seen to \a findings.
    void report(FindingList *findings) const;

private:
    /// Where the times are.
    struct Layout {
        qint64 begin = 0; ///< of the records, in the file
        qint64 recordSize = 0;
        int timeOffset = -1; ///< of SessionTime in a record
        int sessionOffset = -1; ///< of SessionNum
    };
    /// What happened once or more, and where it did first.
    struct Event {
        qint64 count = 0;
        qint64 record = 0;
        double before = 0; ///< time of the record before it, in seconds
        double after = 0;
        double seconds = 0; ///< of all of them

        void add(qint64 atRecord, double from, double to);
    };

    void reportRate(FindingList *findings) const;
    void reportGaps(FindingList *findings) const;
    void report(FindingList *findings, const Event &event, FindingKind kind,
                const QString &text) const;
    bool isRateTooHigh() const { return isMostSteps(m_gaps); }
    bool isMostSteps(const Event &event) const;

    Layout m_layout;
    int m_tickRate; ///< ticks per second, as the header has it
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
