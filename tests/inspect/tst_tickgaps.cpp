#include "inspect/findinglist.h"
#include "inspect/tickgaps.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

#include <cstring>
#include <limits>

Q_DECLARE_METATYPE(QVector<double>)
Q_DECLARE_METATYPE(Recording)

class tst_TickGaps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data();
    void finds();
    void everySessionHasItsClock();
    void recordsThatDoNotBelong_data();
    void recordsThatDoNotBelong();
    void rates_data();
    void rates();
    void endsAtTheTimeOfTheLastRecord();
    void unknownTime_data();
    void unknownTime();
};

namespace {

TickGaps timesOf(
    const Recording &recording, const TickGaps::Unsound &unsound = [](qint64, bool) {})
{
    const irsdk_header header = recording.header();
    const QVector<irsdk_varHeader> table = recording.variableTable();
    TickGaps times(header, table.constData(), unsound);
    const QByteArray bytes = recording.bytes();
    for (int record = 0; record < recording.recordCount(); ++record)
        times.add(bytes.constData() + header.varBuf[0].bufOffset + record * header.bufLen);
    times.end(std::nullopt);
    return times;
}

QVector<Finding> watched(const Recording &recording)
{
    FindingList findings;
    timesOf(recording).report(&findings);
    return findings.findings();
}

} // namespace

void tst_TickGaps::finds_data()
{
    QTest::addColumn<QVector<double>>("times");
    QTest::addColumn<QStringList>("texts");
    const double nan = std::numeric_limits<double>::quiet_NaN();

    QTest::newRow("none") << QVector<double>() << QStringList();
    QTest::newRow("one") << QVector<double>{5} << QStringList();
    QTest::newRow("even") << QVector<double>{5, 5.1, 5.2, 5.3} << QStringList();
    QTest::newRow("a little late") << QVector<double>{5, 5.14, 5.2} << QStringList();
    QTest::newRow("standing still for a while") << QVector<double>{5, 5, 5, 5.1} << QStringList();
    QTest::newRow("standing still")
        << QVector<double>{5, 5, 5}
        << QStringList("the time does not advance between record 1, at 5 s, and the next one, at 5 "
                       "s; there are 2 such places");
    QTest::newRow("gap")
        << QVector<double>{5, 5.1, 9, 9.1}
        << QStringList("38 ticks are missing between record 2, at 5.1 s, and the next one, at 9 s");
    QTest::newRow("one tick")
        << QVector<double>{5, 5.1, 5.3}
        << QStringList("a tick is missing between record 2, at 5.1 s, and the next one, at 5.3 s");
    QTest::newRow("two gaps") << QVector<double>{5, 6, 6.1, 8.1}
                              << QStringList(
                                     "9 ticks are missing between record 1, at 5 s, and the next "
                                     "one, at 6 s; there are 2 such places, 3 s in total");
    QTest::newRow("backwards")
        << QVector<double>{5, 5.1, 4, 4.1}
        << QStringList(
               "the time goes backwards between record 2, at 5.1 s, and the next one, at 4 s");
    QTest::newRow("not a number") << QVector<double>{
        5, nan, 9,
        9.1} << QStringList("1 of 4 records have no usable time; the first of them is record 2");
    QTest::newRow("times of no session")
        << QVector<double>{5, 5.1, 1e300, -1e10, 5.2}
        << QStringList("2 of 5 records have no usable time; the first of them is record 3");
}

void tst_TickGaps::finds()
{
    QFETCH(QVector<double>, times);
    QFETCH(QStringList, texts);

    Recording recording;
    recording.tickRate(10);
    for (const double time : times)
        recording.set("SessionTime", time).ticks(1);
    QStringList found;
    for (const Finding &finding : watched(recording)) {
        QCOMPARE(finding.isDamage(), finding.kind == FindingKind::TimeReturn);
        const qint64 into =
            finding.offset.value_or(-1) - recording.sectionOffset(Recording::Records);
        QVERIFY(into > 0 && into % recording.recordSize() == 0);
        found.append(finding.text);
    }
    QCOMPARE(found, texts);
}

void tst_TickGaps::everySessionHasItsClock()
{
    Recording recording;
    recording.set("SessionTime", 100).ticks(3);
    recording.set("SessionNum", 1).set("SessionTime", 0).ticks(3);
    recording.set("SessionNum", 2).set("SessionTime", 50).ticks(3);
    QCOMPARE(watched(recording).size(), 0);
}

void tst_TickGaps::recordsThatDoNotBelong_data()
{
    QTest::addColumn<QVector<double>>("times");
    QTest::addColumn<QVector<int>>("sessions");
    QTest::addColumn<QVector<qint64>>("records");
    const QVector<int> one(6, 0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    using Records = QVector<qint64>;
    QTest::newRow("none") << QVector<double>{5, 5.1, 5.2, 5.3, 5.4, 5.5} << one << Records();
    QTest::newRow("a gap") << QVector<double>{5, 5.1, 9.2, 9.3, 9.4, 9.5} << one << Records();
    QTest::newRow("one later") << QVector<double>{5, 5.1, 9, 5.3, 5.4, 5.5} << one << Records{2};
    QTest::newRow("one earlier") << QVector<double>{5, 5.1, 0, 5.3, 5.4, 5.5} << one << Records{2};
    QTest::newRow("two") << QVector<double>{5, 5.1, 0, 99, 5.4, 5.5} << one << Records{2, 3};
    QTest::newRow("one before a gap")
        << QVector<double>{5, 5.1, 0, 9.3, 9.4, 9.5} << one << Records{2};
    QTest::newRow("without a time")
        << QVector<double>{5, 5.1, nan, 5.3, 5.4, 5.5} << one << Records{2};
    QTest::newRow("the last one") << QVector<double>{5, 5.1, 5.2, 5.3, 5.4, 0} << one << Records{5};
    QTest::newRow("all that follow")
        << QVector<double>{5, 5.1, 1e-9, 2e-9, 3e-9, 4e-9} << one << Records{2, 3, 4, 5};
    QTest::newRow("of another session") << QVector<double>{5, 5.1, 5.2, 5.3, 5.4, 5.5}
                                        << QVector<int>{0, 0, 7, 0, 0, 0} << Records{2};
    QTest::newRow("of another session, at its time")
        << QVector<double>{5, 5.1, 0, 5.3, 5.4, 5.5} << QVector<int>{0, 0, 7, 0, 0, 0}
        << Records{2};
    QTest::newRow("the next session")
        << QVector<double>{5, 5.1, 5.2, 0, 0.1, 0.2} << QVector<int>{0, 0, 0, 1, 1, 1} << Records();
}

void tst_TickGaps::recordsThatDoNotBelong()
{
    QFETCH(QVector<double>, times);
    QFETCH(QVector<int>, sessions);
    QFETCH(QVector<qint64>, records);

    Recording recording;
    recording.tickRate(10);
    for (int i = 0; i < times.size(); ++i)
        recording.set("SessionTime", times.at(i)).set("SessionNum", sessions.at(i)).ticks(1);
    QVector<qint64> found;
    timesOf(recording, [&found](qint64 record, bool) { found.append(record); });
    QCOMPARE(found, records);
}

void tst_TickGaps::rates_data()
{
    QTest::addColumn<int>("rate");
    QTest::addColumn<int>("records"); // a tenth of a second apart
    QTest::addColumn<QStringList>("texts");
    const QString none = QStringLiteral("the tick rate is %1, so missing ticks cannot be detected");
    QTest::newRow("0") << 0 << 3 << QStringList(none.arg(0));
    QTest::newRow("below 0") << -60 << 2 << QStringList(none.arg(-60));
    QTest::newRow("0, nothing to miss") << 0 << 1 << QStringList();
    QTest::newRow("fits") << 10 << 20 << QStringList();
    QTest::newRow("fits nearly") << 13 << 20 << QStringList();
    QTest::newRow("too high")
        << 60 << 20
        << QStringList("the tick rate is 60 per second, but the records are 0.1 s apart");
    QTest::newRow("too low")
        << 1 << 20 << QStringList("the tick rate is 1 per second, but the records are 0.1 s apart");
    QTest::newRow("too high, of few records")
        << 60 << 3
        << QStringList("the tick rate is 60 per second, but the records are 0.1 s apart");
}

void tst_TickGaps::rates()
{
    QFETCH(int, rate);
    QFETCH(int, records);
    QFETCH(QStringList, texts);

    Recording recording;
    recording.tickRate(rate);
    for (int i = 0; i < records; ++i)
        recording.set("SessionTime", 0.1 * i).ticks(1);
    QStringList found;
    for (const Finding &finding : watched(recording)) {
        QVERIFY(!finding.isDamage());
        found.append(finding.text);
        if (finding.kind != FindingKind::TickRate)
            continue;
        qint32 there = 0;
        std::memcpy(&there, recording.bytes().constData() + finding.offset.value_or(0),
                    sizeof there);
        QCOMPARE(there, rate);
    }
    QCOMPARE(found, texts);
}

void tst_TickGaps::endsAtTheTimeOfTheLastRecord()
{
    Recording recording;
    QVERIFY(!timesOf(recording).endsAt(0));
    recording.tickRate(10).set("SessionTime", 7.0).ticks(1).set("SessionTime", 8.0).ticks(1);
    const TickGaps times = timesOf(recording);
    QCOMPARE(times.last(), 8.0);
    QVERIFY(times.endsAt(8.0));
    QVERIFY(times.endsAt(8.1));
    QVERIFY(!times.endsAt(8.2));
    QVERIFY(!times.endsAt(7.0));
    QVERIFY(!times.endsAt(std::numeric_limits<double>::quiet_NaN()));

    const TickGaps withoutRate = timesOf(recording.with(&irsdk_header::tickRate, 0));
    QVERIFY(withoutRate.endsAt(8.0));
    QVERIFY(!withoutRate.endsAt(8.2));
}

void tst_TickGaps::unknownTime_data()
{
    QTest::addColumn<Recording>("recording");
    const Recording good;
    QTest::newRow("no table") << Recording::empty();
    QTest::newRow("outside") << good.withVariable("SessionTime", &irsdk_varHeader::offset,
                                                  good.recordSize() - 7);
    QTest::newRow("in front") << good.withVariable("SessionTime", &irsdk_varHeader::offset, -1);
    QTest::newRow("float") << good.withVariable("SessionTime", &irsdk_varHeader::type, irsdk_float);
    QTest::newRow("array") << good.withVariable("SessionTime", &irsdk_varHeader::count, 2);
    QTest::newRow("no record") << good.with(&irsdk_header::bufLen, 0);
    QTest::newRow("less than none")
        << good.with(&irsdk_header::bufLen, std::numeric_limits<qint32>::min());
    Recording twice;
    QTest::newRow("replaced by a later one") << twice.variable({"sessiontime", irsdk_int});
}

void tst_TickGaps::unknownTime()
{
    QFETCH(Recording, recording);
    const QVector<irsdk_varHeader> table = recording.variableTable();
    TickGaps times(recording.header(), table.constData(), [](qint64, bool) {});
    QVERIFY(!times.isKnown());
    times.add(nullptr);
    QVERIFY(!times.endsAt(0));
}

NAPAMMUL_TEST(tst_TickGaps)
#include "tst_tickgaps.moc"
