#include "host/commands/program.h"

#include "host/commands/channelscommand.h"
#include "host/commands/checkcommand.h"
#include "host/commands/commandline.h"
#include "host/commands/comparecommand.h"
#include "host/commands/exportcommand.h"
#include "host/commands/formatscommand.h"
#include "host/commands/infocommand.h"
#include "host/commands/lapscommand.h"
#include "host/commands/reportcommand.h"
#include "host/files/nearestnames.h"
#include "host/files/pluginregistry.h"
#include "host/text/terminal.h"
#include "plugin/zepplugininterfaceimport.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTextCodec>

#include <csignal>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace {

using Commands = std::vector<std::unique_ptr<Command>>;

/// In the order of the help.
Commands allCommands()
{
    Commands commands;
    commands.push_back(std::make_unique<LapsCommand>());
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<ChannelsCommand>());
    commands.push_back(std::make_unique<CompareCommand>());
    commands.push_back(std::make_unique<ExportCommand>());
    commands.push_back(std::make_unique<ReportCommand>());
    commands.push_back(std::make_unique<CheckCommand>());
    commands.push_back(std::make_unique<FormatsCommand>());
    return commands;
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

/// What is wrong with the command line, and where to read on.
QString usageError(const CommandLine &line, const Commands &commands, const char *firstArgument)
{
    if (!line.error().empty())
        return QStringLiteral("%1; see zepimport %2 --help")
            .arg(QString::fromStdString(line.error()), QString::fromStdString(line.command()));
    if (!firstArgument)
        return QStringLiteral("no command given; see zepimport --help");
    const QString typed = QFile::decodeName(firstArgument);
    const bool isOption = typed.startsWith(QLatin1Char('-'));
    QStringList names;
    for (const auto &command : commands)
        names.append(QLatin1String(command->description().name));
    const QString meant = isOption ? QString() : didYouMean(typed, names);
    return QStringLiteral("there is no %1 '%2'%3 zepimport --help")
        .arg(isOption ? QStringLiteral("option") : QStringLiteral("command"), typed,
             meant.isEmpty() ? QStringLiteral("; see") : QString(meant % QLatin1String(" See")));
}

ExitCode runCommand(Command &command, Terminal &terminal)
{
    try {
        return command.run(terminal);
    } catch (const std::bad_alloc &) {
        terminal.complain(QStringLiteral("not enough memory; choose fewer files or laps"));
        return ExitCode::Failure;
    }
}

} // namespace

int runProgram(int argc, char *argv[])
{
    // A closed pipe ends the program as it ends others, whatever it inherited; a file that may not
    // grow further is an error like a full disk.
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_IGN);
    const QCoreApplication application(argc, argv);
    // File names and output are UTF-8 also where the locale knows only ASCII.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));

    const Commands commands = allCommands();
    CommandLine line(
        "zepimport", "Shows the laps of telemetry recordings, using the import plug-ins of ZEP.",
        "`zepimport COMMAND --help` lists the options of a command, with examples.", versions);
    for (const auto &command : commands) {
        const Command::Description description = command->description();
        CommandOptions options = line.addCommand(description.name, description.text,
                                                 std::string("Examples:\n") + description.examples);
        command->declare(options);
    }

    Terminal terminal;
    ExitCode result = ExitCode::Success;
    switch (line.parse(argc, argv)) {
    case CommandLine::End::Answer:
        return static_cast<int>(ExitCode::Success);
    case CommandLine::End::WrongUse:
        terminal.complain(usageError(line, commands, argc > 1 ? argv[1] : nullptr));
        return static_cast<int>(ExitCode::WrongUse);
    case CommandLine::End::Command:
        for (const auto &command : commands) {
            if (line.command() == command->description().name)
                result = runCommand(*command, terminal);
        }
        break;
    }
    if (!terminal.flush()) {
        terminal.complain(QStringLiteral("the output could not be written; is the disk full?"));
        return static_cast<int>(ExitCode::Failure);
    }
    return static_cast<int>(result);
}
