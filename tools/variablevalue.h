#pragma once

#include "ibt/ibtformat.h"

#include <cstring>

/// Stores \a value at \a place as one element of a variable of \a type (irsdk_VarType), in which it
/// must fit. A bool is true unless the value is zero. For an unknown type nothing is stored.
inline void storeVariableValue(char *place, std::int32_t type, double value)
{
    const auto store = [place](auto element) { std::memcpy(place, &element, sizeof element); };
    switch (type) {
    case irsdk_char:
        return store(static_cast<std::int8_t>(value));
    case irsdk_bool:
        return store(static_cast<std::uint8_t>(value != 0));
    case irsdk_int:
    case irsdk_bitField:
        return store(static_cast<std::int32_t>(value));
    case irsdk_float:
        return store(static_cast<float>(value));
    case irsdk_double:
        return store(value);
    default:
        return;
    }
}
