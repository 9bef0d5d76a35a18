#include "host/report/lapjson.h"

#include "analysis/lapquantities.h"
#include "writers/jsonvalues.h"

#include <QJsonArray>

namespace {

constexpr const char *corners[] = {"lf", "rf", "lr", "rr"};

QString concat(const char *corner, const char *name)
{
    return QString(QLatin1String(corner) % QLatin1String(name));
}

} // namespace

bool areTyresSeenAtStops(const Laps &laps)
{
    for (const auto &lap : laps) {
        for (const char *corner : corners) {
            for (const char *name : {"tempcl", "tempcm", "tempcr", "wearl", "wearm", "wearr"}) {
                if (!changesOnlyAtStops(*lap, concat(corner, name)))
                    return false;
            }
        }
    }
    return true;
}

QJsonObject tyresJson(const ZEP::Lap &lap, bool seenAtStops)
{
    QJsonObject tyres;
    for (const char *corner : corners) {
        const auto mean = [&](const char *name) {
            return jsonQuantity(meanOf(lap, concat(corner, name)));
        };
        const auto last = [&](const char *name) {
            return jsonQuantity(lastOf(lap, concat(corner, name)));
        };
        // A mean of what was seen before and after a stop would be neither.
        const auto carcass = [&](const char *name) {
            return seenAtStops ? last(name) : mean(name);
        };
        const QString pressure = concat(corner, "pressure");
        tyres.insert(
            QLatin1String(corner),
            QJsonObject{
                {QStringLiteral("surface"),
                 QJsonArray{mean("templ"), mean("tempm"), mean("tempr")}},
                {QStringLiteral("carcass"),
                 QJsonArray{carcass("tempcl"), carcass("tempcm"), carcass("tempcr")}},
                {QStringLiteral("tread"), QJsonArray{last("wearl"), last("wearm"), last("wearr")}},
                {QStringLiteral("pressure"),
                 QJsonArray{jsonQuantity(firstOf(lap, pressure)),
                            jsonQuantity(lastOf(lap, pressure))}}});
    }
    return tyres;
}

QJsonObject fuelJson(const ZEP::Lap &lap)
{
    const QString level = QStringLiteral("fuellevel");
    return {{QStringLiteral("start"), jsonQuantity(firstOf(lap, level))},
            {QStringLiteral("end"), jsonQuantity(lastOf(lap, level))}};
}

QJsonObject weatherJson(const ZEP::Lap &lap)
{
    const auto mean = [&lap](const char *channel) {
        return jsonQuantity(meanOf(lap, QLatin1String(channel)));
    };
    const auto named = [&lap](const char *value) {
        return jsonQuantity(valueOf(lap, QLatin1String(value)));
    };
    return {{QStringLiteral("skies"),
             jsonText(lap.value(QStringLiteral("Skies")).value.toString().trimmed())},
            {QStringLiteral("air"), mean("airtemp")},
            {QStringLiteral("track"), mean("tracktemp")},
            {QStringLiteral("airTemperature"), named("Air temperature")},
            {QStringLiteral("trackSurfaceTemperature"), named("Track surface temperature")},
            {QStringLiteral("wind"), mean("windvel")},
            {QStringLiteral("humidity"), mean("relativehumidity")},
            {QStringLiteral("pressure"), mean("airpressure")}};
}
