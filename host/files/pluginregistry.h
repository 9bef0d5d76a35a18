#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class ZepPluginInterfaceImport;

/// The import plug-ins that the program found. They stay loaded until it ends, because laps and
/// messages refer to their code.
class PluginRegistry
{
public:
    struct Plugin {
        ZepPluginInterfaceImport *interface; ///< owned by the library
        QString library; ///< path of the file
    };
    /// A plug-in and one of its formats, as availableImportFormats() spells it.
    struct Match {
        ZepPluginInterfaceImport *interface = nullptr; ///< null if no format fits
        QString format;
    };

    /// The files and folders to look for plug-ins in, of the first source that names any: \a given
    /// (from the command line), the environment variable ZEP_PLUGIN_PATH, and without both the
    /// folder of the program and that of installed plug-ins.
    static QStringList searchPath(const QString &given);

    /// Loads every library of \a path that offers the import interface. Of folders, the other files
    /// are skipped, and so is a library with the name of one in an earlier folder.
    explicit PluginRegistry(const QStringList &path);

    const QVector<Plugin> &plugins() const { return m_plugins; }
    /// Why there is no plug-in at places of the path, or in libraries there; one line each.
    const QStringList &remarks() const { return m_remarks; }

    /// The first plug-in and format whose wildcards ("*.ibt") fit \a fileName, in any case.
    Match match(const QString &fileName) const;
    /// The wildcards of every format of every plug-in: "*.ibt".
    QStringList wildcards() const;

private:
    void load(const QString &library);

    QVector<Plugin> m_plugins;
    QStringList m_remarks;
};

/// The wildcards in the last parentheses of \a format: "Name (*.a *.b)" has "*.a" and "*.b".
QStringList formatWildcards(const QString &format);
