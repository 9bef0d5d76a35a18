#include "host/headerfields.h"

#include "host/format.h"
#include "host/json.h"
#include "host/lapsummary.h"
#include "host/sessionsummary.h"

namespace {

HeaderField textField(const QString &title, const QString &key, const QString &text)
{
    return {title, key, formatText(text), jsonText(text)};
}

HeaderField numberField(const QString &title, const QString &key, int number)
{
    return {title, key, QString::number(number), number};
}

HeaderField idField(const QString &title, const QString &key, const QUuid &id)
{
    return textField(title, key, id.isNull() ? QString() : id.toString(QUuid::WithoutBraces));
}

} // namespace

QVector<HeaderField> headerFields(const ZEP::Lap &lap)
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

QJsonObject headerJson(const ZEP::Lap &lap)
{
    QJsonObject header;
    for (const HeaderField &field : headerFields(lap))
        header.insert(field.key, field.json);
    QJsonObject values;
    for (const QString &name : lap.valueNameList())
        values.insert(name, jsonValue(lap.DynamicData::value(name)));
    QJsonObject calculated;
    for (const QString &name : lap.calculatedValuesNames())
        calculated.insert(name, jsonValue(lap.calculatedValue(name)));
    return {{QStringLiteral("header"), header},
            {QStringLiteral("values"), values},
            {QStringLiteral("calculatedValues"), calculated}};
}
