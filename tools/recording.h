// Builds recordings in memory for tests and tools, sound ones and broken ones.
//
//     Recording rec;                            // a dozen variables, one driver, no records yet
//     rec.set("IsOnTrack", true).set("Lap", 1); // values of the records to come
//     rec.ticks(60, [](Recording &r, int tick) { r.set("LapDistPct", tick / 60.0); });
//     rec.ticks(120);                           // 120 more with the same values
//
//     rec.bytes()                                            // the whole file
//     rec.with(&irsdk_header::sessionInfoLen, -1).bytes()    // the same with one broken field
//     rec.bytes().chopped(rec.recordSize() / 2)              // cut in the last record
//
// Functions that build change the recording and return it. Functions named with...() return a
// changed copy and leave the recording as it is, so that one good recording serves many rows of a
// test table. Mistakes in a test (a name that is not in the table, a value outside its type) end
// the program with a message.
#pragma once

#include "ibt/ibtformat.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <array>
#include <functional>
#include <limits>

class QIODevice;
class QString;

/// One entry of a variable table, before it has its place in the record.
struct RecordingVariable {
    /// Offset that means "directly after the packed variables before it".
    static constexpr qint32 Packed = std::numeric_limits<qint32>::min();

    QByteArray name{}; ///< at most 32 bytes are written; 32 leave no terminating zero
    qint32 type = irsdk_float; ///< irsdk_VarType or any other number
    QByteArray unit{}; ///< like name
    QByteArray desc{}; ///< at most 64 bytes are written
    qint32 count = 1; ///< elements; any number
    qint32 offset = Packed; ///< Packed, or the exact offset to write
    bool countAsTime = false; ///< the elements are successive in time
};

/// A recording under construction: each part that tests want to break is a member. Copies are cheap
/// as long as they are not changed.
class Recording
{
public:
    static constexpr int HeaderSize = sizeof(irsdk_header);
    static constexpr int SubHeaderSize = sizeof(irsdk_diskSubHeader);
    static constexpr int VariableSize = sizeof(irsdk_varHeader);

    /// The three sections whose place is in the headers.
    enum Section { Table, Text, Records };
    /// Whether the session-info text is followed by a zero that counts as part of it.
    enum Ending { Terminated, Unterminated };

    /// A sound recording without records: defaultVariables(), plainSessionInfo(), 60 Hz.
    Recording();
    /// Neither variables nor text nor records.
    static Recording empty();

    /// The variables that decide about laps, and a few more: SessionTime, SessionTick, SessionNum,
    /// SessionState, IsOnTrack, OnPitRoad, Lap, LapDistPct, LapCurrentLapTime, LapLastLapTime,
    /// Speed, FuelLevel, with the simulator's types and units.
    static QVector<RecordingVariable> defaultVariables();
    /// A short session-info text: a weekend, session 0 of \a sessionType, and one driver, in the
    /// player's car \a carIdx.
    static QByteArray plainSessionInfo(const QByteArray &sessionType = "Practice", int carIdx = 0);

    // What the recording contains. Set the table first: changing it later does not change the
    // records that are there.

    /// Replaces the variable table; all values become zero.
    Recording &variables(const QVector<RecordingVariable> &table);
    /// Adds one variable to the table; its value is zero.
    Recording &variable(const RecordingVariable &variable);
    /// Replaces the session-info text; the bytes are written as they are.
    Recording &sessionInfo(const QByteArray &text, Ending ending = Terminated);
    /// Records per second, from 1; 60 unless set.
    Recording &tickRate(int hertz);
    /// Bytes of one record, from 0. Unless set, the packed variables fit exactly; for a table with
    /// other offsets, the size usually has to be set.
    Recording &recordSize(int bytes);
    /// Order of the sections in the file; Table, Text, Records unless set.
    Recording &order(const std::array<Section, 3> &sections);
    /// Leaves \a bytes bytes of value \a fill before \a section.
    Recording &gap(Section section, int bytes, char fill = 0);

    /// Sets element \a element of the variable \a name from the next record on. The element must
    /// be in the record, and the value must fit the type. A bool is true unless the value is zero.
    Recording &set(const QByteArray &name, double value, int element = 0);
    /// Overwrites bytes of the record from the next one on, whatever variables are there. Bytes
    /// beyond the record are ignored.
    Recording &setBytes(int offset, const QByteArray &bytes);
    /// Appends \a count records of the present values. After each one, SessionTime grows by one
    /// tick's time and SessionTick by 1, if the table contains them as double and int.
    Recording &ticks(int count);
    /// The same, but calls \a prepare before each record, with this recording and the number of the
    /// tick, from 0.
    Recording &ticks(int count, const std::function<void(Recording &, int)> &prepare);
    /// Appends any bytes as they are: a record, part of one, or anything else.
    Recording &record(const QByteArray &bytes);

    // Copies in which one thing is overridden after the layout. Nothing else moves.

    /// One number of the main header, such as &irsdk_header::numVars.
    Recording with(std::int32_t irsdk_header::*field, std::int32_t value) const;
    /// One number of the disk sub-header.
    Recording with(std::int32_t irsdk_diskSubHeader::*field, std::int32_t value) const;
    Recording with(std::int64_t irsdk_diskSubHeader::*field, std::int64_t value) const;
    Recording with(double irsdk_diskSubHeader::*field, double value) const;
    /// The offset of the first record, irsdk_varBuf::bufOffset of entry 0.
    Recording withRecordsAt(std::int32_t offset) const;
    /// One number of the variable \a name's entry, such as &irsdk_varHeader::count.
    Recording withVariable(const QByteArray &name, std::int32_t irsdk_varHeader::*field,
                           std::int32_t value) const;
    /// Another session-info text; the file is laid out again for it.
    Recording withSessionInfo(const QByteArray &text, Ending ending = Terminated) const;

    // Results.

    /// Bytes of one record, as in the header unless overridden there.
    int recordSize() const;
    /// Number of records appended, including raw ones.
    int recordCount() const { return m_recordCount; }
    /// Place of the first element of the variable \a name in a record.
    int offsetOf(const QByteArray &name) const;
    /// Place of \a section in the file, as in the header unless overridden there.
    int sectionOffset(Section section) const;

    irsdk_header header() const;
    /// Number of records as appended, and the values of SessionTime (a double) in the first and the
    /// last one that ticks() made; no laps; the start date is a fixed day.
    irsdk_diskSubHeader subHeader() const;
    /// The table with every offset in place.
    QVector<irsdk_varHeader> variableTable() const;

    /// The whole file.
    QByteArray bytes() const;
    /// Writes the whole file to \a device, at its present position; false if that fails.
    bool write(QIODevice *device) const;
    /// Writes the file \a fileName, replacing what is there; false if that fails.
    bool write(const QString &fileName) const;

private:
    struct Nothing {
    };
    explicit Recording(Nothing) { }

    int indexOf(const QByteArray &name) const;
    void fitValues();
    void appendTick();
    char *valueOf(const char *name, qint32 type);
    qint64 sectionSize(Section section) const;

    QVector<RecordingVariable> m_variables;
    QVector<qint32> m_offsets; // of each variable
    QHash<QByteArray, int> m_indexes; // into m_variables, by name
    qint64 m_packedSize = 0;
    int m_recordSize = -1; // as set; -1 unless set
    QByteArray m_text;
    int m_tickRate = 60;
    std::array<Section, 3> m_order{Table, Text, Records};
    std::array<QByteArray, 3> m_gaps; // before each section
    QByteArray m_values; // the next record
    QByteArray m_records;
    int m_recordCount = 0;
    double m_startTime = 0;
    double m_endTime = 0;
    bool m_timed = false; // m_startTime and m_endTime are known
    QVector<std::function<void(irsdk_header &)>> m_headerChanges;
    QVector<std::function<void(irsdk_diskSubHeader &)>> m_subHeaderChanges;
    QVector<std::function<void(QVector<irsdk_varHeader> &)>> m_tableChanges;
};
