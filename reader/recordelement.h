#pragma once

#include "ibt/ibtformat.h"

#include <QVariant>

#include <cstring>

/// One element of a record: where it lies and how it is read.
///
/// A default element lies nowhere and reads as an invalid variant. The conversions are those of a
/// sample that holds toVariant(), so a caller may ask either and gets the same answer.
class RecordElement
{
public:
    RecordElement() = default;
    /// An element of a known \a type (irsdk_VarType) at byte \a offset of its record.
    RecordElement(qint32 type, qint32 offset) : m_type(type), m_offset(offset) { }

    /// irsdk_VarType, or NoType.
    qint32 type() const { return m_type; }
    qint32 offset() const { return m_offset; }

    QVariant toVariant(const char *record) const;
    int toInt(const char *record) const;
    float toFloat(const char *record) const;
    bool toBool(const char *record) const;

    /// The element's bytes as a \a T; records are not aligned.
    template <typename T>
    T load(const char *record) const
    {
        T value;
        std::memcpy(&value, record + m_offset, sizeof value);
        return value;
    }

    static constexpr qint32 NoType = -1;

private:
    qint32 m_type = NoType;
    qint32 m_offset = 0;
};

/// The elements of one variable that a record really holds.
class StoredElements
{
public:
    /// Elements \a first to \a last of \a type, counted from byte \a offset of the record.
    StoredElements(qint32 type, qint64 offset, int first, int last)
        : m_type(type), m_offset(offset), m_first(first), m_last(last)
    {
    }
    /// \a count elements that all read as \a carried.
    StoredElements(const RecordElement &carried, int count)
        : m_carried(carried), m_first(0), m_last(count - 1)
    {
    }

    int first() const { return m_first; }
    int last() const { return m_last; }
    RecordElement at(int index) const;

private:
    qint32 m_type = RecordElement::NoType;
    qint64 m_offset = 0;
    RecordElement m_carried;
    int m_first;
    int m_last;
};

/// Calls \a visit(variable index, StoredElements) for the first \a count variables of the table, in
/// its order, wherever the record holds an element to be stored.
///
/// A char variable is one element whatever its count. An element that does not lie wholly inside
/// the record is not stored. A variable of a type that is not known needs no bytes: each of its
/// elements takes the value converted before it, or none at the start of the record.
template <typename Visitor>
void forEachVariable(const irsdk_header &header, const irsdk_varHeader *varHeaders, int count,
                     Visitor visit)
{
    RecordElement converted;
    for (int v = 0; v < count; ++v) {
        const irsdk_varHeader &variable = varHeaders[v];
        const qint64 elements = variable.type == irsdk_char ? 1 : variable.count;
        if (elements <= 0)
            continue;

        const qint64 size = irsdk_varTypeSize(variable.type);
        if (size == 0) {
            visit(v, StoredElements(converted, int(elements)));
            continue;
        }

        const qint64 offset = variable.offset;
        const qint64 first = offset >= 0 ? 0 : (-offset + size - 1) / size;
        const qint64 room = header.bufLen - offset;
        const qint64 last = qMin(elements, room > 0 ? room / size : 0) - 1;
        if (first > last)
            continue;
        const StoredElements stored(variable.type, offset, int(first), int(last));
        visit(v, stored);
        converted = stored.at(int(last));
    }
}
