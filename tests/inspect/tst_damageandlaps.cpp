// The verdict of an inspection on recordings damaged in many ways, held against what became of the
// laps. docs/check.md shows the result.
//
// NAPAMMUL_DAMAGE_RECORDING names a sound recording to damage instead of the generated ones, and
// NAPAMMUL_DAMAGE_SEEDS says how many times each damage is done; the table is then only printed.

#include "analysis/lapfingerprint.h"
#include "inspect/recordinginspection.h"
#include "tests/inspect/damage.h"
#include "tests/support/demofile.h"
#include "tests/support/importfixture.h"
#include "tests/support/roomtests.h"

#include <QBuffer>
#include <QFile>
#include <QTest>

#include <algorithm>
#include <functional>

namespace {

constexpr int Seeds = 20; // for each kind of damage, unless the environment says otherwise

struct Count {
    int changed = 0; ///< laps
    int found = 0; ///< of these, called damaged
    int same = 0;
    int falseAlarms = 0; ///< of these, called damaged
};

} // namespace

class tst_DamageAndLaps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void verdictsAreThoseOfTheDocumentation();

private:
    QVector<RecordingParts> soundRecordings();
    void damage(const RecordingParts &sound, const QByteArray &laps, const DamageKind &kind,
                std::uint32_t seed, Count *count);

    ImportFixture m_fixture;
};

QVector<RecordingParts> tst_DamageAndLaps::soundRecordings()
{
    QFile file(qEnvironmentVariable("NAPAMMUL_DAMAGE_RECORDING"));
    if (!file.fileName().isEmpty() && file.open(QIODevice::ReadOnly))
        return {RecordingParts(file.readAll())};
    QVector<RecordingParts> recordings;
    for (const SessionKind session : {SessionKind::Testing, SessionKind::Race}) {
        DemoOptions options = shortDrive(session);
        options.rate = 10;
        options.stints = 1;
        recordings.append(RecordingParts(DemoFile(options).bytes));
    }
    return recordings;
}

void tst_DamageAndLaps::damage(const RecordingParts &sound, const QByteArray &laps,
                               const DamageKind &kind, std::uint32_t seed, Count *count)
{
    const QString fileName = m_fixture.write(kind.damaged(sound, seed));
    const QByteArray damaged = fingerprint(m_fixture.importFile(fileName).laps);
    const bool isChanged = damaged != laps;
    const RecordingInspection inspection(fileName);
    QVector<Finding> findings = inspection.findings();
    if (inspection.repair().isPossible(inspection.records())) {
        QBuffer repaired;
        QVERIFY(repaired.open(QIODevice::WriteOnly)
                && inspection.repair().write(fileName, &repaired));
        if (fingerprint(m_fixture.importBytes(repaired.data()).laps) == damaged)
            findings = findingsOutsideOfLaps(findings);
    }
    const bool isDamaged = !inspection.isRecording()
        || std::any_of(findings.begin(), findings.end(), std::mem_fn(&Finding::isDamage));
    ++(isChanged ? count->changed : count->same);
    if (isChanged)
        count->found += isDamaged;
    else
        count->falseAlarms += isDamaged;
    if (isChanged != isDamaged && qEnvironmentVariableIsSet("NAPAMMUL_DAMAGE_SHOWN")) {
        QFile::copy(fileName,
                    qEnvironmentVariable("NAPAMMUL_DAMAGE_SHOWN")
                        % QStringLiteral("/%1-%2.ibt").arg(QLatin1String(kind.name)).arg(seed));
        qInfo("%s, %s, seed %u: %s", kind.part, kind.name, seed,
              isChanged ? "missed" : "false alarm");
        for (const Finding &finding : findings)
            qInfo("    %s %s: %s", finding.isDamage() ? "+" : "-", qPrintable(finding.place()),
                  qPrintable(finding.text));
    }
}

void tst_DamageAndLaps::verdictsAreThoseOfTheDocumentation()
{
    const QVector<RecordingParts> recordings = soundRecordings();
    QVector<QByteArray> laps;
    for (const RecordingParts &sound : recordings) {
        const QString fileName = m_fixture.write(sound.bytes());
        laps.append(fingerprint(m_fixture.importFile(fileName).laps));
        for (const Finding &finding : RecordingInspection(fileName).findings())
            QVERIFY2(!finding.isDamage(), qPrintable(finding.text));
    }
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("NAPAMMUL_DAMAGE_SEEDS", &isGiven);
    QString table;
    const QByteArray only = qgetenv("NAPAMMUL_DAMAGE_PART");
    for (const DamageKind &kind : damageKinds()) {
        if (!only.isEmpty() && only != kind.part)
            continue;
        Count count;
        for (int seed = 0; seed < (isGiven ? given : Seeds); ++seed) {
            const int i = seed % recordings.size();
            damage(recordings.at(i), laps.at(i), kind, std::uint32_t(seed), &count);
        }
        table += QStringLiteral("| %1 | %2 | %3 | %4 | %5 | %6 | %7 |\n")
                     .arg(QLatin1String(kind.part), QLatin1String(kind.name))
                     .arg(count.changed)
                     .arg(count.found)
                     .arg(count.changed - count.found)
                     .arg(count.same)
                     .arg(count.falseAlarms);
    }
    if (isGiven || !only.isEmpty() || qEnvironmentVariableIsSet("NAPAMMUL_DAMAGE_RECORDING")) {
        qInfo("\n%s", qPrintable(table));
        return;
    }
    QFile docs(QFINDTESTDATA("../../docs/check.md"));
    QVERIFY(docs.open(QIODevice::ReadOnly));
    QVERIFY2(QString::fromUtf8(docs.readAll()).contains(table), qPrintable(table));
}

NAPAMMUL_TEST(tst_DamageAndLaps)
#include "tst_damageandlaps.moc"
