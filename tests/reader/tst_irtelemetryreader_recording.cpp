// Which ticks are recorded, and in which lap.

#include "tests/support/nextfloat.h"
#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/twocars.h"

#include <QTest>

#include <limits>

namespace {

} // namespace

class tst_IrTelemetryReaderRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdKeepsTheLapFromBeingCompleted();
    void recorded_data();
    void recorded();
    void closingTickIsNotRecorded();
    void slowTicksAreNotRecorded_data();
    void slowTicksAreNotRecorded();
    void crossingTheLine_data();
    void crossingTheLine();
    void nextLapOpensWithWhatLiesBehindTheLine();
    void greatestFractionIsAValueOfTheLap();
};

void tst_IrTelemetryReaderRecording::holdKeepsTheLapFromBeingCompleted()
{
    for (const bool hold : {false, true}) {
        iRTelemetryReader reader;
        addTwoCars(&reader);
        tick(&reader, Player, with(OnTrack, {{"lapcurrentlaptime", 80.0f}}));
        carOf(&reader, Player).current.completionHold = hold;
        tick(&reader, Player, with(OnTrack, {{"lapcurrentlaptime", 0.0f}, {"lap", 3}}));
        QCOMPARE(reader.isMyLapReady(), !hold);
    }
}

void tst_IrTelemetryReaderRecording::recorded_data()
{
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<bool>("lapEmpty");
    QTest::addColumn<TickMap>("values");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("recorded");

    const TickMap garage = with(OnTrack, {{"isontrack", false}});
    const TickMap pitRoad = with(OnTrack, {{"onpitroad", true}});
    const TickMap late = with(OnTrack, {{"lapdistpct", 0.9f}});
    QTest::newRow("on a lap") << 5 << false << OnTrack << 5 << true;
    QTest::newRow("on a lap that is empty") << 5 << true << OnTrack << 5 << true;
    QTest::newRow("later lap") << 6 << false << OnTrack << 6 << true;
    QTest::newRow("later lap that is empty") << 6 << true << OnTrack << 6 << true;
    QTest::newRow("garage, lap is empty") << -1 << true << garage << 3 << false;
    QTest::newRow("garage, lap goes on") << 5 << false << garage << 3 << true;
    QTest::newRow("pit road, lap is empty") << 3 << true << pitRoad << 4 << false;
    QTest::newRow("pit road, lap goes on") << 5 << false << pitRoad << 4 << true;
    QTest::newRow("on track from the garage, lap is empty") << 3 << true << OnTrack << 3 << false;
    QTest::newRow("on track from the garage, lap goes on") << 3 << false << OnTrack << 3 << true;
    QTest::newRow("out of the pits before the line") << 4 << true << late << 2 << false;
    QTest::newRow("out of the pits before the line, lap was recorded")
        << 4 << false << late << 2 << false;
}

void tst_IrTelemetryReaderRecording::recorded()
{
    QFETCH(int, statusBefore);
    QFETCH(bool, lapEmpty);
    QFETCH(TickMap, values);
    QFETCH(int, status);
    QFETCH(bool, recorded);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    carOf(&reader, Player).current.carStatus = statusBefore;
    if (!lapEmpty) {
        ZEP::Sample sample;
        addValues(&sample, with(OnTrack, {{"fulltelemetry", 1}}));
        reader.lap(Player).addSample(sample);
    }
    const int before = reader.lap(Player).size();
    tick(&reader, Player, values);
    QCOMPARE(reader.car(Player).current.carStatus, status);
    QCOMPARE(reader.lap(Player).size(), before + (recorded ? 1 : 0));
    QVERIFY(reader.car(Player).nextLap.isEmpty());
    if (recorded)
        QVERIFY(reader.lap(Player).containsCalculatedValue("maxLapDistPct"));
    else
        QVERIFY(!reader.lap(Player).containsCalculatedValue("maxLapDistPct"));
}

void tst_IrTelemetryReaderRecording::closingTickIsNotRecorded()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    for (const float pct : {0.2f, 0.5f, 0.95f})
        tick(&reader, Player,
             with(OnTrack, {{"lapdistpct", pct}, {"lapcurrentlaptime", pct * 80}}));
    tick(&reader, Player,
         with(OnTrack, {{"lapdistpct", 0.01f}, {"lapcurrentlaptime", 0.0f}, {"lap", 3}}));
    QVERIFY(reader.isMyLapReady());
    QCOMPARE(reader.lap(Player).size(), 3);
    QVERIFY(reader.car(Player).nextLap.isEmpty());

    tick(&reader, Player,
         with(OnTrack, {{"lapdistpct", 0.02f}, {"lapcurrentlaptime", 0.1f}, {"lap", 3}}));
    QVERIFY(!reader.isMyLapReady());
    COMPARE_BITS(reader.lap(Player).channel("lapdistpct")->data, QVector<double>({double(0.02f)}));
}

void tst_IrTelemetryReaderRecording::slowTicksAreNotRecorded_data()
{
    QTest::addColumn<TickMap>("values");
    QTest::addColumn<bool>("recorded");

    QTest::newRow("no speed") << TickMap{} << true;
    QTest::newRow("fast") << TickMap{{"Speed", 50.0f}} << true;
    QTest::newRow("one") << TickMap{{"Speed", 1.0f}} << true;
    QTest::newRow("just below one") << TickMap{{"Speed", below(1.0f)}} << false;
    QTest::newRow("just below one as a double is one") << TickMap{{"Speed", 0.9999999999}} << true;
    QTest::newRow("standing") << TickMap{{"Speed", 0.0f}} << false;
    QTest::newRow("backwards") << TickMap{{"Speed", -50.0f}} << false;
    QTest::newRow("NaN") << TickMap{{"Speed", std::numeric_limits<float>::quiet_NaN()}} << true;
    QTest::newRow("no number") << TickMap{{"Speed", QString("slow")}} << false;
    QTest::newRow("invalid") << TickMap{{"Speed", QVariant()}} << false;
    QTest::newRow("standing, in a recording's letters") << TickMap{{"speed", 0.0f}} << true;
    QTest::newRow("standing, in capitals") << TickMap{{"SPEED", 0.0f}} << true;
}

void tst_IrTelemetryReaderRecording::slowTicksAreNotRecorded()
{
    QFETCH(TickMap, values);
    QFETCH(bool, recorded);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader,
         {{Player, with(OnTrack, values)},
          {Other, with({{"lapdistpct", 0.5f}, {"onpitroad", false}}, values)}});
    for (const int car : {Player, Other}) {
        QCOMPARE(reader.lap(car).size(), recorded ? 1 : 0);
        QCOMPARE(reader.lap(car).containsCalculatedValue("maxLapDistPct"), recorded);
        QCOMPARE(reader.car(car).current.carStatus, 5);
    }
}

void tst_IrTelemetryReaderRecording::crossingTheLine_data()
{
    QTest::addColumn<QVector<float>>("fractions");
    QTest::addColumn<int>("inLap");
    QTest::addColumn<int>("inNextLap");
    QTest::addColumn<float>("greatest");

    using Fractions = QVector<float>;
    QTest::newRow("one tick") << Fractions{0.3f} << 1 << 0 << 0.3f;
    QTest::newRow("one tick behind the line") << Fractions{0.99f} << 1 << 0 << 0.99f;
    QTest::newRow("onwards") << Fractions{0.1f, 0.2f, 0.3f} << 3 << 0 << 0.3f;
    QTest::newRow("standing") << Fractions{0.2f, 0.2f, 0.2f} << 3 << 0 << 0.2f;
    QTest::newRow("backwards") << Fractions{0.3f, 0.2f, 0.1f} << 3 << 0 << 0.3f;
    QTest::newRow("just behind the line") << Fractions{0.995f, 0.01f} << 1 << 1 << 0.995f;
    QTest::newRow("some way behind the line")
        << Fractions{0.5f, 0.995f, 0.01f, 0.02f, 0.03f} << 2 << 3 << 0.995f;
    QTest::newRow("greatest is 0.9 as a float, a little less")
        << Fractions{0.9f, 0.01f} << 2 << 0 << 0.9f;
    QTest::newRow("greatest is just above 0.9")
        << Fractions{above(0.9f), 0.01f} << 1 << 1 << above(0.9f);
    QTest::newRow("back by half a lap") << Fractions{1.0f, 0.5f} << 2 << 0 << 1.0f;
    QTest::newRow("back by just more than half a lap")
        << Fractions{1.0f, below(0.5f)} << 1 << 1 << 1.0f;
    QTest::newRow("beyond the lap") << Fractions{1.2f, 0.6f} << 1 << 1 << 1.2f;
    QTest::newRow("back over the line") << Fractions{0.99f, 0.01f, 0.98f, 0.02f} << 2 << 2 << 0.99f;
    QTest::newRow("back over the line and farther")
        << Fractions{0.95f, 0.01f, 0.99f} << 2 << 1 << 0.99f;
    QTest::newRow("middle of the lap again") << Fractions{0.95f, 0.01f, 0.46f} << 2 << 1 << 0.95f;
    QTest::newRow("before the line at first") << Fractions{-0.1f, -0.2f, 0.1f} << 3 << 0 << 0.1f;
}

void tst_IrTelemetryReaderRecording::crossingTheLine()
{
    QFETCH(QVector<float>, fractions);
    QFETCH(float, greatest);

    iRTelemetryReader reader;
    addTwoCars(&reader);
    for (const float pct : qAsConst(fractions)) {
        tick(&reader,
             {{Player, with(OnTrack, {{"lapdistpct", pct}})},
              {Other, {{"lapdistpct", pct}, {"onpitroad", false}}}});
    }
    for (const int index : {Player, Other}) {
        const CarTracker &car = reader.car(index);
        QTEST(car.lap.size(), "inLap");
        QTEST(car.nextLap.size(), "inNextLap");
        const ZEP::Value value = car.lap.calculatedValue("maxLapDistPct");
        QCOMPARE(value.value.userType(), int(QMetaType::Float));
        COMPARE_BITS(value.value.toFloat(), greatest);
        QVERIFY(value.unit().isEmpty());
        QVERIFY(!car.nextLap.containsCalculatedValue("maxLapDistPct"));
    }
}

void tst_IrTelemetryReaderRecording::nextLapOpensWithWhatLiesBehindTheLine()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    const auto drive = [&reader](float pct, float time, int lap) {
        tick(&reader, Player,
             with(OnTrack, {{"lapdistpct", pct}, {"lapcurrentlaptime", time}, {"lap", lap}}));
    };
    drive(0.5f, 40.0f, 2);
    drive(0.995f, 80.0f, 2);
    drive(0.01f, 80.5f, 2);
    drive(0.02f, 81.0f, 2);
    drive(0.03f, 0.0f, 3); // closes
    QVERIFY(reader.isMyLapReady());
    QCOMPARE(reader.lap(Player).size(), 2);
    drive(0.04f, 0.5f, 3);
    COMPARE_BITS(reader.lap(Player).channel("lapdistpct")->data,
                 QVector<double>({double(0.01f), double(0.02f), double(0.04f)}));
    QVERIFY(reader.car(Player).nextLap.isEmpty());
    COMPARE_BITS(reader.lap(Player).calculatedValue("maxLapDistPct").value.toFloat(), 0.04f);
}

/// Whoever changes it moves the line.
void tst_IrTelemetryReaderRecording::greatestFractionIsAValueOfTheLap()
{
    iRTelemetryReader reader;
    addTwoCars(&reader);
    tick(&reader, Player, with(OnTrack, {{"lapdistpct", 0.3f}}));
    reader.lap(Player).setCalculatedValue("maxLapDistPct", 0.95, "pu");
    tick(&reader, Player, with(OnTrack, {{"lapdistpct", 0.4f}}));
    QCOMPARE(reader.lap(Player).size(), 1);
    QCOMPARE(reader.car(Player).nextLap.size(), 1);
    QCOMPARE(reader.lap(Player).calculatedValue("maxLapDistPct").print(), QString("0.95 pu"));
    reader.lap(Player).removeCalculatedValue("maxLapDistPct");
    tick(&reader, Player, with(OnTrack, {{"lapdistpct", 0.2f}}));
    QCOMPARE(reader.lap(Player).size(), 2);
    COMPARE_BITS(reader.lap(Player).calculatedValue("maxLapDistPct").value.toFloat(), 0.2f);
    QVERIFY(reader.lap(Player).calculatedValue("maxLapDistPct").unit().isEmpty());
}

NAPAMMUL_TEST(tst_IrTelemetryReaderRecording)

#include "tst_irtelemetryreader_recording.moc"
