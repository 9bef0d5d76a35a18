#include "tests/support/fakeplugin/lapsheetimport.h"

#include <QColor>
#include <QFile>

#include <csignal>

namespace {

ZEP::Lap *newLap(const QStringList &items)
{
    auto *lap = new ZEP::Lap;
    lap->setLapType(static_cast<ZEP::LapType>(items.value(1).toInt()));
    lap->setCompleted(items.value(2).toInt() != 0);
    if (!items.value(3).isEmpty())
        lap->setLapTime(QTime::fromMSecsSinceStartOfDay(items.value(3).toInt()));
    lap->setLapInSession(items.value(4).toInt());
    lap->setStintInSession(items.value(5).toInt());
    lap->setLapInStint(items.value(6).toInt());
    return lap;
}

ZEP::Channel *newChannel(const QStringList &items)
{
    auto *channel = new ZEP::Channel;
    channel->setUnit(items.value(2));
    for (const QString &sample : items.value(3).split(QLatin1Char(' '), Qt::SkipEmptyParts))
        channel->data.append(sample == QLatin1String("-") ? ZEP::Channel::NoData
                                                          : sample.toDouble());
    return channel;
}

void fill(ZEP::Lap &lap, const QStringList &items)
{
    const QString &kind = items.first();
    const QString text = items.value(1);
    if (kind == QLatin1String("track"))
        lap.setTrackName(text);
    else if (kind == QLatin1String("configuration"))
        lap.setTrackConfig(text);
    else if (kind == QLatin1String("car"))
        lap.setCarName(text);
    else if (kind == QLatin1String("driver"))
        lap.setDriverName(text);
    else if (kind == QLatin1String("session"))
        lap.setSession(static_cast<ZEP::Session>(text.toInt()));
    else if (kind == QLatin1String("date"))
        lap.setDateTime(QDateTime::fromString(text, Qt::ISODate));
    else if (kind == QLatin1String("text"))
        lap.addValue(text, items.value(2), QString());
    else if (kind == QLatin1String("number"))
        lap.addValue(text, items.value(2).toDouble(), items.value(3));
    else if (kind == QLatin1String("colour"))
        lap.addValue(text, QColor(items.value(2)), QString());
    else if (kind == QLatin1String("channel"))
        lap.addChannel(newChannel(items), text);
    else if (kind == QLatin1String("calculated"))
        lap.addCalculatedChannel(newChannel(items), text);
    else
        qFatal("a lap sheet knows no %s", qPrintable(kind));
}

} // namespace

QString LapSheetImport::pluginName() const
{
    return QStringLiteral("Lap sheets");
}

QString LapSheetImport::sourceName() const
{
    return QStringLiteral("Tests");
}

QString LapSheetImport::pluginVersion() const
{
    return QStringLiteral("1.5");
}

QStringList LapSheetImport::availableImportFormats() const
{
    return {QStringLiteral("Lap sheet (*.laps)"), QStringLiteral("Silent sheet (*.mute *.hush)")};
}

QVector<ZEP::Lap *> LapSheetImport::import(const QString &fileName, const QString &format,
                                           const QMap<QString, QVariant> &)
{
    if (format != availableImportFormats().first())
        return {};
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        message(QLatin1String("cannot open ") % fileName, -2);
        return {};
    }
    return readLaps(QString::fromUtf8(file.readAll()));
}

QVector<ZEP::Lap *> LapSheetImport::readLaps(const QString &text)
{
    QVector<ZEP::Lap *> laps;
    for (const QString &line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QStringList items = line.split(QLatin1Char('|'));
        if (items.first() == QLatin1String("message"))
            message(items.value(2), items.value(1).toInt());
        else if (items.first() == QLatin1String("crash"))
            std::raise(SIGKILL);
        else if (items.first() == QLatin1String("lap"))
            laps.append(newLap(items));
        else
            fill(*laps.last(), items);
    }
    return laps;
}
