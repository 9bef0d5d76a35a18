// Whatever the file, an import returns: with laps, or with one known message and without laps. It
// leaves no file open, and the next import does not notice.

#include "fuzz/hostile.h"
#include "fuzz/memoryfile.h"
#include "fuzz/promises.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QDataStream>
#include <QTest>

#include <atomic>
#include <cstddef>
#include <cstring>
#include <limits>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Small enough to import thousands of variants of it: a start, a lap, the start of another.
Recording smallRecording()
{
    Recording recording = Recording::empty();
    recording.sessionInfo("---\nDriverInfo:\n DriverCarIdx: 0\n Drivers:\n - CarIdx: 0\n"
                          "   UserName: Ann\n...\n");
    recording.variables({{"IsOnTrack", irsdk_bool},
                         {"Lap", irsdk_int},
                         {"LapDistPct", irsdk_float, "%"},
                         {"LapCurrentLapTime", irsdk_float, "s"},
                         {"Names", irsdk_char, "", "", 3}});
    recording.set("IsOnTrack", 1).set("Lap", 1);
    return recording.ticks(7, [](Recording &r, int tick) {
        r.set("LapDistPct", 0.1 * tick).set("LapCurrentLapTime", tick == 4 ? 0.5 : 10.0 + tick);
    });
}

/// Everything about the laps that is the same in every import.
QByteArray fingerprint(const ImportResult &result)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    for (const auto &lap : result.laps) {
        stream << lap->getDriverName() << lap->getLapTime() << lap->getLapInStint()
               << lap->getStintInSession() << lap->getLapInSession() << lap->getCompleted();
        for (const QString &name : lap->valueNameList())
            stream << name << lap->value(name).print();
        for (const QString &name : lap->getAvailableChannels())
            stream << name << lap->channel(name)->unit() << lap->channel(name)->data;
    }
    return bytes;
}

/// The numbers that are likely to be wrong for a field of \a header that says \a now.
QVector<qint32> badNumbers(const irsdk_header &header, qint32 now, int fileSize)
{
    QVector<qint32> numbers = {-1,
                               0,
                               1,
                               std::numeric_limits<qint32>::min(),
                               std::numeric_limits<qint32>::max(),
                               std::numeric_limits<qint32>::max() / Recording::VariableSize + 1};
    const int tableEnd = header.varHeaderOffset + header.numVars * Recording::VariableSize;
    const int textEnd = header.sessionInfoOffset + header.sessionInfoLen;
    for (const int boundary : {now, int(Recording::HeaderSize), tableEnd, textEnd,
                               fileSize - Recording::VariableSize, fileSize})
        numbers << boundary - 1 << boundary << boundary + 1;
    return numbers;
}

} // namespace

class tst_DamagedRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyTruncation();
    void everyNumberOfTheHeaders();
    void pairsOfNumbers();
    void everyByteFlipped();
    void everyNumberOfTheTable();
    void noRegularFile_data();
    void noRegularFile();
    void unreadableFile();
    void fileThatShrinks();
    void hostileRecording_data();
    void hostileRecording();
    void countedRecordingIsReadWhole();
    void droppedLapThatIsCountedLeavesTheOthers();
    void recordingOutOfProportionIsRefused_data();
    void recordingOutOfProportionIsRefused();

private:
    QString problem(const QByteArray &bytes);
    QString problemAfter(const QString &fileName);

    ImportFixture m_fixture;
    const Recording m_recording = smallRecording();
    const QByteArray m_good = m_recording.bytes();
    QString m_goodFile;
    QByteArray m_goodLaps;
    QTemporaryDir m_folder;
    MemoryFile m_file;
};

void tst_DamagedRecording::initTestCase()
{
    QVERIFY(m_fixture.isLoaded());
    m_goodFile = m_folder.filePath(QStringLiteral("good.ibt"));
    QVERIFY(m_recording.write(m_goodFile));
    const ImportResult good = m_fixture.importFile(m_goodFile);
    QCOMPARE(brokenPromise(good, m_goodFile), QString());
    QCOMPARE(int(good.laps.size()), 2);
    QCOMPARE(good.laps.front()->size(), 4);
    m_goodLaps = fingerprint(good);
}

/// Imports a file, and the good one after it. Empty if all is well.
QString tst_DamagedRecording::problemAfter(const QString &fileName)
{
    const int free = ::dup(STDERR_FILENO);
    ::close(free);
    const QString broken = brokenPromise(m_fixture.importFile(fileName), fileName);
    const int freeAfter = ::dup(STDERR_FILENO);
    ::close(freeAfter);
    if (!broken.isEmpty())
        return broken;
    if (freeAfter != free)
        return QStringLiteral("a file was left open");
    if (fingerprint(m_fixture.importFile(m_goodFile)) != m_goodLaps)
        return QStringLiteral("the next import differs");
    return QString();
}

QString tst_DamagedRecording::problem(const QByteArray &bytes)
{
    if (!m_file.write(bytes.constData(), std::size_t(bytes.size())))
        return QStringLiteral("the file cannot be written");
    return problemAfter(m_file.name());
}

void tst_DamagedRecording::everyTruncation()
{
    for (int size = 0; size <= m_good.size(); ++size) {
        const QString found = problem(m_good.left(size));
        QVERIFY2(found.isEmpty(), qPrintable(QStringLiteral("%1 bytes: ").arg(size) % found));
    }
}

void tst_DamagedRecording::everyNumberOfTheHeaders()
{
    const int end = Recording::HeaderSize + Recording::SubHeaderSize;
    for (int offset = 0; offset < end; offset += 4) {
        qint32 now;
        std::memcpy(&now, m_good.constData() + offset, sizeof now);
        for (const qint32 number : badNumbers(m_recording.header(), now, m_good.size())) {
            QByteArray bytes = m_good;
            std::memcpy(bytes.data() + offset, &number, sizeof number);
            const QString found = problem(bytes);
            QVERIFY2(found.isEmpty(),
                     qPrintable(QStringLiteral("%1 at %2: ").arg(number).arg(offset) % found));
        }
    }
}

/// Of those that tell where something lies.
void tst_DamagedRecording::pairsOfNumbers()
{
    struct Place {
        int offset;
        QVector<qint32> numbers;
    };
    QVector<Place> places;
    for (const std::size_t offset :
         {offsetof(irsdk_header, sessionInfoLen), offsetof(irsdk_header, sessionInfoOffset),
          offsetof(irsdk_header, numVars), offsetof(irsdk_header, varHeaderOffset),
          offsetof(irsdk_header, bufLen),
          offsetof(irsdk_header, varBuf) + offsetof(irsdk_varBuf, bufOffset)}) {
        qint32 now;
        std::memcpy(&now, m_good.constData() + offset, sizeof now);
        places.append({int(offset), badNumbers(m_recording.header(), now, m_good.size())});
    }
    QByteArray bytes = m_good;
    const auto spoil = [&bytes](const Place &place, qint32 number) {
        std::memcpy(bytes.data() + place.offset, &number, sizeof number);
    };
    for (int first = 0; first < places.size(); ++first) {
        for (int second = first + 1; second < places.size(); ++second) {
            for (const qint32 one : places.at(first).numbers) {
                for (const qint32 other : places.at(second).numbers) {
                    bytes = m_good;
                    spoil(places.at(first), one);
                    spoil(places.at(second), other);
                    const QString found = problem(bytes);
                    QVERIFY2(found.isEmpty(),
                             qPrintable(QStringLiteral("%1 at %2, %3 at %4: ")
                                            .arg(one)
                                            .arg(places.at(first).offset)
                                            .arg(other)
                                            .arg(places.at(second).offset)
                                        % found));
                }
            }
        }
    }
}

void tst_DamagedRecording::everyByteFlipped()
{
    const irsdk_header header = m_recording.header();
    const int end = header.varHeaderOffset + header.numVars * Recording::VariableSize;
    for (int offset = 0; offset < end; ++offset) {
        for (const int bits : {0xff, 0x80, 0x01}) {
            QByteArray bytes = m_good;
            bytes[offset] = static_cast<char>(bytes.at(offset) ^ bits);
            const QString found = problem(bytes);
            QVERIFY2(found.isEmpty(),
                     qPrintable(QStringLiteral("byte %1 ^ %2: ").arg(offset).arg(bits) % found));
        }
    }
}

void tst_DamagedRecording::everyNumberOfTheTable()
{
    const qint32 recordSize = m_recording.recordSize();
    const QVector<qint32> numbers = {-1,
                                     0,
                                     1,
                                     2,
                                     3,
                                     4,
                                     5,
                                     6,
                                     7,
                                     -recordSize,
                                     recordSize - 4,
                                     recordSize - 1,
                                     recordSize,
                                     recordSize + 1,
                                     1000000,
                                     std::numeric_limits<qint32>::min(),
                                     std::numeric_limits<qint32>::min() + 1,
                                     std::numeric_limits<qint32>::max() - 7,
                                     std::numeric_limits<qint32>::max()};
    for (const char *name : {"IsOnTrack", "Lap", "LapDistPct", "LapCurrentLapTime", "Names"}) {
        for (const auto field :
             {&irsdk_varHeader::type, &irsdk_varHeader::offset, &irsdk_varHeader::count}) {
            for (const qint32 number : numbers) {
                const QString found =
                    problem(m_recording.withVariable(name, field, number).bytes());
                QVERIFY2(
                    found.isEmpty(),
                    qPrintable(QStringLiteral("%1 in %2: ").arg(number).arg(QLatin1String(name))
                               % found));
            }
        }
    }
}

void tst_DamagedRecording::noRegularFile_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("error");
    const QString cannotOpen = QStringLiteral("Can't open file ");
    const QString noHeader = QStringLiteral("IBT import error:  Error reading irsdk_header");

    const QString missing = m_folder.filePath(QStringLiteral("missing.ibt"));
    QTest::newRow("missing") << missing << QString(cannotOpen % missing);
    QTest::newRow("no name") << QString() << cannotOpen;
    QTest::newRow("folder") << m_folder.path() << noHeader;
    const QString empty = m_folder.filePath(QStringLiteral("empty.ibt"));
    QVERIFY(QFile(empty).open(QIODevice::WriteOnly));
    QTest::newRow("empty") << empty << noHeader;

    // Nobody writes into the pipe: whoever opens or reads it waits for ever.
    const QString pipe = m_folder.filePath(QStringLiteral("pipe.ibt"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QTest::newRow("pipe") << pipe << QString(cannotOpen % pipe);
    const QString link = m_folder.filePath(QStringLiteral("link.ibt"));
    QVERIFY(QFile::link(pipe, link));
    QTest::newRow("link to a pipe") << link << QString(cannotOpen % link);
    const QString loop = m_folder.filePath(QStringLiteral("loop.ibt"));
    QVERIFY(QFile::link(loop, loop));
    QTest::newRow("link to itself") << loop << QString(cannotOpen % loop);
    for (const char *device : {"/dev/zero", "/dev/null", "/dev/tty"})
        QTest::newRow(device) << QString::fromLatin1(device)
                              << QString(cannotOpen % QLatin1String(device));
}

void tst_DamagedRecording::noRegularFile()
{
    QFETCH(QString, fileName);
    QFETCH(QString, error);

    QCOMPARE(problemAfter(fileName), QString());
    const ImportResult result = m_fixture.importFile(fileName);
    QCOMPARE(result.messages.last().text, QString(QLatin1String(ImportFixture::Prefix) % error));
}

void tst_DamagedRecording::unreadableFile()
{
    const QString fileName = m_folder.filePath(QStringLiteral("unreadable.ibt"));
    QVERIFY(m_recording.write(fileName));
    QVERIFY(QFile::setPermissions(fileName, {}));

    QCOMPARE(problemAfter(fileName), QString());
    // The superuser reads it all the same.
    const bool isReadable = ::access(QFile::encodeName(fileName).constData(), R_OK) == 0;
    QCOMPARE(m_fixture.importFile(fileName).laps.size(), std::size_t(isReadable ? 2 : 0));
}

void tst_DamagedRecording::fileThatShrinks()
{
    Recording longer = m_recording;
    const QString fileName = m_fixture.write(longer.ticks(100000).bytes());
    const QByteArray name = QFile::encodeName(fileName);
    const off_t whole = QFileInfo(fileName).size();

    std::atomic_bool isDone{false};
    std::thread writer([&] {
        for (off_t size = 0; !isDone; size = (size + 7919) % whole) {
            if (::truncate(name.constData(), size) != 0)
                return;
            std::this_thread::yield();
        }
    });
    QString found;
    for (int i = 0; i < 100 && found.isEmpty(); ++i)
        found = brokenPromise(m_fixture.importFile(fileName), fileName);
    isDone = true;
    writer.join();
    QCOMPARE(found, QString());
}

void tst_DamagedRecording::hostileRecording_data()
{
    QTest::addColumn<int>("kind");
    for (int kind = 0; kind < hostileKinds().size(); ++kind)
        QTest::newRow(hostileKinds().at(kind).name) << kind;
}

void tst_DamagedRecording::hostileRecording()
{
    QFETCH(int, kind);

    constexpr int Bytes = 64 * 1024;
    const HostileKind &hostile = hostileKinds().at(kind);
    const QString fileName = m_fixture.write(hostile.make(Bytes));
    QCOMPARE(problemAfter(fileName), QString());
    const ImportResult result = m_fixture.importFile(fileName);
    QCOMPARE(result.laps.empty(), hostile.isRefused);
    if (hostile.makesLaps)
        QVERIFY(result.laps.size() > 2);
}

/// A recording out of proportion, and the same ticks in records long enough for it: the first one
/// is counted, and read whole since it stays small.
void tst_DamagedRecording::countedRecordingIsReadWhole()
{
    constexpr int ticks = 25000;
    const ImportResult counted =
        m_fixture.importBytes(hostileKind("a lap every other tick").make(13 * ticks));
    const ImportResult uncounted = m_fixture.importBytes(
        hostileKind("a lap every other tick of long records").make(64 * ticks));
    QVERIFY(counted.laps.size() > 12000);
    QCOMPARE(counted.laps.size(), uncounted.laps.size());
    QVERIFY(fingerprint(counted) == fingerprint(uncounted));
}

/// A lap that a new stint drops takes its bytes until then, but those of what is left are few.
void tst_DamagedRecording::droppedLapThatIsCountedLeavesTheOthers()
{
    const auto recorded = [this](int ticks) {
        Recording recording;
        for (int i = 0; i < 500; ++i)
            recording.variable({"V" + QByteArray::number(i), irsdk_double, "", "", 1, 0});
        recording.set("IsOnTrack", 1).set("LapDistPct", 0.5).ticks(ticks);
        recording.set("OnPitRoad", 1).ticks(5);
        recording.set("OnPitRoad", 0).ticks(200);
        return m_fixture.importBytes(recording.bytes());
    };
    const ImportResult uncounted = recorded(1000);
    const ImportResult counted = recorded(10000); // 41 MB by the rule
    QCOMPARE(uncounted.laps.size(), std::size_t(1));
    QVERIFY(uncounted.laps.front()->size() > 100);
    QCOMPARE(counted.laps.size(), uncounted.laps.size());
    QCOMPARE(counted.laps.front()->size(), uncounted.laps.front()->size());
}

void tst_DamagedRecording::recordingOutOfProportionIsRefused_data()
{
    QTest::addColumn<int>("bytes");
    QTest::addColumn<bool>("isRefused");
    // Of records of 13 bytes every two make a lap of 5 channels, 3368 bytes by the rule.
    QTest::newRow("up to 256 MB") << 2 * 13 * 79000 << false;
    QTest::newRow("above") << 2 * 13 * 80000 << true;
}

void tst_DamagedRecording::recordingOutOfProportionIsRefused()
{
    QFETCH(int, bytes);
    QFETCH(bool, isRefused);

    const QString fileName = m_fixture.write(hostileKind("a lap every other tick").make(bytes));
    const ImportResult result = m_fixture.importFile(fileName);
    QCOMPARE(brokenPromise(result, fileName), QString());
    QCOMPARE(result.laps.empty(), isRefused);
}

NAPAMMUL_TEST(tst_DamagedRecording)
#include "tst_damagedrecording.moc"
