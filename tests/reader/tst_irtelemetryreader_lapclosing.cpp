// How a lap is closed: its header, and the steps behind it.

#include "tests/support/nextfloat.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/twocars.h"

#include <QDateTime>
#include <QTest>

#include <limits>

using Names = QList<QString>;

namespace {

constexpr int Race = 5;
constexpr int Practice = 1;

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
};

void tst_IrTelemetryReaderLapClosing::emptyLapIsLeftAlone()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
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
        addTwoCars(&reader);
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
        addTwoCars(&reader);
        addOpenLap(&reader, Player);
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
    addTwoCars(&reader);
    addOpenLap(&reader, Player);
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
        addTwoCars(&reader);
        addOpenLap(&reader, Player);
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
    addTwoCars(&reader);
    addOpenLap(&reader, Player);
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
    addTwoCars(&reader);
    for (const int car : {Player, Other, 63}) {
        addOpenLap(&reader, car);
        reader.processLap(car, true);
        QCOMPARE(reader.lap(car).getCarId(), QVariant(car));
    }
}

void tst_IrTelemetryReaderLapClosing::dateTime()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    addOpenLap(&reader, Player);
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
    addTwoCars(&reader);
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
    addTwoCars(&reader);
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
    addTwoCars(&reader);
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
    addTwoCars(&reader);
    reader.setYaml("---\nWeekendInfo:\n TrackLength: 2.00 km\n");
    addOpenLap(&reader, Player);
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
    addTwoCars(&reader);
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
    addTwoCars(&reader);
    addOpenLap(&reader, Player);
    auto *time = new ZEP::Channel;
    time->setUnit("%");
    time->data = {5.0, 0.5};
    reader.lap(Player).addChannel(time, "lapcurrentlaptime");
    reader.lap(Player).channel("lapdistpct")->data = {0.25, 0.5};
    reader.processLap(Player, true);
    QCOMPARE(time->unit(), QString("pu"));
    COMPARE_BITS(time->data, QVector<double>({0.25, 0.5}));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderLapClosing)

#include "tst_irtelemetryreader_lapclosing.moc"
