// Where a car is, and when its stints and laps begin and end.

#include "tests/support/cartrackerstates.h"
#include "tests/support/nextfloat.h"
#include "tests/support/roomtests.h"

#include <QTest>

namespace {

constexpr int Race = 5;
constexpr int Practice = 1;

} // namespace

class tst_CarTrackerStatus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offTrackStates_data();
    void offTrackStates();
    void onTrackStates_data();
    void onTrackStates();
    void completionTest_data();
    void completionTest();
    void pitsLeaveTheCompletionAsItWas_data();
    void pitsLeaveTheCompletionAsItWas();
};

void tst_CarTrackerStatus::offTrackStates_data()
{
    QTest::addColumn<bool>("stationary");
    QTest::addColumn<bool>("onPitRoad");
    QTest::addColumn<bool>("onTrack");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");

    for (const int before : {-1, 2, 3, 4, 5, 6}) {
        QTest::addRow("stationary, %d before", before) << true << false << false << before << 3;
        QTest::addRow("stationary on pit road, %d before", before)
            << true << true << false << before << 3;
        QTest::addRow("stationary on track, %d before", before)
            << true << false << true << before << 3;
        QTest::addRow("pit road, %d before", before) << false << true << false << before << 4;
        QTest::addRow("pit road and track, %d before", before)
            << false << true << true << before << 4;
        QTest::addRow("nowhere, %d before", before) << false << false << false << before << before;
    }
}

void tst_CarTrackerStatus::offTrackStates()
{
    QFETCH(bool, stationary);
    QFETCH(bool, onPitRoad);
    QFETCH(bool, onTrack);
    QFETCH(int, before);
    QFETCH(int, after);

    // Everything here would complete a lap or start a stint on track.
    CarTracker car;
    car.isPlayerCar = true;
    car.current = filledState();
    car.current.completionHold = false;
    car.current.carStatus = before;
    car.previous = car.current;
    car.current.lap = 12;
    car.current.lapCurrentLapTime = 0.0f;
    car.current.lapCompleted = false;
    car.lap.addSample(sampleOf("speed", 1));

    CarTrackerSample expected = car.current;
    expected.carStatus = after;
    car.updateCarStatus(stationary, onPitRoad, onTrack);
    QCOMPARE(difference(car.current, expected), QString());
    QCOMPARE(car.lap.size(), 1);
}

void tst_CarTrackerStatus::onTrackStates_data()
{
    QTest::addColumn<int>("sessionType");
    QTest::addColumn<int>("sessionState");
    QTest::addColumn<int>("before");
    QTest::addColumn<float>("lapDistPct");
    QTest::addColumn<int>("after");
    QTest::addColumn<bool>("newStint");

    const auto row = [](const char *name, int type, int state, int before, float pct, int after,
                        bool newStint) {
        QTest::addRow("%s", name) << type << state << before << pct << after << newStint;
    };

    // Practice, and whatever else is no race: the state of the session does not matter.
    for (const int type : {-1, 0, 1, 2, 3}) {
        for (const int state : {0, 1, 2, 3, 4, 5, 6}) {
            const QByteArray prefix =
                "type " + QByteArray::number(type) + ", state " + QByteArray::number(state) + ": ";
            const auto general = [&](const char *name, int before, float pct, int after,
                                     bool newStint) {
                row(QByteArray(prefix + name).constData(), type, state, before, pct, after,
                    newStint);
            };
            general("first tick", -1, 0.5f, 5, true);
            general("first tick, late in the lap", -1, 0.99f, 5, true);
            general("line crossed after the grid", 2, 0.01f, 5, true);
            general("grid left without the line", 2, 0.99f, 5, true);
            general("out of the pits", 4, 0.1f, 5, true);
            general("out of the pits, late in the lap", 4, 0.9f, 2, false);
            general("garage left for the track", 3, 0.5f, 3, false);
            general("garage left for the track, late in the lap", 3, 0.9f, 3, false);
            general("first lap of a stint", 5, 0.5f, 5, false);
            general("first lap of a stint, late in the lap", 5, 0.9f, 5, false);
            general("later lap", 6, 0.5f, 6, false);
            general("later lap, late in the lap", 6, 0.9f, 6, false);
        }
    }

    row("out of the pits, 0.8 as a float is beyond", Practice, 4, 4, 0.8f, 2, false);
    row("out of the pits, just below 0.8", Practice, 4, 4, below(0.8f), 5, true);
    row("out of the pits, where a grid would be", Practice, 4, 4, 0.7f, 5, true);
    row("out of the pits, no fraction", Practice, 4, 4, -1.0f, 5, true);
    row("out of the pits, fraction above one", Practice, 4, 4, 1.5f, 2, false);

    for (const int state : {1, 2, 3}) {
        const QByteArray prefix = "before the start, state " + QByteArray::number(state) + ": ";
        for (const int before : {-1, 2, 3, 4, 6}) {
            const QByteArray was = prefix + QByteArray::number(before) + " before, ";
            row(QByteArray(was + "on the grid").constData(), Race, state, before, 0.9f, 2, false);
            row(QByteArray(was + "just beyond 0.65").constData(), Race, state, before, above(0.65f),
                2, false);
            row(QByteArray(was + "0.65 as a float is not beyond").constData(), Race, state, before,
                0.65f, 5, true);
            row(QByteArray(was + "behind the line").constData(), Race, state, before, 0.01f, 5,
                true);
        }
        row(QByteArray(prefix + "on a lap").constData(), Race, state, 5, 0.5f, 5, false);
        row(QByteArray(prefix + "on a lap, late in it").constData(), Race, state, 5, 0.9f, 5,
            false);
        row(QByteArray(prefix + "on a lap, behind the line").constData(), Race, state, 5, 0.01f, 5,
            false);
    }

    row("racing: on a lap, still before the line", Race, 4, 5, 0.9f, 5, false);
    row("racing: on a lap, just beyond 0.65", Race, 4, 5, above(0.65f), 5, false);
    row("racing: on a lap, 0.65 as a float is behind the line", Race, 4, 5, 0.65f, 6, false);
    row("racing: on a lap, behind the line", Race, 4, 5, 0.01f, 6, false);
    row("racing: first tick", Race, 4, -1, 0.9f, 5, true);
    row("racing: line crossed after the grid", Race, 4, 2, 0.01f, 5, true);
    row("racing: still before the line after the grid", Race, 4, 2, 0.9f, 5, true);
    row("racing: garage left for the track", Race, 4, 3, 0.5f, 3, false);
    row("racing: out of the pits", Race, 4, 4, 0.7f, 5, true);
    row("racing: out of the pits, late in the lap", Race, 4, 4, 0.9f, 2, false);
    row("racing: later lap", Race, 4, 6, 0.5f, 6, false);
    row("racing: later lap, late in it", Race, 4, 6, 0.9f, 6, false);

    for (const int state : {-1, 0, 5, 6}) {
        const QByteArray prefix = "race, state " + QByteArray::number(state) + ": ";
        row(QByteArray(prefix + "first tick late in the lap").constData(), Race, state, -1, 0.9f, 5,
            true);
        row(QByteArray(prefix + "line crossed after the grid").constData(), Race, state, 2, 0.01f,
            5, true);
        row(QByteArray(prefix + "garage left").constData(), Race, state, 3, 0.5f, 3, false);
        row(QByteArray(prefix + "out of the pits").constData(), Race, state, 4, 0.7f, 5, true);
        row(QByteArray(prefix + "out of the pits, late").constData(), Race, state, 4, 0.9f, 2,
            false);
        row(QByteArray(prefix + "on a lap").constData(), Race, state, 5, 0.01f, 5, false);
        row(QByteArray(prefix + "later lap").constData(), Race, state, 6, 0.5f, 6, false);
    }
}

void tst_CarTrackerStatus::onTrackStates()
{
    QFETCH(int, sessionType);
    QFETCH(int, sessionState);
    QFETCH(int, before);
    QFETCH(float, lapDistPct);
    QFETCH(int, after);
    QFETCH(bool, newStint);

    for (const bool isPlayerCar : {true, false}) {
        CarTracker car;
        car.isPlayerCar = isPlayerCar;
        car.current.stintCount = 3;
        car.current.lapInStint = 4;
        car.current.lapId = QUuid::createUuid();
        car.current.stintId = QUuid::createUuid();
        car.current.sessionType = sessionType;
        car.current.carStatus = before;
        car.previous = car.current;
        car.current.sessionState = sessionState;
        car.current.lapDistPct = lapDistPct;
        car.lap.addSample(sampleOf("speed", 1));
        const CarTrackerSample state = car.current;

        car.updateCarStatus(false, false, true);
        QCOMPARE(car.current.carStatus, after);
        QVERIFY(!car.current.lapCompleted); // there was no lap before
        QCOMPARE(car.current.stintCount, newStint ? 4 : 3);
        QCOMPARE(car.current.lapInStint, newStint ? 0 : 4);
        QCOMPARE(car.current.lapId != state.lapId, newStint);
        QCOMPARE(car.current.stintId != state.stintId, newStint);
        QCOMPARE(car.lap.isEmpty(), newStint);
    }
}

void tst_CarTrackerStatus::completionTest_data()
{
    QTest::addColumn<int>("sessionType");
    QTest::addColumn<int>("sessionState");
    QTest::addColumn<int>("before");
    QTest::addColumn<float>("lapDistPct");
    QTest::addColumn<int>("lap");
    QTest::addColumn<bool>("completed");
    QTest::addColumn<int>("after");

    // The lap before is 3; lap 4 with a running time of zero completes it.
    QTest::newRow("first lap of a stint") << Practice << 4 << 5 << 0.01f << 4 << true << 6;
    QTest::newRow("first lap of a stint goes on") << Practice << 4 << 5 << 0.5f << 3 << false << 5;
    QTest::newRow("later lap") << Practice << 4 << 6 << 0.01f << 4 << true << 6;
    QTest::newRow("later lap goes on") << Practice << 4 << 6 << 0.5f << 3 << false << 6;
    QTest::newRow("on track from the garage: complete, but still stopped")
        << Practice << 4 << 3 << 0.01f << 4 << true << 3;
    QTest::newRow("first tick: a stint starts and a lap ends at once")
        << Practice << 4 << -1 << 0.01f << 4 << true << 6;
    QTest::newRow("out of the pits: a stint starts and a lap ends at once")
        << Practice << 4 << 4 << 0.01f << 4 << true << 6;
    QTest::newRow("out of the pits late in the lap")
        << Practice << 4 << 4 << 0.9f << 4 << false << 2;
    QTest::newRow("from the grid: nothing to complete")
        << Practice << 4 << 2 << 0.01f << 4 << false << 5;
    QTest::newRow("race: onto the grid") << Race << 3 << -1 << 0.9f << 4 << false << 2;
    QTest::newRow("race: parade lap ends before the start")
        << Race << 3 << 5 << 0.01f << 4 << true << 6;
    QTest::newRow("race: behind the line, whatever the lap says")
        << Race << 4 << 5 << 0.01f << 3 << true << 6;
    QTest::newRow("race: before the line, but the lap counts")
        << Race << 4 << 5 << 0.9f << 4 << true << 6;
    QTest::newRow("race: before the line") << Race << 4 << 5 << 0.9f << 3 << false << 5;
}

void tst_CarTrackerStatus::completionTest()
{
    QFETCH(int, sessionType);
    QFETCH(int, sessionState);
    QFETCH(int, before);
    QFETCH(float, lapDistPct);
    QFETCH(int, lap);
    QFETCH(bool, completed);
    QFETCH(int, after);

    for (const bool completedBefore : {false, true}) {
        CarTracker car;
        car.isPlayerCar = true;
        car.diskLoading = true;
        car.current.sessionType = sessionType;
        car.current.carStatus = before;
        car.current.lap = 3;
        car.current.lapCompleted = completedBefore;
        car.previous = car.current;
        car.current.sessionState = sessionState;
        car.current.lapDistPct = lapDistPct;
        car.current.lap = lap;
        car.current.lapCurrentLapTime = 0.0f;

        car.updateCarStatus(false, false, true);
        QCOMPARE(car.current.lapCompleted, completed);
        QCOMPARE(car.current.carStatus, after);
    }
}

void tst_CarTrackerStatus::pitsLeaveTheCompletionAsItWas_data()
{
    QTest::addColumn<bool>("stationary");
    QTest::addColumn<bool>("onPitRoad");

    QTest::newRow("stationary") << true << false;
    QTest::newRow("pit road") << false << true;
    QTest::newRow("nowhere") << false << false;
}

/// A car that turns into the pits in the tick behind the line is found complete once more.
void tst_CarTrackerStatus::pitsLeaveTheCompletionAsItWas()
{
    QFETCH(bool, stationary);
    QFETCH(bool, onPitRoad);

    for (const bool completed : {false, true}) {
        CarTracker car;
        car.current.lapCompleted = completed;
        car.prepareTick();
        car.updateCarStatus(stationary, onPitRoad, false);
        QCOMPARE(car.current.lapCompleted, completed);
    }
}

NAPAMMUL_TEST(tst_CarTrackerStatus)

#include "tst_cartracker_status.moc"
