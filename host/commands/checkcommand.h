#pragma once

#include "host/commands/batchoptions.h"
#include "host/commands/command.h"
#include "host/commands/fileoptions.h"
#include "host/commands/listing.h"

/// `zepimport check`: whether recordings are damaged, and what is lost.
class CheckCommand : public Command
{
public:
    Description description() const override;
    void declare(CommandOptions &options) override;
    /// Failure if any file is damaged or no recording.
    ExitCode run(Terminal &terminal) override;

private:
    ExitCode check(const QString &fileName, Importer &importer, Terminal &terminal);

    FileOptions m_files;
    BatchOptions m_batch;
    Listing m_listing;
};
