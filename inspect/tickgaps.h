#pragma once

#include "ibt/ibtformat.h"
#include "inspect/findingkind.h"

#include <QPair>
#include <QString>
#include <QVector>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

class FindingList;

/// Watches the time from record to record: where ticks are missing, where it goes backwards, and
/// which records do not belong between their neighbours.
///
/// A record that does not follow the one before is in doubt. If the time then goes on as if it had
/// fitted, or goes on nowhere, it is unsound. If a few records in a row follow it, the time has
/// really jumped.
class TickGaps
{
public:
    /// Called with the number of a record, from 0. It has the right time if only its session
    /// \a isOther.
    using Unsound = std::function<void(qint64 record, bool isOther)>;

    /// \a table has \a header.numVars entries. \a unsound hears of each record that has a time but
    /// does not belong where it is.
    TickGaps(const irsdk_header &header, const irsdk_varHeader *table, Unsound unsound);

    /// Where a record has the number of its session; -1 if it has none.
    int sessionOffset() const { return m_layout.sessionOffset; }
    /// Whether records have a time to watch.
    bool isKnown() const { return m_layout.timeOffset >= 0; }

    /// The next \a record; nothing is seen of it unless isKnown().
    void add(const char *record);
    /// The next record is unsound for another reason.
    void skip() { ++m_count; }
    /// No record follows. \a endTime is when the recording should end, in seconds, if it is known.
    void end(std::optional<double> endTime);

    /// Whether the last record has this time, in seconds, to within a tick or so.
    bool endsAt(double time) const;
    /// Whether the last record has a time.
    bool hasLast() const { return m_hasLast; }
    /// The time of the last record that has one, in seconds; 0 if none has.
    double last() const { return m_last.time; }
    /// How many records are missing between records; 0 if the rate is unknown. A simulator that is
    /// slow for a moment leaves out time, but counts on.
    qint64 missingRecords() const { return m_missingRecords; }
    /// The records before which they are missing, and how many there; not all if there are many.
    const QVector<QPair<qint64, qint64>> &missing() const { return m_missing; }
    /// How many records have the time of the one before.
    qint64 standstills() const { return m_standstills.count; }
    /// The numbers of the sessions that are driven; 0 if records have none.
    const QVector<int> &sessions() const { return m_sessions; }
    /// These records; not all if there are many.
    const QVector<qint64> &repeated() const { return m_repeated; }
    /// Adds what was seen to \a findings.
    void report(FindingList *findings) const;

private:
    /// Where the times are.
    struct Layout {
        qint64 begin = 0; ///< of the records, in the file
        qint64 recordSize = 0;
        int timeOffset = -1; ///< of SessionTime in a record
        int sessionOffset = -1; ///< of SessionNum
        int idOffset = -1; ///< of SessionUniqueID
        int tickOffset = -1; ///< of SessionTick
    };
    /// When a record was written.
    struct Tick {
        double time = 0;
        qint32 session = 0; ///< every session has a clock of its own
        qint32 id = 0;
        qint32 tick = 0;
        qint64 record = 0; ///< from 0
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

    static bool isSameClock(const Tick &one, const Tick &other);

    void learnStep();
    void follow(const Tick &tick);
    void believe();
    void trust(const Tick &tick);
    void addStandstill(const Tick &tick);
    void giveUp(std::size_t count);
    bool isNext(const Tick &before, const Tick &tick) const;
    double tolerance() const;
    void reportRate(FindingList *findings) const;
    void reportGaps(FindingList *findings) const;
    void report(FindingList *findings, const Event &event, FindingKind kind, const QString &text,
                const QString &lost = QString()) const;

    // Many members: what is trusted, what is in doubt, and what was seen.
    Layout m_layout;
    Unsound m_unsound;
    int m_tickRate; ///< ticks per second, as the header has it
    bool m_isRateWrong = false; ///< the records have another one
    double m_step; ///< seconds from tick to tick; 0 if it is unknown
    bool m_isStepKnown = false; ///< as far as it can be
    std::vector<Tick> m_first; ///< until then, all records
    qint64 m_count = 0;
    QVector<int> m_sessions;
    Tick m_trusted; ///< the last record that nobody doubts
    bool m_hasTrusted = false;
    std::vector<Tick> m_doubtful; ///< the records with a time after it
    std::size_t m_chain = 0; ///< how many of them, from the end, follow each other
    Tick m_last; ///< the last record that has a time
    bool m_hasLast = false; ///< the last record has one
    bool m_hasSteps = false; ///< the time advances
    qint64 m_untimed = 0;
    qint64 m_firstUntimed = -1;
    qint64 m_missingRecords = 0;
    QVector<QPair<qint64, qint64>> m_missing;
    QVector<qint64> m_repeated;
    Event m_gaps;
    Event m_returns;
    Event m_standstills;
};
