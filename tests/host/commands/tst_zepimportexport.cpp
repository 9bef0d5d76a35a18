#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

/// What `zepimport export` writes, where, and what it leaves alone.
class tst_ZepimportExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void csv();
    void choices();
    void time();
    void json();
    void files_data();
    void files();
    void mirroredFolders_data();
    void mirroredFolders();
    void foldersOfNothing();
    void standardOutput_data();
    void standardOutput();
    void existingFileIsKept();
    void existingFileOfOneLapKeepsAll_data();
    void existingFileOfOneLapKeepsAll();
    void oneFileOfSeveralFails();
    void wrongUse_data();
    void wrongUse();
    void failure_data();
    void failure();
    void fileThatMayNotGrow_data();
    void fileThatMayNotGrow();
    void lostAtTheEnd_data();
    void lostAtTheEnd();
    void lostStandardOutput();
    void closedPipe_data();
    void closedPipe();

private:
    Outcome run(const QStringList &arguments, const QString &shell = {}) const;
    void write(const QString &name, const QByteArray &content) const;
    QByteArray read(const QString &name) const;
    QStringList entries(const QString &folder) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

namespace {

const QByteArray raceCsv = "lap,tick,dead,fuellevel,gear,speed,lapdist\n"
                           ",,C,l,,m/s,m\n"
                           "3,0,,48,1,31,0\n"
                           "3,1,,47,2,42,10.25\n"
                           "3,2,,45.999,5,,20.5\n";

} // namespace

void tst_ZepimportExport::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    const QDir dir(m_dir->path());
    QVERIFY(dir.mkpath(QStringLiteral("out")));
    QVERIFY(dir.mkpath(QStringLiteral("monday")));
    QVERIFY(dir.mkpath(QStringLiteral("locked")));
    QVERIFY(QFile::setPermissions(dir.filePath(QStringLiteral("locked")),
                                  QFile::ReadOwner | QFile::ExeOwner));
    write(QStringLiteral("race.laps"), raceSheet());
    write(QStringLiteral("monday/race.laps"), raceSheet());
    write(QStringLiteral("short.laps"), "lap|1|1|60000|1|1|1\nchannel|gear||3\n");
    // Far more text than a pipe or a buffer holds.
    write(QStringLiteral("long.laps"),
          "lap|1|1|60000|1|1|1\nchannel|gear||" + QByteArray("3 1.234567890123 ").repeated(40000)
              + '\n');
}

Outcome tst_ZepimportExport::run(const QStringList &arguments, const QString &shell) const
{
    ZepimportProcess process;
    process.arguments = QStringList{"export"} + arguments;
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    process.folder = m_dir->path();
    if (!shell.isEmpty()) {
        process.program = QStringLiteral("/bin/bash");
        process.arguments =
            QStringList{"-c", shell, QStringLiteral(ZEPIMPORT_PATH)} + process.arguments;
    }
    return process.run();
}

void tst_ZepimportExport::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_dir->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray tst_ZepimportExport::read(const QString &name) const
{
    QFile file(m_dir->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

QStringList tst_ZepimportExport::entries(const QString &folder) const
{
    return QDir(m_dir->filePath(folder)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

void tst_ZepimportExport::csv()
{
    const Outcome outcome = run({"race.laps:best"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(read(QStringLiteral("race.csv")), raceCsv);
}

void tst_ZepimportExport::choices()
{
    const Outcome outcome = run({"race.laps", "--lap", "1,5-6", "--channels", "gear,F*", "--sep",
                                 ";", "--units", "header", "-o", "-"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output,
             QStringLiteral("lap;tick;gear;fuellevel [l]\n"
                            "1;0;;50\n"
                            "1;1;;\n"
                            "1;2;;49.5\n"
                            "5;0;1;\n"
                            "5;1;2;\n"));
}

void tst_ZepimportExport::time()
{
    write(QStringLiteral("times.laps"),
          "lap|1|1|60000|1|1|1\nchannel|sessiontime|s|10 10.25 10.75\nchannel|gear||3 4 5\n");
    const QStringList arguments{"times.laps", "--channels", "gear", "--time", "--force"};
    const QByteArray expected = "lap,tick,time,gear\n,,s,\n1,0,0,3\n1,1,0.25,4\n1,2,0.75,5\n";
    QCOMPARE(run(arguments).exitCode, 0);
    QCOMPARE(read(QStringLiteral("times.csv")), expected);
    QCOMPARE(run(arguments + QStringList{"--jobs", "2", "short.laps", "--quiet"}).exitCode, 0);
    QCOMPARE(read(QStringLiteral("times.csv")), expected);
}

void tst_ZepimportExport::json()
{
    QCOMPARE(run({"race.laps", "--lap", "3,5", "-o", "race.json"}).errors, QString());
    const QJsonArray laps = QJsonDocument::fromJson(read(QStringLiteral("race.json"))).array();
    QCOMPARE(laps.size(), 2);
    QJsonObject lap = laps.first().toObject();
    const QJsonObject channels = lap.take(QStringLiteral("channels")).toObject();
    QCOMPARE(channels.keys(), (QStringList{"dead", "fuellevel", "gear", "speed"}));
    QCOMPARE(channels.value(QStringLiteral("speed")),
             QJsonValue(
                 QJsonObject{{"unit", "m/s"}, {"samples", QJsonArray{31, 42, QJsonValue::Null}}}));
    QCOMPARE(
        lap.take(QStringLiteral("calculatedChannels")),
        QJsonValue(QJsonObject{
            {"lapdist", QJsonObject{{"unit", "m"}, {"samples", QJsonArray{0, 10.25, 20.5}}}}}));

    // The rest is what `zepimport info` shows.
    ZepimportProcess process;
    process.arguments = QStringList{"info", "--json", "race.laps:3"};
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    process.folder = m_dir->path();
    QCOMPARE(QJsonArray{lap}, QJsonDocument::fromJson(process.run().output.toUtf8()).array());
    QCOMPARE(laps.at(1)[QLatin1String("lap")], QJsonValue(5));
}

void tst_ZepimportExport::files_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("files");

    QTest::newRow("current folder")
        << QStringList{"monday/race.laps", "short.laps", "--format", "mat"} << "."
        << QStringList{"long.laps", "race.laps", "race.mat", "short.laps", "short.mat"};
    QTest::newRow("folder") << QStringList{"race.laps", "short.laps", "-o", "out"} << "out"
                            << QStringList{"race.csv", "short.csv"};
    QTest::newRow("file for each lap")
        << QStringList{"race.laps:1,3", "short.laps", "--split", "--format", "json", "-o", "out/"}
        << "out" << QStringList{"race-lap01.json", "race-lap03.json", "short-lap01.json"};
    QTest::newRow("file for each lap, with a name")
        << QStringList{"race.laps:1,3", "--split", "-o", "out/fast.mat"} << "out"
        << QStringList{"fast-lap01.mat", "fast-lap03.mat"};
}

void tst_ZepimportExport::files()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, folder);
    const Outcome outcome = run(arguments + QStringList{"--quiet"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
    QTEST(entries(folder), "files");
}

void tst_ZepimportExport::mirroredFolders_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("options");
    QTest::newRow("folder") << "out/" << QStringList{"-o", "out"};
    QTest::newRow("folder, in processes") << "out/" << QStringList{"-o", "out/", "--jobs", "2"};
    QTest::newRow("current folder") << "" << QStringList();
    QTest::newRow("current folder, in processes") << "" << QStringList{"--jobs", "2"};
}

void tst_ZepimportExport::mirroredFolders()
{
    QFETCH(QString, folder);
    QFETCH(QStringList, options);
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("season/2024/may")));
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("season/2025")));
    for (const char *name :
         {"season/race.laps", "season/2024/may/race.laps", "season/2025/race.laps"})
        write(QString::fromLatin1(name), raceSheet());
    const Outcome outcome = run(QStringList{"-r", "season/", "--lap", "best", "--quiet"} + options);
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
    for (const char *name : {"race.csv", "2024/may/race.csv", "2025/race.csv"})
        QCOMPARE(read(folder + QString::fromLatin1(name)), raceCsv);
}

void tst_ZepimportExport::foldersOfNothing()
{
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("season/a/b")));
    QVERIFY(QDir(m_dir->path()).mkpath(QStringLiteral("out/a")));
    write(QStringLiteral("season/a/b/race.laps"), "message|-2|Line 7 makes no sense\n");
    const Outcome outcome = run({"-r", "season/", "-o", "out"});
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(QFileInfo::exists(m_dir->filePath(QStringLiteral("out/a"))));
    QVERIFY(!QFileInfo::exists(m_dir->filePath(QStringLiteral("out/a/b"))));
}

void tst_ZepimportExport::standardOutput_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("csv") << "csv";
    QTest::newRow("json") << "json";
    QTest::newRow("mat") << "mat";
}

void tst_ZepimportExport::standardOutput()
{
    QFETCH(QString, format);
    const QStringList arguments{"race.laps", "--format", format};
    QCOMPARE(run(arguments + QStringList{"-o", "file"}).errors, QString());
    for (const QStringList &output : {QStringList{"-"}, QStringList{"-o", "-"}}) {
        const Outcome outcome = run(arguments + output, QStringLiteral("\"$0\" \"$@\" > piped"));
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(read(QStringLiteral("piped")), read(QStringLiteral("file")));
    }
    QCOMPARE(run(arguments + QStringList{"-o", "/dev/stdout"},
                 QStringLiteral("\"$0\" \"$@\" | cat "
                                "> piped"))
                 .errors,
             QString());
    QCOMPARE(read(QStringLiteral("piped")), read(QStringLiteral("file")));
}

void tst_ZepimportExport::existingFileIsKept()
{
    write(QStringLiteral("race.csv"), "precious");
    const Outcome outcome = run({"race.laps:best"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: race.csv: already exists; choose another name, or use "
                            "--force to replace it\n"));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(read(QStringLiteral("race.csv")), QByteArray("precious"));
    QCOMPARE(run({"race.laps:best", "--force"}).exitCode, 0);
    QCOMPARE(read(QStringLiteral("race.csv")), raceCsv);
}

void tst_ZepimportExport::existingFileOfOneLapKeepsAll_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("file") << false;
    QTest::newRow("folder") << true;
}

void tst_ZepimportExport::existingFileOfOneLapKeepsAll()
{
    QFETCH(bool, isFolder);
    const QString name = QStringLiteral("out/race-lap03.csv");
    if (isFolder)
        QVERIFY(QDir(m_dir->path()).mkdir(name));
    else
        write(name, "precious");
    const QStringList arguments{"race.laps", "--split", "-o", "out"};
    const Outcome outcome = run(arguments);
    QCOMPARE(
        outcome.errors,
        QString(
            QLatin1String("zepimport: ") % name
            % QLatin1String(
                isFolder
                    ? ": is a folder; give a file in it\n"
                    : ": already exists; choose another name, or use --force to replace it\n")));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(entries(QStringLiteral("out")),
             isFolder ? QStringList() : QStringList{"race-lap03.csv"});
    if (!isFolder) {
        QCOMPARE(read(name), QByteArray("precious"));
        QCOMPARE(run(arguments + QStringList{"--force"}).exitCode, 0);
        QCOMPARE(entries(QStringLiteral("out")).size(), 6);
    }
}

void tst_ZepimportExport::oneFileOfSeveralFails()
{
    write(QStringLiteral("out/race.csv"), "precious");
    const Outcome outcome = run({"race.laps", "none.laps", "short.laps", "-o", "out"});
    QVERIFY2(outcome.errors.contains(QLatin1String("out/race.csv: already exists")),
             qPrintable(outcome.errors));
    QVERIFY2(outcome.errors.contains(QLatin1String("none.laps: no such file")),
             qPrintable(outcome.errors));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(read(QStringLiteral("out/short.csv")), QByteArray("lap,tick,gear\n,,\n1,0,3\n"));
}

void tst_ZepimportExport::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");

    const QStringList race{"race.laps"};
    QTest::newRow("unknown format")
        << race + QStringList{"--format", "xml"}
        << "--format: xml not in {csv,json,mat}; see zepimport export --help";
    QTest::newRow("unknown suffix")
        << race + QStringList{"-o", "a.txt"}
        << "a.txt: no format has this suffix; choose one with --format csv, json or mat";
    QTest::newRow("no suffix, as of a folder that is not there")
        << race + QStringList{"-o", "new"}
        << "new: no format has this suffix; choose one with --format csv, json or mat, or create "
           "the folder first";
    QTest::newRow("laps of a recording one by one")
        << QStringList{"race.laps:3-4", "./race.laps:best", "-o", "out"}
        << "./race.laps: is given twice; choose all its laps at once, as in ./race.laps:3-4,best";
    QTest::newRow("a recording twice") << QStringList{"race.laps:1", "./race.laps", "-o", "out"}
                                       << "./race.laps: is given twice; give it once";
    QTest::newRow("missing folder")
        << race + QStringList{"-o", "none/"} << "none/: no such folder; create it first";
    QTest::newRow("several recordings, one file")
        << QStringList{"race.laps", "short.laps", "-o", "a.csv"}
        << "several recordings need several files; give a folder with --output";
    QTest::newRow("several recordings, standard output")
        << QStringList{"race.laps", "short.laps", "-"}
        << "several recordings need several files; give a folder with --output";
    QTest::newRow("recordings of one name")
        << QStringList{"race.laps", "monday/race.laps"}
        << "race.laps and monday/race.laps would both become race.csv; export them separately, "
           "into different folders";
    QTest::newRow("the recording itself")
        << race + QStringList{"-o", "./race.laps", "--format", "csv", "--force"}
        << "race.laps: is the recording itself; choose another output";
    QTest::newRow("two outputs") << race + QStringList{"-", "-o", "a.csv"}
                                 << "- and --output are two outputs; see zepimport export --help";
    QTest::newRow("only an output")
        << QStringList{"-"} << "FILE is required besides -; see zepimport export --help";
    QTest::newRow("laps on standard output")
        << race + QStringList{"-", "--split"}
        << "--split writes several files; give a folder or a file with --output";
    for (const char *separator : {"", "5", "e", ".", "-", "\"", "\n", "ab", "é"}) {
        QTest::addRow("separator %s", separator)
            << race + QStringList{"--sep", QString::fromUtf8(separator)}
            << QStringLiteral(
                   "--sep: '%1' cannot separate numbers; choose another one, such as ; or tab; "
                   "see zepimport export --help")
                   .arg(QString::fromUtf8(separator).replace(QLatin1Char('\n'),
                                                             QChar(QChar::ReplacementCharacter)));
    }
    QTest::newRow("unknown place of units")
        << race + QStringList{"--units", "all"}
        << "--units: all not in {header,row,none}; see zepimport export --help";
    QTest::newRow("unknown channel") << race + QStringList{"--channels", "geer"}
                                     << "race.laps: there is no channel 'geer'; did you mean gear?";
}

void tst_ZepimportExport::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const QStringList before = entries(QStringLiteral("."));
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.errors, QString(QLatin1String("zepimport: ") % error % QLatin1Char('\n')));
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(entries(QStringLiteral(".")), before);
    QCOMPARE(read(QStringLiteral("race.laps")), raceSheet());
}

void tst_ZepimportExport::failure_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");

    const QString full = QStringLiteral("/dev/full: cannot be written (No space left on device); "
                                        "free some space, or choose another location");
    for (const char *format : {"csv", "json", "mat"}) {
        for (const char *recording : {"race.laps", "long.laps"}) {
            QTest::addRow("full device: %s of %s", format, recording)
                << QStringList{recording, "--format", format, "-o", "/dev/full"} << full;
        }
    }
    QTest::newRow("missing folder")
        << QStringList{"race.laps", "-o", "none/a.csv"}
        << "none/a.csv: cannot be written (No such file or directory); choose another location";
    QTest::newRow("locked folder")
        << QStringList{"race.laps", "-o", "locked"}
        << "locked/race.csv: cannot be written (Permission denied); choose another location";
}

void tst_ZepimportExport::failure()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.errors, QString(QLatin1String("zepimport: ") % error % QLatin1Char('\n')));
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, 1);
}

void tst_ZepimportExport::fileThatMayNotGrow_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("reason");
    QTest::newRow("csv") << "csv"
                         << "File too large";
    QTest::newRow("json") << "json"
                          << "File too large";
    QTest::newRow("mat") << "mat"
                         << "File too large";
}

void tst_ZepimportExport::fileThatMayNotGrow()
{
    QFETCH(QString, format);
    QFETCH(QString, reason);
    const QString name = QStringLiteral("long.") + format;
    write(QStringLiteral("out/") + name, "precious");
    const Outcome outcome = run({"long.laps", "--format", format, "--force", "-o", "out"},
                                QStringLiteral("ulimit -f 200; exec \"$0\" \"$@\""));
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: out/%1: cannot be written (%2); free some space, or choose "
                            "another location\n")
                 .arg(name, reason));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(entries(QStringLiteral("out")), QStringList{name});
    QCOMPARE(read(QStringLiteral("out/") + name), QByteArray("precious"));
}

void tst_ZepimportExport::lostAtTheEnd_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("format");
    for (const char *call : {"fsync", "close"}) {
        for (const char *format : {"csv", "json", "mat"})
            QTest::addRow("%s, %s", call, format) << call << format;
    }
}

namespace {

/// Runs the program on a disk where \a call fails.
QString onFailingDisk(const QString &call, const QString &command)
{
    return QStringLiteral("export LD_PRELOAD=" FAILING_DISK_PATH
                          " ASAN_OPTIONS=verify_asan_link_order=0 FAILING_CALL=")
        + call + QStringLiteral("; ") + command;
}

} // namespace

void tst_ZepimportExport::lostAtTheEnd()
{
    QFETCH(QString, call);
    QFETCH(QString, format);
    const QString name = QStringLiteral("race.") + format;
    write(QStringLiteral("out/") + name, "precious");
    const Outcome outcome = run({"race.laps", "--format", format, "--force", "-o", "out"},
                                onFailingDisk(call, QStringLiteral("exec \"$0\" \"$@\"")));
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: out/%1: cannot be written (Disk quota exceeded); free some "
                            "space, or choose another location\n")
                 .arg(name));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(entries(QStringLiteral("out")), QStringList{name});
    QCOMPARE(read(QStringLiteral("out/") + name), QByteArray("precious"));
}

void tst_ZepimportExport::lostStandardOutput()
{
    const Outcome outcome =
        run({"race.laps", "-"},
            onFailingDisk(QStringLiteral("close"), QStringLiteral("\"$0\" \"$@\" > out/a.csv")));
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: the output: cannot be written (Disk quota exceeded); free "
                            "some space, or choose another location\n"));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_ZepimportExport::closedPipe_data()
{
    QTest::addColumn<QString>("before");
    QTest::newRow("as usual") << "";
    QTest::newRow("where signals of pipes are ignored") << "trap '' PIPE; ";
}

void tst_ZepimportExport::closedPipe()
{
    QFETCH(QString, before);
    for (const char *format : {"csv", "json", "mat"}) {
        const Outcome outcome =
            run({"long.laps", "-", "--format", format},
                before + QStringLiteral("{ \"$0\" \"$@\"; echo $? >&2; } | head -c 10 | wc -c"));
        QCOMPARE(outcome.output.trimmed(), QStringLiteral("10"));
        QCOMPARE(outcome.errors, QStringLiteral("141\n")); // ended by the signal
    }
}

NAPAMMUL_TEST(tst_ZepimportExport)
#include "tst_zepimportexport.moc"
