#include "host/recordingfiles.h"

#include "host/pluginregistry.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

namespace {

QStringList filesIn(const QString &folder, bool recursive, const PluginRegistry &plugins)
{
    QStringList files;
    QDirIterator iterator(folder, QDir::Files,
                          recursive ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    while (iterator.hasNext()) {
        const QString file = iterator.next();
        if (plugins.match(file).interface)
            files.append(QDir::cleanPath(file));
    }
    files.sort();
    return files;
}

/// Takes a choice of laps from the end of \a name. False if there is something like one that makes
/// no sense: then \a problem says why.
bool splitLaps(QString *name, std::optional<LapChoice> *laps, QString *problem)
{
    const int colon = name->lastIndexOf(QLatin1Char(':'));
    if (colon <= 0 || QFileInfo::exists(*name))
        return true;
    const QString file = name->left(colon);
    *laps = LapChoice::parse(name->mid(colon + 1), problem);
    if (!*laps && QFileInfo::exists(file))
        return false;
    if (*laps)
        *name = file;
    return true;
}

} // namespace

RecordingFiles::RecordingFiles(const QStringList &arguments, bool recursive,
                               const PluginRegistry &plugins)
{
    for (const QString &argument : arguments) {
        QString name = argument;
        std::optional<LapChoice> laps;
        QString problem;
        if (!splitLaps(&name, &laps, &problem)) {
            problems.append(
                {ExitCode::WrongUse, QString(argument % QLatin1String(": ") % problem)});
            continue;
        }
        const QFileInfo info(name);
        if (!info.isDir()) {
            files.append({name, laps});
            continue;
        }
        if (!QDir(name).isReadable()) {
            problems.append({ExitCode::Failure,
                             QString(name
                                     % QLatin1String(": cannot be read; check the folder's "
                                                     "permissions"))});
            continue;
        }
        const QStringList found = filesIn(name, recursive, plugins);
        if (found.isEmpty()) {
            problems.append(
                {ExitCode::Failure,
                 QString(name % QLatin1String(": no recordings in this folder; the formats are ")
                         % plugins.formats().join(QLatin1String(", "))
                         % QLatin1String(recursive ? "" : "; -r looks into the folders below"))});
        }
        for (const QString &file : found)
            files.append({file, laps});
    }
}
