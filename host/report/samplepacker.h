#pragma once

#include <QByteArray>
#include <QVector>

#include <limits>

/// Packs the samples of one channel over several laps into few bytes. Each sample becomes a whole
/// number of steps above a base, and the change of that number from tick to tick is stored.
///
/// The bytes are variable-length numbers, seven bits to a byte, the lowest first, with the highest
/// bit set in all bytes except the last. 0 is a missing sample. n > 0 is a change by d steps since
/// the last sample that was not missing (at first since 0): n = 2d + 1 if d >= 0, else n = -2d.
class SamplePacker
{
public:
    /// \a laps contains the samples of each lap. A sample that is not finite, or beyond 1e300, is
    /// missing. A step is a power of ten, at most 1/\a parts of the range of all samples, and at
    /// most \a longestStep. It is 1 if all of them are whole numbers below 1e9.
    SamplePacker(const QVector<QVector<double>> &laps, double parts,
                 double longestStep = std::numeric_limits<double>::infinity());

    /// A sample is base() + step() * its number of steps.
    double base() const { return m_base; }
    double step() const { return m_step; }
    /// True if every sample was a whole number; then all are stored exactly.
    bool isWhole() const { return m_isWhole; }
    /// The samples of all laps, one lap after the other. Each lap starts again from 0.
    const QByteArray &bytes() const { return m_bytes; }

private:
    void append(const QVector<double> &samples);

    double m_base = 0;
    double m_step = 1;
    bool m_isWhole = true;
    QByteArray m_bytes;
};
