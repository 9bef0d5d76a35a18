#include "host/files/recordingfiles.h"

#include "host/files/pluginregistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

using Problem = RecordingFiles::Problem;

/// Nothing finds a file by a name that cannot be read.
std::optional<Problem> nameProblem(const std::string &name)
{
    const QString decoded = QFile::decodeName(name.c_str());
    if (QFile::encodeName(decoded) == name.c_str())
        return std::nullopt;
    return Problem{false, decoded,
                   QString(decoded % QLatin1String(": its name is not UTF-8; rename it"))};
}

/// The files of a folder. Qt would pass over names that are not UTF-8, and folders that may not be
/// read.
class FolderSearch
{
public:
    FolderSearch(bool recursive, const PluginRegistry &plugins)
        : m_recursive(recursive), m_plugins(plugins)
    {
    }

    void search(const fs::path &folder)
    {
        std::error_code error;
        std::vector<fs::directory_entry> entries;
        fs::directory_iterator next(folder, error);
        for (; !error && next != fs::directory_iterator(); next.increment(error))
            entries.push_back(*next);
        if (error) {
            const QString name = QFile::decodeName(folder.c_str());
            problems.append({false, name,
                             QString(name
                                     % QLatin1String(": cannot be read; check the folder's "
                                                     "permissions"))});
        }
        std::sort(entries.begin(), entries.end());
        for (const fs::directory_entry &entry : entries)
            take(entry);
    }

    QStringList files;
    QVector<Problem> problems;

private:
    void take(const fs::directory_entry &entry)
    {
        std::error_code none; // what cannot be asked is neither
        const fs::path &path = entry.path();
        const bool isFolder = m_recursive && entry.is_directory(none) && !entry.is_symlink(none);
        const QString name = QDir::cleanPath(QFile::decodeName(path.c_str()));
        const bool isFile = entry.is_regular_file(none) && m_plugins.match(name).interface;
        if (path.filename().native().front() == '.' || !(isFolder || isFile))
            return;
        if (const std::optional<Problem> problem = nameProblem(path.native()))
            problems.append(*problem);
        else if (isFolder)
            search(path);
        else
            files.append(name);
    }

    bool m_recursive;
    const PluginRegistry &m_plugins;
};

/// The number whose digits begin at *index of \a text, which moves past them, as text that
/// compares as the number does.
QString numberAt(const QString &text, int *index)
{
    int first = *index;
    while (*index < text.size() && text.at(*index).isDigit())
        ++*index;
    while (first < *index && text.at(first) == QLatin1Char('0'))
        ++first;
    const int digits = *index - first;
    return QChar(ushort(digits)) % text.mid(first, digits);
}

/// Whether the file \a a comes before \a b, with numbers in their names by their size: f2 before
/// f10.
bool isBefore(const QString &a, const QString &b)
{
    int i = 0;
    int j = 0;
    while (i < a.size() && j < b.size()) {
        if (a.at(i).isDigit() && b.at(j).isDigit()) {
            const QString left = numberAt(a, &i);
            const QString right = numberAt(b, &j);
            if (left != right)
                return left < right;
        } else if (a.at(i) != b.at(j)) {
            return a.at(i) < b.at(j);
        } else {
            ++i;
            ++j;
        }
    }
    return i == a.size() && j == b.size() ? a < b : i == a.size();
}

/// Removes a choice of laps from the end of \a name. False if there is something like one that is
/// not valid: then \a problem says why.
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

RecordingFiles::RecordingFiles(const std::vector<std::string> &arguments, bool recursive,
                               const PluginRegistry &plugins)
{
    for (const std::string &argument : arguments) {
        if (const std::optional<Problem> odd = nameProblem(argument)) {
            problems.append(*odd);
            continue;
        }
        QString name = QFile::decodeName(argument.c_str());
        std::optional<LapChoice> laps;
        QString problem;
        if (!splitLaps(&name, &laps, &problem)) {
            problems.append({true, name, QString(name % QLatin1String(": ") % problem)});
            continue;
        }
        if (!QFileInfo(name).isDir()) {
            files.append({name, laps, QString()});
            continue;
        }
        FolderSearch found(recursive, plugins);
        found.search(fs::path(QFile::encodeName(QDir::cleanPath(name)).toStdString()));
        std::sort(found.files.begin(), found.files.end(), isBefore);
        if (found.files.isEmpty() && found.problems.isEmpty()) {
            problems.append(
                {false, name,
                 QString(name % QLatin1String(": no recordings in this folder (supported: ")
                         % plugins.wildcards().join(QLatin1String(", "))
                         % QLatin1String(recursive ? ")" : "); -r includes subfolders"))});
        }
        problems += found.problems;
        for (const QString &file : qAsConst(found.files)) {
            const QString below = QDir(name).relativeFilePath(QFileInfo(file).absolutePath());
            files.append({file, laps, below == QLatin1String(".") ? QString() : below});
        }
    }
}
