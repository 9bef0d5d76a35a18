// The cars of a session: who drives them, and which one is the player's.

#include "reader/irtelemetryreader.h"

void iRTelemetryReader::setYaml(const char *text)
{
    forgetSessionInfo();
    TYamlTree::setYaml(text);
}

bool iRTelemetryReader::updateCarList()
{
    spreadTick();
    flushLaps();
    forgetIdleCars();
    forgetSessionInfo();

    m_myCarIdx = -1;
    if (const TStringTree *driverInfo = sub(QStringLiteral("DriverInfo"))) {
        bool isNumber = false;
        const int index = driverInfo->value(QStringLiteral("DriverCarIdx")).toInt(&isNumber);
        if (isNumber)
            m_myCarIdx = index;
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
    for (int index = 0; index < m_cars.size(); ++index) {
        CarTracker &car = m_cars[index];
        car.sample.setCarId(index);
        car.isPlayerCar = index == m_myCarIdx;
        // An item of the list is named after its first entry, which is the car's index.
        const TStringTree *driver = drivers->sub(QString::number(index));
        if (!driver)
            continue;
        update(&car.driverName, driver->value(QStringLiteral("UserName")));
        update(&car.teamName, driver->value(QStringLiteral("TeamName")));
    }
    return changed;
}

void iRTelemetryReader::setDiskLoading(bool on)
{
    spreadTick();
    forgetIdleCars();
    m_diskLoading = on;
    for (CarTracker &car : m_cars)
        car.diskLoading = on;
}

QString &iRTelemetryReader::driverName(int car)
{
    return m_cars[car].driverName;
}

QString &iRTelemetryReader::teamName(int car)
{
    return m_cars[car].teamName;
}

void iRTelemetryReader::setCarActive(int car, bool on)
{
    if (isCar(car))
        m_cars[car].active = on;
}

bool iRTelemetryReader::isCarActive(int car) const
{
    return isCar(car) && m_cars.at(car).active;
}
