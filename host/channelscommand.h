#pragma once

#include "host/showcommand.h"

/// `zepimport channels`: the channels of laps with their extremes.
class ChannelsCommand : public ShowCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;
};
