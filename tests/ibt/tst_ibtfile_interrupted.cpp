// Reading a recording while the system interrupts it, or fails.

#include "ibt/ibtfile.h"
#include "tools/recording.h"

#include <QByteArray>
#include <QTest>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

/// What fopen() opens.
struct Source {
    QByteArray bytes;
    long position = 0;
    long failsAt = -1; ///< position
    int error = 0; ///< errno then
    bool isOver = false; ///< it fails only once
};
Source source;

ssize_t readSource(void *, char *to, std::size_t count)
{
    if (source.position >= source.failsAt && source.failsAt >= 0 && !source.isOver) {
        source.isOver = source.error == EINTR;
        errno = source.error;
        return -1;
    }
    long end = source.position + long(count);
    if (source.position < source.failsAt)
        end = qMin(end, source.failsAt);
    const QByteArray part = source.bytes.mid(int(source.position), int(end - source.position));
    std::memcpy(to, part.constData(), std::size_t(part.size()));
    source.position += part.size();
    return part.size();
}

int seekSource(void *, off64_t *offset, int origin)
{
    const long base = origin == SEEK_SET ? 0
        : origin == SEEK_END             ? source.bytes.size()
                                         : source.position;
    source.position = base + long(*offset);
    *offset = source.position;
    return 0;
}

} // namespace

/// Takes the place of the C library's function in this program.
extern "C" std::FILE *fopen(const char *, const char *mode)
{
    return ::fopencookie(nullptr, mode, {readSource, nullptr, seekSource, nullptr});
}

class tst_IbtFileInterrupted : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
};

void tst_IbtFileInterrupted::reads_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("failsAt");
    QTest::addColumn<int>("records");
    const Recording recording = Recording().ticks(100);
    const int records = recording.sectionOffset(Recording::Records);
    const int size = recording.recordSize();
    QTest::newRow("whole") << 0 << -1 << 100;
    QTest::newRow("a signal in the header") << EINTR << 50 << 100;
    QTest::newRow("a signal in the text")
        << EINTR << recording.sectionOffset(Recording::Text) + 9 << 100;
    QTest::newRow("a signal among the records") << EINTR << records + 40 * size + 3 << 100;
    QTest::newRow("an error among the records") << EIO << records + 40 * size + 3 << 40;
    QTest::newRow("an error between two records") << ESTALE << records + 40 * size << 40;
}

void tst_IbtFileInterrupted::reads()
{
    QFETCH(int, error);
    QFETCH(int, failsAt);
    QFETCH(int, records);

    source = Source{Recording().ticks(100).bytes(), 0, failsAt, error, false};
    IbtFile file("any");
    QVERIFY(file.isOpen());
    QVERIFY(file.readHeader() && file.readDiskSubHeader());
    QVERIFY(file.readSessionInfo() && file.readVarHeaders());
    int count = 0;
    while (file.nextRecord())
        ++count;
    QCOMPARE(count, records);
    QCOMPARE(file.hasReadError(), records < 100);
}

QTEST_GUILESS_MAIN(tst_IbtFileInterrupted)
#include "tst_ibtfile_interrupted.moc"
