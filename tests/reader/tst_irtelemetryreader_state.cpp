// What a new reader holds, and what becomes of its cars when their number is set.

#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"

#include <QTest>

#include <limits>
#include <memory>
#include <type_traits>

static_assert(std::is_base_of_v<TYamlTree, iRTelemetryReader>);
static_assert(std::is_convertible_v<iRTelemetryReader *, TYamlTree *>);
static_assert(!std::is_polymorphic_v<iRTelemetryReader>);

namespace {

/// What is not as in a new car; empty if nothing is.
QString initialDifference(const CarTracker &car)
{
    const CarTrackerSample initial;
    if (!(car.current == initial))
        return "current";
    if (!(car.previous == initial))
        return "previous";
    if (!car.sample.valueNameList().isEmpty())
        return "sample";
    if (car.sample.carId().isValid())
        return "car id";
    if (!car.lap.isEmpty() || !car.lap.valueNameList().isEmpty()
        || !car.lap.calculatedValuesNames().isEmpty() || !car.lap.getDriverName().isEmpty())
        return "lap";
    if (!car.nextLap.isEmpty())
        return "nextLap";
    if (!car.driverName.isEmpty() || !car.teamName.isEmpty())
        return "names";
    if (car.isPlayerCar || car.active || car.diskLoading || car.lapReady)
        return "flags";
    return QString();
}

} // namespace

class tst_IrTelemetryReaderState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newReader();
    void newCars();
    void isTheRootOfItsTree();
    void resize_data();
    void resize();
    void resizeDropsLaps();
    void resizeLeavesTheReaderAlone();
    void withoutCars();
    void copyOfACarWithAHalfRecordedLap();
    void carsStayWhereTheyAre();
    void readersAreIndependent();
};

void tst_IrTelemetryReaderState::newReader()
{
    iRTelemetryReader reader;
    QCOMPARE(reader.carCount(), 64);
    QCOMPARE(reader.myCarIdx(), -1);
    QVERIFY(!reader.isMyLapReady());
    QVERIFY(!reader.isSessionRestarted());
    QVERIFY(!reader.hasParent());
    QVERIFY(!reader.sub("DriverInfo"));

    // Not loading from disk: elements of "CarIdx" variables go to their cars.
    for (int car = 0; car < 64; ++car)
        QVERIFY(!reader.car(car).diskLoading);
}

void tst_IrTelemetryReaderState::newCars()
{
    iRTelemetryReader reader;
    for (int index = 0; index < 64; ++index) {
        const CarTracker &car = reader.car(index);
        QCOMPARE(initialDifference(car), QString());
        QCOMPARE(car.current.carStatus, -1);
        QCOMPARE(car.current.lap, -1);
        QCOMPARE(car.current.lapInStint, -1);
        QCOMPARE(car.current.stintCount, 0);
        COMPARE_BITS(car.current.lapDistPct, -1.0f);
        QVERIFY(!reader.isCarActive(index));
        QVERIFY(!reader.isCarInWorld(index));
        QVERIFY(!reader.isLapReady(index));
        QVERIFY(reader.lap(index).isEmpty());
        QVERIFY(reader.sample(index).valueNameList().isEmpty());
    }
}

void tst_IrTelemetryReaderState::isTheRootOfItsTree()
{
    iRTelemetryReader reader;
    reader.setYaml("---\nWeekendInfo:\n TrackName: spa\n");
    QCOMPARE(reader.pathValue("WeekendInfo/TrackName"), QString("spa"));
    QCOMPARE(reader.sub("WeekendInfo")->parent(), static_cast<TStringTree *>(&reader));
}

void tst_IrTelemetryReaderState::resize_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("cars");

    QTest::newRow("fewer") << 10 << 10;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("as many") << 64 << 64;
    QTest::newRow("more") << 100 << 100;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("negative") << -1 << 0;
    QTest::newRow("least") << std::numeric_limits<int>::min() << 0;
}

void tst_IrTelemetryReaderState::resize()
{
    QFETCH(int, count);
    QFETCH(int, cars);

    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(0, {0, 1, 63}).constData());
    QVERIFY(reader.updateCarList());
    reader.setDiskLoading(true);
    for (int car = 0; car < 64; ++car)
        reader.setCarActive(car, true);
    for (int i = 0; i < 3; ++i)
        tick(&reader, 0, {{"lapdistpct", 0.1f * float(i)}, {"isontrack", true}, {"lap", 3}});
    QCOMPARE(reader.lap(0).size(), 3);

    reader.resize(count);
    QCOMPARE(reader.carCount(), cars);
    for (int car = 0; car < cars; ++car)
        QCOMPARE(initialDifference(reader.car(car)), QString());
}

/// Laps share their channels; those of a car that is gone are gone too.
void tst_IrTelemetryReaderState::resizeDropsLaps()
{
    iRTelemetryReader reader;
    ZEP::Sample sample;
    sample.addValue("speed", 1, QString());
    reader.lap(20).addSample(sample);
    const auto channel = reader.lap(20).channel("speed").toWeakRef();
    QVERIFY(!channel.isNull());
    reader.resize(10);
    QVERIFY(channel.isNull());
    reader.resize(64);
    QVERIFY(reader.lap(20).isEmpty());
}

void tst_IrTelemetryReaderState::resizeLeavesTheReaderAlone()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(3, {3}).constData());
    QVERIFY(reader.updateCarList());
    reader.setDiskLoading(true);
    reader.resize(64);
    QCOMPARE(reader.myCarIdx(), 3);
    QCOMPARE(reader.pathValue("DriverInfo/DriverCarIdx"), QString("3"));

    // The cars have forgotten that a recording is read; the reader has not.
    for (int car = 0; car < 64; ++car)
        QVERIFY(!reader.car(car).diskLoading);
    irsdk_header header = {};
    header.numVars = 1;
    header.bufLen = 2;
    irsdk_varHeader variable = {};
    variable.type = irsdk_bool;
    variable.count = 2;
    qstrncpy(variable.name, "CarIdxOnPitRoad", sizeof variable.name);
    char record[] = {1, 1};
    reader.getRawData(&header, &variable, record);
    QVERIFY(reader.sample(0).valueNameList().isEmpty());
    QCOMPARE(reader.sample(3).valueNameList(), QList<QString>{"caridxonpitroad"});
}

void tst_IrTelemetryReaderState::withoutCars()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(0, {0, 1}).constData());
    QVERIFY(reader.updateCarList());
    reader.resize(0);

    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), 0);
    reader.setCarActive(0, true);
    QVERIFY(!reader.isCarActive(0));
    reader.setDiskLoading(true);
    reader.prepareTick();
    reader.processData();
    reader.processMyLap(true);
    QVERIFY(!reader.isMyLapReady());
    const std::unique_ptr<ZEP::Lap> lap(reader.myLap());
    QVERIFY(lap->isEmpty());
}

void tst_IrTelemetryReaderState::copyOfACarWithAHalfRecordedLap()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(0, {0}).constData());
    QVERIFY(reader.updateCarList());
    const auto drive = [&reader](float pct) {
        tick(&reader, 0, {{"lapdistpct", pct}, {"isontrack", true}, {"lap", 3}, {"rpm", pct * 2}});
    };
    drive(0.25f);
    drive(0.5f);

    CarTracker copy(reader.car(0));
    QCOMPARE(copy.lap.getAvailableChannels(), reader.lap(0).getAvailableChannels());
    COMPARE_BITS(copy.lap.channel("rpm")->data, QVector<double>({0.5, 1.0}));
    QCOMPARE(copy.lap.getLapInSession(), 3);
    QCOMPARE(copy.driverName, QString("Driver 0"));

    copy.startLap();
    copy.driverName = "Another Driver";
    QCOMPARE(reader.lap(0).size(), 2);
    QCOMPARE(reader.driverName(0), QString("Driver 0"));
    QVERIFY(copy.current.lapId != reader.car(0).current.lapId);
}

void tst_IrTelemetryReaderState::carsStayWhereTheyAre()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(0, {0, 1}).constData());
    QVERIFY(reader.updateCarList());
    const QString *driver = &reader.driverName(1);
    const QString *team = &reader.teamName(1);
    const ZEP::Sample *sample = &reader.sample(1);
    const ZEP::Lap *lap = &reader.lap(1);
    for (int i = 0; i < 10; ++i)
        tick(&reader, 0, {{"lapdistpct", 0.1f}, {"isontrack", true}});
    reader.updateCarList();
    reader.setDiskLoading(true);
    QCOMPARE(static_cast<const QString *>(&reader.driverName(1)), driver);
    QCOMPARE(static_cast<const QString *>(&reader.teamName(1)), team);
    QCOMPARE(static_cast<const ZEP::Sample *>(&reader.sample(1)), sample);
    QCOMPARE(static_cast<const ZEP::Lap *>(&reader.lap(1)), lap);
}

void tst_IrTelemetryReaderState::readersAreIndependent()
{
    iRTelemetryReader one;
    iRTelemetryReader other;
    one.setYaml(sessionInfoOf(3, {3}).constData());
    QVERIFY(one.updateCarList());
    one.setDiskLoading(true);
    tick(&one, 3, {{"lapdistpct", 0.1f}, {"isontrack", true}});
    QCOMPARE(one.lap(3).size(), 1);
    QVERIFY(!other.updateCarList());
    QCOMPARE(other.myCarIdx(), -1);
    QCOMPARE(initialDifference(other.car(3)), QString());
}

NAPAMMUL_TEST(tst_IrTelemetryReaderState)

#include "tst_irtelemetryreader_state.moc"
