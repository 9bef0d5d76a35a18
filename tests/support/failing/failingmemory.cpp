// A machine without memory: of the allocations of the process, counted from 1, number
// FAILING_ALLOCATION fails. With FAILING_ALLOCATIONS=all those after it fail, too. At the end, the
// number of all allocations is written to the file ALLOCATION_COUNT.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
}

namespace {

long numberIn(const char *variable)
{
    const char *text = std::getenv(variable);
    return text ? std::strtol(text, nullptr, 10) : 0;
}

long count = 0;

bool isExhausted()
{
    static const long failing = numberIn("FAILING_ALLOCATION");
    static const bool isLasting = std::getenv("FAILING_ALLOCATIONS") != nullptr;
    ++count;
    const bool isFailing = failing > 0 && (count == failing || (isLasting && count > failing));
    if (isFailing)
        errno = ENOMEM;
    return isFailing;
}

__attribute__((destructor)) void writeCount()
{
    const char *file = std::getenv("ALLOCATION_COUNT");
    const int descriptor = file ? open(file, O_WRONLY | O_CREAT | O_TRUNC, 0600) : -1;
    char text[32];
    const int size = std::snprintf(text, sizeof text, "%ld", count);
    if (descriptor >= 0 && write(descriptor, text, std::size_t(size)) == size)
        close(descriptor);
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) void *malloc(std::size_t size)
{
    return isExhausted() ? nullptr : __libc_malloc(size);
}

__attribute__((visibility("default"))) void *calloc(std::size_t number, std::size_t size)
{
    return isExhausted() ? nullptr : __libc_calloc(number, size);
}

__attribute__((visibility("default"))) void *realloc(void *block, std::size_t size)
{
    return isExhausted() ? nullptr : __libc_realloc(block, size);
}
}
