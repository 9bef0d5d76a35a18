// samplebits PLUGIN FILE: imports FILE with PLUGIN and prints every sample of every lap, as a JSON
// array of laps, each an array of channels {"name", "unit", "calculated", "bits"}; "bits" has the
// sixteen hexadecimal digits of each sample, one after the other.

#include "plugin/zepplugininterfaceimport.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPluginLoader>

#include <cstdio>
#include <cstring>

namespace {

QJsonObject channelJson(const QString &name, const ZEP::Channel &channel, bool calculated)
{
    QString bits;
    for (const double sample : channel.data) {
        quint64 number = 0;
        std::memcpy(&number, &sample, sizeof number);
        bits += QStringLiteral("%1").arg(number, 16, 16, QLatin1Char('0'));
    }
    return {{QStringLiteral("name"), name},
            {QStringLiteral("unit"), channel.unit()},
            {QStringLiteral("calculated"), calculated},
            {QStringLiteral("bits"), bits}};
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        return 2;
    QPluginLoader loader(QFile::decodeName(argv[1]));
    auto *plugin = qobject_cast<ZepPluginInterfaceImport *>(loader.instance());
    if (!plugin)
        return 1;
    const QVector<ZEP::Lap *> laps = plugin->import(
        QFile::decodeName(argv[2]), plugin->availableImportFormats().constFirst(), {});
    QJsonArray array;
    for (const ZEP::Lap *lap : laps) {
        QJsonArray channels;
        for (const QString &name : lap->getAvailableChannels())
            channels.append(channelJson(name, *lap->channel(name), false));
        for (const QString &name : lap->getAvailableCalculatedChannels())
            channels.append(channelJson(name, *lap->calculatedChannel(name), true));
        array.append(channels);
    }
    qDeleteAll(laps);
    const QByteArray text = QJsonDocument(array).toJson(QJsonDocument::Compact);
    std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout);
    return laps.isEmpty() ? 1 : 0;
}
