// The position of a virtual operation in its class's table. Hosts and plug-ins are built
// separately, so the order of the table is a contract for the interfaces between them.
#pragma once

#include <cstddef>
#include <cstring>

/// Position of \a operation among the entries of its virtual table, from 0. A virtual destructor
/// has two entries. Works for the Itanium C++ ABI with the bit for virtual in the pointer, as on
/// x86.
template <typename Operation>
std::ptrdiff_t virtualSlot(Operation operation)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof words == sizeof operation);
    std::memcpy(words, &operation, sizeof operation);
    const auto entrySize = static_cast<std::ptrdiff_t>(sizeof(void *));
    return (words[0] - 1) / entrySize;
}
