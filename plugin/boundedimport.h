#pragma once

#include <QtGlobal>

class IbtFile;
class LapList;
class iRTelemetryReader;

/// Makes laps of the records of a file, unless they would need memory out of all proportion to the
/// file (IbtLapMemory). How much they need is only known at its end, so it may be read three times:
///
/// 1. Laps are made until they need more than MadeUncounted. A recording that stays below, or whose
///    laps cannot get out of proportion, is done: every recording of a simulator ends here.
/// 2. The laps made so far are dropped, and all laps are followed again, counted but not made. If
///    they need more than is allowed, the recording is refused.
/// 3. All laps are made. The limit also holds in this pass: the file may have grown since it was
///    counted.
class BoundedImport
{
public:
    /// Memory of laps that are made before anybody counts, in bytes.
    static const qint64 MadeUncounted;

    /// Follows the cars of \a reader through the records of \a file and adds to \a laps. The head
    /// of the file has been read, and \a reader knows its session info.
    BoundedImport(IbtFile *file, iRTelemetryReader *reader, LapList *laps)
        : m_file(file), m_reader(reader), m_laps(laps)
    {
    }

    /// Makes the laps that end in the recording. False if they need too much memory; the list may
    /// then contain some of them.
    bool run();

private:
    enum class Laps { Made, Counted };

    bool readAll(Laps laps, qint64 limit);
    void start(Laps laps);
    bool canGetOutOfProportion(qint64 channels) const;

    IbtFile *m_file;
    iRTelemetryReader *m_reader;
    LapList *m_laps;

    // Of the latest pass.
    qint64 m_recordBytes = 0;
    qint64 m_lapBytes = 0; ///< the most at any tick: a lap that was dropped needed memory as well
};
