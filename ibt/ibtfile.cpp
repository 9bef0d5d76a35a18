#include "ibt/ibtfile.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace {

/// Pipes and devices: opening one may wait for ever, and reading one may never end.
bool isEndless(const char *fileName)
{
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_type type = fs::status(fileName, error).type();
    return type == fs::file_type::fifo || type == fs::file_type::socket
        || type == fs::file_type::character || type == fs::file_type::block;
}

/// Bytes of records that are read at a time, if one is not longer.
constexpr std::size_t BlockBytes = 256 * 1024;

} // namespace

IbtFile::IbtFile(const char *fileName)
    : m_file(isEndless(fileName) ? nullptr : std::fopen(fileName, "rb"))
{
    // All reads are large or few; a buffer would only copy them once more.
    if (m_file)
        std::setvbuf(m_file.get(), nullptr, _IONBF, 0);
}

bool IbtFile::readHeader()
{
    return readBytes(&m_header, sizeof m_header) == sizeof m_header;
}

bool IbtFile::readDiskSubHeader()
{
    return readBytes(&m_diskSubHeader, sizeof m_diskSubHeader) == sizeof m_diskSubHeader;
}

bool IbtFile::holdsSessionInfo()
{
    return holds(m_header.sessionInfoOffset, m_header.sessionInfoLen);
}

bool IbtFile::holdsVarHeaders()
{
    return holds(m_header.varHeaderOffset,
                 m_header.numVars * std::int64_t(sizeof(irsdk_varHeader)));
}

bool IbtFile::readSessionInfo()
{
    if (!holdsSessionInfo()
        || !readItems(m_sessionInfo, m_header.sessionInfoOffset, m_header.sessionInfoLen))
        return false;
    if (m_sessionInfo.empty())
        m_sessionInfo.resize(1);
    m_sessionInfo.back() = '\0';
    return true;
}

bool IbtFile::readVarHeaders()
{
    return holdsVarHeaders() && readItems(m_varHeaders, m_header.varHeaderOffset, m_header.numVars);
}

char *IbtFile::nextRecord()
{
    if (m_nextRecord == m_recordsEnd && !readRecords())
        return nullptr;
    char *record = m_records.data() + m_nextRecord;
    m_nextRecord += static_cast<std::size_t>(m_header.bufLen);
    return record;
}

void IbtFile::rewindRecords()
{
    m_place = Records::NotReached;
    m_recordsEnd = 0;
    m_nextRecord = 0;
}

/// An empty part fits anywhere, even past the end of the file.
bool IbtFile::holds(std::int64_t offset, std::int64_t size)
{
    if (offset < 0 || size < 0 || std::fseek(m_file.get(), 0, SEEK_END) != 0)
        return false;
    const std::int64_t end = std::ftell(m_file.get());
    return size == 0 || (offset <= end && size <= end - offset);
}

/// Reads \a count items at \a offset, which the file contains. False if it has become shorter.
template <typename T>
bool IbtFile::readItems(std::vector<T> &items, std::int32_t offset, std::int32_t count)
{
    items.resize(static_cast<std::size_t>(count));
    const std::size_t bytes = items.size() * sizeof(T);
    return std::fseek(m_file.get(), offset, SEEK_SET) == 0
        && readBytes(items.data(), bytes) == bytes;
}

/// Reads \a count bytes, or as many as the file has. An interruption by a signal is not its end.
std::size_t IbtFile::readBytes(void *to, std::size_t count)
{
    std::size_t got = 0;
    while (got < count) {
        errno = 0;
        got += std::fread(static_cast<char *>(to) + got, 1, count - got, m_file.get());
        if (got == count || !std::ferror(m_file.get()))
            break;
        if (errno != EINTR) {
            m_hasReadError = true;
            break;
        }
        std::clearerr(m_file.get());
    }
    return got;
}

/// Reads the next block of records. False when no complete record is left.
bool IbtFile::readRecords()
{
    if (m_place == Records::NotReached) {
        // No memory for a record that the file does not contain.
        const std::int32_t offset = m_header.varBuf[0].bufOffset;
        const bool isThere = m_header.bufLen > 0 && holds(offset, m_header.bufLen)
            && std::fseek(m_file.get(), offset, SEEK_SET) == 0;
        m_place = isThere ? Records::Reading : Records::AtEnd;
    }
    if (m_place == Records::AtEnd)
        return false;

    const auto recordBytes = static_cast<std::size_t>(m_header.bufLen);
    m_records.resize(std::max<std::size_t>(1, BlockBytes / recordBytes) * recordBytes);
    const std::size_t got = readBytes(m_records.data(), m_records.size());
    if (got < m_records.size())
        m_place = Records::AtEnd;
    m_nextRecord = 0;
    m_recordsEnd = got / recordBytes * recordBytes;
    return m_recordsEnd > 0;
}
