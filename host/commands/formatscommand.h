#pragma once

#include "host/commands/command.h"
#include "host/commands/jsonoption.h"
#include "host/commands/pluginoptions.h"

/// `zepimport formats`: the plug-ins found and what they import.
class FormatsCommand : public Command
{
public:
    Description description() const override;
    void declare(CommandOptions &options) override;
    ExitCode run(Terminal &terminal) override;

private:
    PluginOptions m_plugins;
    JsonOption m_json;
};
