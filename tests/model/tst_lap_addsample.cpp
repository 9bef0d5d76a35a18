// How the values of a tick are added to the channels of a lap.

#include "tests/support/lapchannels.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <limits>

using Names = QList<QString>;

namespace {

/// The channels of a lap after \a tick. The names of both sides have their turn in ascending order,
/// and a new name is filled up to the length that the first channel has at that moment.
void append(Columns &columns, const Tick &tick)
{
    const bool firstTick = columns.isEmpty();
    QStringList names = columns.keys() + tick.keys();
    names.removeDuplicates();
    names.sort();
    for (const QString &name : qAsConst(names)) {
        if (columns.contains(name)) {
            columns[name].append(tick.value(name, NoSample));
        } else {
            QVector<double> column;
            if (!firstTick)
                column.fill(NoSample, qMax(0, columns.first().size() - 1));
            column.append(tick.value(name));
            columns.insert(name, column);
        }
    }
}

} // namespace

class tst_LapAddSample : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addSample_data();
    void addSample();
    void addSampleInEveryOrder();
    void addSampleFillsUpWithTheFirstChannel_data();
    void addSampleFillsUpWithTheFirstChannel();
    void addSampleConvertsToDouble_data();
    void addSampleConvertsToDouble();
    void addSampleSetsTheUnitOnce();
    void addSampleDoesNotLookAtTheCar();
    void addSampleMarksMissingTicksInvalid();
    void addSampleLeavesCalculatedChannelsAlone();
    void addSampleToACopyGrowsTheSharedChannels();
};

void tst_LapAddSample::addSample_data()
{
    QTest::addColumn<QVector<Tick>>("ticks");
    QTest::addColumn<Columns>("channels");

    using Ticks = QVector<Tick>;
    QTest::newRow("first tick") << Ticks{{{"apple", 1}, {"kiwi", 2}}}
                                << Columns{{"apple", {1}}, {"kiwi", {2}}};
    QTest::newRow("same names again")
        << Ticks{{{"apple", 1}, {"kiwi", 2}}, {{"apple", 3}, {"kiwi", 4}}}
        << Columns{{"apple", {1, 3}}, {"kiwi", {2, 4}}};
    QTest::newRow("last name missing") << Ticks{{{"apple", 1}, {"kiwi", 2}}, {{"apple", 3}}}
                                       << Columns{{"apple", {1, 3}}, {"kiwi", {2, NoSample}}};
    QTest::newRow("first name missing") << Ticks{{{"apple", 1}, {"kiwi", 2}}, {{"kiwi", 3}}}
                                        << Columns{{"apple", {1, NoSample}}, {"kiwi", {2, 3}}};
    QTest::newRow("middle name missing")
        << Ticks{{{"a", 1}, {"b", 2}, {"c", 3}}, {{"a", 4}, {"c", 5}}}
        << Columns{{"a", {1, 4}}, {"b", {2, NoSample}}, {"c", {3, 5}}};
    QTest::newRow("name comes back")
        << Ticks{{{"a", 1}, {"b", 2}}, {{"a", 3}}, {{"a", 4}}, {{"a", 5}, {"b", 6}}}
        << Columns{{"a", {1, 3, 4, 5}}, {"b", {2, NoSample, NoSample, 6}}};
    QTest::newRow("nothing measured, no channels yet") << Ticks{{}} << Columns{};
    QTest::newRow("nothing measured before the first tick")
        << Ticks{{}, {}, {{"apple", 1}}} << Columns{{"apple", {1}}};
    QTest::newRow("nothing measured")
        << Ticks{{{"apple", 1}, {"kiwi", 2}}, {}, {}}
        << Columns{{"apple", {1, NoSample, NoSample}}, {"kiwi", {2, NoSample, NoSample}}};

    QTest::newRow("new last name")
        << Ticks{{{"apple", 1}, {"kiwi", 2}}, {{"apple", 3}}, {{"apple", 4}, {"pear", 5}}}
        << Columns{{"apple", {1, 3, 4}},
                   {"kiwi", {2, NoSample, NoSample}},
                   {"pear", {NoSample, NoSample, 5}}};
    QTest::newRow("new last name, nothing else measured")
        << Ticks{{{"apple", 1}}, {{"pear", 5}}}
        << Columns{{"apple", {1, NoSample}}, {"pear", {NoSample, 5}}};
    QTest::newRow("new middle name")
        << Ticks{{{"a", 1}, {"c", 2}}, {{"a", 3}, {"c", 4}}, {{"a", 5}, {"b", 6}, {"c", 7}}}
        << Columns{{"a", {1, 3, 5}}, {"b", {NoSample, NoSample, 6}}, {"c", {2, 4, 7}}};
    QTest::newRow("two new names behind the first")
        << Ticks{{{"a", 1}, {"d", 2}}, {{"a", 3}, {"b", 4}, {"c", 5}, {"d", 6}}}
        << Columns{{"a", {1, 3}}, {"b", {NoSample, 4}}, {"c", {NoSample, 5}}, {"d", {2, 6}}};

    QTest::newRow("new first name stays one short")
        << Ticks{{{"apple", 1}, {"kiwi", 2}},
                 {{"apple", 3}},
                 {{"apple", 4}, {"pear", 5}},
                 {{"Zebra", 6}, {"apple", 7}, {"kiwi", 8}, {"pear", 9}}}
        << Columns{{"Zebra", {NoSample, NoSample, 6}},
                   {"apple", {1, 3, 4, 7}},
                   {"kiwi", {2, NoSample, NoSample, 8}},
                   {"pear", {NoSample, NoSample, 5, 9}}};
    QTest::newRow("new first name at the second tick")
        << Ticks{{{"b", 1}}, {{"a", 2}, {"b", 3}}} << Columns{{"a", {2}}, {"b", {1, 3}}};
    QTest::newRow("new first name, nothing else measured")
        << Ticks{{{"b", 1}}, {{"b", 2}}, {{"a", 3}}}
        << Columns{{"a", {NoSample, 3}}, {"b", {1, 2, NoSample}}};
    // The second one gets the length of the first one, which has just been filled up.
    QTest::newRow("two new names before the first")
        << Ticks{{{"m", 1}}, {{"m", 2}}, {{"m", 3}}, {{"a", 4}, {"b", 5}, {"m", 6}}}
        << Columns{
               {"a", {NoSample, NoSample, 4}}, {"b", {NoSample, NoSample, 5}}, {"m", {1, 2, 3, 6}}};
    QTest::newRow("three new names before the first at the second tick")
        << Ticks{{{"m", 1}}, {{"a", 4}, {"b", 5}, {"c", 6}, {"m", 7}}}
        << Columns{{"a", {4}}, {"b", {5}}, {"c", {6}}, {"m", {1, 7}}};
    // The new last name gets the length of the new first one, and is also short.
    QTest::newRow("new names before the first and behind the last")
        << Ticks{{{"m", 1}}, {{"m", 2}}, {{"m", 3}}, {{"a", 4}, {"m", 5}, {"z", 6}}}
        << Columns{
               {"a", {NoSample, NoSample, 4}}, {"m", {1, 2, 3, 5}}, {"z", {NoSample, NoSample, 6}}};
    QTest::newRow("short first channel stays short")
        << Ticks{{{"b", 1}}, {{"b", 2}}, {{"a", 3}, {"b", 4}}, {{"a", 5}, {"b", 6}}, {}}
        << Columns{{"a", {NoSample, 3, 5, NoSample}}, {"b", {1, 2, 4, 6, NoSample}}};
    QTest::newRow("new name behind a short first channel is short too")
        << Ticks{{{"b", 1}}, {{"b", 2}}, {{"a", 3}, {"b", 4}}, {{"a", 5}, {"b", 6}, {"c", 7}}}
        << Columns{{"a", {NoSample, 3, 5}}, {"b", {1, 2, 4, 6}}, {"c", {NoSample, NoSample, 7}}};
    QTest::newRow("new first name before a short one is two short")
        << Ticks{{{"c", 1}},
                 {{"c", 2}},
                 {{"c", 3}},
                 {{"b", 4}, {"c", 5}},
                 {{"a", 6}, {"b", 7}, {"c", 8}}}
        << Columns{{"a", {NoSample, NoSample, 6}},
                   {"b", {NoSample, NoSample, 4, 7}},
                   {"c", {1, 2, 3, 5, 8}}};
    QTest::newRow("capitals sort first")
        << Ticks{{{"a", 1}}, {{"Z", 2}, {"a", 3}}} << Columns{{"Z", {2}}, {"a", {1, 3}}};
    QTest::newRow("empty name sorts first")
        << Ticks{{{"a", 1}}, {{"", 2}, {"a", 3}}} << Columns{{"", {2}}, {"a", {1, 3}}};
    QTest::newRow("names that differ in case")
        << Ticks{{{"speed", 1}}, {{"Speed", 2}, {"speed", 3}}}
        << Columns{{"Speed", {2}}, {"speed", {1, 3}}};
}

void tst_LapAddSample::addSample()
{
    QFETCH(QVector<Tick>, ticks);
    QFETCH(Columns, channels);

    ZEP::Lap lap;
    for (const Tick &tick : qAsConst(ticks))
        lap.addSample(sampleOf(tick));
    COMPARE_COLUMNS(lap, channels);
}

/// All sequences of four ticks over three names: every subset at every tick.
void tst_LapAddSample::addSampleInEveryOrder()
{
    const QStringList names{"a", "b", "c"};
    for (int sequence = 0; sequence < (1 << 12); ++sequence) {
        ZEP::Lap lap;
        Columns expected;
        for (int tick = 0; tick < 4; ++tick) {
            Tick values;
            for (int name = 0; name < names.size(); ++name) {
                if (sequence & (1 << (3 * tick + name)))
                    values.insert(names.at(name), 10 * tick + name);
            }
            lap.addSample(sampleOf(values));
            append(expected, values);
        }
        const QString difference = columnDifference(columnsOf(lap), expected);
        QVERIFY2(difference.isEmpty(),
                 qPrintable(QStringLiteral("sequence %1: %2").arg(sequence).arg(difference)));
    }
}

void tst_LapAddSample::addSampleFillsUpWithTheFirstChannel_data()
{
    QTest::addColumn<Columns>("before");
    QTest::addColumn<Columns>("after");

    QTest::newRow("first channel without samples")
        << Columns{{"m", {}}} << Columns{{"a", {1}}, {"m", {2}}, {"z", {3}}};
    QTest::newRow("first channel of one sample")
        << Columns{{"m", {9}}} << Columns{{"a", {1}}, {"m", {9, 2}}, {"z", {3}}};
    QTest::newRow("first channel longer than the others")
        << Columns{{"c", {9, 9, 9}}, {"m", {9}}}
        << Columns{{"a", {NoSample, NoSample, 1}},
                   {"c", {9, 9, 9, NoSample}},
                   {"m", {9, 2}},
                   {"z", {NoSample, NoSample, 3}}};
    QTest::newRow("first channel shorter than the others")
        << Columns{{"c", {9}}, {"m", {9, 9, 9}}}
        << Columns{{"a", {1}}, {"c", {9, NoSample}}, {"m", {9, 9, 9, 2}}, {"z", {3}}};
    QTest::newRow("no new name before the first")
        << Columns{{"a", {9, 9}}, {"m", {9}}}
        << Columns{{"a", {9, 9, 1}}, {"m", {9, 2}}, {"z", {NoSample, NoSample, 3}}};
}

/// Channels that were added from outside may have any length.
void tst_LapAddSample::addSampleFillsUpWithTheFirstChannel()
{
    QFETCH(Columns, before);
    QFETCH(Columns, after);

    ZEP::Lap lap;
    for (auto column = before.cbegin(); column != before.cend(); ++column)
        lap.addChannel(newChannel(column.value()), column.key());
    lap.addSample(sampleOf({{"a", 1}, {"m", 2}, {"z", 3}}));
    COMPARE_COLUMNS(lap, after);
}

void tst_LapAddSample::addSampleConvertsToDouble_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<double>("sample");

    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("double") << QVariant(0.1) << 0.1;
    QTest::newRow("float is widened") << QVariant(0.1f) << double(0.1f);
    QTest::newRow("int") << QVariant(-7) << -7.0;
    QTest::newRow("unsigned") << QVariant(4294967295u) << 4294967295.0;
    QTest::newRow("64 bits") << QVariant(Q_INT64_C(9007199254740993)) << 9007199254740992.0;
    QTest::newRow("true") << QVariant(true) << 1.0;
    QTest::newRow("false") << QVariant(false) << 0.0;
    QTest::newRow("text of a number") << QVariant(QString("2.5")) << 2.5;
    QTest::newRow("text of no number") << QVariant(QString("fast")) << 0.0;
    QTest::newRow("text of a number with unit") << QVariant(QString("2.5 m")) << 0.0;
    QTest::newRow("empty text") << QVariant(QString()) << 0.0;
    QTest::newRow("time") << QVariant(QTime(0, 1, 23, 456)) << 0.0;
    QTest::newRow("invalid") << QVariant() << 0.0;
    QTest::newRow("minus zero") << QVariant(-0.0) << -0.0;
    QTest::newRow("sentinel") << QVariant(NoSample) << NoSample;
    QTest::newRow("infinity") << QVariant(-infinity) << -infinity;
    QTest::newRow("NaN") << QVariant(nan) << nan;
}

void tst_LapAddSample::addSampleConvertsToDouble()
{
    QFETCH(QVariant, value);
    QFETCH(double, sample);

    ZEP::Sample opening;
    opening.addValue("m", value, QString());
    ZEP::Sample widening;
    widening.addValue("m", value, QString());
    widening.addValue("z", value, QString());

    ZEP::Lap lap;
    lap.addSample(opening);
    lap.addSample(widening);
    COMPARE_BITS(lap.channel("m")->data, QVector<double>({sample, sample}));
    COMPARE_BITS(lap.channel("z")->data, QVector<double>({NoSample, sample}));
}

void tst_LapAddSample::addSampleSetsTheUnitOnce()
{
    ZEP::Lap lap;
    lap.addSample(sampleOf({{"apple", 1}, {"pear", 2}}, "m"));
    QCOMPARE(lap.channel("apple")->unit(), QString("m"));
    QCOMPARE(lap.channel("pear")->unit(), QString("m"));

    lap.addSample(
        sampleOf({{"Zebra", 3}, {"apple", 4}, {"kiwi", 5}, {"pear", 6}, {"plum", 7}}, "kg"));
    QCOMPARE(lap.channel("Zebra")->unit(), QString("kg"));
    QCOMPARE(lap.channel("apple")->unit(), QString("m"));
    QCOMPARE(lap.channel("kiwi")->unit(), QString("kg"));
    QCOMPARE(lap.channel("pear")->unit(), QString("m"));
    QCOMPARE(lap.channel("plum")->unit(), QString("kg"));

    lap.addSample(sampleOf({{"Zebra", 8}, {"apple", 9}}));
    QCOMPARE(lap.channel("Zebra")->unit(), QString("kg"));
    QCOMPARE(lap.channel("apple")->unit(), QString("m"));
    COMPARE_BITS(lap.channel("apple")->data, QVector<double>({1, 4, 9}));
}

void tst_LapAddSample::addSampleDoesNotLookAtTheCar()
{
    ZEP::Lap lap;
    lap.setCarId(3);
    ZEP::Sample sample = sampleOf({{"apple", 1}});
    sample.setCarId(7);
    lap.addSample(sample);
    sample.setCarId(QVariant());
    lap.addSample(sample);
    COMPARE_COLUMNS(lap, (Columns{{"apple", {1, 1}}}));
    QCOMPARE(lap.getCarId(), QVariant(3));
}

void tst_LapAddSample::addSampleMarksMissingTicksInvalid()
{
    ZEP::Lap lap;
    lap.addSample(sampleOf({{"apple", 1}, {"kiwi", 2}}));
    lap.addSample(sampleOf({{"apple", 3}}));
    QVERIFY(lap.channel("kiwi")->isValid(0));
    QVERIFY(!lap.channel("kiwi")->isValid(1));
    QVERIFY(lap.channel("apple")->isValid(1));
}

void tst_LapAddSample::addSampleLeavesCalculatedChannelsAlone()
{
    ZEP::Lap lap;
    lap.addCalculatedChannel(newChannel({1, 2, 3}, "s"), "apple");
    lap.addSample(sampleOf({{"apple", 4}, {"kiwi", 5}}, "m"));
    lap.addSample(sampleOf({{"kiwi", 6}}, "m"));
    COMPARE_COLUMNS(lap, (Columns{{"apple", {4, NoSample}}, {"kiwi", {5, 6}}}));
    QCOMPARE(lap.getAvailableCalculatedChannels(), Names{"apple"});
    COMPARE_BITS(lap.calculatedChannel("apple")->data, QVector<double>({1, 2, 3}));
    QCOMPARE(lap.calculatedChannel("apple")->unit(), QString("s"));
}

void tst_LapAddSample::addSampleToACopyGrowsTheSharedChannels()
{
    ZEP::Lap lap;
    lap.addSample(sampleOf({{"m", 1}}));
    ZEP::Lap copy(lap);
    copy.addSample(sampleOf({{"a", 2}, {"m", 3}}));
    COMPARE_COLUMNS(copy, (Columns{{"a", {2}}, {"m", {1, 3}}}));
    COMPARE_COLUMNS(lap, (Columns{{"m", {1, 3}}}));
}

NAPAMMUL_TEST(tst_LapAddSample)

#include "tst_lap_addsample.moc"
