#pragma once

#include <QtGlobal>

#include <vector>

namespace ZEP {
class Lap;
} // namespace ZEP
class VariableLayout;

/// The records of a lap that are not yet in its channels.
///
/// Appending a record to a lap value by value takes far longer than keeping it and turning many
/// into columns at once, one channel after the other. Call flushInto() before anybody looks at the
/// lap.
class PendingRecords
{
public:
    bool isEmpty() const { return m_count == 0; }
    /// Records of the lap so far, those that have been flushed included.
    qint64 recorded() const { return m_recorded; }

    /// Appends a copy of \a record. See isFull() afterwards.
    void append(const char *record, const VariableLayout &layout);
    /// Counts a record without keeping it. Counted records cannot be flushed.
    void count();
    /// True when the records should be flushed before more of them take more memory.
    bool isFull() const;
    /// Moves the records into \a lap.
    void flushInto(ZEP::Lap *lap, const VariableLayout &layout);

    /// Drops all records, those that have been counted included.
    void clear();

private:
    void appendColumns(ZEP::Lap *lap, const VariableLayout &layout) const;
    void appendSamples(ZEP::Lap *lap, const VariableLayout &layout) const;

    std::vector<char> m_records;
    qint64 m_count = 0; ///< in m_records, or only counted
    qint64 m_recorded = 0;
};
