#include "inspect/recordinginspection.h"

#include "ibt/ibtfile.h"
#include "inspect/recordwatch.h"
#include "inspect/sessioninfoinspection.h"
#include "inspect/variableinspection.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>

namespace {

constexpr qint64 HeaderSize = sizeof(irsdk_header);
constexpr qint64 SubHeaderSize = sizeof(irsdk_diskSubHeader);
constexpr qint64 VariableSize = sizeof(irsdk_varHeader);
/// Where the header has the offset of the records.
constexpr qint64 RecordsField = offsetof(irsdk_header, varBuf) + offsetof(irsdk_varBuf, bufOffset);
/// Where the sub-header has their number.
constexpr qint64 RecordCountField =
    HeaderSize + qint64(offsetof(irsdk_diskSubHeader, sessionRecordCount));

/// Part of the file, as a header describes it.
struct Section {
    QString name;
    qint64 offset;
    qint64 size;
    qint64 field; ///< where the header has the offset
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

QString tooShort(const QString &name, qint64 needed, qint64 there)
{
    return QStringLiteral("%1 needs %2 bytes, but the file contains %3 of them")
        .arg(name)
        .arg(needed)
        .arg(there > 0 ? QStringLiteral("only %1").arg(there) : QStringLiteral("none"));
}

/// "3 of 20 records".
QString recordsOf(qint64 part, qint64 all)
{
    return QStringLiteral("%1 of %2 records").arg(part).arg(all);
}

} // namespace

RecordingInspection::RecordingInspection(const QString &fileName)
    : m_size(QFileInfo(fileName).size())
{
    IbtFile file(QFile::encodeName(fileName).constData());
    if (!file.isOpen() || !readHeaders(&file))
        return;

    const bool isWhole = checkClaims(file);
    m_isImportable = isWhole && file.readSessionInfo() && file.readVarHeaders();
    if (isWhole && !m_isImportable)
        addUnreadable(QStringLiteral("the session info or the variable table"),
                      Finding::everything());
    const irsdk_header &header = file.header();
    m_isRecording = isPlausible(header);
    if (!m_isImportable)
        return;

    checkOverlaps(header);
    RecordWatch records(header, file.varHeaders());
    readRecords(&file, &records);
    checkText(file, records.times().sessions());
    checkRecords(file, records.times());
    if (header.bufLen <= 0)
        return;
    checkEnd(file, records);
    inspectVariables(header, file.varHeaders(), records.used(), &m_findings);
    records.report(&m_findings);
    m_repair.foreign = records.foreign();
    m_repair.renumbered = records.renumbered();
    m_repair.sessionOffset = records.times().sessionOffset();
}

/// Whether the header can be that of a recording, perhaps a damaged one.
bool RecordingInspection::isPlausible(const irsdk_header &header) const
{
    // Random numbers usually point outside of the file. So do those of a recording that was cut
    // off, but its version is one, two or, some day, a little more.
    constexpr qint32 UnlikelyVersion = 16;
    if (!m_isImportable)
        return header.ver > 0 && header.ver < UnlikelyVersion;
    // Empty parts fit into any file, even into one of zeros.
    return header.ver != 0 || header.sessionInfoLen > 0 || header.numVars > 0 || header.bufLen > 0;
}

void RecordingInspection::addUnreadable(const QString &name, const QString &lost)
{
    m_findings.add(Finding(FindingKind::Unreadable,
                           name
                               % QLatin1String(" could not be read, or the file was shortened "
                                               "while it was read"))
                       .loses(lost));
}

void RecordingInspection::readRecords(IbtFile *file, RecordWatch *records)
{
    while (const char *record = file->nextRecord())
        records->add(record);
    const irsdk_diskSubHeader &subHeader = file->diskSubHeader();
    records->end(subHeader.sessionRecordCount > 0 ? std::optional<double>(subHeader.sessionEndTime)
                                                  : std::nullopt);
}

/// False, with a finding, if the file ends before the headers do.
bool RecordingInspection::readHeaders(IbtFile *file)
{
    const auto missing = [&](const QString &name, qint64 offset, qint64 size) {
        const qint64 there = qBound(qint64(0), m_size - offset, size);
        if (there == size || file->hasReadError()) {
            addUnreadable(name, Finding::everything());
            return false;
        }
        m_findings.add(Finding(FindingKind::Header, tooShort(name, size, there))
                           .at(offset)
                           .needs(size, there)
                           .loses(Finding::everything()));
        return false;
    };
    if (!file->readHeader())
        return missing(QStringLiteral("the header"), 0, HeaderSize);
    return file->readDiskSubHeader()
        || missing(QStringLiteral("the sub-header"), HeaderSize, SubHeaderSize);
}

/// Whether session info and variable table lie in the file; a finding for each that does not.
bool RecordingInspection::checkClaims(const IbtFile &file)
{
    bool isSound = true;
    for (const Section &section :
         {sessionInfoSection(file.header()), tableSection(file.header())}) {
        const qint64 there = qBound(qint64(0), m_size - qMax(qint64(0), section.offset), m_size);
        qint64 place = section.offset;
        QString problem;
        if (section.size < 0) {
            place = section.sizeField;
            problem =
                QStringLiteral("%1 cannot be %2 bytes long").arg(section.name).arg(section.size);
        } else if (section.offset < 0) {
            place = section.field;
            problem =
                QStringLiteral("%1 cannot begin at byte %2").arg(section.name).arg(section.offset);
        } else if (section.size > there) {
            problem = tooShort(section.name, section.size, there);
        } else {
            continue;
        }
        m_findings.add(Finding(FindingKind::Claim, problem)
                           .at(place)
                           .needs(section.size, there)
                           .loses(Finding::everything()));
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
            // Whether records are lost by it, they show themselves.
            Finding finding(FindingKind::Overlap,
                            QStringLiteral("%1 and %2 share %3")
                                .arg(one.name, other.name,
                                     end - begin == 1
                                         ? QStringLiteral("a byte")
                                         : QStringLiteral("%1 bytes").arg(end - begin)));
            m_findings.add(finding.at(begin));
        }
    }
}

void RecordingInspection::checkText(const IbtFile &file, const QVector<int> &sessions)
{
    const irsdk_header &header = file.header();
    const qint64 textSize = qint64(std::strlen(file.sessionInfo()));
    const char *end = file.sessionInfo() + qMax(0, header.sessionInfoLen - 1);
    const char *rest = std::find_if(file.sessionInfo() + textSize, end, [](char c) { return c; });
    if (rest < end)
        m_findings.add(Finding(FindingKind::TextEnd,
                               QStringLiteral("a zero byte ends the session info %1 bytes early")
                                   .arg(header.sessionInfoLen - 1 - textSize))
                           .at(header.sessionInfoOffset + textSize));
    inspectSessionInfo(file.sessionInfo(),
                       {header.sessionInfoOffset, header.sessionInfoLen, sessions}, &m_findings);
}

/// Compares the sub-header's number of records with what is there.
void RecordingInspection::checkRecords(const IbtFile &file, const TickGaps &times)
{
    const irsdk_header &header = file.header();
    const qint64 begin = header.varBuf[0].bufOffset;
    const auto addDamage = [this](const QString &problem, qint64 field) {
        m_findings.add(
            Finding(FindingKind::Records, problem).at(field).loses(QStringLiteral("all records")));
    };
    if (header.bufLen <= 0) {
        addDamage(QStringLiteral("a record cannot be %1 bytes long").arg(header.bufLen),
                  qint64(offsetof(irsdk_header, bufLen)));
        return;
    }
    if (begin < 0) {
        addDamage(QStringLiteral("records cannot begin at byte %1").arg(begin), RecordsField);
        return;
    }

    const qint64 bytes = qMax(qint64(0), m_size - begin);
    m_records = bytes / header.bufLen;
    const qint64 rest = bytes % header.bufLen;
    const qint64 counted = file.diskSubHeader().sessionRecordCount;
    const bool isWhole = rest == 0 && times.endsAt(file.diskSubHeader().sessionEndTime);
    if (counted > m_records && !isWhole) {
        QString text = QLatin1String("the file ends after ") % recordsOf(m_records, counted);
        if (rest > 0)
            text +=
                QStringLiteral(" and %1 of %2 bytes of the next one").arg(rest).arg(header.bufLen);
        m_findings.add(Finding(FindingKind::Records, text)
                           .at(begin + m_records * header.bufLen)
                           .needs(counted * header.bufLen, bytes)
                           .loses(recordsOf(counted - m_records, counted)));
        return;
    }
    if (rest > 0)
        addRest(header, counted, rest);
    if (!addMisplaced(counted, times))
        checkRecordCount(counted);
}

/// Whether the sub-header's number shows that records between others are missing, or there twice.
bool RecordingInspection::addMisplaced(qint64 counted, const TickGaps &times)
{
    QString text;
    QString lost;
    if (counted > m_records && times.missingRecords() >= counted - m_records) {
        lost = recordsOf(counted - m_records, counted);
        text = lost % QLatin1String(" are missing between others");
        m_repair.missing = times.missing();
    } else if (counted > 0 && counted < m_records && times.standstills() == m_records - counted) {
        lost = QStringLiteral("the order of the records");
        text = recordsOf(m_records - counted, m_records) % QLatin1String(" are there twice");
        m_repair.repeated = times.repeated();
    } else {
        return false;
    }
    m_findings.add(
        Finding(FindingKind::Records, text).at(RecordCountField).loses(lost).inRecords());
    return true;
}

/// \a rest bytes follow the last complete record.
void RecordingInspection::addRest(const irsdk_header &header, qint64 counted, qint64 rest)
{
    // After the last record that was counted anything may follow; if none was, it is a record that
    // was being written.
    const bool isCut = counted <= 0;
    Finding finding(FindingKind::Records,
                    isCut ? QStringLiteral("the last record is cut off after %1 of %2 bytes")
                                .arg(rest)
                                .arg(header.bufLen)
                        : rest == 1
                        ? QStringLiteral("a byte after the last record is not read")
                        : QStringLiteral("%1 bytes after the last record are not read").arg(rest));
    if (isCut)
        finding.loses(QStringLiteral("the last record"));
    m_findings.add(finding.at(header.varBuf[0].bufOffset + m_records * header.bufLen)
                       .needs(header.bufLen, rest));
}

/// No record is missing, but \a counted may still be another number.
void RecordingInspection::checkRecordCount(qint64 counted)
{
    QString text;
    if (m_records == 0)
        text = QStringLiteral("there are no records, so the only lap is empty");
    else if (counted <= 0)
        text = QStringLiteral("the recording was never closed: the sub-header counts %1 records, "
                              "but all %2 in the file are imported")
                   .arg(counted)
                   .arg(m_records);
    else if (counted > m_records)
        text = QStringLiteral("the sub-header counts %1 records, but the last of the %2 in the "
                              "file has the time at which the recording ends")
                   .arg(counted)
                   .arg(m_records);
    else if (counted < m_records)
        text = QStringLiteral("the sub-header counts %1 records, but all %2 in the file are "
                              "imported")
                   .arg(counted)
                   .arg(m_records);
    else
        return;
    m_findings.add(Finding(FindingKind::RecordCount, text).at(RecordCountField));
}

/// Looks for records that could not be read or that nobody filled, and compares the sub-header's
/// end with that of a whole recording.
void RecordingInspection::checkEnd(const IbtFile &file, const RecordWatch &records)
{
    const qint64 filled = records.filled();
    const TickGaps &times = records.times();
    const irsdk_header &header = file.header();
    const irsdk_diskSubHeader &subHeader = file.diskSubHeader();
    if (records.count() < m_records) {
        const QString lost = recordsOf(m_records - records.count(), m_records);
        addUnreadable(lost, lost);
    } else if (filled < m_records) {
        const QString lost = recordsOf(m_records - filled, m_records);
        m_findings.add(Finding(FindingKind::EmptyRecords,
                               QStringLiteral("the last %1 contain only zeros").arg(lost))
                           .at(header.varBuf[0].bufOffset + filled * header.bufLen)
                           .loses(lost));
    } else if (times.hasLast() && subHeader.sessionRecordCount == m_records
               && !times.endsAt(subHeader.sessionEndTime)) {
        m_findings.add(
            Finding(FindingKind::EndTime,
                    QStringLiteral("the sub-header ends at %1 s, but the last record at %2 s")
                        .arg(subHeader.sessionEndTime, 0, 'g', 9)
                        .arg(times.last(), 0, 'g', 9))
                .at(HeaderSize + qint64(offsetof(irsdk_diskSubHeader, sessionEndTime))));
    }
}
