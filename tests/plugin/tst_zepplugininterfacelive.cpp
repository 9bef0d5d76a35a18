#include "plugin/zepplugininterfacelive.h"
#include "tests/support/roomtests.h"
#include "tests/support/virtualslot.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <limits>
#include <memory>
#include <type_traits>

static_assert(std::is_abstract_v<ZepPluginInterfaceLive>);
static_assert(std::has_virtual_destructor_v<ZepPluginInterfaceLive>);
static_assert(!std::is_base_of_v<QObject, ZepPluginInterfaceLive>);

namespace {

class LivePlugin : public ZepPluginInterfaceLive
{
public:
    explicit LivePlugin(const QVector<ZEP::CarInfo> &cars = {})
    {
        m_info.setPluginName("A Plug-in");
        m_info.setSourceName("A Source");
        m_info.carInfoList = cars;
    }

    void start() override { }
    void stop() override { }
    bool isConnected() const override { return false; }
    QString pluginName() const override { return name; }
    QString sourceName() const override { return "another source"; }
    QString pluginVersion() const override { return "1.0"; }
    int pollInterval() const override { return 16; }
    void setPollInterval(int) override { }
    bool sendsSamples() const override { return false; }
    void setSendsSamples(bool) override { }

    QString name = "another name";
};

/// Cars with these ids; those named in \a active are switched on.
QVector<ZEP::CarInfo> carsWith(const QVariantList &ids, const QVector<bool> &active)
{
    QVector<ZEP::CarInfo> cars;
    for (int i = 0; i < ids.size(); ++i) {
        ZEP::CarInfo car;
        car.setId(ids.at(i));
        car.setDisplayName("Car " + QString::number(i));
        car.setActive(active.at(i));
        cars.append(car);
    }
    return cars;
}

QVector<bool> activeOf(const ZEP::LivePluginInfo &info)
{
    QVector<bool> active;
    for (const ZEP::CarInfo &car : info.carInfoList)
        active.append(car.isActive());
    return active;
}

/// What the emitter of \a plugin sends while \a action runs.
QVector<ZEP::LivePluginInfo> listsSentBy(LivePlugin &plugin, const std::function<void()> &action)
{
    QVector<ZEP::LivePluginInfo> sent;
    QObject context;
    QObject::connect(plugin.dataEmitter(), &ZepDataEmitter::sendAvailableCarListChanged, &context,
                     [&sent](const ZEP::LivePluginInfo &info) { sent.append(info); });
    action();
    return sent;
}

} // namespace

class tst_ZepPluginInterfaceLive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emitterBelongsToTheInterface();
    void allCars_data();
    void allCars();
    void oneCar_data();
    void oneCar();
    void idIsComparedAsAVariant_data();
    void idIsComparedAsAVariant();
    void infoIsHandedOutAsACopy();
    void message_data();
    void message();
    void virtualOperationsKeepTheirOrder();
    void isDestroyedThroughTheInterface();
};

void tst_ZepPluginInterfaceLive::emitterBelongsToTheInterface()
{
    auto plugin = std::make_unique<LivePlugin>();
    const QPointer<ZepDataEmitter> emitter = plugin->dataEmitter();
    QVERIFY(emitter);
    QVERIFY(!emitter->parent());
    QCOMPARE(plugin->dataEmitter(), emitter.data());
    QVERIFY(LivePlugin().dataEmitter() != emitter.data());
    plugin.reset();
    QVERIFY(!emitter);
}

void tst_ZepPluginInterfaceLive::allCars_data()
{
    QTest::addColumn<QVector<bool>>("before");
    QTest::addColumn<bool>("on");

    using Active = QVector<bool>;
    for (const bool on : {true, false}) {
        const char *action = on ? "on" : "off";
        QTest::addRow("no cars, %s", action) << Active{} << on;
        QTest::addRow("one car, off before, %s", action) << Active{false} << on;
        QTest::addRow("one car, on before, %s", action) << Active{true} << on;
        QTest::addRow("some on before, %s", action) << Active{false, true, false} << on;
        QTest::addRow("all on before, %s", action) << Active{true, true, true} << on;
    }
}

void tst_ZepPluginInterfaceLive::allCars()
{
    QFETCH(QVector<bool>, before);
    QFETCH(bool, on);

    LivePlugin plugin(carsWith(QVariantList{1, 2, 3}.mid(0, before.size()), before));
    const auto sent = listsSentBy(plugin, [&] {
        if (on)
            plugin.enableTelemetryFromAllCars();
        else
            plugin.disableTelemetryFromAllCars();
    });

    const QVector<bool> expected(before.size(), on);
    QCOMPARE(activeOf(plugin.getTelemetryCarInfoList()), expected);
    QCOMPARE(sent.size(), 1);
    QCOMPARE(activeOf(sent.first()), expected);
    QCOMPARE(sent.first().pluginName(), QString("A Plug-in"));
    QCOMPARE(sent.first().sourceName(), QString("A Source"));
    for (int i = 0; i < before.size(); ++i) {
        QCOMPARE(sent.first().carInfoList.at(i).id(), QVariant(i + 1));
        QCOMPARE(sent.first().carInfoList.at(i).displayName(), "Car " + QString::number(i));
    }
}

void tst_ZepPluginInterfaceLive::oneCar_data()
{
    QTest::addColumn<QVariantList>("ids");
    QTest::addColumn<QVariant>("id");
    QTest::addColumn<int>("changed"); // -1: no car

    const QVariantList three{10, 20, 30};
    QTest::newRow("first") << three << QVariant(10) << 0;
    QTest::newRow("middle") << three << QVariant(20) << 1;
    QTest::newRow("last") << three << QVariant(30) << 2;
    QTest::newRow("no such car") << three << QVariant(40) << -1;
    QTest::newRow("position is no id") << three << QVariant(1) << -1;
    QTest::newRow("no cars") << QVariantList{} << QVariant(10) << -1;
    QTest::newRow("id of two cars") << QVariantList{10, 20, 20} << QVariant(20) << 1;
    QTest::newRow("id of all cars") << QVariantList{10, 10, 10} << QVariant(10) << 0;
    QTest::newRow("text") << QVariantList{"a", "b", "c"} << QVariant("b") << 1;
    QTest::newRow("text in other letters") << QVariantList{"a", "b", "c"} << QVariant("B") << -1;
    QTest::newRow("invalid id") << three << QVariant() << -1;
    QTest::newRow("invalid id of a car") << QVariantList{10, QVariant(), 30} << QVariant() << 1;
}

void tst_ZepPluginInterfaceLive::oneCar()
{
    QFETCH(QVariantList, ids);
    QFETCH(QVariant, id);
    QFETCH(int, changed);

    for (const bool on : {true, false}) {
        for (const bool before : {true, false}) {
            LivePlugin plugin(carsWith(ids, QVector<bool>(ids.size(), before)));
            const auto sent = listsSentBy(plugin, [&] {
                if (on)
                    plugin.enableTelemetry(id);
                else
                    plugin.disableTelemetry(id);
            });

            QVector<bool> expected(ids.size(), before);
            if (changed >= 0)
                expected[changed] = on;
            QCOMPARE(activeOf(plugin.getTelemetryCarInfoList()), expected);
            // Sent also when the car was like that before.
            QCOMPARE(sent.size(), changed >= 0 ? 1 : 0);
            if (changed >= 0) {
                QCOMPARE(activeOf(sent.first()), expected);
                QCOMPARE(sent.first().pluginName(), QString("A Plug-in"));
                QCOMPARE(sent.first().sourceName(), QString("A Source"));
            }
        }
    }
}

void tst_ZepPluginInterfaceLive::idIsComparedAsAVariant_data()
{
    QTest::addColumn<QVariant>("carId");
    QTest::addColumn<QVariant>("id");

    QTest::newRow("int and int") << QVariant(7) << QVariant(7);
    QTest::newRow("int and text of it") << QVariant(7) << QVariant("7");
    QTest::newRow("int and other text") << QVariant(7) << QVariant("seven");
    QTest::newRow("int and 64 bits") << QVariant(7) << QVariant(Q_INT64_C(7));
    QTest::newRow("int and double") << QVariant(7) << QVariant(7.0);
    QTest::newRow("int and another double") << QVariant(7) << QVariant(7.5);
}

void tst_ZepPluginInterfaceLive::idIsComparedAsAVariant()
{
    QFETCH(QVariant, carId);
    QFETCH(QVariant, id);

    LivePlugin plugin(carsWith({carId}, {false}));
    plugin.enableTelemetry(id);
    QCOMPARE(activeOf(plugin.getTelemetryCarInfoList()).first(), carId == id);
}

void tst_ZepPluginInterfaceLive::infoIsHandedOutAsACopy()
{
    LivePlugin plugin(carsWith({1, 2}, {true, false}));
    ZEP::LivePluginInfo info = plugin.getTelemetryCarInfoList();
    QCOMPARE(info.pluginName(), QString("A Plug-in"));
    QCOMPARE(info.sourceName(), QString("A Source"));
    QCOMPARE(activeOf(info), QVector<bool>({true, false}));

    info.setPluginName("changed");
    info.carInfoList.first().setActive(false);
    info.carInfoList.removeLast();
    QCOMPARE(plugin.getTelemetryCarInfoList().pluginName(), QString("A Plug-in"));
    QCOMPARE(activeOf(plugin.getTelemetryCarInfoList()), QVector<bool>({true, false}));
}

void tst_ZepPluginInterfaceLive::message_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("message");

    QTest::newRow("information") << "A"
                                 << "text" << 0 << "[A plugin] text";
    QTest::newRow("error") << "A"
                           << "text" << -2 << "[A plugin] text";
    QTest::newRow("any level") << "A"
                               << "text" << 5 << "[A plugin] text";
    QTest::newRow("least level") << "A"
                                 << "text" << std::numeric_limits<int>::min() << "[A plugin] text";
    QTest::newRow("empty text") << "A"
                                << "" << 0 << "[A plugin] ";
    QTest::newRow("place markers are text") << "%1"
                                            << "%1" << 0 << "[%1 plugin] %1";
}

void tst_ZepPluginInterfaceLive::message()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(int, level);

    // The name is the plug-in's own answer, not the one in its list of cars.
    LivePlugin plugin;
    plugin.name = name;
    const QSignalSpy spy(plugin.dataEmitter(), &ZepDataEmitter::sendMessage);
    plugin.message(text, level);
    QCOMPARE(spy.size(), 1);
    QTEST(spy.first().at(0).toString(), "message");
    QCOMPARE(spy.first().at(1).toInt(), level);
}

void tst_ZepPluginInterfaceLive::virtualOperationsKeepTheirOrder()
{
    // The destructor comes first and takes two entries.
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::start), std::ptrdiff_t(2));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::stop), std::ptrdiff_t(3));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::isConnected), std::ptrdiff_t(4));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::pluginName), std::ptrdiff_t(5));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::sourceName), std::ptrdiff_t(6));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::pluginVersion), std::ptrdiff_t(7));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::pollInterval), std::ptrdiff_t(8));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::setPollInterval), std::ptrdiff_t(9));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::sendsSamples), std::ptrdiff_t(10));
    QCOMPARE(virtualSlot(&ZepPluginInterfaceLive::setSendsSamples), std::ptrdiff_t(11));
}

void tst_ZepPluginInterfaceLive::isDestroyedThroughTheInterface()
{
    const ZepPluginInterfaceLive *interface = nullptr;
    QPointer<ZepDataEmitter> emitter;
    {
        auto *plugin = new LivePlugin;
        emitter = plugin->dataEmitter();
        interface = plugin;
    }
    delete interface;
    QVERIFY(!emitter);
}

NAPAMMUL_TEST(tst_ZepPluginInterfaceLive)

#include "tst_zepplugininterfacelive.moc"
