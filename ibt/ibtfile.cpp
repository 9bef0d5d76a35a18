#include "ibt/ibtfile.h"

#include <algorithm>
#include <filesystem>

namespace {

/// Pipes and devices: opening one may wait for ever, and reading one need not end.
bool isEndless(const char *fileName)
{
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::file_type type = fs::status(fileName, error).type();
    return type == fs::file_type::fifo || type == fs::file_type::socket
        || type == fs::file_type::character || type == fs::file_type::block;
}

/// Bytes that are asked for on the word of the file alone, and read at a time.
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
    return std::fread(&m_header, sizeof m_header, 1, m_file.get()) == 1;
}

bool IbtFile::readDiskSubHeader()
{
    return std::fread(&m_diskSubHeader, sizeof m_diskSubHeader, 1, m_file.get()) == 1;
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
    const std::int32_t length = m_header.sessionInfoLen;
    if (length < 0 || !seek(m_header.sessionInfoOffset)
        || !readGrowing(m_sessionInfo, static_cast<std::size_t>(length)))
        return false;
    if (m_sessionInfo.empty())
        m_sessionInfo.resize(1);
    m_sessionInfo.back() = '\0';
    return true;
}

bool IbtFile::readVarHeaders()
{
    const std::int32_t count = m_header.numVars;
    return count >= 0 && seek(m_header.varHeaderOffset)
        && readGrowing(m_varHeaders, static_cast<std::size_t>(count));
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

/// Nothing at all lies anywhere, also beyond the end of the file.
bool IbtFile::holds(std::int64_t offset, std::int64_t size)
{
    if (offset < 0 || size < 0 || std::fseek(m_file.get(), 0, SEEK_END) != 0)
        return false;
    const std::int64_t end = std::ftell(m_file.get());
    return size == 0 || (offset <= end && size <= end - offset);
}

bool IbtFile::seek(std::int32_t offset)
{
    return offset >= 0 && std::fseek(m_file.get(), offset, SEEK_SET) == 0;
}

/// Reads \a count items from where the file stands. False when the file ends before; \a items then
/// holds what there was.
template <typename T>
bool IbtFile::readGrowing(std::vector<T> &items, std::size_t count)
{
    constexpr std::size_t blockItems = BlockBytes / sizeof(T);
    std::size_t read = 0;
    while (read < count) {
        const std::size_t wanted = std::min(count - read, std::max(blockItems, read));
        if (items.size() < read + wanted)
            items.resize(read + wanted);
        const std::size_t got = std::fread(items.data() + read, sizeof(T), wanted, m_file.get());
        read += got;
        if (got < wanted) {
            items.resize(read);
            return false;
        }
    }
    return true;
}

/// Reads the next block of records. False when no complete record is left.
bool IbtFile::readRecords()
{
    if (m_header.bufLen <= 0 || m_place == Records::AtEnd)
        return false;
    if (m_place == Records::NotReached && !seek(m_header.varBuf[0].bufOffset))
        return false;

    const auto recordBytes = static_cast<std::size_t>(m_header.bufLen);
    const std::size_t blockRecords = std::max<std::size_t>(1, BlockBytes / recordBytes);
    const bool isFull = readGrowing(m_records, blockRecords * recordBytes);
    m_place = isFull ? Records::Reading : Records::AtEnd;
    m_nextRecord = 0;
    m_recordsEnd = m_records.size() / recordBytes * recordBytes;
    return m_recordsEnd > 0;
}
