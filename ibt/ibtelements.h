// Which elements of a variable a record really contains. Whoever reads records, or explains why a
// variable has no value, asks here.
#pragma once

#include "ibt/ibtformat.h"

#include <algorithm>
#include <cstdint>

/// Consecutive elements of a variable, counted from 0.
struct IbtElements {
    std::int32_t first = 0;
    std::int32_t last = -1;

    constexpr bool isEmpty() const { return last < first; }
};

/// True for a type whose elements have bytes in the record, an irsdk_VarType.
constexpr bool isKnownIbtType(std::int32_t type)
{
    return irsdk_varTypeSize(type) > 0;
}

/// Elements of \a variable, wherever they lie. A char variable is one element, whatever its count:
/// a text is read as its first character. Not more than 0 for a variable without elements.
constexpr std::int32_t ibtElementCount(const irsdk_varHeader &variable)
{
    return variable.type == irsdk_char ? 1 : variable.count;
}

/// The elements of \a variable that lie wholly inside a record of \a recordBytes bytes; the default
/// IbtElements if none does.
///
/// All elements of a type that is not known: they need no bytes, since nobody knows how many, and
/// repeat the value that was read before them.
constexpr IbtElements ibtReadableElements(const irsdk_varHeader &variable, std::int32_t recordBytes)
{
    const std::int64_t count = ibtElementCount(variable);
    std::int64_t first = 0;
    std::int64_t last = count - 1;
    if (isKnownIbtType(variable.type)) {
        const std::int64_t size = irsdk_varTypeSize(variable.type);
        const std::int64_t offset = variable.offset;
        if (offset < 0)
            first = (-offset + size - 1) / size;
        const std::int64_t bytesFromOffset = std::max<std::int64_t>(0, recordBytes - offset);
        last = std::min(last, bytesFromOffset / size - 1);
    }
    if (first > last)
        return {};
    return {static_cast<std::int32_t>(first), static_cast<std::int32_t>(last)};
}
