#pragma once

class QVariant;

/// \a value as QVariant::toInt() rounds it. 0 for a number that rounds to none of 64 bits, where
/// QVariant leaves the result to the processor.
int intOf(const QVariant &value);

/// \a value as QVariant::toBool() takes it: false if it rounds to 0. A number that rounds to none
/// of 64 bits is true if it is positive.
bool boolOf(const QVariant &value);
