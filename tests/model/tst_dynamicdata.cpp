#include "model/dynamicdata.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <type_traits>

static_assert(std::has_virtual_destructor_v<ZEP::DynamicData>);

using Names = QList<QString>;

class tst_DynamicData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyByDefault();
    void lookingUpNeverInserts();
    void addsFromValue();
    void addsFromParts();
    void replacesQuantityAndUnit_data();
    void replacesQuantityAndUnit();
    void namesAscendCapitalsFirst();
    void namesAreCaseSensitive();
    void emptyNameIsAName();
    void removesOneValue();
    void removingAnUnknownNameDoesNothing();
    void removesAllValues_data();
    void removesAllValues();
    void copiesAreIndependent();
    void assignmentReplacesEverything();
    void isDestroyedThroughItsBase();
};

void tst_DynamicData::isEmptyByDefault()
{
    const ZEP::DynamicData data;
    QVERIFY(data.valueNameList().isEmpty());
    QVERIFY(!data.hasValues());
}

void tst_DynamicData::lookingUpNeverInserts()
{
    const ZEP::DynamicData data;
    for (const QString &name : {QString("fuel"), QString(""), QString()}) {
        const ZEP::Value value = data.value(name);
        QVERIFY(!value.value.isValid());
        QVERIFY(value.unit().isEmpty());
        QVERIFY(!data.containsValue(name));
    }
    QVERIFY(data.valueNameList().isEmpty());
}

void tst_DynamicData::addsFromValue()
{
    ZEP::DynamicData data;
    data.addValue("fuel", ZEP::Value(30, "l"));
    QVERIFY(data.containsValue("fuel"));
    QVERIFY(data.hasValues());
    QCOMPARE(data.value("fuel").value, QVariant(30));
    QCOMPARE(data.value("fuel").unit(), QString("l"));
    QCOMPARE(data.valueNameList(), Names{"fuel"});
}

void tst_DynamicData::addsFromParts()
{
    ZEP::DynamicData data;
    data.addValue("fuel", QVariant(QString("thirty")), "l");
    QVERIFY(data.containsValue("fuel"));
    QCOMPARE(data.value("fuel").value, QVariant(QString("thirty")));
    QCOMPARE(data.value("fuel").unit(), QString("l"));
    QCOMPARE(data.valueNameList(), Names{"fuel"});
}

void tst_DynamicData::replacesQuantityAndUnit_data()
{
    QTest::addColumn<bool>("firstFromParts");
    QTest::addColumn<bool>("secondFromParts");

    QTest::newRow("value over value") << false << false;
    QTest::newRow("parts over value") << false << true;
    QTest::newRow("value over parts") << true << false;
    QTest::newRow("parts over parts") << true << true;
}

void tst_DynamicData::replacesQuantityAndUnit()
{
    QFETCH(bool, firstFromParts);
    QFETCH(bool, secondFromParts);

    const auto add = [](ZEP::DynamicData &data, bool fromParts, const QVariant &quantity,
                        const QString &unit) {
        if (fromParts)
            data.addValue("fuel", quantity, unit);
        else
            data.addValue("fuel", ZEP::Value(quantity, unit));
    };

    ZEP::DynamicData data;
    add(data, firstFromParts, 30, "l");
    add(data, secondFromParts, 22.5, "kg");
    QCOMPARE(data.valueNameList(), Names{"fuel"});
    QCOMPARE(data.value("fuel").value, QVariant(22.5));
    QCOMPARE(data.value("fuel").unit(), QString("kg"));

    add(data, secondFromParts, QVariant(), QString());
    QVERIFY(data.containsValue("fuel"));
    QVERIFY(!data.value("fuel").value.isValid());
    QVERIFY(data.value("fuel").unit().isEmpty());
}

void tst_DynamicData::namesAscendCapitalsFirst()
{
    ZEP::DynamicData data;
    for (const QString &name : {QString("pear"), QString("apple"), QString("Zebra")})
        data.addValue(name, 1, QString());
    QCOMPARE(data.valueNameList(), (Names{"Zebra", "apple", "pear"}));
}

void tst_DynamicData::namesAreCaseSensitive()
{
    ZEP::DynamicData data;
    data.addValue("speed", 1, "m/s");
    data.addValue("Speed", 2, "km/h");
    QCOMPARE(data.valueNameList(), (Names{"Speed", "speed"}));
    QCOMPARE(data.value("speed").print(), QString("1 m/s"));
    QCOMPARE(data.value("Speed").print(), QString("2 km/h"));
    QVERIFY(!data.containsValue("SPEED"));
}

void tst_DynamicData::emptyNameIsAName()
{
    ZEP::DynamicData data;
    data.addValue("", 1, "m");
    QVERIFY(data.containsValue(""));
    QCOMPARE(data.value("").print(), QString("1 m"));
    QCOMPARE(data.valueNameList(), Names{""});
}

void tst_DynamicData::removesOneValue()
{
    ZEP::DynamicData data;
    data.addValue("fuel", 30, "l");
    data.addValue("speed", 50, "m/s");
    data.removeValue("fuel");
    QVERIFY(!data.containsValue("fuel"));
    QVERIFY(!data.value("fuel").value.isValid());
    QCOMPARE(data.valueNameList(), Names{"speed"});
}

void tst_DynamicData::removingAnUnknownNameDoesNothing()
{
    ZEP::DynamicData data;
    data.addValue("fuel", 30, "l");
    data.removeValue("Fuel");
    data.removeValue("");
    QCOMPARE(data.valueNameList(), Names{"fuel"});
    QCOMPARE(data.value("fuel").print(), QString("30 l"));
}

void tst_DynamicData::removesAllValues_data()
{
    QTest::addColumn<bool>("byClear");

    QTest::newRow("removeValues") << false;
    QTest::newRow("clear") << true;
}

void tst_DynamicData::removesAllValues()
{
    QFETCH(bool, byClear);

    ZEP::DynamicData data;
    data.addValue("fuel", 30, "l");
    data.addValue("speed", 50, "m/s");
    if (byClear)
        data.clear();
    else
        data.removeValues();
    QVERIFY(data.valueNameList().isEmpty());
    QVERIFY(!data.containsValue("fuel"));
    QVERIFY(!data.value("speed").value.isValid());
}

void tst_DynamicData::copiesAreIndependent()
{
    ZEP::DynamicData source;
    source.addValue("fuel", 30, "l");
    ZEP::DynamicData copy(source);
    QCOMPARE(copy.value("fuel").print(), QString("30 l"));

    copy.addValue("fuel", 22.5, "kg");
    copy.addValue("speed", 50, "m/s");
    QCOMPARE(source.valueNameList(), Names{"fuel"});
    QCOMPARE(source.value("fuel").print(), QString("30 l"));

    source.clear();
    QCOMPARE(copy.valueNameList(), (Names{"fuel", "speed"}));
}

void tst_DynamicData::assignmentReplacesEverything()
{
    ZEP::DynamicData source;
    source.addValue("fuel", 30, "l");
    ZEP::DynamicData target;
    target.addValue("speed", 50, "m/s");
    target = source;
    QCOMPARE(target.valueNameList(), Names{"fuel"});
    QCOMPARE(target.value("fuel").print(), QString("30 l"));
}

void tst_DynamicData::isDestroyedThroughItsBase()
{
    struct Derived : ZEP::DynamicData {
        explicit Derived(bool *flag) : destroyed(flag) { }
        ~Derived() override { *destroyed = true; }
        bool *destroyed;
    };

    bool destroyed = false;
    const ZEP::DynamicData *data = new Derived(&destroyed);
    delete data;
    QVERIFY(destroyed);
}

NAPAMMUL_TEST(tst_DynamicData)

#include "tst_dynamicdata.moc"
