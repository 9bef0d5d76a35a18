// The plug-in as a host gets it, for the tests that import files.
#pragma once

#include "plugin/zepplugininterfaceimport.h"

#include <QByteArray>
#include <QPluginLoader>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

#include <memory>
#include <vector>

/// One message of the plug-in, as it reaches the host.
struct SentMessage {
    QString text;
    int level;

    bool operator==(const SentMessage &other) const
    {
        return text == other.text && level == other.level;
    }
};

/// The result of one import.
struct ImportResult {
    std::vector<std::unique_ptr<ZEP::Lap>> laps;
    QVector<SentMessage> messages;
};

/// Loads the built plug-in with the real loader and imports recordings through it.
class ImportFixture
{
public:
    static constexpr const char *Format = "iRacing binary telemetry (*.ibt)";
    static constexpr const char *Prefix = "[ZEP iRacing ibt import plugin plugin] ";

    ImportFixture();

    /// Creates the plug-in's object again, after it was deleted.
    void reload();

    bool isLoaded() const { return m_plugin != nullptr; }
    ZepPluginInterfaceImport *plugin() const { return m_plugin; }
    QPluginLoader *loader() { return &m_loader; }

    /// Writes \a bytes into a file of the fixture's folder and returns its name.
    QString write(const QByteArray &bytes);
    /// Imports a file.
    ImportResult importFile(const QString &fileName, const QString &format = QLatin1String(Format));
    /// Writes \a bytes into a file and imports it.
    ImportResult importBytes(const QByteArray &bytes) { return importFile(write(bytes)); }

private:
    QTemporaryDir m_dir;
    QPluginLoader m_loader;
    ZepPluginInterfaceImport *m_plugin = nullptr;
};
