#pragma once

#include "host/commands/batchoptions.h"
#include "host/commands/channeloptions.h"
#include "host/commands/command.h"
#include "host/commands/fileoptions.h"
#include "host/commands/lapoptions.h"
#include "host/commands/listing.h"
#include "host/commands/unitoptions.h"

/// `zepimport channels`: the channels of laps with their extremes.
class ChannelsCommand : public Command
{
public:
    Description description() const override;
    void declare(CommandOptions &options) override;
    ExitCode run(Terminal &terminal) override;

private:
    ExitCode show(const ChosenLaps &chosen, Terminal &terminal);

    FileOptions m_files;
    LapOptions m_laps{LapChoice::representative()};
    ChannelOptions m_channels;
    BatchOptions m_batch;
    UnitOptions m_units;
    Listing m_listing;
};
