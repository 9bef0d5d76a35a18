#pragma once

#include "host/command.h"
#include "host/importer.h"

#include <QJsonObject>
#include <QString>

#include <string>
#include <vector>

/// A command that imports files and shows something of each: as text file by file, or as one JSON
/// array with an object for each file.
class FileCommand : public Command
{
public:
    ExitCode run(Terminal &terminal) override;

protected:
    /// Adds the files to the command line of \a command.
    void declareFiles(CLI::App &command);
    /// Adds the number of the lap to show.
    void declareLap(CLI::App &command);

    /// Prints which file and lap the lines below are about.
    static void printLapHeading(const ImportedFile &file, int lap, Terminal &terminal);

    /// Prints \a file; \a lap is the index of the lap asked for, else of the representative one.
    virtual void print(const ImportedFile &file, int lap, Terminal &terminal) const = 0;
    /// The same for JSON, without the file's name.
    virtual QJsonObject json(const ImportedFile &file, int lap) const = 0;

private:
    std::vector<std::string> m_files;
    int m_lap = 0;
};
