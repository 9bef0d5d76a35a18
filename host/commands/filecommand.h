#pragma once

#include "host/commands/command.h"
#include "host/files/channelchoice.h"
#include "host/files/chosenlaps.h"
#include "host/files/lapchoice.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class Importer;
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

    /// What several files ended up as, for the user.
    static QString summary(int files, const QStringList &failed);

protected:
    /// Adds the files, and what finds them, to the command line of \a command.
    void declareFiles(CLI::App &command);
    /// Adds the choice of laps, which \a description describes; \a otherwise is what it means to
    /// choose none. Without this, the representative lap of each file is chosen.
    void declareLaps(CLI::App &command, const LapChoice &otherwise, const std::string &description);
    /// Adds the choice of channels.
    void declareChannels(CLI::App &command);
    /// For a command that does its work file by file: it shows its progress and a summary, and the
    /// user can choose separate processes. Each of them is the same command for one file, and
    /// takeOutput() gets what it printed.
    void declareBatch(CLI::App &command);
    /// Whether the user chose channels; else all are chosen.
    bool hasChannelChoice() const { return !m_channels.empty(); }

    /// The channels of \a chosen that the user asked for; none if one does not exist, and the user
    /// knows.
    std::optional<QVector<ChosenChannel>> chosenChannels(const ChosenLaps &chosen,
                                                         Terminal &terminal) const;

    /// Takes \a name from the files that the user named; false if it is none of them.
    bool takeFile(const std::string &name);
    /// Whether the user named any files.
    bool hasFiles() const { return !m_files.empty(); }

    /// Whether \a output is \a file, which is read, and must not be replaced; then the user knows.
    static bool isRecording(const QString &output, const RecordingFile &file, Terminal &terminal);

    /// Called once, before the first file is read. If it is false the command ends as wrongly used,
    /// and the user knows why.
    virtual bool accepts(const QVector<RecordingFile> &files, Terminal &terminal);
    /// Does the command's work for one file. Called for each file that could be imported and has
    /// the laps asked for, in the order of the command line.
    virtual ExitCode process(ChosenLaps &&chosen, Terminal &terminal) = 0;
    /// Takes what a separate process printed about a file, instead of process(). Prints it, unless
    /// overridden.
    virtual void takeOutput(const QByteArray &output, Terminal &terminal);
    /// Options that a separate process gets beside those of this one.
    virtual QStringList extraOptions() const { return {}; }
    /// Called once, after the last file, also when files failed.
    virtual ExitCode finish(Terminal &terminal);

private:
    ExitCode processFile(Importer &importer, const RecordingFile &recording, Terminal &terminal);
    QStringList jobArguments(const RecordingFile &recording) const;
    /// Both do the work for every file, add those that fail to \a failed, and say after each to
    /// \a done that it is.
    ExitCode runHere(const QVector<RecordingFile> &recordings, const PluginRegistry &plugins,
                     const std::function<void(int)> &done, QStringList *failed, Terminal &terminal);
    ExitCode runJobs(const QVector<RecordingFile> &recordings, const PluginRegistry &plugins,
                     const std::function<void(int)> &done, QStringList *failed, Terminal &terminal);

    CLI::App *m_app = nullptr;
    std::vector<std::string> m_files;
    bool m_recursive = false;
    std::string m_lapText;
    LapChoice m_laps = LapChoice::representative();
    std::vector<std::string> m_channels;
    bool m_isBatch = false;
    bool m_quiet = false;
    int m_jobs = 1;
};
