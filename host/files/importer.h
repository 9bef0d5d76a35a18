#pragma once

#include "host/files/importedfile.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

class PluginRegistry;
class Terminal;

/// The result of an attempt to import a file.
struct ImportAttempt {
    /// Empty where the file cannot be read, or no plug-in reads files of such a name.
    QString format;
    Laps laps;
    QVector<ImportMessage> messages; ///< as the plug-in sent them, in that order
    QStringList errors; ///< what went wrong, as the plug-in or the importer puts it
    bool lacksMemory = false; ///< that is why there are no laps
};

/// Imports files with the plug-in that fits each, and shows the messages of the plug-ins.
class Importer
{
public:
    /// Both must outlive the importer. Errors go to \a terminal, and with \a verbose information
    /// as well.
    Importer(const PluginRegistry &plugins, Terminal &terminal, bool verbose);

    /// Imports \a fileName. Without any lap the result is empty, and a line on standard error has
    /// named the file and the reason.
    std::optional<ImportedFile> import(const QString &fileName);

    /// The same, but does not show errors: they are in the result.
    ImportAttempt attempt(const QString &fileName);

private:
    const PluginRegistry &m_plugins;
    Terminal &m_terminal;
    bool m_verbose;
};
