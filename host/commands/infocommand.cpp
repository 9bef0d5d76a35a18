#include "host/commands/infocommand.h"

#include "analysis/headerfields.h"
#include "host/commands/filework.h"
#include "host/text/displaytext.h"
#include "host/text/tablewriter.h"
#include "host/text/terminal.h"
#include "writers/jsonvalues.h"

namespace {

QString table(const ZEP::Lap &lap, UnitSystem units, const Terminal &terminal)
{
    TableWriter table({{QString()}, {QString(), TableWriter::Align::Left, 0, 20}});
    for (const HeaderField &field : headerFields(lap))
        table.addRow({field.title, formatField(field)});

    const QStringList names = lap.valueNameList();
    if (!names.isEmpty())
        table.addSection(QStringLiteral("Values"));
    for (const QString &name : names)
        table.addRow({name, formatValue(shown(lap.DynamicData::value(name), units))});

    const QStringList calculated = lap.calculatedValuesNames();
    if (!calculated.isEmpty())
        table.addSection(QStringLiteral("Calculated values"));
    for (const QString &name : calculated)
        table.addRow({name, formatValue(shown(lap.calculatedValue(name), units))});

    return table.text(terminal.width(), terminal.hasColour());
}

} // namespace

Command::Description InfoCommand::description() const
{
    return {"info", "Show everything known about a lap and its session",
            "  zepimport info practice.ibt\n"
            "  zepimport info --json practice.ibt:3"};
}

void InfoCommand::declare(CommandOptions &options)
{
    m_files.declareWithLaps(options);
    m_laps.declare(options,
                   "Laps to show (default: the best timed lap,\nor the longest if none is timed)");
    m_batch.declare(options);
    m_units.declare(options);
    m_listing.declare(options);
}

ExitCode InfoCommand::run(Terminal &terminal)
{
    FileWork work = m_listing.work(terminal);
    work.process = [&](const RecordingFile &file, Importer &importer) {
        return m_laps.import(file, importer, terminal, [&](ChosenLaps &&chosen) {
            show(chosen, terminal);
            return ExitCode::Success;
        });
    };
    work.arguments = [&](const RecordingFile &file) {
        return QStringList(description().name) + m_laps.arguments(file) + m_units.arguments()
            + m_listing.arguments();
    };
    return processFiles(m_files, work, terminal, m_batch);
}

void InfoCommand::show(const ChosenLaps &chosen, Terminal &terminal)
{
    for (const int index : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(index);
        if (m_listing.wantsJson()) {
            QJsonObject json = headerJson(lap);
            json.insert(QStringLiteral("lap"), index + 1);
            m_listing.addJson(chosen.file.fileName, json);
            continue;
        }
        m_listing.printLapHeading(chosen, index, terminal);
        terminal.print(table(lap, m_units.system(), terminal));
    }
}
