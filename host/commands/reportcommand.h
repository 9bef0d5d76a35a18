#pragma once

#include "host/commands/filecommand.h"
#include "host/report/reportdata.h"
#include "writers/outputfile.h"

#include <optional>
#include <string>

/// `zepimport report`: one page for the browser about the laps of recordings.
class ReportCommand : public FileCommand
{
public:
    CLI::App *declare(CLI::App &program) override;
    ExitCode run(Terminal &terminal) override;

protected:
    bool accepts(const QVector<RecordingFile> &files, Terminal &terminal) override;
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;
    ExitCode finish(Terminal &terminal) override;

private:
    std::string m_output;
    bool m_force = false;
    std::optional<OutputFile> m_page;
    ReportData m_data;
};
