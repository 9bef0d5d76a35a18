#pragma once

#include "host/commands/batchoptions.h"
#include "host/commands/command.h"
#include "host/commands/fileoptions.h"
#include "host/commands/lapoptions.h"
#include "host/commands/listing.h"
#include "host/commands/unitoptions.h"

#include <string>

/// `zepimport laps`: a table of laps for each file, or one table with a row for each.
class LapsCommand : public Command
{
public:
    Description description() const override;
    void declare(CommandOptions &options) override;
    ExitCode run(Terminal &terminal) override;

private:
    void show(const ChosenLaps &chosen, Terminal &terminal);

    FileOptions m_files;
    LapOptions m_laps{LapChoice::all()};
    BatchOptions m_batch;
    UnitOptions m_units;
    Listing m_listing;
    bool m_best = false;
    std::string m_sort; ///< key of the JSON; empty unless given
};
