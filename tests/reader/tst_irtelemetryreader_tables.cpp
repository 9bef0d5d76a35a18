// Records of more than one table, and values that are there before.

#include "tests/support/recordfeed.h"
#include "tests/support/roomtests.h"

#include <QTest>

using Names = QList<QString>;

class tst_IrTelemetryReaderTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesAndUnitsAreThoseOfTheFirstTable();
    void laterTableMayBeLonger();
    void laterTableMayBeShorter();
    void emptyTableIsNotTheFirst();
    void carriedValueEndsWithTheRecord();
    void valuesAreAddedToWhatIsThere();
    void stateOfTheCarsStays();
    void tableMayChangeAfterItWasCompiled();
};

void tst_IrTelemetryReaderTables::namesAndUnitsAreThoseOfTheFirstTable()
{
    RecordFeed first(oneRecord({{"Alpha", irsdk_int, "m"}, {"Beta", irsdk_float, "s"}},
                               bytesOf(qint32(1), 2.5f)));
    // Other names and units, and the same number of variables of other types at other places.
    RecordFeed second(
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

void tst_IrTelemetryReaderTables::laterTableMayBeLonger()
{
    RecordFeed first(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
    RecordFeed second(
        oneRecord({{"Alpha", irsdk_int}, {"Beta", irsdk_int}}, bytesOf(qint32(2), qint32(3))));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    first.read(&reader);
    reader.prepareTick();
    second.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(2, "m")}}));
}

void tst_IrTelemetryReaderTables::laterTableMayBeShorter()
{
    RecordFeed first(oneRecord({{"Alpha", irsdk_int, "m"}, {"Beta", irsdk_int, "s"}},
                               bytesOf(qint32(1), qint32(2))));
    RecordFeed second(oneRecord({{"Beta", irsdk_int}}, bytesOf(qint32(3))));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    first.read(&reader);
    reader.prepareTick();
    second.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(3, "m")}}));
}

/// Names are taken from the first table that has any.
void tst_IrTelemetryReaderTables::emptyTableIsNotTheFirst()
{
    RecordFeed none(oneRecord({}, {}));
    RecordFeed first(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
    iRTelemetryReader reader;
    prepare(&reader, true);
    reader.prepareTick();
    none.read(&reader);
    first.read(&reader);
    COMPARE_SAMPLE(reader.sample(Player), (ValueMap{{"alpha", value(1, "m")}}));
}

void tst_IrTelemetryReaderTables::carriedValueEndsWithTheRecord()
{
    RecordFeed source(Recording::empty()
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

void tst_IrTelemetryReaderTables::valuesAreAddedToWhatIsThere()
{
    RecordFeed source(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
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

void tst_IrTelemetryReaderTables::stateOfTheCarsStays()
{
    RecordFeed source(
        Recording().set("LapDistPct", 0.5).set("Lap", 3).set("IsOnTrack", 1).ticks(1));
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
void tst_IrTelemetryReaderTables::tableMayChangeAfterItWasCompiled()
{
    RecordFeed compiled(oneRecord({{"Alpha", irsdk_int, "m"}}, bytesOf(qint32(1))));
    RecordFeed other(oneRecord({{"Alpha", irsdk_double, "m"}}, bytesOf(2.5)));
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

NAPAMMUL_TEST(tst_IrTelemetryReaderTables)

#include "tst_irtelemetryreader_tables.moc"
