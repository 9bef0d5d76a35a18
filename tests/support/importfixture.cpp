#include "tests/support/importfixture.h"

#include <QFile>

ImportFixture::ImportFixture() : m_loader(QStringLiteral(NAPAMMUL_PLUGIN_PATH))
{
    reload();
}

void ImportFixture::reload()
{
    m_plugin = qobject_cast<ZepPluginInterfaceImport *>(m_loader.instance());
}

QString ImportFixture::write(const QByteArray &bytes)
{
    const QString fileName = m_dir.filePath(QStringLiteral("recording.ibt"));
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(fileName));
    return fileName;
}

ImportResult ImportFixture::importFile(const QString &fileName, const QString &format)
{
    ImportResult result;
    const auto connection = QObject::connect(m_plugin->dataEmitter(), &ZepDataEmitter::sendMessage,
                                             [&result](const QString &text, int level) {
                                                 result.messages.append({text, level});
                                             });
    const QVector<ZEP::Lap *> laps = m_plugin->import(fileName, format, {});
    QObject::disconnect(connection);
    for (ZEP::Lap *lap : laps)
        result.laps.emplace_back(lap);
    return result;
}
