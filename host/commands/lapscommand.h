#pragma once

#include "host/commands/showcommand.h"

/// `zepimport laps`: a table of laps for each file, or one table with a row for each.
class LapsCommand : public ShowCommand
{
public:
    CLI::App *declare(CLI::App &program) override;

protected:
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;
    QStringList extraOptions() const override;
    ExitCode finish(Terminal &terminal) override;

private:
    bool m_best = false;
};
