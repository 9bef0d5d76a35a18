// From the bytes of a record to the named values of the cars.

#include "tests/readerticks.h"
#include "tests/samebits.h"
#include "tools/recording.h"

#include <QTest>

#include <cstring>
#include <limits>

using Names = QList<QString>;
using ValueMap = QMap<QString, ZEP::Value>;

Q_DECLARE_METATYPE(Recording)
Q_DECLARE_METATYPE(ValueMap)

namespace {

constexpr int Player = 3;
constexpr int MaxInt = std::numeric_limits<int>::max();
constexpr int MinInt = std::numeric_limits<int>::min();

/// The table and the records of a recording, as a driver hands them to the reader.
class Source
{
public:
    explicit Source(const Recording &recording)
        : m_header(recording.header()), m_table(recording.variableTable()),
          m_records(recording.bytes().mid(recording.sectionOffset(Recording::Records)))
    {
    }

    const irsdk_header *header() const { return &m_header; }
    const irsdk_varHeader *table() const { return m_table.constData(); }

    void compile(iRTelemetryReader *reader) const { reader->compileVariables(header(), table()); }

    /// Hands record \a number over, without anything else of a tick.
    void read(iRTelemetryReader *reader, int number = 0)
    {
        reader->getRawData(header(), table(), m_records.data() + number * m_header.bufLen);
    }

private:
    irsdk_header m_header;
    QVector<irsdk_varHeader> m_table;
    QByteArray m_records;
};

/// A reader with a driver in each of cars 0 to 9, the player among them.
void prepare(iRTelemetryReader *reader, bool diskLoading, int player = Player)
{
    reader->setDiskLoading(diskLoading);
    reader->setYaml(sessionInfoOf(player, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}).constData());
    reader->updateCarList();
}

/// What differs between two quantities; types count, and numbers are compared by their bits.
QString quantityDifference(const QVariant &actual, const QVariant &expected)
{
    if (actual.userType() != expected.userType())
        return QStringLiteral("type %1 instead of %2")
            .arg(QString::fromLatin1(actual.typeName()), QString::fromLatin1(expected.typeName()));
    if (actual.userType() == int(QMetaType::Float))
        return bitDifference(actual.value<float>(), expected.value<float>());
    if (actual.userType() == int(QMetaType::Double))
        return bitDifference(actual.toDouble(), expected.toDouble());
    return actual == expected
        ? QString()
        : QStringLiteral("%1 instead of %2").arg(actual.toString(), expected.toString());
}

/// The first thing that differs between the values of a sample and what they should be.
QString sampleDifference(const ZEP::Sample &sample, const ValueMap &expected)
{
    if (sample.valueNameList() != expected.keys())
        return QStringLiteral("values %1 instead of %2")
            .arg(QStringList(sample.valueNameList()).join(QLatin1Char(',')),
                 QStringList(expected.keys()).join(QLatin1Char(',')));
    for (const QString &name : expected.keys()) {
        const ZEP::Value value = sample.value(name);
        const QString difference = quantityDifference(value.value, expected.value(name).value);
        if (!difference.isEmpty())
            return QStringLiteral("%1: %2").arg(name, difference);
        if (value.unit() != expected.value(name).unit())
            return QStringLiteral("%1: unit \"%2\" instead of \"%3\"")
                .arg(name, value.unit(), expected.value(name).unit());
    }
    return QString();
}

#define COMPARE_SAMPLE(sample, expected)                                                           \
    do {                                                                                           \
        const QString sampleDifference_ = sampleDifference((sample), (expected));                  \
        QVERIFY2(sampleDifference_.isEmpty(), qPrintable(sampleDifference_));                      \
    } while (false)

ZEP::Value value(const QVariant &quantity, const QString &unit = QString())
{
    return ZEP::Value(quantity, unit);
}

/// One record of a table, with the bytes \a bytes at its start. Unless \a size is given, the
/// variables fit exactly.
Recording oneRecord(const QVector<RecordingVariable> &table, const QByteArray &bytes, int size = -1)
{
    Recording recording = Recording::empty().variables(table);
    if (size >= 0)
        recording.recordSize(size);
    return recording.setBytes(0, bytes).ticks(1);
}

template <typename... Numbers>
QByteArray bytesOf(Numbers... numbers)
{
    QByteArray bytes;
    (bytes.append(reinterpret_cast<const char *>(&numbers), int(sizeof numbers)), ...);
    return bytes;
}

} // namespace

class tst_IrTelemetryReaderExtraction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordBecomesValues_data();
    void recordBecomesValues();
    void onlyThePlayersCarGetsValues();
    void withoutAPlayersCarValuesAreDropped_data();
    void withoutAPlayersCarValuesAreDropped();
    void manyElementsTakeNoTime();

    void namesAndUnitsAreThoseOfTheFirstTable();
    void laterTableMayBeLonger();
    void laterTableMayBeShorter();
    void emptyTableIsNotTheFirst();
    void carriedValueEndsWithTheRecord();
    void valuesAreAddedToWhatIsThere();
    void stateOfTheCarsStays();
    void tableMayChangeAfterItWasCompiled();

    void liveElementsGoToTheirCars();
    void livePlainVariablesGoToThePlayer();
    void liveNames_data();
    void liveNames();
    void liveArraysShorterAndLongerThanTheCars_data();
    void liveArraysShorterAndLongerThanTheCars();
    void liveUnknownTypeIsCarriedToEveryCar();
    void liveSessionClock_data();
    void liveSessionClock();
    void liveSessionClockReplacesWhatIsThere();
    void liveWithoutAPlayersCar_data();
    void liveWithoutAPlayersCar();
};

void tst_IrTelemetryReaderExtraction::recordBecomesValues_data()
{
    QTest::addColumn<Recording>("recording");
    QTest::addColumn<ValueMap>("values");

    const float nan = std::numeric_limits<float>::quiet_NaN();
    const auto row = [](const char *name, const Recording &recording, const ValueMap &values) {
        QTest::addRow("%s", name) << recording << values;
    };

    row("no variables", oneRecord({}, {}), {});
    row("char", oneRecord({{"V", irsdk_char, "u"}}, "A"), {{"v", value(65, "u")}});
    row("char is signed", oneRecord({{"V", irsdk_char, "u"}}, "\xff"), {{"v", value(-1, "u")}});
    row("char zero", oneRecord({{"V", irsdk_char}}, QByteArray(1, '\0')), {{"v", value(0)}});
    row("char array is its first character",
        oneRecord({{"V", irsdk_char, "", "", 32}}, QByteArray("Text").leftJustified(32, '\0')),
        {{"v", value(int('T'))}});
    row("bool true", oneRecord({{"V", irsdk_bool}}, "\x01"), {{"v", value(true)}});
    row("bool false", oneRecord({{"V", irsdk_bool}}, QByteArray(1, '\0')), {{"v", value(false)}});
    row("bool of another byte", oneRecord({{"V", irsdk_bool}}, "\x80"), {{"v", value(true)}});
    row("int", oneRecord({{"V", irsdk_int, "m"}}, bytesOf(qint32(-7))), {{"v", value(-7, "m")}});
    row("int least", oneRecord({{"V", irsdk_int}}, bytesOf(qint32(MinInt))),
        {{"v", value(MinInt)}});
    row("bit field is a signed int",
        oneRecord({{"V", irsdk_bitField, "bits"}}, bytesOf(quint32(0x80000001u))),
        {{"v", value(MinInt + 1, "bits")}});
    row("float", oneRecord({{"V", irsdk_float, "%"}}, bytesOf(0.1f)), {{"v", value(0.1f, "%")}});
    row("float NaN", oneRecord({{"V", irsdk_float}}, bytesOf(nan)), {{"v", value(nan)}});
    row("float minus zero", oneRecord({{"V", irsdk_float}}, bytesOf(-0.0f)), {{"v", value(-0.0f)}});
    row("double", oneRecord({{"V", irsdk_double, "s"}}, bytesOf(0.1)), {{"v", value(0.1, "s")}});
    row("all types without padding",
        oneRecord({{"C", irsdk_char},
                   {"D", irsdk_double},
                   {"B", irsdk_bool},
                   {"F", irsdk_float},
                   {"I", irsdk_int}},
                  bytesOf('x', 1.5, true, 2.5f, qint32(9))),
        {{"c", value(int('x'))},
         {"d", value(1.5)},
         {"b", value(true)},
         {"f", value(2.5f)},
         {"i", value(9)}});

    row("array is its last element",
        oneRecord({{"V", irsdk_float, "m", "", 3}}, bytesOf(1.0f, 2.0f, 3.0f)),
        {{"v", value(3.0f, "m")}});
    row("bool array", oneRecord({{"V", irsdk_bool, "", "", 3}}, QByteArray("\x01\x01\x00", 3)),
        {{"v", value(false)}});
    row("array of the cars stays whole",
        oneRecord({{"CarIdxLap", irsdk_int, "", "", 64}}, bytesOf(qint32(1))),
        {{"caridxlap", value(0)}});

    row("name in lower case", oneRecord({{"SessionTime", irsdk_double, "S"}}, bytesOf(1.5)),
        {{"sessiontime", value(1.5, "S")}});
    row("name beyond ASCII in lower case",
        oneRecord({{"\xdc"
                    "BER",
                    irsdk_int,
                    "\xb0"
                    "C"}},
                  bytesOf(qint32(1))),
        {{QStringLiteral("\u00fcber"), value(1, QStringLiteral("\u00b0C"))}});
    row("name without end",
        oneRecord({{QByteArray(31, 'N') + 'X', irsdk_int, QByteArray(32, 'U')}},
                  bytesOf(qint32(1))),
        {{QString(31, 'n') + 'x', value(1, QString(32, 'U'))}});
    row("name ends at its first zero",
        oneRecord({{QByteArray("A\0B", 3), irsdk_int, QByteArray("m\0s", 3)}}, bytesOf(qint32(1))),
        {{"a", value(1, "m")}});
    row("empty name", oneRecord({{"", irsdk_int, "m"}}, bytesOf(qint32(1))), {{"", value(1, "m")}});
    row("blanks in the name stay", oneRecord({{" A b ", irsdk_int, " m "}}, bytesOf(qint32(1))),
        {{" a b ", value(1, " m ")}});
    row("equal names: the last one stays, with its unit",
        oneRecord({{"V", irsdk_int, "m"}, {"W", irsdk_int, "s"}, {"V", irsdk_float, "kg"}},
                  bytesOf(qint32(1), qint32(2), 3.5f)),
        {{"v", value(3.5f, "kg")}, {"w", value(2, "s")}});
    row("names that differ in case are equal",
        oneRecord({{"Speed", irsdk_int, "m"}, {"SPEED", irsdk_int, "s"}},
                  bytesOf(qint32(1), qint32(2))),
        {{"speed", value(2, "s")}});

    row("unknown type first: nothing to carry", oneRecord({{"X", 6, "u"}}, {}),
        {{"x", value(QVariant(), "u")}});
    row("unknown type behind a float",
        oneRecord({{"V", irsdk_float, "m"}, {"X", 6, "u"}}, bytesOf(1.5f)),
        {{"v", value(1.5f, "m")}, {"x", value(1.5f, "u")}});
    row("unknown type behind an array",
        oneRecord({{"V", irsdk_int, "", "", 3}, {"X", 6}},
                  bytesOf(qint32(1), qint32(2), qint32(3))),
        {{"v", value(3)}, {"x", value(3)}});
    row("unknown type behind a char array",
        oneRecord({{"V", irsdk_char, "", "", 4}, {"X", 6}}, "ABCD"),
        {{"v", value(int('A'))}, {"x", value(int('A'))}});
    row("unknown types in a row", oneRecord({{"V", irsdk_bool}, {"X", 6}, {"Y", 99}}, "\x01"),
        {{"v", value(true)}, {"x", value(true)}, {"y", value(true)}});
    row("unknown type between two",
        oneRecord({{"V", irsdk_int}, {"X", 6}, {"W", irsdk_int}}, bytesOf(qint32(1), qint32(2))),
        {{"v", value(1)}, {"x", value(1)}, {"w", value(2)}});
    row("negative type",
        oneRecord({{"V", irsdk_int}, {"X", -1}, {"Y", MinInt}}, bytesOf(qint32(1))),
        {{"v", value(1)}, {"x", value(1)}, {"y", value(1)}});
    row("unknown type of many elements",
        oneRecord({{"V", irsdk_int}, {"X", 6, "", "", 5}}, bytesOf(qint32(1))),
        {{"v", value(1)}, {"x", value(1)}});
    row("unknown type without elements",
        oneRecord({{"V", irsdk_int}, {"X", 6, "", "", 0}, {"Y", 6, "", "", -1}},
                  bytesOf(qint32(1))),
        {{"v", value(1)}});
    row("unknown type outside the record",
        oneRecord({{"V", irsdk_int}, {"X", 6, "", "", 1, MaxInt}, {"Y", 6, "", "", 1, -5}},
                  bytesOf(qint32(1))),
        {{"v", value(1)}, {"x", value(1)}, {"y", value(1)}});
    row("unknown type replaces an equal name",
        oneRecord({{"V", irsdk_int, "m"}, {"W", irsdk_float}, {"V", 6, "u"}},
                  bytesOf(qint32(1), 2.5f)),
        {{"v", value(2.5f, "u")}, {"w", value(2.5f)}});

    row("no elements",
        oneRecord({{"V", irsdk_int, "", "", 0}, {"W", irsdk_int}}, bytesOf(qint32(1))),
        {{"w", value(1)}});
    row("negative number of elements",
        oneRecord({{"V", irsdk_int, "", "", -1}, {"W", irsdk_int}}, bytesOf(qint32(1))),
        {{"w", value(1)}});
    row("char without elements is one",
        oneRecord({{"V", irsdk_char, "", "", 0, 0}, {"W", irsdk_char, "", "", -3, 1}}, "AB", 2),
        {{"v", value(int('A'))}, {"w", value(int('B'))}});
    row("no elements carry nothing", oneRecord({{"V", irsdk_int, "", "", 0}, {"X", 6}}, {}),
        {{"x", value(QVariant())}});

    const auto outside = [&row](const char *name, const RecordingVariable &variable) {
        RecordingVariable inside{"W", irsdk_int, "m", "", 1, 0};
        row(name, oneRecord({variable, inside}, bytesOf(qint32(1)), 4), {{"w", value(1, "m")}});
    };
    outside("behind the record", {"V", irsdk_int, "", "", 1, 4});
    outside("one byte outside the record", {"V", irsdk_int, "", "", 1, 1});
    outside("larger than the record", {"V", irsdk_double, "", "", 1, 0});
    outside("char behind the record", {"V", irsdk_char, "", "", 1, 4});
    outside("bool behind the record", {"V", irsdk_bool, "", "", 1, 4});
    outside("in front of the record", {"V", irsdk_int, "", "", 1, -4});
    outside("one byte in front of the record", {"V", irsdk_int, "", "", 1, -1});
    outside("char in front of the record", {"V", irsdk_char, "", "", 5, -1});
    outside("at the greatest offset", {"V", irsdk_double, "", "", 1, MaxInt});
    outside("far in front of the record", {"V", irsdk_double, "", "", 1, MinInt + 8});
    outside("many at the greatest offset", {"V", irsdk_double, "", "", MaxInt, MaxInt});
    outside("many around the record, none inside", {"V", irsdk_int, "", "", 3, -2});

    row("char at the end of the record", oneRecord({{"V", irsdk_char, "", "", 1, 3}}, "ABCD", 4),
        {{"v", value(int('D'))}});
    row("array that ends outside the record: the last one inside",
        oneRecord({{"V", irsdk_int, "", "", 100, 0}}, bytesOf(qint32(1), qint32(2), qint16(3)), 10),
        {{"v", value(2)}});
    row("array that ends one byte outside the record",
        oneRecord({{"V", irsdk_int, "", "", 2, 0}}, bytesOf(qint32(1), qint32(2)), 7),
        {{"v", value(1)}});
    row("array that begins in front of the record",
        oneRecord({{"V", irsdk_int, "", "", 2, -4}}, bytesOf(qint32(7)), 4), {{"v", value(7)}});
    row("array that ends in the record's first byte",
        oneRecord({{"V", irsdk_int, "", "", 2, -7}}, bytesOf(qint32(7)), 4), {});
    row("many from far in front of the record",
        oneRecord({{"V", irsdk_int, "", "", MaxInt, MinInt + 4}}, bytesOf(qint32(7)), 4),
        {{"v", value(7)}});
    row("outside the record carries nothing",
        oneRecord({{"V", irsdk_int, "", "", 1, 0}, {"W", irsdk_float, "", "", 1, 4}, {"X", 6}},
                  bytesOf(qint32(1)), 4),
        {{"v", value(1)}, {"x", value(1)}});
    row("last one inside is carried",
        oneRecord({{"V", irsdk_int, "", "", 3, 0}, {"X", 6}}, bytesOf(qint32(1), qint32(2)), 8),
        {{"v", value(2)}, {"x", value(2)}});
    row("equal name outside the record leaves the first",
        oneRecord({{"V", irsdk_int, "m", "", 1, 0}, {"V", irsdk_int, "s", "", 1, 4}},
                  bytesOf(qint32(1)), 4),
        {{"v", value(1, "m")}});
    row("record without bytes", oneRecord({{"V", irsdk_char, "", "", 1, 0}, {"X", 6, "u"}}, {}, 0),
        {{"x", value(QVariant(), "u")}});
}

void tst_IrTelemetryReaderExtraction::recordBecomesValues()
{
    QFETCH(Recording, recording);
    QFETCH(ValueMap, values);

    for (const bool compiled : {false, true}) {
        iRTelemetryReader reader;
        prepare(&reader, true);
        Source source(recording);
        if (compiled)
            source.compile(&reader);
        reader.prepareTick();
        source.read(&reader);
        COMPARE_SAMPLE(reader.sample(Player), values);
        for (int car = 0; car < 64; ++car) {
            if (car != Player)
                COMPARE_SAMPLE(reader.sample(car), ValueMap());
        }
    }
}

void tst_IrTelemetryReaderExtraction::onlyThePlayersCarGetsValues()
{
    // The session clock, plain variables and arrays of the cars.
    Source source(Recording()
                      .variable({"CarIdxLap", irsdk_int, "", "", 64})
                      .variable({"SessionTimeRemain", irsdk_double, "s"})
                      .ticks(1));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    source.read(&reader);
    for (int car = 0; car < 64; ++car)
        QCOMPARE(reader.sample(car).valueNameList().isEmpty(), car != Player);
    QVERIFY(reader.sample(Player).containsValue("caridxlap"));
    QVERIFY(reader.sample(Player).containsValue("sessiontimeremain"));
}

void tst_IrTelemetryReaderExtraction::withoutAPlayersCarValuesAreDropped_data()
{
    QTest::addColumn<int>("player");

    QTest::newRow("minus one") << -1;
    QTest::newRow("below minus one") << -2;
    QTest::newRow("just beyond the cars") << 64;
    QTest::newRow("far beyond the cars") << MaxInt;
}

void tst_IrTelemetryReaderExtraction::withoutAPlayersCarValuesAreDropped()
{
    QFETCH(int, player);

    Source source(Recording().variable({"CarIdxLap", irsdk_int, "", "", 64}).ticks(1));
    for (const bool compiled : {false, true}) {
        iRTelemetryReader reader;
        prepare(&reader, true, player);
        QCOMPARE(reader.myCarIdx(), player);
        if (compiled)
            source.compile(&reader);
        reader.prepareTick();
        source.read(&reader);
        reader.processData();
        for (int car = 0; car < 64; ++car)
            COMPARE_SAMPLE(reader.sample(car), ValueMap());
    }
}

/// Elements that cannot change the result are not looked at one by one.
void tst_IrTelemetryReaderExtraction::manyElementsTakeNoTime()
{
    QVector<RecordingVariable> table;
    for (int i = 0; i < 100; ++i)
        table.append({"V" + QByteArray::number(i), i % 7, "", "", MaxInt, i % 5});
    Source source(Recording::empty().variables(table).recordSize(64).ticks(1));
    iRTelemetryReader reader;
    prepare(&reader, true);
    for (int i = 0; i < 100; ++i) {
        reader.prepareTick();
        source.read(&reader);
        QCOMPARE(reader.sample(Player).valueNameList().size(), 100);
    }
}

void tst_IrTelemetryReaderExtraction::namesAndUnitsAreThoseOfTheFirstTable()
{
    Source first(oneRecord({{"Alpha", irsdk_int, "m"}, {"Beta", irsdk_float, "s"}},
                           bytesOf(qint32(1), 2.5f)));
    // Other names and units, and the same number of variables of other types at other places.
    Source second(
        oneRecord({{"Gamma", irsdk_double, "kg", "", 1, 4}, {"Delta", irsdk_int, "l", "", 1, 0}},
                  bytesOf(qint32(3), 4.5), 12));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    first.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player),
                   (ValueMap{{"alpha", value(1, "m")}, {"beta", value(2.5f, "s")}}));
    reader.prepareTick();
    second.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player),
                   (ValueMap{{"alpha", value(4.5, "m")}, {"beta", value(3, "s")}}));
}

void tst_IrTelemetryReaderExtraction::laterTableMayBeLonger()
{
    Source first(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
    Source second(
        oneRecord({{"Alpha", irsdk_int}, {"Beta", irsdk_int}}, bytesOf(qint32(2), qint32(3))));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    first.read(&reader);
    reader.prepareTick();
    second.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(2, "m")}}));
}

void tst_IrTelemetryReaderExtraction::laterTableMayBeShorter()
{
    Source first(oneRecord({{"Alpha", irsdk_int, "m"}, {"Beta", irsdk_int, "s"}},
                           bytesOf(qint32(1), qint32(2))));
    Source second(oneRecord({{"Beta", irsdk_int}}, bytesOf(qint32(3))));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    first.read(&reader);
    reader.prepareTick();
    second.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(3, "m")}}));
}

/// Names are taken from the first table that has any.
void tst_IrTelemetryReaderExtraction::emptyTableIsNotTheFirst()
{
    Source none(oneRecord({}, {}));
    Source first(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    none.read(&reader);
    first.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(1, "m")}}));
}

void tst_IrTelemetryReaderExtraction::carriedValueEndsWithTheRecord()
{
    Source source(Recording::empty()
                      .variables({{"X", 6, "u"}, {"V", irsdk_int, "m"}})
                      .set("V", 1)
                      .ticks(1)
                      .set("V", 2)
                      .ticks(1));
    for (const bool compiled : {false, true}) {
        iRTelemetryReader reader;
        prepare(&reader, true);
        if (compiled)
            source.compile(&reader);
        for (int number = 0; number < 2; ++number) {
            reader.prepareTick();
            source.read(&reader, number);
            COMPARE_SAMPLE(
                reader.sample(Player),
                (ValueMap{{"v", value(number + 1, "m")}, {"x", value(QVariant(), "u")}}));
        }
    }
}

void tst_IrTelemetryReaderExtraction::valuesAreAddedToWhatIsThere()
{
    Source source(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
    for (const bool compiled : {false, true}) {
        iRTelemetryReader reader;
        prepare(&reader, true);
        if (compiled)
            source.compile(&reader);
        reader.prepareTick();
        reader.sample(Player).addValue("alpha", 9, "kg");
        reader.sample(Player).addValue("other", 2.5, "s");
        source.read(&reader);
        COMPARE_SAMPLE(reader.sample(Player),
                       (ValueMap{{"alpha", value(1, "m")}, {"other", value(2.5, "s")}}));
    }
}

void tst_IrTelemetryReaderExtraction::stateOfTheCarsStays()
{
    Source source(Recording().set("LapDistPct", 0.5).set("Lap", 3).set("IsOnTrack", 1).ticks(1));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    source.read(&reader);
    for (int car = 0; car < 64; ++car) {
        QVERIFY(reader.car(car).current == CarTrackerSample());
        QVERIFY(reader.lap(car).isEmpty());
    }
}

/// A reader that was prepared for one table reads another all the same.
void tst_IrTelemetryReaderExtraction::tableMayChangeAfterItWasCompiled()
{
    Source compiled(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
    Source other(oneRecord({{"Alpha", irsdk_double, "m"}}, bytesOf(2.5)));
    iRTelemetryReader reader;
    prepare(&reader, true);
    compiled.compile(&reader);
    for (int i = 0; i < 2; ++i) {
        reader.prepareTick();
        compiled.read(&reader);
        COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(1, "m")}}));
        reader.prepareTick();
        other.read(&reader);
        COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(2.5, "m")}}));
        // Both within one tick.
        compiled.read(&reader);
        COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(1, "m")}}));
    }
}

void tst_IrTelemetryReaderExtraction::liveElementsGoToTheirCars()
{
    Recording recording =
        Recording::empty().variables({{"CarIdxOnPitRoad", irsdk_bool, "", "", 64},
                                      {"CarIdxLapDistPct", irsdk_float, "%", "", 64},
                                      {"OnPitRoad", irsdk_bool, "own"}});
    for (int car = 0; car < 64; ++car) {
        recording.set("CarIdxOnPitRoad", car % 2, car);
        recording.set("CarIdxLapDistPct", car / 64.0, car);
    }
    Source source(recording.ticks(1));
    iRTelemetryReader reader;
    prepare(&reader, false);
    reader.prepareTick();
    source.read(&reader);
    for (int car = 0; car < 64; ++car) {
        ZEP::Sample &sample = reader.sample(car);
        for (const char *clock : {"sessiontime", "sessiontimeremain", "sessiontick"}) {
            QCOMPARE(sample.containsValue(clock), car != Player);
            sample.removeValue(clock);
        }
        const float pct = float(car) / 64.0f;
        if (car == Player)
            COMPARE_SAMPLE(sample,
                           (ValueMap{{"caridxonpitroad", value(true)},
                                     {"caridxlapdistpct", value(pct, "%")},
                                     {"onpitroad", value(false, "own")}}));
        else
            COMPARE_SAMPLE(
                sample,
                (ValueMap{{"onpitroad", value(car % 2 == 1)}, {"lapdistpct", value(pct, "%")}}));
    }
}

void tst_IrTelemetryReaderExtraction::livePlainVariablesGoToThePlayer()
{
    Source source(oneRecord({{"Speed", irsdk_float, "m/s", "", 2},
                             {"PlayerCarIdx", irsdk_int},
                             {"Name", irsdk_char, "", "", 8}},
                            bytesOf(1.5f, 2.5f, qint32(7), 'A')));
    iRTelemetryReader reader;
    prepare(&reader, false);
    reader.prepareTick();
    source.read(&reader);
    COMPARE_SAMPLE(
        reader.sample(Player),
        (ValueMap{{"speed", value(2.5f, "m/s")}, {"playercaridx", value(7)}, {"name", value(65)}}));
    QCOMPARE(reader.sample(0).valueNameList(),
             (Names{"sessiontick", "sessiontime", "sessiontimeremain"}));
}

void tst_IrTelemetryReaderExtraction::liveNames_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QString>("others"); // null: nothing
    QTest::addColumn<QString>("player");

    QTest::newRow("as written by the simulator") << QByteArray("CarIdxLap") << "lap"
                                                 << "caridxlap";
    QTest::newRow("in capitals") << QByteArray("CARIDXLAP") << "lap"
                                 << "caridxlap";
    QTest::newRow("nothing behind the prefix") << QByteArray("CarIdx") << ""
                                               << "caridx";
    QTest::newRow("prefix twice") << QByteArray("CarIdxCarIdxLap") << "caridxlap"
                                  << "caridxcaridxlap";
    QTest::newRow("prefix not at the front")
        << QByteArray("PlayerCarIdxLap") << QString() << "playercaridxlap";
    QTest::newRow("part of the prefix") << QByteArray("CarIdLap") << QString() << "caridlap";
    QTest::newRow("blank before the prefix")
        << QByteArray(" CarIdxLap") << QString() << " caridxlap";
}

void tst_IrTelemetryReaderExtraction::liveNames()
{
    QFETCH(QByteArray, variable);
    QFETCH(QString, others);
    QFETCH(QString, player);

    QByteArray record;
    for (qint32 car = 0; car < 64; ++car)
        record += bytesOf(qint32(100 + car));
    Source source(oneRecord({{variable, irsdk_int, "u", "", 64}}, record));
    iRTelemetryReader reader;
    prepare(&reader, false);
    reader.prepareTick();
    source.read(&reader);
    const int own = others.isNull() ? 163 : 100 + Player; // the last element, or the player's
    COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{player, value(own, "u")}}));
    for (const int car : {0, 2, 4, 63}) {
        QCOMPARE(reader.sample(car).containsValue(others), !others.isNull());
        if (!others.isNull())
            QCOMPARE(reader.sample(car).value(others).print(), QString::number(100 + car) + " u");
    }
}

void tst_IrTelemetryReaderExtraction::liveArraysShorterAndLongerThanTheCars_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("recordSize");
    QTest::addColumn<int>("cars"); // 0 to this one, exclusive

    QTest::newRow("one element") << int(irsdk_int) << 1 << 400 << 1;
    QTest::newRow("fewer than the cars") << int(irsdk_int) << 10 << 400 << 10;
    QTest::newRow("as many as the cars") << int(irsdk_int) << 64 << 400 << 64;
    QTest::newRow("more than the cars") << int(irsdk_int) << 100 << 400 << 64;
    QTest::newRow("far more than the cars") << int(irsdk_int) << MaxInt << 400 << 64;
    QTest::newRow("none") << int(irsdk_int) << 0 << 400 << 0;
    QTest::newRow("negative") << int(irsdk_int) << -1 << 400 << 0;
    QTest::newRow("record ends before") << int(irsdk_int) << 64 << 43 << 10;
    QTest::newRow("char is one element") << int(irsdk_char) << 64 << 400 << 1;
}

void tst_IrTelemetryReaderExtraction::liveArraysShorterAndLongerThanTheCars()
{
    QFETCH(int, type);
    QFETCH(int, count);
    QFETCH(int, recordSize);
    QFETCH(int, cars);

    Source source(Recording::empty()
                      .variables({{"CarIdxLap", type, "", "", count, 0}})
                      .recordSize(recordSize)
                      .ticks(1));
    iRTelemetryReader reader;
    prepare(&reader, false);
    reader.prepareTick();
    source.read(&reader);
    for (int car = 0; car < 64; ++car) {
        QCOMPARE(reader.sample(car).containsValue("lap"), car < cars && car != Player);
        QCOMPARE(reader.sample(car).containsValue("caridxlap"), car < cars && car == Player);
    }
}

void tst_IrTelemetryReaderExtraction::liveUnknownTypeIsCarriedToEveryCar()
{
    Source source(oneRecord({{"V", irsdk_float, "m"}, {"CarIdxX", 6, "u", "", 5}}, bytesOf(1.5f)));
    iRTelemetryReader reader;
    prepare(&reader, false);
    reader.prepareTick();
    source.read(&reader);
    for (int car = 0; car < 64; ++car) {
        const QString name = car == Player ? "caridxx" : "x";
        QCOMPARE(reader.sample(car).containsValue(name), car < 5);
        if (car < 5) {
            QCOMPARE(quantityDifference(reader.sample(car).value(name).value, 1.5f), QString());
            QCOMPARE(reader.sample(car).value(name).unit(), QString("u"));
        }
    }
}

void tst_IrTelemetryReaderExtraction::liveSessionClock_data()
{
    QTest::addColumn<Recording>("recording");
    QTest::addColumn<ValueMap>("values");

    const auto row = [](const char *name, const Recording &recording, const ValueMap &values) {
        QTest::addRow("%s", name) << recording << values;
    };
    const QVariant noTick = QVariant(Q_UINT64_C(0));
    row("whole",
        oneRecord({{"SessionTime", irsdk_double, "s"},
                   {"SessionTimeRemain", irsdk_double, "sec"},
                   {"SessionTick", irsdk_int, "ticks"}},
                  bytesOf(100.5, 200.5, qint32(6030))),
        {{"sessiontime", value(100.5, "s")},
         {"sessiontimeremain", value(200.5, "sec")},
         {"sessiontick", value(Q_UINT64_C(6030))}});
    row("other types",
        oneRecord({{"SessionTime", irsdk_float},
                   {"SessionTimeRemain", irsdk_int},
                   {"SessionTick", irsdk_double}},
                  bytesOf(100.5f, qint32(200), 6030.0)),
        {{"sessiontime", value(100.5f)},
         {"sessiontimeremain", value(200)},
         {"sessiontick", value(Q_UINT64_C(6030))}});
    row("negative tick", oneRecord({{"SessionTick", irsdk_int}}, bytesOf(qint32(-1))),
        {{"sessiontime", value(QVariant())},
         {"sessiontimeremain", value(QVariant())},
         {"sessiontick", value(QVariant(-1).toULongLong())}});
    row("missing altogether", oneRecord({{"Speed", irsdk_int}}, bytesOf(qint32(1))),
        {{"sessiontime", value(QVariant())},
         {"sessiontimeremain", value(QVariant())},
         {"sessiontick", value(noTick)}});
    row("only the time", oneRecord({{"SessionTime", irsdk_double, "s"}}, bytesOf(100.5)),
        {{"sessiontime", value(100.5, "s")},
         {"sessiontimeremain", value(QVariant())},
         {"sessiontick", value(noTick)}});
}

void tst_IrTelemetryReaderExtraction::liveSessionClock()
{
    QFETCH(Recording, recording);
    QFETCH(ValueMap, values);

    Source source(recording);
    iRTelemetryReader reader;
    prepare(&reader, false);
    reader.prepareTick();
    source.read(&reader);
    for (int car = 0; car < 64; ++car) {
        if (car != Player)
            COMPARE_SAMPLE(reader.sample(car), values);
    }
    // The player's own values stay as they came.
    iRTelemetryReader disk;
    prepare(&disk, true);
    disk.prepareTick();
    source.read(&disk);
    for (const QString &name : disk.sample(Player).valueNameList()) {
        QCOMPARE(quantityDifference(reader.sample(Player).value(name).value,
                                    disk.sample(Player).value(name).value),
                 QString());
        QCOMPARE(reader.sample(Player).value(name).unit(), disk.sample(Player).value(name).unit());
    }
    QCOMPARE(reader.sample(Player).valueNameList(), disk.sample(Player).valueNameList());
}

/// The clock of the player counts, also where the others have one of their own.
void tst_IrTelemetryReaderExtraction::liveSessionClockReplacesWhatIsThere()
{
    Source source(oneRecord(
        {{"CarIdxSessionTime", irsdk_double, "h", "", 2}, {"SessionTime", irsdk_double, "s"}},
        bytesOf(1.0, 2.0, 100.5)));
    iRTelemetryReader reader;
    prepare(&reader, false);
    reader.prepareTick();
    reader.sample(1).addValue("sessiontick", 9, "ticks");
    source.read(&reader);
    COMPARE_SAMPLE(reader.sample(1),
                   (ValueMap{{"sessiontime", value(100.5, "s")},
                             {"sessiontimeremain", value(QVariant())},
                             {"sessiontick", value(Q_UINT64_C(0))}}));
}

void tst_IrTelemetryReaderExtraction::liveWithoutAPlayersCar_data()
{
    withoutAPlayersCarValuesAreDropped_data();
}

/// Elements still go to their cars; what belongs to the player is dropped, and there is no clock.
void tst_IrTelemetryReaderExtraction::liveWithoutAPlayersCar()
{
    QFETCH(int, player);

    Source source(Recording::empty()
                      .variables({{"CarIdxLap", irsdk_int, "", "", 64},
                                  {"SessionTime", irsdk_double, "s"},
                                  {"Speed", irsdk_float, "m/s"}})
                      .ticks(1));
    iRTelemetryReader reader;
    prepare(&reader, false, player);
    reader.prepareTick();
    source.read(&reader);
    for (int car = 0; car < 64; ++car)
        COMPARE_SAMPLE(reader.sample(car), (ValueMap{{"lap", value(0)}}));
}

QTEST_APPLESS_MAIN(tst_IrTelemetryReaderExtraction)

#include "tst_irtelemetryreader_extraction.moc"
