#include "benchmarks/floor.h"

#include "ibt/ibtfile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

/// A block stays in the second-level cache until all columns have read their values from it. Of all
/// sizes from 16 KB to 4 MB, this was the fastest.
constexpr std::size_t BlockBytes = 64 * 1024;

template <typename T>
void load(double *samples, const char *element, std::int64_t count, std::size_t recordBytes)
{
    for (std::int64_t i = 0; i < count; ++i, element += recordBytes) {
        T value;
        std::memcpy(&value, element, sizeof value);
        samples[i] = static_cast<double>(value);
    }
}

void load(double *samples, const char *records, std::int64_t count, std::size_t recordBytes,
          const irsdk_varHeader &variable)
{
    const int last = variable.type == irsdk_char ? 0 : std::max(variable.count, 1) - 1;
    const char *element =
        records + variable.offset + std::ptrdiff_t(last) * irsdk_varTypeSize(variable.type);
    switch (variable.type) {
    case irsdk_char:
    case irsdk_bool:
        return load<std::int8_t>(samples, element, count, recordBytes);
    case irsdk_int:
    case irsdk_bitField:
        return load<std::int32_t>(samples, element, count, recordBytes);
    case irsdk_float:
        return load<float>(samples, element, count, recordBytes);
    case irsdk_double:
        return load<double>(samples, element, count, recordBytes);
    }
}

} // namespace

FloorColumns readFloor(const char *fileName)
{
    FloorColumns result;
    IbtFile head(fileName);
    if (!head.isOpen() || !head.readHeader() || !head.readDiskSubHeader() || !head.readSessionInfo()
        || !head.readVarHeaders())
        return result;
    const irsdk_header &header = head.header();
    const auto recordBytes = static_cast<std::size_t>(header.bufLen);
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(fileName, "rb"),
                                                                std::fclose);
    std::fseek(file.get(), 0, SEEK_END);
    result.records = (std::ftell(file.get()) - header.varBuf[0].bufOffset) / header.bufLen;
    std::fseek(file.get(), header.varBuf[0].bufOffset, SEEK_SET);
    for (int v = 0; v < header.numVars; ++v)
        result.columns.emplace_back(new double[static_cast<std::size_t>(result.records)]);

    const std::size_t blockRecords = std::max<std::size_t>(1, BlockBytes / recordBytes);
    std::vector<char> block(blockRecords * recordBytes);
    std::int64_t done = 0;
    while (const auto count =
               std::int64_t(std::fread(block.data(), recordBytes, blockRecords, file.get()))) {
        for (int v = 0; v < header.numVars; ++v) {
            load(result.columns[static_cast<std::size_t>(v)].get() + done, block.data(), count,
                 recordBytes, head.varHeaders()[v]);
        }
        done += count;
    }
    return result;
}
