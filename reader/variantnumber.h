#pragma once

#include <QtGlobal>

class QVariant;

/// \a value as QVariant::toInt() rounds it. 0 for a number that does not round to one of 64 bits,
/// where QVariant leaves the result to the processor.
int intOf(const QVariant &value);

/// The same for QVariant::toULongLong().
quint64 unsignedOf(const QVariant &value);

/// \a value as QVariant::toBool() reads it: false if it rounds to 0. A number that does
/// not round to one of 64 bits is true if it is positive.
bool boolOf(const QVariant &value);
