#include "plugin/boundedimport.h"

#include "ibt/ibtfile.h"
#include "ibt/ibtlimits.h"
#include "plugin/laplist.h"
#include "reader/irtelemetryreader.h"

#include <limits>

namespace {

/// The memory of \a laps, in bytes.
qint64 bytesOf(const CollectedLaps &laps)
{
    constexpr qint64 SampleBytes = 8;
    constexpr qint64 ChannelBytes = 256; // besides its samples
    constexpr qint64 LapBytes = 2 * 1024;
    return laps.ticks * laps.channels * SampleBytes
        + laps.laps * (laps.channels * ChannelBytes + LapBytes);
}

} // namespace

const qint64 BoundedImport::MadeUncounted = 32 * IbtLapMemory::MB;

bool BoundedImport::run()
{
    if (readAll(Laps::Made, MadeUncounted))
        return true;

    m_laps->clear();
    constexpr qint64 Countable = std::numeric_limits<qint64>::max() / 4;
    if (!readAll(Laps::Counted, Countable))
        return false;
    const qint64 allowed = qMax<qint64>(IbtLapMemory::AlwaysAllowed,
                                        m_recordBytes * IbtLapMemory::AllowedPerRecordByte);
    if (m_lapBytes > allowed)
        return false;

    return readAll(Laps::Made, allowed);
}

/// One pass through all records. False as soon as the laps need more than \a limit, if they can get
/// out of proportion.
bool BoundedImport::readAll(Laps laps, qint64 limit)
{
    start(laps);
    const irsdk_header &header = m_file->header();
    while (char *record = m_file->nextRecord()) {
        m_reader->prepareTick();
        m_reader->getRawData(&header, m_file->varHeaders(), record);
        m_reader->processData();
        if (laps == Laps::Made && m_reader->isMyLapReady())
            m_laps->add(*m_reader->myLap());

        m_recordBytes += header.bufLen;
        const CollectedLaps collected = m_reader->collectedLaps();
        m_lapBytes = qMax(m_lapBytes, bytesOf(collected));
        if (m_lapBytes > limit && canGetOutOfProportion(collected.channels))
            return false;
    }
    return true;
}

void BoundedImport::start(Laps laps)
{
    m_recordBytes = 0;
    m_lapBytes = 0;
    m_file->rewindRecords();
    m_reader->resize(iRTelemetryReader::CarCount);
    m_reader->setDiskLoading(true);
    m_reader->updateCarList();
    m_reader->compileVariables(&m_file->header(), m_file->varHeaders());
    if (laps == Laps::Counted)
        m_reader->startCounting();
}

/// Whether laps of \a channels channels can need more than AllowedPerRecordByte. They need the most
/// when a lap ends every other tick.
bool BoundedImport::canGetOutOfProportion(qint64 channels) const
{
    CollectedLaps most;
    most.laps = 1;
    most.ticks = 2;
    most.channels = channels;
    const qint64 bytes = m_file->header().bufLen * most.ticks;
    return bytesOf(most) > IbtLapMemory::AllowedPerRecordByte * bytes;
}
