#pragma once

#include "host/commands/command.h"

#include <string>
#include <vector>

/// `zepimport check`: what is wrong with recordings, and what it costs.
class CheckCommand : public Command
{
public:
    CLI::App *declare(CLI::App &program) override;
    /// Failure if any file is damaged or no recording.
    ExitCode run(Terminal &terminal) override;

private:
    std::vector<std::string> m_files;
    bool m_recursive = false;
    bool m_wantsJson = false;
};
