#include "model/dynamicdata.h"

namespace ZEP {

DynamicData::~DynamicData() = default;

void DynamicData::addValue(const QString &name, const QVariant &value, const QString &unit)
{
    m_values.insert(name, Value(value, unit));
}

} // namespace ZEP
