#pragma once

#include "host/commands/filecommand.h"
#include "writers/exportnames.h"

#include <memory>
#include <optional>
#include <string>

class OutputFile;
class LapWriter;

/// `zepimport export`: writes laps as CSV, JSON or MAT files.
class ExportCommand : public FileCommand
{
public:
    CLI::App *declare(CLI::App &program) override;
    ExitCode run(Terminal &terminal) override;

protected:
    bool accepts(const QVector<RecordingFile> &files, Terminal &terminal) override;
    ExitCode process(ChosenLaps &&chosen, Terminal &terminal) override;

private:
    std::unique_ptr<LapWriter> newWriter(OutputFile &file, const ChosenLaps &chosen,
                                         const QVector<ChosenChannel> &channels) const;
    bool writeFile(const QString &name, ChosenLaps &chosen, const QVector<ChosenChannel> &channels,
                   Terminal &terminal) const;

    std::string m_output;
    std::string m_format;
    std::string m_units = "row";
    char m_separator = ',';
    bool m_split = false;
    bool m_force = false;
    std::optional<ExportNames> m_names;
};
