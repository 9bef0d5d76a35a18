// The nearest floats on either side of a threshold.
#pragma once

#include <cmath>
#include <limits>

/// The least float greater than \a value.
inline float above(float value)
{
    return std::nextafter(value, std::numeric_limits<float>::infinity());
}

/// The greatest float less than \a value.
inline float below(float value)
{
    return std::nextafter(value, -std::numeric_limits<float>::infinity());
}
