#include "host/lapscommand.h"

#include "host/format.h"
#include "host/json.h"
#include "host/lapsummary.h"
#include "host/sessionsummary.h"
#include "host/tablewriter.h"
#include "host/terminal.h"
#include "model/helpers.h"

#include <CLI/CLI.hpp>

#include <QJsonArray>

namespace {

QString formatGap(const LapSummary &summary)
{
    if (summary.isBest)
        return QStringLiteral("best");
    return summary.gap ? ZEP::printTime(*summary.gap) : QStringLiteral("-");
}

TableWriter::Style rowStyle(const LapSummary &summary)
{
    if (summary.isBest)
        return TableWriter::Style::Best;
    return summary.time ? TableWriter::Style::Plain : TableWriter::Style::Faint;
}

QString sessionTable(const SessionSummary &session, const Terminal &terminal)
{
    TableWriter table({{QString()}, {QString(), TableWriter::Align::Left, 0, 20}});
    table.addRow({QStringLiteral("Track"), formatText(session.track)});
    table.addRow({QStringLiteral("Configuration"), formatText(session.configuration)});
    table.addRow({QStringLiteral("Car"), formatText(session.car)});
    table.addRow({QStringLiteral("Driver"), formatText(session.driver)});
    table.addRow({QStringLiteral("Session"), formatText(session.session)});
    table.addRow(
        {QStringLiteral("Date"),
         formatDateTime(session.date) % QLatin1String(session.isFileDate ? " (of the file)" : "")});
    return table.text(terminal.width(), terminal.hasColour());
}

QString lapTable(const ChosenLaps &chosen, const Terminal &terminal)
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("#"), Align::Right},
                       {QStringLiteral("Lap"), Align::Right, 2},
                       {QStringLiteral("Stint"), Align::Right, 4},
                       {QStringLiteral("In stint"), Align::Right, 5},
                       {QStringLiteral("Kind")},
                       {QStringLiteral("Time"), Align::Right},
                       {QStringLiteral("Gap"), Align::Right, 1},
                       {QStringLiteral("Samples"), Align::Right, 6},
                       {QStringLiteral("Top speed"), Align::Right, 3},
                       {QStringLiteral("Fuel used"), Align::Right, 3}});
    const QVector<LapSummary> summaries = summarize(chosen.file.laps);
    for (const int i : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(i);
        const LapSummary &summary = summaries.at(i);
        table.addRow({QString::number(i + 1), QString::number(lap.getLapInSession()),
                      QString::number(lap.getStintInSession()),
                      QString::number(lap.getLapInStint()), lapKindName(summary.kind),
                      formatLapTime(summary.time), formatGap(summary), QString::number(lap.size()),
                      formatQuantity(summary.topSpeed, 1), formatQuantity(summary.fuelUsed, 2)},
                     rowStyle(summary));
    }
    return table.text(terminal.width(), terminal.hasColour());
}

QJsonObject json(const ChosenLaps &chosen)
{
    QJsonArray laps;
    const QVector<LapSummary> summaries = summarize(chosen.file.laps);
    for (const int i : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(i);
        const LapSummary &summary = summaries.at(i);
        laps.append(QJsonObject{{QStringLiteral("number"), i + 1},
                                {QStringLiteral("lapInSession"), lap.getLapInSession()},
                                {QStringLiteral("stint"), lap.getStintInSession()},
                                {QStringLiteral("lapInStint"), lap.getLapInStint()},
                                {QStringLiteral("kind"), lapKindName(summary.kind)},
                                {QStringLiteral("time"), jsonTime(summary.time)},
                                {QStringLiteral("gap"), jsonTime(summary.gap)},
                                {QStringLiteral("best"), summary.isBest},
                                {QStringLiteral("samples"), lap.size()},
                                {QStringLiteral("topSpeed"), jsonQuantity(summary.topSpeed)},
                                {QStringLiteral("fuelUsed"), jsonQuantity(summary.fuelUsed)}});
    }
    const SessionSummary session = sessionSummary(chosen.file);
    return {{QStringLiteral("track"), jsonText(session.track)},
            {QStringLiteral("configuration"), jsonText(session.configuration)},
            {QStringLiteral("car"), jsonText(session.car)},
            {QStringLiteral("driver"), jsonText(session.driver)},
            {QStringLiteral("session"), jsonText(session.session)},
            {QStringLiteral("date"), jsonDateTime(session.date)},
            {QStringLiteral("dateOfFile"), session.isFileDate},
            {QStringLiteral("laps"), laps}};
}

} // namespace

CLI::App *LapsCommand::declare(CLI::App &program)
{
    CLI::App *command = declareNamed(program, "laps", "Show the laps of recordings in a table",
                                     "  zepimport laps practice.ibt\n"
                                     "  zepimport laps --lap best -r season/\n"
                                     "  zepimport laps --json monday/*.ibt > laps.json");
    declareFiles(*command);
    declareLaps(*command, LapChoice::all(), "Laps to show");
    declareJson(*command);
    return command;
}

ExitCode LapsCommand::process(ChosenLaps &&chosen, Terminal &terminal)
{
    if (wantsJson()) {
        addJson(chosen, json(chosen));
        return ExitCode::Success;
    }
    printHeading(chosen.file.fileName, terminal);
    terminal.print(sessionTable(sessionSummary(chosen.file), terminal) % QLatin1Char('\n')
                   % lapTable(chosen, terminal));
    return ExitCode::Success;
}
