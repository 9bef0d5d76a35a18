#pragma once

#include "ibt/ibtformat.h"
#include "reader/cartracker.h"
#include "reader/pendingtick.h"
#include "reader/variablelayout.h"

#include <QString>
#include <QVector>

#include <optional>

/// How much came of raw records, in finished laps and in those being recorded.
struct CollectedLaps {
    qint64 laps = 0; ///< that have a tick
    qint64 ticks = 0;
    qint64 channels = 0; ///< to which each tick adds a sample

    void add(qint64 ticksOfLap)
    {
        laps += ticksOfLap > 0 ? 1 : 0;
        ticks += ticksOfLap;
    }
};

/// The records of the player's car for as long as nobody looks at their values.
///
/// Once a variable table is compiled, the values of a tick are either here, as a record, or in the
/// car's sample, never in both; and the latest ticks of the car's laps are records as well.
/// settle() puts all of them where they would be without a compiled table. What is called for every
/// tick is inline.
class RawRecords
{
public:
    // --- The table

    /// Records described by \a header and \a varHeaders, both by address, are taken from now on.
    /// Call settle() before: what is pending is read with the table that it came with.
    void compile(const irsdk_header *header, const irsdk_varHeader *varHeaders);
    bool isCompiled() const { return m_header != nullptr; }
    bool isCompiled(const irsdk_header *header, const irsdk_varHeader *varHeaders) const
    {
        return header == m_header && varHeaders == m_varHeaders;
    }

    // --- The tick

    /// Takes a copy of \a record, of the compiled table, as the values of the tick. \a names and
    /// \a units are those of the table's variables; they count when the first record comes.
    void takeTick(const char *record, const QVector<QString> &names, const QVector<QString> &units)
    {
        if (!m_layout)
            m_layout.emplace(*m_header, m_varHeaders, names, units);
        m_tick.take(record, *m_layout);
    }
    bool hasTick() const { return m_tick.record() != nullptr; }
    /// The values of the tick, which there has to be.
    RecordSource tick() const { return RecordSource(*m_layout, m_tick.record()); }
    /// Marks the tick as one of the player's car, see VariableLayout::fullTelemetryName().
    void markTick() { m_tick.mark(); }
    void dropTick() { m_tick.clear(); }

    // --- Laps

    /// Appends the tick, which there has to be, to \a lap.
    void appendTickTo(GrowingLap *lap)
    {
        PendingRecords &pending = lap->pending;
        if (m_isCounting)
            return pending.count();
        pending.append(m_tick.record(), *m_layout);
        if (pending.isFull())
            pending.flushInto(lap, *m_layout);
    }
    /// Brings what is pending of \a lap into it.
    void flush(GrowingLap *lap) const;
    /// Brings the tick into the sample of \a car and all pending records into its laps. While
    /// records are counted it does nothing.
    void settle(CarTracker *car);

    // --- Counting

    /// From now on ticks of laps are counted, not kept. Laps stay as they are.
    void startCounting() { m_isCounting = true; }
    bool isCounting() const { return m_isCounting; }
    /// Adds \a lap, which is being closed, to collected().
    void addFinished(const GrowingLap &lap) { m_finishedLaps.add(lap.pending.recorded()); }
    /// What came of all records since the start. \a car is null if there is no player's car.
    CollectedLaps collected(const CarTracker *car) const
    {
        CollectedLaps laps = m_finishedLaps;
        if (!m_layout || !car)
            return laps;
        if (!car->lapReady)
            laps.add(car->lap.pending.recorded());
        laps.add(car->nextLap.pending.recorded());
        laps.channels = qint64(m_layout->columns().size());
        return laps;
    }

    /// Drops the tick and the count, and ends counting. The table stays.
    void restart();

private:
    const irsdk_header *m_header = nullptr;
    const irsdk_varHeader *m_varHeaders = nullptr;
    std::optional<VariableLayout> m_layout; ///< made of the table when the first record comes
    PendingTick m_tick;
    CollectedLaps m_finishedLaps;
    bool m_isCounting = false;
};
