#include "host/commands/exportcommand.h"

#include "host/files/recordingfiles.h"
#include "host/text/terminal.h"
#include "writers/csvwriter.h"
#include "writers/jsonlapwriter.h"
#include "writers/matwriter.h"
#include "writers/outputfile.h"

#include <CLI/CLI.hpp>

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <cctype>

namespace {

CsvWriter::Units unitsFrom(const std::string &name)
{
    if (name == "header")
        return CsvWriter::Units::Header;
    return name == "none" ? CsvWriter::Units::None : CsvWriter::Units::Row;
}

/// The character that \a text names; none if a number could contain it, or a line.
std::optional<char> separatorFrom(const std::string &text)
{
    if (text == "tab" || text == "\\t")
        return '\t';
    const bool isUsable = text.size() == 1 && std::isalnum(static_cast<unsigned char>(text[0])) == 0
        && std::string("+-.\"\r\n").find(text[0]) == std::string::npos
        && static_cast<unsigned char>(text[0]) < 0x80;
    return isUsable ? std::optional<char>(text[0]) : std::nullopt;
}

} // namespace

CLI::App *ExportCommand::declare(CLI::App &program)
{
    CLI::App *command =
        declareNamed(program, "export", "Write laps to CSV, JSON or MAT files",
                     "  zepimport export practice.ibt --lap best --channels driver -o best.csv\n"
                     "  zepimport export -r season/ --format mat -o exported/\n"
                     "  zepimport export practice.ibt - | head");
    declareFiles(*command);
    declareLaps(*command, LapChoice::all(), "Laps to write");
    declareChannels(*command);
    declareBatch(*command);
    command
        ->add_option("-o,--output", m_output,
                     "File to write, or folder to write into; - is the\n"
                     "standard output. Else the recording's name with\n"
                     "another suffix, in the current folder")
        ->type_name("PATH");
    command->add_option("--format", m_format, "csv, json or mat; else by the output's suffix")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"csv", "json", "mat"}).description(""));
    command->add_flag("--split", m_split, "Write a file for each lap: NAME-lap03.csv");
    command->add_flag("--force", m_force, "Replace files that exist already");
    command
        ->add_option_function<std::string>(
            "--sep",
            [this](const std::string &text) { m_separator = separatorFrom(text).value_or(','); },
            "Character between values of CSV, or tab; else ,")
        ->type_name("CHAR")
        ->check([](const std::string &text) {
            return separatorFrom(text)
                ? std::string()
                : "'" + text + "' cannot stand between numbers; choose one like ; or tab";
        });
    command
        ->add_option("--units", m_units,
                     "Units of CSV: in the header behind the names, in\n"
                     "a row of their own (as without this), or none:\n"
                     "header, row or none")
        ->type_name("PLACE")
        ->check(CLI::IsMember({"header", "row", "none"}).description(""));
    return command;
}

ExitCode ExportCommand::run(Terminal &terminal)
{
    if (takeFile("-")) {
        if (!m_output.empty() || !hasFiles()) {
            terminal.complain(QLatin1String(
                hasFiles() ? "- and --output name two outputs; see zepimport export --help"
                           : "FILE is required beside -; see zepimport export --help"));
            return ExitCode::WrongUse;
        }
        m_output = "-";
    }
    QString problem;
    m_names = ExportNames::from(QFile::decodeName(m_output.c_str()),
                                QString::fromStdString(m_format), m_split, &problem);
    if (!m_names) {
        terminal.complain(problem);
        return ExitCode::WrongUse;
    }
    return FileCommand::run(terminal);
}

bool ExportCommand::accepts(const QVector<RecordingFile> &files, Terminal &terminal)
{
    if (files.size() > 1 && m_names->isOneFile()) {
        terminal.complain(QStringLiteral("several recordings go into several files; name a folder "
                                         "with --output"));
        return false;
    }
    QMap<QString, QString> recordings;
    for (const RecordingFile &file : files) {
        const QString name = m_names->fileName(file.fileName);
        if (isRecording(name, file, terminal))
            return false;
        if (recordings.contains(name)) {
            const bool isSame = QFileInfo(recordings.value(name)) == QFileInfo(file.fileName);
            terminal.complain(
                isSame
                    ? QString(file.fileName
                              % QLatin1String(": is named twice; name all its laps at once, as in ")
                              % file.fileName % QLatin1String(":1,2"))
                    : QStringLiteral("%1 and %2 would both become %3; export them one after "
                                     "the other, into different folders")
                          .arg(recordings.value(name), file.fileName, name));
            return false;
        }
        recordings.insert(name, file.fileName);
    }
    return true;
}

std::unique_ptr<LapWriter> ExportCommand::newWriter(OutputFile &file, const ChosenLaps &chosen,
                                                    const QVector<ChosenChannel> &channels) const
{
    switch (m_names->format()) {
    case ExportNames::Format::Json:
        return std::make_unique<JsonLapWriter>(file, channels, chosen.file.fileName);
    case ExportNames::Format::Mat:
        return std::make_unique<MatWriter>(file, channels, chosen.file.fileName);
    case ExportNames::Format::Csv:
        break;
    }
    return std::make_unique<CsvWriter>(file, channels, chosen.laps(), unitsFrom(m_units),
                                       m_separator);
}

bool ExportCommand::writeFile(const QString &name, ChosenLaps &chosen,
                              const QVector<ChosenChannel> &channels, Terminal &terminal) const
{
    OutputFile file(name);
    QString problem;
    if (!file.open(m_force, &problem)) {
        terminal.complain(problem);
        return false;
    }
    const std::unique_ptr<LapWriter> writer = newWriter(file, chosen, channels);
    for (const int index : qAsConst(chosen.indices)) {
        writer->write(index + 1, std::move(chosen.file.laps[std::size_t(index)]));
        if (!file.isGood())
            break;
    }
    if (!writer->finish(&problem)) {
        terminal.complain(name % QLatin1String(": ") % problem);
        return false;
    }
    if (!file.commit(&problem)) {
        terminal.complain(problem);
        return false;
    }
    return true;
}

ExitCode ExportCommand::process(ChosenLaps &&chosen, Terminal &terminal)
{
    const std::optional<QVector<ChosenChannel>> channels = chosenChannels(chosen, terminal);
    if (!channels)
        return ExitCode::WrongUse;
    const QString recording = chosen.file.fileName;
    if (!m_names->isSplit())
        return writeFile(m_names->fileName(recording), chosen, *channels, terminal)
            ? ExitCode::Success
            : ExitCode::Failure;
    // All or none, as far as that can be told before.
    for (const int index : qAsConst(chosen.indices)) {
        QString problem;
        if (!OutputFile(m_names->fileName(recording, index + 1)).isFree(m_force, &problem)) {
            terminal.complain(problem);
            return ExitCode::Failure;
        }
    }
    for (const int index : QVector<int>(std::exchange(chosen.indices, {}))) {
        chosen.indices = {index};
        if (!writeFile(m_names->fileName(recording, index + 1), chosen, *channels, terminal))
            return ExitCode::Failure;
    }
    return ExitCode::Success;
}
