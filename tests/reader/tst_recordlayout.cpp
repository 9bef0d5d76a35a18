// The compiled variable table.

#include "model/sample.h"
#include "reader/recordlayout.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

namespace {

/// The layout of a recording's table.
RecordLayout layoutOf(const Recording &recording)
{
    const QVector<irsdk_varHeader> table = recording.variableTable();
    QVector<QString> names;
    QVector<QString> units;
    for (const irsdk_varHeader &variable : table) {
        names.append(QString::fromLatin1(variable.name).toLower());
        units.append(QString::fromLatin1(variable.unit));
    }
    return RecordLayout(recording.header(), table.constData(), names, units);
}

QByteArray lastRecord(const Recording &recording)
{
    return recording.bytes().right(recording.recordSize());
}

} // namespace

class tst_RecordLayout : public QObject
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

void tst_RecordLayout::columnsAreSortedAndEndWithTheMarker()
{
    const auto recording = Recording::empty().variables({{"Speed"}, {"Brake"}, {"speed2"}});
    const RecordLayout layout = layoutOf(recording);
    QCOMPARE(layout.columnNames(),
             (QList<QString>{QStringLiteral("brake"), QStringLiteral("fulltelemetry"),
                             QStringLiteral("speed"), QStringLiteral("speed2")}));
    QCOMPARE(layout.columns().size(), std::size_t(4));
    QCOMPARE(layout.recordBytes(), 12);
}

void tst_RecordLayout::lastOfEqualNamesStaysWithItsUnit()
{
    const auto recording = Recording::empty().variables(
        {{"Fuel", irsdk_float, "l"}, {"FUEL", irsdk_double, "kg"}, {"fuel", irsdk_int, "gal"}});
    const RecordLayout layout = layoutOf(recording);
    QCOMPARE(layout.columns().front().name, QStringLiteral("fuel"));
    QCOMPARE(layout.columns().front().unit, QStringLiteral("gal"));
    QCOMPARE(layout.columns().front().element.type(), qint32(irsdk_int));
    QCOMPARE(layout.columns().front().element.offset(), 12);
}

void tst_RecordLayout::variableOutsideTheRecordHasNoColumn()
{
    RecordingVariable outside{"Speed", irsdk_double};
    outside.offset = 1;
    const auto recording =
        Recording::empty().variables({{"Speed", irsdk_float, "m/s"}, outside}).recordSize(8);
    const RecordLayout layout = layoutOf(recording);
    QCOMPARE(layout.columns().size(), std::size_t(2));
    QCOMPARE(layout.columns().back().unit, QStringLiteral("m/s"));
}

void tst_RecordLayout::fileVariableOfTheMarkersNameIsOverruledInLaps()
{
    auto recording = Recording::empty().variables({{"FullTelemetry", irsdk_int, "x"}});
    recording.set("FullTelemetry", 7).ticks(1);
    const RecordLayout layout = layoutOf(recording);
    QCOMPARE(layout.columns().size(), std::size_t(1));
    QCOMPARE(layout.columns().front().element.type(), RecordElement::NoType);
    QCOMPARE(layout.columns().front().constant, 1.0);
    QVERIFY(layout.columns().front().unit.isEmpty());

    ZEP::Sample sample;
    layout.addTo(&sample, lastRecord(recording).constData());
    QCOMPARE(sample.value(QStringLiteral("fulltelemetry")).value, QVariant(7));
}

void tst_RecordLayout::lapVariablesAreFound()
{
    const Recording recording;
    const RecordLayout layout = layoutOf(recording);
    const QByteArray record(recording.recordSize(), '\0');
    const RecordSource source(layout, record.constData());
    for (std::size_t i = 0; i < LapVariableCount; ++i)
        QVERIFY(source.has(LapVariable(i)));
    QCOMPARE(layout.element(LapVariable::Lap)->offset(), recording.offsetOf("Lap"));
    // No recorded name has a capital.
    QVERIFY(!source.isSlow());
}

void tst_RecordLayout::missingLapVariableIsNone()
{
    const RecordLayout layout = layoutOf(Recording::empty().variables({{"Speed"}}));
    for (std::size_t i = 0; i < LapVariableCount; ++i)
        QVERIFY(!layout.element(LapVariable(i)).has_value());
}

void tst_RecordLayout::sampleHoldsEveryVariable()
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

void tst_RecordLayout::tableLongerThanItsNamesIsCut()
{
    const auto recording = Recording::empty().variables({{"Speed"}, {"Brake"}});
    const QVector<irsdk_varHeader> table = recording.variableTable();
    const RecordLayout layout(recording.header(), table.constData(), {QStringLiteral("speed")},
                              {QStringLiteral("m/s")});
    QCOMPARE(layout.columnNames(),
             (QList<QString>{QStringLiteral("fulltelemetry"), QStringLiteral("speed")}));
}

NAPAMMUL_TEST(tst_RecordLayout)

#include "tst_recordlayout.moc"
