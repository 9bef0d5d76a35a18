#include "reader/growinglap.h"

std::optional<double> GrowingLap::flushedMaxLapDistPct() const
{
    if (containsCalculatedValue(maxLapDistPctName()))
        return calculatedValue(maxLapDistPctName()).value.toDouble();
    return std::nullopt;
}

void GrowingLap::raiseMaxLapDistPct(float lapDistPct, bool isPending)
{
    const std::optional<double> max = maxLapDistPct();
    if (max && !(double(lapDistPct) > *max))
        return;
    if (isPending)
        m_pendingMaxLapDistPct = lapDistPct;
    else
        setCalculatedValue(maxLapDistPctName(), lapDistPct, QString());
}

void GrowingLap::flush(const VariableLayout &layout)
{
    if (m_pendingMaxLapDistPct) {
        setCalculatedValue(maxLapDistPctName(), *m_pendingMaxLapDistPct, QString());
        m_pendingMaxLapDistPct.reset();
    }
    pending.flushInto(this, layout);
}

void GrowingLap::clear()
{
    ZEP::Lap::clear();
    pending.clear();
    m_pendingMaxLapDistPct.reset();
}

const QString &GrowingLap::maxLapDistPctName()
{
    static const QString name = QStringLiteral("maxLapDistPct");
    return name;
}
