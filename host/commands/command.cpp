#include "host/commands/command.h"

#include "host/text/terminal.h"

#include <CLI/CLI.hpp>

#include <QFile>

Command::~Command() = default;

CLI::App *Command::declareNamed(CLI::App &program, const std::string &name,
                                const std::string &description, const std::string &examples)
{
    CLI::App *command = program.add_subcommand(name, description);
    command->add_flag("-v,--verbose", m_verbose, "Show every message of the plug-ins");
    command
        ->add_option("--plugin", m_plugin,
                     "Plug-in, or folder of plug-ins, to use instead of\n"
                     "those of ZEP_PLUGIN_PATH or the installed ones")
        ->type_name("PATH");
    command->footer("Examples:\n" + examples);
    return command;
}

std::optional<PluginRegistry> Command::loadPlugins(Terminal &terminal) const
{
    const PluginRegistry registry(PluginRegistry::searchPath(QFile::decodeName(m_plugin.c_str())));
    if (registry.plugins().isEmpty()) {
        terminal.complain(QLatin1String("no import plug-in found (")
                          % registry.remarks().join(QLatin1String("; "))
                          % QLatin1String("); name its file or folder with --plugin PATH"));
        return std::nullopt;
    }
    if (m_verbose) {
        for (const QString &remark : registry.remarks())
            terminal.complain(remark);
    }
    return registry;
}
