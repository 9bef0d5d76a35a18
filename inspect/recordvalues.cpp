#include "inspect/recordvalues.h"

#include "ibt/ibtelements.h"
#include "ibt/lapvariables.h"

#include <QByteArray>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

/// The most values that come back from one record to the next in a sound recording: a car that is
/// reset, or parts of the car that are measured in turns, account for a few.
constexpr std::size_t FewestForeign = 12;
/// Of so many values one may come back.
constexpr std::size_t ValuesToOneForeign = 16;

bool isZero(const char *place, int size)
{
    return std::all_of(place, place + size, [](char c) { return c == 0; });
}

} // namespace

RecordValues::RecordValues(const irsdk_header &header, const irsdk_varHeader *table)
{
    for (int i = 0; i < header.numVars; ++i) {
        const irsdk_varHeader &variable = table[i];
        if (!isKnownIbtType(variable.type))
            continue;
        const int size = irsdk_varTypeSize(variable.type);
        const bool isLap =
            qstrnicmp(variable.name, lapVariableName(LapVariable::Lap), sizeof variable.name) == 0;
        const IbtElements readable = ibtReadableElements(variable, header.bufLen);
        // Variables on top of each other could make more elements than the record has bytes.
        for (int element = readable.first;
             element <= readable.last && m_elements.size() < std::size_t(header.bufLen); ++element)
            m_elements.push_back({int(variable.offset + std::int64_t(element) * size), size,
                                  variable.type == irsdk_bool, isLap});
    }
}

bool RecordValues::isForeign(const char *before, const char *record, const char *after) const
{
    std::size_t foreign = 0;
    for (const Element &element : m_elements) {
        const char *value = record + element.offset;
        const auto size = std::size_t(element.size);
        if (std::memcmp(value, before + element.offset, size) == 0)
            continue;
        const bool isBack = std::memcmp(before + element.offset, after + element.offset, size) == 0;
        if (isBack && element.isSteady)
            return true;
        // A truth value may be any byte but 0, so only one that is false next to it was changed.
        if (isBack && element.isTruth && quint8(*value) > 1 && before[element.offset] == 0)
            return true;
        if (isBack
            || (isZero(value, element.size) && !isZero(before + element.offset, element.size)
                && !isZero(after + element.offset, element.size)))
            ++foreign;
    }
    return foreign > std::max(FewestForeign, m_elements.size() / ValuesToOneForeign);
}
