#include "analysis/unitfactor.h"
#include "tests/support/roomtests.h"

#include <QtTest>

class tst_UnitFactor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void factor_data();
    void factor();
};

void tst_UnitFactor::factor_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<double>("factor"); // 0: none

    QTest::newRow("the same") << "m/s"
                              << "m/s" << 1.0;
    QTest::newRow("no unit") << ""
                             << "m/s" << 1.0;
    QTest::newRow("km/h") << "km/h"
                          << "m/s" << 1 / 3.6;
    QTest::newRow("mph") << "mph"
                         << "m/s" << 0.44704;
    QTest::newRow("miles") << "mi"
                           << "m" << 1609.344;
    QTest::newRow("radians") << "rad"
                             << "deg" << 57.295779513082323;
    QTest::newRow("another quantity") << "km/h"
                                      << "m" << 0.0;
    QTest::newRow("unknown") << "furlong"
                             << "m" << 0.0;
    QTest::newRow("not that way round") << "m"
                                        << "km" << 0.0;
}

void tst_UnitFactor::factor()
{
    QFETCH(QString, unit);
    QFETCH(QString, wanted);
    QTEST(unitFactor(unit, wanted).value_or(0), "factor");
}

NAPAMMUL_TEST(tst_UnitFactor)
#include "tst_unitfactor.moc"
