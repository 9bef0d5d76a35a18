// What an inspection finds in recordings that are damaged in one place.

#include "fuzz/hostile.h"
#include "inspect/recordinginspection.h"
#include "tests/support/importfixture.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

#include <cstring>
#include <limits>

namespace {

constexpr int Ticks = 20;

Recording sound()
{
    Recording recording;
    recording.set("IsOnTrack", 1).set("Lap", 1).set("LapDistPct", 0.5);
    return recording.ticks(Ticks);
}

/// One line for each finding: "+" for damage, kind, place, what is lost.
QStringList shortFindings(const RecordingInspection &inspection)
{
    QStringList lines;
    for (const Finding &finding : inspection.findings()) {
        const bool isDamage = finding.isDamage();
        lines.append((isDamage ? QStringLiteral("+") : QStringLiteral("-"))
                     % findingKindName(finding.kind) % QLatin1String(" @") % finding.place()
                     % (finding.lost.isEmpty() ? QString()
                                               : QString(QLatin1String(" lost ") % finding.lost)));
    }
    return lines;
}

} // namespace

class tst_RecordingInspection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void finds_data();
    void finds();
    void numbersOfAClaim();
    void isImportableExactlyWhereThePlugInImports_data();
    void isImportableExactlyWhereThePlugInImports();
    void isImportableFromTheSameByteOn();
    void sectionsThatOverlap_data();
    void sectionsThatOverlap();
    void findsLittleInHostileRecordings_data();
    void findsLittleInHostileRecordings();

private:
    RecordingInspection inspected(const QByteArray &bytes);

    ImportFixture m_fixture;
};

RecordingInspection tst_RecordingInspection::inspected(const QByteArray &bytes)
{
    return RecordingInspection(m_fixture.write(bytes));
}

void tst_RecordingInspection::finds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isRecording");
    QTest::addColumn<QStringList>("findings");
    const Recording good = sound();
    const QByteArray bytes = good.bytes();
    const int text = good.sectionOffset(Recording::Text);
    const int records = good.sectionOffset(Recording::Records);
    const int size = good.recordSize();
    const auto at = [](const char *begin, int offset, const char *lost = nullptr) -> QString {
        return QLatin1String(begin) % QStringLiteral(" @byte %1").arg(offset)
            % (lost ? QString(QLatin1String(" lost ") % QLatin1String(lost)) : QString());
    };
    const auto subHeader = &irsdk_diskSubHeader::sessionRecordCount;
    // Without a time in the last ones of 20 records.
    const auto untimed = [&](int count) {
        QByteArray result = bytes;
        const double noTime = qQNaN();
        for (int i = 20 - count; i < 20; ++i)
            std::memcpy(result.data() + records + i * size + good.offsetOf("SessionTime"), &noTime,
                        sizeof noTime);
        return result;
    };

    QTest::newRow("sound") << bytes << true << QStringList();

    // Headers and claims.
    QTest::newRow("empty") << QByteArray() << false << QStringList(at("+header", 0, "everything"));
    QTest::newRow("header cut") << bytes.left(Recording::HeaderSize - 1) << false
                                << QStringList(at("+header", 0, "everything"));
    QTest::newRow("sub-header cut")
        << bytes.left(Recording::HeaderSize + 31) << false
        << QStringList(at("+header", Recording::HeaderSize, "everything"));
    QTest::newRow("text cut") << bytes.left(text + 10) << true
                              << QStringList(at("+claim", text, "everything"));
    QTest::newRow("table cut") << bytes.left(144 + 10) << true
                               << QStringList({at("+claim", text, "everything"),
                                               at("+claim", 144, "everything")});
    QTest::newRow("negative length") << good.with(&irsdk_header::sessionInfoLen, -1).bytes() << true
                                     << QStringList(at("+claim", 16, "everything"));
    QTest::newRow("negative count and offset")
        << good.with(&irsdk_header::numVars, -1).with(&irsdk_header::varHeaderOffset, -5).bytes()
        << true << QStringList(at("+claim", 24, "everything"));
    QTest::newRow("negative offset") << good.with(&irsdk_header::varHeaderOffset, -5).bytes()
                                     << true << QStringList(at("+claim", 28, "everything"));
    QTest::newRow("claim beyond any file")
        << good.with(&irsdk_header::numVars, std::numeric_limits<qint32>::max()).bytes() << true
        << QStringList(at("+claim", 144, "everything"));
    QTest::newRow("other bytes") << QByteArray(1000, 'x') << false
                                 << QStringList({at("+claim", 0x78787878, "everything"),
                                                 at("+claim", 0x78787878, "everything")});
    QTest::newRow("claim of another version")
        << good.with(&irsdk_header::ver, 0x78787878).with(&irsdk_header::numVars, -1).bytes()
        << false << QStringList(at("+claim", 24, "everything"));
    QTest::newRow("zeros") << QByteArray(1000, '\0') << false
                           << QStringList({at("+no-driver", 0, "all laps"),
                                           at("+records", 36, "all records")});
    QTest::newRow("sound, of another version")
        << good.with(&irsdk_header::ver, 77).bytes() << true << QStringList();

    // Records.
    QTest::newRow("cut between records")
        << bytes.chopped(3 * size) << true
        << QStringList(at("+records", records + 17 * size, "3 of 20 records"));
    QTest::newRow("cut in a record")
        << bytes.chopped(3 * size + 1) << true
        << QStringList(at("+records", records + 16 * size, "4 of 20 records"));
    QTest::newRow("never closed") << good.with(subHeader, 0).bytes() << true
                                  << QStringList(at("-record-count", 140));
    QTest::newRow("never closed, cut")
        << good.with(subHeader, 0).bytes().chopped(1) << true
        << QStringList(
               {at("+records", records + 19 * size, "the last record"), at("-record-count", 140)});
    QTest::newRow("fewer counted")
        << good.with(subHeader, 7).bytes() << true << QStringList(at("-record-count", 140));
    QTest::newRow("too many counted, but the end is there")
        << good.with(subHeader, 2147483647).bytes() << true
        << QStringList(at("-record-count", 140));
    const auto endTime = &irsdk_diskSubHeader::sessionEndTime;
    for (const double time : {0.0, 1e6, double(qQNaN()), -qInf()})
        QTest::addRow("end time %g", time)
            << good.with(endTime, time).bytes() << true << QStringList(at("-end-time", 128));
    QTest::newRow("no time") << untimed(20) << true
                             << QStringList({at("+foreign-records", records, "20 of 20 records"),
                                             at("-time-unusable", records)});
    QTest::newRow("no time at the end")
        << untimed(1) << true
        << QStringList({at("+foreign-records", records + 19 * size, "1 of 20 records"),
                        at("-time-unusable", records + 19 * size)});
    QTest::newRow("zeros for records at the end")
        << bytes.chopped(3 * size) + QByteArray(3 * size, '\0') << true
        << QStringList(at("+empty-records", records + 17 * size, "3 of 20 records"));
    QTest::newRow("zeros for records in between")
        << bytes.chopped(3 * size) + QByteArray(2 * size, '\0') + bytes.right(size) << true
        << QStringList(at("+foreign-records", records + 17 * size, "2 of 20 records"));
    const int middle = records + 10 * size;
    QTest::newRow("a byte inserted")
        << QByteArray(bytes).insert(middle + 7, 'x') << true
        << QStringList({at("-records", records + 20 * size),
                        at("+foreign-records", middle, "10 of 20 records"),
                        at("-time-unusable", middle)});
    QTest::newRow("a record lost")
        << QByteArray(bytes).remove(middle, size) << true
        << QStringList({at("+records", 140, "1 of 20 records"), at("-time-gap", middle)});
    QTest::newRow("a record twice")
        << QByteArray(bytes).insert(middle, bytes.mid(middle, size)) << true
        << QStringList(at("+records", 140, "the order of the records"));
    QTest::newRow("garbage at the end") << bytes + QByteArray(size - 1, 'x') << true
                                        << QStringList(at("-records", records + 20 * size));
    QTest::newRow("no records") << Recording().bytes() << true
                                << QStringList(at("-record-count", 140));
    QTest::newRow("no record size") << good.with(&irsdk_header::bufLen, 0).bytes() << true
                                    << QStringList(at("+records", 36, "all records"));
    QTest::newRow("records in front of the file")
        << good.withRecordsAt(-1).bytes() << true << QStringList(at("+records", 52, "all records"));
    QTest::newRow("records behind the file")
        << good.withRecordsAt(1 << 30).bytes() << true
        << QStringList(at("+records", 1 << 30, "20 of 20 records"));

    // Session info.
    QTest::newRow("zero in the text")
        << good.withSessionInfo(Recording::plainSessionInfo() + QByteArray("\0more", 5)).bytes()
        << true << QStringList(at("-text-end", text + Recording::plainSessionInfo().size()));
    QTest::newRow("no text") << good.withSessionInfo({}, Recording::Unterminated).bytes() << true
                             << QStringList(at("+no-driver", text, "all laps"));
    QTest::newRow("separator in the driver's name")
        << good.withSessionInfo(
                   Recording::plainSessionInfo().replace("Test Driver", "Test: Driver"))
               .bytes()
        << true << QStringList("+text-separators @session info, line 21 lost all laps");
}

void tst_RecordingInspection::finds()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isRecording);
    QFETCH(QStringList, findings);

    const RecordingInspection inspection = inspected(bytes);
    QCOMPARE(inspection.isRecording(), isRecording);
    QCOMPARE(shortFindings(inspection), findings);
}

void tst_RecordingInspection::numbersOfAClaim()
{
    const Recording good = sound();
    const int text = good.sectionOffset(Recording::Text);
    const Finding finding = inspected(good.bytes().left(text + 10)).findings().constFirst();
    QCOMPARE(finding.offset.value_or(-1), qint64(text));
    QCOMPARE(finding.wanted.value_or(-1), qint64(good.header().sessionInfoLen));
    QCOMPARE(finding.had.value_or(-1), qint64(10));
    QCOMPARE(
        finding.text,
        QStringLiteral("the session info needs %1 bytes, but the file contains only 10 of them")
            .arg(good.header().sessionInfoLen));
}

void tst_RecordingInspection::isImportableExactlyWhereThePlugInImports_data()
{
    QTest::addColumn<int>("field");
    for (int field = 0; field < Recording::HeaderSize; field += 4)
        QTest::addRow("header, byte %d", field) << field;
}

void tst_RecordingInspection::isImportableExactlyWhereThePlugInImports()
{
    QFETCH(int, field);
    const QByteArray good = sound().bytes();
    const qint32 size = good.size();
    qint32 now;
    std::memcpy(&now, good.constData() + field, sizeof now);
    for (const qint32 number :
         {-1, 0, 1, now - 1, now + 1, size - 1, size, size + 1, std::numeric_limits<qint32>::max(),
          std::numeric_limits<qint32>::min()}) {
        QByteArray bytes = good;
        std::memcpy(bytes.data() + field, &number, sizeof number);
        const QString fileName = m_fixture.write(bytes);
        const RecordingInspection inspection(fileName);
        const ImportResult result = m_fixture.importFile(fileName);
        QCOMPARE(inspection.isImportable(), !result.laps.empty());
        if (!inspection.isImportable())
            QVERIFY(!inspection.findings().isEmpty());
    }
}

void tst_RecordingInspection::isImportableFromTheSameByteOn()
{
    const QByteArray good = sound().bytes();
    for (int end = 0; end <= good.size(); ++end) {
        const QString fileName = m_fixture.write(good.left(end));
        QCOMPARE(RecordingInspection(fileName).isImportable(),
                 !m_fixture.importFile(fileName).laps.empty());
    }
}

void tst_RecordingInspection::sectionsThatOverlap_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const Recording good = sound();
    const int text = good.sectionOffset(Recording::Text);
    const int size = good.header().sessionInfoLen;
    const int table = text - good.sectionOffset(Recording::Table);
    QTest::newRow("text on the table")
        << good.with(&irsdk_header::sessionInfoOffset, text - 10).bytes()
        << "the session info and the variable table share 10 bytes";
    QTest::newRow("text on the headers") << good.with(&irsdk_header::sessionInfoOffset, 143).bytes()
                                         << "the headers and the session info share a byte";
    QTest::newRow("records on the text")
        << good.withRecordsAt(text + 1).bytes()
        << QStringLiteral("the session info and the records share %1 bytes").arg(size - 1);
    QTest::newRow("records on the table")
        << good.withRecordsAt(text - table).bytes()
        << QStringLiteral("the variable table and the records share %1 bytes").arg(table);
}

void tst_RecordingInspection::sectionsThatOverlap()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QStringList texts;
    for (const Finding &finding : inspected(bytes).findings()) {
        if (finding.kind != FindingKind::Overlap)
            continue;
        texts.append(finding.text);
        QVERIFY(!finding.isDamage());
    }
    // Records that begin elsewhere show it.
    const QStringList found = shortFindings(inspected(bytes));
    QCOMPARE(!found.filter(QStringLiteral("+foreign-records")).isEmpty(),
             text.contains(QLatin1String("the records share")));
    QVERIFY2(texts.contains(text), qPrintable(texts.join(QLatin1Char('\n'))));
}

void tst_RecordingInspection::findsLittleInHostileRecordings_data()
{
    QTest::addColumn<int>("kind");
    for (int kind = 0; kind < hostileKinds().size(); ++kind)
        QTest::newRow(hostileKinds().at(kind).name) << kind;
}

void tst_RecordingInspection::findsLittleInHostileRecordings()
{
    QFETCH(int, kind);
    const RecordingInspection inspection = inspected(hostileKinds().at(kind).make(256 * 1024));
    QVERIFY(inspection.isImportable());
    QVERIFY(inspection.findings().size() < 40);
    for (const Finding &finding : inspection.findings())
        QVERIFY(finding.text.size() + finding.quote.size() < 400);
}

NAPAMMUL_TEST(tst_RecordingInspection)
#include "tst_recordinginspection.moc"
