// The on-disk records of an .ibt telemetry recording.
//
// A recording is a main header, a disk sub-header, a session-info text, a table of variable headers
// and one record of bufLen bytes per simulation tick, back to back up to the end of the file. All
// integers are little-endian and 32-bit signed unless their type says otherwise, all floating-point
// values IEEE 754 little-endian, all offsets in bytes from the start of the file. Every number that
// comes from a file is a claim: check it against the file before use.
#pragma once

#include <cstddef>
#include <cstdint>

/// Type of a variable's elements, the values of irsdk_varHeader::type. Files may contain any
/// other number; see irsdk_varTypeSize().
enum irsdk_VarType : std::int32_t {
    irsdk_char = 0, ///< 1 byte, a signed character; a variable of this type is read as one element
    irsdk_bool = 1, ///< 1 byte, true unless zero
    irsdk_int = 2, ///< 4 bytes, signed
    irsdk_bitField = 3, ///< 4 bytes, a bit mask read as a signed integer
    irsdk_float = 4, ///< 4 bytes
    irsdk_double = 5, ///< 8 bytes
};

/// Bytes of one element of \a type (irsdk_varHeader::type); 0 for a type that is not known.
constexpr std::int32_t irsdk_varTypeSize(std::int32_t type)
{
    switch (type) {
    case irsdk_char:
    case irsdk_bool:
        return 1;
    case irsdk_int:
    case irsdk_bitField:
    case irsdk_float:
        return 4;
    case irsdk_double:
        return 8;
    default:
        return 0;
    }
}

/// One buffer of the live interface; a recording uses entry 0 only, for the place of its records.
struct irsdk_varBuf {
    std::int32_t tickCount; ///< tick at which the buffer was filled
    std::int32_t bufOffset; ///< offset of the first record
    std::int32_t pad[2];
};

/// The main header, at offset 0.
struct irsdk_header {
    static constexpr int MaxBuffers = 4;

    std::int32_t ver; ///< version of the format
    std::int32_t status; ///< bit mask of the live connection
    std::int32_t tickRate; ///< records per second
    std::int32_t sessionInfoUpdate; ///< counts changes of the session-info text
    std::int32_t sessionInfoLen; ///< bytes of the session-info text, its terminating zero included
    std::int32_t sessionInfoOffset; ///< offset of the session-info text
    std::int32_t numVars; ///< entries of the variable table
    std::int32_t varHeaderOffset; ///< offset of the variable table
    std::int32_t numBuf; ///< buffers in use by the live interface
    std::int32_t bufLen; ///< bytes of one record
    std::int32_t pad1[2];
    irsdk_varBuf varBuf[MaxBuffers];
};

/// The disk sub-header, directly after the main header. The simulator fills in the counts and the
/// end time when it closes the file, so they are zero in a recording that was cut off.
struct irsdk_diskSubHeader {
    std::int64_t sessionStartDate; ///< seconds since 1970-01-01 UTC
    double sessionStartTime; ///< session time of the first record, seconds
    double sessionEndTime; ///< session time of the last record, seconds
    std::int32_t sessionLapCount; ///< laps in the recording
    std::int32_t sessionRecordCount; ///< records in the recording
};

/// One entry of the variable table.
struct irsdk_varHeader {
    static constexpr int MaxString = 32;
    static constexpr int MaxDesc = 64;

    std::int32_t type; ///< irsdk_VarType, or any other number
    std::int32_t offset; ///< offset of the first element within a record
    std::int32_t count; ///< number of elements; 1 for a scalar
    std::uint8_t countAsTime; ///< not 0: the elements are successive in time
    std::int8_t pad[3];
    char name[MaxString]; ///< Latin-1, zero-terminated unless it fills the field
    char desc[MaxDesc]; ///< description, ended in the same way
    char unit[MaxString]; ///< unit of every element, ended in the same way
};

static_assert(sizeof(irsdk_header) == 112 && offsetof(irsdk_header, varBuf) == 48);
static_assert(sizeof(irsdk_diskSubHeader) == 32);
static_assert(sizeof(irsdk_varHeader) == 144 && offsetof(irsdk_varHeader, unit) == 112);
