// The plug-in and the plain importer agree on recordings made up at random, the broken ones
// included.
//
// NAPAMMUL_DIFFERENTIAL_SEEDS is the number of recordings, NAPAMMUL_DIFFERENTIAL_FIRST the seed of
// the first one. A recording that fails is made again by its seed alone.
#include "plugin/zepplugininterfaceimport.h"
#include "tests/reference/importfile.h"
#include "tests/reference/tree.h"
#include "tests/support/comparelaps.h"
#include "tests/support/randomrecording.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"
#include "yaml/yamltree.h"

#include <QLoggingCategory>
#include <QPluginLoader>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int DefaultSeeds = 600;

int number(const char *environmentVariable, int unset)
{
    return qEnvironmentVariableIsSet(environmentVariable)
        ? qEnvironmentVariableIntValue(environmentVariable)
        : unset;
}

void addSeeds()
{
    QTest::addColumn<uint>("seed");
    const int first = number("NAPAMMUL_DIFFERENTIAL_FIRST", 0);
    const int count = number("NAPAMMUL_DIFFERENTIAL_SEEDS", DefaultSeeds);
    for (int seed = first; seed < first + count; ++seed)
        QTest::addRow("seed %d", seed) << uint(seed);
}

/// The first key or child of \a expected that \a tree does not hold alike; empty if there is none.
QString treeDifference(TStringTree *tree, const reference::Tree &expected)
{
    for (const QString &key : expected.keys()) {
        if (tree->value(key) != expected.value(key) || tree->value(key).isNull())
            return QLatin1String("key ") + key;
    }
    for (const QString &name : expected.childNames()) {
        TStringTree *sub = tree->sub(name);
        const QString found =
            sub ? treeDifference(sub, *expected.sub(name)) : QStringLiteral("gone");
        if (!found.isEmpty())
            return QLatin1String("in ") + name + QLatin1String(": ") + found;
    }
    return QString();
}

/// A message without the time that the import took.
QString timeless(const reference::Message &message)
{
    static const QRegularExpression time(QStringLiteral("Done in \\d+ ms;"));
    return QString::number(message.level) + QLatin1Char(' ')
        + QString(message.text).replace(time, QStringLiteral("Done in some ms;"));
}

} // namespace

class tst_Differential : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void recordings_data();
    void recordings();
    void sessionTexts_data();
    void sessionTexts();
    void otherFormat();
    void missingFile();
    void folder();
    void everyTruncation();

private:
    void compare(const QString &fileName, const QString &format);
    void compare(const QByteArray &content);

    QTemporaryDir m_folder;
    QPluginLoader m_loader;
    ZepPluginInterfaceImport *m_plugin = nullptr;
    QVector<reference::Message> m_messages;
    QString m_difference; ///< that compare() has found
};

void tst_Differential::initTestCase()
{
    // Unknown colors are reported for every lap, by both importers.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    QVERIFY(m_folder.isValid());
    m_loader.setFileName(QStringLiteral(NAPAMMUL_PLUGIN_PATH));
    m_plugin = qobject_cast<ZepPluginInterfaceImport *>(m_loader.instance());
    QVERIFY2(m_plugin, qPrintable(m_loader.errorString()));
    connect(m_plugin->dataEmitter(), &ZepDataEmitter::sendMessage, this,
            [this](const QString &message, int level) {
                m_messages.append({message, level});
            });
}

void tst_Differential::compare(const QString &fileName, const QString &format)
{
    m_messages.clear();
    m_difference.clear();
    const QVector<ZEP::Lap *> laps = m_plugin->import(fileName, format, {});
    const reference::Import expected = reference::importFile(fileName, format);

    for (int i = 0; i < qMin(m_messages.size(), expected.messages.size()); ++i) {
        const QString message = timeless(m_messages.at(i));
        const QString other = timeless(expected.messages.at(i));
        if (message != other)
            m_difference = QStringLiteral("message \"%1\" instead of \"%2\"").arg(message, other);
    }
    if (m_difference.isEmpty() && m_messages.size() != expected.messages.size())
        m_difference = QStringLiteral("number of messages");
    if (m_difference.isEmpty())
        m_difference = LapComparison().difference(laps, expected.laps);
    if (m_difference.isEmpty())
        m_difference = sharingDifference(laps, expected.laps);
    qDeleteAll(laps);
}

void tst_Differential::compare(const QByteArray &content)
{
    QFile file(m_folder.filePath(QStringLiteral("recording.ibt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
    file.close();
    compare(file.fileName(), m_plugin->availableImportFormats().constFirst());
}

void tst_Differential::recordings_data()
{
    addSeeds();
}

void tst_Differential::recordings()
{
    QFETCH(uint, seed);

    compare(RandomRecording(seed).file());
    QVERIFY2(m_difference.isEmpty(), qPrintable(m_difference));
}

void tst_Differential::sessionTexts_data()
{
    addSeeds();
}

void tst_Differential::sessionTexts()
{
    QFETCH(uint, seed);

    TYamlTree tree;
    reference::Tree expected;
    for (uint text : {seed, seed + 1}) {
        const QByteArray sessionInfo = RandomRecording(text).sessionInfo();
        tree.setYaml(sessionInfo.constData());
        expected.setYaml(sessionInfo.constData());
    }
    const QString found = treeDifference(&tree, expected);
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void tst_Differential::otherFormat()
{
    compare(m_folder.filePath(QStringLiteral("recording.ibt")),
            m_plugin->availableImportFormats().constFirst().toUpper());
    QVERIFY2(m_difference.isEmpty(), qPrintable(m_difference));
}

void tst_Differential::missingFile()
{
    compare(m_folder.filePath(QStringLiteral("none.ibt")),
            m_plugin->availableImportFormats().constFirst());
    QVERIFY2(m_difference.isEmpty(), qPrintable(m_difference));
}

void tst_Differential::folder()
{
    compare(m_folder.path(), m_plugin->availableImportFormats().constFirst());
    QVERIFY2(m_difference.isEmpty(), qPrintable(m_difference));
}

void tst_Differential::everyTruncation()
{
    const QByteArray whole = Recording()
                                 .set("IsOnTrack", true)
                                 .ticks(6,
                                        [](Recording &recording, int tick) {
                                            recording.set("LapDistPct", 0.5 + tick * 0.01);
                                            recording.set("LapCurrentLapTime", tick < 4 ? 10 : 1);
                                        })
                                 .bytes();
    for (int size = 0; size <= whole.size(); ++size) {
        compare(whole.left(size));
        QVERIFY2(m_difference.isEmpty(),
                 qPrintable(QStringLiteral("first %1 bytes: %2").arg(size).arg(m_difference)));
    }
}

NAPAMMUL_TEST(tst_Differential)
#include "tst_differential.moc"
