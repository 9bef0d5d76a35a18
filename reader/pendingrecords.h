#pragma once

#include <QtGlobal>

#include <vector>

namespace ZEP {
class Lap;
} // namespace ZEP
class VariableLayout;

/// The records of a lap that are not yet in its channels.
///
/// Appending a record to a lap value by value costs far more than keeping it and turning many into
/// columns at once, one channel after the other. Whoever looks at the lap calls flushInto() first.
class PendingRecords
{
public:
    bool isEmpty() const { return m_count == 0; }
    /// Records of the lap so far, those that have been flushed included.
    qint64 recorded() const { return m_recorded; }

    /// Takes a copy of \a record. The block may then be full, see isFull().
    void append(const char *record, const VariableLayout &layout);
    /// Counts a record without keeping it. Such a block must not be flushed.
    void count();
    /// True when the block should be flushed before it takes more memory.
    bool isFull() const;
    /// Moves the records into \a lap.
    void flushInto(ZEP::Lap *lap, const VariableLayout &layout);

    /// Takes over all of \a next, which is empty afterwards; drops what the block held.
    void startWith(PendingRecords *next);

private:
    void appendColumns(ZEP::Lap *lap, const VariableLayout &layout) const;
    void appendSamples(ZEP::Lap *lap, const VariableLayout &layout) const;
    void clear();

    std::vector<char> m_records;
    qint64 m_count = 0; ///< in m_records, or only counted
    qint64 m_recorded = 0;
};
