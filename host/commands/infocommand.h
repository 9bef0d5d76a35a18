#pragma once

#include "host/commands/showcommand.h"

/// `zepimport info`: everything that the headers of laps carry.
class InfoCommand : public ShowCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;
};
