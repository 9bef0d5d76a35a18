#include "inspect/findinglist.h"
#include "inspect/variableinspection.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

Q_DECLARE_METATYPE(RecordingVariable)

class tst_VariableInspection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data();
    void finds();
    void missingVariables_data();
    void missingVariables();
    void unusableVariables_data();
    void unusableVariables();
    void arrayThatEndsOutside();
    void equalNames_data();
    void equalNames();
    void replacedVariableMayBeBroken();
    void sharedBytes_data();
    void sharedBytes();
    void placeOfAFinding();
};

namespace {

/// \a record is one of the recording; without it nobody knows which bytes are used.
QVector<Finding> inspected(const Recording &recording, const QByteArray &record = QByteArray())
{
    UsedBytes used;
    used.add(record.constData(), record.size());
    FindingList findings;
    const QVector<irsdk_varHeader> table = recording.variableTable();
    inspectVariables(recording.header(), table.constData(), used, &findings);
    return findings.findings();
}

} // namespace

void tst_VariableInspection::finds_data()
{
    QTest::addColumn<RecordingVariable>("variable");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("lost");
    const QString none;
    const QString lost = QStringLiteral("channel odd");
    // The variables before it use 46 bytes of the record's 60.
    const auto at = [](qint32 offset, qint32 type = irsdk_float, qint32 count = 1) {
        return RecordingVariable{"Odd", type, "", "", count, offset};
    };

    QTest::newRow("sound") << at(56) << none << none;
    QTest::newRow("array") << at(48, irsdk_float, 3) << none << none;
    QTest::newRow("one byte outside")
        << at(57) << "needs bytes 57 to 60 of a record of 60 bytes" << lost;
    QTest::newRow("outside") << at(60) << "needs bytes 60 to 63 of a record of 60 bytes" << lost;
    QTest::newRow("far outside") << at(2147483647, irsdk_double)
                                 << "needs bytes 2147483647 to 2147483654 of a record of 60 bytes"
                                 << lost;
    QTest::newRow("in front") << at(-4) << "needs bytes -4 to -1 of a record of 60 bytes" << lost;
    QTest::newRow("partly in front")
        << at(-1) << "needs bytes -1 to 2 of a record of 60 bytes" << lost;
    QTest::newRow("last element outside")
        << at(52, irsdk_float, 3) << "needs bytes 52 to 63 of a record of 60 bytes" << lost;
    QTest::newRow("first element outside")
        << at(-4, irsdk_float, 2) << "needs bytes -4 to 3 of a record of 60 bytes" << none;
    QTest::newRow("more elements than any record")
        << at(0, irsdk_double, 2147483647) << "needs bytes 0 to 17179869175 of a record of 60 bytes"
        << lost;
    QTest::newRow("text beyond the record") << at(59, irsdk_char, 100) << none << none;
    QTest::newRow("text outside") << at(60, irsdk_char, 100)
                                  << "needs byte 60 of a record of 60 bytes" << lost;
    QTest::newRow("text of no characters") << at(0, irsdk_char, 0) << none << none;
    QTest::newRow("no elements") << at(0, irsdk_float, 0) << "has 0 elements" << lost;
    QTest::newRow("fewer than no elements") << at(0, irsdk_int, -2) << "has -2 elements" << lost;
    for (const qint32 type : {-1, 6, 1000000})
        QTest::addRow("type %d", type)
            << at(0, type)
            << QStringLiteral("has the unknown type %1; its channel repeats the value that was "
                              "read before it, or zeros")
                   .arg(type)
            << lost;
    QTest::newRow("no name") << RecordingVariable{"", irsdk_bool, "", "", 1, 50} << "has no name"
                             << none;
    QTest::newRow("a name that fills its field")
        << RecordingVariable{QByteArray(32, 'x'), irsdk_bool, "", "", 1, 60}
        << "needs byte 60 of a record of 60 bytes"
        << QString(QLatin1String("channel ") % QString(32, QLatin1Char('x')));
    QTest::newRow("a name that a terminal would obey")
        << RecordingVariable{"a\x1b[2J", irsdk_bool, "", "", 1, 60}
        << "needs byte 60 of a record of 60 bytes" << QStringLiteral("channel a\x1b[2j");
}

void tst_VariableInspection::finds()
{
    QFETCH(RecordingVariable, variable);
    QFETCH(QString, text);
    QFETCH(QString, lost);

    Recording recording;
    recording.variable(variable).recordSize(60);
    const QVector<Finding> findings = inspected(recording, QByteArray(46, 'x'));
    QCOMPARE(findings.size(), text.isEmpty() ? 0 : 1);
    if (text.isEmpty())
        return;
    const Finding &finding = findings.constFirst();
    QCOMPARE(finding.text, text);
    QCOMPARE(finding.lost, lost);
    QCOMPARE(finding.isDamage(), !lost.isEmpty());
}

void tst_VariableInspection::missingVariables_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QString>("lost");
    QTest::newRow("place") << QByteArray("LapDistPct") << "all laps";
    QTest::newRow("on track") << QByteArray("IsOnTrack") << "all laps";
    QTest::newRow("in the pits") << QByteArray("OnPitRoad") << "stints that begin in the garage";
    QTest::newRow("lap") << QByteArray("Lap") << "the ends of laps";
    QTest::newRow("running lap time") << QByteArray("LapCurrentLapTime") << "the ends of laps";
    QTest::newRow("last lap time") << QByteArray("LapLastLapTime") << "lap times";
    QTest::newRow("no matter") << QByteArray("FuelLevel") << "";
}

void tst_VariableInspection::missingVariables()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, lost);

    QVector<RecordingVariable> table;
    for (const RecordingVariable &variable : Recording::defaultVariables()) {
        if (variable.name != name)
            table.append(variable);
    }
    const QVector<Finding> findings = inspected(Recording().variables(table));
    QCOMPARE(findings.size(), lost.isEmpty() ? 0 : 1);
    if (lost.isEmpty())
        return;
    QVERIFY(findings.constFirst().kind == FindingKind::MissingVariable);
    QCOMPARE(findings.constFirst().variable, QString::fromLatin1(name));
    QCOMPARE(findings.constFirst().lost, lost);
}

/// Of an array that ends outside of the record an earlier element is read: ticks are followed.
void tst_VariableInspection::arrayThatEndsOutside()
{
    const QVector<Finding> findings =
        inspected(Recording().withVariable("LapDistPct", &irsdk_varHeader::count, 100));
    QCOMPARE(findings.constFirst().lost, QStringLiteral("channel lapdistpct"));
}

void tst_VariableInspection::unusableVariables_data()
{
    missingVariables_data();
}

/// A variable outside of the record is as good as missing, and says so.
void tst_VariableInspection::unusableVariables()
{
    QFETCH(QByteArray, name);
    QFETCH(QString, lost);

    const QVector<Finding> findings =
        inspected(Recording().withVariable(name.constData(), &irsdk_varHeader::offset, 1000));
    QCOMPARE(findings.size(), 1);
    const Finding &finding = findings.constFirst();
    QVERIFY(finding.kind == FindingKind::Variable);
    QCOMPARE(finding.lost, lost.isEmpty() ? QStringLiteral("channel fuellevel") : lost);
    QCOMPARE(finding.text.contains(QLatin1String("; ")), !lost.isEmpty());
}

void tst_VariableInspection::equalNames_data()
{
    QTest::addColumn<RecordingVariable>("later");
    QTest::addColumn<QStringList>("lost");
    const auto at = [](qint32 offset, qint32 type = irsdk_float, qint32 count = 1) {
        return RecordingVariable{"LAPDISTPCT", type, "", "", count, offset};
    };
    const QStringList earlier = {QStringLiteral("an earlier variable lapdistpct")};
    const QStringList later = {QStringLiteral("a later variable lapdistpct")};
    QTest::newRow("sound") << at(46) << earlier;
    QTest::newRow("outside") << at(60) << later;
    QTest::newRow("in front") << at(-4) << later;
    QTest::newRow("partly in front") << at(-1) << later;
    QTest::newRow("no elements") << at(46, irsdk_float, 0) << later;
    QTest::newRow("last element inside") << at(-1, irsdk_bool, 2) << QStringList(earlier.first());
    QTest::newRow("first element inside")
        << at(56, irsdk_float, 2) << QStringList(earlier + QStringList("channel lapdistpct"));
    QTest::newRow("partly in front, and elements inside")
        << at(-5, irsdk_float, 3) << QStringList(earlier.first());
    QTest::newRow("unknown type") << at(46, 9)
                                  << QStringList(earlier + QStringList("channel lapdistpct"));
}

/// The last one of a name counts, whatever its letters' case, but only if it has a value.
void tst_VariableInspection::equalNames()
{
    QFETCH(RecordingVariable, later);
    QFETCH(QStringList, lost);

    Recording recording;
    recording.variable(later).recordSize(60);
    QStringList found;
    for (const Finding &finding : inspected(recording, QByteArray(46, 'x'))) {
        if (!finding.lost.isEmpty() && finding.kind != FindingKind::SharedBytes)
            found.append(finding.lost);
    }
    QCOMPARE(found, lost);
}

/// What a later variable replaces is no loss of its channel.
void tst_VariableInspection::replacedVariableMayBeBroken()
{
    Recording recording;
    recording.variable({"Odd", irsdk_float, "", "", 0, 50}).variable({"ODD", irsdk_float});
    const QVector<Finding> findings = inspected(recording);
    QCOMPARE(findings.size(), 1);
    QVERIFY(findings.constFirst().kind == FindingKind::EqualNames);
    QCOMPARE(findings.constFirst().lost, QStringLiteral("an earlier variable odd"));
}

void tst_VariableInspection::sharedBytes_data()
{
    QTest::addColumn<RecordingVariable>("variable");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("text");
    // "Wide" uses bytes 50 to 57 of the record's 70.
    const auto at = [](qint32 offset, qint32 type = irsdk_float, qint32 count = 1) {
        return RecordingVariable{"Odd", type, "", "", count, offset};
    };
    QTest::newRow("in front") << at(46) << ""
                              << "";
    QTest::newRow("behind") << at(58) << ""
                            << "";
    QTest::newRow("same bytes") << at(50, irsdk_double) << "variable Odd"
                                << "shares bytes 50 to 57 of the record with Wide";
    QTest::newRow("begins inside") << at(57) << "variable Odd"
                                   << "shares byte 57 of the record with Wide";
    QTest::newRow("ends inside") << at(47) << "variable Wide"
                                 << "shares byte 50 of the record with Odd";
    QTest::newRow("inside") << at(52) << "variable Odd"
                            << "shares bytes 52 to 55 of the record with Wide";
    QTest::newRow("array") << at(46, irsdk_bool, 5) << "variable Wide"
                           << "shares byte 50 of the record with Odd";
    QTest::newRow("text") << at(46, irsdk_char, 5) << "variable Wide"
                          << "shares byte 50 of the record with Odd";
}

void tst_VariableInspection::sharedBytes()
{
    QFETCH(RecordingVariable, variable);
    QFETCH(QString, place);
    QFETCH(QString, text);

    Recording recording;
    recording.variable({"Wide", irsdk_double, "", "", 1, 50}).variable(variable).recordSize(70);
    const QVector<Finding> findings = inspected(recording);
    QCOMPARE(findings.size(), text.isEmpty() ? 0 : 1);
    if (text.isEmpty())
        return;
    QCOMPARE(findings.constFirst().place(), place);
    QCOMPARE(findings.constFirst().text, text);
    QVERIFY(!findings.constFirst().isDamage());
    // Where something is recorded, one of them is not where its values are.
    const QVector<Finding> used =
        inspected(recording, QByteArray(46, '\0') + QByteArray(12, 'x') + QByteArray(12, '\0'));
    QCOMPARE(used.constFirst().isDamage(), variable.offset != 50);
}

void tst_VariableInspection::placeOfAFinding()
{
    // The last one of a name counts, whatever its letters' case.
    Recording recording;
    recording.variable({"SPEED", irsdk_bool});
    const QVector<Finding> findings = inspected(recording);
    QCOMPARE(findings.size(), 1);
    const Finding &finding = findings.constFirst();
    QVERIFY(finding.kind == FindingKind::EqualNames);
    QCOMPARE(finding.variable, QStringLiteral("Speed"));
    QCOMPARE(finding.offset.value_or(-1),
             qint64(recording.sectionOffset(Recording::Table) + 10 * Recording::VariableSize));
}

NAPAMMUL_TEST(tst_VariableInspection)
#include "tst_variableinspection.moc"
