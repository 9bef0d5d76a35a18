#include "host/files/importer.h"

#include "host/files/pluginregistry.h"
#include "host/text/terminal.h"
#include "plugin/zepplugininterfaceimport.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace {

/// Why \a fileName is no file to read; empty if it is one.
QString obstacle(const QString &fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return QStringLiteral("no such file; check the path");
    if (info.isDir())
        return QStringLiteral("is a folder; give the recordings in it");
    // Opening a pipe or a device might wait for ever.
    if (!info.isFile())
        return QStringLiteral("is not a regular file; copy its contents to one");
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QLatin1String("cannot be read (") % file.errorString()
            % QLatin1String("); check its permissions");
    return QString();
}

/// Why the system cannot read all of \a fileName; empty if it can. A plug-in takes an error for the
/// end of the file.
QString readError(const QString &fileName)
{
    // A file of Qt's would need memory, which may be lacking by now.
    const int file = ::open(QFile::encodeName(fileName).constData(), O_RDONLY | O_CLOEXEC);
    std::array<char, 64 * 1024> block;
    ssize_t got = file < 0 ? -1 : 1;
    while (got > 0 || (got < 0 && file >= 0 && errno == EINTR))
        got = ::read(file, block.data(), block.size());
    const int error = got < 0 ? errno : 0;
    if (file >= 0)
        ::close(file);
    return error == 0 ? QString() : qt_error_string(error);
}

QString withName(const QString &fileName, const QString &message)
{
    return message.contains(fileName) ? message : QString(fileName % QLatin1String(": ") % message);
}

} // namespace

Importer::Importer(const PluginRegistry &plugins, Terminal &terminal, bool verbose)
    : m_plugins(plugins), m_terminal(terminal), m_verbose(verbose)
{
}

std::optional<ImportedFile> Importer::import(const QString &fileName)
{
    ImportAttempt attempt = this->attempt(fileName);
    if (attempt.laps.empty() && !attempt.format.isEmpty() && !attempt.lacksMemory) {
        if (attempt.errors.isEmpty())
            attempt.errors.append(QStringLiteral("contains no laps"));
        attempt.errors.last() += QLatin1String("; check that the file is a complete \"")
            % attempt.format % QLatin1Char('"');
    }
    for (const QString &error : qAsConst(attempt.errors))
        m_terminal.complain(withName(fileName, error));
    if (attempt.laps.empty())
        return std::nullopt;
    const QString error = readError(fileName);
    if (!error.isEmpty())
        m_terminal.complain(fileName % QLatin1String(": could not be read to its end (") % error
                            % QLatin1String("), so laps may be short or missing; copy the file to "
                                            "another disk"));
    return ImportedFile{fileName, attempt.format, std::move(attempt.laps), attempt.messages,
                        error.isEmpty()};
}

ImportAttempt Importer::attempt(const QString &fileName)
{
    ImportAttempt result;
    const QString reason = obstacle(fileName);
    if (!reason.isEmpty()) {
        result.errors.append(reason);
        return result;
    }
    const PluginRegistry::Match match = m_plugins.match(fileName);
    if (!match.interface) {
        result.errors.append(QLatin1String("unsupported file type (supported: ")
                             % m_plugins.wildcards().join(QLatin1String(", ")) % QLatin1Char(')'));
        return result;
    }

    const auto receive = [&](const QString &message, int level) {
        // Plug-ins report a lack of memory as if the file were damaged.
        result.lacksMemory = result.lacksMemory || (level < 0 && errno == ENOMEM);
        result.messages.append({message, level < 0});
        if (level < 0)
            result.errors.append(message);
        else if (m_verbose)
            m_terminal.complain(withName(fileName, message));
    };
    const auto connection =
        QObject::connect(match.interface->dataEmitter(), &ZepDataEmitter::sendMessage, receive);
    errno = 0;
    const QVector<ZEP::Lap *> laps = match.interface->import(fileName, match.format, {});
    QObject::disconnect(connection);

    result.format = match.format;
    for (ZEP::Lap *lap : laps)
        result.laps.emplace_back(lap);
    result.lacksMemory = result.lacksMemory && result.laps.empty();
    if (result.lacksMemory)
        result.errors = QStringList(
            QStringLiteral("there is not enough memory to import it; close other programs"));
    return result;
}
