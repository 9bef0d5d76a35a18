#include "reader/recordtick.h"

#include "model/sample.h"
#include "reader/recordlayout.h"

#include <algorithm>

void RecordTick::take(const char *record, const RecordLayout &layout)
{
    const auto bytes = std::size_t(layout.recordBytes());
    m_record.resize(bytes + 1); // a record of no bytes is a record too
    std::copy_n(record, bytes, m_record.begin());
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
