#include "reader/recordelement.h"

#include "reader/variantnumber.h"

QVariant RecordElement::toVariant(const char *record) const
{
    switch (m_type) {
    case irsdk_char:
        return int(load<qint8>(record));
    case irsdk_bool:
        return load<quint8>(record) != 0;
    case irsdk_int:
    case irsdk_bitField:
        return load<qint32>(record);
    case irsdk_float:
        return load<float>(record);
    case irsdk_double:
        return load<double>(record);
    default:
        return QVariant();
    }
}

int RecordElement::toInt(const char *record) const
{
    return m_type == irsdk_int ? load<qint32>(record) : intOf(toVariant(record));
}

float RecordElement::toFloat(const char *record) const
{
    switch (m_type) {
    case irsdk_char:
        return load<qint8>(record);
    case irsdk_bool:
        return load<quint8>(record) != 0 ? 1.0f : 0.0f;
    case irsdk_int:
    case irsdk_bitField:
        return float(load<qint32>(record));
    case irsdk_float:
        return load<float>(record);
    default:
        return toVariant(record).toFloat();
    }
}

bool RecordElement::toBool(const char *record) const
{
    return m_type == irsdk_bool ? load<quint8>(record) != 0 : boolOf(toVariant(record));
}

RecordElement StoredElements::at(int index) const
{
    if (m_type == RecordElement::NoType)
        return m_carried;
    return RecordElement(m_type, qint32(m_offset + qint64(index) * irsdk_varTypeSize(m_type)));
}
