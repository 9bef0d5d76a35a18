// How a finished lap is handed out.

#include "tests/support/nextfloat.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/twocars.h"
#include "tools/recording.h"

#include <QRegularExpression>
#include <QTest>

#include <limits>
#include <memory>

using Names = QList<QString>;

namespace {

} // namespace

class tst_IrTelemetryReaderFinishedLap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closedLapWaitsUntilTheNextTick();
    void closedLapCanBeClosedAgain();
    void processMyLap_data();
    void processMyLap();
    void processMyLapReadsTheTreeAsItIs();
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

void tst_IrTelemetryReaderFinishedLap::closedLapWaitsUntilTheNextTick()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    addOpenLap(&reader, Player);
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

void tst_IrTelemetryReaderFinishedLap::closedLapCanBeClosedAgain()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    addOpenLap(&reader, Player);
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

void tst_IrTelemetryReaderFinishedLap::processMyLap_data()
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

void tst_IrTelemetryReaderFinishedLap::processMyLap()
{
    QFETCH(int, player);
    QFETCH(bool, completed);
    QFETCH(bool, closed);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(player, {Player}).constData());
    reader.updateCarList();
    for (int car = 0; car < 64; ++car)
        addOpenLap(&reader, car);
    carOf(&reader, Player).current.lapLastLapTime = 83.5f;
    reader.processMyLap(completed);
    for (int car = 0; car < 64; ++car)
        QCOMPARE(reader.isLapReady(car), closed && car == Player);
    if (closed) {
        QCOMPARE(reader.lap(Player).getCompleted(), completed);
        QCOMPARE(reader.lap(Player).getLapTime(), completed ? QTime(0, 1, 23, 500) : NoLapTime);
    }
}

void tst_IrTelemetryReaderFinishedLap::isLapReady()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    for (const int car : {0, Player, 63}) {
        QVERIFY(!reader.isLapReady(car));
        addOpenLap(&reader, car);
        QVERIFY(!reader.isLapReady(car));
        reader.processLap(car, false);
        QVERIFY(reader.isLapReady(car));
    }
    QVERIFY(!reader.isLapReady(Other));
    reader.prepareTick();
    for (const int car : {0, Player, 63})
        QVERIFY(!reader.isLapReady(car));
}

void tst_IrTelemetryReaderFinishedLap::isMyLapReady_data()
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

void tst_IrTelemetryReaderFinishedLap::isMyLapReady()
{
    QFETCH(int, player);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(player, {Player}).constData());
    reader.updateCarList();
    addOpenLap(&reader, Player);
    QVERIFY(!reader.isMyLapReady());
    reader.processLap(Player, true);
    QTEST(reader.isMyLapReady(), "ready");
}

void tst_IrTelemetryReaderFinishedLap::isCarInWorld_data()
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

void tst_IrTelemetryReaderFinishedLap::isCarInWorld()
{
    QFETCH(float, lapDistPct);

    iRTelemetryReader reader;
    carOf(&reader, Other).current.lapDistPct = lapDistPct;
    QTEST(reader.isCarInWorld(Other), "inWorld");
    QVERIFY(!reader.isCarInWorld(Player));
}

void tst_IrTelemetryReaderFinishedLap::myLap()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    QCOMPARE(reader.myLap(), &reader.lap(Player));
    addOpenLap(&reader, Player);
    QCOMPARE(reader.myLap()->size(), 1);
    reader.myLap()->clear();
    QVERIFY(reader.lap(Player).isEmpty());
}

void tst_IrTelemetryReaderFinishedLap::myLapWithoutAPlayersCar_data()
{
    QTest::addColumn<int>("player");

    QTest::newRow("no player") << -1;
    QTest::newRow("below no player") << -5;
    QTest::newRow("no car") << 64;
}

void tst_IrTelemetryReaderFinishedLap::myLapWithoutAPlayersCar()
{
    QFETCH(int, player);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(player, {Player}).constData());
    reader.updateCarList();
    addOpenLap(&reader, Player);
    const std::unique_ptr<ZEP::Lap> one(reader.myLap());
    const std::unique_ptr<ZEP::Lap> other(reader.myLap());
    QVERIFY(one != other);
    QVERIFY(one->isEmpty());
    QVERIFY(other->isEmpty());
    for (int car = 0; car < 64; ++car)
        QVERIFY(one.get() != &reader.lap(car));
}

void tst_IrTelemetryReaderFinishedLap::otherCarsLapsAreClosedByTheirCounter()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
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

/// What the lap before it was closed with is remembered only until somebody changes the tree.
void tst_IrTelemetryReaderFinishedLap::processMyLapReadsTheTreeAsItIs()
{
    Recording recording;
    recording.sessionInfo(Recording::plainSessionInfo())
        .set("LapDistPct", 0.5)
        .set("IsOnTrack", 1)
        .set("OnPitRoad", 0);
    const irsdk_header header = recording.header();
    const QVector<irsdk_varHeader> table = recording.variableTable();
    QByteArray file = recording.ticks(1).bytes();
    char *record = file.data() + file.size() - header.bufLen;

    iRTelemetryReader reader;
    reader.setYaml(Recording::plainSessionInfo().constData());
    reader.setDiskLoading(true);
    reader.updateCarList();
    reader.compileVariables(&header, table.constData());
    for (const char *track : {"One", "Another"}) {
        reader.prepareTick();
        reader.getRawData(&header, table.constData(), record);
        reader.processData();
        reader.pathSet(QStringLiteral("WeekendInfo/TrackDisplayName"), QLatin1String(track));
        reader.processMyLap(false);
        QCOMPARE(reader.myLap()->getTrackName(), QLatin1String(track));
    }
}

NAPAMMUL_TEST(tst_IrTelemetryReaderFinishedLap)

#include "tst_irtelemetryreader_finishedlap.moc"
