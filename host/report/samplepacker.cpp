#include "host/report/samplepacker.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace {

void appendNumber(QByteArray &bytes, quint64 number)
{
    constexpr quint64 lowBits = 0x7f;
    while (number > lowBits) {
        bytes.append(static_cast<char>((number & lowBits) | (lowBits + 1)));
        number >>= 7;
    }
    bytes.append(static_cast<char>(number));
}

bool isMissing(double sample)
{
    constexpr double limit = 1e300; // ranges stay finite
    return !(std::abs(sample) < limit);
}

} // namespace

SamplePacker::SamplePacker(const QVector<QVector<double>> &laps, double parts, double longestStep)
{
    constexpr double exactBelow = 1e9;
    bool isEmpty = true;
    double greatest = 0;
    for (const QVector<double> &samples : laps) {
        for (const double sample : samples) {
            if (isMissing(sample))
                continue;
            m_base = isEmpty ? sample : std::min(m_base, sample);
            greatest = isEmpty ? sample : std::max(greatest, sample);
            m_isWhole = m_isWhole && sample == std::trunc(sample) && std::abs(sample) < exactBelow;
            isEmpty = false;
        }
    }
    constexpr double smallest = 1e-290; // steps stay above zero
    if (!m_isWhole) {
        const double step = std::min((greatest - m_base) / parts, longestStep);
        m_step = std::pow(10.0, std::floor(std::log10(std::max(step, smallest))));
    }
    for (const QVector<double> &samples : laps)
        append(samples);
}

void SamplePacker::append(const QVector<double> &samples)
{
    qint64 last = 0;
    for (const double sample : samples) {
        if (isMissing(sample)) {
            appendNumber(m_bytes, 0);
            continue;
        }
        const qint64 steps = std::llround((sample - m_base) / m_step);
        const qint64 change = steps - last;
        appendNumber(m_bytes, static_cast<quint64>(change >= 0 ? 2 * change + 1 : -2 * change));
        last = steps;
    }
}
