#include "writers/outputfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace {

/// Whether what was written to \a descriptor cannot be brought to its disk. Sets errno if so.
bool isUnsynced(int descriptor)
{
    while (::fsync(descriptor) != 0) {
        if (errno != EINTR)
            return errno != EINVAL && errno != ENOTSUP && errno != ENOSYS; // a disk without fsync
    }
    return false;
}

} // namespace

bool OutputFile::isFree(bool overwritten, QString *problem) const
{
    const QFileInfo info(m_name);
    if (info.isDir()) {
        *problem = m_name % QLatin1String(": is a folder; give a file in it");
        return false;
    }
    if (info.isFile() && !overwritten) {
        *problem = m_name
            % QLatin1String(": already exists; choose another name, or use --force to replace it");
        return false;
    }
    return true;
}

bool OutputFile::open(bool overwritten, QString *problem)
{
    if (m_name == QLatin1String("-")) {
        auto output = std::make_unique<QFile>();
        output->open(STDOUT_FILENO, QIODevice::WriteOnly);
        m_device = std::move(output);
        return true;
    }
    if (!isFree(overwritten, problem))
        return false;
    const QFileInfo info(m_name);
    // A device cannot be replaced by a file that was written next to it.
    if (info.exists() && !info.isFile())
        m_device = std::make_unique<QFile>(m_name);
    else
        m_device = std::make_unique<QSaveFile>(m_name);
    if (m_device->open(QIODevice::WriteOnly))
        return true;
    *problem = m_name % QLatin1String(": cannot be written (") % m_device->errorString()
        % QLatin1String("); choose another location");
    return false;
}

void OutputFile::write(const char *bytes, qint64 size)
{
    // A write that stops short has no reason yet; the next one has.
    while (isGood() && size > 0) {
        const qint64 written = m_device->write(bytes, size);
        if (written <= 0)
            fail(m_device->errorString());
        bytes += written;
        size -= written;
    }
}

void OutputFile::fail(const QString &reason)
{
    m_error = reason;
}

bool OutputFile::isLost(int descriptor)
{
    // Every close of an open file reports what is lost by then, also that of a copy.
    const int copy = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    return copy >= 0 && ::close(copy) != 0 && errno != EINTR;
}

bool OutputFile::commit(QString *problem)
{
    auto *file = qobject_cast<QSaveFile *>(m_device.get());
    if (isGood() && !m_device->flush())
        fail(m_device->errorString());
    // QSaveFile overlooks both, and would replace a good file by a short one.
    if (isGood() && ((file && isUnsynced(file->handle())) || isLost(m_device->handle())))
        fail(qt_error_string(errno));
    if (file) {
        if (!isGood())
            file->cancelWriting();
        else if (!file->commit())
            fail(file->errorString());
    }
    if (isGood())
        return true;
    *problem = (m_name == QLatin1String("-") ? QStringLiteral("the output") : m_name)
        % QLatin1String(": cannot be written (") % m_error
        % QLatin1String("); free some space, or choose another location");
    return false;
}
