#pragma once

#include "host/commands/exitcode.h"
#include "host/files/chosenlaps.h"
#include "host/files/lapchoice.h"

#include <QStringList>

#include <functional>
#include <string>

class CommandOptions;
class Importer;
struct RecordingFile;
class Terminal;

/// `--lap`, and `FILE:CHOICE`, which wins: the laps that the user chose.
class LapOptions
{
public:
    /// \a otherwise are the laps where the user chooses none.
    explicit LapOptions(const LapChoice &otherwise) : m_otherwise(otherwise) { }

    /// \a text says what becomes of the laps: "Laps to show (default: all)".
    void declare(CommandOptions &options, const std::string &text);

    /// Imports \a file, and does \a work with its chosen laps. Failure if it cannot be imported,
    /// wrong use if it lacks one of the laps; both are reported.
    ExitCode import(const RecordingFile &file, Importer &importer, Terminal &terminal,
                    const std::function<ExitCode(ChosenLaps &&)> &work) const;

    /// The choice for \a file as arguments of another process.
    QStringList arguments(const RecordingFile &file) const;

private:
    LapChoice choiceFor(const RecordingFile &file) const;

    LapChoice m_otherwise;
    std::string m_text;
};
