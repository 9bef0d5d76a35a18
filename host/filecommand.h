#pragma once

#include "host/channelchoice.h"
#include "host/chosenlaps.h"
#include "host/command.h"
#include "host/lapchoice.h"

#include <QVector>

#include <optional>
#include <string>
#include <vector>

struct RecordingFile;

/// A command that imports the files that the user names, one after the other, and does something
/// with the laps and channels chosen of each. The choosing is the same in every such command:
///
///     CLI::App *GapsCommand::declare(CLI::App &program)
///     {
///         CLI::App *command = declareNamed(program, "gaps", "Count missing samples",
///                                          "  zepimport gaps monday/ --channels 'tire*'");
///         declareFiles(*command);                           // FILE..., -r
///         declareLaps(*command, LapChoice::best(), "Laps"); // --lap, also FILE:CHOICE
///         declareChannels(*command);                        // --channels
///         return command;
///     }
///
///     ExitCode GapsCommand::process(ChosenLaps &&chosen, Terminal &terminal)
///     {
///         const auto channels = chosenChannels(chosen, terminal);
///         if (!channels)
///             return ExitCode::WrongUse; // the user knows why
///         for (const ZEP::Lap *lap : chosen.laps())
///             for (const ChosenChannel &channel : *channels)
///                 if (const auto samples = channel.in(*lap)) ...
///         return ExitCode::Success;
///     }
///
/// A command that needs the laps of all files at once moves each ChosenLaps into a member of its
/// own, and does its work in finish().
class FileCommand : public Command
{
public:
    ExitCode run(Terminal &terminal) override;

protected:
    /// Adds the files, and what finds them, to the command line of \a command.
    void declareFiles(CLI::App &command);
    /// Adds the choice of laps, which \a description describes; \a otherwise is what it means to
    /// choose none. Without this, the representative lap of each file is chosen.
    void declareLaps(CLI::App &command, const LapChoice &otherwise, const std::string &description);
    /// Adds the choice of channels.
    void declareChannels(CLI::App &command);

    /// The channels of \a chosen that the user asked for; none if one does not exist, and the user
    /// knows.
    std::optional<QVector<ChosenChannel>> chosenChannels(const ChosenLaps &chosen,
                                                         Terminal &terminal) const;

    /// Takes \a name from the files that the user named; false if it is none of them.
    bool takeFile(const std::string &name);
    /// Whether the user named any files.
    bool hasFiles() const { return !m_files.empty(); }

    /// Called once, before the first file is read. If it is false the command ends as wrongly used,
    /// and the user knows why.
    virtual bool accepts(const QVector<RecordingFile> &files, Terminal &terminal);
    /// Does the command's work for one file. Called for each file that could be imported and has
    /// the laps asked for, in the order of the command line.
    virtual ExitCode process(ChosenLaps &&chosen, Terminal &terminal) = 0;
    /// Called once, after the last file, also when files failed.
    virtual ExitCode finish(Terminal &terminal);

private:
    std::vector<std::string> m_files;
    bool m_recursive = false;
    std::string m_lapText;
    LapChoice m_laps = LapChoice::representative();
    std::vector<std::string> m_channels;
};
