// The plain importer judges the fast one. This test judges what it does to finished laps, and whole
// imports, against results that were worked out by hand.
#include "tests/reference/importfile.h"
#include "tests/reference/reader.h"
#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"

#include <QColor>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <cstring>

using namespace reference;

namespace {

const char FinishText[] = "---\n"
                          "WeekendInfo:\n"
                          " TrackDisplayName: Spa\n"
                          " TrackConfigName: Grand Prix\n"
                          " SessionID: 12\n"
                          " SubSessionID: 1a\n"
                          " TrackLength: 3.70 km\n"
                          " TrackAirTemp:   21.5   C  x\n"
                          " TrackNorthOffset: 2.6253 rad\n"
                          " WeekendOptions:\n"
                          "  WeatherTemp: 25\n"
                          "DriverInfo:\n"
                          " DriverCarIdx: 3\n"
                          " DriverCarFuelMaxLtr: 110.000\n"
                          " DriverCarMaxFuelPct: 0.500\n"
                          " DriverCarFuelKgPerLtr: 0.750\n"
                          " Drivers:\n"
                          " - CarIdx: 3\n"
                          "   UserName: Ann Bee\n"
                          "   TeamName: Team\n"
                          "   CarScreenName: Car\n"
                          "   LicColor: 0x00c702\n"
                          "SessionInfo:\n"
                          " Sessions:\n"
                          " - SessionNum: 0\n"
                          "   SessionType: Offline Testing\n"
                          " - SessionNum: 1\n"
                          "   SessionType: Race\n"
                          "CarSetup:\n"
                          " Chassis:\n"
                          "  Rear:\n"
                          "   FuelLevel: 30.0 kg\n"
                          "...\n";

struct ReaderOfText : Reader {
    ReaderOfText()
    {
        setYaml(FinishText);
        updateCarList();
    }

    void addChannel(int car, const char *name, const QVector<double> &data, const char *unit = "")
    {
        lap(car).addChannel(name, {data, unit});
    }
};

bool sameNumbers(const QVector<double> &left, const QVector<double> &right)
{
    return left.size() == right.size()
        && std::equal(left.begin(), left.end(), right.begin(), [](double l, double r) {
               return l == r || (std::isnan(l) && std::isnan(r)) || std::fabs(l - r) < 1e-12;
           });
}

} // namespace

class tst_ReferenceFinish : public QObject
{
    Q_OBJECT

private slots:
    void sessionInfo();
    void sessionInfoOfOtherCars();
    void sessionInfoWithoutPlayer();
    void sessionIds();
    void cleanup();
    void preprocessPlayer();
    void preprocessOther();
    void preprocessShortLaps();
    void yawOffset();
    void normalization_data();
    void normalization();
    void importFailures_data();
    void importFailures();
    void importRefusals();
};

void tst_ReferenceFinish::sessionInfo()
{
    ReaderOfText reader;
    reader.sample(3).values["sessionnum"] = {1, QString()};
    Lap lap;
    reader.getSessionInfo(3, &lap);

    QCOMPARE(lap.carId, QVariant(3));
    QCOMPARE(lap.trackName, QString("Spa"));
    QCOMPARE(lap.trackConfig, QString("Grand Prix"));
    QCOMPARE(lap.sessionId, QUuid("{00000000-0000-0000-0000-00000000121a}"));
    QCOMPARE(lap.driverName, QString("Ann Bee"));
    QCOMPARE(lap.carName, QString("Car"));
    QCOMPARE(lap.session, int(Race));
    QCOMPARE(lap.values.size(), 12 + 5 + 13 + 1);
    const auto value = [&lap](const char *name) { return lap.values.value(name).value; };
    const auto unit = [&lap](const char *name) { return lap.values.value(name).unit; };
    QCOMPARE(value("Track length"), QVariant(3.7));
    QCOMPARE(unit("Track length"), QString("km"));
    QCOMPARE(value("Air temperature"), QVariant(21.5));
    QCOMPARE(unit("Air temperature"), QString("C"));
    QCOMPARE(value("Track surface temperature"), QVariant(0.0));
    QCOMPARE(unit("Weekend temperature"), QString());
    QCOMPARE(value("YawOffset"), QVariant(2.6253));
    QCOMPARE(unit("YawOffset"), QString());
    QCOMPARE(value("Track city"), QVariant(QString()));
    QCOMPARE(value("Maximum fuel level"), QVariant(55.0));
    QCOMPARE(unit("Maximum fuel level"), QString("l"));
    QCOMPARE(value("Maximum fuel percent"), QVariant(0.5));
    QCOMPARE(unit("Maximum fuel percent"), QString("pu"));
    QCOMPARE(value("Kg per fuel litre"), QVariant(0.75));
    QCOMPARE(value("Maximum fuel weight"), QVariant(41.25));
    QCOMPARE(value("Preferred fuel unit"), QVariant("weight"));
    QCOMPARE(value("Licence color"), QVariant(QColor(0, 0xc7, 2)));
    QCOMPARE(value("Session name"), QVariant("Race"));

    reader.pathSet("CarSetup/Chassis/Rear/FuelLevel", "30.0 L");
    reader.pathSet("DriverInfo/DriverCarFuelKgPerLtr", "");
    Lap other;
    reader.getSessionInfo(3, &other);
    QCOMPARE(other.values.value("Preferred fuel unit").value, QVariant("volume"));
    QVERIFY(!other.values.contains("Kg per fuel litre"));
    reader.pathSet("CarSetup/Chassis/Rear/FuelLevel", "30.0");
    Lap third;
    reader.getSessionInfo(3, &third);
    QVERIFY(!third.values.contains("Preferred fuel unit"));
}

void tst_ReferenceFinish::sessionInfoOfOtherCars()
{
    ReaderOfText reader;
    Lap lap;
    reader.getSessionInfo(7, &lap);
    QCOMPARE(lap.values.size(), 12 + 1);
    QCOMPARE(lap.session, -1);
    QCOMPARE(lap.values.value("Session name").value, QVariant("Offline Testing"));
    QVERIFY(lap.driverName.isEmpty());
}

void tst_ReferenceFinish::sessionInfoWithoutPlayer()
{
    Reader reader;
    Lap lap;
    reader.getSessionInfo(-1, &lap);
    QCOMPARE(lap.values.keys(), QStringList({"Session name"}));
    QVERIFY(lap.values.value("Session name").value.toString().isNull());
    QVERIFY(lap.sessionId.isNull());
    QScopedPointer<Lap> mine(reader.myLap());
    QVERIFY(mine->isEmpty());
    reader.processMyLap(false);
}

void tst_ReferenceFinish::sessionIds()
{
    const Reader reader;
    QCOMPARE(reader.sessionId("1a"), QUuid("{00000000-0000-0000-0000-00000000001a}"));
    QVERIFY(reader.sessionId("xyz").isNull());
    QVERIFY(reader.sessionId(QString()).isNull());
}

void tst_ReferenceFinish::cleanup()
{
    ReaderOfText reader;
    for (const char *name : {"IsOnTrack", "isontrack", "sessionnum", "TireRR_RumblePitch", "x"})
        reader.addChannel(3, name, {1.0});
    reader.cleanupLap(3);
    QCOMPARE(reader.lap(3).channels.keys(), QStringList({"isontrack", "x"}));
}

void tst_ReferenceFinish::preprocessPlayer()
{
    ReaderOfText reader;
    Lap &lap = reader.lap(3);
    lap.values["Kg per fuel litre"] = {0.75, QString()};
    reader.addChannel(3, "fuellevel", {10, 20, NoData}, "%");
    reader.addChannel(3, "lapdistpct", {0, 0.1, 0.2}, "kg");
    reader.addChannel(3, "sessiontime", {1, 2, 3}, "s");
    reader.preprocessLap(3);
    QCOMPARE(lap.channels.keys(),
             QStringList({"fuellevel", "fuelweight", "lapdistpct", "sessiontime"}));
    QCOMPARE(lap.channel("fuelweight")->data, QVector<double>({7.5, 15, 7.499999671517645e24}));
    QCOMPARE(lap.channel("fuelweight")->unit, QString("kg"));
    QCOMPARE(lap.channel("fuellevel")->unit, QString("pu"));
    QCOMPARE(lap.channel("lapdistpct")->unit, QString("kg"));

    lap.channels.remove("fuelweight");
    lap.values["Kg per fuel litre"] = {1e-13, QString()};
    reader.preprocessLap(3);
    QVERIFY(!lap.channel("fuelweight"));
}

void tst_ReferenceFinish::preprocessOther()
{
    ReaderOfText reader;
    Lap &lap = reader.lap(7);
    reader.addChannel(7, "lapdistpct", {0.0, 0.1, 0.2, 0.3});
    reader.addChannel(7, "sessiontime", {100, 101, 102, 102}, "s");
    reader.preprocessLap(7);
    QVERIFY(!lap.channel("speed") && !lap.channel("lapdist"));
    QCOMPARE(lap.channel("dt")->data, QVector<double>({1, 1, 0, 0}));

    lap.values["Track length"] = {2.0, "km"};
    reader.preprocessLap(7);
    QVERIFY(sameNumbers(lap.channel("lapdist")->data, {0, 200, 400, 600}));
    QVERIFY(sameNumbers(lap.channel("speed")->data, {200, 200, Infinity, Infinity}));
    QCOMPARE(lap.channel("lapdist")->unit, QString("m"));
    QCOMPARE(lap.channel("speed")->unit, QString("m/s"));
    QCOMPARE(lap.channel("dt")->unit, QString());
}

void tst_ReferenceFinish::preprocessShortLaps()
{
    ReaderOfText reader;
    reader.lap(7).values["Track length"] = {2.0, "km"};
    reader.addChannel(7, "lapdistpct", {0.5});
    reader.addChannel(7, "sessiontime", {100});
    reader.preprocessLap(7);
    QCOMPARE(reader.lap(7).channel("dt")->data, QVector<double>({NoData}));
    QCOMPARE(reader.lap(7).channel("speed")->data, QVector<double>({NoData}));

    reader.addChannel(7, "lapdistpct", {});
    reader.preprocessLap(7);
    QVERIFY(reader.lap(7).channel("dt")->data.isEmpty());
    QVERIFY(reader.lap(7).channel("speed")->data.isEmpty());
}

void tst_ReferenceFinish::yawOffset()
{
    ReaderOfText reader;
    Lap &lap = reader.lap(3);
    reader.addChannel(3, "Yaw", {1, 2});
    lap.values["YawOffset"] = {0.5, QString()};
    reader.preprocessLap(3);
    QCOMPARE(lap.channel("Yaw")->data, QVector<double>({1, 2}));
    lap.values["yawOffset"] = {0.5, QString()};
    reader.preprocessLap(3);
    QCOMPARE(lap.channel("Yaw")->data, QVector<double>({1.5, 2.5}));
    QCOMPARE(lap.values.keys(), QStringList({"YawOffset"}));
    lap.calculatedValues["yawOffset"] = {1.0, QString()};
    reader.preprocessLap(3);
    QCOMPARE(lap.channel("Yaw")->data, QVector<double>({2.5, 3.5}));
    QVERIFY(lap.calculatedValues.contains("yawOffset"));
}

void tst_ReferenceFinish::normalization_data()
{
    QTest::addColumn<QVector<double>>("channel");
    QTest::addColumn<QVector<double>>("pct");
    QTest::addColumn<QVector<double>>("result");

    using V = QVector<double>;
    QTest::newRow("rising") << V({1, 2, 3}) << V({0, 0.1, 0.2}) << V({1, 2, 3});
    QTest::newRow("late reset") << V({5, 0, 0.5, 1}) << V({0.97, 0, 0.02, 0.04})
                                << V({24.25, 0, 0.5, 1});
    QTest::newRow("two before the reset")
        << V({5, 6, 0, 0.5}) << V({0.9, 0.95, 0, 0.1}) << V({4.5, 4.75, 0, 0.5});
    QTest::newRow("reference is zero") << V({5, 6, 0}) << V({0.9, 0.95, 0}) << V({5, 6, 0});
    // -1 is not a reference: the sample is scaled by it, and the next repair needs one again.
    QTest::newRow("negative reference")
        << V({7, 4, -1, 3}) << V({0.1, 0.2, 0.4, 0.5}) << V({-0.25, -0.5, -1, 3});
    QTest::newRow("one sample") << V({0}) << V({0}) << V({0});
    QTest::newRow("no lap distance") << V({5, 0, 1}) << V() << V({5, 0, 1});
    QTest::newRow("reference at fraction zero") << V({5, 1}) << V({0.5, 0}) << V({Infinity, 1});
}

void tst_ReferenceFinish::normalization()
{
    QFETCH(QVector<double>, channel);
    QFETCH(QVector<double>, pct);
    QFETCH(QVector<double>, result);

    ReaderOfText reader;
    reader.addChannel(3, "x", channel);
    if (!pct.isEmpty())
        reader.addChannel(3, "lapdistpct", pct);
    reader.normalizeChannelBeginning(3, "x");
    QVERIFY(sameNumbers(reader.lap(3).channel("x")->data, result));
    reader.normalizeChannelBeginning(3, "missing");
}

void tst_ReferenceFinish::importFailures_data()
{
    QTest::addColumn<int>("size"); // bytes of zeros with the numbers below at their places
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("error"); // empty: the import goes on

    const QString text = "IBT import error:  Failed to read sessionInfoString";
    const QString table = "IBT import error:  Failed to read irsdk_varHeader";
    QTest::newRow("sound") << 144 << 0 << 2 << QString();
    QTest::newRow("header short") << 111 << 0 << 2
                                  << "IBT import error:  Error reading irsdk_header";
    QTest::newRow("sub-header short")
        << 143 << 0 << 2 << "IBT import error:  Error reading irsdk_diskSubHeader";
    QTest::newRow("text behind the end") << 144 << 16 << 145 << text;
    QTest::newRow("text length negative") << 144 << 16 << -1 << text;
    QTest::newRow("text offset negative") << 144 << 20 << -1 << text;
    QTest::newRow("text fills the file") << 144 << 16 << 144 << QString();
    QTest::newRow("table behind the end") << 144 << 24 << 2 << table;
    QTest::newRow("table size negative") << 144 << 24 << -1 << table;
    QTest::newRow("table offset negative") << 144 << 28 << -1 << table;
    QTest::newRow("table without end") << 144 << 24 << 2147483647 << table;
    QTest::newRow("table fills the file") << 144 << 24 << 1 << QString();
    QTest::newRow("record size negative") << 144 << 36 << -1 << QString();
    QTest::newRow("record offset negative") << 144 << 52 << -1 << QString();
    QTest::newRow("record size huge") << 144 << 36 << 2147483647 << QString();
}

void tst_ReferenceFinish::importFailures()
{
    QFETCH(int, size);
    QFETCH(int, place);
    QFETCH(int, number);
    QFETCH(QString, error);

    QByteArray bytes(size, 0);
    std::memcpy(bytes.data() + place, &number, sizeof number);
    QTemporaryDir folder;
    const QString fileName = folder.filePath("x.ibt");
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();

    const Import result = importFile(fileName, "iRacing binary telemetry (*.ibt)");
    QCOMPARE(result.messages.size(), 3);
    const QString prefix = "[ZEP iRacing ibt import plugin plugin] ";
    QCOMPARE(result.messages.at(0).text, QString(prefix + "Importing file " + fileName + " ..."));
    QCOMPARE(result.messages.at(1).text,
             QString(prefix + "Using format iRacing binary telemetry (*.ibt)"));
    if (error.isEmpty()) {
        QVERIFY(result.messages.at(2).text.startsWith(prefix + "Done in "));
        QVERIFY(result.messages.at(2).text.endsWith(" ms; Laps readed 1"));
        QCOMPARE(result.messages.at(2).level, 0);
        QCOMPARE(result.laps.size(), 1);
        QCOMPARE(result.laps.at(0).source, QString("iRacing"));
        QCOMPARE(result.laps.at(0).plugin, QString("ZEP iRacing ibt import plugin"));
    } else {
        QCOMPARE(result.messages.at(2).text, QString(prefix + error));
        QCOMPARE(result.messages.at(2).level, -2);
        QVERIFY(result.laps.isEmpty());
    }
}

void tst_ReferenceFinish::importRefusals()
{
    const Import other = importFile("x", "iracing binary telemetry (*.ibt)");
    QVERIFY(other.messages.last().text.endsWith("] Unknown format"));
    const Import missing = importFile("/no/such/file", "iRacing binary telemetry (*.ibt)");
    QVERIFY(missing.messages.last().text.endsWith("] Can't open file /no/such/file"));
    QVERIFY(missing.laps.isEmpty() && other.laps.isEmpty());
}

NAPAMMUL_TEST(tst_ReferenceFinish)
#include "tst_referencefinish.moc"
