// Whole drives: which laps become of them.

#include "tests/support/readerticks.h"
#include "tests/support/recordfeed.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/twocars.h"
#include "tools/recording.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

using Names = QList<QString>;

namespace {

/// Where the player's car is at a tick, and what its clocks show.
struct Moment {
    double pct;
    double lapTime;
    int lap;
    double lastLapTime = -1.0;
    bool isOnTrack = true;
    bool isOnPitRoad = false;
    int sessionState = 4;
};

using Drive = QVector<Moment>;

Moment garage(double pct)
{
    return {pct, 0.0, 0, -1.0, false, false};
}

Moment pitRoad(double pct, double lapTime, int lap)
{
    return {pct, lapTime, lap, -1.0, true, true};
}

Moment inState(int sessionState, Moment moment)
{
    moment.sessionState = sessionState;
    return moment;
}

Recording recordingOf(const Drive &drive, const QByteArray &sessionType)
{
    Recording recording;
    recording.sessionInfo(Recording::plainSessionInfo(sessionType));
    for (const Moment &moment : drive) {
        recording.set("LapDistPct", moment.pct)
            .set("LapCurrentLapTime", moment.lapTime)
            .set("LapLastLapTime", moment.lastLapTime)
            .set("Lap", moment.lap)
            .set("IsOnTrack", moment.isOnTrack)
            .set("OnPitRoad", moment.isOnPitRoad)
            .set("SessionState", moment.sessionState)
            .ticks(1);
    }
    return recording;
}

/// The laps that a driver takes: each one when it is ready, and what is left at the end.
QVector<ZEP::Lap> lapsOf(const Recording &recording, bool compiled)
{
    const irsdk_header header = recording.header();
    const QVector<irsdk_varHeader> table = recording.variableTable();
    const QByteArray file = recording.bytes();
    QByteArray records = file.mid(recording.sectionOffset(Recording::Records));

    iRTelemetryReader reader;
    reader.setDiskLoading(true);
    reader.setYaml(file.constData() + recording.sectionOffset(Recording::Text));
    reader.updateCarList();
    if (compiled)
        reader.compileVariables(&header, table.constData());

    QVector<ZEP::Lap> laps;
    for (int at = 0; at + header.bufLen <= records.size(); at += header.bufLen) {
        reader.prepareTick();
        reader.getRawData(&header, table.constData(), records.data() + at);
        reader.processData();
        if (reader.isMyLapReady())
            laps.append(*reader.myLap());
    }
    reader.processMyLap(false);
    laps.append(*reader.myLap());
    return laps;
}

/// A lap in one line: its type and time, its numbers in session and stint, the number of the stint,
/// and the place of every tick in thousandths of the lap.
QString summary(ZEP::Lap lap)
{
    if (lap.isEmpty())
        return QStringLiteral("empty");
    QStringList places;
    for (const double pct : lap.channel("lapdistpct")->data)
        places += QString::number(qRound(pct * 1000));
    return QStringLiteral("%1%2 %3, lap %4/%5, stint %6: %7")
        .arg(lap.getCompleted() ? "" : "open ")
        .arg(lap.getLapType() == ZEP::LapTypeTimed        ? "timed"
                 : lap.getLapType() == ZEP::LapTypeOutLap ? "out"
                                                          : "no type")
        .arg(lap.getLapTime().toString("H:mm:ss.zzz"))
        .arg(lap.getLapInSession())
        .arg(lap.getLapInStint())
        .arg(lap.getStintInSession())
        .arg(places.join(' '));
}

QStringList summaries(const QVector<ZEP::Lap> &laps)
{
    QStringList all;
    for (const ZEP::Lap &lap : laps)
        all += summary(lap);
    return all;
}

/// Out of the garage, two laps, a visit to the pits in the third, and the start of another stint.
Drive practice()
{
    return {garage(0.02),           garage(0.02),
            pitRoad(0.03, 0.0, 0),  pitRoad(0.05, 0.5, 0),
            {0.1, 10.0, 1},         {0.3, 30.0, 1},
            {0.6, 55.0, 1},         {0.95, 80.0, 1},
            {0.005, 81.0, 1}, // behind the line, the clocks have not noticed
            {0.01, 0.25, 2, 81.25}, // closes
            {0.02, 0.75, 2, 81.25}, {0.5, 40.0, 2, 81.25},
            {0.96, 79.0, 2, 81.25}, {0.003, 0.0, 3, 79.5}, // closes
            {0.02, 1.0, 3, 79.5},   {0.5, 40.0, 3, 79.5},
            pitRoad(0.97, 80.0, 3), // this lap is never closed
            pitRoad(0.02, 90.0, 3), // the pits lie behind the line: this belongs to the next lap
            garage(0.02),           pitRoad(0.04, 200.0, 3),
            {0.1, 210.0, 4, 79.5},  {0.4, 240.0, 4, 79.5},
            {0.9, 280.0, 4, 79.5}};
}

QStringList practiceLaps()
{
    return {"out 0:59:59.000, lap 0/0, stint 1: 100 300 600 950",
            "timed 0:01:19.500, lap 1/1, stint 1: 5 20 500 960",
            "open out 0:59:59.000, lap 4/0, stint 2: 20 20 40 100 400 900"};
}

} // namespace

class tst_IrTelemetryReaderDrives : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void laps_data();
    void laps();
    void lapsOfOneStintBelongTogether();
    void lapsAreComplete();
    void samplesOfALap();
    void beginningIsRepaired();
    void sessionIsThatOfTheClosingTick();
    void everyLapHasItsOwnChannels();
    void liveCars();
};

void tst_IrTelemetryReaderDrives::laps_data()
{
    QTest::addColumn<Recording>("recording");
    QTest::addColumn<int>("session");
    QTest::addColumn<QStringList>("laps");

    QTest::newRow("practice") << recordingOf(practice(), "Practice") << 1 << practiceLaps();
    QTest::newRow("alone in qualifying")
        << recordingOf(practice(), "Lone Qualify") << -1 << practiceLaps();
    QTest::newRow("testing on one's own")
        << recordingOf(practice(), "Offline Testing") << -1 << practiceLaps();
    QTest::newRow("qualifying") << recordingOf(practice(), "Qualify") << 2 << practiceLaps();
    QTest::newRow("warm-up") << recordingOf(practice(), "Warmup") << 3 << practiceLaps();

    QTest::newRow("race with a rolling start")
        << recordingOf({inState(2, {0.97, 0.0, 0}),
                        inState(3, {0.97, 0.0, 0}),
                        inState(3, {0.99, 5.0, 0}),
                        inState(3, {0.01, 6.0, 1}), // the parade lap begins
                        inState(3, {0.3, 60.0, 1}),
                        inState(3, {0.7, 110.0, 1}),
                        {0.97, 120.0, 1}, // green before the line
                        {0.99, 121.0, 1},
                        {0.005, 122.0, 1, 120.5}, // the line: closes, whatever the clocks say
                        {0.01, 0.5, 2, 120.5}, // the clocks notice: nothing to close, nor to record
                        {0.5, 40.0, 2, 120.5},
                        {0.96, 79.0, 2, 120.5},
                        {0.003, 0.25, 3, 79.5}, // closes
                        {0.02, 1.0, 3, 79.5},
                        inState(5, {0.5, 40.0, 3, 79.5}),
                        inState(5, {0.99, 79.0, 3, 79.5}),
                        inState(5, {0.01, 0.25, 4, 79.75}), // closes, behind the flag
                        inState(6, {0.02, 1.0, 4, 79.75})},
                       "Race")
        << 5
        << QStringList{"out 0:02:00.500, lap 0/0, stint 1: 10 300 700 970 990",
                       "timed 0:01:19.500, lap 1/1, stint 1: 500 960",
                       "timed 0:01:19.750, lap 2/2, stint 1: 20 500 990",
                       "open timed 0:59:59.000, lap 4/3, stint 1: 20"};
    QTest::newRow("race with a standing start")
        << recordingOf({inState(1, {0.98, 0.0, 0}),
                        inState(2, {0.98, 0.0, 0}),
                        inState(3, {0.98, 0.0, 0}),
                        {0.98, 1.0, 0}, // green: the first lap begins before the line
                        {0.99, 2.0, 0},
                        {0.01, 3.0, 1}, // the line
                        {0.02, 3.5, 1},
                        {0.5, 40.0, 1},
                        {0.99, 80.0, 1}},
                       "Race")
        << 5
        << QStringList{"out 0:59:59.000, lap 0/0, stint 1: 980 990",
                       "open timed 0:59:59.000, lap 1/1, stint 1: 20 500 990"};
    QTest::newRow("out of the pits in front of the line")
        << recordingOf({pitRoad(0.8, 100.0, 0),
                        pitRoad(0.85, 100.5, 0),
                        {0.9, 101.0, 0}, // on the way to the line
                        {0.95, 102.0, 0}, // begins all the same
                        {0.01, 0.5, 1}, // closes
                        {0.5, 40.0, 1},
                        {0.95, 79.0, 1},
                        {0.01, 0.25, 2, 80.0}, // closes
                        {0.02, 1.0, 2, 80.0}},
                       "Practice")
        << 1
        << QStringList{"out 0:59:59.000, lap 0/0, stint 1: 950",
                       "timed 0:01:20.000, lap 0/1, stint 1: 500 950",
                       "open timed 0:59:59.000, lap 2/2, stint 1: 20"};

    QTest::newRow("never out of the garage")
        << recordingOf({garage(0.02), garage(0.02), garage(0.02)}, "Practice") << 1
        << QStringList{"empty"};
    QTest::newRow("not in the world")
        << recordingOf({garage(-1.0), garage(-1.0)}, "Practice") << 1 << QStringList{"empty"};
    QTest::newRow("no records") << recordingOf({}, "Practice") << 1 << QStringList{"empty"};
    QTest::newRow("ends at the line")
        << recordingOf({{0.1, 10.0, 1}, {0.95, 80.0, 1}, {0.01, 0.25, 2, 81.25}}, "Practice") << 1
        << QStringList{"out 0:59:59.000, lap 0/0, stint 1: 100 950",
                       "open out 0:59:59.000, lap 2/0, stint 1: 100 950"};
    QTest::newRow("ends a tick behind the line")
        << recordingOf(
               {{0.1, 10.0, 1}, {0.95, 80.0, 1}, {0.01, 0.25, 2, 81.25}, {0.02, 0.5, 2, 81.25}},
               "Practice")
        << 1
        << QStringList{"out 0:59:59.000, lap 0/0, stint 1: 100 950",
                       "open timed 0:59:59.000, lap 2/1, stint 1: 20"};
    QTest::newRow("a lap in the pits is recorded, but never closed")
        << recordingOf({{0.1, 10.0, 1}, {0.5, 40.0, 1}, pitRoad(0.6, 50.0, 1), garage(0.6)},
                       "Practice")
        << 1 << QStringList{"open no type 0:59:59.000, lap 0/0, stint 1: 100 500 600 600"};
}

void tst_IrTelemetryReaderDrives::laps()
{
    QFETCH(Recording, recording);
    QFETCH(int, session);
    QFETCH(QStringList, laps);

    for (const bool compiled : {false, true}) {
        const QVector<ZEP::Lap> taken = lapsOf(recording, compiled);
        QCOMPARE(summaries(taken), laps);
        for (const ZEP::Lap &lap : taken)
            QCOMPARE(int(lap.getSession()), lap.isEmpty() ? -1 : session);
    }
}

void tst_IrTelemetryReaderDrives::lapsOfOneStintBelongTogether()
{
    for (const bool compiled : {false, true}) {
        const QVector<ZEP::Lap> laps = lapsOf(recordingOf(practice(), "Practice"), compiled);
        QCOMPARE(laps.size(), 3);
        QVERIFY(!laps.at(0).getStintId().isNull());
        QVERIFY(!laps.at(2).getStintId().isNull());
        QCOMPARE(laps.at(0).getStintId(), laps.at(1).getStintId());
        QVERIFY(laps.at(1).getStintId() != laps.at(2).getStintId());
        QSet<QUuid> ids;
        for (const ZEP::Lap &lap : laps) {
            QVERIFY(!lap.getLapId().isNull());
            ids += lap.getLapId();
        }
        QCOMPARE(ids.size(), 3);
    }
}

void tst_IrTelemetryReaderDrives::lapsAreComplete()
{
    for (const bool compiled : {false, true}) {
        for (ZEP::Lap lap : lapsOf(recordingOf(practice(), "Practice"), compiled)) {
            QCOMPARE(lap.getCarId(), QVariant(0));
            QCOMPARE(lap.getDriverName(), QString("Test Driver"));
            QCOMPARE(lap.getCarName(), QString("Test Car"));
            QCOMPARE(lap.getTrackName(), QString("Test Field"));
            QCOMPARE(lap.value("Team").print(), QString("Test Team"));
            QCOMPARE(lap.value("Track length").print(), QString("1 km"));
            QCOMPARE(lap.value("Session name").print(), QString("Practice"));
            QCOMPARE(lap.calculatedValuesNames(), Names{"DateTime"});
            QVERIFY(lap.getAvailableCalculatedChannels().isEmpty());
            QVERIFY(lap.getSource().isEmpty());
            QVERIFY(lap.getPlugin().isEmpty());
            QCOMPARE(lap.getAvailableChannels(),
                     (Names{"fuellevel", "fuelweight", "fulltelemetry", "isontrack", "lap",
                            "lapcurrentlaptime", "lapdistpct", "laplastlaptime", "onpitroad",
                            "sessionstate", "sessiontick", "sessiontime", "speed"}));
            QCOMPARE(lap.channel("lapdistpct")->unit(), QString("pu"));
            QCOMPARE(lap.channel("sessiontime")->unit(), QString("s"));
            QCOMPARE(lap.channel("speed")->unit(), QString("m/s"));
            QCOMPARE(lap.channel("fuelweight")->unit(), QString("kg"));
            QVERIFY(lap.channel("fulltelemetry")->unit().isEmpty());
            for (const QString &name : lap.getAvailableChannels())
                QCOMPARE(lap.channel(name)->data.size(), lap.size());
        }
    }
}

void tst_IrTelemetryReaderDrives::samplesOfALap()
{
    for (const bool compiled : {false, true}) {
        ZEP::Lap lap = lapsOf(recordingOf(practice(), "Practice"), compiled).at(1);
        COMPARE_BITS(lap.channel("lap")->data, QVector<double>({1, 2, 2, 2}));
        COMPARE_BITS(lap.channel("isontrack")->data, QVector<double>({1, 1, 1, 1}));
        COMPARE_BITS(lap.channel("onpitroad")->data, QVector<double>({0, 0, 0, 0}));
        COMPARE_BITS(lap.channel("fulltelemetry")->data, QVector<double>({1, 1, 1, 1}));
        COMPARE_BITS(lap.channel("lapdistpct")->data,
                     QVector<double>({double(0.005f), double(0.02f), 0.5, double(0.96f)}));
        COMPARE_BITS(lap.channel("laplastlaptime")->data,
                     QVector<double>({-1, 81.25, 81.25, 81.25}));
        // The tick between the first two closed the lap before.
        COMPARE_BITS(lap.channel("sessiontick")->data, QVector<double>({8, 10, 11, 12}));
    }
}

/// The tick behind the line still carries the time of the lap before.
void tst_IrTelemetryReaderDrives::beginningIsRepaired()
{
    for (const bool compiled : {false, true}) {
        ZEP::Lap lap = lapsOf(recordingOf(practice(), "Practice"), compiled).at(1);
        const double repaired = double(0.005f) * 0.75 / double(0.02f);
        COMPARE_BITS(lap.channel("lapcurrentlaptime")->data,
                     QVector<double>({repaired, 0.75, 40, 79}));
    }
}

/// Which session a lap belongs to may change on its way; the kind that the car's rules go by stays.
void tst_IrTelemetryReaderDrives::sessionIsThatOfTheClosingTick()
{
    QByteArray text = Recording::plainSessionInfo("Practice");
    text.replace("   SessionType: Practice\n",
                 "   SessionType: Practice\n - SessionNum: 1\n   SessionType: Race\n"
                 " - SessionNum: 2\n   SessionType: Lone Qualify\n");
    Recording recording;
    recording.sessionInfo(text).set("IsOnTrack", 1).set("SessionState", 4);
    const auto drive = [&recording](int session, double pct, double lapTime, int lap) {
        recording.set("SessionNum", session).set("LapDistPct", pct);
        recording.set("LapCurrentLapTime", lapTime).set("Lap", lap).ticks(1);
    };
    drive(0, 0.5, 40.0, 1);
    drive(0, 0.9, 70.0, 1);
    drive(0, 0.1, 0.0, 2); // closes
    drive(0, 0.5, 40.0, 2);
    drive(0, 0.9, 70.0, 2);
    drive(1, 0.1, 0.0, 3); // closes in the next session
    drive(1, 0.5, 40.0, 3);
    drive(1, 0.9, 70.0, 3);
    drive(1, 0.1, 0.0, 4); // closes
    drive(1, 0.5, 40.0, 4);
    drive(2, 0.9, 70.0, 4);

    for (const bool compiled : {false, true}) {
        QStringList sessions;
        for (const ZEP::Lap &lap : lapsOf(recording, compiled))
            sessions += QString::number(lap.getSession()) + ' ' + lap.value("Session name").print();
        QCOMPARE(sessions, (QStringList{"1 Practice", "5 Race", "5 Race", "-1 Lone Qualify"}));
    }
}

void tst_IrTelemetryReaderDrives::everyLapHasItsOwnChannels()
{
    for (const bool compiled : {false, true}) {
        QVector<ZEP::Lap> laps = lapsOf(recordingOf(practice(), "Practice"), compiled);
        for (const QString &name : laps[0].getAvailableChannels()) {
            QVERIFY(laps[0].channel(name) != laps[1].channel(name));
            QVERIFY(laps[1].channel(name) != laps[2].channel(name));
        }
        laps[0].channel("lapdistpct")->setSample(0, 7);
        QCOMPARE(summaries(laps.mid(1)), practiceLaps().mid(1));
    }
}

/// With a running simulator every car records, from its elements of the arrays.
void tst_IrTelemetryReaderDrives::liveCars()
{
    constexpr int other = 5;
    Recording recording;
    recording.variable({"CarIdxLapDistPct", irsdk_float, "%", "", 64})
        .variable({"CarIdxOnPitRoad", irsdk_bool, "", "", 64})
        .variable({"SessionTimeRemain", irsdk_double, "s"})
        .set("IsOnTrack", 1)
        .set("Lap", 2)
        .ticks(6, [](Recording &self, int tick) {
            self.set("LapDistPct", 0.125 * tick)
                .set("LapCurrentLapTime", 10.0 + tick)
                .set("SessionTime", 100.0 + 2 * tick)
                .set("SessionTimeRemain", 200.0 - tick)
                .set("CarIdxLapDistPct", -1.0, 7)
                .set("CarIdxLapDistPct", 0.25 + 0.0625 * tick, other);
        });
    const irsdk_header header = recording.header();
    const QVector<irsdk_varHeader> table = recording.variableTable();
    QByteArray records = recording.bytes().mid(recording.sectionOffset(Recording::Records));

    iRTelemetryReader reader;
    reader.setYaml(Recording::plainSessionInfo().constData());
    reader.setYaml("---\nDriverInfo:\n Drivers:\n - CarIdx: 5\n   UserName: Other Driver\n"
                   " - CarIdx: 7\n   UserName: Driver elsewhere\n");
    QVERIFY(reader.updateCarList());
    for (int i = 0; i < 6; ++i) {
        const QByteArray laps = i < 4 ? "8" : "9";
        const QByteArray results =
            "---\nSessionInfo:\n Sessions:\n - SessionNum: 0\n   ResultsPositions:\n"
            "   - Position: 1\n     CarIdx: 5\n     LapsComplete: "
            + laps + '\n';
        reader.setYaml(results.constData());
        reader.prepareTick();
        reader.getRawData(&header, table.constData(), records.data() + i * header.bufLen);
        if (i == 4)
            QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^lap completed .*Other Driver"));
        reader.processData();
        QCOMPARE(reader.isLapReady(other), i == 4);
        QVERIFY(!reader.isMyLapReady());
        if (i != 4)
            continue;

        ZEP::Lap &lap = reader.lap(other);
        QCOMPARE(lap.getDriverName(), QString("Other Driver"));
        QCOMPARE(lap.getCarId(), QVariant(other));
        QCOMPARE(lap.getLapInSession(), 7);
        QCOMPARE(int(lap.getLapType()), 0);
        QVERIFY(!lap.containsValue("Maximum fuel level"));
        QCOMPARE(lap.getAvailableChannels(),
                 (Names{"dt", "lapdist", "lapdistpct", "onpitroad", "sessiontick", "sessiontime",
                        "sessiontimeremain", "speed"}));
        COMPARE_BITS(lap.channel("lapdistpct")->data,
                     QVector<double>({0.25, 0.3125, 0.375, 0.4375}));
        COMPARE_BITS(lap.channel("sessiontime")->data, QVector<double>({100, 102, 104, 106}));
        COMPARE_BITS(lap.channel("sessiontimeremain")->data, QVector<double>({200, 199, 198, 197}));
        COMPARE_BITS(lap.channel("sessiontick")->data, QVector<double>({0, 1, 2, 3}));
        COMPARE_BITS(lap.channel("dt")->data, QVector<double>({2, 2, 2, 2}));
        COMPARE_BITS(lap.channel("lapdist")->data, QVector<double>({250, 312.5, 375, 437.5}));
        COMPARE_BITS(lap.channel("speed")->data, QVector<double>({31.25, 31.25, 31.25, 31.25}));
        QCOMPARE(lap.channel("speed")->unit(), QString("m/s"));
    }
    COMPARE_BITS(reader.lap(other).channel("lapdistpct")->data, QVector<double>({0.5625}));
    QCOMPARE(reader.myLap()->size(), 6);
    QVERIFY(reader.lap(7).isEmpty());
    QVERIFY(!reader.isCarInWorld(7));
    QVERIFY(reader.isCarInWorld(other));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderDrives)

#include "tst_irtelemetryreader_drives.moc"
