#pragma once

#include "host/commands/filework.h"
#include "host/commands/jsonoption.h"
#include "host/files/chosenlaps.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

/// What a command prints of each file or lap: text with empty lines between, or with `--json` one
/// array of objects.
class Listing
{
public:
    void declare(CommandOptions &options, const std::string &instead = "tables");
    bool wantsJson() const { return m_json.isGiven(); }

    /// Prints a line about what is below, after an empty line unless it is the first one.
    void printHeading(const QString &line, Terminal &terminal);
    /// The same, with the file and the lap at \a index.
    void printLapHeading(const ChosenLaps &chosen, int index, Terminal &terminal);

    /// Adds \a object to the array, with the file's name.
    void addJson(const QString &fileName, QJsonObject object);
    const QJsonArray &jsonArray() const { return m_array; }

    /// Sorts the array by the number or text at \a key of its objects; null comes last.
    void sortJson(const QString &key);

    /// Adds what another process printed as JSON to the array; false if it is something else.
    bool takeJson(const QByteArray &output);
    /// Prints the array, if that is what the user wants.
    void finish(Terminal &terminal) const;

    /// The work of a command that prints nothing but this: what it does with the output of other
    /// processes and at the end. Both outlive it.
    FileWork work(Terminal &terminal);

    /// The same choice as arguments of another process.
    QStringList arguments() const;

private:
    void separate(Terminal &terminal);

    JsonOption m_json;
    bool m_isFirst = true;
    QJsonArray m_array;
};
