#include "plugin/zepplugininterfacelive.h"

#include "plugin/pluginmessage.h"

#include <algorithm>

ZepPluginInterfaceLive::~ZepPluginInterfaceLive() = default;

void ZepPluginInterfaceLive::enableTelemetryFromAllCars()
{
    setTelemetryOfAllCars(true);
}

void ZepPluginInterfaceLive::disableTelemetryFromAllCars()
{
    setTelemetryOfAllCars(false);
}

void ZepPluginInterfaceLive::enableTelemetry(const QVariant &id)
{
    setTelemetry(id, true);
}

void ZepPluginInterfaceLive::disableTelemetry(const QVariant &id)
{
    setTelemetry(id, false);
}

void ZepPluginInterfaceLive::message(const QString &text, int level)
{
    Q_EMIT m_dataEmitter.sendMessage(pluginMessage(pluginName(), text), level);
}

void ZepPluginInterfaceLive::setTelemetryOfAllCars(bool on)
{
    for (ZEP::CarInfo &car : m_info.carInfoList)
        car.setActive(on);
    Q_EMIT m_dataEmitter.sendAvailableCarListChanged(m_info);
}

void ZepPluginInterfaceLive::setTelemetry(const QVariant &id, bool on)
{
    auto &cars = m_info.carInfoList;
    const auto car = std::find_if(cars.begin(), cars.end(), [&id](const ZEP::CarInfo &candidate) {
        return candidate.id() == id;
    });
    if (car == cars.end())
        return;
    car->setActive(on);
    Q_EMIT m_dataEmitter.sendAvailableCarListChanged(m_info);
}
