#include "host/commands/channeloptions.h"

#include "host/commands/commandline.h"
#include "host/text/terminal.h"

void ChannelOptions::declare(CommandOptions &options, const std::string &text)
{
    options.addTexts({"--channels", "NAMES",
                      text + ":\nnames, patterns with * and ?, or the presets\n"
                          + ChannelChoice::presets().join(QLatin1String(", ")).toStdString()},
                     &m_names);
}

std::optional<QVector<ChosenChannel>> ChannelOptions::chosen(const ChosenLaps &laps,
                                                             Terminal &terminal) const
{
    QString problem;
    const QVector<ChosenChannel> channels = ChannelChoice(names()).channels(laps.laps(), &problem);
    if (problem.isEmpty())
        return channels;
    terminal.complain(laps.file.fileName % QLatin1String(": ") % problem);
    return std::nullopt;
}

QStringList ChannelOptions::names() const
{
    QStringList names;
    for (const std::string &name : m_names)
        names.append(QString::fromStdString(name));
    return names;
}

QStringList ChannelOptions::arguments() const
{
    QStringList result;
    for (const QString &name : names())
        result.append(QLatin1String("--channels=") % name);
    return result;
}
