#include "host/commands/channelscommand.h"

#include "analysis/channelstatistics.h"
#include "host/text/displaytext.h"
#include "host/text/tablewriter.h"
#include "host/text/terminal.h"

#include <QJsonArray>
#include <QVector>

namespace {

struct ChannelRow {
    QString name;
    QString unit;
    bool isCalculated;
    ChannelStatistics statistics;
};

/// Those of \a channels that \a lap has, the recorded ones first.
QVector<ChannelRow> channelRows(const ZEP::Lap &lap, const QVector<ChosenChannel> &channels)
{
    QVector<ChannelRow> rows;
    for (const bool calculated : {false, true}) {
        for (const ChosenChannel &chosen : channels) {
            const auto channel = chosen.in(lap);
            if (channel && chosen.isCalculated == calculated)
                rows.append(
                    {chosen.name, channel->unit(), calculated, channelStatistics(*channel)});
        }
    }
    return rows;
}

QString table(const QVector<ChannelRow> &rows, UnitSystem units, const Terminal &terminal)
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("Channel"), Align::Left, 0, 28},
                       {QStringLiteral("Unit"), Align::Left, 1, 8},
                       {QStringLiteral("Valid"), Align::Right, 3},
                       {QStringLiteral("Minimum"), Align::Right},
                       {QStringLiteral("Mean"), Align::Right, 2},
                       {QStringLiteral("Maximum"), Align::Right}});
    bool isCalculated = false;
    for (const ChannelRow &row : rows) {
        if (row.isCalculated && !isCalculated)
            table.addSection(QStringLiteral("Calculated"));
        isCalculated = row.isCalculated;
        const ChannelStatistics &numbers = row.statistics;
        const auto number = [&](double value) {
            return numbers.valid > 0 ? formatNumber(shown(Quantity{value, row.unit}, units).value)
                                     : QStringLiteral("-");
        };
        const QString unit = shown(Quantity{0, row.unit}, units).unit;
        table.addRow({row.name, formatText(unit), QString::number(numbers.valid),
                      number(numbers.minimum), number(numbers.mean), number(numbers.maximum)},
                     numbers.valid > 0 ? TableWriter::Style::Plain : TableWriter::Style::Faint);
    }
    return table.text(terminal.width(), terminal.hasColour());
}

QJsonArray json(const QVector<ChannelRow> &rows)
{
    QJsonArray channels;
    for (const ChannelRow &row : rows) {
        const ChannelStatistics &numbers = row.statistics;
        const auto number = [&numbers](double value) {
            return numbers.valid > 0 ? QJsonValue(value) : QJsonValue();
        };
        channels.append(QJsonObject{{QStringLiteral("name"), row.name},
                                    {QStringLiteral("unit"), row.unit},
                                    {QStringLiteral("calculated"), row.isCalculated},
                                    {QStringLiteral("valid"), numbers.valid},
                                    {QStringLiteral("minimum"), number(numbers.minimum)},
                                    {QStringLiteral("mean"), number(numbers.mean)},
                                    {QStringLiteral("maximum"), number(numbers.maximum)}});
    }
    return channels;
}

} // namespace

Command::Description ChannelsCommand::description() const
{
    return {"channels", "Show the channels of laps with units and ranges",
            "  zepimport channels practice.ibt\n"
            "  zepimport channels --channels 'tire*' practice.ibt:3"};
}

void ChannelsCommand::declare(CommandOptions &options)
{
    m_files.declareWithLaps(options);
    m_laps.declare(options,
                   "Laps to show (default: the best timed lap,\nor the longest if none is timed)");
    m_channels.declare(options, "Channels to show (default: all)");
    m_batch.declare(options);
    m_units.declare(options);
    m_listing.declare(options);
}

ExitCode ChannelsCommand::run(Terminal &terminal)
{
    FileWork work = m_listing.work(terminal);
    work.process = [&](const RecordingFile &file, Importer &importer) {
        return m_laps.import(file, importer, terminal,
                             [&](ChosenLaps &&chosen) { return show(chosen, terminal); });
    };
    work.arguments = [&](const RecordingFile &file) {
        return QStringList(description().name) + m_laps.arguments(file) + m_channels.arguments()
            + m_units.arguments() + m_listing.arguments();
    };
    return processFiles(m_files, work, terminal, m_batch);
}

ExitCode ChannelsCommand::show(const ChosenLaps &chosen, Terminal &terminal)
{
    const std::optional<QVector<ChosenChannel>> channels = m_channels.chosen(chosen, terminal);
    if (!channels)
        return ExitCode::WrongUse;
    for (const int index : chosen.indices) {
        const QVector<ChannelRow> rows = channelRows(chosen.lap(index), *channels);
        if (m_listing.wantsJson()) {
            m_listing.addJson(
                chosen.file.fileName,
                {{QStringLiteral("lap"), index + 1}, {QStringLiteral("channels"), json(rows)}});
            continue;
        }
        m_listing.printLapHeading(chosen, index, terminal);
        terminal.print(table(rows, m_units.system(), terminal));
    }
    return ExitCode::Success;
}
