#pragma once

#include "host/commands/exitcode.h"
#include "host/files/pluginregistry.h"

#include <optional>
#include <string>

class Terminal;

namespace CLI {
class App;
}

/// One command of the program: its options, and what it does with them.
class Command
{
public:
    Command() = default;
    Command(const Command &) = delete;
    Command &operator=(const Command &) = delete;
    virtual ~Command();

    /// Adds the command with its options to \a program, which fills them in when it parses. The
    /// command has to outlive \a program.
    virtual CLI::App *declare(CLI::App &program) = 0;

    /// Does what the options ask for.
    virtual ExitCode run(Terminal &terminal) = 0;

protected:
    /// Adds \a name to \a program with the options that every command has.
    CLI::App *declareNamed(CLI::App &program, const std::string &name,
                           const std::string &description, const std::string &examples);

    /// Finds the plug-ins; without any, the result is empty and the user knows where they were
    /// looked for.
    std::optional<PluginRegistry> loadPlugins(Terminal &terminal) const;

    bool isVerbose() const { return m_verbose; }

private:
    std::string m_plugin;
    bool m_verbose = false;
};
