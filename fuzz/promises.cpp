#include "fuzz/promises.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

const QString PluginName = QStringLiteral("ZEP iRacing ibt import plugin");

QString prefixed(const QString &text)
{
    return QLatin1String(ImportFixture::Prefix) % text;
}

bool isKnownError(const QString &text, const QString &fileName)
{
    static const QStringList errors = {
        prefixed(QStringLiteral("IBT import error:  Error reading irsdk_header")),
        prefixed(QStringLiteral("IBT import error:  Error reading irsdk_diskSubHeader")),
        prefixed(QStringLiteral("IBT import error:  Failed to read sessionInfoString")),
        prefixed(QStringLiteral("IBT import error:  Failed to read irsdk_varHeader")),
    };
    return errors.contains(text) || text == prefixed(QLatin1String("Can't open file ") % fileName);
}

QString brokenByMessages(const ImportResult &result, const QString &fileName)
{
    const QString format = QLatin1String(ImportFixture::Format);
    const QVector<SentMessage> &messages = result.messages;
    const SentMessage importing{
        prefixed(QLatin1String("Importing file ") % fileName % QLatin1String(" ...")), 0};
    const SentMessage choosing{prefixed(QLatin1String("Using format ") % format), 0};
    if (messages.size() != 3)
        return QStringLiteral("%1 messages").arg(messages.size());
    if (!(messages.at(0) == importing) || !(messages.at(1) == choosing))
        return QStringLiteral("the import is not announced");

    const SentMessage &last = messages.at(2);
    if (result.laps.empty())
        return last.level == -2 && isKnownError(last.text, fileName)
            ? QString()
            : QStringLiteral("no laps, but the message \"%1\"").arg(last.text);
    static const QRegularExpression done(
        QRegularExpression::anchoredPattern(prefixed(QStringLiteral("Done in \\d+ ms; Laps readed "
                                                                    "(\\d+)"))
                                                .replace(QLatin1Char('['), QLatin1String("\\["))
                                                .replace(QLatin1Char(']'), QLatin1String("\\]"))));
    const QRegularExpressionMatch match = done.match(last.text);
    if (last.level != 0 || match.captured(1).toInt() != int(result.laps.size()))
        return QStringLiteral("%1 laps, but the message \"%2\"")
            .arg(result.laps.size())
            .arg(last.text);
    return QString();
}

QString brokenByChannels(const ZEP::Lap &lap)
{
    const QStringList names = lap.getAvailableChannels();
    for (const QString &name : names) {
        const auto channel = lap.channel(name);
        const int size = channel->data.size();
        if (size != lap.size())
            return QStringLiteral("channel %1 has %2 samples, not %3")
                .arg(name)
                .arg(size)
                .arg(lap.size());
        for (int i = -1; i <= size; ++i) {
            const bool isInside = i >= 0 && i < size;
            const double sample = channel->sample(i);
            if (!isInside && !(sample == ZEP::Channel::NoData))
                return QStringLiteral("channel %1 has a sample outside").arg(name);
            if (channel->isValid(i) != (isInside && sample < ZEP::Channel::ValidBelow))
                return QStringLiteral("channel %1: validity of sample %2").arg(name).arg(i);
        }
    }
    return QString();
}

QString brokenByHeader(const ZEP::Lap &lap, bool isLast)
{
    if (lap.getSource() != QLatin1String("iRacing") || lap.getPlugin() != PluginName)
        return QStringLiteral("source or plug-in");
    if (lap.getCompleted() == isLast)
        return QStringLiteral("completed");
    const QStringList values = lap.valueNameList() + lap.calculatedValuesNames();
    for (const QString &name : values)
        lap.value(name).print();
    if (lap.isEmpty())
        return isLast ? QString() : QStringLiteral("a completed lap without samples");

    if (lap.size() < 1)
        return QStringLiteral("a lap without samples");
    if (lap.getLapId().isNull() && !isLast)
        return QStringLiteral("no id");
    if (!lap.getLapTime().isValid())
        return QStringLiteral("no lap time");
    if (isLast && lap.getLapTime() != QTime(0, 59, 59))
        return QStringLiteral("a lap time that cannot be known");
    if (!isLast && lap.getLapInSession() < 0)
        return QStringLiteral("lap in session");
    if (lap.containsCalculatedValue(QStringLiteral("maxLapDistPct"))
        || !lap.containsCalculatedValue(QStringLiteral("DateTime")))
        return QStringLiteral("calculated values");
    if (lap.channel(QStringLiteral("sessionnum")))
        return QStringLiteral("a channel that is of no use");
    return QString();
}

/// Checks that laps are in the order in which they were driven.
QString brokenByOrder(const ZEP::Lap &before, const ZEP::Lap &lap)
{
    const bool sameStint = lap.getStintInSession() == before.getStintInSession();
    if (lap.getStintInSession() < before.getStintInSession())
        return QStringLiteral("stint in session");
    if (sameStint != (lap.getStintId() == before.getStintId()))
        return QStringLiteral("stint id");
    if (sameStint && lap.getCompleted() && lap.getLapInStint() < before.getLapInStint())
        return QStringLiteral("lap in stint");
    return QString();
}

} // namespace

QString brokenPromise(const ImportResult &result, const QString &fileName)
{
    QString broken = brokenByMessages(result, fileName);
    if (!broken.isEmpty())
        return broken;
    const ZEP::Lap *before = nullptr;
    for (const auto &lap : result.laps) {
        broken = brokenByHeader(*lap, lap == result.laps.back());
        if (broken.isEmpty())
            broken = brokenByChannels(*lap);
        if (broken.isEmpty() && before && !lap->isEmpty())
            broken = brokenByOrder(*before, *lap);
        if (!broken.isEmpty())
            return QStringLiteral("lap %1 of %2: ")
                       .arg(&lap - result.laps.data())
                       .arg(result.laps.size())
                % broken;
        before = lap.get();
    }
    return QString();
}
