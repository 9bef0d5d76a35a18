#include "host/channelscommand.h"

#include "host/channelstatistics.h"
#include "host/format.h"
#include "host/lapsummary.h"
#include "host/tablewriter.h"
#include "host/terminal.h"

#include <CLI/CLI.hpp>

#include <QJsonArray>
#include <QVector>

namespace {

struct ChannelRow {
    QString name;
    QString unit;
    bool isCalculated;
    ChannelStatistics statistics;
};

/// The recorded channels and then the calculated ones, both by name.
QVector<ChannelRow> channelRows(const ZEP::Lap &lap)
{
    QVector<ChannelRow> rows;
    const auto append = [&rows](const QString &name, const ZEP::Channel &channel, bool calculated) {
        rows.append({name, channel.unit(), calculated, channelStatistics(channel)});
    };
    for (const QString &name : lap.getAvailableChannels())
        append(name, *lap.channel(name), false);
    for (const QString &name : lap.getAvailableCalculatedChannels())
        append(name, *lap.calculatedChannel(name), true);
    return rows;
}

} // namespace

CLI::App *ChannelsCommand::declare(CLI::App &program)
{
    CLI::App *command =
        declareNamed(program, "channels", "Show the channels of a lap: units and extremes",
                     "  zepimport channels practice.ibt\n"
                     "  zepimport channels practice.ibt --lap 3 | grep temp");
    declareFiles(*command);
    declareLap(*command);
    return command;
}

void ChannelsCommand::print(const ImportedFile &file, int lap, Terminal &terminal) const
{
    using Align = TableWriter::Align;
    TableWriter table({{QStringLiteral("Channel"), Align::Left, 0, 28},
                       {QStringLiteral("Unit"), Align::Left, 1, 8},
                       {QStringLiteral("Valid"), Align::Right, 3},
                       {QStringLiteral("Minimum"), Align::Right},
                       {QStringLiteral("Mean"), Align::Right, 2},
                       {QStringLiteral("Maximum"), Align::Right}});
    bool isCalculated = false;
    for (const ChannelRow &row : channelRows(*file.laps[std::size_t(lap)])) {
        if (row.isCalculated && !isCalculated)
            table.addSection(QStringLiteral("Calculated"));
        isCalculated = row.isCalculated;
        const ChannelStatistics &numbers = row.statistics;
        const auto number = [&numbers](double value) {
            return numbers.valid > 0 ? formatNumber(value) : QStringLiteral("-");
        };
        table.addRow({row.name, formatText(row.unit), QString::number(numbers.valid),
                      number(numbers.minimum), number(numbers.mean), number(numbers.maximum)},
                     numbers.valid > 0 ? TableWriter::Style::Plain : TableWriter::Style::Faint);
    }
    printLapHeading(file, lap, terminal);
    terminal.print(table.text(terminal.width(), terminal.hasColour()));
}

QJsonObject ChannelsCommand::json(const ImportedFile &file, int lap) const
{
    QJsonArray channels;
    for (const ChannelRow &row : channelRows(*file.laps[std::size_t(lap)])) {
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
    return {{QStringLiteral("lap"), lap + 1}, {QStringLiteral("channels"), channels}};
}
