// From the bytes of a record to the values of all cars, while a simulator runs.

#include "tests/support/extremes.h"
#include "tests/support/recordfeed.h"
#include "tests/support/roomtests.h"

#include <QTest>

using Names = QList<QString>;

namespace {

} // namespace

class tst_IrTelemetryReaderLiveExtraction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

void tst_IrTelemetryReaderLiveExtraction::liveElementsGoToTheirCars()
{
    Recording recording =
        Recording::empty().variables({{"CarIdxOnPitRoad", irsdk_bool, "", "", 64},
                                      {"CarIdxLapDistPct", irsdk_float, "%", "", 64},
                                      {"OnPitRoad", irsdk_bool, "own"}});
    for (int car = 0; car < 64; ++car) {
        recording.set("CarIdxOnPitRoad", car % 2, car);
        recording.set("CarIdxLapDistPct", car / 64.0, car);
    }
    RecordFeed source(recording.ticks(1));
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

void tst_IrTelemetryReaderLiveExtraction::livePlainVariablesGoToThePlayer()
{
    RecordFeed source(oneRecord({{"Speed", irsdk_float, "m/s", "", 2},
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

void tst_IrTelemetryReaderLiveExtraction::liveNames_data()
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

void tst_IrTelemetryReaderLiveExtraction::liveNames()
{
    QFETCH(QByteArray, variable);
    QFETCH(QString, others);
    QFETCH(QString, player);

    QByteArray record;
    for (qint32 car = 0; car < 64; ++car)
        record += bytesOf(qint32(100 + car));
    RecordFeed source(oneRecord({{variable, irsdk_int, "u", "", 64}}, record));
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

void tst_IrTelemetryReaderLiveExtraction::liveArraysShorterAndLongerThanTheCars_data()
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

void tst_IrTelemetryReaderLiveExtraction::liveArraysShorterAndLongerThanTheCars()
{
    QFETCH(int, type);
    QFETCH(int, count);
    QFETCH(int, recordSize);
    QFETCH(int, cars);

    RecordFeed source(Recording::empty()
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

void tst_IrTelemetryReaderLiveExtraction::liveUnknownTypeIsCarriedToEveryCar()
{
    RecordFeed source(
        oneRecord({{"V", irsdk_float, "m"}, {"CarIdxX", 6, "u", "", 5}}, bytesOf(1.5f)));
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

void tst_IrTelemetryReaderLiveExtraction::liveSessionClock_data()
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

void tst_IrTelemetryReaderLiveExtraction::liveSessionClock()
{
    QFETCH(Recording, recording);
    QFETCH(ValueMap, values);

    RecordFeed source(recording);
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
void tst_IrTelemetryReaderLiveExtraction::liveSessionClockReplacesWhatIsThere()
{
    RecordFeed source(oneRecord(
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

void tst_IrTelemetryReaderLiveExtraction::liveWithoutAPlayersCar_data()
{
    QTest::addColumn<int>("player");

    QTest::newRow("minus one") << -1;
    QTest::newRow("below minus one") << -2;
    QTest::newRow("just beyond the cars") << 64;
    QTest::newRow("far beyond the cars") << MaxInt;
}

/// Elements still go to their cars; what belongs to the player is dropped, and there is no clock.
void tst_IrTelemetryReaderLiveExtraction::liveWithoutAPlayersCar()
{
    QFETCH(int, player);

    RecordFeed source(Recording::empty()
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

NAPAMMUL_TEST(tst_IrTelemetryReaderLiveExtraction)

#include "tst_irtelemetryreader_liveextraction.moc"
