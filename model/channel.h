#pragma once

#include <QString>
#include <QVector>

namespace ZEP {

/// One quantity over one lap: a sample per recorded tick, all in one unit.
///
/// A tick without a measurement holds NoData. Ask isValid() instead of comparing: NaN, and
/// everything from ValidBelow up, counts as missing too. Zero is an ordinary value, and so is a
/// negative one of any size.
class Channel
{
public:
    /// 1e25 in single precision, widened: 9.999999562023526e24. Hosts test for this very number; it
    /// is interface, not taste.
    static constexpr double NoData = 1e25f;
    /// 1e24 in single precision, widened: 1.0000000138484279e24.
    static constexpr double ValidBelow = 1e24f;

    /// Unit of every sample, as the source spells it ("m", "kg", "%"); empty if there is none.
    QString unit() const { return m_unit; }
    void setUnit(const QString &unit) { m_unit = unit; }

    /// The sample at \a index, in unit(); NoData where \a index is outside.
    double sample(int index) const { return contains(index) ? data.at(index) : NoData; }
    /// True when \a index is inside and its sample is less than ValidBelow.
    bool isValid(int index) const { return contains(index) && data.at(index) < ValidBelow; }

    /// Overwrites one sample. Outside the channel it does nothing: it never grows.
    void setSample(int index, double value);

    /// The samples, by tick of the lap from 0. Whoever records a lap appends here.
    QVector<double> data;

private:
    bool contains(int index) const { return index >= 0 && index < data.size(); }

    QString m_unit;
};

} // namespace ZEP
