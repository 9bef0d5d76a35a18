#include "reader/tickvalues.h"

#include "model/sample.h"
#include "reader/variantnumber.h"

const QString &tickVariableName(TickVariable variable)
{
    // "Speed" has its capital on purpose: recorded names are lower-case, so only a sample that
    // somebody filled by hand holds it.
    static const QString names[TickVariableCount] = {
        QStringLiteral("lapdistpct"),
        QStringLiteral("sessionstate"),
        QStringLiteral("lap"),
        QStringLiteral("isontrack"),
        QStringLiteral("onpitroad"),
        QStringLiteral("laplastlaptime"),
        QStringLiteral("lapcurrentlaptime"),
        QStringLiteral("sessionnum"),
        QStringLiteral("Speed"),
    };
    return names[int(variable)];
}

bool SampleSource::has(TickVariable variable) const
{
    return m_sample.containsValue(tickVariableName(variable));
}

int SampleSource::toInt(TickVariable variable) const
{
    return intOf(m_sample.value(tickVariableName(variable)).value);
}

float SampleSource::toFloat(TickVariable variable) const
{
    return m_sample.value(tickVariableName(variable)).value.toFloat();
}

bool SampleSource::toBool(TickVariable variable) const
{
    return boolOf(m_sample.value(tickVariableName(variable)).value);
}
