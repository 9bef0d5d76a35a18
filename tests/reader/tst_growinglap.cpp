// A lap whose latest ticks are still records.

#include "reader/growinglap.h"
#include "reader/variablelayout.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

namespace {

VariableLayout layoutOfOne(const Recording &recording)
{
    return VariableLayout(recording.header(), recording.variableTable().constData(),
                          {QStringLiteral("brake")}, {QString()});
}

Recording oneVariable()
{
    auto recording = Recording::empty().variables({{"Brake"}});
    recording.set("Brake", 0.5).ticks(1);
    return recording;
}

} // namespace

class tst_GrowingLap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isStartedByChannelsAndByRecords();
    void copiesCarryWhatIsPending();
    void lapBecomesAGrowingLapWithNothingPending();
    void greatestFractionIsTheSamePendingOrNot_data();
    void greatestFractionIsTheSamePendingOrNot();
    void clearingDropsWhatIsPending();

private:
    void append(GrowingLap *lap) { lap->pending.append(m_record.constData(), m_layout); }

    const Recording m_recording = oneVariable();
    const VariableLayout m_layout = layoutOfOne(m_recording);
    QByteArray m_record;
};

void tst_GrowingLap::init()
{
    m_record = m_recording.bytes().right(m_recording.recordSize());
}

void tst_GrowingLap::isStartedByChannelsAndByRecords()
{
    GrowingLap lap;
    QVERIFY(!lap.isStarted());
    append(&lap);
    QVERIFY(lap.isStarted());
    QVERIFY(lap.isEmpty());
    lap.flush(m_layout);
    QVERIFY(lap.isStarted());
    QVERIFY(lap.pending.isEmpty());
    QCOMPARE(lap.size(), 1);
}

void tst_GrowingLap::copiesCarryWhatIsPending()
{
    GrowingLap lap;
    append(&lap);
    lap.flush(m_layout);
    append(&lap);
    lap.raiseMaxLapDistPct(0.25f, true);

    GrowingLap copy;
    append(&copy);
    copy = lap;
    lap.clear();
    copy.flush(m_layout);
    QCOMPARE(copy.size(), 2);
    QCOMPARE(copy.channel(QStringLiteral("brake"))->data, (QVector<double>{0.5, 0.5}));
    QCOMPARE(copy.maxLapDistPct().value(), 0.25);
}

void tst_GrowingLap::lapBecomesAGrowingLapWithNothingPending()
{
    ZEP::Lap lap;
    lap.setLapInStint(7);
    GrowingLap growing;
    append(&growing);
    growing.raiseMaxLapDistPct(0.5f, true);
    growing = lap;
    QVERIFY(!growing.isStarted());
    QVERIFY(!growing.maxLapDistPct());
    QCOMPARE(growing.getLapInStint(), 7);
}

void tst_GrowingLap::greatestFractionIsTheSamePendingOrNot_data()
{
    QTest::addColumn<bool>("isPending");
    QTest::newRow("pending") << true;
    QTest::newRow("at once") << false;
}

void tst_GrowingLap::greatestFractionIsTheSamePendingOrNot()
{
    QFETCH(bool, isPending);

    GrowingLap lap;
    QVERIFY(!lap.maxLapDistPct());
    for (const float fraction : {0.5f, 0.75f, 0.25f})
        lap.raiseMaxLapDistPct(fraction, isPending);
    QCOMPARE(lap.maxLapDistPct().value(), 0.75);
    QCOMPARE(lap.containsCalculatedValue(GrowingLap::maxLapDistPctName()), !isPending);
    lap.flush(m_layout);
    QCOMPARE(lap.calculatedValue(GrowingLap::maxLapDistPctName()).value, QVariant(0.75f));
    lap.raiseMaxLapDistPct(0.5f, isPending);
    QCOMPARE(lap.maxLapDistPct().value(), 0.75);
}

void tst_GrowingLap::clearingDropsWhatIsPending()
{
    GrowingLap lap;
    append(&lap);
    lap.raiseMaxLapDistPct(0.5f, true);
    lap.clear();
    QVERIFY(!lap.isStarted());
    QVERIFY(!lap.maxLapDistPct());
    QCOMPARE(lap.pending.recorded(), qint64(0));
}

NAPAMMUL_TEST(tst_GrowingLap)

#include "tst_growinglap.moc"
