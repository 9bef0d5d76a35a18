#include "host/commands/filecheck.h"

#include "analysis/lapfingerprint.h"
#include "host/files/importer.h"
#include "host/files/pluginregistry.h"
#include "ibt/ibtlimits.h"
#include "inspect/recordinginspection.h"

#include <QDir>
#include <QStringList>
#include <QTemporaryFile>

#include <algorithm>
#include <functional>
#include <new>

namespace {

QString counted(int count, const char *one, const char *more)
{
    return QString::number(count) % QLatin1Char(' ') % QLatin1String(count == 1 ? one : more);
}

} // namespace

FileCheck::FileCheck(const QString &fileName, Importer *importer)
{
    ImportAttempt attempt = importer->attempt(fileName);
    m_laps = int(attempt.laps.size());
    m_hasSamples = std::any_of(attempt.laps.begin(), attempt.laps.end(),
                               [](const auto &lap) { return lap->size() > 0; });
    m_isRecording = m_laps > 0 || attempt.lacksMemory; // for all that is known
    if (attempt.lacksMemory) {
        addLackOfMemory();
        return;
    }
    if (!formatWildcards(attempt.format).contains(QLatin1String("*.ibt"))) {
        addErrors(attempt.errors);
        return;
    }
    try {
        const RecordingInspection inspection(fileName);
        m_isRecording = inspection.isRecording();
        m_findings = inspection.findings();
        if (inspection.repair().isPossible(inspection.records())
            && !isChanged(fileName, inspection.repair(), &attempt.laps, importer))
            m_findings = findingsOutsideOfLaps(m_findings);
        addErrors(attempt.errors);
        if (inspection.isImportable())
            explainMissingLaps(inspection.records());
    } catch (const std::bad_alloc &) {
        m_isRecording = true; // for all that is known
        addErrors(attempt.errors);
        addLackOfMemory();
    }
}

/// Whether \a laps of \a fileName are others than those of sound records; true if nobody can tell.
/// They are deleted before others are imported.
bool FileCheck::isChanged(const QString &fileName, const RecordRepair &repair, Laps *laps,
                          Importer *importer)
{
    QTemporaryFile repaired(QDir::temp().filePath(QStringLiteral("zepimport-XXXXXX.ibt")));
    if (!repaired.open() || !repair.write(fileName, &repaired) || !repaired.flush())
        return true;
    const QByteArray before = fingerprint(*laps);
    laps->clear();
    return fingerprint(importer->attempt(repaired.fileName()).laps) != before;
}

void FileCheck::addLackOfMemory()
{
    m_findings.append(
        Finding(FindingKind::Memory,
                QStringLiteral("there is not enough memory to look into the recording"))
            .loses(QStringLiteral("unknown")));
}

/// For a recording whose parts are all there, although nothing is left of it, or nothing that was
/// driven.
void FileCheck::explainMissingLaps(qint64 records)
{
    if (m_laps == 0)
        m_findings.append(Finding(FindingKind::TooLarge,
                                  QStringLiteral("its laps would need more than %1 MB and more "
                                                 "than %2 bytes for each byte of records, or more "
                                                 "memory than is available")
                                      .arg(IbtLapMemory::AlwaysAllowed / IbtLapMemory::MB)
                                      .arg(IbtLapMemory::AllowedPerRecordByte))
                              .loses(Finding::everything()));
    else if (!m_hasSamples && records > 0 && verdict() != Verdict::Damaged)
        m_findings.append(
            Finding(FindingKind::NoLap,
                    QStringLiteral("no lap of the player's car begins, so the only lap is empty")));
}

/// What a plug-in says is a finding; if there is no lap, it is why everything is lost.
void FileCheck::addErrors(const QStringList &errors)
{
    for (const QString &error : errors) {
        Finding finding(FindingKind::Import, error);
        if (m_laps == 0)
            finding.loses(Finding::everything());
        m_findings.append(finding);
    }
}

FileCheck::Verdict FileCheck::verdict() const
{
    if (!m_isRecording)
        return Verdict::NoRecording;
    if (std::any_of(m_findings.begin(), m_findings.end(), std::mem_fn(&Finding::isDamage)))
        return Verdict::Damaged;
    return m_findings.isEmpty() ? Verdict::Fine : Verdict::Remarks;
}

QString FileCheck::summary() const
{
    const QString laps = counted(m_laps, "lap", "laps");
    QString left;
    if (m_laps > 0)
        left = m_hasSamples ? QString(QLatin1String("; ") % laps % QLatin1String(" left"))
                            : QStringLiteral("; an empty lap is left");
    switch (verdict()) {
    case Verdict::Fine:
        return QLatin1String("fine, ") % laps;
    case Verdict::Remarks:
        return QLatin1String("complete with remarks, ") % laps;
    case Verdict::Damaged:
        return QLatin1String("damaged, lost: ") % losses() % left;
    case Verdict::NoRecording:
        break;
    }
    return QStringLiteral("not a recording");
}

/// What the findings name as lost: the first few, and how many more there are.
QString FileCheck::losses() const
{
    constexpr int MostNames = 3;
    QStringList lost;
    int others = 0;
    for (const Finding &finding : m_findings) {
        if (!finding.isDamage())
            continue;
        others += finding.others;
        if (!finding.lost.isEmpty() && !lost.contains(finding.lost))
            lost.append(finding.lost);
    }
    if (lost.contains(Finding::everything()))
        return Finding::everything();
    others += std::max(0, lost.size() - MostNames);
    const QString named = lost.mid(0, MostNames).join(QLatin1String(", "));
    return others > 0 ? QString(named % QStringLiteral(" and %1 more").arg(others)) : named;
}
