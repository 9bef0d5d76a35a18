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
    void rates_data();
    void rates();
    void endsAtTheTimeOfTheLastRecord();
    void unknownTime_data();
    void unknownTime();
};

namespace {

TickGaps timesOf(const Recording &recording)
{
    const irsdk_header header = recording.header();
    const QVector<irsdk_varHeader> table = recording.variableTable();
    TickGaps times(header, table.constData());
    const QByteArray bytes = recording.bytes();
    for (int record = 0; record < recording.recordCount(); ++record)
        times.add(bytes.constData() + header.varBuf[0].bufOffset + record * header.bufLen);
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
        QVERIFY(!finding.isDamage());
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
        << QStringList("5 ticks are missing between record 1, at 0 s, and the next one, at 0.1 s; "
                       "there are 2 such places, 0.2 s in total");
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
    TickGaps times(recording.header(), table.constData());
    QVERIFY(!times.isKnown());
    times.add(nullptr);
    QVERIFY(!times.endsAt(0));
}

NAPAMMUL_TEST(tst_TickGaps)
#include "tst_tickgaps.moc"
