#include "tests/reference/reader.h"

#include <cstring>

namespace reference {

namespace {

QString fieldText(const char *field, int size)
{
    return QString::fromLatin1(field, int(qstrnlen(field, uint(size))));
}

template <typename T>
T load(const char *bytes)
{
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

QVariant convert(std::int32_t type, const char *bytes)
{
    switch (type) {
    case irsdk_char:
        return QVariant(int(load<signed char>(bytes)));
    case irsdk_bool:
        return QVariant(load<unsigned char>(bytes) != 0);
    case irsdk_int:
    case irsdk_bitField:
        return QVariant(int(load<qint32>(bytes)));
    case irsdk_float:
        return QVariant(load<float>(bytes));
    default:
        return QVariant(load<double>(bytes));
    }
}

} // namespace

Reader::Reader()
{
    resize(64);
}

void Reader::resize(int count)
{
    m_cars.resize(qMax(count, 0));
    for (CarTracker &car : m_cars)
        car = CarTracker();
}

void Reader::setDiskLoading(bool on)
{
    m_diskLoading = on;
    for (CarTracker &car : m_cars)
        car.diskLoading = on;
}

bool Reader::updateCarList()
{
    m_myCarIdx = -1;
    if (const Tree *driverInfo = sub(QStringLiteral("DriverInfo"))) {
        bool ok = false;
        const int index = driverInfo->value(QStringLiteral("DriverCarIdx")).toInt(&ok);
        if (ok)
            m_myCarIdx = index;
    }

    const Tree *drivers = pathSub(QStringLiteral("DriverInfo/Drivers"));
    if (!drivers || m_cars.isEmpty())
        return false;

    bool changed = false;
    for (int i = 0; i < m_cars.size(); ++i) {
        CarTracker &car = m_cars[i];
        const QVariant carId(i);
        car.sample.carId = carId;
        car.isPlayerCar = i == m_myCarIdx;
        const Tree *driver = drivers->sub(QString::number(i));
        if (!driver)
            continue;
        const QString userName = driver->value(QStringLiteral("UserName"));
        if (userName != car.driverName) {
            car.driverName = userName;
            changed = true;
        }
        const QString teamName = driver->value(QStringLiteral("TeamName"));
        if (teamName != car.teamName) {
            car.teamName = teamName;
            changed = true;
        }
    }
    return changed;
}

void Reader::setCarActive(int car, bool on)
{
    if (car >= 0 && car < m_cars.size())
        m_cars[car].active = on;
}

bool Reader::isCarActive(int car) const
{
    return car >= 0 && car < m_cars.size() && m_cars.at(car).active;
}

Lap *Reader::myLap()
{
    if (hasMyCar())
        return &m_cars[m_myCarIdx].lap;
    return new Lap;
}

void Reader::getRawData(const irsdk_header *header, const irsdk_varHeader *variables,
                        const char *data)
{
    if (m_varNames.isEmpty()) {
        for (int v = 0; v < header->numVars; ++v) {
            const irsdk_varHeader &variable = variables[v];
            m_varNames.append(fieldText(variable.name, irsdk_varHeader::MaxString).toLower());
            m_varUnits.append(fieldText(variable.unit, irsdk_varHeader::MaxString));
        }
    }

    QVariant variant;
    for (int v = 0; v < header->numVars && v < m_varNames.size(); ++v) {
        const irsdk_varHeader &variable = variables[v];
        const Elements elements = storedElements(variable, header->bufLen);
        for (qint64 i = elements.first; i < elements.last; ++i) {
            const int size = irsdk_varTypeSize(variable.type);
            if (size > 0)
                variant = convert(variable.type, data + (variable.offset + i * size));
            store(m_varNames.at(v), i, {variant, m_varUnits.at(v)});
        }
    }

    if (!m_diskLoading)
        shareSessionClock();
}

Reader::Elements Reader::storedElements(const irsdk_varHeader &variable, qint64 recordSize) const
{
    const qint64 count = variable.type == irsdk_char ? 1 : variable.count;
    const qint64 size = irsdk_varTypeSize(variable.type);
    // All elements without bytes are the same, so there is no need for more of them than cars.
    if (size == 0)
        return {0, qMin(count, qint64(qMax(m_cars.size(), 1)))};

    Elements inside = {0, count};
    if (variable.offset < 0)
        inside.first = (size - 1 - variable.offset) / size;
    const qint64 room = recordSize - variable.offset;
    inside.last = qMin(count, room < 0 ? 0 : room / size);
    return inside;
}

void Reader::store(const QString &name, qint64 element, const Value &value)
{
    const QString arrayOfCars = QStringLiteral("caridx");
    if (!m_diskLoading && name.startsWith(arrayOfCars) && element != m_myCarIdx) {
        if (element < m_cars.size())
            m_cars[int(element)].sample.values.insert(name.mid(arrayOfCars.size()), value);
        return;
    }
    if (hasMyCar())
        m_cars[m_myCarIdx].sample.values.insert(name, value);
}

void Reader::shareSessionClock()
{
    if (!hasMyCar())
        return;
    const QString timeName = QStringLiteral("sessiontime");
    const QString timeRemainName = QStringLiteral("sessiontimeremain");
    const QString tickName = QStringLiteral("sessiontick");

    const Values mine = m_cars.at(m_myCarIdx).sample.values;
    const Value time = mine.value(timeName);
    const Value timeRemain = mine.value(timeRemainName);
    const qulonglong tick = toULongLong(mine.value(tickName).value);
    for (int i = 0; i < m_cars.size(); ++i) {
        if (i == m_myCarIdx)
            continue;
        Values &values = m_cars[i].sample.values;
        values.insert(timeName, time);
        values.insert(timeRemainName, timeRemain);
        values.insert(tickName, {QVariant(tick), QString()});
    }
}

} // namespace reference
