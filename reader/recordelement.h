#pragma once

#include "ibt/ibtelements.h"
#include "ibt/ibtformat.h"

#include <QVariant>

#include <cstring>

/// One element of a record: where it is and how it is read.
///
/// A default element is nowhere and reads as an invalid variant. The conversions are those of a
/// sample that contains toVariant(), so both give a caller the same answer.
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

/// The elements of one variable that a record contains.
class StoredElements
{
public:
    /// \a elements of \a type, counted from byte \a offset of the record.
    StoredElements(IbtElements elements, qint32 type, qint64 offset)
        : m_elements(elements), m_type(type), m_offset(offset)
    {
    }
    /// \a elements that all read as \a carried.
    StoredElements(IbtElements elements, const RecordElement &carried)
        : m_elements(elements), m_carried(carried)
    {
    }

    int first() const { return m_elements.first; }
    int last() const { return m_elements.last; }
    RecordElement at(int index) const;

private:
    IbtElements m_elements;
    qint32 m_type = RecordElement::NoType;
    qint64 m_offset = 0;
    RecordElement m_carried;
};

/// Calls \a visit(variable index, StoredElements) for the first \a count variables of the table, in
/// its order, that have an element to be stored (see ibtReadableElements()).
///
/// Each element of a type that is not known repeats the value converted before it; at the start of
/// the table there is none, and it reads as an invalid variant.
template <typename Visitor>
void forEachVariable(const irsdk_header &header, const irsdk_varHeader *varHeaders, int count,
                     Visitor visit)
{
    RecordElement converted;
    for (int v = 0; v < count; ++v) {
        const irsdk_varHeader &variable = varHeaders[v];
        const IbtElements elements = ibtReadableElements(variable, header.bufLen);
        if (elements.isEmpty())
            continue;
        if (!isKnownIbtType(variable.type)) {
            visit(v, StoredElements(elements, converted));
            continue;
        }
        const StoredElements stored(elements, variable.type, variable.offset);
        visit(v, stored);
        converted = stored.at(stored.last());
    }
}
