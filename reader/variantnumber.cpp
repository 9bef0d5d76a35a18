#include "reader/variantnumber.h"

#include <QVariant>

namespace {

bool fits64Bits(const QVariant &value)
{
    if (value.userType() != QMetaType::Double && value.userType() != QMetaType::Float)
        return true;
    const double number = value.toDouble();
    return number >= -0x1p63 && number < 0x1p63;
}

} // namespace

int intOf(const QVariant &value)
{
    return fits64Bits(value) ? value.toInt() : 0;
}

quint64 unsignedOf(const QVariant &value)
{
    return fits64Bits(value) ? value.toULongLong() : 0;
}

bool boolOf(const QVariant &value)
{
    return fits64Bits(value) ? value.toBool() : value.toDouble() > 0;
}
