#pragma once

#include "host/commands/command.h"

/// `zepimport formats`: the plug-ins found and what they import.
class FormatsCommand : public Command
{
public:
    CLI::App *declare(CLI::App &program) override;
    ExitCode run(Terminal &terminal) override;

private:
    bool m_wantsJson = false;
};
