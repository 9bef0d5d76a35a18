// What a tick does to the cars that are not the player's.

#include "tests/support/nextfloat.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/twocars.h"

#include <QTest>

using Names = QList<QString>;

namespace {

QByteArray result(const QByteArray &position, const QByteArray &carIdx, const QByteArray &laps)
{
    return "   - Position: " + position + "\n     CarIdx: " + carIdx
        + "\n     LapsComplete: " + laps + '\n';
}

} // namespace

class tst_IrTelemetryReaderOthers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void othersState_data();
    void othersState();
    void othersStandstillIsMeasuredFromTheTickBefore();
    void othersHaveNoLapTimes();
    void othersNeedASession_data();
    void othersNeedASession();
    void othersLap_data();
    void othersLap();
    void othersAreNotMarked();
};

void tst_IrTelemetryReaderOthers::othersState_data()
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

void tst_IrTelemetryReaderOthers::othersState()
{
    QFETCH(float, before);
    QFETCH(float, now);
    QFETCH(QVariant, onPitRoad);
    QFETCH(int, status);

    iRTelemetryReader reader;
    addTwoCars(&reader);
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
void tst_IrTelemetryReaderOthers::othersStandstillIsMeasuredFromTheTickBefore()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
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

void tst_IrTelemetryReaderOthers::othersHaveNoLapTimes()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
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

void tst_IrTelemetryReaderOthers::othersNeedASession_data()
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

void tst_IrTelemetryReaderOthers::othersNeedASession()
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

void tst_IrTelemetryReaderOthers::othersLap_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("session");
    QTest::addColumn<int>("lap");

    const auto row = [](const char *name, const QByteArray &results, int lap) {
        QTest::addRow("%s", name) << sessionWithResults(1, "Race", results) << 1 << lap;
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

    const QByteArray good = sessionWithResults(1, "Race", result("1", "5", "12"));
    QTest::newRow("another session") << good << 0 << -1;
    QTest::newRow("results of two sessions")
        << sessionWithResults(0, "Practice", result("1", "5", "11")) + good.mid(4) << 0 << 11;
    QTest::newRow("no results") << QByteArray(
        "---\nSessionInfo:\n Sessions:\n - SessionNum: 1\n   SessionType: Race\n")
                                << 1 << -1;
    QTest::newRow("no session info") << QByteArray("---\n") << 1 << -1;
}

void tst_IrTelemetryReaderOthers::othersLap()
{
    QFETCH(QByteArray, text);
    QFETCH(int, session);
    QFETCH(int, lap);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    reader.setYaml(text.constData());
    carOf(&reader, Other).current.lap = 99;
    tick(&reader,
         {{Player, {{"sessionnum", session}}},
          {Other, {{"lapdistpct", 0.5f}, {"onpitroad", true}, {"lap", 7}}}});
    QCOMPARE(reader.car(Other).current.lap, lap);
}

void tst_IrTelemetryReaderOthers::othersAreNotMarked()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader, {{Player, OnTrack}, {Other, {{"lapdistpct", 0.5f}, {"onpitroad", false}}}});
    QVERIFY(reader.sample(Player).containsValue("fulltelemetry"));
    QVERIFY(!reader.sample(Other).containsValue("fulltelemetry"));
    QCOMPARE(reader.lap(Other).getAvailableChannels(), (Names{"lapdistpct", "onpitroad"}));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderOthers)

#include "tst_irtelemetryreader_others.moc"
