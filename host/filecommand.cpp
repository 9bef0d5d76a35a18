#include "host/filecommand.h"

#include "host/recordingfiles.h"
#include "host/terminal.h"

#include <CLI/CLI.hpp>

#include <QFile>

#include <algorithm>

namespace {

QStringList fileNames(const std::vector<std::string> &arguments)
{
    QStringList names;
    for (const std::string &argument : arguments)
        names.append(QFile::decodeName(argument.c_str()));
    return names;
}

} // namespace

void FileCommand::declareFiles(CLI::App &command)
{
    command
        .add_option("FILE", m_files,
                    "Recordings to read, or folders of them;\n"
                    "FILE:CHOICE chooses laps as --lap does")
        ->required()
        ->type_name("");
    command.add_flag("-r,--recursive", m_recursive, "Read the folders below a folder, too");
}

void FileCommand::declareLaps(CLI::App &command, const LapChoice &otherwise,
                              const std::string &description)
{
    m_laps = otherwise;
    command
        .add_option("--lap", m_lapText,
                    description + ", by # in the output of `laps`:\n3 or 3,5-7 or best or all")
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

bool FileCommand::accepts(const QVector<RecordingFile> &, Terminal &)
{
    return true;
}

ExitCode FileCommand::finish(Terminal &)
{
    return ExitCode::Success;
}

ExitCode FileCommand::run(Terminal &terminal)
{
    const std::optional<PluginRegistry> plugins = loadPlugins(terminal);
    if (!plugins)
        return ExitCode::Failure;

    ExitCode result = ExitCode::Success;
    const RecordingFiles recordings(fileNames(m_files), m_recursive, *plugins);
    for (const RecordingFiles::Problem &problem : recordings.problems) {
        terminal.complain(problem.text);
        result = std::max(result, problem.exitCode);
    }

    if (!accepts(recordings.files, terminal))
        return ExitCode::WrongUse;

    Importer importer(*plugins, terminal, isVerbose());
    for (const RecordingFile &recording : recordings.files) {
        std::optional<ImportedFile> file = importer.import(recording.fileName);
        if (!file) {
            result = std::max(result, ExitCode::Failure);
            continue;
        }
        QString problem;
        const QVector<int> indices = recording.laps.value_or(m_laps).indices(file->laps, &problem);
        if (!problem.isEmpty()) {
            terminal.complain(file->fileName % QLatin1String(": ") % problem);
            result = std::max(result, ExitCode::WrongUse);
            continue;
        }
        result = std::max(result, process({std::move(*file), indices}, terminal));
    }
    return std::max(result, finish(terminal));
}
