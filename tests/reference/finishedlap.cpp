// Fills in the session of a finished lap, and puts its channels in order.
#include "tests/reference/reader.h"

#include <QColor>
#include <QStringList>

#include <cmath>

namespace reference {

namespace {

/// A text such as "3.70 km": number and unit, separated by white space.
Value measured(const QString &text)
{
    const QStringList parts = text.simplified().split(QLatin1Char(' '), Qt::KeepEmptyParts);
    Value value;
    value.value = QVariant(parts.at(0).toDouble());
    if (parts.size() >= 2)
        value.unit = parts.at(1);
    return value;
}

void addText(Lap *lap, const char *name, const QString &text)
{
    lap->values.insert(QLatin1String(name), {QVariant(text), QString()});
}

void addNumber(Lap *lap, const char *name, double number, const char *unit)
{
    lap->values.insert(QLatin1String(name), {QVariant(number), QLatin1String(unit)});
}

void addWeekendInfo(const Tree &weekendInfo, Lap *lap)
{
    const auto text = [&weekendInfo](const char *key) {
        return weekendInfo.value(QLatin1String(key));
    };

    lap->trackConfig = text("TrackConfigName");
    addText(lap, "Track short name", text("TrackDisplayShortName"));
    addText(lap, "Track city", text("TrackCity"));
    addText(lap, "Track country", text("TrackCountry"));
    addText(lap, "Track turns", text("TrackNumTurns"));
    addText(lap, "Skies", text("TrackSkies"));
    addText(lap, "Official", text("Official"));
    addText(lap, "Category", text("Category"));
    lap->values.insert(QStringLiteral("Track length"), measured(text("TrackLength")));
    lap->values.insert(QStringLiteral("Track surface temperature"),
                       measured(text("TrackSurfaceTemp")));
    lap->values.insert(QStringLiteral("Air temperature"), measured(text("TrackAirTemp")));
    lap->values.insert(
        QStringLiteral("Weekend temperature"),
        measured(weekendInfo.pathValue(QStringLiteral("WeekendOptions/WeatherTemp"))));
    Value yawOffset = measured(text("TrackNorthOffset"));
    yawOffset.unit.clear();
    lap->values.insert(QStringLiteral("YawOffset"), yawOffset);
}

void addFuel(const Tree &driverInfo, const QString &fuelInSetup, Lap *lap)
{
    const auto number = [&driverInfo](const char *key) {
        return driverInfo.value(QLatin1String(key)).toDouble();
    };
    const double maxLitres = number("DriverCarFuelMaxLtr");
    const double maxPct = number("DriverCarMaxFuelPct");
    const double kgPerLitre = number("DriverCarFuelKgPerLtr");
    const double level = maxLitres * maxPct;

    addNumber(lap, "Maximum fuel level", level, "l");
    addNumber(lap, "Maximum fuel percent", maxPct, "pu");
    if (!(std::fabs(kgPerLitre) <= 1e-12)) {
        addNumber(lap, "Kg per fuel litre", kgPerLitre, "");
        addNumber(lap, "Maximum fuel weight", level * kgPerLitre, "kg");
    }
    if (!fuelInSetup.isEmpty()) {
        const QStringList parts =
            fuelInSetup.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (parts.size() == 2) {
            const bool kilograms = parts.at(1) == QLatin1String("kg");
            addText(lap, "Preferred fuel unit",
                    kilograms ? QStringLiteral("weight") : QStringLiteral("volume"));
        }
    }
}

void addDriver(const Tree &driver, Lap *lap)
{
    const auto text = [&driver](const char *key) { return driver.value(QLatin1String(key)); };

    lap->driverName = text("UserName");
    lap->carName = text("CarScreenName");
    addText(lap, "Team", text("TeamName"));
    addText(lap, "Driver abbreviation", text("AbbrevName"));
    addText(lap, "iRating", text("IRating"));
    addText(lap, "License", text("LicString"));
    addText(lap, "Driver initials", text("Initials"));
    addText(lap, "iRacing UserID", text("UserID"));
    addText(lap, "iRacing car path", text("CarPath"));
    addText(lap, "iRacing car class ID", text("CarClassID"));
    addText(lap, "iRacing car ID", text("CarID"));
    addText(lap, "Class", text("CarClassShortName"));
    addText(lap, "Club", text("ClubName"));
    addText(lap, "Division", text("DivisionName"));
    QColor color;
    color.setNamedColor(text("LicColor").replace(QLatin1String("0x"), QLatin1String("#")));
    lap->values.insert(QStringLiteral("Licence color"), {QVariant(color), QString()});
}

} // namespace

QUuid Reader::sessionId(const QString &text) const
{
    QString id = QStringLiteral("%1").arg(text, 32, QLatin1Char('0'));
    for (int position : {8, 13, 18, 23})
        id.insert(position, QLatin1Char('-'));
    return QUuid(id);
}

void Reader::getSessionInfo(int car, Lap *lap) const
{
    lap->carId = QVariant(car);

    if (const Tree *weekendInfo = sub(QStringLiteral("WeekendInfo"))) {
        lap->trackName = weekendInfo->value(QStringLiteral("TrackDisplayName"));
        lap->sessionId = sessionId(weekendInfo->value(QStringLiteral("SessionID"))
                                   + weekendInfo->value(QStringLiteral("SubSessionID")));
        addWeekendInfo(*weekendInfo, lap);
    }

    if (const Tree *driverInfo = sub(QStringLiteral("DriverInfo"))) {
        if (car == m_myCarIdx) {
            addFuel(*driverInfo, pathValue(QStringLiteral("CarSetup/Chassis/Rear/FuelLevel")), lap);
        }
        const Tree *driver = driverInfo->pathSub(QStringLiteral("Drivers/") + QString::number(car));
        if (driver)
            addDriver(*driver, lap);
    }

    int sessionNumber = 0;
    if (hasMyCar()) {
        const Values &values = m_cars.at(m_myCarIdx).sample.values;
        sessionNumber = toInt(values.value(QStringLiteral("sessionnum")).value);
    }
    const QString type =
        pathValue(QStringLiteral("SessionInfo/Sessions/") + QString::number(sessionNumber)
                  + QStringLiteral("/SessionType"));
    addText(lap, "Session name", type);
    if (sessionFromText(type) != NotSet)
        lap->session = sessionFromText(type);
}

void Reader::cleanupLap(int car)
{
    for (const char *name :
         {"IsOnTrack", "IsOnTrackCar", "PlayerCarClassPosition", "PlayerCarDriverIncidentCount",
          "PlayerCarIdx", "PlayerCarMyIncidentCount", "PlayerCarPosition",
          "PlayerCarTeamIncidentCount", "PlayerCarWeightPenalty", "sessionnum", "SessionUniqueID",
          "TireLF_RumblePitch", "TireLR_RumblePitch", "TireRF_RumblePitch", "TireRR_RumblePitch"})
        lap(car).channels.remove(QLatin1String(name));
}

void Reader::preprocessLap(int i)
{
    Lap &lap = m_cars[i].lap;

    const double offset = lap.value(QStringLiteral("yawOffset")).value.toDouble();
    if (const auto yaw = lap.channel(QStringLiteral("Yaw"))) {
        for (int k = 0; k < yaw->data.size(); ++k)
            yaw->setSample(k, yaw->sample(k) + offset);
    }
    lap.values.remove(QStringLiteral("yawOffset"));

    const double density = lap.value(QStringLiteral("Kg per fuel litre")).value.toDouble();
    const auto fuel = lap.channel(QStringLiteral("fuellevel"));
    if (fuel && !(std::fabs(density) <= 1e-12)) {
        Channel weight;
        weight.unit = QStringLiteral("kg");
        for (int k = 0; k < fuel->data.size(); ++k)
            weight.data.append(fuel->sample(k) * density);
        lap.addChannel(QStringLiteral("fuelweight"), weight);
    }

    for (const auto &channel : qAsConst(lap.channels)) {
        if (channel->unit == QLatin1String("%"))
            channel->unit = QStringLiteral("pu");
    }

    if (i == m_myCarIdx)
        return;

    const auto pct = lap.channel(QStringLiteral("lapdistpct"));
    const auto sessionTime = lap.channel(QStringLiteral("sessiontime"));
    if (!pct || !sessionTime)
        return;
    const int n = pct->data.size();

    Channel dt;
    for (int k = 0; k < n; ++k) {
        if (k < n - 1)
            dt.data.append(sessionTime->sample(k + 1) - sessionTime->sample(k));
        else
            dt.data.append(dt.sample(n - 2));
    }

    const QVariant trackLength = lap.value(QStringLiteral("Track length")).value;
    if (trackLength.isValid()) {
        Channel lapDist;
        lapDist.unit = QStringLiteral("m");
        for (int k = 0; k < n; ++k)
            lapDist.data.append(pct->sample(k) * trackLength.toDouble() * 1000.0);

        Channel speed;
        speed.unit = QStringLiteral("m/") + sessionTime->unit;
        for (int k = 0; k < n; ++k) {
            if (k < n - 1)
                speed.data.append((lapDist.sample(k + 1) - lapDist.sample(k)) / dt.sample(k));
            else
                speed.data.append(speed.sample(n - 2));
        }
        lap.addChannel(QStringLiteral("speed"), speed);
        lap.addChannel(QStringLiteral("lapdist"), lapDist);
    }
    lap.addChannel(QStringLiteral("dt"), dt);
}

void Reader::normalizeChannelBeginning(int i, const QString &channelName)
{
    Lap &lap = m_cars[i].lap;
    const auto ch = lap.channel(channelName);
    const auto pct = lap.channel(QStringLiteral("lapdistpct"));
    if (!ch || !pct || ch->data.size() < 2)
        return;

    double refValue = -1.0;
    double refPct = -1.0;
    for (int k = ch->data.size() - 2; k >= 0; --k) {
        const bool falls = ch->sample(k) > ch->sample(k + 1);
        const bool isZero = std::fabs(ch->sample(k)) <= 1e-12;
        if (!falls && !isZero)
            continue;
        if (refValue < 0.0) {
            refValue = ch->sample(k + 1);
            refPct = pct->sample(k + 1);
        }
        if (std::fabs(refValue) <= 1e-12)
            break;
        ch->setSample(k, pct->sample(k) * refValue / refPct);
    }
}

} // namespace reference
