#pragma once

#include "inspect/recordvalues.h"
#include "inspect/tickgaps.h"
#include "inspect/variableinspection.h"

#include <optional>
#include <vector>

/// Watches the records of a recording, one after the other: which contain something, and which
/// are not what the simulator wrote there.
class RecordWatch
{
public:
    /// \a table has \a header.numVars entries.
    RecordWatch(const irsdk_header &header, const irsdk_varHeader *table);

    void add(const char *record);
    /// No record follows. \a endTime is when the recording should end, in seconds, if it is known.
    void end(std::optional<double> endTime);

    /// How many records were added.
    qint64 count() const { return m_count; }
    /// How many of them contain something, or come before such a one.
    qint64 filled() const { return m_count - m_empty; }
    const TickGaps &times() const { return m_times; }
    /// The numbers of the records that are not what the simulator wrote there, from 0, in order.
    const std::vector<qint64> &foreign() const { return m_foreign; }
    /// Those of them of which only the session's number is another.
    const std::vector<qint64> &renumbered() const { return m_others; }
    const UsedBytes &used() const { return m_used; }
    /// Adds what was seen to \a findings.
    void report(FindingList *findings) const;

private:
    void addFilled(const char *record);
    void reportForeign(FindingList *findings) const;

    qint64 m_begin; ///< of the records, in the file
    qint64 m_recordSize;
    qint64 m_count = 0;
    qint64 m_empty = 0; ///< records of zeros, the latest ones
    std::vector<qint64> m_foreign; ///< before the end in any order, and some of them twice
    std::vector<qint64> m_others; ///< in order; of another session, but of the right time
    std::vector<qint64> m_overwritten; ///< in order
    TickGaps m_times;
    RecordValues m_values;
    UsedBytes m_used;
    std::vector<char> m_before; ///< the record before the last one; empty if there is none
    std::vector<char> m_last;
};
