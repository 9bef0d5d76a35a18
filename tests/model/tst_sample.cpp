#include "model/sample.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <type_traits>

static_assert(std::is_base_of_v<ZEP::DynamicData, ZEP::Sample>);
static_assert(std::is_convertible_v<ZEP::Sample *, ZEP::DynamicData *>);
static_assert(std::has_virtual_destructor_v<ZEP::Sample>);

using Names = QList<QString>;

class tst_Sample : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyWithoutCarByDefault();
    void carId_data();
    void carId();
    void holdsNamedValues();
    void carIdIsNoNamedValue();
    void copiesAreIndependent_data();
    void copiesAreIndependent();
    void travelsInAVariant();
};

void tst_Sample::isEmptyWithoutCarByDefault()
{
    const ZEP::Sample sample;
    QVERIFY(!sample.carId().isValid());
    QVERIFY(sample.valueNameList().isEmpty());
}

void tst_Sample::carId_data()
{
    QTest::addColumn<QVariant>("id");

    QTest::newRow("index") << QVariant(7);
    QTest::newRow("zero") << QVariant(0);
    QTest::newRow("negative") << QVariant(-1);
    QTest::newRow("text") << QVariant(QString("car 7"));
    QTest::newRow("unset again") << QVariant();
}

void tst_Sample::carId()
{
    QFETCH(QVariant, id);

    ZEP::Sample sample;
    sample.setCarId(12);
    sample.setCarId(id);
    QCOMPARE(sample.carId(), id);
    QCOMPARE(sample.carId().userType(), id.userType());
}

void tst_Sample::holdsNamedValues()
{
    ZEP::Sample sample;
    sample.addValue("speed", 50.0, "m/s");
    sample.addValue("lap", ZEP::Value(3, QString()));
    QCOMPARE(sample.valueNameList(), (Names{"lap", "speed"}));
    QCOMPARE(sample.value("speed").print(), QString("50 m/s"));
    sample.removeValue("lap");
    QCOMPARE(sample.valueNameList(), Names{"speed"});
}

void tst_Sample::carIdIsNoNamedValue()
{
    ZEP::Sample sample;
    sample.setCarId(7);
    QVERIFY(sample.valueNameList().isEmpty());
    sample.addValue("speed", 50.0, "m/s");
    sample.clear();
    QVERIFY(sample.valueNameList().isEmpty());
    QCOMPARE(sample.carId(), QVariant(7));
}

void tst_Sample::copiesAreIndependent_data()
{
    QTest::addColumn<bool>("assigned");

    QTest::newRow("copied") << false;
    QTest::newRow("assigned over another car's sample") << true;
}

void tst_Sample::copiesAreIndependent()
{
    QFETCH(bool, assigned);

    ZEP::Sample source;
    source.setCarId(7);
    source.addValue("speed", 50.0, "m/s");

    ZEP::Sample other;
    other.setCarId(8);
    other.addValue("rpm", 9000, QString());
    other = source;

    ZEP::Sample copy = assigned ? other : ZEP::Sample(source);
    QCOMPARE(copy.carId(), QVariant(7));
    QCOMPARE(copy.valueNameList(), Names{"speed"});
    QCOMPARE(copy.value("speed").print(), QString("50 m/s"));

    copy.setCarId(9);
    copy.addValue("speed", 180.0, "km/h");
    copy.addValue("rpm", 9000, QString());
    QCOMPARE(source.carId(), QVariant(7));
    QCOMPARE(source.valueNameList(), Names{"speed"});
    QCOMPARE(source.value("speed").print(), QString("50 m/s"));
}

void tst_Sample::travelsInAVariant()
{
    ZEP::Sample sample;
    sample.setCarId(7);
    sample.addValue("speed", 50.0, "m/s");

    const QVariant variant = QVariant::fromValue(sample);
    QCOMPARE(variant.typeName(), "ZEP::Sample");
    const auto unpacked = variant.value<ZEP::Sample>();
    QCOMPARE(unpacked.carId(), QVariant(7));
    QCOMPARE(unpacked.value("speed").print(), QString("50 m/s"));
}

NAPAMMUL_TEST(tst_Sample)

#include "tst_sample.moc"
