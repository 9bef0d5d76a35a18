// zepimport where the system gives it little memory.

#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"
#include "tools/recording.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// Sound, with a session info that takes a lot to read.
QByteArray recordingOfALongText()
{
    QByteArray text = Recording::plainSessionInfo().chopped(4) + "Numbers:\n";
    for (int i = 0; i < 200000; ++i)
        text += " - Number: " + QByteArray::number(i) + '\n';
    Recording recording;
    recording.sessionInfo(text + "...\n").set("IsOnTrack", 1);
    return recording.ticks(100).bytes();
}

/// Many laps of a few ticks and of many channels: more than its samples, it takes what is kept of
/// each channel of each lap.
QByteArray recordingOfManyShortLaps()
{
    QVector<RecordingVariable> variables{{"IsOnTrack", irsdk_bool},
                                         {"Lap", irsdk_int},
                                         {"LapDistPct", irsdk_float},
                                         {"LapCurrentLapTime", irsdk_float}};
    for (int i = 0; i < 300; ++i)
        variables.append({"Channel" + QByteArray::number(i)});
    Recording recording = Recording::empty();
    recording.variables(variables).sessionInfo(Recording::plainSessionInfo());
    recording.set("IsOnTrack", 1).set("LapDistPct", 0.5);
    return recording
        .ticks(2000, [](Recording &r, int tick) { r.set("LapCurrentLapTime", tick % 2 ? 1 : 10); })
        .bytes();
}

} // namespace

class tst_ZepimportMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyFileIsTold_data();
    void everyFileIsTold();
    void exportNeedsNoMoreThanTheImport_data();
    void exportNeedsNoMoreThanTheImport();
    void failingAllocations_data();
    void failingAllocations();

private:
    Outcome run(int megabytes, const QStringList &arguments) const;
    QStringList outputs() const
    {
        return QDir(m_dir.filePath(QStringLiteral("out"))).entryList(QDir::Files | QDir::Hidden);
    }

    QTemporaryDir m_dir;
    int m_least = 0; ///< megabytes that a small recording takes
};

Outcome tst_ZepimportMemory::run(int megabytes, const QStringList &arguments) const
{
    ZepimportProcess process;
    process.folder = m_dir.path();
    process.program = QStringLiteral("/bin/bash");
    process.arguments = QStringList{"-c", "ulimit -v $1; shift; exec \"$@\"", "bash",
                                    QString::number(megabytes * 1000), ZEPIMPORT_PATH}
        + arguments;
    return process.run();
}

void tst_ZepimportMemory::initTestCase()
{
    const auto write = [this](const char *name, const QByteArray &bytes) {
        QFile file(m_dir.filePath(QLatin1String(name)));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(write("long.ibt", recordingOfALongText()));
    QVERIFY(write("many.ibt", recordingOfManyShortLaps()));
    Recording sound;
    QVERIFY(write("sound.ibt", sound.set("IsOnTrack", 1).ticks(100).bytes()));

    for (m_least = 20; m_least < 1000; m_least += 5) {
        if (run(m_least, {"check", "sound.ibt"}).exitCode == 0)
            break;
    }
    QVERIFY(m_least < 1000);
}

void tst_ZepimportMemory::everyFileIsTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("check") << QStringList{"check", "long.ibt", "sound.ibt"}
                           << "there is not enough memory to look into the recording";
    QTest::newRow("laps") << QStringList{"laps", "long.ibt", "sound.ibt"}
                          << "long.ibt: there is not enough memory to import it";
}

/// A recording that takes too much costs itself alone.
void tst_ZepimportMemory::everyFileIsTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);

    int complaints = 0;
    int whole = 0;
    for (int megabytes = m_least; megabytes < m_least + 200; megabytes += 10) {
        const Outcome outcome = run(megabytes, arguments);
        QVERIFY2(outcome.output.contains(QLatin1String("sound.ibt")), qPrintable(outcome.output));
        const bool hasComplained = QString(outcome.output + outcome.errors).contains(complaint);
        QCOMPARE(outcome.exitCode, hasComplained ? 1 : 0);
        complaints += hasComplained ? 1 : 0;
        whole += hasComplained ? 0 : 1;
    }
    QVERIFY(complaints > 0);
    QVERIFY(whole > 0);
}

void tst_ZepimportMemory::exportNeedsNoMoreThanTheImport_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : {"csv", "json", "mat"})
        QTest::newRow(format) << format;
}

void tst_ZepimportMemory::exportNeedsNoMoreThanTheImport()
{
    QFETCH(QString, format);
    int needed = m_least;
    while (run(needed, {"laps", "--best", "many.ibt"}).exitCode != 0 && needed < 1000)
        needed += 10;
    QVERIFY(needed > m_least + 50);
    QVERIFY(needed < 1000);

    constexpr int margin = 40; // the larger part for what the writer collects before it writes
    const QString name = QStringLiteral("many.") + format;
    const Outcome outcome =
        run(needed + margin, {"export", "many.ibt", "--format", format, "-o", name});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ZepimportMemory::failingAllocations_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("isLasting");
    const QStringList to{"sound.ibt", "-o"};
    for (const bool isLasting : {false, true}) {
        const char *const which = isLasting ? "all from one on" : "one";
        QTest::addRow("laps, %s", which) << QStringList{"laps", "sound.ibt"} << isLasting;
        for (const char *format : {"csv", "json", "mat"})
            QTest::addRow("export %s, %s", format, which)
                << QStringList{"export", "--format", format} + to + QStringList{"out"} << isLasting;
        QTest::addRow("report, %s", which)
            << QStringList{"report"} + to + QStringList{"out/a.html"} << isLasting;
    }
}

/// Whichever allocations fail: the program says so and ends, and leaves nothing half done.
void tst_ZepimportMemory::failingAllocations()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, isLasting);
    const QString out = m_dir.filePath(QStringLiteral("out"));
    const auto clear = [&] { return QDir(out).removeRecursively() && QDir().mkpath(out); };
    QVERIFY(clear());

    ZepimportProcess process;
    process.folder = m_dir.path();
    process.arguments = arguments;
    const QString countFile = m_dir.filePath(QStringLiteral("count"));
    process.environment =
        QStringList{"LD_PRELOAD=" FAILING_MEMORY_PATH, QString("ALLOCATION_COUNT=" % countFile)};
    const Outcome whole = process.run();
    QCOMPARE(whole.exitCode, 0);
    const QStringList files = outputs();
    QFile counted(countFile);
    QVERIFY(counted.open(QIODevice::ReadOnly));
    const int count = counted.readAll().toInt();
    QVERIFY(count > 1000);

    constexpr int Runs = 30;
    int ended = 0; // by a library
    int failures = 0;
    int told = 0;
    for (int run = 0; run < Runs; ++run) {
        QVERIFY(clear());
        const int number = 1 + int(qint64(count) * run / Runs);
        process.environment = QStringList{
            "LD_PRELOAD=" FAILING_MEMORY_PATH, QStringLiteral("FAILING_ALLOCATION=%1").arg(number),
            isLasting ? QStringLiteral("FAILING_ALLOCATIONS=all") : QStringLiteral("NOTHING=")};
        const Outcome outcome = process.run();
        // GLib ends the program by itself, and Qt does not check a few allocations of its own, such
        // as those of a connection and of the object of its main thread.
        if (outcome.exitCode < 0 && ++ended <= 2) {
            QVERIFY(outputs().isEmpty());
            continue;
        }
        const QByteArray about = "allocation " + QByteArray::number(number) + ": "
            + QByteArray::number(outcome.exitCode) + ", " + outcome.errors.toUtf8();
        QVERIFY2(outcome.exitCode == 0 || outcome.exitCode == 1, about.constData());
        QVERIFY2(outcome.exitCode == 0 ? outputs() == files : outputs().isEmpty(),
                 about.constData());
        QVERIFY2(outcome.exitCode == 0 || outcome.errors.contains(QLatin1String("zepimport: ")),
                 about.constData());
        failures += outcome.exitCode;
        told += outcome.errors.contains(QLatin1String("not enough memory")) ? 1 : 0;
    }
    QVERIFY(failures > Runs / 2);
    // Where Qt's loader of plug-ins or its regular expressions lack memory, they give other
    // reasons.
    QVERIFY2(told >= failures - 2, qPrintable(QStringLiteral("%1 of %2").arg(told).arg(failures)));
}

NAPAMMUL_TEST(tst_ZepimportMemory)
#include "tst_zepimport_memory.moc"
