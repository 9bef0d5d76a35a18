#pragma once

#include <QString>
#include <QVector>

namespace ZEP {

/// One quantity over one lap: a sample per recorded tick, all in one unit.
///
/// A tick without a measurement has the sample NoData. Use isValid() instead of comparing: NaN, and
/// everything from ValidBelow up, also counts as missing. Zero is an ordinary value, and so is a
/// negative one of any size.
class Channel
{
public:
    /// 1e25 in single precision, widened: 9.999999562023526e24. It is part of the interface: hosts
    /// test for exactly this number.
    static constexpr double NoData = 1e25f;
    /// 1e24 in single precision, widened: 1.0000000138484279e24.
    static constexpr double ValidBelow = 1e24f;

    /// Unit of every sample, as the source spells it ("m", "kg", "%"); empty if there is none.
    QString unit() const { return m_unit; }
    void setUnit(const QString &unit) { m_unit = unit; }

    /// The sample at \a index, in unit(); NoData if \a index is outside.
    double sample(int index) const { return contains(index) ? data.at(index) : NoData; }
    /// True when \a sample is a measurement: less than ValidBelow, which NaN is not.
    static constexpr bool isValidSample(double sample) { return sample < ValidBelow; }
    /// True when \a index is inside and its sample is a measurement.
    bool isValid(int index) const { return contains(index) && isValidSample(data.at(index)); }

    /// Overwrites one sample. If \a index is outside, it does nothing: the channel never grows.
    void setSample(int index, double value);

    /// The samples, by tick of the lap, from 0. Whoever records a lap appends to them.
    QVector<double> data;

private:
    bool contains(int index) const { return index >= 0 && index < data.size(); }

    QString m_unit;
};

} // namespace ZEP
