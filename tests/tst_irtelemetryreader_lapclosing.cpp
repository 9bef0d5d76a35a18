// How a lap is closed: its header, the steps behind it, and how it is handed out.

#include "tests/readerticks.h"
#include "tests/samebits.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QTest>

#include <cmath>
#include <limits>
#include <memory>

using Names = QList<QString>;

namespace {

constexpr int Player = 3;
constexpr int Other = 5;

constexpr int Race = 5;
constexpr int Practice = 1;
const QTime NoLapTime(0, 59, 59);

float above(float value)
{
    return std::nextafter(value, std::numeric_limits<float>::infinity());
}

float below(float value)
{
    return std::nextafter(value, -std::numeric_limits<float>::infinity());
}

void prepare(iRTelemetryReader *reader)
{
    reader->setYaml(sessionInfoOf(Player, {Player, Other}).constData());
    reader->updateCarList();
}

/// A lap that is ready to be closed.
void record(iRTelemetryReader *reader, int car)
{
    ZEP::Sample sample;
    addValues(&sample, {{"lapdistpct", 0.5f}, {"sessiontime", 100.0}});
    reader->lap(car).addSample(sample);
}

} // namespace

class tst_IrTelemetryReaderLapClosing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyLapIsLeftAlone();
    void lapWithoutSamplesIsClosed();

    void lapType_data();
    void lapType();
    void lapTime_data();
    void lapTime();
    void ids();
    void counters_data();
    void counters();
    void carId();
    void dateTime();
    void greatestFractionIsRemoved();

    void sessionInfoComesFirst();
    void cleanUpAndDerivedChannels();
    void playersLapHasNoMotionChannels();
    void beginningsAreNormalised_data();
    void beginningsAreNormalised();
    void beginningsAreNormalisedLast();

    void closedLapWaitsUntilTheNextTick();
    void closedLapCanBeClosedAgain();
    void processMyLap_data();
    void processMyLap();
    void isLapReady();
    void isMyLapReady_data();
    void isMyLapReady();
    void isCarInWorld_data();
    void isCarInWorld();
    void myLap();
    void myLapWithoutAPlayersCar_data();
    void myLapWithoutAPlayersCar();
    void otherCarsLapsAreClosedByTheirCounter();
};

void tst_IrTelemetryReaderLapClosing::emptyLapIsLeftAlone()
{
    iRTelemetryReader reader;
    prepare(&reader);
    carOf(&reader, Player).previous.carStatus = 6;
    carOf(&reader, Player).current.lapLastLapTime = 0.0f;
    reader.lap(Player).setCalculatedValue("maxLapDistPct", 0.5f, QString());
    for (const bool completed : {true, false}) {
        reader.processLap(Player, completed);
        QVERIFY(!reader.isLapReady(Player));
        QCOMPARE(int(reader.lap(Player).getLapType()), -1);
        QVERIFY(reader.lap(Player).getLapTime().isNull());
        QVERIFY(!reader.lap(Player).getCarId().isValid());
        QCOMPARE(reader.lap(Player).calculatedValuesNames(), Names{"maxLapDistPct"});
        QVERIFY(reader.lap(Player).valueNameList().isEmpty());
        COMPARE_BITS(reader.car(Player).current.lapLastLapTime, 0.0f);
    }
}

/// It is empty when it has no channels, recorded or calculated.
void tst_IrTelemetryReaderLapClosing::lapWithoutSamplesIsClosed()
{
    for (const bool calculated : {false, true}) {
        iRTelemetryReader reader;
        prepare(&reader);
        if (calculated)
            reader.lap(Player).addCalculatedChannel(new ZEP::Channel, "dt");
        else
            reader.lap(Player).addChannel(new ZEP::Channel, "speed");
        reader.processLap(Player, true);
        QVERIFY(reader.isLapReady(Player));
        QVERIFY(reader.lap(Player).getCompleted());
    }
}

void tst_IrTelemetryReaderLapClosing::lapType_data()
{
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<int>("typeBefore");
    QTest::addColumn<int>("type");

    for (const int before : {-1, 0, 1}) {
        QTest::addRow("later lap, type %d before", before) << 6 << before << 1;
        QTest::addRow("first lap of a stint, type %d before", before) << 5 << before << 0;
        for (const int status : {-1, 2, 3, 4})
            QTest::addRow("state %d, type %d before", status, before) << status << before << before;
    }
}

void tst_IrTelemetryReaderLapClosing::lapType()
{
    QFETCH(int, statusBefore);
    QFETCH(int, typeBefore);
    QFETCH(int, type);

    for (const bool completed : {true, false}) {
        iRTelemetryReader reader;
        prepare(&reader);
        record(&reader, Player);
        reader.lap(Player).setLapType(static_cast<ZEP::LapType>(typeBefore));
        carOf(&reader, Player).previous.carStatus = statusBefore;
        carOf(&reader, Player).current.carStatus = 6; // that of the tick before counts
        reader.processLap(Player, completed);
        QCOMPARE(int(reader.lap(Player).getLapType()), type);
    }
}

void tst_IrTelemetryReaderLapClosing::lapTime_data()
{
    QTest::addColumn<float>("seconds");
    QTest::addColumn<bool>("completed");
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<int>("sessionType");
    QTest::addColumn<QTime>("lapTime");

    const float infinity = std::numeric_limits<float>::infinity();
    const auto timed = [](const char *name, float seconds, const QTime &time) {
        QTest::addRow("%s", name) << seconds << true << 6 << Practice << time;
    };
    timed("a lap", 83.5f, QTime(0, 1, 23, 500));
    timed("milliseconds in single precision: in double it would be one less", 80.0009995f,
          QTime(0, 1, 20, 1));
    timed("cut, not rounded", 1.9999f, QTime(0, 0, 1, 999));
    timed("more than an hour", 4000.0f, QTime(1, 6, 40));
    timed("exactly the mark", 3599.0f, NoLapTime);
    timed("a day is not shown", 86401.0f, QTime(0, 0, 1));
    timed("zero", 0.0f, NoLapTime);
    timed("minus zero", -0.0f, NoLapTime);
    timed("nearly zero", 1.0e-5f, NoLapTime);
    timed("just above nearly zero", above(1.0e-5f), QTime(0, 0));
    timed("a millisecond", 0.0015f, QTime(0, 0, 0, 1));
    timed("minus one, as when it is missing", -1.0f, NoLapTime);
    timed("just below zero", below(0.0f), NoLapTime);
    timed("minus infinity", -infinity, NoLapTime);
    timed("infinity", infinity, NoLapTime);
    timed("NaN", std::numeric_limits<float>::quiet_NaN(), NoLapTime);
    timed("missing", 1.0e25f, NoLapTime);
    timed("more milliseconds than an int holds", 2147483.75f, NoLapTime);
    timed("as many milliseconds as an int holds", 2147483.5f, QTime(0, 0).addMSecs(2147483520));
    QTest::newRow("not completed") << 83.5f << false << 6 << Practice << NoLapTime;
    QTest::newRow("not completed, in a race") << 83.5f << false << 6 << Race << NoLapTime;
    for (const int type : {-1, 0, 1, 2, 3})
        QTest::addRow("first lap of a stint, session type %d", type)
            << 83.5f << true << 5 << type << NoLapTime;
    QTest::newRow("first lap of a stint in a race")
        << 83.5f << true << 5 << Race << QTime(0, 1, 23, 500);
    QTest::newRow("first lap of a stint in a race, no time")
        << 0.0f << true << 5 << Race << NoLapTime;
    QTest::newRow("type not set") << 83.5f << true << 3 << Practice << QTime(0, 1, 23, 500);
}

void tst_IrTelemetryReaderLapClosing::lapTime()
{
    QFETCH(float, seconds);
    QFETCH(bool, completed);
    QFETCH(int, statusBefore);
    QFETCH(int, sessionType);
    QFETCH(QTime, lapTime);

    iRTelemetryReader reader;
    prepare(&reader);
    record(&reader, Player);
    CarTracker &car = carOf(&reader, Player);
    car.previous.carStatus = statusBefore;
    car.previous.lapLastLapTime = 12.5f;
    car.previous.sessionType = Race;
    car.current.lapLastLapTime = seconds;
    car.current.sessionType = sessionType;
    reader.processLap(Player, completed);
    QCOMPARE(reader.lap(Player).getLapTime(), lapTime);
    // What was written into the header stays with the car.
    const float left = reader.car(Player).current.lapLastLapTime;
    COMPARE_BITS(left, lapTime == NoLapTime ? 3599.0f : seconds);
    COMPARE_BITS(reader.car(Player).previous.lapLastLapTime, 12.5f);
}

/// The current tick may already belong to the next lap.
void tst_IrTelemetryReaderLapClosing::ids()
{
    for (const bool completed : {true, false}) {
        iRTelemetryReader reader;
        prepare(&reader);
        record(&reader, Player);
        CarTracker &car = carOf(&reader, Player);
        car.previous.lapId = QUuid::createUuid();
        car.previous.stintId = QUuid::createUuid();
        car.current.lapId = QUuid::createUuid();
        car.current.stintId = QUuid::createUuid();
        reader.processLap(Player, completed);
        QCOMPARE(reader.lap(Player).getLapId(), reader.car(Player).previous.lapId);
        QCOMPARE(reader.lap(Player).getStintId(), reader.car(Player).previous.stintId);
    }
}

void tst_IrTelemetryReaderLapClosing::counters_data()
{
    QTest::addColumn<bool>("completed");
    QTest::addColumn<int>("lapBefore");
    QTest::addColumn<int>("lapInSession");
    QTest::addColumn<int>("lapInStint");

    // The current tick is in lap 40 of the session, the 41st of its stint; the one before was in
    // the 31st of its stint.
    QTest::newRow("completed") << true << 12 << 11 << 31;
    QTest::newRow("completed, lap 2") << true << 2 << 1 << 31;
    QTest::newRow("completed, lap 1") << true << 1 << 0 << 31;
    QTest::newRow("completed, lap 0") << true << 0 << 0 << 31;
    QTest::newRow("completed, no lap") << true << -1 << 0 << 31;
    QTest::newRow("completed, least lap") << true << std::numeric_limits<int>::min() << 0 << 31;
    QTest::newRow("not completed") << false << 12 << 40 << 41;
    QTest::newRow("not completed, no lap before") << false << -1 << 40 << 41;
}

void tst_IrTelemetryReaderLapClosing::counters()
{
    QFETCH(bool, completed);
    QFETCH(int, lapBefore);

    iRTelemetryReader reader;
    prepare(&reader);
    record(&reader, Player);
    CarTracker &car = carOf(&reader, Player);
    car.previous.lap = lapBefore;
    car.previous.lapInStint = 31;
    car.previous.stintCount = 5;
    car.current.lap = 40;
    car.current.lapInStint = 41;
    car.current.stintCount = 6;
    reader.processLap(Player, completed);
    QTEST(reader.lap(Player).getLapInSession(), "lapInSession");
    QTEST(reader.lap(Player).getLapInStint(), "lapInStint");
    QCOMPARE(reader.lap(Player).getStintInSession(), 5);
    QCOMPARE(reader.lap(Player).getCompleted(), completed);
}

void tst_IrTelemetryReaderLapClosing::carId()
{
    iRTelemetryReader reader;
    prepare(&reader);
    for (const int car : {Player, Other, 63}) {
        record(&reader, car);
        reader.processLap(car, true);
        QCOMPARE(reader.lap(car).getCarId(), QVariant(car));
    }
}

void tst_IrTelemetryReaderLapClosing::dateTime()
{
    iRTelemetryReader reader;
    prepare(&reader);
    record(&reader, Player);
    const QDateTime before = QDateTime::currentDateTime();
    reader.processLap(Player, true);
    const QDateTime after = QDateTime::currentDateTime();
    const ZEP::Value value = reader.lap(Player).calculatedValue("DateTime");
    QCOMPARE(value.value.userType(), int(QMetaType::QDateTime));
    QVERIFY(value.value.toDateTime() >= before && value.value.toDateTime() <= after);
    QCOMPARE(value.value.toDateTime().timeSpec(), Qt::LocalTime);
    QVERIFY(value.unit().isEmpty());
    QVERIFY(reader.lap(Player).getDateTime().isNull());
}

void tst_IrTelemetryReaderLapClosing::greatestFractionIsRemoved()
{
    iRTelemetryReader reader;
    prepare(&reader);
    tick(&reader, Player, {{"lapdistpct", 0.5f}, {"isontrack", true}});
    reader.lap(Player).setCalculatedValue("other", 1, QString());
    QVERIFY(reader.lap(Player).containsCalculatedValue("maxLapDistPct"));
    reader.processLap(Player, true);
    QCOMPARE(reader.lap(Player).calculatedValuesNames(), (Names{"DateTime", "other"}));
}

/// The density that derives the fuel weight comes with the session info.
void tst_IrTelemetryReaderLapClosing::sessionInfoComesFirst()
{
    iRTelemetryReader reader;
    prepare(&reader);
    reader.setYaml("---\nDriverInfo:\n DriverCarFuelKgPerLtr: 0.500\n");
    ZEP::Sample sample;
    sample.addValue("fuellevel", 10.0, "l");
    sample.addValue("sessionnum", 0, QString());
    reader.lap(Player).addSample(sample);
    reader.processLap(Player, true);
    ZEP::Lap &lap = reader.lap(Player);
    QCOMPARE(lap.getDriverName(), QString("Driver 3"));
    QCOMPARE(int(lap.getSession()), Practice);
    QCOMPARE(lap.value("Session name").print(), QString("Practice"));
    QCOMPARE(lap.getAvailableChannels(), (Names{"fuellevel", "fuelweight"}));
    COMPARE_BITS(lap.channel("fuelweight")->data, QVector<double>({5.0}));
}

/// "sessionnum" goes; the distance and the speed of another car come.
void tst_IrTelemetryReaderLapClosing::cleanUpAndDerivedChannels()
{
    iRTelemetryReader reader;
    prepare(&reader);
    reader.setYaml("---\nWeekendInfo:\n TrackLength: 2.00 km\n");
    for (int i = 0; i < 2; ++i) {
        ZEP::Sample sample;
        sample.addValue("lapdistpct", 0.25 * i, "%");
        sample.addValue("sessiontime", 100.0 + 10 * i, "s");
        sample.addValue("sessionnum", 0, QString());
        reader.lap(Other).addSample(sample);
    }
    reader.processLap(Other, true);
    ZEP::Lap &lap = reader.lap(Other);
    QCOMPARE(lap.getAvailableChannels(),
             (Names{"dt", "lapdist", "lapdistpct", "sessiontime", "speed"}));
    COMPARE_BITS(lap.channel("lapdist")->data, QVector<double>({0.0, 500.0}));
    COMPARE_BITS(lap.channel("speed")->data, QVector<double>({50.0, 50.0}));
    QCOMPARE(lap.channel("lapdistpct")->unit(), QString("pu"));
}

void tst_IrTelemetryReaderLapClosing::playersLapHasNoMotionChannels()
{
    iRTelemetryReader reader;
    prepare(&reader);
    reader.setYaml("---\nWeekendInfo:\n TrackLength: 2.00 km\n");
    record(&reader, Player);
    reader.processLap(Player, true);
    QCOMPARE(reader.lap(Player).getAvailableChannels(), (Names{"lapdistpct", "sessiontime"}));
}

void tst_IrTelemetryReaderLapClosing::beginningsAreNormalised_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<bool>("normalised");

    QTest::newRow("running lap time") << "lapcurrentlaptime" << true;
    QTest::newRow("energy to the motor") << "energybatterytomgu_klap" << true;
    QTest::newRow("share of the energy") << "energymgu_klapdeploypct" << true;
    QTest::newRow("in capitals") << "LapCurrentLapTime" << false;
    QTest::newRow("last lap time") << "laplastlaptime" << false;
    QTest::newRow("speed") << "speed" << false;
}

void tst_IrTelemetryReaderLapClosing::beginningsAreNormalised()
{
    QFETCH(QString, channel);
    QFETCH(bool, normalised);

    iRTelemetryReader reader;
    prepare(&reader);
    const QVector<double> counted{80.0, 0.5, 1.0};
    const double fractions[] = {0.25, 0.5, 0.75};
    for (int i = 0; i < 3; ++i) {
        ZEP::Sample sample;
        sample.addValue("lapdistpct", fractions[i], QString());
        sample.addValue(channel, counted.at(i), QString());
        reader.lap(Player).addSample(sample);
    }
    reader.processLap(Player, true);
    const QVector<double> expected{normalised ? 0.25 : 80.0, 0.5, 1.0};
    COMPARE_BITS(reader.lap(Player).channel(channel)->data, expected);
}

/// Derived channels are those of the samples as they were recorded.
void tst_IrTelemetryReaderLapClosing::beginningsAreNormalisedLast()
{
    iRTelemetryReader reader;
    prepare(&reader);
    record(&reader, Player);
    auto *time = new ZEP::Channel;
    time->setUnit("%");
    time->data = {5.0, 0.5};
    reader.lap(Player).addChannel(time, "lapcurrentlaptime");
    reader.lap(Player).channel("lapdistpct")->data = {0.25, 0.5};
    reader.processLap(Player, true);
    QCOMPARE(time->unit(), QString("pu"));
    COMPARE_BITS(time->data, QVector<double>({0.25, 0.5}));
}

void tst_IrTelemetryReaderLapClosing::closedLapWaitsUntilTheNextTick()
{
    iRTelemetryReader reader;
    prepare(&reader);
    record(&reader, Player);
    reader.processLap(Player, true);
    const auto channel = reader.lap(Player).channel("lapdistpct");
    QVERIFY(reader.isLapReady(Player));
    QVERIFY(reader.isMyLapReady());
    reader.processData();
    QVERIFY(reader.isMyLapReady());
    QCOMPARE(reader.myLap()->channel("lapdistpct"), channel);

    const ZEP::Lap taken(*reader.myLap());
    reader.prepareTick();
    QVERIFY(!reader.isMyLapReady());
    QVERIFY(reader.lap(Player).isEmpty());
    QVERIFY(!reader.lap(Player).getCompleted());
    QVERIFY(taken.getCompleted());
    QCOMPARE(taken.channel("lapdistpct"), channel);
}

void tst_IrTelemetryReaderLapClosing::closedLapCanBeClosedAgain()
{
    iRTelemetryReader reader;
    prepare(&reader);
    record(&reader, Player);
    carOf(&reader, Player).previous.carStatus = 6;
    carOf(&reader, Player).current.lapLastLapTime = 83.5f;
    reader.processLap(Player, true);
    QCOMPARE(reader.myLap()->getLapTime(), QTime(0, 1, 23, 500));
    reader.processMyLap(false);
    QVERIFY(reader.isMyLapReady());
    QVERIFY(!reader.myLap()->getCompleted());
    QCOMPARE(reader.myLap()->getLapTime(), NoLapTime);
    QCOMPARE(reader.myLap()->size(), 1);
}

void tst_IrTelemetryReaderLapClosing::processMyLap_data()
{
    QTest::addColumn<int>("player");
    QTest::addColumn<bool>("completed");
    QTest::addColumn<bool>("closed");

    QTest::newRow("completed") << Player << true << true;
    QTest::newRow("not completed") << Player << false << true;
    QTest::newRow("no player") << -1 << true << false;
    QTest::newRow("below no player") << -2 << true << false;
    QTest::newRow("player is no car") << 64 << true << false;
}

void tst_IrTelemetryReaderLapClosing::processMyLap()
{
    QFETCH(int, player);
    QFETCH(bool, completed);
    QFETCH(bool, closed);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(player, {Player}).constData());
    reader.updateCarList();
    for (int car = 0; car < 64; ++car)
        record(&reader, car);
    carOf(&reader, Player).current.lapLastLapTime = 83.5f;
    reader.processMyLap(completed);
    for (int car = 0; car < 64; ++car)
        QCOMPARE(reader.isLapReady(car), closed && car == Player);
    if (closed) {
        QCOMPARE(reader.lap(Player).getCompleted(), completed);
        QCOMPARE(reader.lap(Player).getLapTime(), completed ? QTime(0, 1, 23, 500) : NoLapTime);
    }
}

void tst_IrTelemetryReaderLapClosing::isLapReady()
{
    iRTelemetryReader reader;
    prepare(&reader);
    for (const int car : {0, Player, 63}) {
        QVERIFY(!reader.isLapReady(car));
        record(&reader, car);
        QVERIFY(!reader.isLapReady(car));
        reader.processLap(car, false);
        QVERIFY(reader.isLapReady(car));
    }
    QVERIFY(!reader.isLapReady(Other));
    reader.prepareTick();
    for (const int car : {0, Player, 63})
        QVERIFY(!reader.isLapReady(car));
}

void tst_IrTelemetryReaderLapClosing::isMyLapReady_data()
{
    QTest::addColumn<int>("player");
    QTest::addColumn<bool>("ready");

    QTest::newRow("player") << Player << true;
    QTest::newRow("another car") << Other << false;
    QTest::newRow("last car") << 63 << false;
    QTest::newRow("no car") << 64 << false;
    QTest::newRow("no player") << -1 << false;
    QTest::newRow("below no player") << -2 << false;
    QTest::newRow("greatest") << std::numeric_limits<int>::max() << false;
}

void tst_IrTelemetryReaderLapClosing::isMyLapReady()
{
    QFETCH(int, player);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(player, {Player}).constData());
    reader.updateCarList();
    record(&reader, Player);
    QVERIFY(!reader.isMyLapReady());
    reader.processLap(Player, true);
    QTEST(reader.isMyLapReady(), "ready");
}

void tst_IrTelemetryReaderLapClosing::isCarInWorld_data()
{
    QTest::addColumn<float>("lapDistPct");
    QTest::addColumn<bool>("inWorld");

    QTest::newRow("nowhere") << -1.0f << false;
    QTest::newRow("-0.2 as a float is below") << -0.2f << false;
    QTest::newRow("just above -0.2") << above(-0.2f) << true;
    QTest::newRow("-0.19") << -0.19f << true;
    QTest::newRow("zero") << 0.0f << true;
    QTest::newRow("whole lap") << 1.0f << true;
    QTest::newRow("NaN") << std::numeric_limits<float>::quiet_NaN() << false;
}

void tst_IrTelemetryReaderLapClosing::isCarInWorld()
{
    QFETCH(float, lapDistPct);

    iRTelemetryReader reader;
    carOf(&reader, Other).current.lapDistPct = lapDistPct;
    QTEST(reader.isCarInWorld(Other), "inWorld");
    QVERIFY(!reader.isCarInWorld(Player));
}

void tst_IrTelemetryReaderLapClosing::myLap()
{
    iRTelemetryReader reader;
    prepare(&reader);
    QCOMPARE(reader.myLap(), &reader.lap(Player));
    record(&reader, Player);
    QCOMPARE(reader.myLap()->size(), 1);
    reader.myLap()->clear();
    QVERIFY(reader.lap(Player).isEmpty());
}

void tst_IrTelemetryReaderLapClosing::myLapWithoutAPlayersCar_data()
{
    QTest::addColumn<int>("player");

    QTest::newRow("no player") << -1;
    QTest::newRow("below no player") << -5;
    QTest::newRow("no car") << 64;
}

void tst_IrTelemetryReaderLapClosing::myLapWithoutAPlayersCar()
{
    QFETCH(int, player);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(player, {Player}).constData());
    reader.updateCarList();
    record(&reader, Player);
    const std::unique_ptr<ZEP::Lap> one(reader.myLap());
    const std::unique_ptr<ZEP::Lap> other(reader.myLap());
    QVERIFY(one != other);
    QVERIFY(one->isEmpty());
    QVERIFY(other->isEmpty());
    for (int car = 0; car < 64; ++car)
        QVERIFY(one.get() != &reader.lap(car));
}

void tst_IrTelemetryReaderLapClosing::otherCarsLapsAreClosedByTheirCounter()
{
    iRTelemetryReader reader;
    prepare(&reader);
    const auto drive = [&reader](int lapsComplete, double pct) {
        const QByteArray results = "---\nSessionInfo:\n Sessions:\n - SessionNum: 0\n"
                                   "   ResultsPositions:\n   - Position: 1\n     CarIdx: 5\n"
                                   "     LapsComplete: "
            + QByteArray::number(lapsComplete) + '\n';
        reader.setYaml(results.constData());
        tick(&reader, Other,
             {{"lapdistpct", float(pct)}, {"onpitroad", false}, {"sessiontime", 100.0 + pct}});
    };
    drive(2, 0.1); // opens a stint
    drive(3, 0.2); // closes a lap of one tick
    QVERIFY(reader.isLapReady(Other));
    drive(3, 0.3);
    QVERIFY(!reader.isLapReady(Other));
    drive(3, 0.4);
    drive(3, 0.5);

    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^lap completed .*Driver 5"));
    drive(4, 0.6);
    QVERIFY(reader.isLapReady(Other));
    QVERIFY(!reader.isMyLapReady());
    ZEP::Lap &lap = reader.lap(Other);
    COMPARE_BITS(lap.channel("lapdistpct")->data,
                 QVector<double>({double(0.3f), double(0.4f), double(0.5f)}));
    QVERIFY(lap.getCompleted());
    QCOMPARE(int(lap.getLapType()), 1);
    QCOMPARE(lap.getLapInSession(), 2);
    QCOMPARE(lap.getLapInStint(), 1);
    QCOMPARE(lap.getStintInSession(), 1);
    QCOMPARE(lap.getLapTime(), NoLapTime); // the lap times of others are not known
    QCOMPARE(lap.getDriverName(), QString("Driver 5"));
    QCOMPARE(lap.getAvailableChannels(), (Names{"dt", "lapdistpct", "onpitroad", "sessiontime"}));
    drive(4, 0.7);
    QVERIFY(!reader.isLapReady(Other));
}

QTEST_APPLESS_MAIN(tst_IrTelemetryReaderLapClosing)

#include "tst_irtelemetryreader_lapclosing.moc"
