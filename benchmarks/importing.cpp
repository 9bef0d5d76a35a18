#include "benchmarks/importing.h"

#include "ibt/ibtfile.h"
#include "plugin/zepplugininterfaceimport.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QPluginLoader>
#include <QVariant>

#include <numeric>

ZepPluginInterfaceImport *plugin()
{
    static ZepPluginInterfaceImport *const loaded = [] {
        QPluginLoader loader(QStringLiteral(NAPAMMUL_PLUGIN_PATH));
        auto *import = qobject_cast<ZepPluginInterfaceImport *>(loader.instance());
        if (!import)
            qFatal("%s", qPrintable(loader.errorString()));
        return import;
    }();
    return loaded;
}

Laps importFile(const QByteArray &fileName)
{
    const QVector<ZEP::Lap *> laps = plugin()->import(
        QFile::decodeName(fileName), plugin()->availableImportFormats().first(), {});
    return Laps(laps.cbegin(), laps.cend());
}

qint64 sampleCount(const Laps &laps)
{
    qint64 count = 0;
    for (const auto &lap : laps) {
        for (const QString &name : lap->getAvailableChannels())
            count += lap->channel(name)->data.size();
    }
    return count;
}

qint64 tickCount(const Laps &laps)
{
    return std::accumulate(laps.cbegin(), laps.cend(), qint64(0),
                           [](qint64 sum, const auto &lap) { return sum + lap->size(); });
}

qint64 recordCount(const QByteArray &fileName)
{
    IbtFile file(fileName.constData());
    if (!file.isOpen() || !file.readHeader() || file.header().bufLen <= 0)
        return 0;
    const qint64 bytes = QFileInfo(QFile::decodeName(fileName)).size();
    return (bytes - file.header().varBuf[0].bufOffset) / file.header().bufLen;
}
