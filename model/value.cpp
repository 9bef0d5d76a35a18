#include "model/value.h"

namespace ZEP {

Value::Value(const QVariant &value_, const QString &unit) : value(value_), m_unit(unit) { }

QString Value::print() const
{
    const QString text = value.toString();
    return m_unit.isEmpty() ? text : QString(text % QLatin1Char(' ') % m_unit);
}

} // namespace ZEP
