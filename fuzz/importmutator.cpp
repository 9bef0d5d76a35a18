// Changes a recording where it hurts: numbers of the header to the edges of the file, entries of
// the variable table, lines of the session info, values of the records. If a part grows or shrinks,
// everything after it moves along, so that the input remains a recording.

#include "ibt/ibtformat.h"

#include <array>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t HeadersSize = sizeof(irsdk_header) + sizeof(irsdk_diskSubHeader);
constexpr std::size_t RecordsAt =
    offsetof(irsdk_header, varBuf) + offsetof(irsdk_varBuf, bufOffset);
constexpr std::array HeaderFields = {
    offsetof(irsdk_header, sessionInfoLen), offsetof(irsdk_header, sessionInfoOffset),
    offsetof(irsdk_header, numVars),        offsetof(irsdk_header, varHeaderOffset),
    offsetof(irsdk_header, bufLen),         RecordsAt};
constexpr std::array VariableNames = {"SessionTime",    "SessionNum",
                                      "SessionState",   "IsOnTrack",
                                      "OnPitRoad",      "Lap",
                                      "LapDistPct",     "LapCurrentLapTime",
                                      "LapLastLapTime", "FuelLevel",
                                      "Speed",          "FullTelemetry",
                                      "FuelWeight",     "EnergyBatteryToMGU_KLap"};
constexpr std::array Lines = {"DriverInfo:",
                              " DriverCarIdx: 0",
                              " DriverCarIdx: 63",
                              " DriverCarIdx: 64",
                              " Drivers:",
                              " - CarIdx: 0",
                              "   UserName: A: B",
                              "   UserName: ",
                              " Sessions:",
                              " - SessionNum: 0",
                              "   SessionType: Race",
                              "   SessionType: Practice",
                              "SessionInfo:",
                              "WeekendInfo:",
                              " TrackLength: 3.70 km",
                              "",
                              "   LicColor: 0xfc0706",
                              " DriverCarFuelKgPerLtr: 0.75",
                              "...",
                              "\r"};
constexpr std::array Numbers = {0.0,
                                0.3,
                                0.5,
                                0.7,
                                0.95,
                                1.0,
                                2.0,
                                3.0,
                                4.0,
                                10.0,
                                100.0,
                                -1.0,
                                1e25,
                                3e38,
                                std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()};

class Mutator
{
public:
    Mutator(const std::uint8_t *data, std::size_t size, std::size_t maxSize, unsigned seed)
        : m_file(data, data + size), m_maxSize(maxSize), m_random(seed)
    {
        std::memcpy(&m_header, data, sizeof m_header);
    }

    Bytes mutated()
    {
        for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
            switch (below(8)) {
            case 0:
                changeHeader();
                break;
            case 1:
            case 2:
                changeTable();
                break;
            case 3:
                changeLines();
                break;
            case 4:
                mutateRange(m_header.sessionInfoOffset, m_header.sessionInfoLen);
                break;
            case 5:
                changeRecords();
                break;
            default:
                changeValues();
            }
        }
        return m_file;
    }

private:
    std::size_t below(std::size_t end) { return m_random() % end; }

    template <typename T, std::size_t Size>
    const T &pick(const std::array<T, Size> &choice)
    {
        return choice[below(Size)];
    }

    /// True if the file contains \a size bytes from \a offset on.
    bool holds(std::int64_t offset, std::int64_t size) const
    {
        return offset >= 0 && size > 0 && offset <= std::int64_t(m_file.size()) - size;
    }

    void put(std::size_t place, const void *bytes, std::size_t size)
    {
        std::memcpy(m_file.data() + place, bytes, size);
    }

    void putInt(std::size_t place, std::int64_t value)
    {
        const auto number = std::int32_t(value);
        put(place, &number, sizeof number);
        std::memcpy(&m_header, m_file.data(), sizeof m_header);
    }

    std::int64_t oddNumber(std::int64_t now)
    {
        const auto size = std::int64_t(m_file.size());
        const std::array<std::int64_t, 16> odd = {-1,
                                                  0,
                                                  1,
                                                  std::numeric_limits<std::int32_t>::max(),
                                                  std::numeric_limits<std::int32_t>::min(),
                                                  size - 1,
                                                  size,
                                                  size + 1,
                                                  now - 1,
                                                  now + 1,
                                                  now - 4,
                                                  now + 4,
                                                  now + 144,
                                                  now - 144,
                                                  now * 2,
                                                  m_header.bufLen};
        return pick(odd);
    }

    void changeHeader()
    {
        const std::size_t field = pick(HeaderFields);
        std::int32_t now;
        std::memcpy(&now, m_file.data() + field, sizeof now);
        putInt(field, oddNumber(now));
    }

    bool pickVariable(std::size_t *place, irsdk_varHeader *variable)
    {
        const std::int64_t size = m_header.numVars * std::int64_t(sizeof *variable);
        if (!holds(m_header.varHeaderOffset, size))
            return false;
        *place = std::size_t(m_header.varHeaderOffset)
            + below(std::size_t(m_header.numVars)) * sizeof *variable;
        std::memcpy(variable, m_file.data() + *place, sizeof *variable);
        return true;
    }

    void changeTable()
    {
        std::size_t place;
        irsdk_varHeader variable;
        if (!pickVariable(&place, &variable))
            return;
        switch (below(6)) {
        case 0:
            variable.type = std::int32_t(below(8)) - 1;
            break;
        case 1:
            variable.offset = std::int32_t(oddNumber(variable.offset));
            break;
        case 2:
            variable.count = std::int32_t(oddNumber(variable.count));
            break;
        case 3:
            std::strncpy(variable.name, pick(VariableNames), sizeof variable.name);
            break;
        case 4:
            variable.unit[below(sizeof variable.unit)] = char(below(256));
            break;
        default: {
            std::size_t other;
            irsdk_varHeader copy;
            if (pickVariable(&other, &copy))
                put(other, &variable, sizeof variable);
            return;
        }
        }
        put(place, &variable, sizeof variable);
    }

    /// Replaces bytes, and adjusts the offsets of everything after them.
    void replace(std::size_t place, std::size_t oldSize, const Bytes &bytes)
    {
        if (place < HeadersSize || m_file.size() - oldSize + bytes.size() > m_maxSize)
            return;
        const auto at = m_file.begin() + std::ptrdiff_t(place);
        m_file.erase(at, at + std::ptrdiff_t(oldSize));
        m_file.insert(m_file.begin() + std::ptrdiff_t(place), bytes.begin(), bytes.end());
        const std::int64_t growth = std::int64_t(bytes.size()) - std::int64_t(oldSize);
        for (const std::size_t field : {offsetof(irsdk_header, sessionInfoOffset),
                                        offsetof(irsdk_header, varHeaderOffset), RecordsAt}) {
            std::int32_t offset;
            std::memcpy(&offset, m_file.data() + field, sizeof offset);
            if (offset > std::int64_t(place))
                putInt(field, offset + growth);
        }
    }

    /// Inserts, removes or duplicates a line of the session info.
    void changeLines()
    {
        if (!holds(m_header.sessionInfoOffset, m_header.sessionInfoLen))
            return;
        const auto start = std::size_t(m_header.sessionInfoOffset);
        const std::string text(reinterpret_cast<const char *>(m_file.data()) + start,
                               std::size_t(m_header.sessionInfoLen));
        const std::size_t before = text.rfind('\n', below(text.size()));
        const std::size_t line = before == std::string::npos ? 0 : before + 1;
        const std::size_t end = text.find('\n', line);
        const std::size_t next = end == std::string::npos ? text.size() : end + 1;

        std::string lines = text.substr(line, next - line);
        switch (below(4)) {
        case 0:
            lines.clear();
            break;
        case 1:
            lines += lines;
            break;
        case 2:
            lines.insert(0, std::string(below(4), ' '));
            break;
        default:
            lines = std::string(pick(Lines)) + '\n' + lines;
        }
        const std::size_t sizeBefore = m_file.size();
        replace(start + line, next - line, Bytes(lines.begin(), lines.end()));
        putInt(offsetof(irsdk_header, sessionInfoLen),
               m_header.sessionInfoLen + std::int64_t(m_file.size()) - std::int64_t(sizeBefore));
    }

    void mutateRange(std::int64_t place, std::int64_t size)
    {
        if (holds(place, size))
            LLVMFuzzerMutate(m_file.data() + place, std::size_t(size), std::size_t(size));
    }

    std::size_t recordCount() const
    {
        const std::int64_t start = m_header.varBuf[0].bufOffset;
        return m_header.bufLen > 0 && holds(start, m_header.bufLen)
            ? (m_file.size() - std::size_t(start)) / std::size_t(m_header.bufLen)
            : 0;
    }

    std::size_t placeOfRecord(std::size_t index) const
    {
        return std::size_t(m_header.varBuf[0].bufOffset) + index * std::size_t(m_header.bufLen);
    }

    /// Duplicates, removes or cuts off records.
    void changeRecords()
    {
        const std::size_t count = recordCount();
        if (count == 0)
            return;
        const std::size_t first = below(count);
        const std::size_t records = 1 + below(std::min<std::size_t>(8, count - first));
        const std::size_t size = records * std::size_t(m_header.bufLen);
        const auto begin = m_file.begin() + std::ptrdiff_t(placeOfRecord(first));
        const Bytes bytes(begin, begin + std::ptrdiff_t(size));
        switch (below(4)) {
        case 0:
            return replace(placeOfRecord(first), size, {});
        case 1:
            return replace(placeOfRecord(first), below(size), {});
        case 2:
            return mutateRange(std::int64_t(placeOfRecord(first)), std::int64_t(size));
        default:
            return replace(placeOfRecord(below(count)), 0, bytes);
        }
    }

    /// Sets a variable in a few records, starting anywhere.
    void changeValues()
    {
        std::size_t place;
        irsdk_varHeader variable;
        const std::size_t count = recordCount();
        if (count == 0 || !pickVariable(&place, &variable))
            return;
        const std::size_t size = std::size_t(irsdk_varTypeSize(variable.type));
        if (size == 0 || variable.offset < 0
            || variable.offset > m_header.bufLen - std::int64_t(size))
            return;
        const double number = pick(Numbers);
        const double step = below(2) ? 0.0 : 0.01;
        const std::size_t first = below(count);
        const std::size_t last = std::min(count, first + 1 + below(20));
        for (std::size_t record = first; record < last; ++record) {
            const double value = number + step * double(record - first);
            const std::size_t at = placeOfRecord(record) + std::size_t(variable.offset);
            if (variable.type == irsdk_double) {
                put(at, &value, sizeof value);
            } else if (variable.type == irsdk_float) {
                const auto single = float(value);
                put(at, &single, sizeof single);
            } else {
                const std::int32_t whole = value > -2e9 && value < 2e9 ? std::int32_t(value) : -1;
                put(at, &whole, size);
            }
        }
    }

    Bytes m_file;
    std::size_t m_maxSize;
    std::minstd_rand m_random;
    irsdk_header m_header;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t maxSize, unsigned seed)
{
    if (size < HeadersSize || seed % 16 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const Bytes mutated = Mutator(data, size, maxSize, seed).mutated();
    std::memcpy(data, mutated.data(), mutated.size());
    return mutated.size();
}
