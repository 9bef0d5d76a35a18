// The cars of a session: who drives them, and which one is the player's.

#include "reader/irtelemetryreader.h"

void iRTelemetryReader::setYaml(const char *text)
{
    settle();
    TYamlTree::setYaml(text);
}

bool iRTelemetryReader::updateCarList()
{
    settle();
    m_myCarIdx = -1;
    if (const TStringTree *driverInfo = sub(QStringLiteral("DriverInfo"))) {
        bool isNumber = false;
        const int carIdx = driverInfo->value(QStringLiteral("DriverCarIdx")).toInt(&isNumber);
        if (isNumber)
            m_myCarIdx = carIdx;
    }

    const TStringTree *drivers = pathSub(QStringLiteral("DriverInfo/Drivers"));
    if (!drivers)
        return false;

    bool changed = false;
    const auto update = [&changed](QString *name, const QString &value) {
        if (*name == value)
            return;
        *name = value;
        changed = true;
    };
    for (int carIdx = 0; carIdx < m_cars.size(); ++carIdx) {
        CarTracker &car = m_cars[carIdx];
        car.sample.setCarId(carIdx);
        car.isPlayerCar = carIdx == m_myCarIdx;
        // An item of the list is named after its first entry, which is the car's number.
        const TStringTree *driver = drivers->sub(QString::number(carIdx));
        if (!driver)
            continue;
        update(&car.driverName, driver->value(QStringLiteral("UserName")));
        update(&car.teamName, driver->value(QStringLiteral("TeamName")));
    }
    return changed;
}

void iRTelemetryReader::setDiskLoading(bool on)
{
    settle();
    m_diskLoading = on;
    for (CarTracker &car : m_cars)
        car.diskLoading = on;
}

QString &iRTelemetryReader::driverName(int carIdx)
{
    settle();
    return m_cars[carIdx].driverName;
}

QString &iRTelemetryReader::teamName(int carIdx)
{
    settle();
    return m_cars[carIdx].teamName;
}

void iRTelemetryReader::setCarActive(int carIdx, bool on)
{
    settle();
    if (isCar(carIdx))
        m_cars[carIdx].active = on;
}

bool iRTelemetryReader::isCarActive(int carIdx) const
{
    return isCar(carIdx) && m_cars.at(carIdx).active;
}
