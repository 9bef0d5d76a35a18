#include "writers/exportnames.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace {

/// In the order of Format.
const QStringList &suffixes()
{
    static const QStringList names{QStringLiteral("csv"), QStringLiteral("json"),
                                   QStringLiteral("mat")};
    return names;
}

} // namespace

std::optional<ExportNames> ExportNames::from(const QString &output, const QString &format,
                                             bool split, QString *problem)
{
    ExportNames names;
    names.m_output = output;
    names.m_split = split;
    names.m_isFolder = !output.isEmpty() && QFileInfo(output).isDir();
    if (output.endsWith(QLatin1Char('/')) && !names.m_isFolder) {
        *problem = output % QLatin1String(": no such folder; create it first");
        return std::nullopt;
    }
    if (split && names.isStandardOutput()) {
        *problem =
            QStringLiteral("--split writes several files; give a folder or a file with --output");
        return std::nullopt;
    }
    // The name of a device or pipe says nothing.
    const QFileInfo info(output);
    const bool isFile = names.isOneFile() && (info.isFile() || !info.exists());
    QString suffix = format;
    if (suffix.isEmpty())
        suffix = isFile && !names.isStandardOutput() ? info.suffix().toLower() : suffixes().first();
    const int index = suffixes().indexOf(suffix);
    if (index < 0) {
        *problem = output
            % QLatin1String(
                       ": no format has this suffix; choose one with --format csv, json or mat")
            % QLatin1String(suffix.isEmpty() ? ", or create the folder first" : "");
        return std::nullopt;
    }
    names.m_format = static_cast<Format>(index);
    return names;
}

ExportNames ExportNames::in(const QString &subfolder) const
{
    ExportNames names = *this;
    if (subfolder.isEmpty() || isOneFile())
        return names;
    names.m_output =
        (m_isFolder ? QDir(m_output).filePath(subfolder) : subfolder) % QLatin1Char('/');
    names.m_isFolder = true;
    return names;
}

QString ExportNames::fileName(const QString &recording) const
{
    if (isOneFile())
        return m_output;
    const QString name = QFileInfo(recording).completeBaseName() % QLatin1Char('.')
        % suffixes().at(static_cast<int>(m_format));
    return m_isFolder ? QDir(m_output).filePath(name) : name;
}

QString ExportNames::fileName(const QString &recording, int lap) const
{
    const QString whole = fileName(recording);
    const QString suffix = QFileInfo(whole).suffix();
    const QString stem = suffix.isEmpty() ? whole : whole.chopped(suffix.size() + 1);
    const QString name = QStringLiteral("%1-lap%2").arg(stem).arg(lap, 2, 10, QLatin1Char('0'));
    return suffix.isEmpty() ? name : QString(name % QLatin1Char('.') % suffix);
}
