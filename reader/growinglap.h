#pragma once

#include "model/lap.h"
#include "reader/pendingrecords.h"

#include <QString>

#include <optional>

class VariableLayout;

/// A lap while it is recorded: its latest ticks may still be records that are not in its channels.
/// Copies carry both, so the two parts of a lap never get out of step.
class GrowingLap : public ZEP::Lap
{
public:
    GrowingLap() = default;
    /// \a lap, with nothing pending.
    GrowingLap(const ZEP::Lap &lap) : ZEP::Lap(lap) { }

    /// True when a tick of the lap has been recorded.
    bool isStarted() const { return !isEmpty() || !pending.isEmpty(); }

    /// The greatest fraction of the lap so far; none at its start. It is the lap's calculated value
    /// maxLapDistPctName() while it is recorded.
    std::optional<double> maxLapDistPct() const
    {
        return m_pendingMaxLapDistPct ? double(*m_pendingMaxLapDistPct) : flushedMaxLapDistPct();
    }
    /// Takes \a lapDistPct for the greatest fraction if it is. With \a isPending it becomes a
    /// calculated value only in flush(), since setting one at every tick is slow.
    void raiseMaxLapDistPct(float lapDistPct, bool isPending);

    /// Moves everything that is pending into the lap.
    void flush(const VariableLayout &layout);
    /// Removes all channels, values and records; the header's fixed fields stay.
    void clear();

    static const QString &maxLapDistPctName();

    /// Records of the lap that are not yet in its channels.
    PendingRecords pending;

private:
    std::optional<double> flushedMaxLapDistPct() const;

    std::optional<float> m_pendingMaxLapDistPct; ///< where it is greater than the calculated value
};
