#include "host/infocommand.h"

#include "host/format.h"
#include "host/json.h"
#include "host/lapsummary.h"
#include "host/sessionsummary.h"
#include "host/tablewriter.h"
#include "host/terminal.h"

#include <CLI/CLI.hpp>

#include <QVector>

namespace {

struct Field {
    QString title;
    QString key; ///< in JSON
    QString text;
    QJsonValue json;
};

Field textField(const QString &title, const QString &key, const QString &text)
{
    return {title, key, formatText(text), jsonText(text)};
}

Field numberField(const QString &title, const QString &key, int number)
{
    return {title, key, QString::number(number), number};
}

Field idField(const QString &title, const QString &key, const QUuid &id)
{
    return textField(title, key, id.isNull() ? QString() : id.toString(QUuid::WithoutBraces));
}

/// The fixed fields of the header of \a lap, and what its channels tell.
QVector<Field> headerFields(const ZEP::Lap &lap)
{
    const std::optional<int> time = lapTime(lap);
    return {
        textField(QStringLiteral("Track"), QStringLiteral("track"), lap.getTrackName()),
        textField(QStringLiteral("Configuration"), QStringLiteral("configuration"),
                  lap.getTrackConfig()),
        textField(QStringLiteral("Car"), QStringLiteral("car"), lap.getCarName()),
        textField(QStringLiteral("Car id"), QStringLiteral("carId"), lap.getCarId().toString()),
        textField(QStringLiteral("Driver"), QStringLiteral("driver"), lap.getDriverName()),
        textField(QStringLiteral("Session"), QStringLiteral("session"),
                  sessionName(lap.getSession())),
        {QStringLiteral("Date"), QStringLiteral("date"), formatDateTime(lap.getDateTime()),
         jsonDateTime(lap.getDateTime())},
        textField(QStringLiteral("Kind"), QStringLiteral("kind"), lapKindName(lapKind(lap))),
        {QStringLiteral("Lap time"), QStringLiteral("time"), formatLapTime(time), jsonTime(time)},
        {QStringLiteral("Completed"), QStringLiteral("completed"),
         lap.getCompleted() ? QStringLiteral("yes") : QStringLiteral("no"), lap.getCompleted()},
        numberField(QStringLiteral("Lap in session"), QStringLiteral("lapInSession"),
                    lap.getLapInSession()),
        numberField(QStringLiteral("Stint in session"), QStringLiteral("stint"),
                    lap.getStintInSession()),
        numberField(QStringLiteral("Lap in stint"), QStringLiteral("lapInStint"),
                    lap.getLapInStint()),
        numberField(QStringLiteral("Samples"), QStringLiteral("samples"), lap.size()),
        numberField(QStringLiteral("Channels"), QStringLiteral("channels"),
                    lap.getAvailableChannels().size()
                        + lap.getAvailableCalculatedChannels().size()),
        idField(QStringLiteral("Lap id"), QStringLiteral("lapId"), lap.getLapId()),
        idField(QStringLiteral("Stint id"), QStringLiteral("stintId"), lap.getStintId()),
        idField(QStringLiteral("Session id"), QStringLiteral("sessionId"), lap.getSessionId()),
        textField(QStringLiteral("Source"), QStringLiteral("source"), lap.getSource()),
        textField(QStringLiteral("Plug-in"), QStringLiteral("plugin"), lap.getPlugin()),
        textField(QStringLiteral("File"), QStringLiteral("fileName"), lap.getFileName()),
    };
}

QString table(const ZEP::Lap &lap, const Terminal &terminal)
{
    TableWriter table({{QString()}, {QString(), TableWriter::Align::Left, 0, 20}});
    for (const Field &field : headerFields(lap))
        table.addRow({field.title, field.text});

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

QJsonObject json(const ZEP::Lap &lap, int number)
{
    QJsonObject header;
    for (const Field &field : headerFields(lap))
        header.insert(field.key, field.json);
    QJsonObject values;
    for (const QString &name : lap.valueNameList())
        values.insert(name, jsonValue(lap.DynamicData::value(name)));
    QJsonObject calculated;
    for (const QString &name : lap.calculatedValuesNames())
        calculated.insert(name, jsonValue(lap.calculatedValue(name)));
    return {{QStringLiteral("lap"), number},
            {QStringLiteral("header"), header},
            {QStringLiteral("values"), values},
            {QStringLiteral("calculatedValues"), calculated}};
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
    declareJson(*command);
    return command;
}

ExitCode InfoCommand::process(ChosenLaps &&chosen, Terminal &terminal)
{
    for (const int index : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(index);
        if (wantsJson()) {
            addJson(chosen, json(lap, index + 1));
            continue;
        }
        printLapHeading(chosen, index, terminal);
        terminal.print(table(lap, terminal));
    }
    return ExitCode::Success;
}
