#include "host/commands/showcommand.h"

#include "analysis/lapsummary.h"
#include "host/text/displaytext.h"
#include "host/text/terminal.h"
#include "writers/jsonvalues.h"

#include <CLI/CLI.hpp>

#include <QJsonDocument>

void ShowCommand::declareJson(CLI::App &command)
{
    command.add_flag("--json", m_wantsJson, "Print JSON instead of tables");
}

void ShowCommand::separate(Terminal &terminal)
{
    if (!m_isFirst)
        terminal.print(QStringLiteral("\n"));
    m_isFirst = false;
}

void ShowCommand::printHeading(const QString &line, Terminal &terminal)
{
    separate(terminal);
    terminal.printHeading(line);
}

void ShowCommand::printLapHeading(const ChosenLaps &chosen, int index, Terminal &terminal)
{
    const ZEP::Lap &lap = chosen.lap(index);
    const std::optional<int> time = lapTime(lap);
    printHeading(QStringLiteral("%1: lap #%2 of %3, %4%5")
                     .arg(chosen.file.fileName, QString::number(index + 1),
                          QString::number(chosen.file.laps.size()), lapKindName(lapKind(lap)),
                          time ? QString(QLatin1String(", ") % formatLapTime(time)) : QString()),
                 terminal);
}

void ShowCommand::addJson(const ChosenLaps &chosen, QJsonObject object)
{
    object.insert(QStringLiteral("file"), chosen.file.fileName);
    m_array.append(object);
}

void ShowCommand::takeOutput(const QByteArray &output, Terminal &terminal)
{
    const QJsonDocument document = QJsonDocument::fromJson(output);
    if (document.isArray()) {
        for (const QJsonValue &value : document.array())
            m_array.append(value);
        return;
    }
    separate(terminal);
    terminal.print(QString::fromUtf8(output));
}

ExitCode ShowCommand::finish(Terminal &terminal)
{
    if (m_wantsJson)
        terminal.print(QString::fromUtf8(jsonBytes(m_array)));
    return ExitCode::Success;
}
