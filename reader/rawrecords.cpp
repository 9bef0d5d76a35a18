#include "reader/rawrecords.h"

void RawRecords::compile(const irsdk_header *header, const irsdk_varHeader *varHeaders)
{
    m_layout.reset();
    m_header = header;
    m_varHeaders = varHeaders;
}

void RawRecords::flush(GrowingLap *lap) const
{
    // Without a layout nothing was ever pending, and counted records are not there.
    if (m_layout && !m_isCounting)
        lap->flush(*m_layout);
}

void RawRecords::settle(CarTracker *car)
{
    // Nobody may look while records are counted, and a tick in a sample would not be counted.
    if (m_isCounting)
        return;
    if (hasTick())
        m_tick.spreadInto(&car->sample, *m_layout);
    flush(&car->lap);
    flush(&car->nextLap);
}

void RawRecords::restart()
{
    m_tick.clear();
    m_finishedLaps = CollectedLaps();
    m_isCounting = false;
}
