// What an inspection says of a file that the system does not read to its end.

#include "inspect/recordinginspection.h"
#include "tests/support/importfixture.h"
#include "tools/recording.h"

#include <QTest>

#include <cstdio>
#include <limits>

#include <dlfcn.h>

namespace {

constexpr long Everything = std::numeric_limits<long>::max();

long readable = Everything; ///< bytes of any file

/// Parts lie in the file as they are read.
Recording tableInTheMiddle()
{
    return Recording().order({Recording::Text, Recording::Table, Recording::Records});
}

} // namespace

/// Takes the place of the C library's function in this program.
extern "C" std::size_t fread(void *to, std::size_t size, std::size_t count, std::FILE *file)
{
    using Function = std::size_t (*)(void *, std::size_t, std::size_t, std::FILE *);
    static const auto read = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "fread"));
    return std::ftell(file) < readable ? read(to, size, count, file) : 0;
}

class tst_RecordingInspectionUnreadable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data();
    void finds();

private:
    ImportFixture m_fixture;
};

void tst_RecordingInspectionUnreadable::finds_data()
{
    QTest::addColumn<long>("bytes");
    QTest::addColumn<bool>("isImportable");
    QTest::addColumn<QString>("lost");

    const Recording recording = tableInTheMiddle();
    QTest::newRow("all of it") << Everything << true << QString();
    QTest::newRow("no table") << long(recording.sectionOffset(Recording::Table)) << false
                              << "everything";
    QTest::newRow("no text") << long(recording.sectionOffset(Recording::Text)) << false
                             << "everything";
    QTest::newRow("no records") << long(recording.sectionOffset(Recording::Records)) << true
                                << "20000 of 20000 records";
    // A block of 256 KB contains 5698 records of 46 bytes.
    QTest::newRow("a block of records") << long(recording.sectionOffset(Recording::Records) + 1)
                                        << true << "14302 of 20000 records";
}

void tst_RecordingInspectionUnreadable::finds()
{
    QFETCH(long, bytes);
    QFETCH(bool, isImportable);
    QFETCH(QString, lost);

    Recording recording = tableInTheMiddle();
    recording.set("IsOnTrack", 1).ticks(20000);
    const QString fileName = m_fixture.write(recording.bytes());
    readable = bytes;
    const RecordingInspection inspection(fileName);
    readable = Everything;

    QCOMPARE(inspection.isImportable(), isImportable);
    QStringList found;
    for (const Finding &finding : inspection.findings())
        found.append(findingKindName(finding.kind) % QLatin1String(": ") % finding.lost);
    QCOMPARE(found,
             lost.isEmpty() ? QStringList() : QStringList(QLatin1String("unreadable: ") % lost));
}

QTEST_GUILESS_MAIN(tst_RecordingInspectionUnreadable)
#include "tst_recordinginspection_unreadable.moc"
