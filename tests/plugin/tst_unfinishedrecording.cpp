// Recordings that nobody closed: the simulator fills in its counts last, so a crash leaves them
// zero, and the last record cut off. All complete records are imported.

#include "fuzz/promises.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

#include <limits>

namespace {

constexpr int Ticks = 20;

/// One lap on which every record becomes a sample.
Recording onTrack(int ticks = Ticks)
{
    Recording recording;
    recording.set("IsOnTrack", 1).set("Lap", 1).set("LapDistPct", 0.5);
    return recording.ticks(ticks,
                           [](Recording &r, int tick) { r.set("LapCurrentLapTime", 10.0 + tick); });
}

} // namespace

class tst_UnfinishedRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void completeRecordsAreImported_data();
    void completeRecordsAreImported();
    void everyCut();

private:
    QVector<double> ticksOf(const QByteArray &bytes);

    ImportFixture m_fixture;
};

/// The samples of the only lap: the number of each tick.
QVector<double> tst_UnfinishedRecording::ticksOf(const QByteArray &bytes)
{
    const QString fileName = m_fixture.write(bytes);
    const ImportResult result = m_fixture.importFile(fileName);
    if (!brokenPromise(result, fileName).isEmpty() || result.laps.size() != 1)
        return {};
    const auto channel = result.laps.front()->channel(QStringLiteral("sessiontick"));
    return channel ? channel->data : QVector<double>();
}

void tst_UnfinishedRecording::completeRecordsAreImported_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("ticks");
    const Recording whole = onTrack();
    const QByteArray bytes = whole.bytes();
    const int record = whole.recordSize();

    QTest::newRow("finished") << bytes << Ticks;
    for (const int count : {0, 1, Ticks - 1, Ticks + 1, -1, std::numeric_limits<qint32>::max(),
                            std::numeric_limits<qint32>::min()}) {
        QTest::addRow("record count %d", count)
            << whole.with(&irsdk_diskSubHeader::sessionRecordCount, count).bytes() << Ticks;
        QTest::addRow("lap count %d", count)
            << whole.with(&irsdk_diskSubHeader::sessionLapCount, count).bytes() << Ticks;
    }
    for (const double time : {0.0, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
        QTest::addRow("end time %g", time)
            << whole.with(&irsdk_diskSubHeader::sessionEndTime, time).bytes() << Ticks;
    QTest::newRow("counts and end time zero")
        << whole.with(&irsdk_diskSubHeader::sessionRecordCount, 0)
               .with(&irsdk_diskSubHeader::sessionLapCount, 0)
               .with(&irsdk_diskSubHeader::sessionEndTime, 0.0)
               .bytes()
        << Ticks;
    QTest::newRow("status and tick rate zero")
        << whole.with(&irsdk_header::status, 0).with(&irsdk_header::tickRate, 0).bytes() << Ticks;
    QTest::newRow("counts zero and cut in the last record")
        << whole.with(&irsdk_diskSubHeader::sessionRecordCount, 0).bytes().chopped(record / 2)
        << Ticks - 1;
    QTest::newRow("garbage behind the last record")
        << bytes + QByteArray(record - 1, '\xee') << Ticks;
    // Nothing tells a record from garbage of its size; this garbage is a car that is nowhere.
    QTest::newRow("a record of garbage behind the last one")
        << bytes + QByteArray(record, '\xff') << Ticks;
    QTest::newRow("one record") << onTrack(1).bytes() << 1;
    // Blocks of the file are 256 KB; records do not end where they do.
    QTest::newRow("cut beyond the first blocks") << onTrack(20000).bytes().chopped(1) << 20000 - 1;
}

void tst_UnfinishedRecording::completeRecordsAreImported()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, ticks);

    const QVector<double> samples = ticksOf(bytes);
    QCOMPARE(samples.size(), ticks);
    for (int tick = 0; tick < ticks; ++tick)
        QVERIFY(samples.at(tick) == double(tick));
}

void tst_UnfinishedRecording::everyCut()
{
    const Recording whole = onTrack(4);
    const QByteArray bytes = whole.bytes();
    const int records = whole.sectionOffset(Recording::Records);
    for (int size = records; size <= bytes.size(); ++size)
        QCOMPARE(ticksOf(bytes.left(size)).size(), (size - records) / whole.recordSize());
}

NAPAMMUL_TEST(tst_UnfinishedRecording)
#include "tst_unfinishedrecording.moc"
