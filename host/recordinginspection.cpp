#include "host/recordinginspection.h"

#include "host/recordtimes.h"
#include "host/sessioninfoinspection.h"
#include "host/variableinspection.h"
#include "ibt/ibtfile.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstring>

namespace {

using Severity = Finding::Severity;

constexpr qint64 HeaderSize = sizeof(irsdk_header);
constexpr qint64 SubHeaderSize = sizeof(irsdk_diskSubHeader);
constexpr qint64 VariableSize = sizeof(irsdk_varHeader);

/// Part of the file, as a header tells.
struct Section {
    QString name;
    qint64 offset;
    qint64 size;
};

Section sessionInfoSection(const irsdk_header &header)
{
    return {QStringLiteral("the session info"), header.sessionInfoOffset, header.sessionInfoLen};
}

Section tableSection(const irsdk_header &header)
{
    return {QStringLiteral("the variable table"), header.varHeaderOffset,
            header.numVars * VariableSize};
}

QString everything()
{
    return QStringLiteral("everything");
}

} // namespace

RecordingInspection::RecordingInspection(const QString &fileName)
    : m_size(QFileInfo(fileName).size())
{
    IbtFile file(QFile::encodeName(fileName).constData());
    if (!file.isOpen() || !readHeaders(&file))
        return;

    m_isImportable = checkClaims(file) && file.readSessionInfo() && file.readVarHeaders();
    // Random numbers point outside of the file as a rule; those of a recording that was cut off
    // do so as well, but its version is one, two or, some day, a little more.
    constexpr qint32 UnlikelyVersion = 16;
    const irsdk_header &header = file.header();
    m_isRecording = m_isImportable || (header.ver > 0 && header.ver < UnlikelyVersion);
    if (!m_isImportable)
        return;

    checkOverlaps(header);
    checkText(file);
    checkRecords(file);
    if (header.bufLen <= 0)
        return;
    inspectVariables(header, file.varHeaders(), &m_findings);
    RecordTimes times(header, file.varHeaders());
    if (!times.isKnown())
        return;
    while (const char *record = file.nextRecord())
        times.add(record);
    times.report(&m_findings);
}

/// False, with a finding, if the file ends before the headers do.
bool RecordingInspection::readHeaders(IbtFile *file)
{
    const auto missing = [this](const char *name, qint64 offset, qint64 size) {
        Finding finding;
        finding.severity = Severity::Damage;
        finding.kind = QStringLiteral("header");
        finding.offset = offset;
        finding.wanted = size;
        finding.had = qBound(qint64(0), m_size - offset, size);
        finding.text = QStringLiteral("%1 takes %2 bytes, the file has %3 of them")
                           .arg(QLatin1String(name))
                           .arg(size)
                           .arg(*finding.had);
        finding.lost = everything();
        m_findings.add(finding);
        return false;
    };
    if (!file->readHeader())
        return missing("the header", 0, HeaderSize);
    return file->readDiskSubHeader() || missing("the sub-header", HeaderSize, SubHeaderSize);
}

/// Whether session info and variable table lie in the file; a finding for each that does not.
bool RecordingInspection::checkClaims(const IbtFile &file)
{
    bool isSound = true;
    for (const Section &section :
         {sessionInfoSection(file.header()), tableSection(file.header())}) {
        Finding finding;
        finding.severity = Severity::Damage;
        finding.kind = QStringLiteral("claim");
        finding.lost = everything();
        finding.offset = section.offset;
        finding.wanted = section.size;
        finding.had = qBound(qint64(0), m_size - qMax(qint64(0), section.offset), m_size);
        if (section.size < 0)
            finding.text =
                QStringLiteral("%1 cannot take %2 bytes").arg(section.name).arg(section.size);
        else if (section.offset < 0)
            finding.text = QStringLiteral("%1 cannot begin in front of the file").arg(section.name);
        else if (section.size > *finding.had)
            finding.text = QStringLiteral("%1 takes %2 bytes, the file has %3 of them")
                               .arg(section.name)
                               .arg(section.size)
                               .arg(*finding.had);
        else
            continue;
        m_findings.add(finding);
        isSound = false;
    }
    return isSound;
}

void RecordingInspection::checkOverlaps(const irsdk_header &header)
{
    QVector<Section> sections = {
        {QStringLiteral("the headers"), 0, HeaderSize + SubHeaderSize},
        sessionInfoSection(header),
        tableSection(header),
    };
    const qint64 records = header.varBuf[0].bufOffset;
    if (header.bufLen > 0 && records >= 0 && records < m_size)
        sections.append({QStringLiteral("the records"), records, m_size - records});
    for (int i = 0; i < sections.size(); ++i) {
        for (int j = i + 1; j < sections.size(); ++j) {
            const Section &one = sections.at(i);
            const Section &other = sections.at(j);
            const qint64 begin = qMax(one.offset, other.offset);
            const qint64 end = qMin(one.offset + one.size, other.offset + other.size);
            if (begin >= end)
                continue;
            Finding finding;
            finding.kind = QStringLiteral("overlap");
            finding.offset = begin;
            finding.text = QStringLiteral("%1 and %2 share %3 bytes")
                               .arg(one.name, other.name)
                               .arg(end - begin);
            m_findings.add(finding);
        }
    }
}

void RecordingInspection::checkText(const IbtFile &file)
{
    const irsdk_header &header = file.header();
    const qint64 textSize = qint64(std::strlen(file.sessionInfo()));
    const char *end = file.sessionInfo() + qMax(0, header.sessionInfoLen - 1);
    const char *rest = std::find_if(file.sessionInfo() + textSize, end, [](char c) { return c; });
    if (rest < end) {
        Finding finding;
        finding.kind = QStringLiteral("text-end");
        finding.offset = header.sessionInfoOffset + textSize;
        finding.text = QStringLiteral("a zero ends the session info %1 bytes early")
                           .arg(header.sessionInfoLen - 1 - textSize);
        m_findings.add(finding);
    }
    inspectSessionInfo(file.sessionInfo(), header.sessionInfoOffset, &m_findings);
}

/// Compares the sub-header's number of records with what is there.
void RecordingInspection::checkRecords(const IbtFile &file)
{
    const irsdk_header &header = file.header();
    const qint64 begin = header.varBuf[0].bufOffset;
    const qint64 counted = file.diskSubHeader().sessionRecordCount;

    Finding finding;
    finding.kind = QStringLiteral("records");
    finding.severity = Severity::Damage;
    finding.lost = QStringLiteral("all records");
    if (header.bufLen <= 0 || begin < 0) {
        finding.text = header.bufLen <= 0
            ? QStringLiteral("a record cannot take %1 bytes").arg(header.bufLen)
            : QStringLiteral("records cannot begin in front of the file");
        finding.offset = header.bufLen <= 0 ? qint64(offsetof(irsdk_header, bufLen)) : begin;
        m_findings.add(finding);
        return;
    }

    const qint64 bytes = qMax(qint64(0), m_size - begin);
    m_records = bytes / header.bufLen;
    const qint64 rest = bytes % header.bufLen;
    finding.offset = begin + m_records * header.bufLen;
    if (counted > m_records) {
        finding.wanted = counted * header.bufLen;
        finding.had = bytes;
        finding.text =
            QStringLiteral("the file ends after %1 of %2 records").arg(m_records).arg(counted)
            % (rest > 0 ? QStringLiteral(" and %1 of %2 bytes of the next one")
                              .arg(rest)
                              .arg(header.bufLen)
                        : QString());
        finding.lost = QStringLiteral("%1 of %2 records").arg(counted - m_records).arg(counted);
        m_findings.add(finding);
        return;
    }

    if (rest > 0) {
        // Behind the last record that was counted anything may lie; else it is one being written.
        const bool isCut = counted <= 0;
        finding.severity = isCut ? Severity::Damage : Severity::Remark;
        finding.lost = isCut ? QStringLiteral("the last record") : QString();
        finding.wanted = header.bufLen;
        finding.had = rest;
        finding.text = isCut
            ? QStringLiteral("the last record is cut off after %1 of %2 bytes")
                  .arg(rest)
                  .arg(header.bufLen)
            : QStringLiteral("%1 bytes behind the last record are not read").arg(rest);
        m_findings.add(finding);
    }

    Finding count;
    count.kind = QStringLiteral("record-count");
    count.offset = HeaderSize + qint64(offsetof(irsdk_diskSubHeader, sessionRecordCount));
    if (m_records == 0)
        count.text = QStringLiteral("there is no record, so the only lap is empty");
    else if (counted <= 0)
        count.text = QStringLiteral("the recording was never closed: the sub-header counts %1 "
                                    "records, all %2 of the file are imported")
                         .arg(counted)
                         .arg(m_records);
    else if (counted < m_records)
        count.text = QStringLiteral("the sub-header counts %1 records, all %2 of the file are "
                                    "imported")
                         .arg(counted)
                         .arg(m_records);
    else
        return;
    m_findings.add(count);
}
