#include "host/commands/channelscommand.h"
#include "host/commands/checkcommand.h"
#include "host/commands/comparecommand.h"
#include "host/commands/exportcommand.h"
#include "host/commands/formatscommand.h"
#include "host/commands/infocommand.h"
#include "host/commands/lapscommand.h"
#include "host/commands/reportcommand.h"
#include "host/files/pluginregistry.h"
#include "host/text/terminal.h"
#include "plugin/zepplugininterfaceimport.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QStringList>
#include <QTextCodec>

#include <csignal>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace {

int exitStatus(ExitCode code)
{
    return static_cast<int>(code);
}

/// What is wrong with the command line, and where to read on.
std::string usageError(const CLI::App &program, const CLI::ParseError &error,
                       const std::string &firstArgument)
{
    const std::vector<CLI::App *> chosen = program.get_subcommands();
    if (!chosen.empty())
        return std::string(error.what()) + "; see zepimport " + chosen.front()->get_name()
            + " --help";
    if (firstArgument.empty())
        return "a command is missing; see zepimport --help";
    return "there is no command '" + firstArgument + "'; see zepimport --help";
}

/// The versions of the program and of the plug-ins that it finds, and where those are.
std::string versions()
{
    const PluginRegistry registry(PluginRegistry::searchPath(QString()));
    QStringList lines{QStringLiteral("zepimport " ZEPIMPORT_VERSION)};
    for (const PluginRegistry::Plugin &plugin : registry.plugins())
        lines.append(plugin.interface->pluginName() % QLatin1Char(' ')
                     % plugin.interface->pluginVersion() % QLatin1String(", ") % plugin.library);
    if (registry.plugins().isEmpty())
        lines.append(QLatin1String("no import plug-in found (")
                     % registry.remarks().join(QLatin1String("; ")) % QLatin1Char(')'));
    return lines.join(QLatin1Char('\n')).toStdString();
}

} // namespace

int main(int argc, char *argv[])
{
    // A closed pipe ends the program as it ends others, whatever it inherited; a file that may not
    // grow further is an error like a full disk.
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_IGN);
    const QCoreApplication application(argc, argv);
    // File names and output are UTF-8 also where the locale knows only ASCII.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<LapsCommand>());
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<ChannelsCommand>());
    commands.push_back(std::make_unique<CompareCommand>());
    commands.push_back(std::make_unique<ExportCommand>());
    commands.push_back(std::make_unique<ReportCommand>());
    commands.push_back(std::make_unique<CheckCommand>());
    commands.push_back(std::make_unique<FormatsCommand>());

    CLI::App program("Shows the laps of telemetry recordings, read by the import plug-ins of ZEP.",
                     "zepimport");
    program.set_version_flag("--version", versions);
    program.require_subcommand(1);
    program.footer("`zepimport COMMAND --help` tells more, with examples.");
    std::vector<std::pair<CLI::App *, Command *>> declared;
    for (const auto &command : commands)
        declared.emplace_back(command->declare(program), command.get());

    Terminal terminal;
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == 0)
            return program.exit(error);
        terminal.complain(
            QString::fromStdString(usageError(program, error, argc > 1 ? argv[1] : "")));
        return exitStatus(ExitCode::WrongUse);
    }

    ExitCode result = ExitCode::Success;
    try {
        for (const auto &[parsed, command] : declared) {
            if (parsed->parsed())
                result = command->run(terminal);
        }
    } catch (const std::bad_alloc &) {
        terminal.complain(QStringLiteral("there is too little memory; name fewer files or laps"));
        result = ExitCode::Failure;
    }
    if (!terminal.flush()) {
        terminal.complain(QStringLiteral("the output could not be written; is the disk full?"));
        return exitStatus(ExitCode::Failure);
    }
    return exitStatus(result);
}
