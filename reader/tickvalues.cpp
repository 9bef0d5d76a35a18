#include "reader/tickvalues.h"

#include "model/sample.h"
#include "reader/variantnumber.h"

#include <array>

namespace {

/// Slower than this, in the unit of the speed, a car adds no tick.
constexpr float SlowBelow = 1.0f;

} // namespace

const QString &sampleName(LapVariable variable)
{
    using Names = std::array<QString, LapVariableCount>;
    static const Names names = [] {
        Names lowerCase;
        for (std::size_t i = 0; i < LapVariableCount; ++i)
            lowerCase[i] = QString::fromLatin1(LapVariableNames[i]).toLower();
        return lowerCase;
    }();
    return names[std::size_t(variable)];
}

bool SampleSource::has(LapVariable variable) const
{
    return m_sample.containsValue(sampleName(variable));
}

int SampleSource::toInt(LapVariable variable) const
{
    return intOf(m_sample.value(sampleName(variable)).value);
}

float SampleSource::toFloat(LapVariable variable) const
{
    return m_sample.value(sampleName(variable)).value.toFloat();
}

bool SampleSource::toBool(LapVariable variable) const
{
    return boolOf(m_sample.value(sampleName(variable)).value);
}

bool SampleSource::isSlow() const
{
    const QString name = QStringLiteral("Speed");
    return m_sample.containsValue(name) && SlowBelow > m_sample.value(name).value.toFloat();
}
