// `zepimport check` over a folder of recordings, most of them damaged.

#include "fuzz/hostile.h"
#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"
#include "tools/recording.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// Two laps and the start of another.
Recording sound(const QByteArray &sessionInfo = Recording::plainSessionInfo())
{
    Recording recording;
    recording.sessionInfo(sessionInfo).set("SessionState", 4).set("IsOnTrack", 1);
    recording.set("OnPitRoad", 1).set("LapDistPct", 0.9).ticks(2).set("OnPitRoad", 0);
    for (int lap = 1; lap <= 3; ++lap) {
        recording.set("Lap", lap).set("LapLastLapTime", lap == 3 ? 20.5 : -1.0);
        recording.ticks(lap < 3 ? 100 : 30, [](Recording &r, int tick) {
            r.set("LapDistPct", tick / 100.0).set("LapCurrentLapTime", tick * 0.2);
        });
    }
    return recording;
}

QByteArray plainWith(const char *part, const char *other)
{
    return Recording::plainSessionInfo().replace(part, other);
}

Recording withOddVariables()
{
    return sound()
        .withVariable("Speed", &irsdk_varHeader::offset, 4000)
        .withVariable("FuelLevel", &irsdk_varHeader::type, 9)
        .withVariable("SessionTick", &irsdk_varHeader::count, 0);
}

Recording withLostTicks()
{
    Recording recording = sound();
    return recording.set("SessionTime", 60).ticks(30);
}

struct NamedFile {
    const char *name;
    QByteArray bytes;
};

/// The folder that docs/check.md shows.
QVector<NamedFile> files()
{
    const QByteArray whole = sound().bytes();
    const int size = sound().recordSize();
    const int middle = sound().sectionOffset(Recording::Records) + 150 * size;
    const Recording unclosed = sound()
                                   .with(&irsdk_diskSubHeader::sessionRecordCount, 0)
                                   .with(&irsdk_diskSubHeader::sessionEndTime, 0.0);
    return {
        {"byte-inserted.ibt", QByteArray(whole).insert(middle, 'x')},
        {"carriage-returns.ibt", sound(plainWith("\n", "\r\n")).bytes()},
        {"cut-in-records.ibt", whole.left(whole.size() * 3 / 4)},
        {"cut-in-text.ibt", whole.left(sound().sectionOffset(Recording::Text) + 100)},
        {"driver-with-separator.ibt", sound(plainWith("Test Driver", "Ann: Bee")).bytes()},
        {"empty-list.ibt",
         sound(plainWith("SessionInfo:", "RadioInfo:\n Radios:\n\nSessionInfo:")).bytes()},
        {"empty.ibt", QByteArray()},
        {"garbage-at-the-end.ibt", whole + QByteArray(20, 'x')},
        {"lost-ticks.ibt", withLostTicks().bytes()},
        {"no-driver.ibt", sound(plainWith("DriverCarIdx: 0", "DriverCarIdx: 7")).bytes()},
        {"odd-variables.ibt", withOddVariables().bytes()},
        {"overwritten-record.ibt", QByteArray(whole).replace(middle, size, QByteArray(size, '\0'))},
        {"photo.ibt", QByteArray("\xff\xd8\xff\xe0", 4) + QByteArray(5000, '\x5a')},
        {"sound.ibt", whole},
        {"team-with-separator.ibt", sound(plainWith("Test Team", "Team: Red")).bytes()},
        {"unclosed.ibt", unclosed.bytes()},
        {"unclosed-and-cut.ibt", unclosed.bytes().chopped(10)},
    };
}

} // namespace

class tst_ZepimportCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void documentedOutput();
    void exitCode_data();
    void exitCode();
    void wrongUse_data();
    void wrongUse();
    void jsonSaysTheSame();
    void jobsChangeNothing_data();
    void jobsChangeNothing();
    void crashCostsOneFile_data();
    void crashCostsOneFile();
    void otherFormats();
    void demoIsFine();
    void saysWhyNothingIsLeft_data();
    void saysWhyNothingIsLeft();
    void unreadableFileIsNamed();

private:
    Outcome run(const QStringList &arguments) const;

    QTemporaryDir m_dir;
};

void tst_ZepimportCheck::initTestCase()
{
    QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("crashed")));
    for (const NamedFile &file : files()) {
        QFile written(m_dir.filePath(QLatin1String("crashed/") % QLatin1String(file.name)));
        QVERIFY(written.open(QIODevice::WriteOnly));
        QCOMPARE(written.write(file.bytes), qint64(file.bytes.size()));
    }
}

Outcome tst_ZepimportCheck::run(const QStringList &arguments) const
{
    ZepimportProcess process;
    process.arguments = QStringList("check") + arguments;
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" NAPAMMUL_PLUGIN_PATH));
    process.folder = m_dir.path();
    return process.run();
}

void tst_ZepimportCheck::documentedOutput()
{
    const Outcome outcome = run({"crashed"});
    QCOMPARE(
        outcome.errors,
        QStringLiteral("zepimport: 4 of 17 files passed, failed: crashed/byte-inserted.ibt, "
                       "crashed/carriage-returns.ibt, crashed/cut-in-records.ibt, "
                       "crashed/cut-in-text.ibt, crashed/driver-with-separator.ibt and 8 more\n"));
    QCOMPARE(outcome.exitCode, 1);
    QFile docs(QFINDTESTDATA("../../../docs/check.md"));
    QVERIFY(docs.open(QIODevice::ReadOnly));
    const QString shown = QString::fromUtf8(docs.readAll()).section(QStringLiteral("```\n"), 1, 1);
    QCOMPARE(outcome.output, shown);
}

void tst_ZepimportCheck::exitCode_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("fine") << QStringList{"crashed/sound.ibt"} << 0;
    QTest::newRow("remarks") << QStringList{"crashed/unclosed.ibt"} << 0;
    QTest::newRow("fine and remarks")
        << QStringList{"crashed/sound.ibt", "crashed/lost-ticks.ibt"} << 0;
    QTest::newRow("damaged") << QStringList{"crashed/cut-in-records.ibt"} << 1;
    QTest::newRow("not a recording") << QStringList{"crashed/photo.ibt"} << 1;
    QTest::newRow("fine behind damaged")
        << QStringList{"crashed/cut-in-text.ibt", "crashed/sound.ibt"} << 1;
    QTest::newRow("damaged, JSON") << QStringList{"--json", "crashed/cut-in-records.ibt"} << 1;
    QTest::newRow("no file") << QStringList{"missing.ibt"} << 1;
    QTest::newRow("no such format") << QStringList{"missing.txt"} << 1;
    QTest::newRow("folder without recordings") << QStringList{"."} << 1;
    QTest::newRow("folders below a folder") << QStringList{"-r", "."} << 1;
}

void tst_ZepimportCheck::exitCode()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QCOMPARE(run(arguments).exitCode, exitCode);
}

void tst_ZepimportCheck::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("no file") << QStringList()
                             << "zepimport: FILE is required; see zepimport check --help\n";
    QTest::newRow("laps") << QStringList{"crashed/sound.ibt:best"}
                          << "zepimport: crashed/sound.ibt: is checked as a whole; leave out the "
                             "choice of laps\n";
}

void tst_ZepimportCheck::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.errors, error);
}

void tst_ZepimportCheck::jsonSaysTheSame()
{
    const Outcome outcome = run({"--json", "crashed"});
    const QJsonArray array = QJsonDocument::fromJson(outcome.output.toUtf8()).array();
    QCOMPARE(array.size(), files().size());

    QString text;
    QStringList verdicts;
    for (const QJsonValue &file : array) {
        verdicts.append(file[QLatin1String("verdict")].toString());
        text += file[QLatin1String("file")].toString() % QLatin1String(": ")
            % file[QLatin1String("summary")].toString() % QLatin1Char('\n');
        for (const QJsonValue &finding : file[QLatin1String("findings")].toArray()) {
            const int line = finding[QLatin1String("line")].toInt();
            const QString quote = finding[QLatin1String("quote")].toString();
            const QString variable = finding[QLatin1String("variable")].toString();
            const QJsonValue offset = finding[QLatin1String("offset")];
            text += QLatin1String("  ");
            if (line > 0)
                text += QStringLiteral("session info, line %1: ").arg(line)
                    % (quote.isEmpty() ? QString() : QString(quote % QLatin1Char(' ')));
            else if (!variable.isEmpty())
                text += QStringLiteral("variable %1: ").arg(variable);
            else if (!offset.isNull())
                text += QStringLiteral("byte %1: ").arg(offset.toDouble(), 0, 'f', 0);
            text += finding[QLatin1String("text")].toString() % QLatin1Char('\n');
            QVERIFY(!finding[QLatin1String("kind")].toString().isEmpty());
        }
    }
    QCOMPARE(text, run({"crashed"}).output);
    verdicts.removeDuplicates();
    verdicts.sort();
    QCOMPARE(verdicts, QStringList({"damaged", "fine", "no-recording", "remarks"}));
}

void tst_ZepimportCheck::jobsChangeNothing_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("text") << QStringList{"crashed", "missing.ibt"};
    QTest::newRow("JSON") << QStringList{"--json", "crashed", "missing.ibt"};
    QTest::newRow("quiet") << QStringList{"--quiet", "crashed"};
    QTest::newRow("laps that are not to be chosen") << QStringList{"crashed", "crashed:best"};
    QTest::newRow("one file") << QStringList{"crashed/sound.ibt"};
}

void tst_ZepimportCheck::jobsChangeNothing()
{
    QFETCH(QStringList, arguments);
    const Outcome here = run(arguments);
    QVERIFY(!here.output.isEmpty());
    QCOMPARE(here.errors.contains(QLatin1String(" files passed")),
             !arguments.contains(QStringLiteral("--quiet"))
                 && arguments.first() != "crashed/sound.ibt");
    for (const char *number : {"2", "20"}) {
        const Outcome jobs = run(arguments + QStringList{"--jobs", number});
        QCOMPARE(jobs.output, here.output);
        QCOMPARE(jobs.errors, here.errors);
        QCOMPARE(jobs.exitCode, here.exitCode);
    }
}

void tst_ZepimportCheck::crashCostsOneFile_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("text") << QStringList();
    QTest::newRow("JSON") << QStringList{"--json"};
}

void tst_ZepimportCheck::crashCostsOneFile()
{
    QFETCH(QStringList, options);
    const QStringList files{"race.laps", "crash.laps", "again.laps"};
    for (const QString &name : files) {
        QFile sheet(m_dir.filePath(name));
        QVERIFY(sheet.open(QIODevice::WriteOnly));
        sheet.write(name == files.at(1) ? QByteArray("crash\n") : raceSheet());
    }
    const QStringList plugin{"--plugin", QStringLiteral(LAPSHEET_PLUGIN_PATH)};
    const Outcome outcome = run(plugin + options + QStringList{"--jobs", "2"} + files);
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: crash.laps: its process crashed; the file may be damaged\n"
                            "zepimport: 2 of 3 files passed, failed: crash.laps\n"));
    QCOMPARE(outcome.exitCode, 1);
    const QStringList others{files.first(), files.last()};
    QCOMPARE(outcome.output, run(plugin + options + QStringList("--quiet") + others).output);
}

/// Of what is no .ibt recording only the plug-in can tell.
void tst_ZepimportCheck::otherFormats()
{
    QFile sheet(m_dir.filePath(QStringLiteral("race.laps")));
    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.write(raceSheet());
    sheet.close();
    const auto check = [this](const QString &fileName) {
        return run({"--plugin", QStringLiteral(LAPSHEET_PLUGIN_PATH), fileName});
    };
    QCOMPARE(check(QStringLiteral("race.laps")).output,
             QStringLiteral("race.laps: fine, 6 laps\n"));

    QVERIFY(sheet.open(QIODevice::WriteOnly));
    sheet.write("message|-2|the sheet is torn\n");
    sheet.close();
    const Outcome torn = check(QStringLiteral("race.laps"));
    QCOMPARE(torn.exitCode, 1);
    QVERIFY(torn.output.startsWith(QLatin1String("race.laps: not a recording\n")));
    QVERIFY(torn.output.contains(QLatin1String("the sheet is torn")));
}

void tst_ZepimportCheck::demoIsFine()
{
    for (const QString &session : QStringList{"testing", "practice", "qualify", "race"}) {
        const QString demo = m_dir.filePath(session + QStringLiteral(".ibt"));
        QCOMPARE(QProcess::execute(QStringLiteral(IBTGEN_PATH),
                                   {"--session", session, "--rate", "20", demo}),
                 0);
        const Outcome outcome = run({demo});
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.output.startsWith(QString(demo % QLatin1String(": fine, "))),
                 qPrintable(outcome.output));
    }
}

void tst_ZepimportCheck::saysWhyNothingIsLeft_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("output");
    QTest::addColumn<int>("exitCode");

    Recording parked;
    parked.sessionInfo(Recording::plainSessionInfo()).set("LapDistPct", 0.5);
    QTest::newRow("never driven")
        << parked.ticks(10).bytes()
        << QStringLiteral("odd.ibt: complete with remarks, 1 lap\n"
                          "  no lap of the player's car begins, so the only lap is empty\n")
        << 0;
    QTest::newRow("out of proportion")
        << hostileKind("a lap every other tick").make(3 * 1024 * 1024)
        << QStringLiteral("odd.ibt: damaged, lost: everything\n") << 1;
    QTest::newRow("zeros") << QByteArray(5000, '\0') << QStringLiteral("odd.ibt: not a recording\n")
                           << 1;
}

void tst_ZepimportCheck::saysWhyNothingIsLeft()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, output);
    QFETCH(int, exitCode);

    QFile file(m_dir.filePath(QStringLiteral("odd.ibt")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();
    const Outcome outcome = run({"odd.ibt"});
    QCOMPARE(outcome.exitCode, exitCode);
    QVERIFY2(outcome.output.startsWith(output), qPrintable(outcome.output));
    QCOMPARE(outcome.output.contains(QLatin1String(
                 "its laps would need more than 256 MB and more than 64 bytes for each byte")),
             output.contains(QLatin1String("everything")));
}

/// Memory of a process is a regular file whose first bytes cannot be read.
void tst_ZepimportCheck::unreadableFileIsNamed()
{
    const QString link = m_dir.filePath(QStringLiteral("broken.ibt"));
    QVERIFY(QFile::link(QStringLiteral("/proc/self/mem"), link));
    const Outcome outcome = run({"broken.ibt"});
    QVERIFY(QFile::remove(link));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(outcome.output,
             QStringLiteral("broken.ibt: not a recording\n"
                            "  the header could not be read, or the file was shortened while it "
                            "was read\n"
                            "  [ZEP iRacing ibt import plugin plugin] IBT import error:  Error "
                            "reading irsdk_header\n"));
}

NAPAMMUL_TEST(tst_ZepimportCheck)
#include "tst_zepimportcheck.moc"
