#include "host/report/lapjson.h"
#include "tests/support/lapchannels.h"
#include "tests/support/roomtests.h"

#include <QJsonArray>
#include <QTest>

/// What the page says about a lap.
class tst_LapJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tyres();
    void tyresSeenAtStops();
    void weather();
};

namespace {

QJsonObject quantity(double value, const char *unit)
{
    return {{"value", value}, {"unit", unit}};
}

} // namespace

void tst_LapJson::tyres()
{
    ZEP::Lap lap;
    lap.addChannel(newChannel({60, 80}, QStringLiteral("C")), QStringLiteral("rftempl"));
    lap.addChannel(newChannel({50, 52}, QStringLiteral("C")), QStringLiteral("rftempcm"));
    lap.addChannel(newChannel({1, 0.9}, QStringLiteral("pu")), QStringLiteral("rfwearr"));
    lap.addChannel(newChannel({150, 160}, QStringLiteral("kPa")), QStringLiteral("rfpressure"));

    const QJsonValue null;
    const QJsonObject tyres = tyresJson(lap, false);
    QCOMPARE(tyres.keys(), (QStringList{"lf", "lr", "rf", "rr"}));
    QCOMPARE(tyres.value(QStringLiteral("rf")).toObject(),
             (QJsonObject{{"surface", QJsonArray{quantity(70, "C"), null, null}},
                          {"carcass", QJsonArray{null, quantity(51, "C"), null}},
                          {"tread", QJsonArray{null, null, quantity(0.9, "pu")}},
                          {"pressure", QJsonArray{quantity(150, "kPa"), quantity(160, "kPa")}}}));
    QCOMPARE(tyres.value(QStringLiteral("lf")).toObject().value(QStringLiteral("pressure")),
             QJsonValue(QJsonArray{null, null}));

    const QJsonObject atStops = tyresJson(lap, true).value(QStringLiteral("rf")).toObject();
    QCOMPARE(atStops.value(QStringLiteral("surface")),
             QJsonValue(QJsonArray{quantity(70, "C"), null, null}));
    QCOMPARE(atStops.value(QStringLiteral("carcass")),
             QJsonValue(QJsonArray{null, quantity(52, "C"), null}));
}

void tst_LapJson::tyresSeenAtStops()
{
    Laps laps;
    laps.push_back(std::make_unique<ZEP::Lap>());
    QVERIFY(areTyresSeenAtStops(laps));
    laps.push_back(std::make_unique<ZEP::Lap>());
    laps.back()->addChannel(newChannel({1, 1}), QStringLiteral("rrwearr"));
    QVERIFY(areTyresSeenAtStops(laps));
    laps.back()->addChannel(newChannel({1, 0.9}), QStringLiteral("rrwearr"));
    QVERIFY(!areTyresSeenAtStops(laps));
}

void tst_LapJson::weather()
{
    ZEP::Lap lap;
    lap.addValue(QStringLiteral("Skies"), QStringLiteral(" Mostly Cloudy "), QString());
    lap.addValue(QStringLiteral("Air temperature"), 18.5, QStringLiteral("C"));
    lap.addValue(QStringLiteral("Track surface temperature"), 24.5, QStringLiteral("C"));
    lap.addChannel(newChannel({19, 20}, QStringLiteral("C")), QStringLiteral("tracktemp"));
    const QJsonValue null;
    QCOMPARE(weatherJson(lap),
             (QJsonObject{{"skies", "Mostly Cloudy"},
                          {"air", null},
                          {"track", quantity(19.5, "C")},
                          {"airTemperature", quantity(18.5, "C")},
                          {"trackSurfaceTemperature", quantity(24.5, "C")},
                          {"wind", null},
                          {"humidity", null},
                          {"pressure", null}}));
}

NAPAMMUL_TEST(tst_LapJson)
#include "tst_lapjson.moc"
