// What an import takes of memory, and what it does when there is none: every allocation of this
// program, and of the plug-in in it, goes through the functions below.

#include "fuzz/hostile.h"
#include "tests/importfixture.h"
#include "tools/recording.h"

#include <QFile>
#include <QTest>

#include <atomic>
#include <cerrno>
#include <limits>

namespace {

constexpr int Megabyte = 1024 * 1024;
constexpr qint64 Never = std::numeric_limits<qint64>::max();

std::atomic<qint64> blocks{0}; ///< that are not given back yet
std::atomic<qint64> untilFailure{Never}; ///< allocations that still succeed
std::atomic<qint64> failures{0}; ///< that are left to come then

bool isExhausted()
{
    if (untilFailure == Never || --untilFailure >= 0)
        return false;
    if (--failures < 0)
        return false;
    errno = ENOMEM;
    return true;
}

} // namespace

// The C library offers its own functions by these names to those who replace them.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *block, std::size_t size);
void __libc_free(void *block);

void *malloc(std::size_t size)
{
    void *block = isExhausted() ? nullptr : __libc_malloc(size);
    blocks += block ? 1 : 0;
    return block;
}

void *calloc(std::size_t count, std::size_t size)
{
    void *block = isExhausted() ? nullptr : __libc_calloc(count, size);
    blocks += block ? 1 : 0;
    return block;
}

void *realloc(void *block, std::size_t size)
{
    void *moved = isExhausted() ? nullptr : __libc_realloc(block, size);
    blocks += moved && !block ? 1 : 0;
    return moved;
}

void free(void *block)
{
    blocks -= block ? 1 : 0;
    __libc_free(block);
}
}

namespace {

/// A line of this process's status, in bytes.
qint64 memoryStatus(const QByteArray &field)
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(field + ':'))
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
    }
    return 0;
}

/// From here on the peak counts anew.
bool resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    return file.open(QIODevice::WriteOnly) && file.write("5") == 1;
}

/// A start, two laps and part of a third, with fuel to derive a channel from.
Recording smallRecording()
{
    Recording recording = Recording::empty();
    recording.sessionInfo("---\nWeekendInfo:\n TrackName: testfield\nDriverInfo:\n"
                          " DriverCarIdx: 0\n DriverCarFuelKgPerLtr: 0.75\n Drivers:\n"
                          " - CarIdx: 0\n   UserName: Ann\n...\n");
    recording.variables({{"IsOnTrack", irsdk_bool},
                         {"Lap", irsdk_int},
                         {"LapDistPct", irsdk_float, "%"},
                         {"FuelLevel", irsdk_float, "l"},
                         {"LapCurrentLapTime", irsdk_float, "s"}});
    recording.set("IsOnTrack", 1).set("Lap", 1);
    return recording.ticks(12, [](Recording &r, int tick) {
        r.set("LapDistPct", 0.1 * tick).set("LapCurrentLapTime", tick % 4 ? 10.0 + tick : 0.5);
    });
}

} // namespace

class tst_IrPluginImportMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyAllocationMayFail_data();
    void everyAllocationMayFail();
    void refusedRecordingTakesLittle_data();
    void refusedRecordingTakesLittle();
    void lapsTakeLittleBesideTheirSamples();

private:
    ImportFixture m_fixture;
};

void tst_IrPluginImportMemory::everyAllocationMayFail_data()
{
    QTest::addColumn<qint64>("failing");
    QTest::newRow("one") << qint64(1);
    QTest::newRow("this and the next") << qint64(2);
    QTest::newRow("all from then on") << Never;
}

/// Nothing is thrown at the host, nothing leaks, and the next import does not notice.
void tst_IrPluginImportMemory::everyAllocationMayFail()
{
    QFETCH(qint64, failing);

    const QString fileName = m_fixture.write(smallRecording().bytes());
    const QString format = QLatin1String(ImportFixture::Format);
    const int laps = int(m_fixture.importFile(fileName).laps.size());
    QVERIFY(laps > 2);

    const qint64 before = blocks;
    int spoilt = 0;
    bool isWhole = false;
    for (qint64 allocations = 0; !isWhole; ++allocations) {
        failures = failing;
        untilFailure = allocations;
        QVector<ZEP::Lap *> result;
        bool isThrown = false;
        try {
            result = m_fixture.plugin()->import(fileName, format, {});
        } catch (...) {
            isThrown = true;
        }
        isWhole = untilFailure >= 0;
        untilFailure = Never;
        QVERIFY2(!isThrown, qPrintable(QStringLiteral("after %1").arg(allocations)));
        QVERIFY(result.isEmpty() || result.size() == laps);
        spoilt += result.isEmpty() ? 1 : 0;
        qDeleteAll(result);
        result = {};
        QCOMPARE(int(m_fixture.importFile(fileName).laps.size()), laps);
        QVERIFY2(blocks == before,
                 qPrintable(QStringLiteral("%1 blocks left after %2 allocations")
                                .arg(blocks - before)
                                .arg(allocations)));
    }
    QVERIFY(spoilt > 300);
}

void tst_IrPluginImportMemory::refusedRecordingTakesLittle_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *name : {"a lap every other tick", "a lap every other tick of many channels",
                             "variables laid over each other"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_IrPluginImportMemory::refusedRecordingTakesLittle()
{
    QFETCH(QByteArray, kind);

    const QString fileName = m_fixture.write(hostileKind(kind.constData()).make(24 * Megabyte));
    if (!resetPeak())
        QSKIP("the system does not tell the peak of one import");
    const qint64 before = memoryStatus("VmRSS");
    QVERIFY(before > 0);
    QVERIFY(m_fixture.importFile(fileName).laps.empty());
    const qint64 peak = memoryStatus("VmHWM") - before;
    QVERIFY2(peak < 64 * Megabyte, qPrintable(QString::number(peak / Megabyte) % " MB"));
}

/// They share the named values of the session.
void tst_IrPluginImportMemory::lapsTakeLittleBesideTheirSamples()
{
    const HostileKind kind = hostileKind("a lap every other tick of long records");
    const QString fileName = m_fixture.write(kind.make(24 * Megabyte));
    if (!resetPeak())
        QSKIP("the system does not tell the peak of one import");
    const qint64 before = memoryStatus("VmRSS");
    const ImportResult result = m_fixture.importFile(fileName);
    const auto laps = qint64(result.laps.size());
    QVERIFY(laps > 100000);
    const qint64 peak = memoryStatus("VmHWM") - before;
    QVERIFY2(peak < laps * 2048, qPrintable(QStringLiteral("%1 bytes a lap").arg(peak / laps)));
}

QTEST_GUILESS_MAIN(tst_IrPluginImportMemory)
#include "tst_irpluginimport_memory.moc"
