#include "host/commands/lapoptions.h"

#include "host/commands/commandline.h"
#include "host/files/importer.h"
#include "host/files/recordingfiles.h"
#include "host/text/terminal.h"

#include <algorithm>
#include <utility>

void LapOptions::declare(CommandOptions &options, const std::string &text)
{
    options.addText(
        {"--lap", "CHOICE", text + ":\nbest, last, all, or by # in `laps`: 3,5-7 or 3-"}, &m_text,
        [](const std::string &choice) {
            QString problem;
            LapChoice::parse(QString::fromStdString(choice), &problem);
            return problem.toStdString();
        });
}

LapChoice LapOptions::choiceFor(const RecordingFile &file) const
{
    if (file.laps)
        return *file.laps;
    QString problem; // there is none, as the command line was accepted
    return m_text.empty()
        ? m_otherwise
        : LapChoice::parse(QString::fromStdString(m_text), &problem).value_or(m_otherwise);
}

ExitCode LapOptions::import(const RecordingFile &file, Importer &importer, Terminal &terminal,
                            const std::function<ExitCode(ChosenLaps &&)> &work) const
{
    std::optional<ImportedFile> imported = importer.import(file.fileName);
    if (!imported)
        return ExitCode::Failure;
    QString problem;
    const QVector<int> indices = choiceFor(file).indices(imported->laps, &problem);
    if (!problem.isEmpty()) {
        terminal.complain(file.fileName % QLatin1String(": ") % problem);
        return ExitCode::WrongUse;
    }
    const bool isAnyLap = std::any_of(imported->laps.cbegin(), imported->laps.cend(),
                                      [](const auto &lap) { return lap->size() > 0; });
    if (!isAnyLap) {
        terminal.complain(QStringLiteral("%1: contains no lap; zepimport check says whether it is "
                                         "damaged")
                              .arg(file.fileName));
    }
    const ExitCode atLeast = imported->isWhole ? ExitCode::Success : ExitCode::Failure;
    return std::max(work({std::move(*imported), indices}), atLeast);
}

QStringList LapOptions::arguments(const RecordingFile &file) const
{
    const QString choice = choiceFor(file).text();
    return choice.isEmpty() ? QStringList() : QStringList(QLatin1String("--lap=") % choice);
}
