#pragma once

#include "host/commands/batchoptions.h"
#include "host/commands/channeloptions.h"
#include "host/commands/command.h"
#include "host/commands/fileoptions.h"
#include "host/commands/lapoptions.h"
#include "host/commands/outputoptions.h"
#include "host/report/reportdata.h"

/// `zepimport report`: one page for the browser about the laps of recordings.
class ReportCommand : public Command
{
public:
    Description description() const override;
    void declare(CommandOptions &options) override;
    ExitCode run(Terminal &terminal) override;

private:
    ExitCode add(const ChosenLaps &chosen, Terminal &terminal);

    FileOptions m_files;
    LapOptions m_laps{LapChoice::all()};
    ChannelOptions m_channels;
    BatchOptions m_batch;
    OutputOptions m_output;
    ReportData m_data;
};
