#include "host/lapmeasures.h"
#include "tests/lapchannels.h"

#include <QJsonArray>
#include <QtTest>

using Samples = QVector<double>;

/// Single numbers of a lap, from its channels.
class tst_LapMeasures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void measures_data();
    void measures();
    void channelThatIsMissing();
    void tyres();
    void weather();
};

namespace {

QString text(const std::optional<Quantity> &quantity)
{
    return quantity ? QString(QString::number(quantity->value) % QLatin1Char(' ') % quantity->unit)
                    : QStringLiteral("none");
}

QJsonObject quantity(double value, const char *unit)
{
    return {{"value", value}, {"unit", unit}};
}

} // namespace

void tst_LapMeasures::measures_data()
{
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("mean");
    QTest::addColumn<QString>("last");

    QTest::newRow("all valid") << Samples{1, 2, 6} << "1 C"
                               << "3 C"
                               << "6 C";
    QTest::newRow("one") << Samples{-4} << "-4 C"
                         << "-4 C"
                         << "-4 C";
    QTest::newRow("missing at both ends") << Samples{NoSample, 2, NoSample, 4, NoSample} << "2 C"
                                          << "3 C"
                                          << "4 C";
    QTest::newRow("none valid") << Samples{NoSample, NoSample} << "none"
                                << "none"
                                << "none";
    QTest::newRow("none at all") << Samples() << "none"
                                 << "none"
                                 << "none";
}

void tst_LapMeasures::measures()
{
    QFETCH(Samples, samples);
    const QString name = QStringLiteral("watertemp");
    ZEP::Lap lap;
    lap.addChannel(newChannel(samples, QStringLiteral("C")), name);
    QTEST(text(firstOf(lap, name)), "first");
    QTEST(text(meanOf(lap, name)), "mean");
    QTEST(text(lastOf(lap, name)), "last");
}

void tst_LapMeasures::channelThatIsMissing()
{
    const ZEP::Lap lap;
    const QString name = QStringLiteral("watertemp");
    QVERIFY(!firstOf(lap, name) && !meanOf(lap, name) && !lastOf(lap, name));
}

void tst_LapMeasures::tyres()
{
    ZEP::Lap lap;
    lap.addChannel(newChannel({60, 80}, QStringLiteral("C")), QStringLiteral("rftempl"));
    lap.addChannel(newChannel({50, 52}, QStringLiteral("C")), QStringLiteral("rftempcm"));
    lap.addChannel(newChannel({1, 0.9}, QStringLiteral("pu")), QStringLiteral("rfwearr"));
    lap.addChannel(newChannel({150, 160}, QStringLiteral("kPa")), QStringLiteral("rfpressure"));

    const QJsonValue null;
    const QJsonObject tyres = tyresJson(lap);
    QCOMPARE(tyres.keys(), (QStringList{"lf", "lr", "rf", "rr"}));
    QCOMPARE(tyres.value(QStringLiteral("rf")).toObject(),
             (QJsonObject{{"surface", QJsonArray{quantity(70, "C"), null, null}},
                          {"carcass", QJsonArray{null, quantity(51, "C"), null}},
                          {"tread", QJsonArray{null, null, quantity(0.9, "pu")}},
                          {"pressure", QJsonArray{quantity(150, "kPa"), quantity(160, "kPa")}}}));
    QCOMPARE(tyres.value(QStringLiteral("lf")).toObject().value(QStringLiteral("pressure")),
             QJsonValue(QJsonArray{null, null}));
}

void tst_LapMeasures::weather()
{
    ZEP::Lap lap;
    lap.addValue(QStringLiteral("Skies"), QStringLiteral(" Mostly Cloudy "), QString());
    lap.addValue(QStringLiteral("Air temperature"), 18.5, QStringLiteral("C"));
    lap.addValue(QStringLiteral("Track surface temperature"), 24.5, QStringLiteral("C"));
    lap.addChannel(newChannel({19, 20}, QStringLiteral("C")), QStringLiteral("tracktemp"));
    const QJsonValue null;
    QCOMPARE(weatherJson(lap),
             (QJsonObject{{"skies", "Mostly Cloudy"},
                          {"air", quantity(18.5, "C")},
                          {"track", quantity(19.5, "C")},
                          {"wind", null},
                          {"humidity", null},
                          {"pressure", null}}));
}

QTEST_APPLESS_MAIN(tst_LapMeasures)
#include "tst_lapmeasures.moc"
