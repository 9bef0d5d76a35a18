#include "host/commands/filecommand.h"

#include "host/files/childprocesses.h"
#include "host/files/importer.h"
#include "host/files/recordingfiles.h"
#include "host/text/progress.h"
#include "host/text/terminal.h"

#include <CLI/CLI.hpp>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

void FileCommand::declareFiles(CLI::App &command)
{
    command
        .add_option("FILE", m_files,
                    "Recordings to read, or folders of them;\n"
                    "FILE:CHOICE chooses laps as --lap does")
        ->required()
        ->type_name("");
    command.add_flag("-r,--recursive", m_recursive, "Read the folders below a folder, too");
    m_app = &command;
}

void FileCommand::declareLaps(CLI::App &command, const LapChoice &otherwise,
                              const std::string &description)
{
    m_laps = otherwise;
    command
        .add_option("--lap", m_lapText,
                    description + ",\nby # in `laps`: 3 or 3,5-7 or best or all")
        ->type_name("CHOICE")
        ->check([this](const std::string &text) {
            QString problem;
            const std::optional<LapChoice> laps =
                LapChoice::parse(QString::fromStdString(text), &problem);
            m_laps = laps.value_or(m_laps);
            return problem.toStdString();
        });
}

void FileCommand::declareChannels(CLI::App &command)
{
    command
        .add_option("--channels", m_channels,
                    "Channels: names, with * and ?, and presets:\n"
                        + ChannelChoice::presets().join(QLatin1String(", ")).toStdString())
        ->type_name("NAMES")
        ->delimiter(',')
        ->allow_extra_args(false);
}

void FileCommand::declareBatch(CLI::App &command)
{
    m_isBatch = true;
    command.add_flag("-q,--quiet", m_quiet, "Show no progress and no summary of several files");
    command
        .add_option("-j,--jobs", m_jobs,
                    "Read N files at once, in separate processes,\n"
                    "so that one which crashes costs itself alone")
        ->type_name("N")
        ->check(CLI::Range(1, 256).description(""));
}

std::optional<QVector<ChosenChannel>> FileCommand::chosenChannels(const ChosenLaps &chosen,
                                                                  Terminal &terminal) const
{
    QStringList choices;
    for (const std::string &choice : m_channels)
        choices.append(QString::fromStdString(choice));
    QString problem;
    const QVector<ChosenChannel> channels =
        ChannelChoice(choices).channels(chosen.laps(), &problem);
    if (problem.isEmpty())
        return channels;
    terminal.complain(chosen.file.fileName % QLatin1String(": ") % problem);
    return std::nullopt;
}

bool FileCommand::takeFile(const std::string &name)
{
    const auto place = std::find(m_files.begin(), m_files.end(), name);
    if (place == m_files.end())
        return false;
    m_files.erase(place);
    return true;
}

bool FileCommand::isRecording(const QString &output, const RecordingFile &file, Terminal &terminal)
{
    const QFileInfo info(output);
    if (!info.exists() || info != QFileInfo(file.fileName))
        return false;
    terminal.complain(file.fileName
                      % QLatin1String(": is the recording itself; choose another output"));
    return true;
}

bool FileCommand::accepts(const QVector<RecordingFile> &, Terminal &)
{
    return true;
}

ExitCode FileCommand::finish(Terminal &)
{
    return ExitCode::Success;
}

void FileCommand::takeOutput(const QByteArray &output, Terminal &terminal)
{
    terminal.print(QString::fromUtf8(output));
}

QString FileCommand::summary(int files, const QStringList &failed)
{
    constexpr int mostNames = 5;
    const QString done =
        QStringLiteral("%1 of %2 files done").arg(files - failed.size()).arg(files);
    if (failed.isEmpty())
        return done;
    const QString more = failed.size() > mostNames
        ? QStringLiteral(" and %1 more").arg(failed.size() - mostNames)
        : QString();
    return done % QLatin1String(", failed: ")
        % QStringList(failed.mid(0, mostNames)).join(QLatin1String(", ")) % more;
}

QStringList FileCommand::jobArguments(const RecordingFile &recording) const
{
    QStringList arguments{QString::fromStdString(m_app->get_name()), QStringLiteral("--quiet")};
    for (const CLI::Option *option : m_app->get_options()) {
        const QString name = QLatin1String("--")
            % QString::fromStdString(option->get_positional() ? std::string()
                                                              : option->get_lnames().front());
        static const QStringList own{"--", "--quiet", "--jobs", "--recursive", "--lap"};
        if (option->empty() || own.contains(name))
            continue;
        if (option->get_expected_max() == 0) {
            arguments.append(name);
            continue;
        }
        for (const std::string &value : option->results())
            arguments.append(name % QLatin1Char('=') % QFile::decodeName(value.c_str()));
    }
    const QString laps = recording.laps.value_or(m_laps).text();
    if (!laps.isEmpty())
        arguments.append(QLatin1String("--lap=") % laps);
    return arguments + extraOptions() + QStringList{QStringLiteral("--"), recording.fileName};
}

ExitCode FileCommand::processFile(Importer &importer, const RecordingFile &recording,
                                  Terminal &terminal)
{
    std::optional<ImportedFile> file = importer.import(recording.fileName);
    if (!file)
        return ExitCode::Failure;
    QString problem;
    const QVector<int> indices = recording.laps.value_or(m_laps).indices(file->laps, &problem);
    if (!problem.isEmpty()) {
        terminal.complain(file->fileName % QLatin1String(": ") % problem);
        return ExitCode::WrongUse;
    }
    return process({std::move(*file), indices}, terminal);
}

ExitCode FileCommand::runHere(const QVector<RecordingFile> &recordings,
                              const PluginRegistry &plugins, const std::function<void(int)> &done,
                              QStringList *failed, Terminal &terminal)
{
    ExitCode result = ExitCode::Success;
    Importer importer(plugins, terminal, isVerbose());
    for (int i = 0; i < recordings.size(); ++i) {
        const ExitCode code = processFile(importer, recordings.at(i), terminal);
        if (code != ExitCode::Success)
            failed->append(recordings.at(i).fileName);
        result = std::max(result, code);
        done(i);
    }
    return result;
}

ExitCode FileCommand::runJobs(const QVector<RecordingFile> &recordings,
                              const PluginRegistry &plugins, const std::function<void(int)> &done,
                              QStringList *failed, Terminal &terminal)
{
    QVector<QStringList> arguments;
    for (const RecordingFile &recording : recordings)
        arguments.append(jobArguments(recording));
    ExitCode result = ExitCode::Success;
    Importer importer(plugins, terminal, isVerbose());
    bool isAlone = false;
    ChildProcesses jobs(arguments, m_jobs, terminal.environment());
    jobs.run([&](int index, const ChildProcesses::Result &job) {
        const RecordingFile &recording = recordings.at(index);
        ExitCode code = ExitCode::Failure;
        terminal.passOnErrors(job.errors);
        switch (job.end) {
        case ChildProcesses::End::Exit:
            code = static_cast<ExitCode>(job.exitCode);
            if (!job.output.isEmpty())
                takeOutput(job.output, terminal);
            break;
        case ChildProcesses::End::Crash:
            terminal.complain(recording.fileName
                              % QLatin1String(": its process crashed; the file may be damaged"));
            break;
        case ChildProcesses::End::NoStart:
            if (!std::exchange(isAlone, true))
                terminal.complain(QStringLiteral("no further process could be started, so this one "
                                                 "reads the rest; choose fewer --jobs"));
            code = processFile(importer, recording, terminal);
            break;
        }
        if (code != ExitCode::Success)
            failed->append(recording.fileName);
        result = std::max(result, code);
        done(index);
    });
    return result;
}

ExitCode FileCommand::run(Terminal &terminal)
{
    const std::optional<PluginRegistry> plugins = loadPlugins(terminal);
    if (!plugins)
        return ExitCode::Failure;

    ExitCode result = ExitCode::Success;
    const RecordingFiles recordings(m_files, m_recursive, *plugins);
    for (const RecordingFiles::Problem &problem : recordings.problems) {
        terminal.complain(problem.text);
        result = std::max(result, problem.isWrongUse ? ExitCode::WrongUse : ExitCode::Failure);
    }
    const QVector<RecordingFile> &files = recordings.files;
    if (!accepts(files, terminal))
        return ExitCode::WrongUse;

    const bool isBatch = m_isBatch && files.size() > 1;
    std::optional<Progress> progress;
    if (isBatch && !m_quiet) {
        QVector<qint64> sizes;
        for (const RecordingFile &file : files)
            sizes.append(QFileInfo(file.fileName).size());
        progress.emplace(terminal, sizes);
    }
    const auto done = [&progress](int index) {
        if (progress)
            progress->finishFile(index);
    };
    QStringList failed;
    result = std::max(result,
                      isBatch && m_jobs > 1 ? runJobs(files, *plugins, done, &failed, terminal)
                                            : runHere(files, *plugins, done, &failed, terminal));
    progress.reset();
    result = std::max(result, finish(terminal));
    if (isBatch && !m_quiet)
        terminal.complain(summary(files.size(), failed));
    return result;
}
