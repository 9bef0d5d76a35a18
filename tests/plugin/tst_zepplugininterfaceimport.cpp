#include "plugin/zepplugininterfaceimport.h"
#include "tests/support/roomtests.h"
#include "tests/support/virtualslot.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>
#include <type_traits>

static_assert(std::is_abstract_v<ZepPluginInterfaceImport>);
static_assert(std::has_virtual_destructor_v<ZepPluginInterfaceImport>);
static_assert(!std::is_base_of_v<QObject, ZepPluginInterfaceImport>);

namespace {

class ImportPlugin : public QObject, public ZepPluginInterfaceImport
{
    Q_OBJECT
    Q_INTERFACES(ZepPluginInterfaceImport)

public:
    QString pluginName() const override { return name; }
    QString sourceName() const override { return "A Source"; }
    QString pluginVersion() const override { return "1.0"; }
    QStringList availableImportFormats() const override { return {"A Format (*.a)"}; }
    QVector<ZEP::Lap *> import(const QString &fileName, const QString &format,
                               const QMap<QString, QVariant> &options) override
    {
        auto *lap = new ZEP::Lap;
        lap->setFileName(fileName);
        lap->setSource(format);
        lap->setDriverName(options.value("driver").toString());
        return {lap};
    }

    QString name = "A Plug-in";
};

} // namespace

class tst_ZepPluginInterfaceImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emitterBelongsToTheInterface();
    void emittersAreApart();
    void message_data();
    void message();
    void messageReachesOnlyItsOwnEmitter();
    void messageAsksForTheNameEveryTime();
    void identifier();
    void castsByNameAndByIdentifier_data();
    void castsByNameAndByIdentifier();
    void operationsAreReachedThroughTheInterface();
    void virtualOperationsKeepTheirOrder();
    void isDestroyedThroughTheInterface();
};

void tst_ZepPluginInterfaceImport::emitterBelongsToTheInterface()
{
    auto plugin = std::make_unique<ImportPlugin>();
    const QPointer<ZepDataEmitter> emitter = plugin->dataEmitter();
    QVERIFY(emitter);
    QVERIFY(!emitter->parent());
    QCOMPARE(plugin->dataEmitter(), emitter.data());

    // Held by value: it lies within the interface.
    const auto *interface = static_cast<ZepPluginInterfaceImport *>(plugin.get());
    const auto *begin = reinterpret_cast<const char *>(interface);
    const auto *address = reinterpret_cast<const char *>(emitter.data());
    QVERIFY(address >= begin && address < begin + sizeof *interface);

    plugin.reset();
    QVERIFY(!emitter);
}

void tst_ZepPluginInterfaceImport::emittersAreApart()
{
    ImportPlugin one;
    ImportPlugin other;
    QVERIFY(one.dataEmitter() != other.dataEmitter());
}

void tst_ZepPluginInterfaceImport::message_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("message");

    QTest::newRow("information") << "A"
                                 << "Unknown format" << 0 << "[A plugin] Unknown format";
    QTest::newRow("error") << "A"
                           << "Unknown format" << -2 << "[A plugin] Unknown format";
    QTest::newRow("name ends in plugin")
        << "ZEP iRacing ibt import plugin"
        << "Unknown format" << -2 << "[ZEP iRacing ibt import plugin plugin] Unknown format";
    QTest::newRow("any level") << "A"
                               << "text" << 5 << "[A plugin] text";
    QTest::newRow("least level") << "A"
                                 << "text" << std::numeric_limits<int>::min() << "[A plugin] text";
    QTest::newRow("greatest level")
        << "A"
        << "text" << std::numeric_limits<int>::max() << "[A plugin] text";
    QTest::newRow("empty text") << "A"
                                << "" << 0 << "[A plugin] ";
    QTest::newRow("empty name") << ""
                                << "text" << 0 << "[ plugin] text";
    QTest::newRow("place markers are text") << "%1 %2"
                                            << "%1%%" << 0 << "[%1 %2 plugin] %1%%";
    QTest::newRow("beyond Latin-1")
        << QStringLiteral("\u30c4") << QStringLiteral("\u7b51 \U0001f3c1") << 0
        << QStringLiteral("[\u30c4 plugin] \u7b51 \U0001f3c1");
}

void tst_ZepPluginInterfaceImport::message()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(int, level);

    ImportPlugin plugin;
    plugin.name = name;
    const QSignalSpy spy(plugin.dataEmitter(), &ZepDataEmitter::sendMessage);
    plugin.message(text, level);
    QCOMPARE(spy.size(), 1);
    QTEST(spy.first().at(0).toString(), "message");
    QCOMPARE(spy.first().at(1).toInt(), level);
}

void tst_ZepPluginInterfaceImport::messageReachesOnlyItsOwnEmitter()
{
    ImportPlugin one;
    ImportPlugin other;
    const QSignalSpy spy(other.dataEmitter(), &ZepDataEmitter::sendMessage);
    one.message("text", 0);
    QCOMPARE(spy.size(), 0);
}

void tst_ZepPluginInterfaceImport::messageAsksForTheNameEveryTime()
{
    ImportPlugin plugin;
    const QSignalSpy spy(plugin.dataEmitter(), &ZepDataEmitter::sendMessage);
    plugin.name = "A";
    plugin.message("text", 0);
    plugin.name = "B";
    plugin.message("text", 0);
    QCOMPARE(spy.size(), 2);
    QCOMPARE(spy.at(0).at(0).toString(), QString("[A plugin] text"));
    QCOMPARE(spy.at(1).at(0).toString(), QString("[B plugin] text"));
}

void tst_ZepPluginInterfaceImport::identifier()
{
    const QString expected = QString(ZEP_IID_PREFIX) + ".ZepPluginInterfaceImport/0.2";
    QVERIFY(!QString(ZEP_IID_PREFIX).isEmpty());
    QCOMPARE(QString(qobject_interface_iid<ZepPluginInterfaceImport *>()), expected);
    QCOMPARE(QString(ZepPluginInterfaceImport_iid), expected);
}

void tst_ZepPluginInterfaceImport::castsByNameAndByIdentifier_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("answered");

    const QByteArray identifier = QByteArray(ZEP_IID_PREFIX) + ".ZepPluginInterfaceImport/0.2";
    QTest::newRow("class name") << QByteArray("ZepPluginInterfaceImport") << true;
    QTest::newRow("identifier") << identifier << true;
    QTest::newRow("another version") << identifier.chopped(1) + "3" << false;
    QTest::newRow("identifier without version") << identifier.chopped(4) << false;
    QTest::newRow("another prefix")
        << QByteArray("no.such.host.ZepPluginInterfaceImport/0.2") << false;
    QTest::newRow("the live interface") << QByteArray("ZepPluginInterfaceLive") << false;
}

void tst_ZepPluginInterfaceImport::castsByNameAndByIdentifier()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, answered);

    ImportPlugin plugin;
    const void *expected = answered ? static_cast<ZepPluginInterfaceImport *>(&plugin) : nullptr;
    QVERIFY(plugin.qt_metacast(name.constData()) == expected);

    QObject *object = &plugin;
    QCOMPARE(qobject_cast<ZepPluginInterfaceImport *>(object),
             static_cast<ZepPluginInterfaceImport *>(&plugin));
}

void tst_ZepPluginInterfaceImport::operationsAreReachedThroughTheInterface()
{
    ImportPlugin plugin;
    ZepPluginInterfaceImport &interface = plugin;
    QCOMPARE(interface.pluginName(), QString("A Plug-in"));
    QCOMPARE(interface.sourceName(), QString("A Source"));
    QCOMPARE(interface.pluginVersion(), QString("1.0"));
    QCOMPARE(interface.availableImportFormats(), QStringList{"A Format (*.a)"});

    const QVector<ZEP::Lap *> laps =
        interface.import("a file", "a format", {{"driver", "A Driver"}});
    QCOMPARE(laps.size(), 1);
    const std::unique_ptr<ZEP::Lap> lap(laps.first());
    QCOMPARE(lap->getFileName(), QString("a file"));
    QCOMPARE(lap->getSource(), QString("a format"));
    QCOMPARE(lap->getDriverName(), QString("A Driver"));
}

void tst_ZepPluginInterfaceImport::virtualOperationsKeepTheirOrder()
{
    // The destructor comes first and takes two entries.
    QCOMPARE(virtualSlot(&ZepPluginInterfaceImport::pluginName), std::ptrdiff_t(2));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceImport::sourceName), std::ptrdiff_t(3));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceImport::pluginVersion), std::ptrdiff_t(4));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceImport::availableImportFormats), std::ptrdiff_t(5));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceImport::import), std::ptrdiff_t(6));
}

void tst_ZepPluginInterfaceImport::isDestroyedThroughTheInterface()
{
    const QPointer<ImportPlugin> plugin = new ImportPlugin;
    const ZepPluginInterfaceImport *interface = plugin;
    delete interface;
    QVERIFY(!plugin);
}

NAPAMMUL_TEST(tst_ZepPluginInterfaceImport)

#include "tst_zepplugininterfaceimport.moc"
