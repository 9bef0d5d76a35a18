// The records of a file, up to the last one that is complete.

#include "tests/support/extremes.h"
#include "tests/support/ibtfolder.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QFile>
#include <QTest>

#include <cstring>

namespace {

/// \a count records of \a size bytes, all different from each other.
QVector<QByteArray> records(int count, int size)
{
    QVector<QByteArray> all;
    for (int number = 0; number < count; ++number) {
        QByteArray record(size, char('a' + number % 26));
        const QByteArray text = QByteArray::number(number).left(size);
        record.replace(0, text.size(), text);
        record.replace(size - text.size(), text.size(), text);
        all.append(record);
    }
    return all;
}

Recording recordingOf(const QVector<QByteArray> &all, int size)
{
    Recording recording = Recording::empty().sessionInfo("---\n").recordSize(size);
    for (const QByteArray &record : all)
        recording.record(record);
    return recording;
}

} // namespace

class tst_IbtFileRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noRecords_data();
    void noRecords();
    void recordsUpToTheEnd_data();
    void recordsUpToTheEnd();
    void recordsBehindTheTableOnly();
    void recordMayBeWrittenTo();
    void rewoundFileReadsTheSameRecords();
    void fileGrowsBehindItsLastRecord_data();
    void fileGrowsBehindItsLastRecord();
    void everyTruncationIsRead();

private:
    IbtFolder m_folder;
};

void tst_IbtFileRecords::noRecords_data()
{
    QTest::addColumn<QByteArray>("file");

    const auto length = &irsdk_header::bufLen;
    const Recording good = Recording().ticks(3);
    const int size = good.bytes().size();
    QTest::newRow("none in the file") << Recording().bytes();
    QTest::newRow("first one cut") << Recording().ticks(1).bytes().chopped(1);
    QTest::newRow("only its first byte")
        << good.bytes().left(good.sectionOffset(Recording::Records) + 1);
    QTest::newRow("length 0") << good.with(length, 0).bytes();
    QTest::newRow("negative length") << good.with(length, -1).bytes();
    QTest::newRow("least length") << good.with(length, MinInt).bytes();
    QTest::newRow("greatest length") << good.with(length, MaxInt).bytes();
    QTest::newRow("length of one byte more than there is")
        << good.with(length, 3 * good.recordSize() + 1).bytes();
    QTest::newRow("negative offset") << good.withRecordsAt(-1).bytes();
    QTest::newRow("least offset") << good.withRecordsAt(MinInt).bytes();
    QTest::newRow("offset of the end") << good.withRecordsAt(size).bytes();
    QTest::newRow("offset behind the end") << good.withRecordsAt(size + 1).bytes();
    QTest::newRow("greatest offset") << good.withRecordsAt(MaxInt).bytes();
    QTest::newRow("offset one byte too near to the end")
        << good.withRecordsAt(size - good.recordSize() + 1).bytes();
}

void tst_IbtFileRecords::noRecords()
{
    QFETCH(QByteArray, file);

    IbtFile ibt = m_folder.readUpToHeaders(file);
    QVERIFY(ibt.readSessionInfo());
    QVERIFY(ibt.readVarHeaders());
    QVERIFY(!ibt.nextRecord());
    QVERIFY(!ibt.nextRecord());
}

void tst_IbtFileRecords::recordsUpToTheEnd_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("rest"); // bytes of one more record

    const int half = BlockSize / 2;
    const int third = BlockSize / 3; // does not divide the block
    QTest::newRow("one") << 100 << 1 << 0;
    QTest::newRow("one and a byte") << 100 << 1 << 1;
    QTest::newRow("many") << 100 << 1000 << 0;
    QTest::newRow("many and all but a byte") << 100 << 1000 << 99;
    QTest::newRow("records of one byte") << 1 << BlockSize + 3 << 0;
    QTest::newRow("more than one block") << 1000 << 1000 << 0;
    QTest::newRow("a block's worth") << half << 2 << 0;
    QTest::newRow("a block's worth less one") << half << 1 << 0;
    QTest::newRow("a block's worth and one") << half << 3 << 0;
    QTest::newRow("a block's worth and a byte") << half << 2 << 1;
    QTest::newRow("a block's worth less a byte") << half << 1 << half - 1;
    QTest::newRow("two blocks' worth") << half << 4 << 0;
    QTest::newRow("block is no multiple of the record") << third << 3 << 0;
    QTest::newRow("block is no multiple of the record, one more") << third << 4 << 0;
    QTest::newRow("block is no multiple of the record, part of one more")
        << third << 3 << third - 1;
    QTest::newRow("record as large as the block") << BlockSize << 3 << 0;
    QTest::newRow("record as large as the block, cut") << BlockSize << 3 << BlockSize - 1;
    QTest::newRow("record a byte larger than the block") << BlockSize + 1 << 3 << 0;
    QTest::newRow("record a byte larger than the block, cut") << BlockSize + 1 << 3 << BlockSize;
    QTest::newRow("record of many blocks") << 5 * BlockSize + 7 << 3 << 0;
    QTest::newRow("record of many blocks, cut") << 5 * BlockSize + 7 << 2 << 3 * BlockSize;
}

void tst_IbtFileRecords::recordsUpToTheEnd()
{
    QFETCH(int, size);
    QFETCH(int, count);
    QFETCH(int, rest);

    const QVector<QByteArray> expected = records(count, size);
    Recording recording = recordingOf(expected, size);
    if (rest > 0)
        recording.record(QByteArray(rest, 'z'));
    IbtFile file = m_folder.readUpToHeaders(recording.bytes());
    QCOMPARE(file.header().bufLen, size);
    QVERIFY(file.readSessionInfo());
    QVERIFY(file.readVarHeaders());
    for (const QByteArray &one : expected) {
        const char *record = file.nextRecord();
        QVERIFY(record);
        QVERIFY(QByteArray::fromRawData(record, size) == one);
    }
    QVERIFY(!file.nextRecord());
    QVERIFY(!file.nextRecord());
}

/// Every other section may be passed over: each is looked for at its own place.
void tst_IbtFileRecords::recordsBehindTheTableOnly()
{
    const QVector<QByteArray> expected = records(3, 10);
    IbtFile file = m_folder.readUpToHeaders(recordingOf(expected, 10).bytes());
    for (const QByteArray &one : expected) {
        const char *record = file.nextRecord();
        QVERIFY(record);
        QCOMPARE(QByteArray(record, 10), one);
    }
    QVERIFY(!file.nextRecord());
}

void tst_IbtFileRecords::recordMayBeWrittenTo()
{
    const QVector<QByteArray> expected = records(3, 10);
    IbtFile file = m_folder.readUpToHeaders(recordingOf(expected, 10).bytes());
    for (const QByteArray &one : expected) {
        char *record = file.nextRecord();
        QVERIFY(record);
        QCOMPARE(QByteArray(record, 10), one);
        std::memset(record, 'x', 10);
    }
}

/// From the middle of the records as well as from behind the last one.
void tst_IbtFileRecords::rewoundFileReadsTheSameRecords()
{
    const QVector<QByteArray> expected = records(3, 10);
    IbtFile file = m_folder.readUpToHeaders(recordingOf(expected, 10).bytes());
    for (const int count : {0, 2, 3}) {
        for (int i = 0; i < count; ++i)
            QCOMPARE(QByteArray(file.nextRecord(), 10), expected.at(i));
        if (count == 3)
            QVERIFY(!file.nextRecord());
        file.rewindRecords();
    }
    for (const QByteArray &one : expected)
        QCOMPARE(QByteArray(file.nextRecord(), 10), one);
    QVERIFY(!file.nextRecord());
}

void tst_IbtFileRecords::fileGrowsBehindItsLastRecord_data()
{
    QTest::addColumn<int>("rest"); // bytes of a record that is still being written

    QTest::newRow("complete") << 0;
    QTest::newRow("half written") << 5;
    QTest::newRow("all but a byte written") << 9;
}

/// The end was reached; what is written afterwards belongs to nobody, not even the other half of
/// the last record.
void tst_IbtFileRecords::fileGrowsBehindItsLastRecord()
{
    QFETCH(int, rest);

    const QVector<QByteArray> expected = records(3, 10);
    Recording recording = recordingOf(expected, 10);
    recording.record(QByteArray(rest, 'z'));
    IbtFile file = m_folder.readUpToHeaders(recording.bytes());
    for (int i = 0; i < 3; ++i)
        QVERIFY(file.nextRecord());
    QVERIFY(!file.nextRecord());

    QFile growing(m_folder.recordingPath());
    QVERIFY(growing.open(QIODevice::Append));
    QCOMPARE(growing.write(QByteArray(100, 'z')), 100);
    growing.close();
    QVERIFY(!file.nextRecord());
}

void tst_IbtFileRecords::everyTruncationIsRead()
{
    const Recording recording = Recording(Recording::empty())
                                    .variables({{"Lap", irsdk_int}, {"Speed", irsdk_float, "m/s"}})
                                    .sessionInfo("---\nA: 1\n")
                                    .ticks(3);
    const QByteArray bytes = recording.bytes();
    const int textEnd =
        recording.sectionOffset(Recording::Text) + recording.header().sessionInfoLen;
    const int tableEnd = recording.sectionOffset(Recording::Table) + 2 * Recording::VariableSize;
    const int recordsAt = recording.sectionOffset(Recording::Records);
    for (int size = 0; size <= bytes.size(); ++size) {
        IbtFile file = m_folder.opened(bytes.left(size));
        QVERIFY(file.isOpen());
        QCOMPARE(file.readHeader(), size >= Recording::HeaderSize);
        if (size < Recording::HeaderSize)
            continue;
        QCOMPARE(file.readDiskSubHeader(), size >= HeadersSize);
        QCOMPARE(file.readSessionInfo(), size >= textEnd);
        QCOMPARE(file.readVarHeaders(), size >= tableEnd);
        int count = 0;
        while (file.nextRecord())
            ++count;
        QCOMPARE(count, qMax(0, (size - recordsAt) / recording.recordSize()));
    }
}

NAPAMMUL_TEST(tst_IbtFileRecords)

#include "tst_ibtfile_records.moc"
