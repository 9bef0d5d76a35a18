#pragma once

#include "analysis/lapbydistance.h"
#include "analysis/lapcomparison.h"
#include "host/commands/filecommand.h"

#include <optional>
#include <string>
#include <vector>

/// `zepimport compare`: where one lap gains on another.
class CompareCommand : public FileCommand
{
public:
    CLI::App *declare(CLI::App &program) override;
    ExitCode run(Terminal &terminal) override;

    /// One of the two laps.
    struct Side {
        QString fileName;
        int number; ///< of the lap, from 1
        int time; ///< milliseconds
        QString track; ///< with its configuration
        LapByDistance curve;

        QString name() const;
    };

protected:
    bool accepts(const QVector<RecordingFile> &files, Terminal &terminal) override;
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;

private:
    bool writeCsv(const LapComparison &comparison, Terminal &terminal) const;

    bool m_wantsJson = false;
    bool m_force = false;
    std::string m_output; ///< none unless set
    double m_grid = 1;
    std::vector<Side> m_sides;
};
