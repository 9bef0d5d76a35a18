// The plug-in as its host meets it: loaded, asked for its names, told to import.

#include "tests/support/importfixture.h"
#include "tests/support/processlimit.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QDir>
#include <QJsonObject>
#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

namespace {

const QString PluginName = QStringLiteral("ZEP iRacing ibt import plugin");
const QString InterfaceId = QStringLiteral(ZEP_IID_PREFIX ".ZepPluginInterfaceImport/0.2");

QString prefixed(const QString &text)
{
    return QLatin1String(ImportFixture::Prefix) % text;
}

/// A practice: garage, pit lane, a stint of \a laps laps of one second each and the start of
/// another.
Recording practice(int laps)
{
    Recording recording;
    recording.set("IsOnTrack", false).set("LapDistPct", 0.95).ticks(5);
    recording.set("IsOnTrack", true).set("OnPitRoad", true).ticks(5);
    recording.set("OnPitRoad", false);
    for (int lap = 0; lap <= laps; ++lap) {
        recording.set("Lap", lap + 1);
        recording.ticks(lap < laps ? 60 : 30, [lap](Recording &r, int tick) {
            r.set("LapDistPct", lap == 0 ? 0.2 + tick * 0.0133 : tick / 60.0);
            r.set("LapCurrentLapTime", 0.5 + tick * 0.2);
            r.set("LapLastLapTime", lap < 2 ? -1.0 : 12.0 + lap);
        });
    }
    return recording;
}

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}

} // namespace

class tst_iRPluginImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void namesAndFormats();
    void metaDataHasIdentifierClassNameAndNothingElse();
    void castsAnswerBothNames();
    void oneObjectPerProcessAndANewOneAfterItWasDeleted();
    void exportsNothingButItsEntries();

    void goodFileIsReportedInOrder();
    void everyLapIsStampedWithSourceAndPlugin();
    void optionsHaveNoEffect();
    void importsAreIndependent();
    void lapsOfAPractice();

    void failure_data();
    void failure();
    void missingFileIsNamed();
    void directoryHasNoHeader();
    void formatMustMatchInCase();
    void noRecordsMakeOneEmptyLap_data();
    void noRecordsMakeOneEmptyLap();
    void partialLastRecordIsDropped();
    void noDescriptorStaysOpen();
    void saysAnErrorBeforeAndSuccessAfterTheFileIsClosed_data();
    void saysAnErrorBeforeAndSuccessAfterTheFileIsClosed();

private:
    ImportFixture m_host;
};

void tst_iRPluginImport::initTestCase()
{
    QVERIFY2(m_host.isLoaded(), qPrintable(m_host.loader()->errorString()));
}

void tst_iRPluginImport::namesAndFormats()
{
    QCOMPARE(m_host.plugin()->pluginName(), PluginName);
    QCOMPARE(m_host.plugin()->sourceName(), QStringLiteral("iRacing"));
    QCOMPARE(m_host.plugin()->pluginVersion(), QStringLiteral("0.2"));
    QCOMPARE(m_host.plugin()->availableImportFormats(),
             QStringList{QStringLiteral("iRacing binary telemetry (*.ibt)")});
}

void tst_iRPluginImport::metaDataHasIdentifierClassNameAndNothingElse()
{
    const QJsonObject metaData = m_host.loader()->metaData();
    QCOMPARE(metaData.value(QStringLiteral("IID")).toString(), InterfaceId);
    QCOMPARE(metaData.value(QStringLiteral("className")).toString(),
             QStringLiteral("iRPluginImport"));
    QVERIFY(metaData.value(QStringLiteral("MetaData")).toObject().isEmpty());
    QCOMPARE(metaData.value(QStringLiteral("version")).toInt(), 0x050f00);
#ifdef NAPAMMUL_RELEASE_BUILD
    QCOMPARE(metaData.value(QStringLiteral("debug")), QJsonValue(false));
#endif
    // Bits of the processor that the plug-in asks for, behind the debug bit.
    QCOMPARE(metaData.value(QStringLiteral("archreq")).toInt() & ~1, 0);
}

void tst_iRPluginImport::castsAnswerBothNames()
{
    QObject *object = m_host.loader()->instance();
    void *interface = m_host.plugin();
    QCOMPARE(object->qt_metacast("iRPluginImport"), static_cast<void *>(object));
    QCOMPARE(object->qt_metacast("ZepPluginInterfaceImport"), interface);
    QCOMPARE(object->qt_metacast(InterfaceId.toLatin1().constData()), interface);
    QCOMPARE(object->qt_metacast("QObject"), static_cast<void *>(object));
    QVERIFY(!object->qt_metacast("ZepPluginInterfaceLive"));

    const QMetaObject *meta = object->metaObject();
    QCOMPARE(QByteArray(meta->className()), QByteArray("iRPluginImport"));
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
}

void tst_iRPluginImport::oneObjectPerProcessAndANewOneAfterItWasDeleted()
{
    QPluginLoader loader(QStringLiteral(NAPAMMUL_PLUGIN_PATH));
    QLibrary library(QStringLiteral(NAPAMMUL_PLUGIN_PATH));
    const auto instance =
        reinterpret_cast<QtPluginInstanceFunction>(library.resolve("qt_plugin_instance"));
    QVERIFY(instance);

    QObject *first = instance();
    QCOMPARE(instance(), first);
    QCOMPARE(loader.instance(), first);
    QVERIFY(!first->parent());

    const QPointer<QObject> guard(first);
    delete first;
    QVERIFY(guard.isNull());
    const QPointer<QObject> second(instance());
    QVERIFY(!second.isNull());
    QCOMPARE(instance(), second.data());
    QVERIFY(qobject_cast<ZepPluginInterfaceImport *>(second.data()));

    // The fixture holds the interface of the object that is gone.
    m_host.reload();
    QVERIFY(m_host.isLoaded());
}

void tst_iRPluginImport::exportsNothingButItsEntries()
{
    QProcess nm;
    nm.start(QStringLiteral("nm"),
             {QStringLiteral("-D"), QStringLiteral("--defined-only"), QStringLiteral("--demangle"),
              QStringLiteral(NAPAMMUL_PLUGIN_PATH)});
    QVERIFY(nm.waitForFinished(ProcessLimit));
    QCOMPARE(nm.exitCode(), 0);
    QStringList symbols;
    for (const QByteArray &line : nm.readAllStandardOutput().split('\n')) {
        // An address, a kind and the name.
        if (!line.isEmpty())
            symbols.append(QString::fromLatin1(line.mid(line.indexOf(' ') + 3)));
    }
    symbols.removeDuplicates();
    symbols.sort();

    QFile list(QFINDTESTDATA("../data/exported-symbols.txt"));
    QVERIFY(list.open(QIODevice::ReadOnly));
    QStringList expected =
        QString::fromLatin1(list.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    expected.sort();
    QCOMPARE(symbols, expected);
}

void tst_iRPluginImport::goodFileIsReportedInOrder()
{
    const QString fileName = m_host.write(practice(3).bytes());
    const ImportResult result = m_host.importFile(fileName);

    QCOMPARE(result.messages.size(), 3);
    QCOMPARE(result.messages.at(0).text,
             prefixed(QLatin1String("Importing file ") % fileName % QLatin1String(" ...")));
    QCOMPARE(result.messages.at(1).text,
             prefixed(QStringLiteral("Using format iRacing binary telemetry (*.ibt)")));
    const QRegularExpression done(QStringLiteral("^Done in \\d+ ms; Laps readed 4$"));
    QVERIFY(result.messages.at(2).text.startsWith(QLatin1String(ImportFixture::Prefix)));
    const QString text = result.messages.at(2).text.mid(int(qstrlen(ImportFixture::Prefix)));
    QVERIFY2(done.match(text).hasMatch(), qPrintable(text));
    for (const SentMessage &message : result.messages)
        QCOMPARE(message.level, 0);
}

void tst_iRPluginImport::everyLapIsStampedWithSourceAndPlugin()
{
    const ImportResult result = m_host.importBytes(practice(3).bytes());
    QCOMPARE(result.laps.size(), std::size_t(4));
    for (const auto &lap : result.laps) {
        QCOMPARE(lap->getSource(), QStringLiteral("iRacing"));
        QCOMPARE(lap->getPlugin(), PluginName);
    }
}

void tst_iRPluginImport::optionsHaveNoEffect()
{
    const QString fileName = m_host.write(practice(2).bytes());
    const QVector<ZEP::Lap *> laps = m_host.plugin()->import(
        fileName, QLatin1String(ImportFixture::Format),
        {{QStringLiteral("laps"), 1}, {QStringLiteral("format"), QStringLiteral("csv")}});
    QCOMPARE(laps.size(), 3);
    qDeleteAll(laps);
}

void tst_iRPluginImport::importsAreIndependent()
{
    const QByteArray bytes = practice(2).bytes();
    const ImportResult first = m_host.importBytes(bytes);
    m_host.importBytes(bytes.left(100));
    const ImportResult second = m_host.importBytes(bytes);

    QCOMPARE(second.laps.size(), first.laps.size());
    for (std::size_t i = 0; i < first.laps.size(); ++i) {
        QCOMPARE(second.laps[i]->getAvailableChannels(), first.laps[i]->getAvailableChannels());
        QCOMPARE(second.laps[i]->size(), first.laps[i]->size());
        QVERIFY(second.laps[i]->getLapId() != first.laps[i]->getLapId());
    }
}

void tst_iRPluginImport::lapsOfAPractice()
{
    const ImportResult result = m_host.importBytes(practice(3).bytes());
    QCOMPARE(result.laps.size(), std::size_t(4));

    const auto &outLap = result.laps[0];
    QCOMPARE(outLap->getLapType(), ZEP::LapTypeOutLap);
    QCOMPARE(outLap->getLapTime(), QTime(0, 59, 59));
    QCOMPARE(outLap->getCompleted(), true);
    QCOMPARE(outLap->size(), 60);

    const auto &timed = result.laps[2];
    QCOMPARE(timed->getLapType(), ZEP::LapTypeTimed);
    QCOMPARE(timed->getLapTime(), QTime(0, 0, 15));
    QCOMPARE(timed->getCompleted(), true);
    QCOMPARE(timed->getLapInSession(), 2);
    QCOMPARE(timed->getLapInStint(), 2);
    QCOMPARE(timed->getStintInSession(), 1);
    QCOMPARE(timed->getStintId(), outLap->getStintId());
    // The tick that closed the lap before is in no lap.
    QCOMPARE(timed->size(), 59);
    QCOMPARE(timed->channel(QStringLiteral("lapdistpct"))->sample(0), double(float(1 / 60.0)));

    const auto &unfinished = result.laps[3];
    QCOMPARE(unfinished->getCompleted(), false);
    QCOMPARE(unfinished->getLapTime(), QTime(0, 59, 59));
    QCOMPARE(unfinished->size(), 29);
}

void tst_iRPluginImport::failure_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");

    const QString headerError = QStringLiteral("IBT import error:  Error reading irsdk_header");
    const QString subHeaderError =
        QStringLiteral("IBT import error:  Error reading irsdk_diskSubHeader");
    const QString textError = QStringLiteral("IBT import error:  Failed to read sessionInfoString");
    const QString tableError = QStringLiteral("IBT import error:  Failed to read irsdk_varHeader");

    const Recording good = practice(1);
    const QByteArray whole = good.bytes();
    const int size = whole.size();

    QTest::newRow("empty file") << QByteArray() << headerError;
    QTest::newRow("header one byte short") << whole.left(111) << headerError;
    QTest::newRow("header only") << whole.left(112) << subHeaderError;
    QTest::newRow("sub-header one byte short") << whole.left(143) << subHeaderError;
    QTest::newRow("headers only") << whole.left(144) << textError;

    QTest::newRow("text length negative")
        << good.with(&irsdk_header::sessionInfoLen, -1).bytes() << textError;
    QTest::newRow("text length smallest")
        << good.with(&irsdk_header::sessionInfoLen, INT_MIN).bytes() << textError;
    QTest::newRow("text length beyond the file")
        << good.with(&irsdk_header::sessionInfoLen, size).bytes() << textError;
    QTest::newRow("text length greatest")
        << good.with(&irsdk_header::sessionInfoLen, INT_MAX).bytes() << textError;
    QTest::newRow("text offset negative")
        << good.with(&irsdk_header::sessionInfoOffset, -1).bytes() << textError;
    QTest::newRow("text offset beyond the file")
        << good.with(&irsdk_header::sessionInfoOffset, size + 1).bytes() << textError;
    QTest::newRow("empty text at a negative offset")
        << good.with(&irsdk_header::sessionInfoLen, 0)
               .with(&irsdk_header::sessionInfoOffset, -1)
               .bytes()
        << textError;

    QTest::newRow("variable count negative")
        << good.with(&irsdk_header::numVars, -1).bytes() << tableError;
    QTest::newRow("variable count greatest")
        << good.with(&irsdk_header::numVars, INT_MAX).bytes() << tableError;
    QTest::newRow("table offset negative")
        << good.with(&irsdk_header::varHeaderOffset, INT_MIN).bytes() << tableError;
    QTest::newRow("table not wholly in the file")
        << good.with(&irsdk_header::varHeaderOffset, size - 143).bytes() << tableError;
}

void tst_iRPluginImport::failure()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);

    const ImportResult result = m_host.importBytes(bytes);
    QVERIFY(result.laps.empty());
    QCOMPARE(result.messages.size(), 3);
    QCOMPARE(result.messages.at(0).level, 0);
    QCOMPARE(result.messages.at(1).level, 0);
    QCOMPARE(result.messages.at(2).text, prefixed(error));
    QCOMPARE(result.messages.at(2).level, -2);
}

void tst_iRPluginImport::missingFileIsNamed()
{
    const QString fileName = QStringLiteral("/no/such/folder/r\u00e9cord.ibt");
    const ImportResult result = m_host.importFile(fileName);
    QVERIFY(result.laps.empty());
    QCOMPARE(result.messages.size(), 3);
    QCOMPARE(result.messages.at(2).text, prefixed(QLatin1String("Can't open file ") % fileName));
    QCOMPARE(result.messages.at(2).level, -2);
}

void tst_iRPluginImport::directoryHasNoHeader()
{
    const ImportResult result = m_host.importFile(QDir::tempPath());
    QVERIFY(result.laps.empty());
    QCOMPARE(result.messages.last().text,
             prefixed(QStringLiteral("IBT import error:  Error reading irsdk_header")));
}

void tst_iRPluginImport::formatMustMatchInCase()
{
    const QString fileName = m_host.write(practice(1).bytes());
    const QString format = QStringLiteral("iRacing Binary Telemetry (*.ibt)");
    const ImportResult result = m_host.importFile(fileName, format);
    QVERIFY(result.laps.empty());
    QCOMPARE(result.messages.size(), 3);
    QCOMPARE(result.messages.at(1).text, prefixed(QLatin1String("Using format ") % format));
    QCOMPARE(result.messages.at(2).text, prefixed(QStringLiteral("Unknown format")));
    QCOMPARE(result.messages.at(2).level, -2);
}

void tst_iRPluginImport::noRecordsMakeOneEmptyLap_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const Recording good = practice(1);
    const int size = good.bytes().size();
    QTest::newRow("none in the file") << Recording().bytes();
    QTest::newRow("first record cut off")
        << good.bytes().left(good.sectionOffset(Recording::Records) + good.recordSize() - 1);
    QTest::newRow("record size zero") << good.with(&irsdk_header::bufLen, 0).bytes();
    QTest::newRow("record size negative") << good.with(&irsdk_header::bufLen, -1).bytes();
    QTest::newRow("record size beyond the file")
        << good.with(&irsdk_header::bufLen, INT_MAX).bytes();
    QTest::newRow("records at a negative offset") << good.withRecordsAt(-1).bytes();
    QTest::newRow("records beyond the file") << good.withRecordsAt(size + 1).bytes();
    QTest::newRow("no player's car in the cars")
        << Recording(good).sessionInfo(Recording::plainSessionInfo("Practice", 64)).bytes();
    QTest::newRow("no session info") << good.with(&irsdk_header::sessionInfoLen, 0).bytes();
    QTest::newRow("only a garage") << Recording().set("IsOnTrack", false).ticks(100).bytes();
}

void tst_iRPluginImport::noRecordsMakeOneEmptyLap()
{
    QFETCH(QByteArray, bytes);

    const ImportResult result = m_host.importBytes(bytes);
    QCOMPARE(result.laps.size(), std::size_t(1));
    QVERIFY(result.laps.front()->isEmpty());
    QCOMPARE(result.laps.front()->getCompleted(), false);
    QCOMPARE(result.laps.front()->getSource(), QStringLiteral("iRacing"));
    QVERIFY(result.messages.last().text.endsWith(QLatin1String(" ms; Laps readed 1")));
}

void tst_iRPluginImport::partialLastRecordIsDropped()
{
    const Recording good = practice(1);
    const ImportResult whole = m_host.importBytes(good.bytes());
    const ImportResult more =
        m_host.importBytes(good.bytes() + QByteArray(good.recordSize() - 1, 'x'));
    QCOMPARE(more.messages.size(), 3);
    QCOMPARE(more.laps.size(), whole.laps.size());
    QCOMPARE(more.laps.back()->size(), whole.laps.back()->size());
}

void tst_iRPluginImport::noDescriptorStaysOpen()
{
    const QByteArray good = practice(1).bytes();
    const int before = openDescriptors();
    m_host.importBytes(good);
    for (int length : {0, 50, 120, 200, 1000})
        m_host.importBytes(good.left(length));
    QCOMPARE(openDescriptors(), before);
}

void tst_iRPluginImport::saysAnErrorBeforeAndSuccessAfterTheFileIsClosed_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("isOpen");
    const Recording good = practice(1);
    const int size = good.bytes().size();
    QTest::newRow("whole") << size << false;
    QTest::newRow("header cut") << Recording::HeaderSize - 1 << true;
    QTest::newRow("sub-header cut") << Recording::HeaderSize << true;
    QTest::newRow("text cut") << good.sectionOffset(Recording::Text) + 10 << true;
}

void tst_iRPluginImport::saysAnErrorBeforeAndSuccessAfterTheFileIsClosed()
{
    QFETCH(int, bytes);
    QFETCH(bool, isOpen);
    const QString fileName = m_host.write(practice(1).bytes().left(bytes));
    const int before = openDescriptors();
    QVector<int> opened; // at each message
    const auto connection =
        QObject::connect(m_host.plugin()->dataEmitter(), &ZepDataEmitter::sendMessage,
                         [&] { opened.append(openDescriptors() - before); });
    m_host.importFile(fileName);
    QObject::disconnect(connection);
    QCOMPARE(opened, QVector<int>({0, 0, isOpen ? 1 : 0}));
}

NAPAMMUL_TEST(tst_iRPluginImport)

#include "tst_irpluginimport.moc"
