#pragma once

#include "host/commands/showcommand.h"

/// `zepimport channels`: the channels of laps with their extremes.
class ChannelsCommand : public ShowCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;
};
