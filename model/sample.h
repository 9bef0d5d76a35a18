#pragma once

#include "model/dynamicdata.h"

#include <QMetaType>
#include <QVariant>

namespace ZEP {

/// The values measured for one car at one simulation tick, by the name of their channel.
class Sample : public DynamicData
{
public:
    /// The car as its source knows it (the iRacing car index); invalid if not set.
    QVariant carId() const { return m_carId; }
    void setCarId(const QVariant &carId) { m_carId = carId; }

private:
    QVariant m_carId;
};

} // namespace ZEP

Q_DECLARE_METATYPE(ZEP::Sample)
