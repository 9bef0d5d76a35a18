#include "host/commands/reportcommand.h"

#include "host/commands/filework.h"
#include "host/report/reportpage.h"
#include "host/text/terminal.h"
#include "writers/outputfile.h"

#include <QFileInfo>

namespace {

/// Whether the name \a output is that of a file which is no web page.
bool isOtherFile(const QString &output)
{
    const QFileInfo info(output);
    const QString suffix = info.suffix().toLower();
    return !suffix.isEmpty() && suffix != QLatin1String("html") && suffix != QLatin1String("htm")
        && (info.isFile() || !info.exists());
}

} // namespace

Command::Description ReportCommand::description() const
{
    return {"report", "Write a web page with charts of laps",
            "  zepimport report practice.ibt -o practice.html\n"
            "  zepimport report monday/ --lap best --channels 'tire*' -o monday.html"};
}

void ReportCommand::declare(CommandOptions &options)
{
    m_files.declareWithLaps(options);
    m_laps.declare(options, "Laps to show (default: all)");
    m_channels.declare(options, "Channels to show besides the usual ones");
    m_output.declareOutput(options, "PAGE", "Page to write; - is standard output",
                           OutputOptions::Need::Required);
    m_output.declareForce(options, "Replace an existing page");
    m_batch.declareQuiet(options);
}

ExitCode ReportCommand::run(Terminal &terminal)
{
    if (!hasReportPage()) {
        terminal.complain(QStringLiteral("this build cannot write reports: it was made without "
                                         "their chart library; build it where npm can fetch it"));
        return ExitCode::Failure;
    }
    // Before the import, which may take long.
    OutputFile page(m_output.name());
    if (!m_output.open(&page, terminal))
        return ExitCode::Failure;

    FileWork work;
    work.accepts = [&](const QVector<RecordingFile> &files) {
        if (OutputOptions::isRecording(m_output.name(), files, terminal))
            return false;
        if (isOtherFile(m_output.name()))
            terminal.complain(m_output.name()
                              % QLatin1String(": a report is a web page; choose a name that ends "
                                              "in .html"));
        return !isOtherFile(m_output.name());
    };
    work.process = [&](const RecordingFile &file, Importer &importer) {
        return m_laps.import(file, importer, terminal,
                             [&](ChosenLaps &&chosen) { return add(chosen, terminal); });
    };
    work.finish = [&] {
        if (m_data.isEmpty())
            return ExitCode::Success; // the exit code is that of what went wrong with each file
        const QByteArray bytes = reportPage(m_data.title(), m_data.json());
        page.write(bytes.constData(), bytes.size());
        return OutputOptions::commit(&page, terminal) ? ExitCode::Success : ExitCode::Failure;
    };
    return processFiles(m_files, work, terminal, m_batch);
}

ExitCode ReportCommand::add(const ChosenLaps &chosen, Terminal &terminal)
{
    QVector<ChosenChannel> further;
    if (m_channels.isGiven()) {
        const auto channels = m_channels.chosen(chosen, terminal);
        if (!channels)
            return ExitCode::WrongUse;
        further = *channels;
    }
    m_data.add(chosen, further);
    return ExitCode::Success;
}
