// Records on their way into the channels of a lap.

#include "model/lap.h"
#include "reader/pendingrecords.h"
#include "reader/variablelayout.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tools/recording.h"

#include <QTest>

#include <limits>

namespace {

/// A table with every type, and \a ticks records of changing values.
Recording everyType(int ticks)
{
    auto recording = Recording::empty().variables({{"Char", irsdk_char, "c"},
                                                   {"Bool", irsdk_bool},
                                                   {"Int", irsdk_int, "i"},
                                                   {"Bits", irsdk_bitField},
                                                   {"Float", irsdk_float, "f"},
                                                   {"Double", irsdk_double, "d"}});
    recording.ticks(ticks, [](Recording &r, int tick) {
        r.set("Char", tick % 256 - 128).set("Bool", tick % 3).set("Int", -tick).set("Bits", tick);
        r.set("Float", tick % 7 == 6 ? std::numeric_limits<double>::quiet_NaN() : tick / 10.0);
        r.set("Double", tick / 3.0);
    });
    return recording;
}

class Records
{
public:
    explicit Records(const Recording &recording)
        : m_table(recording.variableTable()), m_header(recording.header()),
          m_bytes(recording.bytes().mid(recording.sectionOffset(Recording::Records)))
    {
        QVector<QString> names;
        QVector<QString> units;
        for (const irsdk_varHeader &variable : qAsConst(m_table)) {
            names.append(QString::fromLatin1(variable.name).toLower());
            units.append(QString::fromLatin1(variable.unit));
        }
        m_layout = std::make_unique<VariableLayout>(m_header, m_table.constData(), names, units);
    }

    const VariableLayout &layout() const { return *m_layout; }
    int count() const { return m_bytes.size() / m_header.bufLen; }
    const char *at(int tick) const { return m_bytes.constData() + tick * m_header.bufLen; }

    void append(PendingRecords *pending, int from, int to) const
    {
        for (int tick = from; tick < to; ++tick)
            pending->append(at(tick), layout());
    }

    /// The lap that the samples make, one by one.
    void addSamples(ZEP::Lap *lap, int from, int to) const
    {
        for (int tick = from; tick < to; ++tick) {
            ZEP::Sample sample;
            layout().addTo(&sample, at(tick));
            sample.addValue(QStringLiteral("fulltelemetry"), 1, QString());
            lap->addSample(sample);
        }
    }

private:
    QVector<irsdk_varHeader> m_table;
    irsdk_header m_header;
    QByteArray m_bytes;
    std::unique_ptr<VariableLayout> m_layout;
};

void compareChannels(const ZEP::Lap &actual, const ZEP::Lap &expected)
{
    QCOMPARE(actual.getAvailableChannels(), expected.getAvailableChannels());
    for (const QString &name : expected.getAvailableChannels()) {
        const auto a = actual.channel(name);
        const auto e = expected.channel(name);
        QCOMPARE(a->unit(), e->unit());
        COMPARE_BITS(a->data, e->data);
    }
}

} // namespace

class tst_PendingRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsAreWhatSamplesMake_data();
    void columnsAreWhatSamplesMake();
    void channelsChangedInBetweenAreMergedAsSamplesAre();
    void finishedLapHasNoSpareCapacity();
    void countedRecordsAreNotKept();
    void nothingPendingLeavesTheLapAlone();
    void assignmentReplacesTheRecords();
    void isFullBeforeItTakesMuchMemory();
};

void tst_PendingRecords::columnsAreWhatSamplesMake_data()
{
    QTest::addColumn<QVector<int>>("flushes"); // after how many records each

    QTest::newRow("one record") << QVector<int>{1};
    QTest::newRow("one at a time") << QVector<int>{1, 2, 3, 4, 5};
    QTest::newRow("less than a tile") << QVector<int>{31};
    QTest::newRow("a tile") << QVector<int>{32};
    QTest::newRow("a tile and one") << QVector<int>{33};
    QTest::newRow("many tiles") << QVector<int>{500};
    QTest::newRow("a few, then many") << QVector<int>{5, 500};
    QTest::newRow("many, then a few") << QVector<int>{400, 401, 450, 500};
}

void tst_PendingRecords::columnsAreWhatSamplesMake()
{
    QFETCH(QVector<int>, flushes);

    const Records records(everyType(500));
    PendingRecords pending;
    ZEP::Lap lap;
    int done = 0;
    for (const int end : flushes) {
        records.append(&pending, done, end);
        QVERIFY(!pending.isEmpty());
        pending.flushInto(&lap, records.layout());
        QVERIFY(pending.isEmpty());
        QCOMPARE(pending.recorded(), qint64(end));
        done = end;
    }

    ZEP::Lap expected;
    records.addSamples(&expected, 0, done);
    compareChannels(lap, expected);
}

void tst_PendingRecords::channelsChangedInBetweenAreMergedAsSamplesAre()
{
    const Records records(everyType(30));
    ZEP::Lap lap;
    ZEP::Lap expected;
    PendingRecords pending;
    records.append(&pending, 0, 10);
    pending.flushInto(&lap, records.layout());
    records.addSamples(&expected, 0, 10);

    for (ZEP::Lap *changed : {&lap, &expected}) {
        changed->removeChannel(QStringLiteral("bits"));
        auto extra = new ZEP::Channel;
        extra->data.fill(1.0, 10);
        changed->addChannel(extra, QStringLiteral("extra"));
    }
    records.append(&pending, 10, 30);
    pending.flushInto(&lap, records.layout());
    records.addSamples(&expected, 10, 30);
    compareChannels(lap, expected);
}

void tst_PendingRecords::finishedLapHasNoSpareCapacity()
{
    const Records records(everyType(500));
    PendingRecords pending;
    ZEP::Lap lap;
    records.append(&pending, 0, 500);
    pending.flushInto(&lap, records.layout());
    for (const QString &name : lap.getAvailableChannels()) {
        QCOMPARE(lap.channel(name)->data.size(), 500);
        QCOMPARE(lap.channel(name)->data.capacity(), 500);
    }
}

void tst_PendingRecords::countedRecordsAreNotKept()
{
    PendingRecords pending;
    QVERIFY(pending.isEmpty());
    for (int i = 0; i < 100000; ++i)
        pending.count();
    QCOMPARE(pending.recorded(), qint64(100000));
    QVERIFY(!pending.isEmpty());
    QVERIFY(!pending.isFull());

    const PendingRecords copy = pending;
    pending.clear();
    QCOMPARE(copy.recorded(), qint64(100000));
    QVERIFY(pending.isEmpty());
    QCOMPARE(pending.recorded(), qint64(0));
}

void tst_PendingRecords::nothingPendingLeavesTheLapAlone()
{
    const Records records(everyType(1));
    PendingRecords pending;
    ZEP::Lap lap;
    pending.flushInto(&lap, records.layout());
    QVERIFY(lap.isEmpty());
    QVERIFY(lap.calculatedValuesNames().isEmpty());
}

void tst_PendingRecords::assignmentReplacesTheRecords()
{
    const Records records(everyType(20));
    PendingRecords pending;
    PendingRecords next;
    records.append(&pending, 0, 5);
    records.append(&next, 10, 20);

    pending = next;
    next.clear();
    QVERIFY(next.isEmpty());
    QCOMPARE(next.recorded(), qint64(0));
    QCOMPARE(pending.recorded(), qint64(10));

    ZEP::Lap lap;
    ZEP::Lap expected;
    pending.flushInto(&lap, records.layout());
    records.addSamples(&expected, 10, 20);
    compareChannels(lap, expected);
}

void tst_PendingRecords::isFullBeforeItTakesMuchMemory()
{
    const Records records(everyType(1));
    PendingRecords pending;
    qint64 bytes = 0;
    while (!pending.isFull()) {
        pending.append(records.at(0), records.layout());
        bytes += records.layout().recordBytes();
        QVERIFY(bytes <= 32 * 1024 * 1024);
    }
    ZEP::Lap lap;
    pending.flushInto(&lap, records.layout());
    QVERIFY(!pending.isFull());
    QCOMPARE(lap.size(), int(bytes / records.layout().recordBytes()));
}

NAPAMMUL_TEST(tst_PendingRecords)

#include "tst_pendingrecords.moc"
