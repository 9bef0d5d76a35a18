#pragma once

#include "host/files/pluginregistry.h"

#include <QStringList>

#include <optional>
#include <string>

class CommandOptions;
class Terminal;

/// `--plugin` and `--verbose`: which plug-ins to use, and how much to show of what they say.
class PluginOptions
{
public:
    void declare(CommandOptions &options);

    /// Finds the plug-ins. Without any, the result is empty, and an error says where they were
    /// looked for.
    std::optional<PluginRegistry> load(Terminal &terminal) const;

    bool isVerbose() const { return m_verbose; }

    /// The same choice as arguments of another process.
    QStringList arguments() const;

private:
    std::string m_plugin;
    bool m_verbose = false;
};
