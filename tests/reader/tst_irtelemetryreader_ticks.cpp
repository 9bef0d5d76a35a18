// What a tick does to the cars: the values that count, and their defaults.

#include "tests/support/nextfloat.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/twocars.h"

#include <QTest>

#include <limits>

using Names = QList<QString>;

namespace {

} // namespace

class tst_IrTelemetryReaderTicks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prepareTickRollsEveryCar();
    void prepareTickOpensTheNextLap();
    void carsWithoutADriverAreNotFollowed();
    void carsOutOfTheWorldAreSkipped_data();
    void carsOutOfTheWorldAreSkipped();
    void skippedCarsKeepTheirState();
    void playersValues_data();
    void playersValues();
    void playersLapTimesStayWhileOffTrack();
    void playersTickIsMarked_data();
    void playersTickIsMarked();
    void anyConvertibleValueCounts();
    void holdAndSpareFlagAreCleared();
    void sampleMayBeChangedBeforeItIsProcessed();
    void noCarNoPlayer();
};

void tst_IrTelemetryReaderTicks::prepareTickRollsEveryCar()
{
    iRTelemetryReader reader;
    for (int car = 0; car < 64; ++car) {
        CarTracker &tracker = carOf(&reader, car);
        tracker.current.lapId = QUuid::createUuid();
        tracker.current.text = QString::number(car);
        tracker.current.lap = car;
        tracker.current.lapDistPct = float(car) / 64.0f;
        tracker.current.completionHold = true;
        tracker.current.spare64 = car;
        tracker.sample.addValue("speed", car, "m/s");
    }
    reader.prepareTick();
    for (int car = 0; car < 64; ++car) {
        QVERIFY(reader.car(car).previous == reader.car(car).current);
        QCOMPARE(reader.car(car).previous.lap, car);
        QVERIFY(reader.sample(car).valueNameList().isEmpty());
    }
}

void tst_IrTelemetryReaderTicks::prepareTickOpensTheNextLap()
{
    iRTelemetryReader reader;
    for (int index = 0; index < 64; ++index) {
        CarTracker &car = carOf(&reader, index);
        car.lapReady = index % 2 == 1;
        car.current.lapInStint = 4;
        addValues(&car.sample, {{"old", 1}});
        car.lap.addSample(car.sample);
        addValues(&car.sample, {{"new", 2}});
        car.nextLap.addSample(car.sample);
    }
    reader.prepareTick();
    for (int car = 0; car < 64; ++car) {
        const bool wasReady = car % 2 == 1;
        QVERIFY(!reader.isLapReady(car));
        QCOMPARE(reader.lap(car).getAvailableChannels().contains("new"), wasReady);
        QCOMPARE(reader.car(car).nextLap.isEmpty(), wasReady);
        QCOMPARE(reader.car(car).current.lapInStint, wasReady ? 5 : 4);
        QCOMPARE(reader.car(car).current.lapId.isNull(), !wasReady);
        QCOMPARE(reader.car(car).previous.lapInStint, 4);
    }
}

void tst_IrTelemetryReaderTicks::carsWithoutADriverAreNotFollowed()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    reader.driverName(Player).clear();
    tick(&reader, {{Player, OnTrack}, {7, OnTrack}});
    for (const int car : {Player, 7}) {
        QVERIFY(reader.car(car).current == CarTrackerSample());
        QVERIFY(reader.lap(car).isEmpty());
        QVERIFY(!reader.sample(car).containsValue("fulltelemetry"));
    }

    // A team is no driver; a driver is enough.
    reader.teamName(7) = "A Team";
    tick(&reader, 7, OnTrack);
    QVERIFY(reader.car(7).current == CarTrackerSample());
    reader.driverName(Player) = "A Driver";
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.lap(Player).size(), 1);
}

void tst_IrTelemetryReaderTicks::carsOutOfTheWorldAreSkipped_data()
{
    QTest::addColumn<TickMap>("values");
    QTest::addColumn<float>("lapDistPct");
    QTest::addColumn<bool>("skipped");

    const TickMap none{{"isontrack", true}, {"lap", 2}, {"sessionstate", 4}};
    const auto row = [&none](const char *name, const QVariant &pct, float expected, bool skipped) {
        QTest::addRow("%s", name) << with(none, {{"lapdistpct", pct}}) << expected << skipped;
    };
    QTest::newRow("missing") << none << -1.0f << true;
    row("minus one", -1.0f, -1.0f, true);
    row("minus a half", -0.5f, -0.5f, true);
    row("just above minus a half", above(-0.5f), above(-0.5f), false);
    row("below zero", -0.1f, -0.1f, false);
    row("zero", 0.0f, 0.0f, false);
    row("whole lap", 1.0f, 1.0f, false);
    row("beyond the lap", 1.5f, 1.5f, false);
    row("minus infinity", -std::numeric_limits<float>::infinity(),
        -std::numeric_limits<float>::infinity(), true);
    row("NaN", std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::quiet_NaN(),
        true);
    row("double, narrowed to minus a half", -0.4999999999, -0.5f, true);
    row("double", 0.1, 0.1f, false);
    row("text of a number", QString("0.25"), 0.25f, false);
    row("text of no number is zero", QString("none"), 0.0f, false);
    row("invalid is zero", QVariant(), 0.0f, false);
}

void tst_IrTelemetryReaderTicks::carsOutOfTheWorldAreSkipped()
{
    QFETCH(TickMap, values);
    QFETCH(float, lapDistPct);
    QFETCH(bool, skipped);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader, {{Player, values}, {Other, with(values, {{"onpitroad", false}})}});
    for (const int car : {Player, Other}) {
        const CarTracker &tracker = reader.car(car);
        COMPARE_BITS(tracker.current.lapDistPct, lapDistPct);
        QCOMPARE(tracker.current.sessionState, 4);
        QCOMPARE(tracker.current.carStatus, skipped ? -1 : 5);
        QCOMPARE(tracker.current.sessionType, skipped ? -1 : 1);
        QCOMPARE(reader.lap(car).isEmpty(), skipped);
    }
    QCOMPARE(reader.car(Player).current.lap, skipped ? -1 : 2);
    QCOMPARE(reader.sample(Player).containsValue("fulltelemetry"), !skipped);
}

void tst_IrTelemetryReaderTicks::skippedCarsKeepTheirState()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader, Player, with(OnTrack, {{"lapcurrentlaptime", 7.5f}, {"laplastlaptime", 8.5f}}));
    carOf(&reader, Player).current.completionHold = true;
    const CarTrackerSample before = reader.car(Player).current;
    tick(&reader, Player, {{"lap", 9}, {"isontrack", false}});

    CarTrackerSample expected = before;
    expected.lapDistPct = -1.0f;
    expected.sessionState = 0;
    QVERIFY(reader.car(Player).current == expected);
    QVERIFY(reader.car(Player).previous == before);
    QCOMPARE(reader.lap(Player).size(), 1);
}

void tst_IrTelemetryReaderTicks::playersValues_data()
{
    QTest::addColumn<TickMap>("values");
    QTest::addColumn<int>("lap");
    QTest::addColumn<float>("currentTime");
    QTest::addColumn<float>("lastTime");
    QTest::addColumn<int>("sessionState");
    QTest::addColumn<int>("status");

    const TickMap none{{"lapdistpct", 0.5f}};
    const TickMap whole = with(none,
                               {{"lap", 2},
                                {"isontrack", true},
                                {"onpitroad", false},
                                {"laplastlaptime", 81.5f},
                                {"lapcurrentlaptime", 82.5f},
                                {"sessionstate", 4}});
    const auto without = [&whole](const QString &name) {
        TickMap values = whole;
        values.remove(name);
        return values;
    };
    QTest::newRow("all values") << whole << 2 << 82.5f << 81.5f << 4 << 5;
    QTest::newRow("lap is missing") << without("lap") << -1 << 82.5f << 81.5f << 4 << 5;
    QTest::newRow("running time is missing")
        << without("lapcurrentlaptime") << 2 << 1.0e25f << 81.5f << 4 << 5;
    QTest::newRow("last time is missing")
        << without("laplastlaptime") << 2 << 82.5f << -1.0f << 4 << 5;
    QTest::newRow("state of the session is missing")
        << without("sessionstate") << 2 << 82.5f << 81.5f << 0 << 5;
    QTest::newRow("pit road is missing") << without("onpitroad") << 2 << 82.5f << 81.5f << 4 << 5;
    QTest::newRow("on pit road") << with(whole, {{"onpitroad", true}}) << 2 << 82.5f << 81.5f << 4
                                 << 4;
    QTest::newRow("off track") << with(whole, {{"isontrack", false}}) << 2 << -1.0f << -1.0f << 4
                               << 3;
    QTest::newRow("off track on pit road")
        << with(whole, {{"isontrack", false}, {"onpitroad", true}}) << 2 << -1.0f << -1.0f << 4
        << 3;
    QTest::newRow("track is missing") << without("isontrack") << 2 << -1.0f << -1.0f << 4 << 3;
    QTest::newRow("nothing but a place") << none << -1 << -1.0f << -1.0f << 0 << 3;
    QTest::newRow("place and track")
        << with(none, {{"isontrack", true}}) << -1 << 1.0e25f << -1.0f << 0 << 5;
    QTest::newRow("names in capitals are not known")
        << TickMap{{"lapdistpct", 0.5f}, {"IsOnTrack", true}, {"Lap", 2}} << -1 << -1.0f << -1.0f
        << 0 << 3;
}

void tst_IrTelemetryReaderTicks::playersValues()
{
    QFETCH(TickMap, values);
    QFETCH(float, currentTime);
    QFETCH(float, lastTime);

    for (const bool diskLoading : {false, true}) {
        iRTelemetryReader reader;
        addTwoCars(&reader);
        reader.setDiskLoading(diskLoading);
        tick(&reader, Player, values);
        const CarTrackerSample &state = reader.car(Player).current;
        QTEST(state.lap, "lap");
        COMPARE_BITS(state.lapCurrentLapTime, currentTime);
        COMPARE_BITS(state.lapLastLapTime, lastTime);
        QTEST(state.sessionState, "sessionState");
        QTEST(state.carStatus, "status");
    }
}

void tst_IrTelemetryReaderTicks::playersLapTimesStayWhileOffTrack()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader, Player, with(OnTrack, {{"lapcurrentlaptime", 7.5f}, {"laplastlaptime", 8.5f}}));
    tick(&reader, Player,
         with(OnTrack,
              {{"isontrack", false},
               {"lapcurrentlaptime", 9.5f},
               {"laplastlaptime", 10.5f},
               {"lap", 6}}));
    COMPARE_BITS(reader.car(Player).current.lapCurrentLapTime, 7.5f);
    COMPARE_BITS(reader.car(Player).current.lapLastLapTime, 8.5f);
    QCOMPARE(reader.car(Player).current.lap, 6);
    tick(&reader, Player, OnTrack);
    COMPARE_BITS(reader.car(Player).current.lapCurrentLapTime, 1.0e25f);
    COMPARE_BITS(reader.car(Player).current.lapLastLapTime, -1.0f);
}

void tst_IrTelemetryReaderTicks::playersTickIsMarked_data()
{
    QTest::addColumn<TickMap>("values");

    QTest::newRow("on track") << OnTrack;
    QTest::newRow("on pit road") << with(OnTrack, {{"onpitroad", true}});
    QTest::newRow("off track") << with(OnTrack, {{"isontrack", false}});
    QTest::newRow("marked otherwise before") << with(OnTrack, {{"fulltelemetry", 7.5}});
}

void tst_IrTelemetryReaderTicks::playersTickIsMarked()
{
    QFETCH(TickMap, values);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader, Player, values);
    const ZEP::Value mark = reader.sample(Player).value("fulltelemetry");
    QCOMPARE(mark.value.userType(), int(QMetaType::Int));
    QCOMPARE(mark.value, QVariant(1));
    QVERIFY(mark.unit().isEmpty());
}

/// Recordings of other versions hold other types.
void tst_IrTelemetryReaderTicks::anyConvertibleValueCounts()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader, Player,
         {{"lapdistpct", 0.5},
          {"isontrack", 1},
          {"onpitroad", 0},
          {"lap", 2.0f},
          {"sessionstate", 4.0},
          {"lapcurrentlaptime", 7},
          {"laplastlaptime", QString("8.5")}});
    const CarTrackerSample &state = reader.car(Player).current;
    COMPARE_BITS(state.lapDistPct, 0.5f);
    QCOMPARE(state.carStatus, 5);
    QCOMPARE(state.lap, 2);
    QCOMPARE(state.sessionState, 4);
    COMPARE_BITS(state.lapCurrentLapTime, 7.0f);
    COMPARE_BITS(state.lapLastLapTime, 8.5f);
}

void tst_IrTelemetryReaderTicks::holdAndSpareFlagAreCleared()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    const auto raiseFlags = [&reader](int index) {
        CarTracker &car = carOf(&reader, index);
        car.current.completionHold = true;
        car.current.spareFlag2 = true;
        car.current.spareFlag1 = true;
    };
    raiseFlags(Player);
    raiseFlags(Other);
    tick(&reader, {{Player, OnTrack}});
    QVERIFY(!reader.car(Player).current.completionHold);
    QVERIFY(!reader.car(Player).current.spareFlag2);
    QVERIFY(reader.car(Player).current.spareFlag1);
    QVERIFY(reader.car(Player).previous.completionHold);
    // A car that is skipped keeps them.
    QVERIFY(reader.car(Other).current.completionHold);
    QVERIFY(reader.car(Other).current.spareFlag2);
}

void tst_IrTelemetryReaderTicks::sampleMayBeChangedBeforeItIsProcessed()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    reader.prepareTick();
    addValues(&reader.sample(Player), OnTrack);
    reader.sample(Player).addValue("lap", 8, QString());
    reader.sample(Player).addValue("rpm", 9000, "1/min");
    reader.sample(Player).removeValue("isontrack");
    reader.processData();
    QCOMPARE(reader.car(Player).current.lap, 8);
    QCOMPARE(reader.car(Player).current.carStatus, 3);

    reader.prepareTick();
    addValues(&reader.sample(Other), {{"lapdistpct", 0.5f}, {"onpitroad", false}, {"rpm", 9000}});
    reader.processData();
    QCOMPARE(reader.lap(Other).getAvailableChannels(), (Names{"lapdistpct", "onpitroad", "rpm"}));
}

void tst_IrTelemetryReaderTicks::noCarNoPlayer()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(-1, {Player}).constData());
    reader.updateCarList();
    tick(&reader, Player, OnTrack);
    COMPARE_BITS(reader.car(Player).current.lapDistPct, 0.5f);
    QCOMPARE(reader.car(Player).current.carStatus, -1);
    QVERIFY(reader.lap(Player).isEmpty());
}

NAPAMMUL_TEST(tst_IrTelemetryReaderTicks)

#include "tst_irtelemetryreader_ticks.moc"
