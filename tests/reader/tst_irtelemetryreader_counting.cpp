// Counting the laps of a recording without making them.

#include "reader/irtelemetryreader.h"
#include "tests/support/randomrecording.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

#include <memory>

namespace {

/// A reader at the start of a recording.
class FollowedRecording
{
public:
    explicit FollowedRecording(const RandomRecording &recording) : m_recording(recording)
    {
        reader.setYaml(m_recording.sessionInfo().constData());
    }

    void begin()
    {
        reader.setDiskLoading(true);
        reader.updateCarList();
        reader.compileVariables(&m_recording.header(), m_recording.variables().constData());
    }

    void follow(int number)
    {
        QByteArray record = m_recording.record(number);
        reader.prepareTick();
        reader.getRawData(&m_recording.header(), m_recording.variables().constData(),
                          record.data());
        reader.processData();
    }

    iRTelemetryReader reader;

private:
    const RandomRecording &m_recording;
};

} // namespace

class tst_IrTelemetryReaderCounting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsWhatIsRead();
    void lapsAfterCountingAreComplete();
    void ticksOfDroppedLapsDoNotCount();
    void sessionInfoMayComeInTheMiddleOfATick();
};

/// What is counted at a tick is what another reader has collected, and it closes the same laps.
void tst_IrTelemetryReaderCounting::countsWhatIsRead()
{
    qint64 finished = 0;
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        const RandomRecording recording(seed);
        FollowedRecording counted(recording);
        FollowedRecording read(recording);
        counted.begin();
        counted.reader.startCounting();
        read.begin();

        qint64 laps = 0;
        qint64 ticks = 0;
        for (int i = 0; i < recording.recordCount(); ++i) {
            counted.follow(i);
            read.follow(i);
            QCOMPARE(counted.reader.isMyLapReady(), read.reader.isMyLapReady());
            if (read.reader.isMyLapReady()) {
                ++laps;
                ticks += read.reader.myLap()->size();
            }
            const CollectedLaps count = counted.reader.collectedLaps();
            QVERIFY(count.laps >= laps);
            QCOMPARE(count.laps, read.reader.collectedLaps().laps);
            QCOMPARE(count.ticks, read.reader.collectedLaps().ticks);
            QCOMPARE(count.channels, read.reader.collectedLaps().channels);
            QVERIFY(count.ticks >= ticks);
        }
        finished += laps;
    }
    QVERIFY(finished > 200);
}

void tst_IrTelemetryReaderCounting::lapsAfterCountingAreComplete()
{
    const RandomRecording recording(3);
    FollowedRecording twice(recording);
    twice.begin();
    twice.reader.startCounting();
    for (int i = 0; i < recording.recordCount(); ++i)
        twice.follow(i);
    QVERIFY(twice.reader.collectedLaps().ticks > 0);
    twice.reader.resize(iRTelemetryReader::CarCount);
    QCOMPARE(twice.reader.collectedLaps().ticks, qint64(0));

    FollowedRecording once(recording);
    twice.begin();
    once.begin();
    int laps = 0;
    for (int i = 0; i < recording.recordCount(); ++i) {
        twice.follow(i);
        once.follow(i);
        QCOMPARE(twice.reader.isMyLapReady(), once.reader.isMyLapReady());
        if (!once.reader.isMyLapReady())
            continue;
        ++laps;
        QCOMPARE(twice.reader.myLap()->size(), once.reader.myLap()->size());
        QCOMPARE(twice.reader.myLap()->getLapInSession(), once.reader.myLap()->getLapInSession());
    }
    QVERIFY(laps > 1);
}

/// A lap that a new stint cuts short is gone, and so is what it would have taken.
void tst_IrTelemetryReaderCounting::ticksOfDroppedLapsDoNotCount()
{
    Recording recording;
    recording.sessionInfo(Recording::plainSessionInfo()).set("LapDistPct", 0.5);
    const irsdk_header header = recording.header();
    const QVector<irsdk_varHeader> table = recording.variableTable();

    iRTelemetryReader reader;
    reader.setYaml(Recording::plainSessionInfo().constData());
    reader.setDiskLoading(true);
    reader.updateCarList();
    reader.compileVariables(&header, table.constData());
    reader.startCounting();
    const auto drive = [&](bool onPitRoad, int ticks) {
        recording.set("IsOnTrack", 1).set("OnPitRoad", onPitRoad ? 1 : 0);
        QByteArray file = recording.ticks(1).bytes();
        char *record = file.data() + file.size() - header.bufLen;
        for (int i = 0; i < ticks; ++i) {
            reader.prepareTick();
            reader.getRawData(&header, table.constData(), record);
            reader.processData();
        }
    };
    drive(false, 7);
    QCOMPARE(reader.collectedLaps().ticks, qint64(7));
    drive(true, 2);
    QCOMPARE(reader.collectedLaps().ticks, qint64(9));
    drive(false, 1);
    QCOMPARE(reader.collectedLaps().ticks, qint64(1));
    QCOMPARE(reader.collectedLaps().laps, qint64(1));
}

/// setYaml() is allowed at any time; a tick that is being counted must not become a sample by it.
void tst_IrTelemetryReaderCounting::sessionInfoMayComeInTheMiddleOfATick()
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
    reader.startCounting();
    for (int i = 0; i < 5; ++i) {
        reader.prepareTick();
        reader.getRawData(&header, table.constData(), record);
        reader.setYaml(Recording::plainSessionInfo().constData());
        reader.processData();
    }
    QCOMPARE(reader.collectedLaps().ticks, qint64(5));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderCounting)
#include "tst_irtelemetryreader_counting.moc"
