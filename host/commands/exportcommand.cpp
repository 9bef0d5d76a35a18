#include "host/commands/exportcommand.h"

#include "host/commands/commandline.h"
#include "host/commands/filework.h"
#include "host/text/terminal.h"
#include "writers/csvwriter.h"
#include "writers/jsonlapwriter.h"
#include "writers/matwriter.h"
#include "writers/outputfile.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>

#include <cctype>
#include <utility>

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

std::string separatorProblem(const std::string &text)
{
    return separatorFrom(text)
        ? std::string()
        : "'" + text + "' cannot separate numbers; choose another one, such as ; or tab";
}

/// What to do about a recording that is named as \a first and as \a second.
QString givenTwice(const RecordingFile &first, const RecordingFile &second)
{
    const QString named = second.fileName % QLatin1String(": is given twice; ");
    if (!first.laps || !second.laps || first.laps->text() == second.laps->text())
        return named % QLatin1String("give it once");
    return named % QLatin1String("choose all its laps at once, as in ") % second.fileName
        % QLatin1Char(':') % first.laps->text() % QLatin1Char(',') % second.laps->text();
}

/// Whether each of \a files goes to a file of its own, and none to a recording. If not, that
/// has been reported.
bool hasPlaces(const QVector<RecordingFile> &files, const ExportNames &names, Terminal &terminal)
{
    if (files.size() > 1 && names.isOneFile()) {
        terminal.complain(
            QStringLiteral("several recordings need several files; give a folder with "
                           "--output"));
        return false;
    }
    QMap<QString, RecordingFile> recordings;
    for (const RecordingFile &file : files) {
        const QString name = names.in(file.subfolder).fileName(file.fileName);
        if (OutputOptions::isRecording(name, {file}, terminal))
            return false;
        if (recordings.contains(name)) {
            const RecordingFile other = recordings.value(name);
            terminal.complain(QFileInfo(other.fileName) == QFileInfo(file.fileName)
                                  ? givenTwice(other, file)
                                  : QStringLiteral("%1 and %2 would both become %3; export them "
                                                   "separately, into different folders")
                                        .arg(other.fileName, file.fileName, name));
            return false;
        }
        recordings.insert(name, file);
    }
    return true;
}

/// The folders that recordings which were found in subfolders are exported to.
class MirroredFolders
{
public:
    /// Makes them. If that is not possible, the files in them cannot be opened.
    void make(const QVector<RecordingFile> &files, const ExportNames &names)
    {
        for (const RecordingFile &file : files) {
            if (!file.subfolder.isEmpty() && !names.isOneFile())
                make(names.in(file.subfolder).output());
        }
    }

    /// Removes those that nothing was written to.
    void removeEmpty() const
    {
        for (auto folder = m_made.rbegin(); folder != m_made.rend(); ++folder)
            QDir().rmdir(*folder);
    }

private:
    void make(const QString &folder)
    {
        const QString path = QDir::cleanPath(folder);
        if (QFileInfo::exists(path))
            return;
        const QString above = QFileInfo(path).path();
        if (above != path)
            make(above);
        if (QDir().mkdir(path))
            m_made.append(path);
    }

    QStringList m_made; ///< each after the one that it is in
};

} // namespace

Command::Description ExportCommand::description() const
{
    return {"export", "Write laps to CSV, JSON or MAT files",
            "  zepimport export practice.ibt --lap best --channels driver -o best.csv\n"
            "  zepimport export -r season/ --format mat -o exported/\n"
            "  zepimport export practice.ibt - | head"};
}

void ExportCommand::declare(CommandOptions &options)
{
    m_files.declareWithLaps(options);
    m_laps.declare(options, "Laps to write (default: all)");
    m_channels.declare(options, "Channels to write (default: all)");
    m_batch.declare(options);
    m_output.declareOutput(options, "PATH",
                           "File or folder to write to; - is standard output.\n"
                           "Default: the recording's name with the suffix of\n"
                           "the format, in the current folder");
    options.addChoice({"--format", "FORMAT", "csv, json or mat (default: the output's suffix)"},
                      &m_format, {"csv", "json", "mat"});
    options.addFlag("--split", &m_split, "Write one file per lap: NAME-lap03.csv");
    m_output.declareForce(options, "Replace existing files");
    options.addText({"--sep", "CHAR", "CSV: separator, or tab (default: ,)"}, &m_separator,
                    separatorProblem);
    options.addFlag("--time", &m_time, "CSV: add the seconds since the line to each tick");
    options.addChoice({"--units", "PLACE",
                       "CSV: where the units are: header (after the\n"
                       "names), row (below the names, the default) or none"},
                      &m_units, {"header", "row", "none"});
}

/// A "-" among the files means standard output. False if that does not fit; then that has been
/// reported.
bool ExportCommand::takeStandardOutput(Terminal &terminal)
{
    if (!m_files.take("-"))
        return true;
    if (m_output.isGiven() || m_files.isEmpty()) {
        terminal.complain(QLatin1String(
            m_files.isEmpty() ? "FILE is required besides -; see zepimport export --help"
                              : "- and --output are two outputs; see zepimport export --help"));
        return false;
    }
    m_output.chooseStandardOutput();
    return true;
}

ExitCode ExportCommand::run(Terminal &terminal)
{
    if (!takeStandardOutput(terminal))
        return ExitCode::WrongUse;
    QString problem;
    const std::optional<ExportNames> names =
        ExportNames::from(m_output.name(), QString::fromStdString(m_format), m_split, &problem);
    if (!names) {
        terminal.complain(problem);
        return ExitCode::WrongUse;
    }
    MirroredFolders folders;
    FileWork work;
    work.accepts = [&](const QVector<RecordingFile> &files) {
        if (!hasPlaces(files, *names, terminal))
            return false;
        folders.make(files, *names);
        return true;
    };
    work.process = [&](const RecordingFile &file, Importer &importer) {
        return m_laps.import(file, importer, terminal, [&](ChosenLaps &&chosen) {
            return write(chosen, names->in(file.subfolder), terminal);
        });
    };
    work.arguments = [&](const RecordingFile &file) { return arguments(file, *names); };
    work.finish = [&] {
        folders.removeEmpty();
        return ExitCode::Success;
    };
    return processFiles(m_files, work, terminal, m_batch);
}

QStringList ExportCommand::arguments(const RecordingFile &file, const ExportNames &names) const
{
    QStringList result = QStringList(description().name) + m_laps.arguments(file)
        + m_channels.arguments() + m_output.arguments(names.in(file.subfolder).output())
        + QStringList{QLatin1String("--sep=") % QString::fromStdString(m_separator),
                      QLatin1String("--units=") % QString::fromStdString(m_units)};
    if (!m_format.empty())
        result.append(QLatin1String("--format=") % QString::fromStdString(m_format));
    if (m_time)
        result.append(QStringLiteral("--time"));
    if (m_split)
        result.append(QStringLiteral("--split"));
    return result;
}

ExitCode ExportCommand::write(ChosenLaps &chosen, const ExportNames &names,
                              Terminal &terminal) const
{
    const std::optional<QVector<ChosenChannel>> channels = m_channels.chosen(chosen, terminal);
    if (!channels)
        return ExitCode::WrongUse;
    if (names.isSplit())
        return writeSplit(chosen, *channels, names, terminal);
    return writeFile(names.fileName(chosen.file.fileName), chosen, *channels, names.format(),
                     terminal)
        ? ExitCode::Success
        : ExitCode::Failure;
}

ExitCode ExportCommand::writeSplit(ChosenLaps &chosen, const QVector<ChosenChannel> &channels,
                                   const ExportNames &names, Terminal &terminal) const
{
    const QString recording = chosen.file.fileName;
    // All or none, as far as that can be told before.
    for (const int index : qAsConst(chosen.indices)) {
        QString problem;
        if (!OutputFile(names.fileName(recording, index + 1))
                 .isFree(m_output.isForced(), &problem)) {
            terminal.complain(problem);
            return ExitCode::Failure;
        }
    }
    for (const int index : QVector<int>(std::exchange(chosen.indices, {}))) {
        chosen.indices = {index};
        if (!writeFile(names.fileName(recording, index + 1), chosen, channels, names.format(),
                       terminal))
            return ExitCode::Failure;
    }
    return ExitCode::Success;
}

bool ExportCommand::writeFile(const QString &name, ChosenLaps &chosen,
                              const QVector<ChosenChannel> &channels, ExportNames::Format format,
                              Terminal &terminal) const
{
    OutputFile file(name);
    if (!m_output.open(&file, terminal))
        return false;
    const std::unique_ptr<LapWriter> writer = newWriter(file, chosen, channels, format);
    for (const int index : qAsConst(chosen.indices)) {
        writer->write(index + 1, std::move(chosen.file.laps[std::size_t(index)]));
        if (!file.isGood())
            break;
    }
    QString problem;
    if (!writer->finish(&problem)) {
        terminal.complain(name % QLatin1String(": ") % problem);
        return false;
    }
    return OutputOptions::commit(&file, terminal);
}

std::unique_ptr<LapWriter> ExportCommand::newWriter(OutputFile &file, const ChosenLaps &chosen,
                                                    const QVector<ChosenChannel> &channels,
                                                    ExportNames::Format format) const
{
    switch (format) {
    case ExportNames::Format::Json:
        return std::make_unique<JsonLapWriter>(file, channels, chosen.file.fileName);
    case ExportNames::Format::Mat:
        return std::make_unique<MatWriter>(file, channels, chosen.file.fileName);
    case ExportNames::Format::Csv:
        break;
    }
    CsvWriter::Form form;
    form.units = unitsFrom(m_units);
    form.separator = separatorFrom(m_separator).value_or(',');
    form.hasTime = m_time;
    return std::make_unique<CsvWriter>(file, channels, chosen.laps(), form);
}
