#pragma once

#include "analysis/lapbydistance.h"
#include "analysis/lapcomparison.h"
#include "host/commands/batchoptions.h"
#include "host/commands/command.h"
#include "host/commands/fileoptions.h"
#include "host/commands/jsonoption.h"
#include "host/commands/lapoptions.h"
#include "host/commands/outputoptions.h"
#include "host/commands/unitoptions.h"

#include <vector>

/// `zepimport compare`: where one lap gains on another.
class CompareCommand : public Command
{
public:
    /// One of the two laps.
    struct Side {
        QString fileName;
        int number; ///< of the lap, from 1
        int time; ///< milliseconds
        QString track; ///< with its configuration
        LapByDistance curve;

        QString name() const;
    };

    Description description() const override;
    void declare(CommandOptions &options) override;
    ExitCode run(Terminal &terminal) override;

private:
    ExitCode collect(const ChosenLaps &chosen, Terminal &terminal);
    QString wrongNumber() const;
    bool writeCsv(const LapComparison &comparison, Terminal &terminal) const;
    ExitCode show(const LapComparison &comparison, Terminal &terminal) const;

    FileOptions m_files;
    LapOptions m_laps{LapChoice::best()};
    BatchOptions m_batch;
    UnitOptions m_units;
    OutputOptions m_output;
    JsonOption m_json;
    double m_grid = 1;
    std::vector<Side> m_sides;
    std::optional<int> m_otherLap; ///< number of a timed lap of the first file that is not chosen
};
