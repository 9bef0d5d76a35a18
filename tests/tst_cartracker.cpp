// The state machine of one car: where it is, when a lap starts, and when one is complete.

#include "reader/cartracker.h"
#include "tests/samebits.h"

#include <QLoggingCategory>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr float FloatNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float NoTime = 1.0e25f;

constexpr int Race = 5;
constexpr int Practice = 1;

float above(float value)
{
    return std::nextafter(value, std::numeric_limits<float>::infinity());
}

float below(float value)
{
    return std::nextafter(value, -std::numeric_limits<float>::infinity());
}

struct DebugLine {
    QtMsgType type;
    QString category;
    QString text;
};

QVector<DebugLine> debugLines;

/// Notes what is written to the debug log for as long as it lives.
class DebugLog
{
public:
    DebugLog()
    {
        debugLines.clear();
        m_before = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
                debugLines.append({type, QString::fromLatin1(context.category), text});
            });
    }
    ~DebugLog() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY(DebugLog)

private:
    QtMessageHandler m_before;
};

ZEP::Sample sampleOf(const QString &name, double value)
{
    ZEP::Sample sample;
    sample.addValue(name, value, QStringLiteral("m"));
    return sample;
}

/// A state in which no field has its initial value.
CarTrackerSample filledState()
{
    CarTrackerSample state;
    state.lapId = QUuid::createUuid();
    state.stintId = QUuid::createUuid();
    state.text = "text";
    state.lap = 11;
    state.lapInStint = 12;
    state.stintCount = 13;
    state.spareInt1 = 14;
    state.lapDistPct = 0.15f;
    state.lapCurrentLapTime = 16.5f;
    state.lapLastLapTime = 17.5f;
    state.spareInt2 = 18;
    state.spareInt3 = 19;
    state.sessionState = 4;
    state.carStatus = 6;
    state.sessionType = 5;
    state.lapCompleted = true;
    state.spareFlag1 = true;
    state.completionHold = true;
    state.spareFlag2 = true;
    state.spare64 = Q_INT64_C(0x123456789abcdef);
    return state;
}

/// The first field that differs; empty if none does.
QString difference(const CarTrackerSample &actual, const CarTrackerSample &expected)
{
#define FIELD(field)                                                                               \
    if (actual.field != expected.field)                                                            \
    return QStringLiteral(#field)
    FIELD(lapId);
    FIELD(stintId);
    FIELD(text);
    FIELD(lap);
    FIELD(lapInStint);
    FIELD(stintCount);
    FIELD(spareInt1);
    FIELD(lapDistPct);
    FIELD(lapCurrentLapTime);
    FIELD(lapLastLapTime);
    FIELD(spareInt2);
    FIELD(spareInt3);
    FIELD(sessionState);
    FIELD(carStatus);
    FIELD(sessionType);
    FIELD(lapCompleted);
    FIELD(spareFlag1);
    FIELD(completionHold);
    FIELD(spareFlag2);
    FIELD(spare64);
#undef FIELD
    return QString();
}

} // namespace

class tst_CarTracker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateHasItsInitialValues();
    void trackerHasItsInitialValues();
    void copiesCarryEverything_data();
    void copiesCarryEverything();
    void copiesAreIndependent();

    void offTrackStates_data();
    void offTrackStates();
    void onTrackStates_data();
    void onTrackStates();
    void completionTest_data();
    void completionTest();
    void pitsLeaveTheCompletionAsItWas_data();
    void pitsLeaveTheCompletionAsItWas();

    void playersLapIsCompleted_data();
    void playersLapIsCompleted();
    void othersLapIsCompleted_data();
    void othersLapIsCompleted();
    void othersCompletedLapIsLogged();

    void startLap();
    void startLapTakesTheNextLap();
    void startStint();
    void newStint();
    void prepareTick_data();
    void prepareTick();
    void isLapAborted();
};

void tst_CarTracker::stateHasItsInitialValues()
{
    const CarTrackerSample state;
    QVERIFY(state.lapId.isNull());
    QVERIFY(state.stintId.isNull());
    QVERIFY(state.text.isEmpty());
    QCOMPARE(state.lap, -1);
    QCOMPARE(state.lapInStint, -1);
    QCOMPARE(state.stintCount, 0);
    QCOMPARE(state.spareInt1, -1);
    COMPARE_BITS(state.lapDistPct, -1.0f);
    COMPARE_BITS(state.lapCurrentLapTime, -1.0f);
    COMPARE_BITS(state.lapLastLapTime, -1.0f);
    QCOMPARE(state.spareInt2, -1);
    QCOMPARE(state.spareInt3, -1);
    QCOMPARE(state.sessionState, 0);
    QCOMPARE(state.carStatus, -1);
    QCOMPARE(state.sessionType, -1);
    QVERIFY(!state.lapCompleted);
    QVERIFY(!state.spareFlag1);
    QVERIFY(!state.completionHold);
    QVERIFY(!state.spareFlag2);
    QCOMPARE(state.spare64, Q_INT64_C(0));
}

void tst_CarTracker::trackerHasItsInitialValues()
{
    CarTracker car;
    QCOMPARE(difference(car.current, CarTrackerSample()), QString());
    QCOMPARE(difference(car.previous, CarTrackerSample()), QString());
    QVERIFY(car.sample.valueNameList().isEmpty());
    QVERIFY(!car.sample.carId().isValid());
    for (ZEP::Lap *lap : {&car.lap, &car.nextLap}) {
        QVERIFY(lap->isEmpty());
        QVERIFY(lap->calculatedValuesNames().isEmpty());
        QVERIFY(lap->valueNameList().isEmpty());
        QCOMPARE(int(lap->getLapType()), -1);
    }
    QVERIFY(car.driverName.isEmpty());
    QVERIFY(car.teamName.isEmpty());
    QVERIFY(!car.isPlayerCar);
    QVERIFY(!car.active);
    QVERIFY(!car.diskLoading);
    QVERIFY(!car.lapReady);
}

void tst_CarTracker::copiesCarryEverything_data()
{
    QTest::addColumn<bool>("assigned");

    QTest::newRow("copied") << false;
    QTest::newRow("assigned") << true;
}

void tst_CarTracker::copiesCarryEverything()
{
    QFETCH(bool, assigned);

    CarTracker source;
    source.current = filledState();
    source.previous = filledState();
    source.sample = sampleOf("speed", 1);
    source.sample.setCarId(7);
    source.lap.addSample(sampleOf("speed", 2));
    source.lap.setDriverName("A Driver");
    source.nextLap.addSample(sampleOf("rpm", 3));
    source.driverName = "A Driver";
    source.teamName = "A Team";
    source.isPlayerCar = true;
    source.active = true;
    source.diskLoading = true;
    source.lapReady = true;

    CarTracker target;
    target.driverName = "Another Driver";
    target = source;
    CarTracker copy = assigned ? target : CarTracker(source);
    QCOMPARE(difference(copy.current, source.current), QString());
    QCOMPARE(difference(copy.previous, source.previous), QString());
    QCOMPARE(copy.sample.value("speed").print(), QString("1 m"));
    QCOMPARE(copy.sample.carId(), QVariant(7));
    QCOMPARE(copy.lap.getDriverName(), QString("A Driver"));
    QCOMPARE(copy.lap.channel("speed"), source.lap.channel("speed"));
    QCOMPARE(copy.nextLap.channel("rpm"), source.nextLap.channel("rpm"));
    QCOMPARE(copy.driverName, QString("A Driver"));
    QCOMPARE(copy.teamName, QString("A Team"));
    QVERIFY(copy.isPlayerCar);
    QVERIFY(copy.active);
    QVERIFY(copy.diskLoading);
    QVERIFY(copy.lapReady);
}

void tst_CarTracker::copiesAreIndependent()
{
    CarTracker source;
    source.lap.addSample(sampleOf("speed", 2));
    source.lap.setDriverName("A Driver");
    CarTracker copy(source);
    copy.current.lap = 5;
    copy.driverName = "Another Driver";
    copy.sample.addValue("rpm", 1, QString());
    copy.lap.setDriverName("Another Driver");
    copy.lap.removeChannel("speed");
    copy.nextLap.addSample(sampleOf("rpm", 3));
    QCOMPARE(source.current.lap, -1);
    QVERIFY(source.driverName.isEmpty());
    QVERIFY(source.sample.valueNameList().isEmpty());
    QCOMPARE(source.lap.getDriverName(), QString("A Driver"));
    QCOMPARE(source.lap.size(), 1);
    QVERIFY(source.nextLap.isEmpty());
}

void tst_CarTracker::offTrackStates_data()
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

void tst_CarTracker::offTrackStates()
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

void tst_CarTracker::onTrackStates_data()
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

void tst_CarTracker::onTrackStates()
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

void tst_CarTracker::completionTest_data()
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

void tst_CarTracker::completionTest()
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

void tst_CarTracker::pitsLeaveTheCompletionAsItWas_data()
{
    QTest::addColumn<bool>("stationary");
    QTest::addColumn<bool>("onPitRoad");

    QTest::newRow("stationary") << true << false;
    QTest::newRow("pit road") << false << true;
    QTest::newRow("nowhere") << false << false;
}

/// A car that turns into the pits in the tick behind the line is found complete once more.
void tst_CarTracker::pitsLeaveTheCompletionAsItWas()
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

void tst_CarTracker::playersLapIsCompleted_data()
{
    QTest::addColumn<bool>("diskLoading");
    QTest::addColumn<int>("lapBefore");
    QTest::addColumn<int>("lap");
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<int>("status");
    QTest::addColumn<float>("timeBefore");
    QTest::addColumn<float>("time");
    QTest::addColumn<bool>("completed");

    const auto row = [](const char *name, bool disk, int lapBefore, int lap, int statusBefore,
                        int status, float timeBefore, float time, bool completed) {
        QTest::addRow("%s", name) << disk << lapBefore << lap << statusBefore << status
                                  << timeBefore << time << completed;
    };
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const float nearZero = 1.0e-5f;

    for (const bool disk : {true, false}) {
        const auto both = [&](const char *name, int lapBefore, int lap, int statusBefore,
                              int status, float timeBefore, float time, bool completed) {
            row(QByteArray(QByteArray(disk ? "recording: " : "live: ") + name).constData(), disk,
                lapBefore, lap, statusBefore, status, timeBefore, time, completed);
        };
        both("no lap before", -1, 4, 6, 6, 90.0f, 0.0f, false);
        both("no lap before, state 6 behind 5", -1, 4, 5, 6, 90.0f, 0.0f, false);
        both("least lap before", std::numeric_limits<int>::min(), 4, 6, 6, 90.0f, 0.0f, false);
        both("on the grid", 3, 4, 6, 2, 90.0f, 0.0f, false);
        both("on the grid, time fell back", 3, 4, 6, 2, 90.0f, 1.0f, false);
        both("on the grid before", 3, 4, 2, 5, 90.0f, 0.0f, false);
        both("on the grid before, time fell back", 3, 4, 2, 5, 90.0f, 1.0f, false);

        both("state 6 behind 5", 3, 3, 5, 6, 90.0f, 90.1f, true);
        both("state 6 behind 6", 3, 3, 6, 6, 90.0f, 90.1f, false);
        both("state 5 behind 5", 3, 3, 5, 5, 90.0f, 90.1f, false);

        both("time zero, next lap", 3, 4, 6, 6, 90.0f, 0.0f, true);
        both("time minus zero, next lap", 3, 4, 6, 6, 90.0f, -0.0f, true);
        both("time zero, next lap, no time before", 3, 4, 6, 6, NoTime, 0.0f, true);
        both("time zero, several laps on", 3, 7, 5, 5, 90.0f, 0.0f, true);
        both("time zero, same lap", 3, 3, 6, 6, 90.0f, 0.0f, false);
        both("time zero, lap before", 3, 2, 6, 6, 90.0f, 0.0f, false);
        both("time zero, lap 0 behind lap 0", 0, 0, 6, 6, 90.0f, 0.0f, false);
        both("time zero, lap 1 behind lap 0", 0, 1, 6, 6, 90.0f, 0.0f, true);
        both("time zero, no lap any more", 3, -1, 6, 6, 90.0f, 0.0f, false);
        both("time nearly zero, same lap", 3, 3, 6, 6, 90.0f, nearZero, false);
        both("time nearly zero, next lap", 3, 4, 6, 6, 90.0f, nearZero, true);
        both("time just above nearly zero, same lap", 3, 3, 6, 6, 90.0f, above(nearZero), true);
        both("time minus nearly zero, same lap", 3, 3, 6, 6, 90.0f, -nearZero, false);
        both("time minus nearly zero, next lap", 3, 4, 6, 6, 90.0f, -nearZero, true);

        both("time fell back by minutes", 3, 3, 6, 6, 90.0f, 0.1f, true);
        both("time fell back by minutes in the first lap of a stint", 3, 3, 5, 5, 90.0f, 0.1f,
             true);
        both("time fell back, although the lap does not count", 3, 2, 6, 6, 90.0f, 0.1f, true);
        both("time fell back on lap 0", 0, 0, 6, 6, 90.0f, 0.1f, true);
        both("time goes on, although the lap counts", 3, 4, 6, 6, 90.0f, 90.1f, false);
        both("time stands", 3, 4, 6, 6, 90.0f, 90.0f, false);
        both("time goes missing", 3, 4, 6, 6, 90.0f, NoTime, false);
        both("time is missing", 3, 4, 6, 6, NoTime, NoTime, false);
        both("time is NaN", 3, 4, 6, 6, 90.0f, FloatNaN, false);
        both("time was NaN", 3, 4, 6, 6, FloatNaN, 1.0f, false);
    }

    row("recording: fell back by 5", true, 3, 4, 6, 6, 15.0f, 10.0f, false);
    row("recording: fell back by more than 5", true, 3, 4, 6, 6, above(15.0f), 10.0f, true);
    row("recording: fell back by less than 5", true, 3, 4, 6, 6, below(15.0f), 10.0f, false);
    row("recording: fell back to below zero", true, 3, 4, 6, 6, 4.5f, -1.0f, true);
    row("recording: went on from below zero", true, 3, 4, 6, 6, -1.0f, 0.1f, false);
    row("recording: was missing", true, 3, 4, 6, 6, NoTime, 0.1f, false);
    row("recording: was 1e24 as a float", true, 3, 4, 6, 6, 1.0e24f, 0.1f, false);
    row("recording: was just below 1e24", true, 3, 4, 6, 6, below(1.0e24f), 0.1f, true);
    row("recording: was infinite", true, 3, 4, 6, 6, infinity, 0.1f, false);

    row("live: fell back by 5", false, 3, 4, 6, 6, 15.0f, 10.0f, true);
    row("live: fell back by the least", false, 3, 4, 6, 6, above(15.0f), 15.0f, true);
    row("live: went on by the least", false, 3, 4, 6, 6, 15.0f, above(15.0f), false);
    row("live: fell back to below zero", false, 3, 4, 6, 6, 4.5f, -1.0f, false);
    row("live: below zero before and now", false, 3, 4, 6, 6, -1.0f, -2.0f, false);
    row("live: zero before", false, 3, 4, 6, 6, 0.0f, -1.0f, false);
    row("live: was missing", false, 3, 4, 6, 6, NoTime, 0.1f, true);
    row("live: was infinite", false, 3, 4, 6, 6, infinity, 0.1f, true);
}

void tst_CarTracker::playersLapIsCompleted()
{
    QFETCH(bool, diskLoading);
    QFETCH(int, lapBefore);
    QFETCH(int, lap);
    QFETCH(int, statusBefore);
    QFETCH(int, status);
    QFETCH(float, timeBefore);
    QFETCH(float, time);
    QFETCH(bool, completed);

    CarTracker car;
    car.isPlayerCar = true;
    car.diskLoading = diskLoading;
    car.driverName = "A Driver";
    car.previous.lap = lapBefore;
    car.previous.carStatus = statusBefore;
    car.previous.lapCurrentLapTime = timeBefore;
    car.current.lap = lap;
    car.current.carStatus = status;
    car.current.lapCurrentLapTime = time;

    const DebugLog log;
    QCOMPARE(car.isLapCompleted(), completed);
    car.current.completionHold = true; // that of the tick before counts
    QCOMPARE(car.isLapCompleted(), completed);
    car.previous.completionHold = true;
    QVERIFY(!car.isLapCompleted());
    QVERIFY(debugLines.isEmpty());
}

void tst_CarTracker::othersLapIsCompleted_data()
{
    QTest::addColumn<int>("lapBefore");
    QTest::addColumn<int>("lap");
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("completed");

    QTest::newRow("next lap") << 3 << 4 << 5 << 5 << true;
    QTest::newRow("same lap") << 3 << 3 << 5 << 5 << false;
    QTest::newRow("same lap, state 6 behind 5") << 3 << 3 << 5 << 6 << false;
    QTest::newRow("lap before") << 3 << 2 << 6 << 6 << true;
    QTest::newRow("several laps on") << 3 << 9 << 6 << 6 << true;
    QTest::newRow("no lap any more") << 3 << -1 << 6 << 6 << true;
    QTest::newRow("first lap behind lap 0") << 0 << 1 << 6 << 6 << true;
    QTest::newRow("no lap before") << -1 << 0 << 6 << 6 << false;
    QTest::newRow("on the grid") << 3 << 4 << 5 << 2 << false;
    QTest::newRow("on the grid before") << 3 << 4 << 2 << 5 << false;
    QTest::newRow("on track from the garage") << 3 << 4 << 3 << 3 << true;
}

void tst_CarTracker::othersLapIsCompleted()
{
    QFETCH(int, lapBefore);
    QFETCH(int, lap);
    QFETCH(int, statusBefore);
    QFETCH(int, status);
    QFETCH(bool, completed);

    const DebugLog log;
    for (const bool diskLoading : {false, true}) {
        // Lap times do not count.
        for (const float time : {0.0f, 0.1f, 90.1f}) {
            CarTracker car;
            car.diskLoading = diskLoading;
            car.previous.lap = lapBefore;
            car.previous.carStatus = statusBefore;
            car.previous.lapCurrentLapTime = 90.0f;
            car.current.lap = lap;
            car.current.carStatus = status;
            car.current.lapCurrentLapTime = time;
            QCOMPARE(car.isLapCompleted(), completed);
            car.previous.completionHold = true;
            QVERIFY(!car.isLapCompleted());
        }
    }
    QCOMPARE(debugLines.size(), completed ? 6 : 0);
}

void tst_CarTracker::othersCompletedLapIsLogged()
{
    CarTracker car;
    car.driverName = "A Driver";
    car.previous.lap = 3;
    car.previous.carStatus = 5;
    car.current.carStatus = 5;
    car.current.lap = 4;

    const DebugLog log;
    QVERIFY(car.isLapCompleted());
    QCOMPARE(debugLines.size(), 1);
    QCOMPARE(debugLines.first().type, QtDebugMsg);
    QCOMPARE(debugLines.first().category, QString("default"));
    QVERIFY(debugLines.first().text.startsWith("lap completed"));
    QVERIFY(debugLines.first().text.mid(13).contains("A Driver"));
}

void tst_CarTracker::startLap()
{
    CarTracker car;
    car.current = filledState();
    const CarTrackerSample before = car.current;
    car.previous.lap = 20;
    car.lapReady = true;
    car.lap.addSample(sampleOf("speed", 1));
    car.lap.addCalculatedChannel(new ZEP::Channel, "dt");
    car.lap.addValue("Skies", 1, QString());
    car.lap.setCalculatedValue("maxLapDistPct", 0.99f, QString());
    car.lap.setDriverName("A Driver");
    car.lap.setLapType(ZEP::LapTypeTimed);
    car.lap.setCompleted(true);
    car.lap.setLapTime(QTime(0, 1, 30));

    car.startLap();
    QVERIFY(!car.lapReady);
    QVERIFY(car.lap.isEmpty());
    QVERIFY(car.lap.valueNameList().isEmpty());
    QVERIFY(car.lap.calculatedValuesNames().isEmpty());
    QVERIFY(car.lap.getDriverName().isEmpty());
    QCOMPARE(int(car.lap.getLapType()), -1);
    QVERIFY(!car.lap.getCompleted());
    QVERIFY(car.lap.getLapTime().isNull());
    QVERIFY(car.nextLap.isEmpty());

    QCOMPARE(car.lap.getLapInSession(), before.lap);
    QCOMPARE(car.lap.getLapInStint(), before.lapInStint + 1);
    QVERIFY(!car.current.lapId.isNull());
    QVERIFY(car.current.lapId != before.lapId);
    CarTrackerSample expected = before;
    expected.lapId = car.current.lapId;
    expected.lapInStint = before.lapInStint + 1;
    QCOMPARE(difference(car.current, expected), QString());
    QCOMPARE(car.previous.lap, 20);
}

void tst_CarTracker::startLapTakesTheNextLap()
{
    CarTracker car;
    car.lap.addSample(sampleOf("speed", 1));
    car.nextLap.addSample(sampleOf("rpm", 2));
    car.nextLap.addSample(sampleOf("rpm", 3));
    car.nextLap.addCalculatedChannel(new ZEP::Channel, "dt");
    car.nextLap.addValue("Skies", 1, QString());
    car.nextLap.setCalculatedValue("gap", 2.5, "m");
    car.nextLap.setTrackName("A Track");
    const auto channel = car.nextLap.channel("rpm");

    car.startLap();
    QCOMPARE(car.lap.getAvailableChannels(), QList<QString>{"rpm"});
    QCOMPARE(car.lap.channel("rpm"), channel);
    COMPARE_BITS(channel->data, QVector<double>({2, 3}));
    QCOMPARE(car.lap.getAvailableCalculatedChannels(), QList<QString>{"dt"});
    QCOMPARE(car.lap.valueNameList(), QList<QString>{"Skies"});
    QCOMPARE(car.lap.calculatedValuesNames(), QList<QString>{"gap"});
    QCOMPARE(car.lap.getTrackName(), QString("A Track"));
    QVERIFY(car.nextLap.isEmpty());
    QVERIFY(car.nextLap.valueNameList().isEmpty());
    QVERIFY(car.nextLap.calculatedValuesNames().isEmpty());
}

void tst_CarTracker::startStint()
{
    CarTracker car;
    car.current = filledState();
    const CarTrackerSample before = car.current;
    car.lapReady = true;
    car.lap.addSample(sampleOf("speed", 1));

    car.startStint();
    QVERIFY(!car.current.stintId.isNull());
    QVERIFY(car.current.stintId != before.stintId);
    CarTrackerSample expected = before;
    expected.stintId = car.current.stintId;
    expected.lapInStint = 0;
    expected.stintCount = before.stintCount + 1;
    QCOMPARE(difference(car.current, expected), QString());
    QCOMPARE(car.lap.size(), 1);
    QVERIFY(car.lapReady);
}

/// The lap opens before the stint does: its header still counts on in the stint before.
void tst_CarTracker::newStint()
{
    CarTracker car;
    car.isPlayerCar = true;
    car.current.lap = 8;
    car.current.lapInStint = 4;
    car.current.stintCount = 2;
    car.current.carStatus = 4;
    car.prepareTick();
    car.current.lapDistPct = 0.1f;
    car.lap.addSample(sampleOf("speed", 1));
    car.nextLap.addSample(sampleOf("rpm", 2));

    car.updateCarStatus(false, false, true);
    QCOMPARE(car.current.carStatus, 5);
    QCOMPARE(car.current.lapInStint, 0);
    QCOMPARE(car.current.stintCount, 3);
    QVERIFY(!car.current.lapId.isNull());
    QVERIFY(!car.current.stintId.isNull());
    QVERIFY(car.current.lapId != car.current.stintId);
    QCOMPARE(car.lap.getLapInSession(), 8);
    QCOMPARE(car.lap.getLapInStint(), 5);
    QCOMPARE(car.lap.getAvailableChannels(), QList<QString>{"rpm"});
    QVERIFY(car.nextLap.isEmpty());
}

void tst_CarTracker::prepareTick_data()
{
    QTest::addColumn<bool>("lapReady");

    QTest::newRow("lap goes on") << false;
    QTest::newRow("lap was finished") << true;
}

void tst_CarTracker::prepareTick()
{
    QFETCH(bool, lapReady);

    CarTracker car;
    car.current = filledState();
    car.sample = sampleOf("speed", 1);
    car.sample.setCarId(7);
    car.lap.addSample(sampleOf("speed", 1));
    car.nextLap.addSample(sampleOf("rpm", 2));
    car.lapReady = lapReady;
    const CarTrackerSample before = car.current;

    car.prepareTick();
    QCOMPARE(difference(car.previous, before), QString());
    QVERIFY(car.sample.valueNameList().isEmpty());
    QCOMPARE(car.sample.carId(), QVariant(7));
    QVERIFY(!car.lapReady);
    QCOMPARE(car.lap.getAvailableChannels(), QList<QString>{lapReady ? "rpm" : "speed"});
    QCOMPARE(car.nextLap.isEmpty(), lapReady);
    if (lapReady) {
        QVERIFY(car.current.lapId != before.lapId);
        QCOMPARE(car.current.lapInStint, before.lapInStint + 1);
    } else {
        QCOMPARE(difference(car.current, before), QString());
    }
}

void tst_CarTracker::isLapAborted()
{
    CarTracker car;
    QVERIFY(!car.isLapAborted());
    car.current = filledState();
    car.current.lap = 2;
    car.previous = filledState();
    car.lapReady = true;
    QVERIFY(!car.isLapAborted());
}

QTEST_APPLESS_MAIN(tst_CarTracker)

#include "tst_cartracker.moc"
