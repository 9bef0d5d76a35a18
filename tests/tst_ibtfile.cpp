#include "ibt/ibtfile.h"
#include "tools/recording.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>
#include <limits>

#include <sys/stat.h>

namespace {

constexpr int HeadersSize = Recording::HeaderSize + Recording::SubHeaderSize;
constexpr int MinInt = std::numeric_limits<int>::min();
constexpr int MaxInt = std::numeric_limits<int>::max();

/// As many bytes as one read of records asks for; what lies on either side of it is worth a look.
constexpr int BlockSize = 256 * 1024;

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

class tst_IbtFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void whatCannotBeOpened_data();
    void whatCannotBeOpened();
    void folderHoldsNoHeader();
    void fileIsNotChanged();
    void fileIsClosed();

    void headers_data();
    void headers();
    void headersAreReadAsTheyAre();

    void sessionInfo_data();
    void sessionInfo();
    void sessionInfoIsReadToTheByte();
    void sessionInfoOfAnySize_data();
    void sessionInfoOfAnySize();

    void varHeaders_data();
    void varHeaders();
    void varHeadersAreReadAsTheyAre();

    void sectionsInAnyOrder_data();
    void sectionsInAnyOrder();

    void noRecords_data();
    void noRecords();
    void recordsUpToTheEnd_data();
    void recordsUpToTheEnd();
    void recordsBehindTheTableOnly();
    void recordMayBeWrittenTo();
    void fileGrowsBehindItsLastRecord_data();
    void fileGrowsBehindItsLastRecord();
    void everyTruncationIsRead();

private:
    /// Writes \a bytes to a file and opens it.
    IbtFile opened(const QByteArray &bytes) const;
    /// Likewise, and reads its two headers.
    IbtFile readUpToHeaders(const QByteArray &bytes) const;
    QByteArray path() const { return QFile::encodeName(m_folder.filePath("recording.ibt")); }

    QTemporaryDir m_folder;
};

void tst_IbtFile::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

IbtFile tst_IbtFile::opened(const QByteArray &bytes) const
{
    QFile file(m_folder.filePath("recording.ibt"));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", path().constData());
    file.close();
    return IbtFile(path().constData());
}

IbtFile tst_IbtFile::readUpToHeaders(const QByteArray &bytes) const
{
    IbtFile file = opened(bytes);
    if (!file.isOpen() || !file.readHeader() || !file.readDiskSubHeader())
        qFatal("cannot read the headers of %s", path().constData());
    return file;
}

void tst_IbtFile::whatCannotBeOpened_data()
{
    QTest::addColumn<QByteArray>("fileName");

    QTest::newRow("no such file") << QFile::encodeName(m_folder.filePath("none.ibt"));
    QTest::newRow("no such folder") << QFile::encodeName(m_folder.filePath("none/none.ibt"));
    QTest::newRow("no name") << QByteArray("");
    QTest::newRow("name too long") << QByteArray(5000, 'x');
    QTest::newRow("character device") << QByteArray("/dev/zero");

    const QByteArray pipe = QFile::encodeName(m_folder.filePath("pipe.ibt"));
    QVERIFY(mkfifo(pipe.constData(), 0600) == 0 || QFile::exists(m_folder.filePath("pipe.ibt")));
    QTest::newRow("pipe that nobody writes to") << pipe;
}

void tst_IbtFile::whatCannotBeOpened()
{
    QFETCH(QByteArray, fileName);

    const IbtFile file(fileName.constData());
    QVERIFY(!file.isOpen());
}

void tst_IbtFile::folderHoldsNoHeader()
{
    IbtFile file(QFile::encodeName(m_folder.path()).constData());
    QVERIFY(!file.isOpen() || !file.readHeader());
}

void tst_IbtFile::fileIsNotChanged()
{
    const QByteArray bytes = Recording().ticks(10).bytes();
    {
        IbtFile file = readUpToHeaders(bytes);
        QVERIFY(file.readSessionInfo());
        QVERIFY(file.readVarHeaders());
        while (char *record = file.nextRecord())
            *record = 'x';
    }
    QFile file(m_folder.filePath("recording.ibt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == bytes);
}

void tst_IbtFile::fileIsClosed()
{
    const auto openFiles = [] { return QDir("/proc/self/fd").entryList(QDir::Files).size(); };
    const int before = openFiles();
    {
        IbtFile file = opened(Recording().ticks(10).bytes());
        QVERIFY(file.readHeader());
        QCOMPARE(openFiles(), before + 1);
    }
    QCOMPARE(openFiles(), before);
    {
        IbtFile file = opened("short");
        QVERIFY(!file.readHeader());
    }
    QCOMPARE(openFiles(), before);
}

void tst_IbtFile::headers_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("header");
    QTest::addColumn<bool>("diskSubHeader");

    QTest::newRow("empty file") << 0 << false << false;
    QTest::newRow("one byte") << 1 << false << false;
    QTest::newRow("header one byte short") << 111 << false << false;
    QTest::newRow("header only") << 112 << true << false;
    QTest::newRow("sub-header one byte short") << 143 << true << false;
    QTest::newRow("headers only") << 144 << true << true;
    QTest::newRow("more than the headers") << 145 << true << true;
}

void tst_IbtFile::headers()
{
    QFETCH(int, size);
    QFETCH(bool, header);
    QFETCH(bool, diskSubHeader);

    IbtFile file = opened(Recording().bytes().left(size));
    QVERIFY(file.isOpen());
    QCOMPARE(file.readHeader(), header);
    if (header)
        QCOMPARE(file.readDiskSubHeader(), diskSubHeader);
}

void tst_IbtFile::headersAreReadAsTheyAre()
{
    QByteArray bytes;
    for (int i = 0; i < HeadersSize; ++i)
        bytes += char(255 - i);
    const IbtFile file = readUpToHeaders(bytes);
    const auto *header = reinterpret_cast<const char *>(&file.header());
    const auto *subHeader = reinterpret_cast<const char *>(&file.diskSubHeader());
    QCOMPARE(QByteArray(header, Recording::HeaderSize), bytes.left(Recording::HeaderSize));
    QCOMPARE(QByteArray(subHeader, Recording::SubHeaderSize), bytes.mid(Recording::HeaderSize));
}

void tst_IbtFile::sessionInfo_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("read");
    QTest::addColumn<QByteArray>("text"); // as far as its first zero

    const QByteArray text = "---\nA: 1\n";
    const auto length = &irsdk_header::sessionInfoLen;
    const auto offset = &irsdk_header::sessionInfoOffset;
    const Recording good = Recording().ticks(3).sessionInfo(text);
    const Recording unterminated = Recording().ticks(3).sessionInfo(text, Recording::Unterminated);
    // The text comes last and ends the file.
    const Recording last =
        Recording(good).order({Recording::Table, Recording::Records, Recording::Text});
    const int size = text.size() + 1;
    const int lastOffset = last.sectionOffset(Recording::Text);

    QTest::newRow("sound") << good.bytes() << true << text;
    QTest::newRow("not terminated: the last byte is lost")
        << unterminated.bytes() << true << text.chopped(1);
    QTest::newRow("zero within the text")
        << Recording().sessionInfo(QByteArray("A: 1\n\0B: 2\n", 11)).bytes() << true
        << QByteArray("A: 1\n");
    QTest::newRow("length without the zero")
        << good.with(length, size - 1).bytes() << true << text.chopped(1);
    QTest::newRow("length 1") << good.with(length, 1).bytes() << true << QByteArray("");
    QTest::newRow("length 0") << good.with(length, 0).bytes() << true << QByteArray("");
    QTest::newRow("length 0 behind the end")
        << good.with(length, 0).with(offset, MaxInt).bytes() << true << QByteArray("");
    QTest::newRow("length 0 at a negative offset")
        << good.with(length, 0).with(offset, -1).bytes() << false << QByteArray();
    QTest::newRow("negative length") << good.with(length, -1).bytes() << false << QByteArray();
    QTest::newRow("least length") << good.with(length, MinInt).bytes() << false << QByteArray();
    QTest::newRow("greatest length") << good.with(length, MaxInt).bytes() << false << QByteArray();
    QTest::newRow("negative offset") << good.with(offset, -1).bytes() << false << QByteArray();
    QTest::newRow("least offset") << good.with(offset, MinInt).bytes() << false << QByteArray();
    QTest::newRow("offset behind the end")
        << good.with(offset, MaxInt).bytes() << false << QByteArray();
    QTest::newRow("offset of the end")
        << last.with(offset, lastOffset + size).bytes() << false << QByteArray();
    QTest::newRow("last section") << last.bytes() << true << text;
    QTest::newRow("last section, one byte short")
        << last.bytes().chopped(1) << false << QByteArray();
    QTest::newRow("last section, length one too long")
        << last.with(length, size + 1).bytes() << false << QByteArray();
    QTest::newRow("last section, offset one too far")
        << last.with(offset, lastOffset + 1).bytes() << false << QByteArray();
    QTest::newRow("only its last byte is in the file")
        << last.bytes().left(lastOffset + 1) << false << QByteArray();
    QTest::newRow("the header is the text")
        << good.with(&irsdk_header::ver, 0x44434241).with(offset, 0).with(length, 5).bytes() << true
        << QByteArray("ABCD");
}

void tst_IbtFile::sessionInfo()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, read);
    QFETCH(QByteArray, text);

    IbtFile ibt = readUpToHeaders(file);
    QCOMPARE(ibt.readSessionInfo(), read);
    if (read)
        QCOMPARE(QByteArray(ibt.sessionInfo()), text);
}

void tst_IbtFile::sessionInfoIsReadToTheByte()
{
    const QByteArray text("first\0second\xff third", 19);
    IbtFile file = readUpToHeaders(Recording().sessionInfo(text, Recording::Unterminated).bytes());
    QVERIFY(file.readSessionInfo());
    QCOMPARE(QByteArray(file.sessionInfo(), text.size()), text.chopped(1) + '\0');
}

void tst_IbtFile::sessionInfoOfAnySize_data()
{
    QTest::addColumn<int>("size");

    for (const int size : {1, BlockSize - 1, BlockSize, BlockSize + 1, 2 * BlockSize,
                           2 * BlockSize + 1, 4 * BlockSize, 5 * BlockSize + 17})
        QTest::addRow("%d bytes", size) << size;
}

void tst_IbtFile::sessionInfoOfAnySize()
{
    QFETCH(int, size);

    QByteArray text;
    text.reserve(size);
    for (int i = 0; text.size() < size; ++i)
        text.append(QByteArray::number(i) + '\n');
    text.truncate(size);
    const Recording recording = Recording()
                                    .sessionInfo(text, Recording::Unterminated)
                                    .order({Recording::Table, Recording::Records, Recording::Text});
    const QByteArray bytes = recording.bytes();
    IbtFile whole = readUpToHeaders(bytes);
    QVERIFY(whole.readSessionInfo());
    QVERIFY(QByteArray(whole.sessionInfo(), size) == text.chopped(1) + '\0');

    IbtFile cut = readUpToHeaders(bytes.chopped(1));
    QVERIFY(!cut.readSessionInfo());
}

void tst_IbtFile::varHeaders_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("read");

    const auto count = &irsdk_header::numVars;
    const auto offset = &irsdk_header::varHeaderOffset;
    const Recording good = Recording().ticks(3);
    // The table comes last and ends the file.
    const Recording last =
        Recording(good).order({Recording::Text, Recording::Records, Recording::Table});
    const int number = good.header().numVars;
    const int lastOffset = last.sectionOffset(Recording::Table);

    QTest::newRow("sound") << good.bytes() << true;
    QTest::newRow("no variables") << good.with(count, 0).bytes() << true;
    QTest::newRow("no variables behind the end")
        << good.with(count, 0).with(offset, MaxInt).bytes() << true;
    QTest::newRow("no variables at a negative offset")
        << good.with(count, 0).with(offset, -1).bytes() << false;
    QTest::newRow("negative count") << good.with(count, -1).bytes() << false;
    QTest::newRow("least count") << good.with(count, MinInt).bytes() << false;
    QTest::newRow("greatest count") << good.with(count, MaxInt).bytes() << false;
    QTest::newRow("count whose bytes are 4 GB and 144")
        << good.with(count, 29826163).bytes() << false;
    QTest::newRow("negative offset") << good.with(offset, -1).bytes() << false;
    QTest::newRow("least offset") << good.with(offset, MinInt).bytes() << false;
    QTest::newRow("offset behind the end") << good.with(offset, MaxInt).bytes() << false;
    QTest::newRow("last section") << last.bytes() << true;
    QTest::newRow("last section, one byte short") << last.bytes().chopped(1) << false;
    QTest::newRow("last section, one variable short")
        << last.bytes().chopped(Recording::VariableSize) << false;
    QTest::newRow("last section, one variable too many")
        << last.with(count, number + 1).bytes() << false;
    QTest::newRow("last section, one variable fewer")
        << last.with(count, number - 1).bytes() << true;
    QTest::newRow("last section, offset one too far")
        << last.with(offset, lastOffset + 1).bytes() << false;
    QTest::newRow("only its last byte is in the file")
        << last.bytes().left(lastOffset + 1) << false;
}

void tst_IbtFile::varHeaders()
{
    QFETCH(QByteArray, file);

    IbtFile ibt = readUpToHeaders(file);
    QVERIFY(ibt.readSessionInfo());
    QTEST(ibt.readVarHeaders(), "read");
}

void tst_IbtFile::varHeadersAreReadAsTheyAre()
{
    // Enough for several reads of the table.
    Recording recording = Recording::empty().sessionInfo("---\n");
    for (int i = 0; i < 4000; ++i) {
        recording.variable({"Variable" + QByteArray::number(i), i, "unit" + QByteArray::number(i),
                            "text", 1000 - i, 7 * i, i % 2 == 0});
    }
    IbtFile file = readUpToHeaders(recording.bytes());
    QVERIFY(file.readSessionInfo());
    QVERIFY(file.readVarHeaders());
    QCOMPARE(file.header().numVars, 4000);
    for (int i = 0; i < 4000; ++i) {
        const irsdk_varHeader &variable = file.varHeaders()[i];
        QCOMPARE(variable.type, i);
        QCOMPARE(variable.offset, 7 * i);
        QCOMPARE(variable.count, 1000 - i);
        QCOMPARE(variable.countAsTime != 0, i % 2 == 0);
        QCOMPARE(QByteArray(variable.name), "Variable" + QByteArray::number(i));
        QCOMPARE(QByteArray(variable.unit), "unit" + QByteArray::number(i));
        QCOMPARE(QByteArray(variable.desc), QByteArray("text"));
    }
}

void tst_IbtFile::sectionsInAnyOrder_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("gap");

    const char *names[] = {"table", "text", "records"};
    for (int first = 0; first < 3; ++first) {
        for (int second = 0; second < 3; ++second) {
            if (first == second)
                continue;
            for (const int gap : {0, 1, BlockSize})
                QTest::addRow("%s, %s, gaps of %d", names[first], names[second], gap)
                    << first << second << gap;
        }
    }
}

void tst_IbtFile::sectionsInAnyOrder()
{
    QFETCH(int, first);
    QFETCH(int, second);
    QFETCH(int, gap);

    const auto section = [](int number) { return static_cast<Recording::Section>(number); };
    const QByteArray text = "---\nA: 1\n";
    const Recording recording =
        Recording()
            .sessionInfo(text)
            .ticks(3, [](Recording &self, int tick) { self.set("Lap", 100 + tick); })
            .order({section(first), section(second), section(3 - first - second)})
            .gap(Recording::Table, gap, 't')
            .gap(Recording::Text, gap, 'i')
            .gap(Recording::Records, gap, 'r');

    IbtFile file = readUpToHeaders(recording.bytes());
    QVERIFY(file.readSessionInfo());
    QCOMPARE(QByteArray(file.sessionInfo()), text);
    QVERIFY(file.readVarHeaders());
    QCOMPARE(QByteArray(file.varHeaders()[0].name), QByteArray("SessionTime"));
    for (int tick = 0; tick < 3; ++tick) {
        const char *record = file.nextRecord();
        QVERIFY(record);
        qint32 lap = 0;
        std::memcpy(&lap, record + recording.offsetOf("Lap"), sizeof lap);
        QCOMPARE(lap, 100 + tick);
    }
}

void tst_IbtFile::noRecords_data()
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

void tst_IbtFile::noRecords()
{
    QFETCH(QByteArray, file);

    IbtFile ibt = readUpToHeaders(file);
    QVERIFY(ibt.readSessionInfo());
    QVERIFY(ibt.readVarHeaders());
    QVERIFY(!ibt.nextRecord());
    QVERIFY(!ibt.nextRecord());
}

void tst_IbtFile::recordsUpToTheEnd_data()
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

void tst_IbtFile::recordsUpToTheEnd()
{
    QFETCH(int, size);
    QFETCH(int, count);
    QFETCH(int, rest);

    const QVector<QByteArray> expected = records(count, size);
    Recording recording = recordingOf(expected, size);
    if (rest > 0)
        recording.record(QByteArray(rest, 'z'));
    IbtFile file = readUpToHeaders(recording.bytes());
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
void tst_IbtFile::recordsBehindTheTableOnly()
{
    const QVector<QByteArray> expected = records(3, 10);
    IbtFile file = readUpToHeaders(recordingOf(expected, 10).bytes());
    for (const QByteArray &one : expected) {
        const char *record = file.nextRecord();
        QVERIFY(record);
        QCOMPARE(QByteArray(record, 10), one);
    }
    QVERIFY(!file.nextRecord());
}

void tst_IbtFile::recordMayBeWrittenTo()
{
    const QVector<QByteArray> expected = records(3, 10);
    IbtFile file = readUpToHeaders(recordingOf(expected, 10).bytes());
    for (const QByteArray &one : expected) {
        char *record = file.nextRecord();
        QVERIFY(record);
        QCOMPARE(QByteArray(record, 10), one);
        std::memset(record, 'x', 10);
    }
}

void tst_IbtFile::fileGrowsBehindItsLastRecord_data()
{
    QTest::addColumn<int>("rest"); // bytes of a record that is still being written

    QTest::newRow("complete") << 0;
    QTest::newRow("half written") << 5;
    QTest::newRow("all but a byte written") << 9;
}

/// The end was reached; what is written afterwards belongs to nobody, not even the other half of
/// the last record.
void tst_IbtFile::fileGrowsBehindItsLastRecord()
{
    QFETCH(int, rest);

    const QVector<QByteArray> expected = records(3, 10);
    Recording recording = recordingOf(expected, 10);
    recording.record(QByteArray(rest, 'z'));
    IbtFile file = readUpToHeaders(recording.bytes());
    for (int i = 0; i < 3; ++i)
        QVERIFY(file.nextRecord());
    QVERIFY(!file.nextRecord());

    QFile growing(m_folder.filePath("recording.ibt"));
    QVERIFY(growing.open(QIODevice::Append));
    QCOMPARE(growing.write(QByteArray(100, 'z')), 100);
    growing.close();
    QVERIFY(!file.nextRecord());
}

void tst_IbtFile::everyTruncationIsRead()
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
        IbtFile file = opened(bytes.left(size));
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

QTEST_APPLESS_MAIN(tst_IbtFile)

#include "tst_ibtfile.moc"
