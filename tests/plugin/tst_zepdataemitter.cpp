#include "plugin/zepdataemitter.h"
#include "tests/support/roomtests.h"

#include <QMetaMethod>
#include <QTest>

#include <type_traits>

static_assert(std::is_base_of_v<QObject, ZepDataEmitter>);
static_assert(sizeof(ZepDataEmitter) == sizeof(QObject));

namespace {

constexpr int SignalCount = 9;

QMetaMethod ownMethod(int position)
{
    const QMetaObject &meta = ZepDataEmitter::staticMetaObject;
    return meta.method(meta.methodOffset() + position);
}

/// The answer to the question that Qt asks before it queues an argument.
int registeredArgument(int position, int argument)
{
    ZepDataEmitter emitter;
    int answer = -2;
    void *arguments[] = {&answer, &argument};
    const int method = ZepDataEmitter::staticMetaObject.methodOffset() + position;
    emitter.qt_metacall(QMetaObject::RegisterMethodArgumentMetaType, method, arguments);
    return answer;
}

} // namespace

class tst_ZepDataEmitter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void argumentTypesAreRegisteredWhenAsked();
    void argumentTypes_data();
    void argumentTypes();

    void metaObjectIsItsOwn();
    void signalTable_data();
    void signalTable();
    void hasNothingButSignals();

    void parentIsTakenOver();
    void signalsCarryTheirArguments();
};

/// Comes first: no other test of this program may have registered the types.
void tst_ZepDataEmitter::argumentTypesAreRegisteredWhenAsked()
{
    QCOMPARE(QMetaType::type("ZEP::Lap"), int(QMetaType::UnknownType));
    QCOMPARE(QMetaType::type("ZEP::Sample"), int(QMetaType::UnknownType));

    const int lap = ownMethod(3).parameterType(0);
    QVERIFY(lap != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type("ZEP::Lap"), lap);
    QCOMPARE(QMetaType::typeName(lap), "ZEP::Lap");
    QCOMPARE(QMetaType::type("ZEP::Sample"), int(QMetaType::UnknownType));

    const int sample = ownMethod(6).parameterType(0);
    QVERIFY(sample != QMetaType::UnknownType);
    QCOMPARE(QMetaType::type("ZEP::Sample"), sample);
    QCOMPARE(QMetaType::typeName(sample), "ZEP::Sample");

    // Once: asking again gives the same numbers.
    QCOMPARE(ownMethod(3).parameterType(0), lap);
    QCOMPARE(registeredArgument(3, 0), lap);
    QCOMPARE(registeredArgument(6, 0), sample);
    QCOMPARE(qMetaTypeId<ZEP::Lap>(), lap);
    QCOMPARE(qMetaTypeId<ZEP::Sample>(), sample);

    QCOMPARE(ownMethod(4).parameterType(0), int(QMetaType::UnknownType));
    QCOMPARE(ownMethod(5).parameterType(0), int(QMetaType::UnknownType));
    QCOMPARE(QMetaType::type("ZEP::LapHeader"), int(QMetaType::UnknownType));
    QCOMPARE(QMetaType::type("ZEP::LivePluginInfo"), int(QMetaType::UnknownType));
    QCOMPARE(QMetaType::type("ZEP::CarInfo"), int(QMetaType::UnknownType));
}

void tst_ZepDataEmitter::argumentTypes_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("argument");
    QTest::addColumn<QByteArray>("type"); // empty: no meta-type

    for (int position = 0; position < SignalCount; ++position) {
        for (int argument = 0; argument < 3; ++argument) {
            QByteArray type;
            if (position == 3 && argument == 0)
                type = "ZEP::Lap";
            else if (position == 6 && argument == 0)
                type = "ZEP::Sample";
            QTest::addRow("%s, argument %d", ownMethod(position).name().constData(), argument)
                << position << argument << type;
        }
    }
}

void tst_ZepDataEmitter::argumentTypes()
{
    QFETCH(int, position);
    QFETCH(int, argument);
    QFETCH(QByteArray, type);

    const int registered = registeredArgument(position, argument);
    if (type.isEmpty()) {
        QCOMPARE(registered, -1);
    } else {
        QVERIFY(registered > QMetaType::UnknownType);
        QCOMPARE(QByteArray(QMetaType::typeName(registered)), type);
    }
}

void tst_ZepDataEmitter::metaObjectIsItsOwn()
{
    ZepDataEmitter emitter;
    QCOMPARE(emitter.metaObject()->className(), "ZepDataEmitter");
    QCOMPARE(emitter.metaObject()->superClass(), &QObject::staticMetaObject);
    QVERIFY(emitter.qt_metacast("ZepDataEmitter") == &emitter);
    QVERIFY(emitter.qt_metacast("QObject") == &emitter);
    QVERIFY(!emitter.qt_metacast("ZepPluginInterfaceImport"));
}

void tst_ZepDataEmitter::signalTable_data()
{
    using List = QList<QByteArray>;
    QTest::addColumn<int>("position");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<List>("types");
    QTest::addColumn<List>("names");

    int position = 0;
    const auto row = [&position](const char *name, const List &types, const List &names) {
        QTest::addRow("%d, %s", position, name) << position << QByteArray(name) << types << names;
        ++position;
    };
    row("sendConnected", {}, {});
    row("sendDisconnected", {}, {});
    row("sendNotConnected", {}, {});
    row("sendTelemetryLap", {"ZEP::Lap"}, {"lap"});
    row("sendTelemetryLapHeader", {"ZEP::LapHeader"}, {"header"});
    row("sendAvailableCarListChanged", {"ZEP::LivePluginInfo"}, {"carInfoList"});
    row("sendSample", {"ZEP::Sample"}, {"sample"});
    row("sendMessage", {"QString", "int"}, {"message", "verbose"});
    row("sendProgress", {"int"}, {"percent"});
}

void tst_ZepDataEmitter::signalTable()
{
    QFETCH(int, position);
    QFETCH(QByteArray, name);

    const QMetaMethod method = ownMethod(position);
    QCOMPARE(method.name(), name);
    QTEST(method.parameterTypes(), "types");
    QTEST(method.parameterNames(), "names");
    QCOMPARE(method.methodType(), QMetaMethod::Signal);
    QCOMPARE(method.access(), QMetaMethod::Public);
    QCOMPARE(method.returnType(), int(QMetaType::Void));
    QCOMPARE(ZepDataEmitter::staticMetaObject.indexOfSignal(method.methodSignature().constData()),
             ZepDataEmitter::staticMetaObject.methodOffset() + position);
}

void tst_ZepDataEmitter::hasNothingButSignals()
{
    const QMetaObject &meta = ZepDataEmitter::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), SignalCount);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
    QCOMPARE(meta.classInfoCount(), meta.classInfoOffset());
    QCOMPARE(meta.constructorCount(), 0);
}

void tst_ZepDataEmitter::parentIsTakenOver()
{
    const ZepDataEmitter alone;
    QVERIFY(!alone.parent());

    QObject parent;
    const auto *child = new ZepDataEmitter(&parent);
    QCOMPARE(child->parent(), &parent);
}

void tst_ZepDataEmitter::signalsCarryTheirArguments()
{
    ZepDataEmitter emitter;
    QStringList received;
    const auto note = [&received](const QString &text) { received += text; };
    connect(&emitter, &ZepDataEmitter::sendConnected, this, [&] { note("connected"); });
    connect(&emitter, &ZepDataEmitter::sendDisconnected, this, [&] { note("disconnected"); });
    connect(&emitter, &ZepDataEmitter::sendNotConnected, this, [&] { note("not connected"); });
    connect(&emitter, &ZepDataEmitter::sendTelemetryLap, this,
            [&](const ZEP::Lap &lap) { note("lap " + lap.getDriverName()); });
    connect(&emitter, &ZepDataEmitter::sendTelemetryLapHeader, this,
            [&](const ZEP::LapHeader &header) { note("header " + header.getDriverName()); });
    connect(&emitter, &ZepDataEmitter::sendAvailableCarListChanged, this,
            [&](const ZEP::LivePluginInfo &info) { note("cars " + info.pluginName()); });
    connect(&emitter, &ZepDataEmitter::sendSample, this,
            [&](const ZEP::Sample &sample) { note("sample " + sample.carId().toString()); });
    connect(&emitter, &ZepDataEmitter::sendMessage, this,
            [&](const QString &message, int level) { note(message + QString::number(level)); });
    connect(&emitter, &ZepDataEmitter::sendProgress, this,
            [&](int percent) { note("progress " + QString::number(percent)); });

    ZEP::Lap lap;
    lap.setDriverName("A");
    ZEP::LapHeader header;
    header.setDriverName("B");
    ZEP::LivePluginInfo info;
    info.setPluginName("C");
    ZEP::Sample sample;
    sample.setCarId(7);
    Q_EMIT emitter.sendConnected();
    Q_EMIT emitter.sendDisconnected();
    Q_EMIT emitter.sendNotConnected();
    Q_EMIT emitter.sendTelemetryLap(lap);
    Q_EMIT emitter.sendTelemetryLapHeader(header);
    Q_EMIT emitter.sendAvailableCarListChanged(info);
    Q_EMIT emitter.sendSample(sample);
    Q_EMIT emitter.sendMessage("text", -2);
    Q_EMIT emitter.sendProgress(50);
    QCOMPARE(received,
             (QStringList{"connected", "disconnected", "not connected", "lap A", "header B",
                          "cars C", "sample 7", "text-2", "progress 50"}));
}

NAPAMMUL_TEST(tst_ZepDataEmitter)

#include "tst_zepdataemitter.moc"
