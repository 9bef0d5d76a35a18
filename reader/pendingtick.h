#pragma once

#include <vector>

namespace ZEP {
class Sample;
}
class VariableLayout;

/// The values of a tick while they are still a raw record that nobody wants to see by name.
class PendingTick
{
public:
    /// Takes a copy of \a record.
    void take(const char *record, const VariableLayout &layout);
    /// Adds the full-telemetry value to the tick.
    void mark() { m_isMarked = true; }
    void clear();

    /// The record; null when the tick has none, and its values are in a sample.
    const char *record() const { return m_isTaken ? m_record.data() : nullptr; }
    /// Moves the values into \a sample, if there are any.
    void spreadInto(ZEP::Sample *sample, const VariableLayout &layout);

private:
    std::vector<char> m_record;
    bool m_isTaken = false;
    bool m_isMarked = false;
};
