#include "host/commands/infocommand.h"

#include "analysis/headerfields.h"
#include "host/text/displaytext.h"
#include "host/text/tablewriter.h"
#include "host/text/terminal.h"
#include "writers/jsonvalues.h"

#include <CLI/CLI.hpp>

namespace {

QString table(const ZEP::Lap &lap, const Terminal &terminal)
{
    TableWriter table({{QString()}, {QString(), TableWriter::Align::Left, 0, 20}});
    for (const HeaderField &field : headerFields(lap))
        table.addRow({field.title, formatField(field)});

    const QStringList names = lap.valueNameList();
    if (!names.isEmpty())
        table.addSection(QStringLiteral("Values"));
    for (const QString &name : names)
        table.addRow({name, formatValue(lap.DynamicData::value(name))});

    const QStringList calculated = lap.calculatedValuesNames();
    if (!calculated.isEmpty())
        table.addSection(QStringLiteral("Calculated values"));
    for (const QString &name : calculated)
        table.addRow({name, formatValue(lap.calculatedValue(name))});

    return table.text(terminal.width(), terminal.hasColour());
}

} // namespace

CLI::App *InfoCommand::declare(CLI::App &program)
{
    CLI::App *command =
        declareNamed(program, "info", "Show everything that the headers of laps carry",
                     "  zepimport info practice.ibt\n"
                     "  zepimport info --json practice.ibt:3");
    declareFiles(*command);
    declareLaps(*command, LapChoice::representative(),
                "Laps to show instead of the best timed one,\nor else the longest");
    declareBatch(*command);
    declareJson(*command);
    return command;
}

ExitCode InfoCommand::process(ChosenLaps &&chosen, Terminal &terminal)
{
    for (const int index : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(index);
        if (wantsJson()) {
            QJsonObject json = headerJson(lap);
            json.insert(QStringLiteral("lap"), index + 1);
            addJson(chosen, json);
            continue;
        }
        printLapHeading(chosen, index, terminal);
        terminal.print(table(lap, terminal));
    }
    return ExitCode::Success;
}
