#include "host/text/displayunits.h"
#include "tests/support/roomtests.h"

#include <QTest>

Q_DECLARE_METATYPE(UnitSystem)

class tst_DisplayUnits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void quantity_data();
    void quantity();
    void value_data();
    void value();
    void nothing();
};

/// The numbers are those of tables of units.
void tst_DisplayUnits::quantity_data()
{
    QTest::addColumn<UnitSystem>("system");
    QTest::addColumn<double>("recorded");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<QString>("shown");

    const UnitSystem raw = UnitSystem::Recorded;
    const UnitSystem metric = UnitSystem::Metric;
    const UnitSystem imperial = UnitSystem::Imperial;
    QTest::newRow("recorded") << raw << 10.0 << "m/s"
                              << "10.00000 m/s";
    QTest::newRow("km/h") << metric << 10.0 << "m/s"
                          << "36.00000 km/h";
    QTest::newRow("mph") << imperial << 44.704 << "m/s"
                         << "100.00000 mph";
    QTest::newRow("°C") << metric << 21.5 << "C"
                        << "21.50000 °C";
    QTest::newRow("°F") << imperial << -40.0 << "C"
                        << "-40.00000 °F";
    QTest::newRow("boiling in °F") << imperial << 100.0 << "C"
                                   << "212.00000 °F";
    QTest::newRow("kPa stays") << metric << 165.0 << "kPa"
                               << "165.00000 kPa";
    QTest::newRow("kPa in psi") << imperial << 100.0 << "kPa"
                                << "14.50377 psi";
    QTest::newRow("bar in psi") << imperial << 1.0 << "bar"
                                << "14.50377 psi";
    QTest::newRow("Pa in psi") << imperial << 101325.0 << "Pa"
                               << "14.69595 psi";
    QTest::newRow("gallons") << imperial << 100.0 << "l"
                             << "26.41721 gal";
    QTest::newRow("pounds") << imperial << 1.0 << "kg"
                            << "2.20462 lb";
    QTest::newRow("pounds an hour") << imperial << 10.0 << "kg/h"
                                    << "22.04623 lb/h";
    QTest::newRow("feet") << imperial << 100.0 << "m"
                          << "328.08399 ft";
    QTest::newRow("miles") << imperial << 42.195 << "km"
                           << "26.21876 mi";
    QTest::newRow("acceleration") << imperial << 9.80665 << "m/s^2"
                                  << "32.17405 ft/s²";
    QTest::newRow("torque") << imperial << 100.0 << "N*m"
                            << "73.75621 lb·ft";
    QTest::newRow("density") << imperial << 1.225 << "kg/m^3"
                             << "0.07647 lb/ft³";
    QTest::newRow("°") << metric << 3.14159265358979 << "rad"
                       << "180.00000 °";
    QTest::newRow("° in imperial units, too") << imperial << -1.0 << "rad"
                                              << "-57.29578 °";
    QTest::newRow("%") << metric << 0.5 << "pu"
                       << "50.00000 %";
    QTest::newRow("rpm") << imperial << 7000.0 << "revs/min"
                         << "7000.00000 rpm";
    QTest::newRow("unknown") << imperial << 1.0 << "furlong"
                             << "1.00000 furlong";
    QTest::newRow("none") << metric << 1.0 << ""
                          << "1.00000 ";
}

void tst_DisplayUnits::quantity()
{
    QFETCH(UnitSystem, system);
    QFETCH(double, recorded);
    QFETCH(QString, unit);
    const Quantity quantity = ::shown(Quantity{recorded, unit}, system);
    QTEST(QString(QString::number(quantity.value, 'f', 5) % QLatin1Char(' ') % quantity.unit),
          "shown");
}

void tst_DisplayUnits::value_data()
{
    QTest::addColumn<QVariant>("recorded");
    QTest::addColumn<QVariant>("shown");
    QTest::newRow("double") << QVariant(20.0) << QVariant(68.0);
    QTest::newRow("float") << QVariant(20.0F) << QVariant(68.0);
    QTest::newRow("text") << QVariant("20") << QVariant("20");
    QTest::newRow("nothing") << QVariant() << QVariant();
}

void tst_DisplayUnits::value()
{
    QFETCH(QVariant, recorded);
    const ZEP::Value value =
        ::shown(ZEP::Value(recorded, QStringLiteral("C")), UnitSystem::Imperial);
    QTEST(value.value, "shown");
    QCOMPARE(value.unit(), value.value == recorded ? QStringLiteral("C") : QStringLiteral("°F"));
}

void tst_DisplayUnits::nothing()
{
    QVERIFY(!::shown(std::optional<Quantity>(), UnitSystem::Metric));
}

NAPAMMUL_TEST(tst_DisplayUnits)
#include "tst_displayunits.moc"
