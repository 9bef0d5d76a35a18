#include "reader/rawrecords.h"

void RawRecords::compile(const irsdk_header *header, const irsdk_varHeader *varHeaders)
{
    m_layout.reset();
    m_header = header;
    m_varHeaders = varHeaders;
}

void RawRecords::takeTick(const char *record, const QVector<QString> &names,
                          const QVector<QString> &units)
{
    if (!m_layout)
        m_layout.emplace(*m_header, m_varHeaders, names, units);
    m_tick.take(record, *m_layout);
}

void RawRecords::appendTickTo(GrowingLap *lap)
{
    PendingRecords &pending = lap->pending;
    if (m_isCounting)
        return pending.count();
    pending.append(m_tick.record(), *m_layout);
    if (pending.isFull())
        pending.flushInto(lap, *m_layout);
}

void RawRecords::flush(GrowingLap *lap) const
{
    // Without a layout nothing was ever pending, and counted records are not there.
    if (m_layout && !m_isCounting)
        lap->flush(*m_layout);
}

void RawRecords::settle(CarTracker *car)
{
    if (hasTick())
        m_tick.spreadInto(&car->sample, *m_layout);
    flush(&car->lap);
    flush(&car->nextLap);
}

CollectedLaps RawRecords::collected(const CarTracker *car) const
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

void RawRecords::restart()
{
    m_tick.clear();
    m_finishedLaps = CollectedLaps();
    m_isCounting = false;
}
