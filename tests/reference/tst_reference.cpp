// The plain importer judges the fast one. This test judges its laps, tree and extraction against
// results that were worked out by hand.
#include "tests/reference/reader.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <cstring>

using namespace reference;

namespace {

Sample sampleOf(const QMap<QString, double> &values)
{
    Sample sample;
    for (auto it = values.begin(); it != values.end(); ++it)
        sample.values.insert(it.key(), {QVariant(it.value()), QString()});
    return sample;
}

irsdk_varHeader variable(const char *name, std::int32_t type, std::int32_t offset,
                         std::int32_t count = 1, const char *unit = "")
{
    irsdk_varHeader variable = {};
    variable.type = type;
    variable.offset = offset;
    variable.count = count;
    qstrncpy(variable.name, name, irsdk_varHeader::MaxString);
    qstrncpy(variable.unit, unit, irsdk_varHeader::MaxString);
    return variable;
}

/// Stores one record with \a variables in the cars of \a reader.
void extract(Reader *reader, const QVector<irsdk_varHeader> &variables, const QByteArray &record)
{
    irsdk_header header = {};
    header.numVars = variables.size();
    header.bufLen = record.size();
    reader->getRawData(&header, variables.constData(), record.constData());
}

template <typename T>
QByteArray bytesOf(T value)
{
    QByteArray bytes(int(sizeof value), 0);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

} // namespace

class tst_Reference : public QObject
{
    Q_OBJECT

private slots:
    void channel();
    void addSample();
    void addSampleNewFirstNames();
    void lapValues();
    void lapCopiesShareChannels();
    void tree_data();
    void tree();
    void treePaths();
    void deepTree();
    void carList();
    void extraction();
    void liveExtraction();
    void damagedVariables_data();
    void damagedVariables();
    void laterTables();
};

void tst_Reference::channel()
{
    Channel channel = {{1.0, 2.0, 3.0}, QString()};
    QCOMPARE(channel.sample(-1), 9.999999562023526e24);
    QCOMPARE(channel.sample(3), 9.999999562023526e24);
    channel.setSample(5, 4.0);
    QCOMPARE(channel.data, QVector<double>({1.0, 2.0, 3.0}));
}

void tst_Reference::addSample()
{
    Lap lap;
    lap.addSample(Sample());
    QVERIFY(lap.isEmpty());

    Sample first;
    first.values["apple"] = {1, "m"};
    first.values["kiwi"] = {2, "s"};
    lap.addSample(first);
    QCOMPARE(lap.size(), 1);
    QCOMPARE(lap.channel("apple")->unit, QString("m"));
    QCOMPARE(lap.channel("kiwi")->unit, QString("s"));

    lap.addSample(sampleOf({{"apple", 3}}));
    lap.addSample(sampleOf({{"apple", 4}, {"pear", 5}}));
    QCOMPARE(lap.channel("apple")->data, QVector<double>({1, 3, 4}));
    QCOMPARE(lap.channel("kiwi")->data, QVector<double>({2, NoData, NoData}));
    QCOMPARE(lap.channel("pear")->data, QVector<double>({NoData, NoData, 5}));
    QCOMPARE(lap.channel("apple")->unit, QString("m"));

    lap.addSample(sampleOf({{"Zebra", 6}, {"apple", 7}, {"kiwi", 8}, {"pear", 9}}));
    QCOMPARE(lap.channel("Zebra")->data, QVector<double>({NoData, NoData, 6}));
    QCOMPARE(lap.channel("apple")->data, QVector<double>({1, 3, 4, 7}));
    QCOMPARE(lap.channel("pear")->data, QVector<double>({NoData, NoData, 5, 9}));

    Sample text;
    text.values["apple"] = {"no number", QString()};
    lap.addSample(text);
    QCOMPARE(lap.channel("apple")->data, QVector<double>({1, 3, 4, 7, 0}));
    QCOMPARE(lap.channel("Zebra")->data.last(), NoData);
}

void tst_Reference::addSampleNewFirstNames()
{
    Lap lap;
    lap.addSample(sampleOf({{"m", 1}}));
    lap.addSample(sampleOf({{"m", 2}}));
    // The second new name gets the length of the first new one, which is already short.
    lap.addSample(sampleOf({{"a", 3}, {"b", 4}, {"m", 5}, {"z", 6}}));
    QCOMPARE(lap.channel("a")->data, QVector<double>({NoData, 3}));
    QCOMPARE(lap.channel("b")->data, QVector<double>({NoData, 4}));
    QCOMPARE(lap.channel("m")->data, QVector<double>({1, 2, 5}));
    QCOMPARE(lap.channel("z")->data, QVector<double>({NoData, 6}));

    Lap calculated;
    calculated.calculatedChannels.insert("c", QSharedPointer<Channel>::create());
    calculated.addSample(sampleOf({{"a", 1}}));
    QCOMPARE(calculated.channel("a")->data, QVector<double>({1}));
}

void tst_Reference::lapValues()
{
    Lap lap;
    lap.lapTime = QTime(0, 1, 23, 456);
    QCOMPARE(lap.value("Lap time").value, QVariant(QTime(0, 1, 23, 456)));
    QVERIFY(!lap.value("unknown").value.isValid());
    lap.calculatedValues["x"] = {1, "a"};
    QCOMPARE(lap.value("x").value, QVariant(1));
    QVERIFY(lap.isEmpty());
    lap.values["x"] = {2, "b"};
    lap.values["Lap time"] = {3, "c"};
    QCOMPARE(lap.value("x").unit, QString("b"));
    QCOMPARE(lap.value("Lap time").value, QVariant(3));

    lap.driverName = "Ann";
    lap.clear();
    QCOMPARE(lap.driverName, QString("Ann"));
    QVERIFY(lap.values.isEmpty() && lap.calculatedValues.isEmpty());
}

void tst_Reference::lapCopiesShareChannels()
{
    Lap lap;
    lap.addSample(sampleOf({{"a", 1}}));
    const Lap copy = lap;
    lap.channel("a")->setSample(0, 5.0);
    QCOMPARE(copy.channel("a")->sample(0), 5.0);
}

void tst_Reference::tree_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value"); // null: there is none

    const auto row = [](const char *name, const char *text, const char *path, const char *value) {
        QTest::newRow(name) << QByteArray(text) << QString(path) << QString(value);
    };
    row("plain", "---\nA:\n B: spa\n C: 93\n...\n", "A/B", "spa");
    row("first line is never read", "A: 1\nB: 2\n", "A", nullptr);
    row("last line is never read", "---\nA: 1\nB: 2", "B", nullptr);
    row("list", "---\nD:\n L:\n - C: 0\n   U: A B\n - C: 12\n   U: Cy\n", "D/L/0/U", "A B");
    row("first field is the name", "---\nL:\n- C: 0\n  U: x\n", "L/0/C", nullptr);
    row("quotes", "---\nA: \"x y\" \n", "A", "\"x y\" ");
    row("empty value", "---\nA: \n", "A", "");
    row("key without value", "---\nA:\n", "A", nullptr);
    row("blank in a key", "---\nTrack Name: x\n", "TrackName", "x");
    row("three parts open a child", "---\nTeamName: A: B\n C: 1\n", "TeamName:A:/C", "1");
    row("carriage return", "---\nA: v\r\n", "A", "v\r");
    row("carriage return in a key", "---\nA:\r\n B: 1\n", "A:/B", "1");
    row("tab is no blank", "---\nA:\n\tB: 1\n", "A/\tB", "1");
    row("siblings without children", "---\nA:\nB:\n C: 1\n", "B/C", "1");
    row("value beside an empty key", "---\nA:\nB: 1\n", "A/B", "1");
    row("items without fields nest", "---\n- A: 1\n- A: 2\n  B: 3\n", "1/2/B", "3");
    row("item without value", "---\nL:\n - Foo\n    A: 1\n", "L/-Fo/A", "1");
    row("item without value after a dedent", "---\nL:\n   X:\n - Foo\n    A: 1\n", "L/-Foo/A", "1");
    row("blanks only", "---\nA:\n B: 1\n  \n C: 2\n", "/C", "2");
    row("dedent beyond the root", "---\n      A: 1\nB: 2\n", "B", "2");
    row("step of several levels", "---\nA:\n     B: 1\n", "A/B", "1");
    row("Latin-1", "---\nA: \xe9\n", "A", nullptr);
    row("end at the zero", "---\nA: 1\nB: 2\n\0C: 3\n", "C", nullptr);
    row("later wins", "---\nA: 1\nA: 2\n", "A", "2");
}

void tst_Reference::tree()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, path);
    QFETCH(QString, value);

    Tree tree;
    tree.setYaml(text.constData());
    if (QByteArray(QTest::currentDataTag()) == "Latin-1")
        value = QChar(0xe9);
    QCOMPARE(tree.pathValue(path), value);
    QCOMPARE(tree.pathValue(path).isNull(), value.isNull());
}

void tst_Reference::treePaths()
{
    Tree tree;
    tree.setYaml("---\nA:\n B: 1\n");
    tree.setYaml("---\nA:\n C: 2\nX:\n");
    QCOMPARE(tree.pathValue("A/B"), QString("1"));
    QCOMPARE(tree.pathValue("A/C"), QString("2"));
    QVERIFY(tree.pathSub("X"));
    QVERIFY(!tree.pathSub("") && !tree.pathSub("/A") && !tree.pathSub("A/")
            && !tree.pathSub("A/B"));
    QVERIFY(tree.pathValue("No/B").isNull());
    tree.pathSet("x/y/z", "1");
    QCOMPARE(tree.pathValue("x/y/z"), QString("1"));
    QVERIFY(tree.pathSub("x/y") && !tree.pathSub("x/y/z"));
    tree.set("own", "2");
    tree.clear();
    QVERIFY(!tree.pathSub("A"));
    QCOMPARE(tree.pathValue("own"), QString("2"));
    tree.setYaml(nullptr);
}

void tst_Reference::deepTree()
{
    // An item of a single line contains the item after it.
    const QByteArray text = "---\n" + QByteArray("- A: B\n- C: D\n").repeated(100000);
    Tree tree;
    tree.setYaml(text.constData());
    QVERIFY(tree.pathSub("B/D/B/D"));
}

void tst_Reference::carList()
{
    Reader reader;
    QCOMPARE(reader.carCount(), 64);
    QCOMPARE(reader.myCarIdx(), -1);
    QVERIFY(!reader.updateCarList());

    const char text[] =
        "---\nDriverInfo:\n DriverCarIdx: 1\n Drivers:\n - CarIdx: 0\n   UserName: A\n"
        " - CarIdx: 1\n   UserName: B\n   TeamName: T\n - CarIdx: 02\n   UserName: C\n";
    reader.setYaml(text);
    QVERIFY(reader.updateCarList());
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), 1);
    QCOMPARE(reader.driverName(1), QString("B"));
    QCOMPARE(reader.teamName(1), QString("T"));
    QVERIFY(reader.driverName(2).isEmpty());
    QVERIFY(reader.car(1).isPlayerCar && !reader.car(0).isPlayerCar);
    QCOMPARE(reader.sample(63).carId, QVariant(63));

    reader.setYaml("---\nDriverInfo:\n DriverCarIdx: abc\n...\n");
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), -1);

    reader.setCarActive(64, true);
    reader.setCarActive(-1, true);
    reader.setCarActive(5, true);
    QVERIFY(!reader.isCarActive(-1) && !reader.isCarActive(64) && reader.isCarActive(5));
    reader.setDiskLoading(true);
    QVERIFY(reader.car(0).diskLoading);
    reader.resize(10);
    QCOMPARE(reader.carCount(), 10);
    QVERIFY(!reader.car(0).diskLoading && reader.driverName(1).isEmpty());
    reader.resize(0);
    QVERIFY(!reader.isCarActive(0));
}

void tst_Reference::extraction()
{
    Reader reader;
    reader.setYaml("---\nDriverInfo:\n DriverCarIdx: 3\n...\n");
    reader.updateCarList();
    reader.setDiskLoading(true);
    const QByteArray record = QByteArray("\xff") + QByteArray("\x02") + bytesOf(qint32(-7))
        + bytesOf(1.5f) + bytesOf(2.5) + bytesOf(qint32(8)) + bytesOf(qint32(9));
    const QVector<irsdk_varHeader> variables = {
        variable("Early", 6, 99),
        variable("Letters", irsdk_char, 0, 32),
        variable("Flag", irsdk_bool, 1),
        variable("Whole", irsdk_int, 2, 1, "m"),
        variable("Mask", irsdk_bitField, 2),
        variable("Single", irsdk_float, 6),
        variable("Double", irsdk_double, 10, 1, "kg"),
        variable("CarIdxWhole", irsdk_int, 18, 2),
        variable("Carried", -3, -5, 1, "%"),
        variable("None", 99, 0, 0),
    };
    extract(&reader, variables, record);

    const Values values = reader.sample(3).values;
    QCOMPARE(values.size(), 9);
    QVERIFY(values.contains("early") && !values.value("early").value.isValid());
    QCOMPARE(values.value("letters").value, QVariant(-1));
    QCOMPARE(values.value("flag").value, QVariant(true));
    QCOMPARE(values.value("whole").value, QVariant(-7));
    QCOMPARE(values.value("whole").unit, QString("m"));
    QCOMPARE(values.value("mask").value, QVariant(-7));
    QCOMPARE(values.value("single").value, QVariant(1.5f));
    QCOMPARE(values.value("double").value, QVariant(2.5));
    QCOMPARE(values.value("caridxwhole").value, QVariant(9));
    QCOMPARE(values.value("carried").value, QVariant(9));
    QCOMPARE(values.value("carried").unit, QString("%"));
    QVERIFY(reader.sample(0).values.isEmpty());
}

void tst_Reference::liveExtraction()
{
    Reader reader;
    reader.setYaml("---\nDriverInfo:\n DriverCarIdx: 1\n...\n");
    reader.updateCarList();
    const QByteArray record =
        QByteArray("\0\1\1", 3) + bytesOf(12.5) + bytesOf(qint32(77)) + QByteArray("\1", 1);
    const QVector<irsdk_varHeader> variables = {
        variable("CarIdxOnPitRoad", irsdk_bool, 0, 3),
        variable("SessionTime", irsdk_double, 3, 1, "s"),
        variable("SessionTick", irsdk_int, 11),
        variable("OnPitRoad", irsdk_bool, 15),
        variable("CarIdxOdd", 7, 0, 1000000000),
    };
    extract(&reader, variables, record);

    QCOMPARE(reader.sample(0).values.value("onpitroad").value, QVariant(false));
    QCOMPARE(reader.sample(2).values.value("onpitroad").value, QVariant(true));
    QVERIFY(!reader.sample(3).values.contains("onpitroad"));
    QCOMPARE(reader.sample(1).values.value("caridxonpitroad").value, QVariant(true));
    QCOMPARE(reader.sample(1).values.value("onpitroad").value, QVariant(true));
    QCOMPARE(reader.sample(63).values.value("sessiontime").value, QVariant(12.5));
    QCOMPARE(reader.sample(63).values.value("sessiontime").unit, QString("s"));
    QCOMPARE(reader.sample(63).values.value("sessiontick").value, QVariant(qulonglong(77)));
    QCOMPARE(reader.sample(63).values.value("odd").value, QVariant(true));
    QVERIFY(reader.sample(63).values.contains("sessiontimeremain"));
    QCOMPARE(reader.sample(1).values.value("sessiontick").value, QVariant(77));
}

void tst_Reference::damagedVariables_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("count");
    QTest::addColumn<QVariant>("value"); // invalid: not stored

    // The record is 01 00 00 00 02 00 00 00 03 00: two integers and a half.
    QTest::newRow("inside") << 2 << 4 << 1 << QVariant(2);
    QTest::newRow("last one inside") << 2 << 0 << 1000000000 << QVariant(2);
    QTest::newRow("sticks out behind") << 2 << 7 << 1 << QVariant();
    QTest::newRow("sticks out in front") << 2 << -1 << 1 << QVariant();
    QTest::newRow("first one in front") << 2 << -4 << 2 << QVariant(1);
    QTest::newRow("far behind") << 2 << 2147483647 << 2147483647 << QVariant();
    QTest::newRow("none") << 2 << 0 << 0 << QVariant();
    QTest::newRow("fewer than none") << 2 << 0 << -1 << QVariant();
    QTest::newRow("letter without count") << 0 << 8 << 0 << QVariant(3);
    QTest::newRow("letter with negative count") << 0 << 8 << -9 << QVariant(3);
    QTest::newRow("letter behind") << 0 << 10 << 1 << QVariant();
    QTest::newRow("bool beyond one") << 1 << 8 << 1 << QVariant(true);
    QTest::newRow("unknown type needs no bytes") << 6 << 2147483647 << 1 << QVariant(1);
    QTest::newRow("unknown type without count") << 6 << 0 << 0 << QVariant();
}

void tst_Reference::damagedVariables()
{
    QFETCH(int, type);
    QFETCH(int, offset);
    QFETCH(int, count);
    QFETCH(QVariant, value);

    Reader reader;
    reader.setYaml("---\nDriverInfo:\n DriverCarIdx: 3\n...\n");
    reader.updateCarList();
    reader.setDiskLoading(true);
    extract(&reader, {variable("First", irsdk_int, 0), variable("X", type, offset, count)},
            QByteArray("\1\0\0\0\2\0\0\0\3\0", 10));
    QCOMPARE(reader.sample(3).values.value("x").value, value);
    QCOMPARE(reader.sample(3).values.contains("x"), value.isValid());
}

void tst_Reference::laterTables()
{
    Reader reader;
    reader.setYaml("---\nDriverInfo:\n DriverCarIdx: 3\n...\n");
    reader.updateCarList();
    reader.setDiskLoading(true);
    extract(&reader, {variable("A", irsdk_int, 0, 1, "m")}, bytesOf(qint32(1)));
    extract(&reader, {variable("B", irsdk_int, 0, 1, "s"), variable("C", irsdk_int, 0)},
            bytesOf(qint32(2)));
    QCOMPARE(reader.sample(3).values.keys(), QStringList({"a"}));
    QCOMPARE(reader.sample(3).values.value("a").value, QVariant(2));
    QCOMPARE(reader.sample(3).values.value("a").unit, QString("m"));
}

NAPAMMUL_TEST(tst_Reference)
#include "tst_reference.moc"
