#include "host/commands/reportcommand.h"

#include "host/files/recordingfiles.h"
#include "host/report/reportpage.h"
#include "host/text/terminal.h"

#include <CLI/CLI.hpp>

#include <QFile>

#include <algorithm>

CLI::App *ReportCommand::declare(CLI::App &program)
{
    CLI::App *command =
        declareNamed(program, "report", "Write a page for the browser about laps",
                     "  zepimport report practice.ibt -o practice.html\n"
                     "  zepimport report monday/ --lap best --channels 'tire*' -o monday.html");
    declareFiles(*command);
    declareLaps(*command, LapChoice::all(), "Laps to show");
    declareChannels(*command);
    command->add_option("-o,--output", m_output, "Page to write; - is the standard output")
        ->required()
        ->type_name("PAGE");
    command->add_flag("--force", m_force, "Replace a page that exists already");
    return command;
}

ExitCode ReportCommand::run(Terminal &terminal)
{
    if (!hasReportPage()) {
        terminal.complain(QStringLiteral("this build leaves reports out, as it was made without "
                                         "their chart library; build it where npm can fetch that"));
        return ExitCode::Failure;
    }
    // Before the import, which may take long.
    m_page.emplace(QFile::decodeName(m_output.c_str()));
    QString problem;
    if (!m_page->open(m_force, &problem)) {
        terminal.complain(problem);
        return ExitCode::Failure;
    }
    return FileCommand::run(terminal);
}

bool ReportCommand::accepts(const QVector<RecordingFile> &files, Terminal &terminal)
{
    const QString page = QFile::decodeName(m_output.c_str());
    return std::none_of(files.begin(), files.end(), [&](const RecordingFile &file) {
        return isRecording(page, file, terminal);
    });
}

ExitCode ReportCommand::process(ChosenLaps &&chosen, Terminal &terminal)
{
    QVector<ChosenChannel> further;
    if (hasChannelChoice()) {
        const auto channels = chosenChannels(chosen, terminal);
        if (!channels)
            return ExitCode::WrongUse;
        further = *channels;
    }
    m_data.add(chosen, further);
    return ExitCode::Success;
}

ExitCode ReportCommand::finish(Terminal &terminal)
{
    if (m_data.isEmpty())
        return ExitCode::Success; // the exit code is that of what went wrong with each file
    const QByteArray page = reportPage(m_data.title(), m_data.json());
    m_page->write(page.constData(), page.size());
    QString problem;
    if (m_page->commit(&problem))
        return ExitCode::Success;
    terminal.complain(problem);
    return ExitCode::Failure;
}
