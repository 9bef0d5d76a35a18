// The parts of a file in front of its records.

#include "tests/support/extremes.h"
#include "tests/support/ibtfolder.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cstring>

#include <sys/stat.h>

namespace {

} // namespace

class tst_IbtFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

private:
    IbtFolder m_folder;
};

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
        IbtFile file = m_folder.readUpToHeaders(bytes);
        QVERIFY(file.readSessionInfo());
        QVERIFY(file.readVarHeaders());
        while (char *record = file.nextRecord())
            *record = 'x';
    }
    QFile file(m_folder.recordingPath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == bytes);
}

void tst_IbtFile::fileIsClosed()
{
    const auto openFiles = [] { return QDir("/proc/self/fd").entryList(QDir::Files).size(); };
    const int before = openFiles();
    {
        IbtFile file = m_folder.opened(Recording().ticks(10).bytes());
        QVERIFY(file.readHeader());
        QCOMPARE(openFiles(), before + 1);
    }
    QCOMPARE(openFiles(), before);
    {
        IbtFile file = m_folder.opened("short");
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

    IbtFile file = m_folder.opened(Recording().bytes().left(size));
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
    const IbtFile file = m_folder.readUpToHeaders(bytes);
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

    IbtFile ibt = m_folder.readUpToHeaders(file);
    QCOMPARE(ibt.holdsSessionInfo(), read);
    QCOMPARE(ibt.readSessionInfo(), read);
    if (read)
        QCOMPARE(QByteArray(ibt.sessionInfo()), text);
}

void tst_IbtFile::sessionInfoIsReadToTheByte()
{
    const QByteArray text("first\0second\xff third", 19);
    IbtFile file =
        m_folder.readUpToHeaders(Recording().sessionInfo(text, Recording::Unterminated).bytes());
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
    IbtFile whole = m_folder.readUpToHeaders(bytes);
    QVERIFY(whole.readSessionInfo());
    QVERIFY(QByteArray(whole.sessionInfo(), size) == text.chopped(1) + '\0');

    IbtFile cut = m_folder.readUpToHeaders(bytes.chopped(1));
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

    IbtFile ibt = m_folder.readUpToHeaders(file);
    QTEST(ibt.holdsVarHeaders(), "read");
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
    IbtFile file = m_folder.readUpToHeaders(recording.bytes());
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

    IbtFile file = m_folder.readUpToHeaders(recording.bytes());
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

NAPAMMUL_TEST(tst_IbtFile)

#include "tst_ibtfile.moc"
