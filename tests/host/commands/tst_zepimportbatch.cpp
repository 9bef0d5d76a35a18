#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

/// Many files in one call: what they add up to, and how far it is.
class tst_ZepimportBatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void best_data();
    void best();
    void bestSorted();
    void bestAsJson();
    void jobsChangeNothing_data();
    void jobsChangeNothing();
    void jobsOnATerminal();
    void jobsOfExport();
    void filesByNumber();
    void whatIsRefusedIsCounted();
    void crash();
    void crashWithoutJobs();
    void jobsThatCannotStart_data();
    void jobsThatCannotStart();
    void wrongNumberOfJobs_data();
    void wrongNumberOfJobs();
    void progress_data();
    void progress();
    void noProgress_data();
    void noProgress();

private:
    ZepimportProcess process(const QStringList &arguments) const;
    Outcome run(const QStringList &arguments) const { return process(arguments).run(); }
    void write(const char *name, const QByteArray &content) const;

    QTemporaryDir m_dir;
};

namespace {

const QString bestRows = QStringLiteral(
    "File                Date                 Track     Car             Driver        Best lap"
    "  #  Timed laps\n"
    "season/a.laps       2024-05-31 18:30:00  Lakeside  Formula Junior  Zoë Ångström  1:05.123"
    "  3           2\n"
    "season/b.laps       2024-01-02 03:04:05  -         -               -                    -"
    "  -           0\n"
    "season/deep/c.laps  2024-05-31 18:30:00  Lakeside  Formula Junior  Zoë Ångström  1:05.123"
    "  3           2\n");

} // namespace

void tst_ZepimportBatch::initTestCase()
{
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("season/deep")));
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("out")));
    write("season/a.laps", raceSheet());
    write("season/b.laps", "lap|0|1||1|1|0\ndate|2024-01-02T03:04:05\nchannel|gear||3\n");
    write("season/deep/c.laps", raceSheet());
    write("crash.laps", "crash\n");
    write("broken.laps", "message|-2|Line 7 makes no sense\n");
    write("patchy.laps", "message|-2|Lap 2 is lost\nlap|1|1|60000|1|1|1\nchannel|gear||3\n");
}

ZepimportProcess tst_ZepimportBatch::process(const QStringList &arguments) const
{
    ZepimportProcess result;
    result.arguments = arguments;
    result.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    result.folder = m_dir.path();
    return result;
}

void tst_ZepimportBatch::write(const char *name, const QByteArray &content) const
{
    QFile file(m_dir.filePath(QString::fromUtf8(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void tst_ZepimportBatch::best_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::newRow("here") << QStringList();
    QTest::newRow("in processes") << QStringList{"--jobs", "2"};
}

void tst_ZepimportBatch::best()
{
    QFETCH(QStringList, options);
    const Outcome outcome = run(QStringList{"laps", "season", "--best", "-r"} + options);
    QCOMPARE(outcome.output, bestRows);
    QCOMPARE(outcome.errors, QStringLiteral("zepimport: 3 of 3 files done\n"));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ZepimportBatch::bestSorted()
{
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("sorted")));
    write("sorted/a.laps", "lap|1|1|61000|1|1|1\ndate|2024-03-01T00:00:00\nchannel|gear||3\n");
    write("sorted/b.laps", "lap|0|1||1|1|0\ndate|2024-01-02T03:04:05\nchannel|gear||3\n");
    write("sorted/c.laps", "lap|1|1|60000|1|1|1\ndate|2024-02-01T00:00:00\nchannel|gear||3\n");
    for (const char *jobs : {"1", "2"}) {
        const auto order = [&](const QStringList &options) {
            QStringList found;
            const QString output =
                run(QStringList{"laps", "--best", "-j", jobs, "sorted"} + options).output;
            const QRegularExpression file(QStringLiteral("sorted/(.)\\.laps"));
            for (auto match = file.globalMatch(output); match.hasNext();)
                found.append(match.next().captured(1));
            return found.join(QString());
        };
        QCOMPARE(order({}), QStringLiteral("abc"));
        QCOMPARE(order({"--sort", "time"}), QStringLiteral("cab"));
        QCOMPARE(order({"--sort", "date"}), QStringLiteral("bca"));
        QCOMPARE(order({"--sort", "time", "--json"}), QStringLiteral("cab"));
    }
    const Outcome wrong = run({"laps", "--sort", "time", "sorted"});
    QCOMPARE(wrong.errors,
             QStringLiteral("zepimport: --sort sorts the table of --best; see zepimport laps "
                            "--help\n"));
    QCOMPARE(wrong.exitCode, 2);
}

void tst_ZepimportBatch::bestAsJson()
{
    const Outcome outcome = run({"laps", "--best", "--json", "season", "--lap", "1"});
    const QJsonArray files = QJsonDocument::fromJson(outcome.output.toUtf8()).array();
    QCOMPARE(files.size(), 2);
    QVERIFY(files.at(0)[QLatin1String("time")].isNull());

    const QJsonArray all =
        QJsonDocument::fromJson(run({"laps", "--best", "--json", "season/a.laps"}).output.toUtf8())
            .array();
    QCOMPARE(all,
             (QJsonArray{QJsonObject{{"file", "season/a.laps"},
                                     {"track", "Lakeside"},
                                     {"configuration", " Short circuit"},
                                     {"car", "Formula Junior"},
                                     {"driver", "Zoë Ångström"},
                                     {"session", "race"},
                                     {"date", "2024-05-31T18:30:00.000"},
                                     {"dateOfFile", false},
                                     {"lap", 3},
                                     {"time", 65.123},
                                     {"timedLaps", 2}}}));
}

void tst_ZepimportBatch::jobsChangeNothing_data()
{
    QTest::addColumn<QStringList>("arguments");

    const QStringList files{"season", "none.laps", "broken.laps", "patchy.laps",
                            "season/a.laps:1,3"};
    QTest::newRow("laps") << QStringList{"laps"} + files;
    QTest::newRow("laps as JSON") << QStringList{"laps", "--json"} + files;
    QTest::newRow("laps, verbose") << QStringList{"laps", "--verbose"} + files;
    QTest::newRow("best laps") << QStringList{"laps", "--best"} + files;
    QTest::newRow("channels") << QStringList{"channels", "--channels", "gear,sp*"} + files;
    QTest::newRow("chosen laps") << QStringList{"info", "--lap", "2-3,1"} + files;
    QTest::newRow("laps below") << QStringList{"info", "--lap=all", "-r"} + files;
    QTest::newRow("quiet") << QStringList{"channels", "--quiet", "--json"} + files;
    QTest::newRow("one file") << QStringList{"laps", "season/a.laps"};
}

void tst_ZepimportBatch::jobsChangeNothing()
{
    QFETCH(QStringList, arguments);
    const Outcome here = run(arguments);
    for (const char *number : {"1", "2", "20"}) {
        const Outcome jobs = run(arguments + QStringList{"--jobs", number});
        QCOMPARE(jobs.output, here.output);
        QCOMPARE(jobs.errors, here.errors);
        QCOMPARE(jobs.exitCode, here.exitCode);
    }
    QVERIFY(!here.output.isEmpty());
}

void tst_ZepimportBatch::jobsOnATerminal()
{
    ZepimportProcess here = process({"laps", "season", "-r"});
    here.terminalWidth = 70;
    ZepimportProcess jobs = here;
    jobs.arguments += QStringList{"-j", "3"};
    const Outcome outcome = jobs.run();
    QVERIFY(outcome.output.contains(QLatin1String("\033[1m")));
    QCOMPARE(outcome.output, here.run().output);
}

void tst_ZepimportBatch::jobsOfExport()
{
    const QStringList arguments{"export",         "season", "-r", "--lap",   "all", "--channels",
                                "gear,fuellevel", "--sep",  ";",  "--split", "-o",  "out"};
    write("season/b.laps",
          "lap|0|1||1|1|0\ndate|2024-01-02T03:04:05\nchannel|gear||3\n"
          "channel|fuellevel|l|1\n");
    const Outcome outcome = run(arguments + QStringList{"--jobs", "2"});
    QCOMPARE(outcome.errors, QStringLiteral("zepimport: 3 of 3 files done\n"));
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(QDir(m_dir.filePath(QStringLiteral("out"))).entryList(QDir::Files).size(), 6 + 1);
    QCOMPARE(QDir(m_dir.filePath(QStringLiteral("out/deep"))).entryList(QDir::Files).size(), 6);
    QFile file(m_dir.filePath(QStringLiteral("out/deep/c-lap03.csv")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(),
             QByteArray("lap;tick;gear;fuellevel\n;;;l\n3;0;1;48\n3;1;2;47\n3;2;5;45.999\n"));
    QCOMPARE(run(arguments + QStringList{"--jobs", "2"}).exitCode, 1);
    QCOMPARE(run(arguments + QStringList{"--jobs", "2", "--force"}).exitCode, 0);
}

void tst_ZepimportBatch::filesByNumber()
{
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("numbers/a10")));
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("numbers/a9")));
    const QStringList names{"a9/x.laps", "a10/x.laps", "b.laps",  "f.laps",
                            "f1.laps",   "f02.laps",   "f2.laps", "f2b.laps",
                            "f10.laps",  "f10b1.laps", "g.laps"};
    for (const QString &name : names)
        write(qPrintable(QStringLiteral("numbers/") + name),
              "lap|1|1|60000|1|1|1\nchannel|gear||3\n");
    const QJsonArray files =
        QJsonDocument::fromJson(run({"laps", "--json", "-r", "numbers"}).output.toUtf8()).array();
    QStringList found;
    for (const QJsonValue &file : files)
        found.append(file[QLatin1String("file")].toString().mid(8));
    QCOMPARE(found, names);
}

void tst_ZepimportBatch::whatIsRefusedIsCounted()
{
    ZepimportProcess process = this->process({});
    process.program = QStringLiteral("/bin/bash");
    process.arguments =
        QStringList{"-c",
                    QStringLiteral("exec \"$0\" laps season odd/$'N\\xfcrburg.laps' none/ "
                                   "season/a.laps:x >/dev/null"),
                    QStringLiteral(ZEPIMPORT_PATH)};
    const Outcome outcome = process.run();
    QCOMPARE(outcome.errors.section(QLatin1Char('\n'), -2),
             QString::fromUtf8("zepimport: 2 of 5 files done, failed: odd/N\uFFFDrburg.laps, "
                               "season/a.laps:x, none/\n"));
    QCOMPARE(outcome.exitCode, 2);
}

void tst_ZepimportBatch::crash()
{
    const Outcome outcome = run({"channels", "--channels", "gear", "-j", "2", "season/a.laps",
                                 "crash.laps", "season/deep/c.laps"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: crash.laps: its process crashed; the file may be damaged\n"
                            "zepimport: 2 of 3 files done, failed: crash.laps\n"));
    QCOMPARE(outcome.output.count(QLatin1String(": lap #3 of 6")), 2);
    QCOMPARE(outcome.exitCode, 1);
}

void tst_ZepimportBatch::crashWithoutJobs()
{
    QCOMPARE(run({"laps", "season/a.laps", "crash.laps"}).exitCode, -1);
}

void tst_ZepimportBatch::jobsThatCannotStart_data()
{
    QTest::addColumn<bool>("mayFork");
    QTest::newRow("no room for processes") << false;
    QTest::newRow("a program that is gone") << true;
}

void tst_ZepimportBatch::jobsThatCannotStart()
{
    QFETCH(bool, mayFork);
    const QStringList arguments{"laps", "--best", "-r", "season", "none.laps", "season/a.laps:6"};
    const Outcome here = run(arguments);
    ZepimportProcess jobs = process(arguments + QStringList{"--jobs", "2"});
    jobs.mayFork = mayFork;
    jobs.environment.append(QStringLiteral("ASAN_OPTIONS=detect_leaks=0")); // looks in a process
    if (mayFork) {
        QVERIFY(QFile::copy(QStringLiteral(ZEPIMPORT_PATH), m_dir.filePath("gone")));
        jobs.program = QStringLiteral("/bin/bash");
        jobs.arguments.prepend(
            QStringLiteral("exec 3< gone; rm gone; exec /proc/self/fd/3 \"$@\""));
        jobs.arguments.prepend(QStringLiteral("-c"));
        jobs.arguments.insert(2, QStringLiteral("bash"));
    }
    const Outcome outcome = jobs.run();
    QCOMPARE(outcome.output, here.output);
    QCOMPARE(outcome.errors,
             QString(QLatin1String("zepimport: no more processes could be started, so this one "
                                   "reads the remaining files; choose fewer --jobs\n")
                     % here.errors));
    QCOMPARE(outcome.exitCode, here.exitCode);
}

void tst_ZepimportBatch::wrongNumberOfJobs_data()
{
    QTest::addColumn<QString>("number");
    for (const char *number : {"0", "-1", "257", "many", "1.5"})
        QTest::newRow(number) << number;
}

void tst_ZepimportBatch::wrongNumberOfJobs()
{
    QFETCH(QString, number);
    const Outcome outcome = run({"laps", "--jobs", number, "season"});
    QVERIFY2(outcome.errors.startsWith(QLatin1String("zepimport: ")), qPrintable(outcome.errors));
    QVERIFY2(outcome.errors.endsWith(QLatin1String("; see zepimport laps --help\n")),
             qPrintable(outcome.errors));
    QCOMPARE(outcome.errors.count(QLatin1Char('\n')), 1);
    QCOMPARE(outcome.exitCode, 2);
}

void tst_ZepimportBatch::progress_data()
{
    best_data();
}

void tst_ZepimportBatch::progress()
{
    QFETCH(QStringList, options);
    ZepimportProcess shown = process(QStringList{"laps", "season", "none.laps", "-r"} + options);
    shown.terminalWidth = 100;
    shown.errorsToTerminal = true;
    const Outcome outcome = shown.run();
    QVERIFY2(outcome.output.startsWith(
                 QLatin1String("[------------------------------]   0 %  0 of 4 files\r\033[K")),
             qPrintable(outcome.output));
    const QRegularExpression line(QStringLiteral(
        "\\[[#-]{30}\\] [ \\d]{3} %  \\d of 4 files(  [0-9.]+ MB/s  \\d+:\\d\\d left)?"));
    QVERIFY2(line.match(outcome.output).hasMatch(), qPrintable(outcome.output));

    // Whatever was drawn is taken away before anything else is written.
    QString rest = outcome.output;
    rest.remove(QRegularExpression(line.pattern() + QStringLiteral("\r\033\\[K")));
    QVERIFY2(!rest.contains(QLatin1String(" files  ")) && !rest.contains(QLatin1Char('\r')),
             qPrintable(rest));
    QVERIFY2(rest.endsWith(QLatin1String("zepimport: 3 of 4 files done, failed: none.laps\n")),
             qPrintable(rest));
    QVERIFY(rest.startsWith(QLatin1String("\033[1mseason/a.laps\033[0m\n")));
}

void tst_ZepimportBatch::noProgress_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<bool>("isTerminal");

    const QString none = QStringLiteral("NOTHING=");
    const QStringList files{"laps", "season/a.laps", "season/b.laps"};
    QTest::newRow("pipe") << files << none << false;
    QTest::newRow("quiet") << files + QStringList{"--quiet"} << none << true;
    QTest::newRow("dumb terminal") << files << "TERM=dumb" << true;
    QTest::newRow("one file") << QStringList{"laps", "season/a.laps"} << none << true;
}

void tst_ZepimportBatch::noProgress()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, variable);
    QFETCH(bool, isTerminal);
    ZepimportProcess plain = process(arguments);
    plain.environment.append(variable);
    plain.terminalWidth = isTerminal ? 100 : 0;
    plain.errorsToTerminal = isTerminal;
    const Outcome outcome = plain.run();
    QVERIFY2(!outcome.output.contains(QLatin1String(" % ")), qPrintable(outcome.output));
    QVERIFY2(!outcome.errors.contains(QLatin1String(" % ")), qPrintable(outcome.errors));
    QCOMPARE(outcome.exitCode, 0);
}

NAPAMMUL_TEST(tst_ZepimportBatch)
#include "tst_zepimportbatch.moc"
