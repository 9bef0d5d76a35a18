#include "tests/support/lapchannels.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <type_traits>

static_assert(std::is_base_of_v<ZEP::LapHeader, ZEP::Lap>);
static_assert(std::is_convertible_v<ZEP::Lap *, ZEP::LapHeader *>);
static_assert(std::has_virtual_destructor_v<ZEP::Lap>);
static_assert(std::is_copy_constructible_v<ZEP::Lap> && std::is_copy_assignable_v<ZEP::Lap>);
static_assert(std::is_move_assignable_v<ZEP::Lap>);

using Names = QList<QString>;

class tst_Lap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyByDefault();
    void lookingUpAChannelNeverInserts();
    void namesAscendCapitalsFirst();
    void channelsAreTheOnesHandedOutByName();
    void addedChannelIsHandedOut_data();
    void addedChannelIsHandedOut();
    void recordedAndCalculatedChannelsAreApart();
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

void tst_Lap::channelsAreTheOnesHandedOutByName()
{
    ZEP::Lap lap;
    QVERIFY(lap.channels().isEmpty());
    lap.addChannel(newChannel({1}), "pear");
    lap.addChannel(newChannel({2}), "apple");
    lap.addCalculatedChannel(newChannel({3}), "fig");
    QCOMPARE(lap.channels().keys(), (Names{"apple", "pear"}));
    for (const QString &name : lap.getAvailableChannels())
        QCOMPARE(lap.channels().value(name), lap.channel(name));
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

NAPAMMUL_TEST(tst_Lap)

#include "tst_lap.moc"
