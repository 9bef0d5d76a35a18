#pragma once

#include "host/commands/pluginoptions.h"
#include "host/files/recordingfiles.h"

#include <QStringList>

#include <optional>
#include <string>
#include <vector>

class CommandOptions;
class Terminal;

/// `FILE...` and `--recursive`, with the plug-ins that read them: where the laps come from.
class FileOptions
{
public:
    /// \a text describes FILE.
    void declare(CommandOptions &options, const std::string &text);
    /// The same for a command that lets the user choose laps.
    void declareWithLaps(CommandOptions &options);

    const PluginOptions &plugins() const { return m_plugins; }

    /// The files that the user means.
    RecordingFiles find(const PluginRegistry &plugins) const;

    /// Removes \a name from the files that the user named; false if it is none of them.
    bool take(const std::string &name);
    bool isEmpty() const { return m_files.empty(); }

private:
    PluginOptions m_plugins;
    std::vector<std::string> m_files;
    bool m_recursive = false;
};
