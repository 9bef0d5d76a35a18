// What the session info says of a lap: track, weather, session, car and driver.

#include "reader/sessioninfo.h"

#include "ibt/lapinfokeys.h"
#include "model/lap.h"
#include "reader/irtelemetryreader.h"

#include <QColor>

namespace {

/// A text of a number, a space and a unit ("3.70 km"). Any other text is 0.0 without a unit.
ZEP::Value measurement(const QString &text)
{
    // Not split: a list of all words of a long text takes many times its memory.
    const QString words = text.simplified();
    const int numberEnd = words.indexOf(QLatin1Char(' '));
    if (numberEnd < 0)
        return ZEP::Value(words.toDouble(), QString());
    const int unitEnd = words.indexOf(QLatin1Char(' '), numberEnd + 1);
    return ZEP::Value(words.leftRef(numberEnd).toDouble(),
                      words.mid(numberEnd + 1, unitEnd < 0 ? -1 : unitEnd - numberEnd - 1));
}

/// The colour of a licence ("0xfc0706"); invalid for any other text.
QColor licenceColor(QString text)
{
    // No name of a colour is that long, and replacing is slow in long text.
    constexpr int MaxName = 255;
    if (text.size() > 2 * MaxName)
        return QColor();
    text.replace(QLatin1String("0x"), QLatin1String("#"));
    // Checked first: an unknown name would write a warning.
    return QColor::isValidColor(text) ? QColor(text) : QColor();
}

ZEP::Session sessionFromName(const QString &name)
{
    // Exactly these spellings: hosts have always shown all others as a session that is not set.
    static const struct {
        QLatin1String name;
        ZEP::Session session;
    } sessions[] = {
        {QLatin1String("Race"), ZEP::SessionRace},
        {QLatin1String("Offline testing"), ZEP::SessionOfflineTesting},
        {QLatin1String("Qualify"), ZEP::SessionQualify},
        {QLatin1String("Practice"), ZEP::SessionPractice},
        {QLatin1String("Warmup"), ZEP::SessionWarmup},
    };
    for (const auto &known : sessions) {
        if (name == known.name)
            return known.session;
    }
    return ZEP::SessionNotSet;
}

CarSessionInfo::Weekend readWeekend(const TStringTree &weekend, ZEP::DynamicData *values)
{
    const auto text = [&weekend](const char *key) { return weekend.pathValue(QLatin1String(key)); };

    for (const LapInfoKey &entry : LapWeekendKeys) {
        if (!entry.name)
            continue;
        if (entry.kind == LapInfoKind::Measurement)
            values->addValue(QLatin1String(entry.name), measurement(text(entry.key)));
        else
            values->addValue(QLatin1String(entry.name), text(entry.key), QString());
    }
    values->addValue(QStringLiteral("YawOffset"), measurement(text("TrackNorthOffset")).value,
                     QString());
    const QString id = text("SessionID") + text("SubSessionID");
    return {text("TrackDisplayName"), text("TrackConfigName"), iRTelemetryReader::sessionId(id)};
}

CarSessionInfo::Driver readDriver(const TStringTree &driver, ZEP::DynamicData *values)
{
    const auto text = [&driver](const char *key) { return driver.value(QLatin1String(key)); };

    for (const LapInfoKey &entry : LapDriverKeys) {
        if (entry.name)
            values->addValue(QLatin1String(entry.name), text(entry.key), QString());
    }
    values->addValue(QStringLiteral("Licence color"), licenceColor(text("LicColor")), QString());
    return {text("UserName"), text("CarScreenName")};
}

/// \a level is the fuel entry of the car's setup.
void readFuel(const TStringTree &driverInfo, const QString &level, ZEP::DynamicData *values)
{
    const auto number = [&driverInfo](const char *key) {
        return driverInfo.value(QLatin1String(key)).toDouble();
    };
    const double maxPct = number("DriverCarMaxFuelPct");
    const double maxLevel = number("DriverCarFuelMaxLtr") * maxPct;
    const double kgPerLitre = number("DriverCarFuelKgPerLtr");
    values->addValue(QStringLiteral("Maximum fuel level"), maxLevel, QStringLiteral("l"));
    values->addValue(QStringLiteral("Maximum fuel percent"), maxPct, QStringLiteral("pu"));
    if (!qFuzzyIsNull(kgPerLitre)) {
        values->addValue(QStringLiteral("Kg per fuel litre"), kgPerLitre, QString());
        values->addValue(QStringLiteral("Maximum fuel weight"), maxLevel * kgPerLitre,
                         QStringLiteral("kg"));
    }

    const QString words = level.simplified();
    if (words.count(QLatin1Char(' ')) == 1) {
        const bool isWeight = words.endsWith(QLatin1String(" kg"));
        values->addValue(QStringLiteral("Preferred fuel unit"),
                         isWeight ? QStringLiteral("weight") : QStringLiteral("volume"), QString());
    }
}

/// What the session info calls the type of a session.
QString sessionTypeName(const TYamlTree &tree, int sessionNumber)
{
    return tree.pathValue(QLatin1String("SessionInfo/Sessions/") % QString::number(sessionNumber)
                          % QLatin1String("/SessionType"));
}

/// All that does not depend on the session being driven.
CarSessionInfo readCar(const TYamlTree &tree, int carIdx, bool isPlayersCar)
{
    CarSessionInfo info;
    info.carIdx = carIdx;
    if (const TStringTree *weekend = tree.sub(QStringLiteral("WeekendInfo")))
        info.weekend = readWeekend(*weekend, &info.values);
    if (const TStringTree *driverInfo = tree.sub(QStringLiteral("DriverInfo"))) {
        if (isPlayersCar) {
            const QString level = tree.pathValue(QStringLiteral("CarSetup/Chassis/Rear/FuelLevel"));
            readFuel(*driverInfo, level, &info.values);
        }
        const QString path = QLatin1String("Drivers/") % QString::number(carIdx);
        if (const TStringTree *driver = driverInfo->pathSub(path))
            info.driver = readDriver(*driver, &info.values);
    }
    return info;
}

} // namespace

QUuid iRTelemetryReader::sessionId(const QString &text)
{
    QString digits = QStringLiteral("%1").arg(text, 32, QLatin1Char('0'));
    for (const int position : {8, 13, 18, 23})
        digits.insert(position, QLatin1Char('-'));
    return QUuid(digits);
}

void CarSessionInfo::copyTo(ZEP::Lap *lap) const
{
    lap->setCarId(carIdx);
    if (weekend) {
        lap->setTrackName(weekend->trackName);
        lap->setSessionId(weekend->sessionId);
        lap->setTrackConfig(weekend->trackConfig);
    }
    if (driver) {
        lap->setDriverName(driver->driverName);
        lap->setCarName(driver->carName);
    }
    if (session != ZEP::SessionNotSet)
        lap->setSession(session);

    if (lap->valueNameList().isEmpty()) {
        static_cast<ZEP::DynamicData &>(*lap) = values;
        return;
    }
    const QList<QString> names = values.valueNameList();
    for (const QString &name : names)
        lap->addValue(name, values.value(name));
}

void SessionInfo::forget()
{
    m_type.reset();
    m_car.reset();
}

ZEP::Session SessionInfo::type(const TYamlTree &tree, int sessionNumber)
{
    if (!m_type || m_type->sessionNumber != sessionNumber)
        m_type = KnownType{sessionNumber, sessionFromName(sessionTypeName(tree, sessionNumber))};
    return m_type->type;
}

const CarSessionInfo &SessionInfo::ofCar(const TYamlTree &tree, int carIdx, bool isPlayersCar,
                                         int sessionNumber)
{
    if (!m_car || m_car->carIdx != carIdx)
        m_car = readCar(tree, carIdx, isPlayersCar);
    if (m_car->sessionNumber != sessionNumber) {
        const QString name = sessionTypeName(tree, sessionNumber);
        m_car->sessionNumber = sessionNumber;
        m_car->session = sessionFromName(name);
        m_car->values.addValue(QStringLiteral("Session name"), name, QString());
    }
    return *m_car;
}
