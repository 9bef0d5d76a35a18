#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

template <typename T>
T read(const QByteArray &bytes, int offset)
{
    T value{};
    if (offset >= 0 && offset <= bytes.size() - int(sizeof value))
        std::memcpy(&value, bytes.constData() + offset, sizeof value);
    return value;
}

irsdk_header headerOf(const QByteArray &file)
{
    return read<irsdk_header>(file, 0);
}

irsdk_diskSubHeader subHeaderOf(const QByteArray &file)
{
    return read<irsdk_diskSubHeader>(file, Recording::HeaderSize);
}

irsdk_varHeader variableOf(const QByteArray &file, int index)
{
    return read<irsdk_varHeader>(file,
                                 headerOf(file).varHeaderOffset + index * Recording::VariableSize);
}

QByteArray recordOf(const QByteArray &file, int index)
{
    const irsdk_header header = headerOf(file);
    return file.mid(header.varBuf[0].bufOffset + index * header.bufLen, header.bufLen);
}

Recording ofOne(qint32 type, qint32 count = 1)
{
    Recording recording = Recording::empty();
    recording.variable({"Value", type, "unit", "description", count});
    return recording;
}

} // namespace

class tst_Recording : public QObject
{
    Q_OBJECT

private slots:
    void default_isWhole();
    void empty_hasNothing();
    void values_data();
    void values();
    void values_persist();
    void values_prepared();
    void setBytes_data();
    void setBytes();
    void offsets();
    void names();
    void text_data();
    void text();
    void layout_data();
    void layout();
    void headerOverride_data();
    void headerOverride();
    void subHeaderOverrides();
    void variableOverride();
    void recordsOverride();
    void overridesLeaveOriginal();
    void rawRecords();
    void write();
};

void tst_Recording::default_isWhole()
{
    Recording recording;
    recording.ticks(3);
    const QByteArray file = recording.bytes();

    const irsdk_header header = headerOf(file);
    QCOMPARE(header.ver, 2);
    QCOMPARE(header.tickRate, 60);
    QCOMPARE(header.numVars, Recording::defaultVariables().size());
    QCOMPARE(header.varHeaderOffset, Recording::HeaderSize + Recording::SubHeaderSize);
    QCOMPARE(header.sessionInfoOffset,
             header.varHeaderOffset + header.numVars * Recording::VariableSize);
    QCOMPARE(header.varBuf[0].bufOffset, header.sessionInfoOffset + header.sessionInfoLen);
    QCOMPARE(header.bufLen, recording.recordSize());
    QCOMPARE(file.size(), header.varBuf[0].bufOffset + 3 * header.bufLen);
    QCOMPARE(file.mid(header.sessionInfoOffset, header.sessionInfoLen),
             Recording::plainSessionInfo() + '\0');

    const irsdk_diskSubHeader sub = subHeaderOf(file);
    QCOMPARE(sub.sessionRecordCount, 3);
    QCOMPARE(sub.sessionStartTime, 0.0);
    QCOMPARE(sub.sessionEndTime, 2 / 60.0);
}

void tst_Recording::empty_hasNothing()
{
    const QByteArray file = Recording::empty().bytes();
    QCOMPARE(file.size(), Recording::HeaderSize + Recording::SubHeaderSize);
    QCOMPARE(headerOf(file).numVars, 0);
    QCOMPARE(headerOf(file).sessionInfoLen, 0);
    QCOMPARE(headerOf(file).bufLen, 0);
}

void tst_Recording::values_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<double>("value");
    QTest::addColumn<QByteArray>("bytes");

    const auto row = [](const char *name, int type, double value, const char *hex) {
        QTest::newRow(name) << type << value << QByteArray::fromHex(hex);
    };
    row("char", irsdk_char, 65, "41");
    row("char, least", irsdk_char, -128, "80");
    row("bool, true", irsdk_bool, 1, "01");
    row("bool, anything", irsdk_bool, -0.5, "01");
    row("bool, false", irsdk_bool, 0, "00");
    row("int", irsdk_int, 258, "02010000");
    row("int, least", irsdk_int, std::numeric_limits<qint32>::min(), "00000080");
    row("int, greatest", irsdk_int, std::numeric_limits<qint32>::max(), "ffffff7f");
    row("int, part dropped", irsdk_int, -1.9, "ffffffff");
    row("bit field", irsdk_bitField, 0x10000000, "00000010");
    row("float", irsdk_float, 0.5, "0000003f");
    row("float, infinite", irsdk_float, std::numeric_limits<double>::infinity(), "0000807f");
    row("float, not a number", irsdk_float, std::numeric_limits<double>::quiet_NaN(), "0000c07f");
    row("double", irsdk_double, 1.5, "000000000000f83f");
}

void tst_Recording::values()
{
    QFETCH(int, type);
    QFETCH(double, value);
    QFETCH(QByteArray, bytes);

    // The last of three elements, so that the first two must stay zero.
    Recording recording = ofOne(type, 3);
    recording.set("Value", value, 2).ticks(1);
    QCOMPARE(recording.recordSize(), 3 * bytes.size());
    QCOMPARE(recordOf(recording.bytes(), 0), QByteArray(2 * bytes.size(), '\0') + bytes);
}

void tst_Recording::values_persist()
{
    Recording recording;
    recording.set("SessionTime", 10).set("SessionTick", 600).set("Lap", 3).ticks(2);
    recording.set("Lap", 4).ticks(1);
    const QByteArray file = recording.bytes();

    const int lap = recording.offsetOf("Lap");
    QCOMPARE(read<qint32>(recordOf(file, 0), lap), 3);
    QCOMPARE(read<qint32>(recordOf(file, 1), lap), 3);
    QCOMPARE(read<qint32>(recordOf(file, 2), lap), 4);
    QCOMPARE(read<qint32>(recordOf(file, 2), recording.offsetOf("SessionTick")), 602);
    QCOMPARE(read<double>(recordOf(file, 2), recording.offsetOf("SessionTime")), 10 + 2 / 60.0);
    QCOMPARE(subHeaderOf(file).sessionStartTime, 10.0);
    QCOMPARE(subHeaderOf(file).sessionEndTime, 10 + 2 / 60.0);
}

void tst_Recording::values_prepared()
{
    Recording recording;
    recording.ticks(4, [](Recording &each, int tick) { each.set("Lap", tick * tick); });
    const QByteArray file = recording.bytes();
    QCOMPARE(recording.recordCount(), 4);
    for (int tick = 0; tick < 4; ++tick)
        QCOMPARE(read<qint32>(recordOf(file, tick), recording.offsetOf("Lap")), tick * tick);
}

void tst_Recording::setBytes_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("record");

    QTest::newRow("inside") << 1 << QByteArray("ab") << QByteArray("\0ab\0", 4);
    QTest::newRow("over the end") << 3 << QByteArray("ab") << QByteArray("\0\0\0a", 4);
    QTest::newRow("over the beginning") << -1 << QByteArray("ab") << QByteArray("b\0\0\0", 4);
    QTest::newRow("far outside") << 400 << QByteArray("ab") << QByteArray(4, '\0');
}

void tst_Recording::setBytes()
{
    QFETCH(int, offset);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, record);
    QCOMPARE(recordOf(ofOne(irsdk_int).setBytes(offset, bytes).ticks(1).bytes(), 0), record);
}

void tst_Recording::offsets()
{
    Recording recording = Recording::empty();
    recording.variables({{"A", irsdk_bool},
                         {"B", irsdk_double},
                         {"Explicit", irsdk_int, "", "", 1, -40},
                         {"Unknown", 17, "", "", 5},
                         {"Negative", irsdk_int, "", "", -2},
                         {"Absurd", irsdk_double, "", "", 1 << 30, 2},
                         {"C", irsdk_int, "", "", 3},
                         {"D", irsdk_char, "", "", 7}});
    const QByteArray file = recording.bytes();
    QCOMPARE(variableOf(file, 0).offset, 0);
    QCOMPARE(variableOf(file, 1).offset, 1);
    QCOMPARE(variableOf(file, 2).offset, -40);
    QCOMPARE(variableOf(file, 3).offset, 9);
    QCOMPARE(variableOf(file, 3).type, 17);
    QCOMPARE(variableOf(file, 4).offset, 9);
    QCOMPARE(variableOf(file, 4).count, -2);
    QCOMPARE(variableOf(file, 5).offset, 2);
    QCOMPARE(variableOf(file, 6).offset, 9);
    QCOMPARE(variableOf(file, 7).offset, 21);
    QCOMPARE(recording.recordSize(), 28);
    QCOMPARE(headerOf(recording.recordSize(5).ticks(1).bytes()).bufLen, 5);
    QCOMPARE(recordOf(recording.bytes(), 0).size(), 5);
}

void tst_Recording::names()
{
    const QByteArray filling(irsdk_varHeader::MaxString, 'n');
    Recording recording = Recording::empty();
    recording.variable({filling, irsdk_int, filling + "cut", QByteArray(80, 'd')});
    recording.variable({"Short", irsdk_int, "m"});
    const irsdk_varHeader full = variableOf(recording.bytes(), 0);
    QCOMPARE(QByteArray(full.name, irsdk_varHeader::MaxString), filling);
    QCOMPARE(QByteArray(full.unit, irsdk_varHeader::MaxString), filling);
    QCOMPARE(QByteArray(full.desc, irsdk_varHeader::MaxDesc), QByteArray(64, 'd'));
    const irsdk_varHeader terminated = variableOf(recording.bytes(), 1);
    QCOMPARE(QByteArray(terminated.name), QByteArray("Short"));
    QCOMPARE(QByteArray(terminated.unit), QByteArray("m"));
}

void tst_Recording::text_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("terminated");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("terminated") << QByteArray("---\n") << true << QByteArray("---\n\0", 5);
    QTest::newRow("unterminated") << QByteArray("---\n") << false << QByteArray("---\n");
    QTest::newRow("empty") << QByteArray() << true << QByteArray("\0", 1);
    QTest::newRow("nothing") << QByteArray() << false << QByteArray();
    QTest::newRow("zero inside") << QByteArray("a\0b", 3) << false << QByteArray("a\0b", 3);
}

void tst_Recording::text()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, terminated);
    QFETCH(QByteArray, bytes);
    const QByteArray file =
        Recording()
            .withSessionInfo(text, terminated ? Recording::Terminated : Recording::Unterminated)
            .bytes();
    QCOMPARE(headerOf(file).sessionInfoLen, bytes.size());
    QCOMPARE(file.mid(headerOf(file).sessionInfoOffset, bytes.size()), bytes);
}

void tst_Recording::layout_data()
{
    QTest::addColumn<QVector<int>>("order");
    QTest::addColumn<QVector<int>>("gaps"); // before table, text, records

    const int table = Recording::Table, text = Recording::Text, records = Recording::Records;
    QTest::newRow("usual") << QVector<int>{table, text, records} << QVector<int>{0, 0, 0};
    QTest::newRow("gaps") << QVector<int>{table, text, records} << QVector<int>{3, 17, 1};
    QTest::newRow("text first") << QVector<int>{text, table, records} << QVector<int>{0, 0, 5};
    QTest::newRow("records first") << QVector<int>{records, table, text} << QVector<int>{2, 0, 9};
}

void tst_Recording::layout()
{
    QFETCH(QVector<int>, order);
    QFETCH(QVector<int>, gaps);

    Recording recording;
    recording.set("Lap", 7).ticks(2);
    recording.order(
        {Recording::Section(order[0]), Recording::Section(order[1]), Recording::Section(order[2])});
    for (const Recording::Section each : {Recording::Table, Recording::Text, Recording::Records})
        recording.gap(each, gaps[each], '#');
    const QByteArray file = recording.bytes();
    const irsdk_header header = headerOf(file);

    QCOMPARE(header.varHeaderOffset, recording.sectionOffset(Recording::Table));
    QCOMPARE(header.sessionInfoOffset, recording.sectionOffset(Recording::Text));
    QCOMPARE(header.varBuf[0].bufOffset, recording.sectionOffset(Recording::Records));
    for (const Recording::Section each : {Recording::Table, Recording::Text, Recording::Records})
        QCOMPARE(file.mid(recording.sectionOffset(each) - gaps[each], gaps[each]),
                 QByteArray(gaps[each], '#'));
    QCOMPARE(QByteArray(variableOf(file, 0).name), QByteArray("SessionTime"));
    QVERIFY(file.mid(header.sessionInfoOffset, header.sessionInfoLen).startsWith("---\n"));
    QCOMPARE(read<qint32>(recordOf(file, 1), recording.offsetOf("Lap")), 7);
}

using HeaderField = std::int32_t irsdk_header::*;
Q_DECLARE_METATYPE(HeaderField)

void tst_Recording::headerOverride_data()
{
    QTest::addColumn<HeaderField>("field");
    QTest::addColumn<int>("offset");

    QTest::newRow("ver") << &irsdk_header::ver << 0;
    QTest::newRow("status") << &irsdk_header::status << 4;
    QTest::newRow("tickRate") << &irsdk_header::tickRate << 8;
    QTest::newRow("sessionInfoUpdate") << &irsdk_header::sessionInfoUpdate << 12;
    QTest::newRow("sessionInfoLen") << &irsdk_header::sessionInfoLen << 16;
    QTest::newRow("sessionInfoOffset") << &irsdk_header::sessionInfoOffset << 20;
    QTest::newRow("numVars") << &irsdk_header::numVars << 24;
    QTest::newRow("varHeaderOffset") << &irsdk_header::varHeaderOffset << 28;
    QTest::newRow("numBuf") << &irsdk_header::numBuf << 32;
    QTest::newRow("bufLen") << &irsdk_header::bufLen << 36;
}

// Four bytes change, and all others stay.
void tst_Recording::headerOverride()
{
    QFETCH(HeaderField, field);
    QFETCH(int, offset);
    Recording good;
    good.ticks(2);
    QByteArray expected = good.bytes();
    expected.replace(offset, 4, QByteArray::fromHex("feffffff"));
    QCOMPARE(good.with(field, -2).bytes(), expected);
}

void tst_Recording::subHeaderOverrides()
{
    const QByteArray file = Recording()
                                .with(&irsdk_diskSubHeader::sessionStartDate, std::int64_t(-5))
                                .with(&irsdk_diskSubHeader::sessionEndTime, 2.5)
                                .with(&irsdk_diskSubHeader::sessionLapCount, std::int32_t(9))
                                .bytes();
    QCOMPARE(subHeaderOf(file).sessionStartDate, std::int64_t(-5));
    QCOMPARE(subHeaderOf(file).sessionEndTime, 2.5);
    QCOMPARE(subHeaderOf(file).sessionLapCount, 9);
}

void tst_Recording::variableOverride()
{
    const Recording good;
    const QByteArray file =
        good.withVariable("SessionTick", &irsdk_varHeader::count, 1 << 30).bytes();
    QCOMPARE(variableOf(file, 1).count, 1 << 30);
    QCOMPARE(variableOf(file, 0).count, 1);
    QCOMPARE(headerOf(file).bufLen, good.recordSize());
}

void tst_Recording::recordsOverride()
{
    const QByteArray file = Recording().withRecordsAt(-7).bytes();
    QCOMPARE(headerOf(file).varBuf[0].bufOffset, -7);
}

void tst_Recording::overridesLeaveOriginal()
{
    Recording good;
    good.ticks(1);
    const QByteArray before = good.bytes();
    (void)good.with(&irsdk_header::numVars, 0);
    (void)good.withSessionInfo("other");
    Recording copy = good;
    copy.set("Lap", 1).ticks(5);
    QCOMPARE(good.bytes(), before);
}

void tst_Recording::rawRecords()
{
    Recording recording = ofOne(irsdk_int);
    recording.record("abcd").record("ef");
    QCOMPARE(recording.recordCount(), 2);
    QVERIFY(recording.bytes().endsWith("abcdef"));
    QCOMPARE(subHeaderOf(recording.bytes()).sessionRecordCount, 2);
}

void tst_Recording::write()
{
    Recording recording;
    recording.ticks(10);

    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(recording.write(&buffer));
    QCOMPARE(buffer.data(), recording.bytes());

    QTemporaryDir folder;
    const QString fileName = folder.filePath(QStringLiteral("recording.ibt"));
    QVERIFY(recording.write(fileName));
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), recording.bytes());

    QVERIFY(!recording.write(folder.filePath(QStringLiteral("missing/recording.ibt"))));
}

NAPAMMUL_TEST(tst_Recording)
#include "tst_recording.moc"
