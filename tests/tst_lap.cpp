#include "model/lap.h"
#include "tests/samebits.h"

#include <QTest>
#include <QWeakPointer>

#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

static_assert(std::is_base_of_v<ZEP::LapHeader, ZEP::Lap>);
static_assert(std::is_convertible_v<ZEP::Lap *, ZEP::LapHeader *>);
static_assert(std::has_virtual_destructor_v<ZEP::Lap>);
static_assert(std::is_copy_constructible_v<ZEP::Lap> && std::is_copy_assignable_v<ZEP::Lap>);
static_assert(std::is_move_assignable_v<ZEP::Lap>);

using Names = QList<QString>;
/// The values of one tick, all without unit.
using Tick = QMap<QString, double>;
/// The samples of all channels by their names.
using Columns = QMap<QString, QVector<double>>;

Q_DECLARE_METATYPE(QVector<Tick>)
Q_DECLARE_METATYPE(Columns)

namespace {

constexpr double None = 9.999999562023526e24;

ZEP::Sample sampleOf(const Tick &values, const QString &unit = QString())
{
    ZEP::Sample sample;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        sample.addValue(value.key(), value.value(), unit);
    return sample;
}

ZEP::Channel *newChannel(const QVector<double> &samples, const QString &unit = QString())
{
    auto *channel = new ZEP::Channel;
    channel->data = samples;
    channel->setUnit(unit);
    return channel;
}

Columns columnsOf(ZEP::Lap &lap)
{
    Columns columns;
    for (const QString &name : lap.getAvailableChannels())
        columns.insert(name, lap.channel(name)->data);
    return columns;
}

/// The first thing that differs between the channels of a lap and what they should be; empty if
/// nothing does.
QString columnDifference(const Columns &actual, const Columns &expected)
{
    if (actual.keys() != expected.keys())
        return QStringLiteral("channels %1 instead of %2")
            .arg(actual.keys().join(QLatin1Char(',')), expected.keys().join(QLatin1Char(',')));
    for (const QString &name : actual.keys()) {
        const QString difference = bitDifference(actual.value(name), expected.value(name));
        if (!difference.isEmpty())
            return QStringLiteral("channel %1, %2").arg(name, difference);
    }
    return QString();
}

/// What a lap holds after \a tick: names that either side has take their turn in ascending order,
/// and a new name is filled up as long as the first channel is at its turn.
void append(Columns &columns, const Tick &tick)
{
    const bool firstTick = columns.isEmpty();
    QStringList names = columns.keys() + tick.keys();
    names.removeDuplicates();
    names.sort();
    for (const QString &name : qAsConst(names)) {
        if (columns.contains(name)) {
            columns[name].append(tick.value(name, None));
        } else {
            QVector<double> column;
            if (!firstTick)
                column.fill(None, qMax(0, columns.first().size() - 1));
            column.append(tick.value(name));
            columns.insert(name, column);
        }
    }
}

#define COMPARE_COLUMNS(lap, expected)                                                             \
    do {                                                                                           \
        const QString columnDifference_ = columnDifference(columnsOf(lap), (expected));            \
        QVERIFY2(columnDifference_.isEmpty(), qPrintable(columnDifference_));                      \
    } while (false)

} // namespace

class tst_Lap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyByDefault();

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

    void lookingUpAChannelNeverInserts();
    void namesAscendCapitalsFirst();
    void addedChannelIsHandedOut_data();
    void addedChannelIsHandedOut();
    void recordedAndCalculatedChannelsAreApart();
    void ownsItsChannels_data();
    void ownsItsChannels();

    void calculatedValues();
    void calculatedValuesAreApartFromTheHeaders();
    void value_data();
    void value();
    void lapTimeIsAValue_data();
    void lapTimeIsAValue();

    void size_data();
    void size();
    void isEmpty_data();
    void isEmpty();
    void clearKeepsTheHeader();

    void copiesShareChannels_data();
    void copiesShareChannels();
    void copiesHaveTheirOwnMaps();
    void copiesCarryHeaderAndValues_data();
    void copiesCarryHeaderAndValues();
    void addSampleToACopyGrowsTheSharedChannels();
    void channelsOutliveTheirLap();
    void movedLapHoldsEverything();

    void travelsInAVariant();
};

void tst_Lap::isEmptyByDefault()
{
    ZEP::Lap lap;
    QVERIFY(lap.isEmpty());
    QCOMPARE(lap.size(), 0);
    QVERIFY(lap.getAvailableChannels().isEmpty());
    QVERIFY(lap.getAvailableCalculatedChannels().isEmpty());
    QVERIFY(lap.calculatedValuesNames().isEmpty());
    QVERIFY(lap.valueNameList().isEmpty());
    QCOMPARE(int(lap.getSession()), -1);
    QCOMPARE(int(lap.getLapType()), -1);
}

void tst_Lap::addSample_data()
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
                                       << Columns{{"apple", {1, 3}}, {"kiwi", {2, None}}};
    QTest::newRow("first name missing") << Ticks{{{"apple", 1}, {"kiwi", 2}}, {{"kiwi", 3}}}
                                        << Columns{{"apple", {1, None}}, {"kiwi", {2, 3}}};
    QTest::newRow("middle name missing")
        << Ticks{{{"a", 1}, {"b", 2}, {"c", 3}}, {{"a", 4}, {"c", 5}}}
        << Columns{{"a", {1, 4}}, {"b", {2, None}}, {"c", {3, 5}}};
    QTest::newRow("name comes back")
        << Ticks{{{"a", 1}, {"b", 2}}, {{"a", 3}}, {{"a", 4}}, {{"a", 5}, {"b", 6}}}
        << Columns{{"a", {1, 3, 4, 5}}, {"b", {2, None, None, 6}}};
    QTest::newRow("nothing measured, no channels yet") << Ticks{{}} << Columns{};
    QTest::newRow("nothing measured before the first tick")
        << Ticks{{}, {}, {{"apple", 1}}} << Columns{{"apple", {1}}};
    QTest::newRow("nothing measured")
        << Ticks{{{"apple", 1}, {"kiwi", 2}}, {}, {}}
        << Columns{{"apple", {1, None, None}}, {"kiwi", {2, None, None}}};

    QTest::newRow("new last name")
        << Ticks{{{"apple", 1}, {"kiwi", 2}}, {{"apple", 3}}, {{"apple", 4}, {"pear", 5}}}
        << Columns{{"apple", {1, 3, 4}}, {"kiwi", {2, None, None}}, {"pear", {None, None, 5}}};
    QTest::newRow("new last name, nothing else measured")
        << Ticks{{{"apple", 1}}, {{"pear", 5}}}
        << Columns{{"apple", {1, None}}, {"pear", {None, 5}}};
    QTest::newRow("new middle name")
        << Ticks{{{"a", 1}, {"c", 2}}, {{"a", 3}, {"c", 4}}, {{"a", 5}, {"b", 6}, {"c", 7}}}
        << Columns{{"a", {1, 3, 5}}, {"b", {None, None, 6}}, {"c", {2, 4, 7}}};
    QTest::newRow("two new names behind the first")
        << Ticks{{{"a", 1}, {"d", 2}}, {{"a", 3}, {"b", 4}, {"c", 5}, {"d", 6}}}
        << Columns{{"a", {1, 3}}, {"b", {None, 4}}, {"c", {None, 5}}, {"d", {2, 6}}};

    QTest::newRow("new first name stays one short")
        << Ticks{{{"apple", 1}, {"kiwi", 2}},
                 {{"apple", 3}},
                 {{"apple", 4}, {"pear", 5}},
                 {{"Zebra", 6}, {"apple", 7}, {"kiwi", 8}, {"pear", 9}}}
        << Columns{{"Zebra", {None, None, 6}},
                   {"apple", {1, 3, 4, 7}},
                   {"kiwi", {2, None, None, 8}},
                   {"pear", {None, None, 5, 9}}};
    QTest::newRow("new first name at the second tick")
        << Ticks{{{"b", 1}}, {{"a", 2}, {"b", 3}}} << Columns{{"a", {2}}, {"b", {1, 3}}};
    QTest::newRow("new first name, nothing else measured")
        << Ticks{{{"b", 1}}, {{"b", 2}}, {{"a", 3}}}
        << Columns{{"a", {None, 3}}, {"b", {1, 2, None}}};
    // The second one is measured on the first one, which has just been filled up.
    QTest::newRow("two new names before the first")
        << Ticks{{{"m", 1}}, {{"m", 2}}, {{"m", 3}}, {{"a", 4}, {"b", 5}, {"m", 6}}}
        << Columns{{"a", {None, None, 4}}, {"b", {None, None, 5}}, {"m", {1, 2, 3, 6}}};
    QTest::newRow("three new names before the first at the second tick")
        << Ticks{{{"m", 1}}, {{"a", 4}, {"b", 5}, {"c", 6}, {"m", 7}}}
        << Columns{{"a", {4}}, {"b", {5}}, {"c", {6}}, {"m", {1, 7}}};
    // The new last name is measured on the new first one and is short as well.
    QTest::newRow("new names before the first and behind the last")
        << Ticks{{{"m", 1}}, {{"m", 2}}, {{"m", 3}}, {{"a", 4}, {"m", 5}, {"z", 6}}}
        << Columns{{"a", {None, None, 4}}, {"m", {1, 2, 3, 5}}, {"z", {None, None, 6}}};
    QTest::newRow("short first channel stays short")
        << Ticks{{{"b", 1}}, {{"b", 2}}, {{"a", 3}, {"b", 4}}, {{"a", 5}, {"b", 6}}, {}}
        << Columns{{"a", {None, 3, 5, None}}, {"b", {1, 2, 4, 6, None}}};
    QTest::newRow("new name behind a short first channel is short too")
        << Ticks{{{"b", 1}}, {{"b", 2}}, {{"a", 3}, {"b", 4}}, {{"a", 5}, {"b", 6}, {"c", 7}}}
        << Columns{{"a", {None, 3, 5}}, {"b", {1, 2, 4, 6}}, {"c", {None, None, 7}}};
    QTest::newRow("new first name before a short one is two short")
        << Ticks{{{"c", 1}},
                 {{"c", 2}},
                 {{"c", 3}},
                 {{"b", 4}, {"c", 5}},
                 {{"a", 6}, {"b", 7}, {"c", 8}}}
        << Columns{{"a", {None, None, 6}}, {"b", {None, None, 4, 7}}, {"c", {1, 2, 3, 5, 8}}};
    QTest::newRow("capitals sort first")
        << Ticks{{{"a", 1}}, {{"Z", 2}, {"a", 3}}} << Columns{{"Z", {2}}, {"a", {1, 3}}};
    QTest::newRow("empty name sorts first")
        << Ticks{{{"a", 1}}, {{"", 2}, {"a", 3}}} << Columns{{"", {2}}, {"a", {1, 3}}};
    QTest::newRow("names that differ in case")
        << Ticks{{{"speed", 1}}, {{"Speed", 2}, {"speed", 3}}}
        << Columns{{"Speed", {2}}, {"speed", {1, 3}}};
}

void tst_Lap::addSample()
{
    QFETCH(QVector<Tick>, ticks);
    QFETCH(Columns, channels);

    ZEP::Lap lap;
    for (const Tick &tick : qAsConst(ticks))
        lap.addSample(sampleOf(tick));
    COMPARE_COLUMNS(lap, channels);
}

/// All sequences of four ticks over three names: every subset at every tick.
void tst_Lap::addSampleInEveryOrder()
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

void tst_Lap::addSampleFillsUpWithTheFirstChannel_data()
{
    QTest::addColumn<Columns>("before");
    QTest::addColumn<Columns>("after");

    QTest::newRow("first channel without samples")
        << Columns{{"m", {}}} << Columns{{"a", {1}}, {"m", {2}}, {"z", {3}}};
    QTest::newRow("first channel of one sample")
        << Columns{{"m", {9}}} << Columns{{"a", {1}}, {"m", {9, 2}}, {"z", {3}}};
    QTest::newRow("first channel longer than the others") << Columns{{"c", {9, 9, 9}}, {"m", {9}}}
                                                          << Columns{{"a", {None, None, 1}},
                                                                     {"c", {9, 9, 9, None}},
                                                                     {"m", {9, 2}},
                                                                     {"z", {None, None, 3}}};
    QTest::newRow("first channel shorter than the others")
        << Columns{{"c", {9}}, {"m", {9, 9, 9}}}
        << Columns{{"a", {1}}, {"c", {9, None}}, {"m", {9, 9, 9, 2}}, {"z", {3}}};
    QTest::newRow("no new name before the first")
        << Columns{{"a", {9, 9}}, {"m", {9}}}
        << Columns{{"a", {9, 9, 1}}, {"m", {9, 2}}, {"z", {None, None, 3}}};
}

/// Channels that were added from outside may be of any length.
void tst_Lap::addSampleFillsUpWithTheFirstChannel()
{
    QFETCH(Columns, before);
    QFETCH(Columns, after);

    ZEP::Lap lap;
    for (auto column = before.cbegin(); column != before.cend(); ++column)
        lap.addChannel(newChannel(column.value()), column.key());
    lap.addSample(sampleOf({{"a", 1}, {"m", 2}, {"z", 3}}));
    COMPARE_COLUMNS(lap, after);
}

void tst_Lap::addSampleConvertsToDouble_data()
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
    QTest::newRow("sentinel") << QVariant(None) << None;
    QTest::newRow("infinity") << QVariant(-infinity) << -infinity;
    QTest::newRow("NaN") << QVariant(nan) << nan;
}

void tst_Lap::addSampleConvertsToDouble()
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
    COMPARE_BITS(lap.channel("z")->data, QVector<double>({None, sample}));
}

void tst_Lap::addSampleSetsTheUnitOnce()
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

void tst_Lap::addSampleDoesNotLookAtTheCar()
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

void tst_Lap::addSampleMarksMissingTicksInvalid()
{
    ZEP::Lap lap;
    lap.addSample(sampleOf({{"apple", 1}, {"kiwi", 2}}));
    lap.addSample(sampleOf({{"apple", 3}}));
    QVERIFY(lap.channel("kiwi")->isValid(0));
    QVERIFY(!lap.channel("kiwi")->isValid(1));
    QVERIFY(lap.channel("apple")->isValid(1));
}

void tst_Lap::addSampleLeavesCalculatedChannelsAlone()
{
    ZEP::Lap lap;
    lap.addCalculatedChannel(newChannel({1, 2, 3}, "s"), "apple");
    lap.addSample(sampleOf({{"apple", 4}, {"kiwi", 5}}, "m"));
    lap.addSample(sampleOf({{"kiwi", 6}}, "m"));
    COMPARE_COLUMNS(lap, (Columns{{"apple", {4, None}}, {"kiwi", {5, 6}}}));
    QCOMPARE(lap.getAvailableCalculatedChannels(), Names{"apple"});
    COMPARE_BITS(lap.calculatedChannel("apple")->data, QVector<double>({1, 2, 3}));
    QCOMPARE(lap.calculatedChannel("apple")->unit(), QString("s"));
}

void tst_Lap::lookingUpAChannelNeverInserts()
{
    ZEP::Lap lap;
    QVERIFY(lap.channel("apple").isNull());
    QVERIFY(lap.calculatedChannel("apple").isNull());
    QVERIFY(lap.isEmpty());
    lap.addChannel(newChannel({1}), "apple");
    QVERIFY(lap.channel("Apple").isNull());
    QVERIFY(lap.channel("").isNull());
    QCOMPARE(lap.getAvailableChannels(), Names{"apple"});
}

void tst_Lap::namesAscendCapitalsFirst()
{
    ZEP::Lap lap;
    for (const QString &name : {QString("pear"), QString("apple"), QString("Zebra")}) {
        lap.addChannel(newChannel({}), name);
        lap.addCalculatedChannel(newChannel({}), name + "2");
        lap.setCalculatedValue(name + "3", 1, QString());
    }
    QCOMPARE(lap.getAvailableChannels(), (Names{"Zebra", "apple", "pear"}));
    QCOMPARE(lap.getAvailableCalculatedChannels(), (Names{"Zebra2", "apple2", "pear2"}));
    QCOMPARE(lap.calculatedValuesNames(), (Names{"Zebra3", "apple3", "pear3"}));
}

void tst_Lap::addedChannelIsHandedOut_data()
{
    QTest::addColumn<bool>("calculated");

    QTest::newRow("recorded") << false;
    QTest::newRow("calculated") << true;
}

void tst_Lap::addedChannelIsHandedOut()
{
    QFETCH(bool, calculated);

    ZEP::Lap lap;
    ZEP::Channel *channel = newChannel({1, 2}, "m");
    if (calculated)
        lap.addCalculatedChannel(channel, "apple");
    else
        lap.addChannel(channel, "apple");
    const auto handedOut = calculated ? lap.calculatedChannel("apple") : lap.channel("apple");
    QCOMPARE(handedOut.data(), channel);
    handedOut->setSample(0, 9);
    COMPARE_BITS(channel->data, QVector<double>({9, 2}));
}

void tst_Lap::recordedAndCalculatedChannelsAreApart()
{
    ZEP::Lap lap;
    lap.addChannel(newChannel({1}), "apple");
    QVERIFY(lap.calculatedChannel("apple").isNull());
    lap.addCalculatedChannel(newChannel({2}), "apple");
    COMPARE_BITS(lap.channel("apple")->data, QVector<double>({1}));
    COMPARE_BITS(lap.calculatedChannel("apple")->data, QVector<double>({2}));

    lap.removeChannel("apple");
    QVERIFY(lap.channel("apple").isNull());
    QVERIFY(!lap.calculatedChannel("apple").isNull());
    lap.addChannel(newChannel({1}), "apple");
    lap.removeCalculatedChannel("apple");
    QVERIFY(!lap.channel("apple").isNull());
    QVERIFY(lap.calculatedChannel("apple").isNull());
}

void tst_Lap::ownsItsChannels_data()
{
    QTest::addColumn<bool>("calculated");
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("released");

    for (const bool calculated : {false, true}) {
        const char *kind = calculated ? "calculated" : "recorded";
        QTest::addRow("%s, replaced", kind) << calculated << "replace" << true;
        QTest::addRow("%s, removed", kind) << calculated << "remove" << true;
        QTest::addRow("%s, cleared", kind) << calculated << "clear" << true;
        QTest::addRow("%s, lap destroyed", kind) << calculated << "destroy" << true;
        QTest::addRow("%s, another one removed", kind) << calculated << "remove other" << false;
        QTest::addRow("%s, another one added", kind) << calculated << "add other" << false;
    }
}

void tst_Lap::ownsItsChannels()
{
    QFETCH(bool, calculated);
    QFETCH(QString, action);
    QFETCH(bool, released);

    const auto add = [calculated](ZEP::Lap &lap, const QString &name) {
        if (calculated)
            lap.addCalculatedChannel(newChannel({1}), name);
        else
            lap.addChannel(newChannel({1}), name);
    };
    const auto remove = [calculated](ZEP::Lap &lap, const QString &name) {
        if (calculated)
            lap.removeCalculatedChannel(name);
        else
            lap.removeChannel(name);
    };

    auto lap = std::make_unique<ZEP::Lap>();
    add(*lap, "apple");
    const QWeakPointer<ZEP::Channel> channel =
        (calculated ? lap->calculatedChannel("apple") : lap->channel("apple")).toWeakRef();
    QVERIFY(!channel.isNull());

    if (action == "replace")
        add(*lap, "apple");
    else if (action == "remove")
        remove(*lap, "apple");
    else if (action == "clear")
        lap->clear();
    else if (action == "destroy")
        lap.reset();
    else if (action == "remove other")
        remove(*lap, "Apple");
    else if (action == "add other")
        add(*lap, "Apple");
    QCOMPARE(channel.isNull(), released);
}

void tst_Lap::calculatedValues()
{
    ZEP::Lap lap;
    QVERIFY(!lap.containsCalculatedValue("dt"));
    QVERIFY(!lap.calculatedValue("dt").value.isValid());
    QVERIFY(lap.calculatedValue("dt").unit().isEmpty());
    QVERIFY(lap.calculatedValuesNames().isEmpty());

    lap.setCalculatedValue("dt", ZEP::Value(1, "s"));
    lap.setCalculatedValue("gap", 2.5, "m");
    lap.setCalculatedValue("pace", QVariant(QString("fast")), QString());
    QVERIFY(lap.containsCalculatedValue("dt"));
    QCOMPARE(lap.calculatedValue("dt").print(), QString("1 s"));
    QCOMPARE(lap.calculatedValue("gap").print(), QString("2.5 m"));
    QCOMPARE(lap.calculatedValuesNames(), (Names{"dt", "gap", "pace"}));

    lap.setCalculatedValue("dt", 2, "ms");
    lap.setCalculatedValue("gap", ZEP::Value(3, "km"));
    QCOMPARE(lap.calculatedValue("dt").print(), QString("2 ms"));
    QCOMPARE(lap.calculatedValue("gap").print(), QString("3 km"));

    lap.removeCalculatedValue("dt");
    lap.removeCalculatedValue("Gap");
    QCOMPARE(lap.calculatedValuesNames(), (Names{"gap", "pace"}));

    lap.removeAllCalculatedValues();
    QVERIFY(lap.calculatedValuesNames().isEmpty());
    QVERIFY(!lap.containsCalculatedValue("gap"));
}

void tst_Lap::calculatedValuesAreApartFromTheHeaders()
{
    ZEP::Lap lap;
    lap.addValue("Skies", QVariant(QString("Clear")), QString());
    lap.setCalculatedValue("gap", 2.5, "m");
    QVERIFY(!lap.containsCalculatedValue("Skies"));
    QVERIFY(!lap.containsValue("gap"));
    lap.removeValue("gap");
    lap.removeCalculatedValue("Skies");
    QCOMPARE(lap.valueNameList(), Names{"Skies"});
    QCOMPARE(lap.calculatedValuesNames(), Names{"gap"});
    lap.removeValues();
    QCOMPARE(lap.calculatedValuesNames(), Names{"gap"});
    lap.addValue("Skies", QVariant(QString("Clear")), QString());
    lap.removeAllCalculatedValues();
    QCOMPARE(lap.valueNameList(), Names{"Skies"});
}

void tst_Lap::value_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("inHeader");
    QTest::addColumn<QStringList>("calculated");
    QTest::addColumn<QString>("printed");

    const QStringList none;
    QTest::newRow("unknown") << "gap" << none << none << "";
    QTest::newRow("only in the header") << "gap" << QStringList{"gap"} << none << "header h";
    QTest::newRow("only calculated") << "gap" << none << QStringList{"gap"} << "calculated c";
    QTest::newRow("in both") << "gap" << QStringList{"gap"} << QStringList{"gap"} << "header h";
    QTest::newRow("in other letters") << "gap" << QStringList{"Gap"} << QStringList{"GAP"} << "";
    QTest::newRow("lap time") << "Lap time" << none << none << "00:01:23.456";
    QTest::newRow("lap time, also in the header")
        << "Lap time" << QStringList{"Lap time"} << none << "header h";
    QTest::newRow("lap time, also calculated")
        << "Lap time" << none << QStringList{"Lap time"} << "00:01:23.456";
    QTest::newRow("lap time in all three")
        << "Lap time" << QStringList{"Lap time"} << QStringList{"Lap time"} << "header h";
    QTest::newRow("lap time in other letters") << "Lap Time" << none << none << "";
    QTest::newRow("lap time in other letters, calculated")
        << "lap time" << none << QStringList{"lap time"} << "calculated c";
    QTest::newRow("header fields are no values") << "driverName" << none << none << "";
}

void tst_Lap::value()
{
    QFETCH(QString, name);
    QFETCH(QStringList, inHeader);
    QFETCH(QStringList, calculated);

    ZEP::Lap lap;
    lap.setLapTime(QTime(0, 1, 23, 456));
    lap.setDriverName("A Driver");
    for (const QString &one : qAsConst(inHeader))
        lap.addValue(one, QVariant(QString("header")), "h");
    for (const QString &one : qAsConst(calculated))
        lap.setCalculatedValue(one, QVariant(QString("calculated")), "c");
    QTEST(lap.value(name).print(), "printed");
    QCOMPARE(lap.value(name).value.isValid(), !lap.value(name).print().isEmpty());
    QCOMPARE(lap.valueNameList(), Names(inHeader));
    QCOMPARE(lap.calculatedValuesNames(), Names(calculated));
}

void tst_Lap::lapTimeIsAValue_data()
{
    QTest::addColumn<QTime>("lapTime");

    QTest::newRow("driven") << QTime(0, 1, 23, 456);
    QTest::newRow("zero") << QTime(0, 0);
    QTest::newRow("not set") << QTime();
}

void tst_Lap::lapTimeIsAValue()
{
    QFETCH(QTime, lapTime);

    ZEP::Lap lap;
    lap.setLapTime(lapTime);
    lap.setCalculatedValue("Lap time", 1, "s");
    const ZEP::Value value = lap.value("Lap time");
    QCOMPARE(value.value.userType(), int(QMetaType::QTime));
    QCOMPARE(value.value.toTime(), lapTime);
    QVERIFY(value.unit().isEmpty());
}

void tst_Lap::size_data()
{
    QTest::addColumn<Columns>("recorded");
    QTest::addColumn<Columns>("calculated");
    QTest::addColumn<int>("size");

    const QVector<double> ten(10, 1.0);
    QTest::newRow("no channels") << Columns{} << Columns{} << 0;
    QTest::newRow("first recorded counts") << Columns{{"a", {1, 2}}, {"b", {1}}} << Columns{} << 2;
    QTest::newRow("first recorded counts, though shorter")
        << Columns{{"a", {1}}, {"b", {1, 2}}} << Columns{} << 1;
    QTest::newRow("capitals are first") << Columns{{"a", {1, 2}}, {"B", {1}}} << Columns{} << 1;
    QTest::newRow("only calculated") << Columns{} << Columns{{"x", ten}} << 10;
    QTest::newRow("first calculated counts")
        << Columns{} << Columns{{"x", ten}, {"w", {1, 2, 3}}} << 3;
    QTest::newRow("recorded before calculated")
        << Columns{{"z", {1, 2}}} << Columns{{"a", ten}} << 2;
    QTest::newRow("recorded without samples before calculated")
        << Columns{{"z", {}}} << Columns{{"a", ten}} << 0;
}

void tst_Lap::size()
{
    QFETCH(Columns, recorded);
    QFETCH(Columns, calculated);

    ZEP::Lap lap;
    for (auto column = recorded.cbegin(); column != recorded.cend(); ++column)
        lap.addChannel(newChannel(column.value()), column.key());
    for (auto column = calculated.cbegin(); column != calculated.cend(); ++column)
        lap.addCalculatedChannel(newChannel(column.value()), column.key());
    QTEST(lap.size(), "size");
}

void tst_Lap::isEmpty_data()
{
    QTest::addColumn<QString>("holds");
    QTest::addColumn<bool>("empty");

    QTest::newRow("nothing") << "" << true;
    QTest::newRow("a recorded channel") << "recorded" << false;
    QTest::newRow("a calculated channel") << "calculated" << false;
    QTest::newRow("a calculated value") << "calculated value" << true;
    QTest::newRow("a value of the header") << "value" << true;
    QTest::newRow("header fields") << "header" << true;
}

void tst_Lap::isEmpty()
{
    QFETCH(QString, holds);

    ZEP::Lap lap;
    if (holds == "recorded")
        lap.addChannel(newChannel({}), "a");
    else if (holds == "calculated")
        lap.addCalculatedChannel(newChannel({}), "a");
    else if (holds == "calculated value")
        lap.setCalculatedValue("a", 1, "m");
    else if (holds == "value")
        lap.addValue("a", 1, "m");
    else if (holds == "header")
        lap.setDriverName("A Driver");
    QTEST(lap.isEmpty(), "empty");
}

void tst_Lap::clearKeepsTheHeader()
{
    const QUuid lapId = QUuid::createUuid();
    ZEP::Lap lap;
    lap.setLapId(lapId);
    lap.setDriverName("A Driver");
    lap.setLapTime(QTime(0, 1, 23, 456));
    lap.setCompleted(true);
    lap.addChannel(newChannel({1, 2}), "a");
    lap.addCalculatedChannel(newChannel({1, 2}), "b");
    lap.addValue("Skies", QVariant(QString("Clear")), QString());
    lap.setCalculatedValue("gap", 2.5, "m");

    lap.clear();
    QVERIFY(lap.isEmpty());
    QCOMPARE(lap.size(), 0);
    QVERIFY(lap.getAvailableChannels().isEmpty());
    QVERIFY(lap.getAvailableCalculatedChannels().isEmpty());
    QVERIFY(lap.valueNameList().isEmpty());
    QVERIFY(lap.calculatedValuesNames().isEmpty());
    QCOMPARE(lap.getLapId(), lapId);
    QCOMPARE(lap.getDriverName(), QString("A Driver"));
    QCOMPARE(lap.getLapTime(), QTime(0, 1, 23, 456));
    QVERIFY(lap.getCompleted());
}

void tst_Lap::copiesShareChannels_data()
{
    QTest::addColumn<bool>("assigned");

    QTest::newRow("copied") << false;
    QTest::newRow("assigned") << true;
}

void tst_Lap::copiesShareChannels()
{
    QFETCH(bool, assigned);

    ZEP::Lap lap;
    lap.addChannel(newChannel({1, 2}), "a");
    lap.addCalculatedChannel(newChannel({3, 4}), "b");

    ZEP::Lap target;
    target.addChannel(newChannel({9}), "old");
    target = lap;
    ZEP::Lap copy = assigned ? target : ZEP::Lap(lap);

    QCOMPARE(copy.getAvailableChannels(), Names{"a"});
    QCOMPARE(copy.getAvailableCalculatedChannels(), Names{"b"});
    QCOMPARE(copy.channel("a"), lap.channel("a"));
    QCOMPARE(copy.calculatedChannel("b"), lap.calculatedChannel("b"));
    copy.channel("a")->setSample(0, 7);
    lap.calculatedChannel("b")->setSample(1, 8);
    COMPARE_BITS(lap.channel("a")->data, QVector<double>({7, 2}));
    COMPARE_BITS(copy.calculatedChannel("b")->data, QVector<double>({3, 8}));
}

void tst_Lap::copiesHaveTheirOwnMaps()
{
    ZEP::Lap lap;
    lap.setDriverName("A Driver");
    lap.addChannel(newChannel({1}), "a");
    lap.addCalculatedChannel(newChannel({2}), "b");
    lap.addValue("Skies", QVariant(QString("Clear")), QString());
    lap.setCalculatedValue("gap", 2.5, "m");

    ZEP::Lap copy(lap);
    copy.setDriverName("Another Driver");
    copy.removeChannel("a");
    copy.addCalculatedChannel(newChannel({3}), "b");
    copy.addChannel(newChannel({4}), "c");
    copy.clear();
    QCOMPARE(lap.getDriverName(), QString("A Driver"));
    COMPARE_COLUMNS(lap, (Columns{{"a", {1}}}));
    COMPARE_BITS(lap.calculatedChannel("b")->data, QVector<double>({2}));
    QCOMPARE(lap.value("Skies").print(), QString("Clear"));
    QCOMPARE(lap.value("gap").print(), QString("2.5 m"));
}

void tst_Lap::copiesCarryHeaderAndValues_data()
{
    QTest::addColumn<QString>("how");

    QTest::newRow("copied") << "copied";
    QTest::newRow("assigned") << "assigned";
    QTest::newRow("move-assigned") << "moved";
}

void tst_Lap::copiesCarryHeaderAndValues()
{
    QFETCH(QString, how);

    ZEP::Lap lap;
    lap.setDriverName("A Driver");
    lap.setLapInSession(5);
    lap.setSession(ZEP::SessionRace);
    lap.addValue("Skies", QVariant(QString("Clear")), QString());
    lap.setCalculatedValue("gap", 2.5, "m");

    ZEP::Lap target;
    target.setDriverName("Another Driver");
    target.addValue("old", 1, QString());
    target.setCalculatedValue("old", 1, QString());
    if (how == "copied")
        target = ZEP::Lap(static_cast<const ZEP::Lap &>(lap));
    else if (how == "assigned")
        target = lap;
    else
        target = std::move(lap);
    QCOMPARE(target.getDriverName(), QString("A Driver"));
    QCOMPARE(target.getLapInSession(), 5);
    QCOMPARE(target.getSession(), ZEP::SessionRace);
    QCOMPARE(target.valueNameList(), Names{"Skies"});
    QCOMPARE(target.calculatedValuesNames(), Names{"gap"});
    QCOMPARE(target.value("Skies").print(), QString("Clear"));
    QCOMPARE(target.calculatedValue("gap").print(), QString("2.5 m"));
}

void tst_Lap::addSampleToACopyGrowsTheSharedChannels()
{
    ZEP::Lap lap;
    lap.addSample(sampleOf({{"m", 1}}));
    ZEP::Lap copy(lap);
    copy.addSample(sampleOf({{"a", 2}, {"m", 3}}));
    COMPARE_COLUMNS(copy, (Columns{{"a", {2}}, {"m", {1, 3}}}));
    COMPARE_COLUMNS(lap, (Columns{{"m", {1, 3}}}));
}

void tst_Lap::channelsOutliveTheirLap()
{
    auto lap = std::make_unique<ZEP::Lap>();
    lap->addChannel(newChannel({1, 2}), "a");
    ZEP::Lap copy(*lap);
    const auto handedOut = lap->channel("a");
    lap.reset();
    COMPARE_BITS(handedOut->data, QVector<double>({1, 2}));
    copy.clear();
    COMPARE_BITS(handedOut->data, QVector<double>({1, 2}));
}

void tst_Lap::movedLapHoldsEverything()
{
    ZEP::Lap lap;
    lap.addChannel(newChannel({1, 2}), "a");
    lap.addCalculatedChannel(newChannel({3, 4}), "b");
    const ZEP::Channel *recorded = lap.channel("a").data();
    const ZEP::Channel *calculated = lap.calculatedChannel("b").data();

    ZEP::Lap target;
    target.addChannel(newChannel({9}), "old");
    target = std::move(lap);
    QCOMPARE(target.getAvailableChannels(), Names{"a"});
    QCOMPARE(target.getAvailableCalculatedChannels(), Names{"b"});
    QCOMPARE(target.channel("a").data(), recorded);
    QCOMPARE(target.calculatedChannel("b").data(), calculated);
}

void tst_Lap::travelsInAVariant()
{
    ZEP::Lap lap;
    lap.setDriverName("A Driver");
    lap.addChannel(newChannel({1, 2}), "a");

    const QVariant variant = QVariant::fromValue(lap);
    QCOMPARE(variant.typeName(), "ZEP::Lap");
    auto unpacked = variant.value<ZEP::Lap>();
    QCOMPARE(unpacked.getDriverName(), QString("A Driver"));
    QCOMPARE(unpacked.channel("a"), lap.channel("a"));
}

QTEST_APPLESS_MAIN(tst_Lap)

#include "tst_lap.moc"
