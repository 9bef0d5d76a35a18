// The plain importer judges the fast one. This test judges its way from ticks to laps against
// results that were worked out by hand.
#include "tests/reference/reader.h"
#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"

#include <QRegularExpression>
#include <QTest>

using namespace reference;

namespace {

const char SessionText[] = "---\n"
                           "DriverInfo:\n"
                           " DriverCarIdx: 3\n"
                           " DriverCarFuelKgPerLtr: 0.750\n"
                           " Drivers:\n"
                           " - CarIdx: 3\n"
                           "   UserName: Ann Bee\n"
                           " - CarIdx: 7\n"
                           "   UserName: Cy Dee\n"
                           "SessionInfo:\n"
                           " Sessions:\n"
                           " - SessionNum: 0\n"
                           "   SessionType: Practice\n"
                           "   ResultsPositions:\n"
                           "   - Position: 1\n"
                           "     CarIdx: 7\n"
                           "     LapsComplete: 4\n"
                           " - SessionNum: 1\n"
                           "   SessionType: Race\n"
                           "WeekendInfo:\n"
                           " TrackLength: 2.0 km\n"
                           "...\n";

/// A reader over SessionText, as an import sets it up, and ticks of the player's car 3.
struct Drive : Reader {
    explicit Drive(int session = 0) : sessionNumber(session)
    {
        setDiskLoading(true);
        setYaml(SessionText);
        updateCarList();
    }

    void tick(double pct, double lapTime, int lapNumber)
    {
        prepareTick();
        set("lapdistpct", float(pct));
        set("lapcurrentlaptime", float(lapTime), "s");
        set("laplastlaptime", lastLapTime, "s");
        set("lap", lapNumber);
        set("isontrack", onTrack);
        set("onpitroad", onPitRoad);
        set("sessionstate", sessionState);
        set("sessionnum", sessionNumber);
        set("sessiontime", 100.0 + lapTime, "s");
        set("fuellevel", 10.0f, "l");
        processData();
    }

    void set(const char *name, const QVariant &value, const char *unit = "")
    {
        sample(3).values.insert(name, {value, unit});
    }

    Lap &lap() { return Reader::lap(3); }
    int status() const { return car(3).current.carStatus; }

    int sessionNumber;
    int sessionState = 4;
    float lastLapTime = 83.456f;
    bool onTrack = true;
    bool onPitRoad = false;
};

} // namespace

class tst_ReferenceLaps : public QObject
{
    Q_OBJECT

private slots:
    void practice();
    void garageAndPits();
    void race();
    void pitVisitDropsLap();
    void outsideTheWorld();
    void otherCars();
    void lapTimes_data();
    void lapTimes();
};

void tst_ReferenceLaps::practice()
{
    Drive drive;
    drive.tick(0.3, 30.0, 1);
    QCOMPARE(drive.status(), int(Recording));
    const QUuid lapId = drive.car(3).current.lapId;
    const QUuid stintId = drive.car(3).current.stintId;
    QVERIFY(!lapId.isNull() && !stintId.isNull());
    drive.tick(0.995, 99.0, 1);
    drive.tick(0.01, 100.0, 2); // past the line, but the time is still running
    QCOMPARE(drive.lap().size(), 2);
    QCOMPARE(drive.car(3).nextLap.size(), 1);
    QVERIFY(!drive.isMyLapReady());
    drive.tick(0.02, 1.0, 2);
    QVERIFY(drive.isMyLapReady());
    QCOMPARE(drive.status(), int(Completed));

    const Lap first = drive.lap();
    QCOMPARE(first.size(), 2);
    QCOMPARE(first.lapId, lapId);
    QCOMPARE(first.stintId, stintId);
    QCOMPARE(first.lapType, 0);
    QCOMPARE(first.lapTime, QTime(0, 59, 59));
    QCOMPARE(first.lapInSession, 1);
    QCOMPARE(first.lapInStint, 0);
    QCOMPARE(first.stintInSession, 1);
    QCOMPARE(first.session, int(Practice));
    QVERIFY(first.completed);
    QCOMPARE(first.calculatedValues.keys(), QStringList({"DateTime"}));
    QVERIFY(first.channel("fulltelemetry") && !first.channel("sessionnum"));
    QCOMPARE(first.channel("fuelweight")->data, QVector<double>({7.5, 7.5}));

    drive.tick(0.5, 50.0, 2);
    QCOMPARE(drive.lap().size(), 2);
    QCOMPARE(drive.lap().channel("lapdistpct")->sample(0), double(0.01f));
    drive.tick(0.6, 40.0, 2);
    QVERIFY(drive.isMyLapReady());
    QCOMPARE(drive.lap().lapType, 1);
    QCOMPARE(drive.lap().lapTime, QTime(0, 1, 23, 456));
    QCOMPARE(drive.lap().lapInStint, 1);
    QCOMPARE(drive.lap().stintId, stintId);

    drive.tick(0.7, 41.0, 3);
    drive.processMyLap(false);
    QVERIFY(!drive.lap().completed);
    QCOMPARE(drive.lap().lapTime, QTime(0, 59, 59));
    QCOMPARE(drive.lap().lapInSession, 3);
    QCOMPARE(drive.lap().lapInStint, 2);
}

void tst_ReferenceLaps::garageAndPits()
{
    Drive drive;
    drive.onTrack = false;
    drive.tick(0.9, 0.0, 0);
    QCOMPARE(drive.status(), int(Stopped));
    QCOMPARE(drive.car(3).current.lapLastLapTime, -1.0f);
    QVERIFY(drive.lap().isEmpty());
    drive.onTrack = true;
    drive.tick(0.9, 0.0, 0);
    QCOMPARE(drive.status(), int(Stopped)); // from the garage straight onto the track
    drive.onPitRoad = true;
    drive.tick(0.9, 0.0, 0);
    QCOMPARE(drive.status(), int(OnPitRoad));
    drive.onPitRoad = false;
    drive.tick(0.81, 0.0, 0);
    QCOMPARE(drive.status(), int(RunningToLine));
    QVERIFY(drive.lap().isEmpty());
    drive.tick(0.82, 0.0, 0);
    QCOMPARE(drive.status(), int(Recording));
    QCOMPARE(drive.car(3).current.stintCount, 1);
    QCOMPARE(drive.lap().size(), 1);
}

void tst_ReferenceLaps::race()
{
    Drive drive(1);
    drive.sessionState = 3;
    drive.tick(0.9, 0.0, 0);
    QCOMPARE(drive.status(), int(RunningToLine));
    drive.tick(0.91, 0.0, 0);
    QCOMPARE(drive.status(), int(RunningToLine));
    drive.tick(0.01, 1.0, 1);
    QCOMPARE(drive.status(), int(Recording));
    QCOMPARE(drive.car(3).current.stintCount, 1);
    drive.tick(0.2, 2.0, 1);
    QCOMPARE(drive.car(3).current.stintCount, 1);
    drive.sessionState = 4;
    drive.tick(0.7, 70.0, 1);
    QCOMPARE(drive.status(), int(Recording));
    drive.tick(0.0, 80.0, 1);
    QCOMPARE(drive.status(), int(Completed));
    QVERIFY(drive.isMyLapReady());
    QCOMPARE(drive.lap().lapType, 0);
    QCOMPARE(drive.lap().lapTime, QTime(0, 1, 23, 456)); // the first lap of a race counts
}

void tst_ReferenceLaps::pitVisitDropsLap()
{
    Drive drive;
    drive.tick(0.3, 30.0, 1);
    drive.tick(0.5, 50.0, 1);
    drive.onPitRoad = true;
    drive.tick(0.6, 60.0, 1);
    QCOMPARE(drive.lap().size(), 3);
    drive.onPitRoad = false;
    drive.tick(0.7, 70.0, 1);
    QCOMPARE(drive.lap().size(), 1);
    QCOMPARE(drive.car(3).current.stintCount, 2);
    QCOMPARE(drive.car(3).current.lapInStint, 0);
    QVERIFY(!drive.isMyLapReady());
}

void tst_ReferenceLaps::outsideTheWorld()
{
    Drive drive;
    drive.tick(-1.0, 30.0, 5);
    QCOMPARE(drive.car(3).current.lap, -1);
    QCOMPARE(drive.status(), -1);
    QVERIFY(!drive.isCarInWorld(3));
    drive.tick(-0.2, 30.0, 5);
    QVERIFY(!drive.isCarInWorld(3));
    drive.tick(-0.19, 30.0, 5);
    QVERIFY(drive.isCarInWorld(3));
    drive.tick(NaN, 30.0, 6);
    QCOMPARE(drive.car(3).current.lap, 5);
    QVERIFY(!drive.isSessionRestarted());
}

void tst_ReferenceLaps::otherCars()
{
    Drive drive;
    const auto tick = [&drive](float pct, const char *lapsComplete) {
        drive.pathSet("SessionInfo/Sessions/0/ResultsPositions/1/LapsComplete", lapsComplete);
        drive.prepareTick();
        drive.sample(7).values["lapdistpct"] = {pct, QString()};
        drive.sample(7).values["sessiontime"] = {100.0 + double(pct), "s"};
        drive.sample(7).values["onpitroad"] = {false, QString()};
        drive.processData();
    };
    tick(0.1f, "3");
    QCOMPARE(drive.car(7).current.lap, 3);
    tick(0.9f, "3");
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression("lap completed.*Cy Dee"));
    tick(0.1f, "4");
    QVERIFY(drive.isLapReady(7) && !drive.isMyLapReady());
    QCOMPARE(drive.Reader::lap(7).channel("lapdist")->data.size(), 2);
    QCOMPARE(drive.Reader::lap(7).lapTime, QTime(0, 59, 59));
    drive.prepareTick();
    drive.sample(7).values["lapdistpct"] = {0.1001f, QString()};
    drive.processData();
    QCOMPARE(drive.car(7).current.carStatus, int(Stopped));
}

void tst_ReferenceLaps::lapTimes_data()
{
    QTest::addColumn<float>("seconds");
    QTest::addColumn<QTime>("lapTime");

    const QTime none(0, 59, 59);
    QTest::newRow("plain") << 83.456f << QTime(0, 1, 23, 456);
    QTest::newRow("zero") << 0.0f << none;
    QTest::newRow("almost zero") << 1.0e-5f << none;
    QTest::newRow("tiny") << 1.1e-5f << QTime(0, 0);
    QTest::newRow("negative") << -1.0f << none;
    QTest::newRow("NaN") << float(NaN) << none;
    QTest::newRow("infinite") << float(Infinity) << none;
    QTest::newRow("largest") << 2147483.5f << QTime(0, 0).addMSecs(2147483520);
    QTest::newRow("too large") << 2147483.75f << none;
}

void tst_ReferenceLaps::lapTimes()
{
    QFETCH(float, seconds);
    QFETCH(QTime, lapTime);

    Drive drive;
    drive.lastLapTime = seconds;
    drive.tick(0.3, 30.0, 1);
    drive.tick(0.4, 1.0, 1);
    drive.tick(0.5, 50.0, 1);
    drive.tick(0.6, 1.0, 1);
    QVERIFY(drive.isMyLapReady());
    QCOMPARE(drive.lap().lapTime, lapTime);
    if (lapTime == QTime(0, 59, 59))
        QCOMPARE(drive.car(3).current.lapLastLapTime, 3599.0f);
}

NAPAMMUL_TEST(tst_ReferenceLaps)
#include "tst_referencelaps.moc"
