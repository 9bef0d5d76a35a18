#pragma once

#include "host/commands/exitcode.h"

class CommandOptions;
class Terminal;

/// One command of the program: its options, and what it does with them. What commands share are
/// members of their classes: PluginOptions, FileOptions, LapOptions, ChannelOptions, Listing,
/// JsonOption, OutputOptions, BatchOptions.
///
/// For tables with `--json`, start from channelscommand.cpp. A command with BatchOptions must set
/// FileWork::arguments. A command without either:
///
///     void GapsCommand::declare(CommandOptions &options)
///     {
///         m_files.declareWithLaps(options);         // FILE..., -r, --plugin, -v
///         m_laps.declare(options, "Laps to count"); // --lap, and FILE:CHOICE
///         m_channels.declare(options, "Channels"); // --channels
///     }
///
///     ExitCode GapsCommand::run(Terminal &terminal)
///     {
///         FileWork work;
///         work.process = [&](const RecordingFile &file, Importer &importer) {
///             return m_laps.import(file, importer, terminal, [&](ChosenLaps &&chosen) {
///                 const auto channels = m_channels.chosen(chosen, terminal);
///                 if (!channels)
///                     return ExitCode::WrongUse; // reported already
///                 ...
///                 return ExitCode::Success;
///             });
///         };
///         return processFiles(m_files, work, terminal);
///     }
class Command
{
public:
    struct Description {
        const char *name;
        const char *text; ///< one line
        const char *examples; ///< lines, each indented by two spaces
    };

    Command() = default;
    Command(const Command &) = delete;
    Command &operator=(const Command &) = delete;
    virtual ~Command();

    virtual Description description() const = 0;

    /// Declares the options of the command, whose values it keeps.
    virtual void declare(CommandOptions &options) = 0;

    /// Does what the options ask for. Failure, or wrong use, if not all of it; then that has been
    /// reported.
    virtual ExitCode run(Terminal &terminal) = 0;
};
