#include "model/value.h"
#include "tests/support/roomtests.h"

#include <QDateTime>
#include <QTest>

#include <type_traits>

static_assert(!std::is_polymorphic_v<ZEP::Value>);

class tst_Value : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isInvalidWithoutUnitByDefault();
    void holdsQuantityAndUnit();
    void unitIsReplaced();
    void quantityIsWrittenInPlace();
    void print_data();
    void print();
    void copiesAreIndependent();
    void assignmentTakesQuantityAndUnit();
};

void tst_Value::isInvalidWithoutUnitByDefault()
{
    const ZEP::Value value;
    QVERIFY(!value.value.isValid());
    QVERIFY(value.unit().isEmpty());
}

void tst_Value::holdsQuantityAndUnit()
{
    const ZEP::Value value(QVariant(12.5), "kg");
    QCOMPARE(value.value.userType(), int(QMetaType::Double));
    QVERIFY(value.value.toDouble() == 12.5);
    QCOMPARE(value.unit(), QString("kg"));
}

void tst_Value::unitIsReplaced()
{
    ZEP::Value value(3, "m");
    value.setUnit("km");
    QCOMPARE(value.unit(), QString("km"));
    QCOMPARE(value.value, QVariant(3));
    value.setUnit(QString());
    QVERIFY(value.unit().isEmpty());
}

void tst_Value::quantityIsWrittenInPlace()
{
    ZEP::Value value(3, "m");
    value.value = QString("three");
    QCOMPARE(value.value, QVariant(QString("three")));
    QCOMPARE(value.unit(), QString("m"));
}

void tst_Value::print_data()
{
    QTest::addColumn<QVariant>("quantity");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("text");

    QTest::newRow("number with unit") << QVariant(12.5) << "kg"
                                      << "12.5 kg";
    QTest::newRow("number without unit") << QVariant(3) << ""
                                         << "3";
    QTest::newRow("number with null unit") << QVariant(3) << QString() << "3";
    QTest::newRow("percent sign") << QVariant(3) << "%"
                                  << "3 %";
    QTest::newRow("unit of one blank") << QVariant(3) << " "
                                       << "3  ";
    QTest::newRow("negative number") << QVariant(-0.25) << "m"
                                     << "-0.25 m";
    QTest::newRow("truth") << QVariant(true) << ""
                           << "true";
    QTest::newRow("text with unit") << QVariant(QString("dry")) << "track"
                                    << "dry track";
    QTest::newRow("empty text with unit") << QVariant(QString("")) << "m"
                                          << " m";
    QTest::newRow("time") << QVariant(QTime(0, 1, 23, 456)) << ""
                          << "00:01:23.456";
    QTest::newRow("invalid") << QVariant() << ""
                             << "";
    QTest::newRow("invalid with unit") << QVariant() << "kg"
                                       << " kg";
}

void tst_Value::print()
{
    QFETCH(QVariant, quantity);
    QFETCH(QString, unit);

    ZEP::Value value(quantity, unit);
    QTEST(value.print(), "text");
}

void tst_Value::copiesAreIndependent()
{
    const ZEP::Value source(3, "m");
    ZEP::Value copy(source);
    copy.value = 4;
    copy.setUnit("km");
    QCOMPARE(source.value, QVariant(3));
    QCOMPARE(source.unit(), QString("m"));
    QCOMPARE(copy.print(), QString("4 km"));
}

void tst_Value::assignmentTakesQuantityAndUnit()
{
    const ZEP::Value source(3, "m");
    ZEP::Value target("old", "kg");
    target = source;
    QCOMPARE(target.print(), QString("3 m"));
    target = ZEP::Value();
    QVERIFY(!target.value.isValid());
    QVERIFY(target.unit().isEmpty());
}

NAPAMMUL_TEST(tst_Value)

#include "tst_value.moc"
