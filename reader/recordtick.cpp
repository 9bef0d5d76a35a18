#include "reader/recordtick.h"

#include "model/sample.h"
#include "reader/recordlayout.h"

void RecordTick::take(const char *record, const RecordLayout &layout)
{
    m_record.assign(record, record + layout.recordBytes());
    m_record.resize(m_record.size() + 1); // a record of no bytes is a record too
    m_isTaken = true;
}

void RecordTick::clear()
{
    m_isTaken = false;
    m_isMarked = false;
}

void RecordTick::spreadInto(ZEP::Sample *sample, const RecordLayout &layout)
{
    if (!m_isTaken)
        return;
    layout.addTo(sample, m_record.data());
    if (m_isMarked)
        sample->addValue(RecordLayout::fullTelemetryName(), RecordLayout::FullTelemetry, QString());
    clear();
}
