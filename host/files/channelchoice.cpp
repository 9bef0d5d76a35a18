#include "host/files/channelchoice.h"

#include "host/files/nearestnames.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <set>

namespace {

/// The wildcards of each preset, in the order in which its channels are shown.
const QMap<QString, QStringList> &presetWildcards()
{
    static const QMap<QString, QStringList> wildcards{
        {QStringLiteral("driver"),
         {"speed", "throttle", "brake", "clutch", "handbrake", "gear", "steeringwheelangle"}},
        {QStringLiteral("engine"),
         {"rpm", "gear", "throttle", "manifoldpress", "oiltemp", "oilpress", "oillevel",
          "watertemp", "waterlevel", "fuelpress", "fuellevel", "fueluseperhour", "voltage",
          "enginewarnings"}},
        {QStringLiteral("tyres"),
         {"[lr][fr]temp*", "[lr][fr]pressure", "[lr][fr]coldpressure", "[lr][fr]wear*",
          "[lr][fr]speed", "[lr][fr]rideheight", "tire[lr][fr]_*"}},
        {QStringLiteral("position"),
         {"lapdist", "lapdistpct", "lat", "lon", "alt", "yaw", "yawnorth", "pitch", "roll"}},
    };
    return wildcards;
}

/// Those of \a all whose names \a wildcard fits.
QVector<ChosenChannel> matching(const QVector<ChosenChannel> &all, const QString &wildcard)
{
    const QRegularExpression expression(QRegularExpression::wildcardToRegularExpression(wildcard),
                                        QRegularExpression::CaseInsensitiveOption);
    QVector<ChosenChannel> result;
    if (!expression.isValid()) // "[z-a]"
        return result;
    std::copy_if(
        all.begin(), all.end(), std::back_inserter(result),
        [&](const ChosenChannel &channel) { return expression.match(channel.name).hasMatch(); });
    return result;
}

/// What \a choice finds among \a all.
QVector<ChosenChannel> found(const QVector<ChosenChannel> &all, const QString &choice)
{
    QVector<ChosenChannel> result;
    for (const ChosenChannel &channel : all) {
        if (channel.name.compare(choice, Qt::CaseInsensitive) == 0)
            result.append(channel);
    }
    if (!result.isEmpty())
        return result;
    for (const QString &wildcard : presetWildcards().value(choice.toLower()))
        result += matching(all, wildcard);
    return result.isEmpty() ? matching(all, choice) : result;
}

} // namespace

QVector<ChosenChannel> ChannelChoice::channels(const QVector<const ZEP::Lap *> &laps,
                                               QString *problem) const
{
    const QVector<ChosenChannel> all = allChannels(laps);
    if (isEverything())
        return all;
    QVector<ChosenChannel> result;
    std::set<std::pair<bool, QString>> taken;
    for (const QString &choice : m_choices) {
        const QVector<ChosenChannel> channels = found(all, choice);
        if (channels.isEmpty()) {
            static const QRegularExpression wildcards(QStringLiteral("[*?]"));
            QStringList names = presets();
            for (const ChosenChannel &channel : all)
                names.append(channel.name);
            *problem = QStringLiteral("there is no channel '%1'").arg(choice)
                % didYouMean(QString(choice).remove(wildcards), names);
            return {};
        }
        for (const ChosenChannel &channel : channels) {
            if (taken.insert({channel.isCalculated, channel.name}).second)
                result.append(channel);
        }
    }
    return result;
}

QStringList ChannelChoice::presets()
{
    return presetWildcards().keys();
}
