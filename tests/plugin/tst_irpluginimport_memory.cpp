// What an import takes of memory, and what it does when there is none: every allocation of this
// program, and of the plug-in in it, goes through the functions below.

#include "fuzz/hostile.h"
#include "tests/support/importfixture.h"
#include "tools/recording.h"

#include <QTest>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <limits>

#include <malloc.h>

namespace {

constexpr int Megabyte = 1024 * 1024;
constexpr qint64 Never = std::numeric_limits<qint64>::max();

std::atomic<qint64> blocks{0}; ///< that are not given back yet
std::atomic<qint64> bytes{0}; ///< in these blocks
std::atomic<qint64> peak{0}; ///< the most bytes since it was set
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

void *taken(void *block)
{
    if (block) {
        ++blocks;
        bytes += qint64(malloc_usable_size(block));
        peak = std::max<qint64>(peak, bytes);
    }
    return block;
}

void given(void *block)
{
    if (!block)
        return;
    --blocks;
    bytes -= qint64(malloc_usable_size(block));
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
    return taken(isExhausted() ? nullptr : __libc_malloc(size));
}

void *calloc(std::size_t count, std::size_t size)
{
    return taken(isExhausted() ? nullptr : __libc_calloc(count, size));
}

void *realloc(void *block, std::size_t size)
{
    if (isExhausted())
        return nullptr;
    given(block);
    void *moved = __libc_realloc(block, size);
    if (!moved && size > 0)
        taken(block); // it stays where it was
    return taken(moved);
}

void free(void *block)
{
    given(block);
    __libc_free(block);
}
}

namespace {

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
                             "short laps behind a long one", "variables laid over each other"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_IrPluginImportMemory::refusedRecordingTakesLittle()
{
    QFETCH(QByteArray, kind);

    const QString fileName = m_fixture.write(hostileKind(kind.constData()).make(24 * Megabyte));
    const qint64 before = bytes;
    peak = before;
    QVERIFY(m_fixture.importFile(fileName).laps.empty());
    const qint64 took = peak - before;
    QVERIFY(took > 0);
    QVERIFY2(took < 64 * Megabyte, qPrintable(QString::number(took / Megabyte) % " MB"));
}

/// They share the named values of the session.
void tst_IrPluginImportMemory::lapsTakeLittleBesideTheirSamples()
{
    const HostileKind kind = hostileKind("a lap every other tick of long records");
    const QString fileName = m_fixture.write(kind.make(24 * Megabyte));
    const qint64 before = bytes;
    peak = before;
    const ImportResult result = m_fixture.importFile(fileName);
    const auto laps = qint64(result.laps.size());
    QVERIFY(laps > 100000);
    const qint64 took = peak - before;
    QVERIFY(took > laps * qint64(sizeof(ZEP::Lap)));
    QVERIFY2(took < laps * 2048, qPrintable(QStringLiteral("%1 bytes a lap").arg(took / laps)));
}

QTEST_GUILESS_MAIN(tst_IrPluginImportMemory)
#include "tst_irpluginimport_memory.moc"
