#include "host/files/pluginregistry.h"

#include "plugin/zepplugininterfaceimport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QRegularExpression>

namespace {

/// True when the metadata of \a library says so; none of its code runs.
bool offersImport(const QFileInfo &library)
{
    // A relative path would be looked up in Qt's own plug-in folders.
    return QPluginLoader(library.absoluteFilePath())
               .metaData()
               .value(QLatin1String("IID"))
               .toString()
        == QLatin1String(ZepPluginInterfaceImport_iid);
}

} // namespace

QStringList PluginRegistry::searchPath(const QString &given)
{
    if (!given.isEmpty())
        return {given};
    const QString listed = qEnvironmentVariable("ZEP_PLUGIN_PATH");
    const QStringList path = listed.split(QDir::listSeparator(), Qt::SkipEmptyParts);
    if (!path.isEmpty())
        return path;
    const QDir own(QCoreApplication::applicationDirPath());
    return {own.path(),
            QDir::cleanPath(own.absoluteFilePath(QStringLiteral(ZEPIMPORT_PLUGIN_DIR)))};
}

PluginRegistry::PluginRegistry(const QStringList &path)
{
    QStringList taken;
    for (const QString &place : path) {
        const QFileInfo info(place);
        if (info.isDir()) {
            const int before = m_plugins.size();
            for (const QFileInfo &entry : QDir(place).entryInfoList(QDir::Files, QDir::Name)) {
                const QString name = entry.fileName();
                if (taken.contains(name) || !QLibrary::isLibrary(name) || !offersImport(entry))
                    continue;
                taken.append(name);
                load(entry.absoluteFilePath());
            }
            if (m_plugins.size() == before)
                m_remarks.append(place % QLatin1String(": no import plug-in in this folder"));
        } else if (!info.exists()) {
            m_remarks.append(place % QLatin1String(": no such file or folder"));
        } else if (!offersImport(info)) {
            m_remarks.append(place % QLatin1String(": not an import plug-in"));
        } else {
            load(info.absoluteFilePath());
        }
    }
}

void PluginRegistry::load(const QString &library)
{
    QPluginLoader loader(library);
    auto *interface = qobject_cast<ZepPluginInterfaceImport *>(loader.instance());
    if (interface)
        m_plugins.append({interface, library});
    else
        m_remarks.append(library % QLatin1String(": ") % loader.errorString());
}

PluginRegistry::Match PluginRegistry::match(const QString &fileName) const
{
    const QString name = QFileInfo(fileName).fileName();
    for (const Plugin &plugin : m_plugins) {
        for (const QString &format : plugin.interface->availableImportFormats()) {
            if (QDir::match(formatWildcards(format), name))
                return {plugin.interface, format};
        }
    }
    return {};
}

QStringList PluginRegistry::wildcards() const
{
    QStringList all;
    for (const Plugin &plugin : m_plugins) {
        for (const QString &format : plugin.interface->availableImportFormats())
            all += formatWildcards(format);
    }
    all.removeDuplicates();
    return all;
}

QStringList formatWildcards(const QString &format)
{
    static const QRegularExpression lastParentheses(QStringLiteral("\\(([^()]*)\\)[^()]*$"));
    static const QRegularExpression separator(QStringLiteral("[\\s;]+"));
    return lastParentheses.match(format).captured(1).split(separator, Qt::SkipEmptyParts);
}
