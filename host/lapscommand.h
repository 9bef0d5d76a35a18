#pragma once

#include "host/showcommand.h"

/// `zepimport laps`: a table of laps for each file.
class LapsCommand : public ShowCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;
};
