// Time step, distance and speed of the cars that do not record them.

#include "tests/support/extremes.h"
#include "tests/support/lapchannels.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/twocars.h"

#include <QTest>

#include <cmath>

using Names = QList<QString>;
using Samples = QVector<double>;

namespace {

} // namespace

class tst_IrTelemetryReaderMotion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void percentUnitsOfDerivedChannels();
    void playersCarHasNoMotionChannels();
    void motion_data();
    void motion();
    void motionUnits_data();
    void motionUnits();
    void motionNeedsPlaceAndTime_data();
    void motionNeedsPlaceAndTime();
    void trackLength_data();
    void trackLength();
    void trackLengthIsLookedUpAsAnyValue_data();
    void trackLengthIsLookedUpAsAnyValue();
    void motionReplacesWhatIsThere();
    void standingClockMakesInfiniteSpeed();
    void withoutAPlayerEveryCarMoves();
    void sourcesStayAsTheyAre();
};

/// The unit of the speed is made of that of the time after it was corrected.
void tst_IrTelemetryReaderMotion::percentUnitsOfDerivedChannels()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 1.0, "km");
    lap.addChannel(newChannel({0, 1}, "%"), "lapdistpct");
    lap.addChannel(newChannel({0, 1}, "%"), "sessiontime");
    reader.preprocessLap(Other);
    QCOMPARE(lap.channel("lapdistpct")->unit(), QString("pu"));
    QCOMPARE(lap.channel("speed")->unit(), QString("m/pu"));
}

void tst_IrTelemetryReaderMotion::playersCarHasNoMotionChannels()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Player);
    lap.addValue("Track length", 2.0, "km");
    lap.addChannel(newChannel({0, 0.1}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}), "sessiontime");
    reader.preprocessLap(Player);
    QCOMPARE(lap.getAvailableChannels(), (Names{"lapdistpct", "sessiontime"}));
}

void tst_IrTelemetryReaderMotion::motion_data()
{
    QTest::addColumn<Samples>("pct");
    QTest::addColumn<Samples>("time");
    QTest::addColumn<Samples>("dt");
    QTest::addColumn<Samples>("lapdist");
    QTest::addColumn<Samples>("speed");

    // The track is two kilometres long.
    const auto row = [](const char *name, const Samples &pct, const Samples &time,
                        const Samples &dt, const Samples &lapdist, const Samples &speed) {
        QTest::newRow(name) << pct << time << dt << lapdist << speed;
    };
    row("even", {0.0, 0.25, 0.5}, {100, 101, 102}, {1, 1, 1}, {0, 500, 1000}, {500, 500, 500});
    row("uneven", {0.0, 0.25, 1.0}, {100, 101, 105}, {1, 4, 4}, {0, 500, 2000}, {500, 375, 375});
    row("two ticks", {0.25, 0.5}, {100, 102}, {2, 2}, {500, 1000}, {250, 250});
    row("one tick repeats nothing", {0.25}, {100}, {NoSample}, {500}, {NoSample});
    row("no ticks", {}, {}, {}, {}, {});
    row("no ticks of the place", {}, {100, 101}, {}, {}, {});
    row("backwards", {0.5, 0.25}, {100, 101}, {1, 1}, {1000, 500}, {-500, -500});
    row("clock runs backwards", {0.25, 0.5}, {101, 100}, {-1, -1}, {500, 1000}, {-500, -500});
    row("standing", {0.5, 0.5}, {100, 101}, {1, 1}, {1000, 1000}, {0, 0});
    row("time is shorter", {0.0, 0.25, 0.5}, {100, 101}, {1, NoSample - 101, NoSample - 101},
        {0, 500, 1000}, {500, 500 / (NoSample - 101), 500 / (NoSample - 101)});
    row("time is longer", {0.0, 0.25}, {100, 102, 103}, {2, 2}, {0, 500}, {250, 250});
    row("no ticks of the time", {0.25, 0.5}, {}, {0, 0}, {500, 1000}, {Infinity, Infinity});
    row("missing place", {0.25, NoSample, 0.5}, {100, 101, 102}, {1, 1, 1},
        {500, NoSample * 2.0 * 1000.0, 1000},
        {NoSample * 2.0 * 1000.0 - 500, 1000 - NoSample * 2.0 * 1000.0,
         1000 - NoSample * 2.0 * 1000.0});
    row("missing time", {0.25, 0.5, 0.75}, {100, NoSample, 102},
        {NoSample - 100, 102 - NoSample, 102 - NoSample}, {500, 1000, 1500},
        {500 / (NoSample - 100), 500 / (102 - NoSample), 500 / (102 - NoSample)});
}

void tst_IrTelemetryReaderMotion::motion()
{
    QFETCH(Samples, pct);
    QFETCH(Samples, time);
    QFETCH(Samples, dt);
    QFETCH(Samples, lapdist);
    QFETCH(Samples, speed);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 2.0, "km");
    lap.addChannel(newChannel(pct, "%"), "lapdistpct");
    lap.addChannel(newChannel(time, "s"), "sessiontime");
    reader.preprocessLap(Other);
    QCOMPARE(lap.getAvailableChannels(),
             (Names{"dt", "lapdist", "lapdistpct", "sessiontime", "speed"}));
    QVERIFY(lap.getAvailableCalculatedChannels().isEmpty());
    COMPARE_BITS(lap.channel("dt")->data, dt);
    COMPARE_BITS(lap.channel("lapdist")->data, lapdist);
    COMPARE_BITS(lap.channel("speed")->data, speed);
}

void tst_IrTelemetryReaderMotion::motionUnits_data()
{
    QTest::addColumn<QString>("timeUnit");
    QTest::addColumn<QString>("speedUnit");

    QTest::newRow("seconds") << "s"
                             << "m/s";
    QTest::newRow("hours") << "h"
                           << "m/h";
    QTest::newRow("none") << ""
                          << "m/";
}

void tst_IrTelemetryReaderMotion::motionUnits()
{
    QFETCH(QString, timeUnit);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 2.0, "km");
    lap.addChannel(newChannel({0, 1}, "%"), "lapdistpct");
    lap.addChannel(newChannel({0, 1}, timeUnit), "sessiontime");
    reader.preprocessLap(Other);
    QTEST(lap.channel("speed")->unit(), "speedUnit");
    QCOMPARE(lap.channel("lapdist")->unit(), QString("m"));
    QVERIFY(lap.channel("dt")->unit().isEmpty());
}

void tst_IrTelemetryReaderMotion::motionNeedsPlaceAndTime_data()
{
    QTest::addColumn<QStringList>("channels");

    QTest::newRow("no place") << QStringList{"sessiontime"};
    QTest::newRow("no time") << QStringList{"lapdistpct"};
    QTest::newRow("neither") << QStringList{"rpm"};
    QTest::newRow("place in capitals") << QStringList{"LapDistPct", "sessiontime"};
    QTest::newRow("time in capitals") << QStringList{"SessionTime", "lapdistpct"};
}

void tst_IrTelemetryReaderMotion::motionNeedsPlaceAndTime()
{
    QFETCH(QStringList, channels);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 2.0, "km");
    lap.addCalculatedChannel(newChannel({0, 1}), "lapdistpct");
    lap.addCalculatedChannel(newChannel({0, 1}), "sessiontime");
    for (const QString &name : qAsConst(channels))
        lap.addChannel(newChannel({0, 1}), name);
    reader.preprocessLap(Other);
    QCOMPARE(lap.getAvailableChannels(), Names(channels));
}

void tst_IrTelemetryReaderMotion::trackLength_data()
{
    QTest::addColumn<QVariant>("length"); // invalid: missing
    QTest::addColumn<Samples>("lapdist");

    QTest::newRow("plain") << QVariant(2.0) << Samples{0, 1000};
    QTest::newRow("missing") << QVariant() << Samples{};
    QTest::newRow("zero") << QVariant(0.0) << Samples{0, 0};
    QTest::newRow("text") << QVariant(QString("2.0")) << Samples{0, 1000};
    QTest::newRow("no number") << QVariant(QString("2.0 km")) << Samples{0, 0};
    QTest::newRow("fraction first, then metres") << QVariant(0.1) << Samples{0, 0.5 * 0.1 * 1000.0};
}

void tst_IrTelemetryReaderMotion::trackLength()
{
    QFETCH(QVariant, length);
    QFETCH(Samples, lapdist);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    if (length.isValid())
        lap.addValue("Track length", length, "furlong");
    lap.addChannel(newChannel({0, 0.5}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}), "sessiontime");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("dt")->data, Samples({1, 1}));
    QCOMPARE(!lap.channel("lapdist").isNull(), length.isValid());
    QCOMPARE(!lap.channel("speed").isNull(), length.isValid());
    if (length.isValid())
        COMPARE_BITS(lap.channel("lapdist")->data, lapdist);
}

void tst_IrTelemetryReaderMotion::trackLengthIsLookedUpAsAnyValue_data()
{
    QTest::addColumn<bool>("inHeader");
    QTest::addColumn<bool>("calculated");
    QTest::addColumn<double>("length");

    QTest::newRow("in the header") << true << false << 1000.0;
    QTest::newRow("calculated") << false << true << 3000.0;
    QTest::newRow("in both") << true << true << 1000.0;
}

void tst_IrTelemetryReaderMotion::trackLengthIsLookedUpAsAnyValue()
{
    QFETCH(bool, inHeader);
    QFETCH(bool, calculated);
    QFETCH(double, length);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    if (inHeader)
        lap.addValue("Track length", 1.0, "km");
    if (calculated)
        lap.setCalculatedValue("Track length", 3.0, "km");
    lap.addChannel(newChannel({0, 1}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}), "sessiontime");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("lapdist")->data, Samples({0, length}));
}

void tst_IrTelemetryReaderMotion::motionReplacesWhatIsThere()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addChannel(newChannel({0, 0.5}), "lapdistpct");
    lap.addChannel(newChannel({100, 101}, "s"), "sessiontime");
    for (const char *name : {"dt", "lapdist", "speed"})
        lap.addChannel(newChannel({7, 8, 9}, "old"), name);
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("dt")->data, Samples({1, 1}));
    COMPARE_BITS(lap.channel("lapdist")->data, Samples({7, 8, 9}));
    COMPARE_BITS(lap.channel("speed")->data, Samples({7, 8, 9}));
    lap.addValue("Track length", 1.0, "km");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("lapdist")->data, Samples({0, 500}));
    COMPARE_BITS(lap.channel("speed")->data, Samples({500, 500}));
    QCOMPARE(lap.channel("speed")->unit(), QString("m/s"));
}

void tst_IrTelemetryReaderMotion::standingClockMakesInfiniteSpeed()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 1.0, "km");
    lap.addChannel(newChannel({0.0, 0.5, 0.25, 0.25, 0.5}), "lapdistpct");
    lap.addChannel(newChannel({100, 100, 100, 100, 101}), "sessiontime");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("dt")->data, Samples({0, 0, 0, 1, 1}));
    const Samples speed = lap.channel("speed")->data;
    QCOMPARE(speed.size(), 5);
    COMPARE_BITS(speed.at(0), Infinity);
    COMPARE_BITS(speed.at(1), -Infinity);
    QVERIFY(std::isnan(speed.at(2)));
    COMPARE_BITS(speed.at(3), 250.0);
    COMPARE_BITS(speed.at(4), 250.0);
}

void tst_IrTelemetryReaderMotion::withoutAPlayerEveryCarMoves()
{
    iRTelemetryReader reader;
    for (const int car : {0, Player, 63}) {
        reader.lap(car).addChannel(newChannel({0, 0.5}), "lapdistpct");
        reader.lap(car).addChannel(newChannel({100, 101}), "sessiontime");
        reader.preprocessLap(car);
        QVERIFY(reader.lap(car).channel("dt"));
    }
}

void tst_IrTelemetryReaderMotion::sourcesStayAsTheyAre()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    ZEP::Lap &lap = reader.lap(Other);
    lap.addValue("Track length", 1.0, "km");
    lap.addChannel(newChannel({0, 0.5}, "pu"), "lapdistpct");
    lap.addChannel(newChannel({100, 101}, "s"), "sessiontime");
    lap.addChannel(newChannel({1, 2}, "1/min"), "rpm");
    lap.setDriverName("A Driver");
    reader.preprocessLap(Other);
    COMPARE_BITS(lap.channel("lapdistpct")->data, Samples({0, 0.5}));
    COMPARE_BITS(lap.channel("sessiontime")->data, Samples({100, 101}));
    COMPARE_BITS(lap.channel("rpm")->data, Samples({1, 2}));
    QCOMPARE(lap.channel("lapdistpct")->unit(), QString("pu"));
    QCOMPARE(lap.channel("sessiontime")->unit(), QString("s"));
    QCOMPARE(lap.channel("rpm")->unit(), QString("1/min"));
    QCOMPARE(lap.valueNameList(), Names{"Track length"});
    QCOMPARE(lap.getDriverName(), QString("A Driver"));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderMotion)

#include "tst_irtelemetryreader_motion.moc"
