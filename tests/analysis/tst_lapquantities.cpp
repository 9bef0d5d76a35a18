#include "analysis/lapquantities.h"
#include "tests/support/lapchannels.h"
#include "tests/support/roomtests.h"

#include <QTest>

using Samples = QVector<double>;

/// Single numbers of a lap, from its channels.
class tst_LapQuantities : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void measures_data();
    void measures();
    void channelThatIsMissing();
    void seenAtStops_data();
    void seenAtStops();
};

namespace {

QString text(const std::optional<Quantity> &quantity)
{
    return quantity ? QString(QString::number(quantity->value) % QLatin1Char(' ') % quantity->unit)
                    : QStringLiteral("none");
}

} // namespace

void tst_LapQuantities::measures_data()
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

void tst_LapQuantities::measures()
{
    QFETCH(Samples, samples);
    const QString name = QStringLiteral("watertemp");
    ZEP::Lap lap;
    lap.addChannel(newChannel(samples, QStringLiteral("C")), name);
    QTEST(text(firstOf(lap, name)), "first");
    QTEST(text(meanOf(lap, name)), "mean");
    QTEST(text(lastOf(lap, name)), "last");
}

void tst_LapQuantities::channelThatIsMissing()
{
    const ZEP::Lap lap;
    const QString name = QStringLiteral("watertemp");
    QVERIFY(!firstOf(lap, name) && !meanOf(lap, name) && !lastOf(lap, name));
}

void tst_LapQuantities::seenAtStops_data()
{
    QTest::addColumn<Samples>("samples");
    QTest::addColumn<Samples>("onPitRoad");
    QTest::addColumn<Samples>("speed");
    QTest::addColumn<bool>("atStops");

    const Samples fast{50, 50, 50, 50};
    const Samples track{0, 0, 0, 0};
    QTest::newRow("changes on the track") << Samples{60, 61, 62, 62} << track << fast << false;
    QTest::newRow("never changes") << Samples{60, 60, NoSample, 60} << track << fast << true;
    QTest::newRow("changes on pit road")
        << Samples{60, 61, 62, 62} << Samples{1, 1, 1, 0} << fast << true;
    QTest::newRow("the last change leaves pit road")
        << Samples{60, 61, 62, 62} << Samples{1, 1, 0, 0} << fast << true;
    QTest::newRow("changes where the car stands")
        << Samples{60, 60, 70, 70} << Samples() << Samples{50, 0.2, 0, 50} << true;
    QTest::newRow("nothing else is known") << Samples{60, 61} << Samples() << Samples() << false;
    QTest::newRow("no samples") << Samples() << track << fast << true;
}

void tst_LapQuantities::seenAtStops()
{
    QFETCH(Samples, samples);
    QFETCH(Samples, onPitRoad);
    QFETCH(Samples, speed);
    ZEP::Lap lap;
    lap.addChannel(newChannel(onPitRoad), QStringLiteral("onpitroad"));
    lap.addChannel(newChannel(speed, QStringLiteral("m/s")), QStringLiteral("speed"));
    QVERIFY(changesOnlyAtStops(lap, QStringLiteral("lftempcm")));
    lap.addChannel(newChannel(samples, QStringLiteral("C")), QStringLiteral("lftempcm"));
    QTEST(changesOnlyAtStops(lap, QStringLiteral("lftempcm")), "atStops");
}

NAPAMMUL_TEST(tst_LapQuantities)
#include "tst_lapquantities.moc"
