#pragma once

#include "analysis/laps.h"
#include "inspect/finding.h"

#include <QString>
#include <QVector>

class Importer;
struct RecordRepair;

/// What became of a file: what an inspection finds in it, and what its plug-in made of it.
class FileCheck
{
public:
    enum class Verdict {
        Fine, ///< nothing was found
        Remarks, ///< all samples are imported, but there is something to say
        Damaged, ///< something of the file does not reach the laps
        NoRecording, ///< nothing shows that the file was ever a recording
    };

    /// Imports \a fileName with \a importer and, where it is an .ibt recording, inspects it.
    FileCheck(const QString &fileName, Importer *importer);

    Verdict verdict() const;
    /// The verdict in words, with what is lost and what is left.
    QString summary() const;

    int laps() const { return m_laps; }
    const QVector<Finding> &findings() const { return m_findings; }

private:
    static bool isChanged(const QString &fileName, const RecordRepair &repair, Laps *laps,
                          Importer *importer);
    void addLackOfMemory();
    void addErrors(const QStringList &errors);
    void explainMissingLaps(qint64 records);
    QString losses() const;

    int m_laps = 0;
    bool m_hasSamples = false; ///< in any lap
    bool m_isRecording = false;
    QVector<Finding> m_findings;
};
