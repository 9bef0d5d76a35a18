#pragma once

#include <QByteArray>
#include <QString>

#include <sys/mman.h>
#include <unistd.h>

/// A regular file in memory, so that no disk slows the fuzzer down.
class MemoryFile
{
public:
    MemoryFile() : m_descriptor(::memfd_create("recording", 0)) { }
    ~MemoryFile() { ::close(m_descriptor); }
    Q_DISABLE_COPY(MemoryFile)

    /// Replaces the whole content; false if that fails.
    bool write(const char *data, std::size_t size)
    {
        return ::ftruncate(m_descriptor, 0) == 0
            && ::pwrite(m_descriptor, data, size, 0) == ssize_t(size);
    }

    QString name() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int m_descriptor;
};
