#include "host/report/lapjson.h"

#include "analysis/lapquantities.h"
#include "writers/jsonvalues.h"

#include <QJsonArray>

namespace {

QString concat(const char *corner, const char *name)
{
    return QString(QLatin1String(corner) % QLatin1String(name));
}

} // namespace

QJsonObject tyresJson(const ZEP::Lap &lap)
{
    QJsonObject tyres;
    for (const char *corner : {"lf", "rf", "lr", "rr"}) {
        const auto mean = [&](const char *name) {
            return jsonQuantity(meanOf(lap, concat(corner, name)));
        };
        const auto last = [&](const char *name) {
            return jsonQuantity(lastOf(lap, concat(corner, name)));
        };
        const QString pressure = concat(corner, "pressure");
        tyres.insert(QLatin1String(corner),
                     QJsonObject{{QStringLiteral("surface"),
                                  QJsonArray{mean("templ"), mean("tempm"), mean("tempr")}},
                                 {QStringLiteral("carcass"),
                                  QJsonArray{mean("tempcl"), mean("tempcm"), mean("tempcr")}},
                                 {QStringLiteral("tread"),
                                  QJsonArray{last("wearl"), last("wearm"), last("wearr")}},
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
    // What was measured on the lap; if nothing was, the weather at the start of the session.
    const auto quantity = [&lap](const char *channel, const char *value) {
        const auto mean = meanOf(lap, QLatin1String(channel));
        return jsonQuantity(mean ? mean : valueOf(lap, QLatin1String(value)));
    };
    return {{QStringLiteral("skies"),
             jsonText(lap.value(QStringLiteral("Skies")).value.toString().trimmed())},
            {QStringLiteral("air"), quantity("airtemp", "Air temperature")},
            {QStringLiteral("track"), quantity("tracktemp", "Track surface temperature")},
            {QStringLiteral("wind"), quantity("windvel", "")},
            {QStringLiteral("humidity"), quantity("relativehumidity", "")},
            {QStringLiteral("pressure"), quantity("airpressure", "")}};
}
