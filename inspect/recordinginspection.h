#pragma once

#include "ibt/ibtformat.h"
#include "inspect/findinglist.h"
#include "inspect/recordrepair.h"

#include <QString>
#include <QVector>

class IbtFile;
class RecordWatch;
class TickGaps;

/// What an .ibt recording contains and what is wrong with it, according to the file itself.
///
/// A plug-in says little about a damaged recording, and nothing about one from which it gets laps.
class RecordingInspection
{
public:
    /// Reads the whole of \a fileName, a regular file, once.
    explicit RecordingInspection(const QString &fileName);

    /// False where nothing shows that the file was ever a recording.
    bool isRecording() const { return m_isRecording; }
    /// Whether headers, session info and variable table lie in the file. Nothing is imported from
    /// a recording that lacks one of them.
    bool isImportable() const { return m_isImportable; }
    /// Complete records.
    qint64 records() const { return m_records; }
    QVector<Finding> findings() const { return m_findings.findings(); }
    /// How to make a file as it would be with sound records.
    const RecordRepair &repair() const { return m_repair; }

private:
    bool readHeaders(IbtFile *file);
    bool checkClaims(const IbtFile &file);
    void checkOverlaps(const irsdk_header &header);
    void checkText(const IbtFile &file, const QVector<int> &sessions);
    bool isPlausible(const irsdk_header &header) const;
    void addUnreadable(const QString &name, const QString &lost);
    static void readRecords(IbtFile *file, RecordWatch *records);
    void checkRecords(const IbtFile &file, const TickGaps &times);
    bool addMisplaced(qint64 counted, const TickGaps &times);
    void addRest(const irsdk_header &header, qint64 counted, qint64 rest);
    void checkRecordCount(qint64 counted);
    void checkEnd(const IbtFile &file, const RecordWatch &records);

    qint64 m_size = 0; ///< bytes of the file
    bool m_isRecording = false;
    bool m_isImportable = false;
    qint64 m_records = 0;
    FindingList m_findings;
    RecordRepair m_repair;
};
