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
#include <QThread>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

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

/// Says once that there is not enough memory, without needing any.
int lackOfMemory()
{
    constexpr char line[] = "zepimport: not enough memory; choose fewer files or laps\n";
    static bool isSaid = false;
    if (!std::exchange(isSaid, true) && ::write(STDERR_FILENO, line, sizeof line - 1) < 0)
        isSaid = false;
    return static_cast<int>(ExitCode::Failure);
}

/// The end where memory lacks in code that cannot pass that on, for example in a destructor.
[[noreturn]] void terminate()
{
    if (std::current_exception()) {
        try {
            throw;
        } catch (const std::bad_alloc &) {
            std::_Exit(lackOfMemory());
        } catch (...) {
        }
    }
    std::abort();
}

// Libraries already need memory before main() begins, so this is called before theirs are
// initialised.
__attribute__((section(".preinit_array"), used)) void (*const setTerminate)() = [] {
    std::set_terminate(terminate);
};

ExitCode runCommandLine(int argc, char *argv[])
{
    // Made here: an application crashes where there is no memory for the data of its thread.
    QThread::currentThread();
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
        break;
    case CommandLine::End::WrongUse:
        terminal.complain(usageError(line, commands, argc > 1 ? argv[1] : nullptr));
        return ExitCode::WrongUse;
    case CommandLine::End::Command:
        for (const auto &command : commands) {
            if (line.command() == command->description().name)
                result = command->run(terminal);
        }
        break;
    }
    if (!terminal.flush()) {
        terminal.complain(QStringLiteral("the output could not be written; is the disk full?"));
        return ExitCode::Failure;
    }
    return result;
}

} // namespace

int runProgram(int argc, char *argv[])
{
    // A closed pipe ends the program as it ends others, whatever it inherited; a file that may not
    // grow further is an error like a full disk.
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_IGN);
    // GLib, which Qt would wait for processes with, ends a program that lacks memory.
    qputenv("QT_NO_GLIB", "1");
    try {
        return static_cast<int>(runCommandLine(argc, argv));
    } catch (const std::bad_alloc &) {
        // What Qt destroys at the end of a program may be half made.
        std::fflush(stdout);
        std::_Exit(lackOfMemory());
    }
}
