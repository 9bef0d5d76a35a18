// What a tick does to the cars: the values that count, their defaults, and the lap that records it.

#include "tests/readerticks.h"
#include "tests/samebits.h"

#include <QTest>

#include <cmath>
#include <limits>

using Names = QList<QString>;

Q_DECLARE_METATYPE(TickMap)

namespace {

constexpr int Player = 3;
constexpr int Other = 5;

const TickMap OnTrack{{"lapdistpct", 0.5f}, {"isontrack", true}, {"lap", 2}};

float above(float value)
{
    return std::nextafter(value, std::numeric_limits<float>::infinity());
}

float below(float value)
{
    return std::nextafter(value, -std::numeric_limits<float>::infinity());
}

/// Drivers in cars 3 and 5; car 3 is the player's.
void prepare(iRTelemetryReader *reader, const QByteArray &sessionType = "Practice")
{
    reader->setYaml(sessionInfoOf(Player, {Player, Other}, sessionType).constData());
    reader->updateCarList();
}

/// Session \a number of \a type, with results.
QByteArray sessionInfo(int number, const QByteArray &type, const QByteArray &results)
{
    return "---\nSessionInfo:\n Sessions:\n - SessionNum: " + QByteArray::number(number)
        + "\n   SessionType: " + type + "\n   ResultsPositions:\n" + results + "   End: 1\n";
}

QByteArray result(const QByteArray &position, const QByteArray &carIdx, const QByteArray &laps)
{
    return "   - Position: " + position + "\n     CarIdx: " + carIdx
        + "\n     LapsComplete: " + laps + '\n';
}

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

    void othersState_data();
    void othersState();
    void othersStandstillIsMeasuredFromTheTickBefore();
    void othersHaveNoLapTimes();
    void othersNeedASession_data();
    void othersNeedASession();
    void othersLap_data();
    void othersLap();
    void othersAreNotMarked();

    void sessionType_data();
    void sessionType();
    void sessionTypeIsAskedForUntilItIsKnown();
    void sessionTypeIsThatOfTheSession_data();
    void sessionTypeIsThatOfTheSession();
    void sessionTypeIsKnownPerCar();

    void holdAndSpareFlagAreCleared();
    void holdKeepsTheLapFromBeingCompleted();

    void recorded_data();
    void recorded();
    void closingTickIsNotRecorded();
    void slowTicksAreNotRecorded_data();
    void slowTicksAreNotRecorded();
    void crossingTheLine_data();
    void crossingTheLine();
    void nextLapOpensWithWhatLiesBehindTheLine();
    void greatestFractionIsAValueOfTheLap();

    void sampleMayBeChangedBeforeItIsProcessed();
    void noCarNoPlayer();
    void sessionIsNeverRestarted();
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
    prepare(&reader);
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
    prepare(&reader);
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
    prepare(&reader);
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
        prepare(&reader);
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
    prepare(&reader);
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
    prepare(&reader);
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
    prepare(&reader);
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

void tst_IrTelemetryReaderTicks::othersState_data()
{
    QTest::addColumn<float>("before");
    QTest::addColumn<float>("now");
    QTest::addColumn<QVariant>("onPitRoad"); // invalid: missing
    QTest::addColumn<int>("status");

    const float least = 0.001f; // a little more than the double 0.001
    const auto row = [](const char *name, float before, float now, const QVariant &onPitRoad,
                        int status) {
        QTest::addRow("%s", name) << before << now << onPitRoad << status;
    };
    for (const QVariant &pits : {QVariant(true), QVariant()}) {
        const QByteArray prefix = pits.isValid() ? "on pit road: " : "pit road is missing: ";
        const auto inPits = [&](const char *name, float before, float now, int status) {
            row(QByteArray(prefix + name).constData(), before, now, pits, status);
        };
        inPits("stands", 0.5f, 0.5f, 3);
        inPits("hardly moves", 0.0f, below(least), 3);
        inPits("hardly moves backwards", below(least), 0.0f, 3);
        inPits("0.001 as a float is a move", 0.0f, least, 4);
        inPits("moves backwards", least, 0.0f, 4);
        inPits("moves", 0.5f, 0.6f, 4);
        inPits("crosses the line", 0.9999f, 0.0001f, 4);
    }
    row("on track: stands", 0.5f, 0.5f, false, 5);
    row("on track: moves", 0.5f, 0.6f, false, 5);
}

void tst_IrTelemetryReaderTicks::othersState()
{
    QFETCH(float, before);
    QFETCH(float, now);
    QFETCH(QVariant, onPitRoad);
    QFETCH(int, status);

    iRTelemetryReader reader;
    prepare(&reader);
    carOf(&reader, Other).current.lapDistPct = before;
    carOf(&reader, Other).current.carStatus = 5;
    TickMap values{{"lapdistpct", now}};
    if (onPitRoad.isValid())
        values.insert("onpitroad", onPitRoad);
    // Where the player is, or whether the car is said to be on track, does not matter.
    values.insert("isontrack", false);
    tick(&reader, Other, values);
    QCOMPARE(reader.car(Other).current.carStatus, status);
}

/// In the first tick a car comes from minus one, so it moves.
void tst_IrTelemetryReaderTicks::othersStandstillIsMeasuredFromTheTickBefore()
{
    iRTelemetryReader reader;
    prepare(&reader);
    const TickMap standing{{"lapdistpct", 0.5f}, {"onpitroad", true}};
    tick(&reader, Other, standing);
    QCOMPARE(reader.car(Other).current.carStatus, 4);
    tick(&reader, Other, standing);
    QCOMPARE(reader.car(Other).current.carStatus, 3);
    tick(&reader, Other, {});
    QCOMPARE(reader.car(Other).current.carStatus, 3);
    tick(&reader, Other, standing);
    QCOMPARE(reader.car(Other).current.carStatus, 4);
}

void tst_IrTelemetryReaderTicks::othersHaveNoLapTimes()
{
    iRTelemetryReader reader;
    prepare(&reader);
    const TickMap values{{"lapdistpct", 0.5f},        {"onpitroad", false},
                         {"isontrack", true},         {"lap", 7},
                         {"lapcurrentlaptime", 7.5f}, {"laplastlaptime", 8.5f}};
    tick(&reader, Other, values);
    tick(&reader, Other, values);
    const CarTrackerSample &state = reader.car(Other).current;
    COMPARE_BITS(state.lapCurrentLapTime, -1.0f);
    COMPARE_BITS(state.lapLastLapTime, -1.0f);
    QCOMPARE(state.lap, -1);
}

void tst_IrTelemetryReaderTicks::othersNeedASession_data()
{
    QTest::addColumn<int>("player");
    QTest::addColumn<QVariant>("sessionNum"); // invalid: missing
    QTest::addColumn<bool>("followed");

    QTest::newRow("session 0") << Player << QVariant(0) << true;
    QTest::newRow("session 7, which nobody knows") << Player << QVariant(7) << true;
    QTest::newRow("session is missing") << Player << QVariant() << true;
    QTest::newRow("session is no number") << Player << QVariant(QString("none")) << true;
    QTest::newRow("session minus one") << Player << QVariant(-1) << false;
    QTest::newRow("no player") << -1 << QVariant(0) << false;
    QTest::newRow("player is no car") << 64 << QVariant(0) << true;
}

void tst_IrTelemetryReaderTicks::othersNeedASession()
{
    QFETCH(int, player);
    QFETCH(QVariant, sessionNum);
    QFETCH(bool, followed);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(player, {Player, Other}).constData());
    reader.updateCarList();
    TickMap mine;
    if (sessionNum.isValid())
        mine.insert("sessionnum", sessionNum);
    // A session number of its own does not help a car.
    const TickMap values{{"lapdistpct", 0.5f}, {"onpitroad", false}, {"sessionnum", 0}};
    tick(&reader, {{Player, mine}, {Other, values}});
    QCOMPARE(reader.car(Other).current.carStatus, followed ? 5 : -1);
    QCOMPARE(reader.lap(Other).size(), followed ? 1 : 0);
    COMPARE_BITS(reader.car(Other).current.lapDistPct, 0.5f);
}

void tst_IrTelemetryReaderTicks::othersLap_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("session");
    QTest::addColumn<int>("lap");

    const auto row = [](const char *name, const QByteArray &results, int lap) {
        QTest::addRow("%s", name) << sessionInfo(1, "Race", results) << 1 << lap;
    };
    row("only entry", result("1", "5", "12"), 12);
    row("entry 0", result("0", "5", "12"), 12);
    row("last entry that is looked at", result("63", "5", "12"), 12);
    row("entry beyond the number of cars", result("64", "5", "12"), -1);
    row("negative entry", result("-1", "5", "12"), -1);
    row("entry with a leading zero", result("01", "5", "12"), -1);
    row("entry that is no number", result("first", "5", "12"), -1);
    row("second entry", result("1", "7", "11") + result("2", "5", "12"), 12);
    row("first of two entries", result("1", "5", "11") + result("2", "5", "12"), 11);
    row("first by number, not by place", result("20", "5", "11") + result("3", "5", "12"), 12);
    row("first by number, not by text", result("10", "5", "11") + result("9", "5", "12"), 12);
    row("gap between the entries", result("1", "7", "11") + result("40", "5", "12"), 12);
    row("other cars only", result("1", "7", "11") + result("2", "55", "12"), -1);
    row("no laps", result("1", "5", "0"), 0);
    row("negative laps", result("1", "5", "-1"), -1);
    row("laps are no number", result("1", "5", "many"), 0);
    row("laps are missing", "   - Position: 1\n     CarIdx: 5\n", 0);
    row("car is no number", result("1", "five", "12"), -1);
    row("no entries", "", -1);

    const QByteArray good = sessionInfo(1, "Race", result("1", "5", "12"));
    QTest::newRow("another session") << good << 0 << -1;
    QTest::newRow("results of two sessions")
        << sessionInfo(0, "Practice", result("1", "5", "11")) + good.mid(4) << 0 << 11;
    QTest::newRow("no results") << QByteArray(
        "---\nSessionInfo:\n Sessions:\n - SessionNum: 1\n   SessionType: Race\n")
                                << 1 << -1;
    QTest::newRow("no session info") << QByteArray("---\n") << 1 << -1;
}

void tst_IrTelemetryReaderTicks::othersLap()
{
    QFETCH(QByteArray, text);
    QFETCH(int, session);
    QFETCH(int, lap);

    iRTelemetryReader reader;
    prepare(&reader);
    reader.setYaml(text.constData());
    carOf(&reader, Other).current.lap = 99;
    tick(&reader,
         {{Player, {{"sessionnum", session}}},
          {Other, {{"lapdistpct", 0.5f}, {"onpitroad", true}, {"lap", 7}}}});
    QCOMPARE(reader.car(Other).current.lap, lap);
}

void tst_IrTelemetryReaderTicks::othersAreNotMarked()
{
    iRTelemetryReader reader;
    prepare(&reader);
    tick(&reader, {{Player, OnTrack}, {Other, {{"lapdistpct", 0.5f}, {"onpitroad", false}}}});
    QVERIFY(reader.sample(Player).containsValue("fulltelemetry"));
    QVERIFY(!reader.sample(Other).containsValue("fulltelemetry"));
    QCOMPARE(reader.lap(Other).getAvailableChannels(), (Names{"lapdistpct", "onpitroad"}));
}

void tst_IrTelemetryReaderTicks::sessionType_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("type");

    QTest::newRow("race") << QByteArray("Race") << 5;
    QTest::newRow("offline testing") << QByteArray("Offline testing") << 0;
    QTest::newRow("qualifying") << QByteArray("Qualify") << 2;
    QTest::newRow("practice") << QByteArray("Practice") << 1;
    QTest::newRow("warm-up") << QByteArray("Warmup") << 3;
    QTest::newRow("alone") << QByteArray("Lone Qualify") << -1;
    QTest::newRow("on one's own") << QByteArray("Offline Testing") << -1;
    QTest::newRow("open") << QByteArray("Open Qualify") << -1;
    QTest::newRow("small letters") << QByteArray("race") << -1;
    QTest::newRow("capitals") << QByteArray("RACE") << -1;
    QTest::newRow("more behind it") << QByteArray("Race 2") << -1;
    QTest::newRow("blank behind it") << QByteArray("Race ") << -1;
    QTest::newRow("carriage return behind it") << QByteArray("Race\r") << -1;
    QTest::newRow("quoted") << QByteArray("\"Race\"") << -1;
    QTest::newRow("empty") << QByteArray("") << -1;
}

void tst_IrTelemetryReaderTicks::sessionType()
{
    QFETCH(QByteArray, text);
    QFETCH(int, type);

    iRTelemetryReader reader;
    prepare(&reader, text);
    tick(&reader, {{Player, OnTrack}, {Other, {{"lapdistpct", 0.5f}, {"onpitroad", false}}}});
    QCOMPARE(reader.car(Player).current.sessionType, type);
    QCOMPARE(reader.car(Other).current.sessionType, type);
}

void tst_IrTelemetryReaderTicks::sessionTypeIsAskedForUntilItIsKnown()
{
    iRTelemetryReader reader;
    prepare(&reader, "Lone Qualify");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, -1);
    prepare(&reader, "Practice");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, 1);
    prepare(&reader, "Race");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, 1);
    prepare(&reader, "Lone Qualify");
    tick(&reader, Player, OnTrack);
    QCOMPARE(reader.car(Player).current.sessionType, 1);
}

void tst_IrTelemetryReaderTicks::sessionTypeIsThatOfTheSession_data()
{
    QTest::addColumn<QVariant>("sessionNum"); // invalid: missing
    QTest::addColumn<int>("type");

    QTest::newRow("first session") << QVariant(0) << 1;
    QTest::newRow("session is missing") << QVariant() << 1;
    QTest::newRow("second session") << QVariant(1) << 2;
    QTest::newRow("third session") << QVariant(2) << 5;
    QTest::newRow("no such session") << QVariant(3) << -1;
    QTest::newRow("negative session") << QVariant(-1) << -1;
    QTest::newRow("session is no number") << QVariant(QString("two")) << 1;
    QTest::newRow("session is text of a number") << QVariant(QString("2")) << 5;
}

void tst_IrTelemetryReaderTicks::sessionTypeIsThatOfTheSession()
{
    QFETCH(QVariant, sessionNum);
    QFETCH(int, type);

    iRTelemetryReader reader;
    prepare(&reader);
    reader.setYaml(sessionInfo(1, "Qualify", "").constData());
    reader.setYaml(sessionInfo(2, "Race", "").constData());
    TickMap values = OnTrack;
    if (sessionNum.isValid())
        values.insert("sessionnum", sessionNum);
    tick(&reader, Player, values);
    QCOMPARE(reader.car(Player).current.sessionType, type);
}

void tst_IrTelemetryReaderTicks::sessionTypeIsKnownPerCar()
{
    iRTelemetryReader reader;
    prepare(&reader);
    reader.setYaml(sessionInfo(1, "Race", "").constData());
    tick(&reader, Player, with(OnTrack, {{"sessionnum", 0}}));
    tick(&reader,
         {{Player, with(OnTrack, {{"sessionnum", 1}})},
          {Other, {{"lapdistpct", 0.5f}, {"onpitroad", false}}}});
    QCOMPARE(reader.car(Player).current.sessionType, 1);
    QCOMPARE(reader.car(Other).current.sessionType, 5);
}

void tst_IrTelemetryReaderTicks::holdAndSpareFlagAreCleared()
{
    iRTelemetryReader reader;
    prepare(&reader);
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

void tst_IrTelemetryReaderTicks::holdKeepsTheLapFromBeingCompleted()
{
    for (const bool hold : {false, true}) {
        iRTelemetryReader reader;
        prepare(&reader);
        tick(&reader, Player, with(OnTrack, {{"lapcurrentlaptime", 80.0f}}));
        carOf(&reader, Player).current.completionHold = hold;
        tick(&reader, Player, with(OnTrack, {{"lapcurrentlaptime", 0.0f}, {"lap", 3}}));
        QCOMPARE(reader.isMyLapReady(), !hold);
    }
}

void tst_IrTelemetryReaderTicks::recorded_data()
{
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<bool>("lapEmpty");
    QTest::addColumn<TickMap>("values");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("recorded");

    const TickMap garage = with(OnTrack, {{"isontrack", false}});
    const TickMap pitRoad = with(OnTrack, {{"onpitroad", true}});
    const TickMap late = with(OnTrack, {{"lapdistpct", 0.9f}});
    QTest::newRow("on a lap") << 5 << false << OnTrack << 5 << true;
    QTest::newRow("on a lap that is empty") << 5 << true << OnTrack << 5 << true;
    QTest::newRow("later lap") << 6 << false << OnTrack << 6 << true;
    QTest::newRow("later lap that is empty") << 6 << true << OnTrack << 6 << true;
    QTest::newRow("garage, lap is empty") << -1 << true << garage << 3 << false;
    QTest::newRow("garage, lap goes on") << 5 << false << garage << 3 << true;
    QTest::newRow("pit road, lap is empty") << 3 << true << pitRoad << 4 << false;
    QTest::newRow("pit road, lap goes on") << 5 << false << pitRoad << 4 << true;
    QTest::newRow("on track from the garage, lap is empty") << 3 << true << OnTrack << 3 << false;
    QTest::newRow("on track from the garage, lap goes on") << 3 << false << OnTrack << 3 << true;
    QTest::newRow("out of the pits before the line") << 4 << true << late << 2 << false;
    QTest::newRow("out of the pits before the line, lap was recorded")
        << 4 << false << late << 2 << false;
}

void tst_IrTelemetryReaderTicks::recorded()
{
    QFETCH(int, statusBefore);
    QFETCH(bool, lapEmpty);
    QFETCH(TickMap, values);
    QFETCH(int, status);
    QFETCH(bool, recorded);

    iRTelemetryReader reader;
    prepare(&reader);
    carOf(&reader, Player).current.carStatus = statusBefore;
    if (!lapEmpty) {
        ZEP::Sample sample;
        addValues(&sample, with(OnTrack, {{"fulltelemetry", 1}}));
        reader.lap(Player).addSample(sample);
    }
    const int before = reader.lap(Player).size();
    tick(&reader, Player, values);
    QCOMPARE(reader.car(Player).current.carStatus, status);
    QCOMPARE(reader.lap(Player).size(), before + (recorded ? 1 : 0));
    QVERIFY(reader.car(Player).nextLap.isEmpty());
    if (recorded)
        QVERIFY(reader.lap(Player).containsCalculatedValue("maxLapDistPct"));
    else
        QVERIFY(!reader.lap(Player).containsCalculatedValue("maxLapDistPct"));
}

void tst_IrTelemetryReaderTicks::closingTickIsNotRecorded()
{
    iRTelemetryReader reader;
    prepare(&reader);
    for (const float pct : {0.2f, 0.5f, 0.95f})
        tick(&reader, Player,
             with(OnTrack, {{"lapdistpct", pct}, {"lapcurrentlaptime", pct * 80}}));
    tick(&reader, Player,
         with(OnTrack, {{"lapdistpct", 0.01f}, {"lapcurrentlaptime", 0.0f}, {"lap", 3}}));
    QVERIFY(reader.isMyLapReady());
    QCOMPARE(reader.lap(Player).size(), 3);
    QVERIFY(reader.car(Player).nextLap.isEmpty());

    tick(&reader, Player,
         with(OnTrack, {{"lapdistpct", 0.02f}, {"lapcurrentlaptime", 0.1f}, {"lap", 3}}));
    QVERIFY(!reader.isMyLapReady());
    COMPARE_BITS(reader.lap(Player).channel("lapdistpct")->data, QVector<double>({double(0.02f)}));
}

void tst_IrTelemetryReaderTicks::slowTicksAreNotRecorded_data()
{
    QTest::addColumn<TickMap>("values");
    QTest::addColumn<bool>("recorded");

    QTest::newRow("no speed") << TickMap{} << true;
    QTest::newRow("fast") << TickMap{{"Speed", 50.0f}} << true;
    QTest::newRow("one") << TickMap{{"Speed", 1.0f}} << true;
    QTest::newRow("just below one") << TickMap{{"Speed", below(1.0f)}} << false;
    QTest::newRow("just below one as a double is one") << TickMap{{"Speed", 0.9999999999}} << true;
    QTest::newRow("standing") << TickMap{{"Speed", 0.0f}} << false;
    QTest::newRow("backwards") << TickMap{{"Speed", -50.0f}} << false;
    QTest::newRow("NaN") << TickMap{{"Speed", std::numeric_limits<float>::quiet_NaN()}} << true;
    QTest::newRow("no number") << TickMap{{"Speed", QString("slow")}} << false;
    QTest::newRow("invalid") << TickMap{{"Speed", QVariant()}} << false;
    QTest::newRow("standing, in a recording's letters") << TickMap{{"speed", 0.0f}} << true;
    QTest::newRow("standing, in capitals") << TickMap{{"SPEED", 0.0f}} << true;
}

void tst_IrTelemetryReaderTicks::slowTicksAreNotRecorded()
{
    QFETCH(TickMap, values);
    QFETCH(bool, recorded);

    iRTelemetryReader reader;
    prepare(&reader);
    tick(&reader,
         {{Player, with(OnTrack, values)},
          {Other, with({{"lapdistpct", 0.5f}, {"onpitroad", false}}, values)}});
    for (const int car : {Player, Other}) {
        QCOMPARE(reader.lap(car).size(), recorded ? 1 : 0);
        QCOMPARE(reader.lap(car).containsCalculatedValue("maxLapDistPct"), recorded);
        QCOMPARE(reader.car(car).current.carStatus, 5);
    }
}

void tst_IrTelemetryReaderTicks::crossingTheLine_data()
{
    QTest::addColumn<QVector<float>>("fractions");
    QTest::addColumn<int>("inLap");
    QTest::addColumn<int>("inNextLap");
    QTest::addColumn<float>("greatest");

    using Fractions = QVector<float>;
    QTest::newRow("one tick") << Fractions{0.3f} << 1 << 0 << 0.3f;
    QTest::newRow("one tick behind the line") << Fractions{0.99f} << 1 << 0 << 0.99f;
    QTest::newRow("onwards") << Fractions{0.1f, 0.2f, 0.3f} << 3 << 0 << 0.3f;
    QTest::newRow("standing") << Fractions{0.2f, 0.2f, 0.2f} << 3 << 0 << 0.2f;
    QTest::newRow("backwards") << Fractions{0.3f, 0.2f, 0.1f} << 3 << 0 << 0.3f;
    QTest::newRow("just behind the line") << Fractions{0.995f, 0.01f} << 1 << 1 << 0.995f;
    QTest::newRow("some way behind the line")
        << Fractions{0.5f, 0.995f, 0.01f, 0.02f, 0.03f} << 2 << 3 << 0.995f;
    QTest::newRow("greatest is 0.9 as a float, a little less")
        << Fractions{0.9f, 0.01f} << 2 << 0 << 0.9f;
    QTest::newRow("greatest is just above 0.9")
        << Fractions{above(0.9f), 0.01f} << 1 << 1 << above(0.9f);
    QTest::newRow("back by half a lap") << Fractions{1.0f, 0.5f} << 2 << 0 << 1.0f;
    QTest::newRow("back by just more than half a lap")
        << Fractions{1.0f, below(0.5f)} << 1 << 1 << 1.0f;
    QTest::newRow("beyond the lap") << Fractions{1.2f, 0.6f} << 1 << 1 << 1.2f;
    QTest::newRow("back over the line") << Fractions{0.99f, 0.01f, 0.98f, 0.02f} << 2 << 2 << 0.99f;
    QTest::newRow("back over the line and farther")
        << Fractions{0.95f, 0.01f, 0.99f} << 2 << 1 << 0.99f;
    QTest::newRow("middle of the lap again") << Fractions{0.95f, 0.01f, 0.46f} << 2 << 1 << 0.95f;
    QTest::newRow("before the line at first") << Fractions{-0.1f, -0.2f, 0.1f} << 3 << 0 << 0.1f;
}

void tst_IrTelemetryReaderTicks::crossingTheLine()
{
    QFETCH(QVector<float>, fractions);
    QFETCH(float, greatest);

    iRTelemetryReader reader;
    prepare(&reader);
    for (const float pct : qAsConst(fractions)) {
        tick(&reader,
             {{Player, with(OnTrack, {{"lapdistpct", pct}})},
              {Other, {{"lapdistpct", pct}, {"onpitroad", false}}}});
    }
    for (const int index : {Player, Other}) {
        const CarTracker &car = reader.car(index);
        QTEST(car.lap.size(), "inLap");
        QTEST(car.nextLap.size(), "inNextLap");
        const ZEP::Value value = car.lap.calculatedValue("maxLapDistPct");
        QCOMPARE(value.value.userType(), int(QMetaType::Float));
        COMPARE_BITS(value.value.toFloat(), greatest);
        QVERIFY(value.unit().isEmpty());
        QVERIFY(!car.nextLap.containsCalculatedValue("maxLapDistPct"));
    }
}

void tst_IrTelemetryReaderTicks::nextLapOpensWithWhatLiesBehindTheLine()
{
    iRTelemetryReader reader;
    prepare(&reader);
    const auto drive = [&reader](float pct, float time, int lap) {
        tick(&reader, Player,
             with(OnTrack, {{"lapdistpct", pct}, {"lapcurrentlaptime", time}, {"lap", lap}}));
    };
    drive(0.5f, 40.0f, 2);
    drive(0.995f, 80.0f, 2);
    drive(0.01f, 80.5f, 2);
    drive(0.02f, 81.0f, 2);
    drive(0.03f, 0.0f, 3); // closes
    QVERIFY(reader.isMyLapReady());
    QCOMPARE(reader.lap(Player).size(), 2);
    drive(0.04f, 0.5f, 3);
    COMPARE_BITS(reader.lap(Player).channel("lapdistpct")->data,
                 QVector<double>({double(0.01f), double(0.02f), double(0.04f)}));
    QVERIFY(reader.car(Player).nextLap.isEmpty());
    COMPARE_BITS(reader.lap(Player).calculatedValue("maxLapDistPct").value.toFloat(), 0.04f);
}

/// Whoever changes it moves the line.
void tst_IrTelemetryReaderTicks::greatestFractionIsAValueOfTheLap()
{
    iRTelemetryReader reader;
    prepare(&reader);
    tick(&reader, Player, with(OnTrack, {{"lapdistpct", 0.3f}}));
    reader.lap(Player).setCalculatedValue("maxLapDistPct", 0.95, "pu");
    tick(&reader, Player, with(OnTrack, {{"lapdistpct", 0.4f}}));
    QCOMPARE(reader.lap(Player).size(), 1);
    QCOMPARE(reader.car(Player).nextLap.size(), 1);
    QCOMPARE(reader.lap(Player).calculatedValue("maxLapDistPct").print(), QString("0.95 pu"));
    reader.lap(Player).removeCalculatedValue("maxLapDistPct");
    tick(&reader, Player, with(OnTrack, {{"lapdistpct", 0.2f}}));
    QCOMPARE(reader.lap(Player).size(), 2);
    COMPARE_BITS(reader.lap(Player).calculatedValue("maxLapDistPct").value.toFloat(), 0.2f);
    QVERIFY(reader.lap(Player).calculatedValue("maxLapDistPct").unit().isEmpty());
}

void tst_IrTelemetryReaderTicks::sampleMayBeChangedBeforeItIsProcessed()
{
    iRTelemetryReader reader;
    prepare(&reader);
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

void tst_IrTelemetryReaderTicks::sessionIsNeverRestarted()
{
    iRTelemetryReader reader;
    QVERIFY(!reader.isSessionRestarted());
    prepare(&reader, "Race");
    for (const int session : {2, 1, 0}) {
        tick(&reader, Player,
             with(OnTrack, {{"sessionnum", session}, {"sessiontime", 0.0}, {"lap", 0}}));
        QVERIFY(!reader.isSessionRestarted());
    }
}

QTEST_APPLESS_MAIN(tst_IrTelemetryReaderTicks)

#include "tst_irtelemetryreader_ticks.moc"
