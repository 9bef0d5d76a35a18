// What the session info says of the fuel.

#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "tests/support/sessioninfotext.h"

#include <QTest>

using Names = QList<QString>;

namespace {

const Names FuelNames{"Kg per fuel litre", "Maximum fuel level", "Maximum fuel percent",
                      "Maximum fuel weight", "Preferred fuel unit"};

} // namespace

class tst_IrTelemetryReaderFuel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fuel_data();
    void fuel();
    void preferredFuelUnit_data();
    void preferredFuelUnit();
    void fuelIsThePlayersOnly();
};

void tst_IrTelemetryReaderFuel::fuel_data()
{
    QTest::addColumn<QByteArray>("litres");
    QTest::addColumn<QByteArray>("percent");
    QTest::addColumn<QByteArray>("density");
    QTest::addColumn<double>("level");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<bool>("hasWeight");
    QTest::addColumn<double>("kgPerLitre");
    QTest::addColumn<double>("weight");

    const QByteArray missing;
    const auto row = [](const char *name, const QByteArray &litres, const QByteArray &percent,
                        const QByteArray &density, double level, double fraction) -> QTestData & {
        return QTest::addRow("%s", name) << litres << percent << density << level << fraction;
    };
    row("whole", "110.000", "0.500", "0.750", 55.0, 0.5) << true << 0.75 << 41.25;
    row("density is missing", "110.000", "0.500", missing, 55.0, 0.5) << false << 0.0 << 0.0;
    row("density is no number", "110.000", "0.500", "heavy", 55.0, 0.5) << false << 0.0 << 0.0;
    row("density is zero", "110.000", "0.500", "0.000", 55.0, 0.5) << false << 0.0 << 0.0;
    row("density is nearly zero", "110.000", "0.500", "1e-13", 55.0, 0.5) << false << 0.0 << 0.0;
    row("density is at the threshold", "110.000", "0.500", "1e-12", 55.0, 0.5)
        << false << 0.0 << 0.0;
    row("density is just above it", "110.000", "0.500", "2e-12", 55.0, 0.5)
        << true << 2e-12 << 55.0 * 2e-12;
    row("density is negative", "110.000", "0.500", "-0.750", 55.0, 0.5) << true << -0.75 << -41.25;
    row("density has a unit", "110.000", "0.500", "0.750 kg", 55.0, 0.5) << false << 0.0 << 0.0;
    row("litres are missing", missing, "0.500", "0.750", 0.0, 0.5) << true << 0.75 << 0.0;
    row("litres are no number", "full", "0.500", "0.750", 0.0, 0.5) << true << 0.75 << 0.0;
    row("percent is missing", "110.000", missing, "0.750", 0.0, 0.0) << true << 0.75 << 0.0;
    row("nothing", missing, missing, missing, 0.0, 0.0) << false << 0.0 << 0.0;
}

void tst_IrTelemetryReaderFuel::fuel()
{
    QFETCH(QByteArray, litres);
    QFETCH(QByteArray, percent);
    QFETCH(QByteArray, density);
    QFETCH(double, level);
    QFETCH(double, fraction);
    QFETCH(bool, hasWeight);
    QFETCH(double, kgPerLitre);
    QFETCH(double, weight);

    QByteArray text = "---\nDriverInfo:\n DriverCarIdx: 3\n";
    if (!litres.isNull())
        text += " DriverCarFuelMaxLtr: " + litres + '\n';
    if (!percent.isNull())
        text += " DriverCarMaxFuelPct: " + percent + '\n';
    if (!density.isNull())
        text += " DriverCarFuelKgPerLtr: " + density + '\n';
    const ZEP::Lap lap = lapOf(text);
    const auto check = [&lap](const char *name, double number, const char *unit) {
        const ZEP::Value value = lap.value(name);
        QCOMPARE(value.value.userType(), int(QMetaType::Double));
        COMPARE_BITS(value.value.toDouble(), number);
        QCOMPARE(value.unit(), QString(unit));
    };
    check("Maximum fuel level", level, "l");
    check("Maximum fuel percent", fraction, "pu");
    QCOMPARE(lap.containsValue("Kg per fuel litre"), hasWeight);
    QCOMPARE(lap.containsValue("Maximum fuel weight"), hasWeight);
    if (hasWeight) {
        check("Kg per fuel litre", kgPerLitre, "");
        check("Maximum fuel weight", weight, "kg");
    }
    QVERIFY(!lap.containsValue("Preferred fuel unit"));
}

void tst_IrTelemetryReaderFuel::preferredFuelUnit_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("unit"); // null: no value

    QTest::newRow("kilograms") << QByteArray("FuelLevel: 30.0 kg") << "weight";
    QTest::newRow("litres") << QByteArray("FuelLevel: 30.0 L") << "volume";
    QTest::newRow("pounds") << QByteArray("FuelLevel: 30.0 lb") << "volume";
    QTest::newRow("capitals") << QByteArray("FuelLevel: 30.0 KG") << "volume";
    QTest::newRow("blanks around and between")
        << QByteArray("FuelLevel:   30.0   kg  ") << "weight";
    QTest::newRow("carriage return behind") << QByteArray("FuelLevel: 30.0 kg\r") << "weight";
    QTest::newRow("no number") << QByteArray("FuelLevel: full kg") << "weight";
    QTest::newRow("number only") << QByteArray("FuelLevel: 30.0") << QString();
    QTest::newRow("unit only") << QByteArray("FuelLevel: kg") << QString();
    QTest::newRow("three parts") << QByteArray("FuelLevel: 30.0 kg left") << QString();
    QTest::newRow("empty") << QByteArray("FuelLevel: ") << QString();
    QTest::newRow("blanks only") << QByteArray("FuelLevel:    ") << QString();
    QTest::newRow("missing") << QByteArray() << QString();
    QTest::newRow("other letters") << QByteArray("Fuellevel: 30.0 kg") << QString();
}

void tst_IrTelemetryReaderFuel::preferredFuelUnit()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, unit);

    const ZEP::Lap lap = lapOf(textWith("FuelLevel", line));
    QCOMPARE(lap.containsValue("Preferred fuel unit"), !unit.isNull());
    if (!unit.isNull()) {
        const ZEP::Value value = lap.value("Preferred fuel unit");
        QCOMPARE(value.value.userType(), int(QMetaType::QString));
        QCOMPARE(value.value.toString(), unit);
        QVERIFY(value.unit().isEmpty());
    }
}

void tst_IrTelemetryReaderFuel::fuelIsThePlayersOnly()
{
    const ZEP::Lap other = lapOf(wholeText(), OtherInText);
    for (const QString &name : FuelNames)
        QVERIFY2(!other.containsValue(name), qPrintable(name));
    QCOMPARE(other.getDriverName(), QString("Another Driver"));
}

NAPAMMUL_TEST(tst_IrTelemetryReaderFuel)

#include "tst_irtelemetryreader_fuel.moc"
