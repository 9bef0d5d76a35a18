#pragma once

#include <QString>
#include <QVariant>

namespace ZEP {

/// One quantity with its unit.
class Value
{
public:
    /// An invalid variant without a unit.
    Value() = default;
    Value(const QVariant &value, const QString &unit);

    /// Unit as the source spells it ("kg", "m", "%"); empty if there is none.
    QString unit() const { return m_unit; }
    void setUnit(const QString &unit) { m_unit = unit; }

    /// The quantity as text, followed by a space and the unit if there is one.
    QString print() const;

    /// The quantity: a number, text, time or colour.
    QVariant value;

private:
    QString m_unit;
};

} // namespace ZEP
