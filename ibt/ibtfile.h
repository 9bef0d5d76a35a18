#pragma once

#include "ibt/ibtformat.h"

#include <cstddef>
#include <cstdio>
#include <memory>
#include <vector>

/// Reads a recording part by part, in the order of the operations below, and trusts no number of
/// it: memory is only asked for what the file is large enough to contain, and for one block.
class IbtFile
{
public:
    /// \a fileName is in the encoding of the platform's file names.
    explicit IbtFile(const char *fileName);

    /// False when the file cannot be opened for reading, or is a pipe or a device. Nothing else may
    /// be called then.
    bool isOpen() const { return m_file != nullptr; }

    /// Reads the main header. False when the file ends before it does.
    bool readHeader();
    /// Reads the disk sub-header after the main header. False when the file ends before it does.
    bool readDiskSubHeader();
    /// Whether the file is large enough to contain the session-info text: neither its
    /// offset nor its length is negative, and the file does not end before it does.
    bool holdsSessionInfo();
    /// The same for the variable table.
    bool holdsVarHeaders();

    /// Reads the session-info text. False when its offset or length is negative, or when the text
    /// is not wholly in the file.
    bool readSessionInfo();
    /// Reads the variable table. False when its offset or count is negative, or when the table is
    /// not wholly in the file.
    bool readVarHeaders();

    const irsdk_header &header() const { return m_header; }
    const irsdk_diskSubHeader &diskSubHeader() const { return m_diskSubHeader; }
    /// The session-info text. Its last byte is read as the terminating zero, whatever it is.
    const char *sessionInfo() const { return m_sessionInfo.data(); }
    /// The variable table, header().numVars entries.
    const irsdk_varHeader *varHeaders() const { return m_varHeaders.data(); }

    /// The next record, header().bufLen bytes, valid until the next call; null after the last one
    /// that is complete.
    char *nextRecord();
    /// Whether the system has failed to read a part that the file has. The operations above take
    /// that for the end of the file.
    bool hasReadError() const { return m_hasReadError; }
    /// Makes the first record the next one.
    void rewindRecords();

private:
    struct Closer {
        void operator()(std::FILE *file) const { std::fclose(file); }
    };

    bool holds(std::int64_t offset, std::int64_t size);
    template <typename T>
    bool readItems(std::vector<T> &items, std::int32_t offset, std::int32_t count);
    bool readRecords();
    std::size_t readBytes(void *to, std::size_t count);

    std::unique_ptr<std::FILE, Closer> m_file;
    bool m_hasReadError = false;
    irsdk_header m_header = {};
    irsdk_diskSubHeader m_diskSubHeader = {};
    std::vector<char> m_sessionInfo;
    std::vector<irsdk_varHeader> m_varHeaders;

    std::vector<char> m_records; ///< a block of records, read ahead
    std::size_t m_recordsEnd = 0; ///< where the complete records of the block end
    std::size_t m_nextRecord = 0;
    enum class Records { NotReached, Reading, AtEnd } m_place = Records::NotReached;
};
