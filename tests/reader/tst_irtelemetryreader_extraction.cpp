// From the bytes of a record to the values of the player's car.

#include "tests/support/extremes.h"
#include "tests/support/recordfeed.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <limits>

namespace {

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
        RecordFeed source(recording);
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
    RecordFeed source(Recording()
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

    RecordFeed source(Recording().variable({"CarIdxLap", irsdk_int, "", "", 64}).ticks(1));
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
    RecordFeed source(Recording::empty().variables(table).recordSize(64).ticks(1));
    iRTelemetryReader reader;
    prepare(&reader, true);
    for (int i = 0; i < 100; ++i) {
        reader.prepareTick();
        source.read(&reader);
        QCOMPARE(reader.sample(Player).valueNameList().size(), 100);
    }
}

NAPAMMUL_TEST(tst_IrTelemetryReaderExtraction)

#include "tst_irtelemetryreader_extraction.moc"
