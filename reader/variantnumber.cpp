#include "reader/variantnumber.h"

#include <QVariant>

namespace {

bool isFloating(const QVariant &value)
{
    return value.userType() == QMetaType::Double || value.userType() == QMetaType::Float;
}

bool fits64Bits(double number)
{
    return number >= -0x1p63 && number < 0x1p63;
}

} // namespace

int intOf(const QVariant &value)
{
    return isFloating(value) && !fits64Bits(value.toDouble()) ? 0 : value.toInt();
}

bool boolOf(const QVariant &value)
{
    if (isFloating(value) && !fits64Bits(value.toDouble()))
        return value.toDouble() > 0;
    return value.toBool();
}
