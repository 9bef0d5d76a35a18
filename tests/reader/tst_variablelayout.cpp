// The compiled variable table.

#include "model/sample.h"
#include "reader/variablelayout.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

namespace {

/// The layout of a recording's table.
VariableLayout layoutOf(const Recording &recording)
{
    const QVector<irsdk_varHeader> table = recording.variableTable();
    QVector<QString> names;
    QVector<QString> units;
    for (const irsdk_varHeader &variable : table) {
        names.append(QString::fromLatin1(variable.name).toLower());
        units.append(QString::fromLatin1(variable.unit));
    }
    return VariableLayout(recording.header(), table.constData(), names, units);
}

QByteArray lastRecord(const Recording &recording)
{
    return recording.bytes().right(recording.recordSize());
}

} // namespace

class tst_VariableLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columnsAreSortedAndEndWithTheMarker();
    void lastOfEqualNamesStaysWithItsUnit();
    void variableOutsideTheRecordHasNoColumn();
    void fileVariableOfTheMarkersNameIsOverruledInLaps();
    void lapVariablesAreFound();
    void missingLapVariableIsNone();
    void sampleHoldsEveryVariable();
    void tableLongerThanItsNamesIsCut();
};

void tst_VariableLayout::columnsAreSortedAndEndWithTheMarker()
{
    const auto recording = Recording::empty().variables({{"Speed"}, {"Brake"}, {"speed2"}});
    const VariableLayout layout = layoutOf(recording);
    QCOMPARE(layout.columnNames(),
             (QList<QString>{QStringLiteral("brake"), QStringLiteral("fulltelemetry"),
                             QStringLiteral("speed"), QStringLiteral("speed2")}));
    QCOMPARE(layout.columns().size(), std::size_t(4));
    QCOMPARE(layout.recordBytes(), 12);
}

void tst_VariableLayout::lastOfEqualNamesStaysWithItsUnit()
{
    const auto recording = Recording::empty().variables(
        {{"Fuel", irsdk_float, "l"}, {"FUEL", irsdk_double, "kg"}, {"fuel", irsdk_int, "gal"}});
    const VariableLayout layout = layoutOf(recording);
    QCOMPARE(layout.columns().front().name, QStringLiteral("fuel"));
    QCOMPARE(layout.columns().front().unit, QStringLiteral("gal"));
    QCOMPARE(layout.columns().front().element.type(), qint32(irsdk_int));
    QCOMPARE(layout.columns().front().element.offset(), 12);
}

void tst_VariableLayout::variableOutsideTheRecordHasNoColumn()
{
    RecordingVariable outside{"Speed", irsdk_double};
    outside.offset = 1;
    const auto recording =
        Recording::empty().variables({{"Speed", irsdk_float, "m/s"}, outside}).recordSize(8);
    const VariableLayout layout = layoutOf(recording);
    QCOMPARE(layout.columns().size(), std::size_t(2));
    QCOMPARE(layout.columns().back().unit, QStringLiteral("m/s"));
}

void tst_VariableLayout::fileVariableOfTheMarkersNameIsOverruledInLaps()
{
    auto recording = Recording::empty().variables({{"FullTelemetry", irsdk_int, "x"}});
    recording.set("FullTelemetry", 7).ticks(1);
    const VariableLayout layout = layoutOf(recording);
    QCOMPARE(layout.columns().size(), std::size_t(1));
    QCOMPARE(layout.columns().front().element.type(), RecordElement::NoType);
    QCOMPARE(layout.columns().front().constant, 1.0);
    QVERIFY(layout.columns().front().unit.isEmpty());

    ZEP::Sample sample;
    layout.addTo(&sample, lastRecord(recording).constData());
    QCOMPARE(sample.value(QStringLiteral("fulltelemetry")).value, QVariant(7));
}

void tst_VariableLayout::lapVariablesAreFound()
{
    const Recording recording;
    const VariableLayout layout = layoutOf(recording);
    const QByteArray record(recording.recordSize(), '\0');
    const RecordSource source(layout, record.constData());
    for (std::size_t i = 0; i < LapVariableCount; ++i)
        QVERIFY(source.has(LapVariable(i)));
    QCOMPARE(layout.element(LapVariable::Lap)->offset(), recording.offsetOf("Lap"));
    // No recorded name has a capital.
    QVERIFY(!source.isSlow());
}

void tst_VariableLayout::missingLapVariableIsNone()
{
    const VariableLayout layout = layoutOf(Recording::empty().variables({{"Speed"}}));
    for (std::size_t i = 0; i < LapVariableCount; ++i)
        QVERIFY(!layout.element(LapVariable(i)).has_value());
}

void tst_VariableLayout::sampleHoldsEveryVariable()
{
    Recording recording;
    recording.set("Lap", 3).set("LapDistPct", 0.5).set("IsOnTrack", true).ticks(1);
    ZEP::Sample sample;
    layoutOf(recording).addTo(&sample, lastRecord(recording).constData());
    QCOMPARE(sample.valueNameList().size(), Recording::defaultVariables().size());
    QCOMPARE(sample.value(QStringLiteral("lap")).value, QVariant(3));
    QCOMPARE(sample.value(QStringLiteral("lapdistpct")).value, QVariant(0.5f));
    QCOMPARE(sample.value(QStringLiteral("isontrack")).value, QVariant(true));
    QVERIFY(!sample.containsValue(QStringLiteral("fulltelemetry")));
}

void tst_VariableLayout::tableLongerThanItsNamesIsCut()
{
    const auto recording = Recording::empty().variables({{"Speed"}, {"Brake"}});
    const QVector<irsdk_varHeader> table = recording.variableTable();
    const VariableLayout layout(recording.header(), table.constData(), {QStringLiteral("speed")},
                                {QStringLiteral("m/s")});
    QCOMPARE(layout.columnNames(),
             (QList<QString>{QStringLiteral("fulltelemetry"), QStringLiteral("speed")}));
}

NAPAMMUL_TEST(tst_VariableLayout)

#include "tst_variablelayout.moc"
