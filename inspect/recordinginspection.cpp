#include "inspect/recordinginspection.h"

#include "ibt/ibtfile.h"
#include "inspect/sessioninfoinspection.h"
#include "inspect/tickgaps.h"
#include "inspect/variableinspection.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace {

using Severity = Finding::Severity;

constexpr qint64 HeaderSize = sizeof(irsdk_header);
constexpr qint64 SubHeaderSize = sizeof(irsdk_diskSubHeader);
constexpr qint64 VariableSize = sizeof(irsdk_varHeader);
/// Where the header tells the offset of the records.
constexpr qint64 RecordsField = offsetof(irsdk_header, varBuf) + offsetof(irsdk_varBuf, bufOffset);

/// Part of the file, as a header tells.
struct Section {
    QString name;
    qint64 offset;
    qint64 size;
    qint64 field; ///< where the header tells the offset
    qint64 sizeField = 0; ///< and the size
};

Section sessionInfoSection(const irsdk_header &header)
{
    return {QStringLiteral("the session info"), header.sessionInfoOffset, header.sessionInfoLen,
            offsetof(irsdk_header, sessionInfoOffset), offsetof(irsdk_header, sessionInfoLen)};
}

Section tableSection(const irsdk_header &header)
{
    return {QStringLiteral("the variable table"), header.varHeaderOffset,
            header.numVars * VariableSize, offsetof(irsdk_header, varHeaderOffset),
            offsetof(irsdk_header, numVars)};
}

} // namespace

RecordingInspection::RecordingInspection(const QString &fileName)
    : m_size(QFileInfo(fileName).size())
{
    IbtFile file(QFile::encodeName(fileName).constData());
    if (!file.isOpen() || !readHeaders(&file))
        return;

    const bool holdsAll = checkClaims(file);
    m_isImportable = holdsAll && file.readSessionInfo() && file.readVarHeaders();
    if (holdsAll && !m_isImportable)
        addUnreadable(QStringLiteral("the session info or the variable table"),
                      Finding::everything());
    const irsdk_header &header = file.header();
    m_isRecording = isPlausible(header);
    if (!m_isImportable)
        return;

    checkOverlaps(header);
    checkText(file);
    TickGaps times(header, file.varHeaders());
    const qint64 filled = readRecords(&file, &times);
    checkRecords(file, times);
    if (header.bufLen <= 0)
        return;
    checkEnd(file, times, filled);
    inspectVariables(header, file.varHeaders(), &m_findings);
    times.report(&m_findings);
}

/// Whether a header that was not damaged too much can be one of a recording.
bool RecordingInspection::isPlausible(const irsdk_header &header) const
{
    // Random numbers point outside of the file as a rule; those of a recording that was cut off
    // do so as well, but its version is one, two or, some day, a little more.
    constexpr qint32 UnlikelyVersion = 16;
    if (!m_isImportable)
        return header.ver > 0 && header.ver < UnlikelyVersion;
    // Nothing lies in every file, also in one of zeros.
    return header.ver != 0 || header.sessionInfoLen > 0 || header.numVars > 0 || header.bufLen > 0;
}

void RecordingInspection::addUnreadable(const QString &name, const QString &lost)
{
    Finding finding;
    finding.severity = Severity::Damage;
    finding.kind = QStringLiteral("unreadable");
    finding.text = name % QLatin1String(" could not be read, or the file became shorter meanwhile");
    finding.lost = lost;
    m_findings.add(finding);
}

/// Shows all records to \a times, but for those at the end that hold nothing. Returns how many hold
/// something, or lie in front of such a one.
qint64 RecordingInspection::readRecords(IbtFile *file, TickGaps *times)
{
    std::vector<char> empty; // as long as a record that is really there
    qint64 filled = 0;
    qint64 emptySince = 0;
    while (const char *record = file->nextRecord()) {
        ++m_readRecords;
        empty.resize(std::size_t(file->header().bufLen));
        if (std::memcmp(record, empty.data(), empty.size()) == 0) {
            ++emptySince;
            continue;
        }
        for (; emptySince > 0; --emptySince, ++filled)
            times->add(empty.data());
        times->add(record);
        ++filled;
    }
    return filled;
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
        finding.lost = Finding::everything();
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
        finding.lost = Finding::everything();
        finding.offset = section.size < 0 ? section.sizeField
            : section.offset < 0          ? section.field
                                          : section.offset;
        finding.wanted = section.size;
        finding.had = qBound(qint64(0), m_size - qMax(qint64(0), section.offset), m_size);
        if (section.size < 0)
            finding.text =
                QStringLiteral("%1 cannot take %2 bytes").arg(section.name).arg(section.size);
        else if (section.offset < 0)
            finding.text =
                QStringLiteral("%1 cannot begin at byte %2").arg(section.name).arg(section.offset);
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
        {QStringLiteral("the headers"), 0, HeaderSize + SubHeaderSize, 0},
        sessionInfoSection(header),
        tableSection(header),
    };
    const qint64 records = header.varBuf[0].bufOffset;
    if (header.bufLen > 0 && records >= 0 && records < m_size)
        sections.append({QStringLiteral("the records"), records, m_size - records, RecordsField});
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
            if (other.field == RecordsField) {
                finding.severity = Severity::Damage;
                finding.lost = QStringLiteral("the records that lie there");
            }
            finding.offset = begin;
            finding.text = QStringLiteral("%1 and %2 share %3")
                               .arg(one.name, other.name,
                                    end - begin == 1 ? QStringLiteral("a byte")
                                                     : QStringLiteral("%1 bytes").arg(end - begin));
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
void RecordingInspection::checkRecords(const IbtFile &file, const TickGaps &times)
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
            : QStringLiteral("records cannot begin at byte %1").arg(begin);
        finding.offset = header.bufLen <= 0 ? qint64(offsetof(irsdk_header, bufLen)) : RecordsField;
        m_findings.add(finding);
        return;
    }

    const qint64 bytes = qMax(qint64(0), m_size - begin);
    m_records = bytes / header.bufLen;
    const qint64 rest = bytes % header.bufLen;
    finding.offset = begin + m_records * header.bufLen;
    const bool isWhole = rest == 0 && times.endsAt(file.diskSubHeader().sessionEndTime);
    if (counted > m_records && !isWhole) {
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
    else if (counted > m_records)
        count.text = QStringLiteral("the sub-header counts %1 records, but the last one of the %2 "
                                    "in the file is of the time at which it ends")
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

/// Looks for records that nobody filled, of which the first \a filled are none, and compares the
/// sub-header's end with that of a whole recording.
void RecordingInspection::checkEnd(const IbtFile &file, const TickGaps &times, qint64 filled)
{
    const irsdk_diskSubHeader &subHeader = file.diskSubHeader();
    if (m_readRecords < m_records) {
        const QString lost =
            QStringLiteral("%1 of %2 records").arg(m_records - m_readRecords).arg(m_records);
        addUnreadable(lost, lost);
        return;
    }
    Finding finding;
    if (filled < m_records) {
        const irsdk_header &header = file.header();
        finding.severity = Severity::Damage;
        finding.kind = QStringLiteral("empty-records");
        finding.offset = header.varBuf[0].bufOffset + filled * header.bufLen;
        finding.lost = QStringLiteral("%1 of %2 records").arg(m_records - filled).arg(m_records);
        finding.text = QStringLiteral("the last %1 of %2 records hold nothing but zeros")
                           .arg(m_records - filled)
                           .arg(m_records);
    } else if (times.hasLast() && subHeader.sessionRecordCount == m_records
               && !times.endsAt(subHeader.sessionEndTime)) {
        finding.kind = QStringLiteral("end-time");
        finding.offset = HeaderSize + qint64(offsetof(irsdk_diskSubHeader, sessionEndTime));
        finding.text = QStringLiteral("the sub-header ends at %1 s, the last record is of %2 s")
                           .arg(subHeader.sessionEndTime, 0, 'g', 9)
                           .arg(times.last(), 0, 'g', 9);
    } else {
        return;
    }
    m_findings.add(finding);
}
