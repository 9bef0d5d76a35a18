#pragma once

#include "host/commands/batchoptions.h"
#include "host/commands/channeloptions.h"
#include "host/commands/command.h"
#include "host/commands/fileoptions.h"
#include "host/commands/lapoptions.h"
#include "host/commands/outputoptions.h"
#include "writers/exportnames.h"

#include <memory>
#include <string>

class LapWriter;

/// `zepimport export`: writes laps as CSV, JSON or MAT files.
class ExportCommand : public Command
{
public:
    Description description() const override;
    void declare(CommandOptions &options) override;
    ExitCode run(Terminal &terminal) override;

private:
    bool takeStandardOutput(Terminal &terminal);
    QStringList arguments(const RecordingFile &file, const ExportNames &names) const;
    ExitCode write(ChosenLaps &chosen, const ExportNames &names, Terminal &terminal) const;
    ExitCode writeSplit(ChosenLaps &chosen, const QVector<ChosenChannel> &channels,
                        const ExportNames &names, Terminal &terminal) const;
    bool writeFile(const QString &name, ChosenLaps &chosen, const QVector<ChosenChannel> &channels,
                   ExportNames::Format format, Terminal &terminal) const;
    std::unique_ptr<LapWriter> newWriter(OutputFile &file, const ChosenLaps &chosen,
                                         const QVector<ChosenChannel> &channels,
                                         ExportNames::Format format) const;

    FileOptions m_files;
    LapOptions m_laps{LapChoice::all()};
    ChannelOptions m_channels;
    BatchOptions m_batch;
    OutputOptions m_output;
    std::string m_format; ///< empty unless given
    bool m_split = false;
    std::string m_separator = ",";
    std::string m_units = "row";
    bool m_time = false;
};
