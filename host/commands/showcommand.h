#pragma once

#include "host/commands/filecommand.h"

#include <QJsonArray>
#include <QJsonObject>

/// A command that shows something of each file or lap: as text with blank lines between, or with
/// `--json` as one array of objects.
class ShowCommand : public FileCommand
{
protected:
    /// Adds the choice of JSON to the command line of \a command.
    void declareJson(CLI::App &command);
    bool wantsJson() const { return m_wantsJson; }

    /// Prints a line about what is below, with a blank line above unless it is the first one.
    void printHeading(const QString &line, Terminal &terminal);
    /// As printHeading(), with the file and the lap at \a index.
    void printLapHeading(const ChosenLaps &chosen, int index, Terminal &terminal);
    /// Adds \a object to the array, with the file's name.
    void addJson(const ChosenLaps &chosen, QJsonObject object);

    const QJsonArray &jsonArray() const { return m_array; }

    /// Prints it, or adds it to the array.
    void takeOutput(const QByteArray &output, Terminal &terminal) override;
    /// Prints the array, if that is what the user wants.
    ExitCode finish(Terminal &terminal) override;

private:
    /// Prints a blank line, unless nothing was printed before.
    void separate(Terminal &terminal);

    bool m_wantsJson = false;
    bool m_isFirst = true;
    QJsonArray m_array;
};
