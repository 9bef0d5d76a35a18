#include "reader/variantnumber.h"
#include "tests/support/roomtests.h"

#include <QTest>
#include <QVariant>

#include <cmath>
#include <limits>

class tst_VariantNumber : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void numbers_data();
    void numbers();
    void numbersOfNoInteger_data();
    void numbersOfNoInteger();
};

void tst_VariantNumber::numbers_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("none") << QVariant();
    QTest::newRow("text") << QVariant(QStringLiteral("7"));
    QTest::newRow("text of a number that is too large") << QVariant(QStringLiteral("1e300"));
    QTest::newRow("int") << QVariant(-7);
    QTest::newRow("bool") << QVariant(true);
    for (const double number :
         {0.0, 0.4, -0.4, 0.5, -0.5, 2.5, -2.6, 1e10, -1e10, 0x1p62, -0x1p62}) {
        QTest::addRow("double %g", number) << QVariant(number);
        QTest::addRow("float %g", number) << QVariant(float(number));
    }
    QTest::newRow("greatest double") << QVariant(std::nextafter(0x1p63, 0.0));
    QTest::newRow("least double") << QVariant(-0x1p63);
    QTest::newRow("greatest float") << QVariant(std::nextafter(0x1p63f, 0.0f));
    QTest::newRow("least float") << QVariant(-0x1p63f);
}

/// What QVariant defines is taken from it.
void tst_VariantNumber::numbers()
{
    QFETCH(QVariant, value);
    QCOMPARE(intOf(value), value.toInt());
    QCOMPARE(unsignedOf(value), value.toULongLong());
    QCOMPARE(boolOf(value), value.toBool());
}

void tst_VariantNumber::numbersOfNoInteger_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<bool>("isTrue");
    constexpr double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << false;
    QTest::newRow("infinity") << infinity << true;
    QTest::newRow("-infinity") << -infinity << false;
    for (const double number : {0x1p63, 1e19, 1e30}) {
        QTest::addRow("%g", number) << number << true;
        QTest::addRow("%g", -2 * number) << -2 * number << false;
    }
}

void tst_VariantNumber::numbersOfNoInteger()
{
    QFETCH(double, number);
    QFETCH(bool, isTrue);
    for (const QVariant &value : {QVariant(number), QVariant(float(number))}) {
        QCOMPARE(intOf(value), 0);
        QCOMPARE(unsignedOf(value), quint64(0));
        QCOMPARE(boolOf(value), isTrue);
    }
}

NAPAMMUL_TEST(tst_VariantNumber)
#include "tst_variantnumber.moc"
