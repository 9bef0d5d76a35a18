// What is known of one car, and how its laps and stints are opened.

#include "tests/support/cartrackerstates.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"

#include <QTest>

class tst_CarTracker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stateHasItsInitialValues();
    void trackerHasItsInitialValues();
    void copiesCarryEverything_data();
    void copiesCarryEverything();
    void copiesAreIndependent();
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

NAPAMMUL_TEST(tst_CarTracker)

#include "tst_cartracker.moc"
