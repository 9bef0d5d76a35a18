#include "reader/pendingtick.h"

#include "model/sample.h"
#include "reader/variablelayout.h"

#include <algorithm>

void PendingTick::take(const char *record, const VariableLayout &layout)
{
    const auto bytes = std::size_t(layout.recordBytes());
    m_record.resize(bytes + 1); // a record of no bytes is a record too
    std::copy_n(record, bytes, m_record.begin());
    m_isTaken = true;
}

void PendingTick::clear()
{
    m_isTaken = false;
    m_isMarked = false;
}

void PendingTick::spreadInto(ZEP::Sample *sample, const VariableLayout &layout)
{
    if (!m_isTaken)
        return;
    layout.addTo(sample, m_record.data());
    if (m_isMarked)
        sample->addValue(VariableLayout::fullTelemetryName(), VariableLayout::FullTelemetry,
                         QString());
    clear();
}
