#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QRegularExpression>
#include <QTest>

#include <cstring>
#include <filesystem>
#include <fstream>

/// How the user chooses files, laps and channels, the same in every command.
class tst_ZepimportChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void files_data();
    void files();
    void problem_data();
    void problem();
    void nothingIsLeftOutOfAFolder_data();
    void nothingIsLeftOutOfAFolder();
    void nameThatIsNotUtf8_data();
    void nameThatIsNotUtf8();
    void rowsOfTheTable();
    void severalLapsOfAFile_data();
    void severalLapsOfAFile();
    void channels();

private:
    Outcome run(const QStringList &arguments) const;
    void write(const char *name, const QByteArray &content) const;

    QTemporaryDir m_dir;
};

namespace {

/// The headings of \a output, which name file and lap.
QStringList headings(const Outcome &outcome)
{
    static const QRegularExpression heading(QStringLiteral("^(.*: lap #\\d+) of"),
                                            QRegularExpression::MultilineOption);
    QStringList result;
    for (auto match = heading.globalMatch(outcome.output); match.hasNext();)
        result.append(match.next().captured(1));
    return result;
}

} // namespace

void tst_ZepimportChoice::initTestCase()
{
    const QDir dir(m_dir.path());
    QVERIFY(dir.mkpath(QStringLiteral("season/b/deep")));
    QVERIFY(dir.mkpath(QStringLiteral("season/a")));
    QVERIFY(dir.mkpath(QStringLiteral("empty")));
    QVERIFY(dir.mkpath(QStringLiteral("locked")));
    QVERIFY(QFile::setPermissions(dir.filePath(QStringLiteral("locked")), {}));
    for (const char *name :
         {"race.laps", "odd:2", "odd:2.laps", "odd.laps", "odd.laps:3", "season/y.laps",
          "season/x.laps", "season/.hidden.laps", "season/b/deep/z.laps", "season/a/z.laps"})
        write(name, raceSheet());
    write("season/notes.txt", "none of the plug-ins reads this\n");

    QVERIFY(dir.mkpath(QStringLiteral("partly/shut")));
    QVERIFY(dir.mkpath(QStringLiteral("partly/.hidden")));
    QVERIFY(dir.mkpath(QStringLiteral("latin/below")));
    write("partly/x.laps", raceSheet());
    write("latin/x.laps", raceSheet());
    for (const char *folder : {"partly/shut", "partly/.hidden"})
        QVERIFY(QFile::setPermissions(dir.filePath(QLatin1String(folder)), {}));
    QVERIFY(QFile::link(QStringLiteral(".."), dir.filePath(QStringLiteral("latin/loop"))));
    const std::string latin = dir.filePath(QStringLiteral("latin/")).toStdString();
    for (const char *name : {"N\xfcrburg.laps", "N\xfcrburg.txt", "below/N\xfcrburg.laps"}) {
        std::ofstream file(latin + name);
        file << raceSheet().constData();
        QVERIFY(file.flush().good());
    }
}

void tst_ZepimportChoice::cleanupTestCase()
{
    // Qt does not see all of it.
    std::filesystem::remove_all(m_dir.filePath(QStringLiteral("latin")).toStdString());
}

Outcome tst_ZepimportChoice::run(const QStringList &arguments) const
{
    ZepimportProcess process;
    process.arguments = arguments;
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    process.folder = m_dir.path();
    return process.run();
}

void tst_ZepimportChoice::write(const char *name, const QByteArray &content) const
{
    QFile file(m_dir.filePath(QString::fromUtf8(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void tst_ZepimportChoice::files_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("shown");

    QTest::newRow("file") << QStringList{"race.laps"} << QStringList{"race.laps: lap #3"};
    QTest::newRow("file and lap") << QStringList{"race.laps:1"} << QStringList{"race.laps: lap #1"};
    QTest::newRow("its own choice wins")
        << QStringList{"--lap", "1", "race.laps", "race.laps:5", "race.laps:best"}
        << QStringList{"race.laps: lap #1", "race.laps: lap #5", "race.laps: lap #3"};
    QTest::newRow("several laps") << QStringList{"race.laps:4,1-2"}
                                  << QStringList{"race.laps: lap #4", "race.laps: lap #1",
                                                 "race.laps: lap #2"};
    QTest::newRow("colon in the name") << QStringList{"odd:2.laps", "odd:2.laps:5"}
                                       << QStringList{"odd:2.laps: lap #3", "odd:2.laps: lap #5"};
    QTest::newRow("folder, by name")
        << QStringList{"season"} << QStringList{"season/x.laps: lap #3", "season/y.laps: lap #3"};
    QTest::newRow("this folder") << QStringList{
        "."} << QStringList{"odd.laps: lap #3", "odd:2.laps: lap #3", "race.laps: lap #3"};
    QTest::newRow("folder with a choice")
        << QStringList{"season/:2"}
        << QStringList{"season/x.laps: lap #2", "season/y.laps: lap #2"};
    QTest::newRow("folders below, too")
        << QStringList{"-r", "season"}
        << QStringList{"season/a/z.laps: lap #3", "season/b/deep/z.laps: lap #3",
                       "season/x.laps: lap #3", "season/y.laps: lap #3"};
    QTest::newRow("folders and files in the order given")
        << QStringList{"season/b/deep", "race.laps", "season/a"}
        << QStringList{"season/b/deep/z.laps: lap #3", "race.laps: lap #3",
                       "season/a/z.laps: lap #3"};
}

void tst_ZepimportChoice::files()
{
    QFETCH(QStringList, arguments);
    const Outcome outcome = run(QStringList{"channels", "--quiet"} + arguments);
    QTEST(headings(outcome), "shown");
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ZepimportChoice::problem_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("exitCode");

    const QString formats = QStringLiteral("(supported: *.laps, *.mute, *.hush)");
    QTest::newRow("lap that does not exist")
        << QStringList{"race.laps:7"} << "race.laps: there is no lap #7; choose from 1 to 6" << 2;
    QTest::newRow("choice without sense") << QStringList{"race.laps:bset"}
                                          << "race.laps:bset: 'bset' is not a choice of laps; use "
                                             "best, last, all, or numbers such as 3, 3,5-7 or 3-"
                                          << 2;
    QTest::newRow("no such file, with a lap")
        << QStringList{"none.laps:2"} << "none.laps: no such file; check the path" << 1;
    QTest::newRow("no such file, with a colon")
        << QStringList{"none:x.laps"} << "none:x.laps: no such file; check the path" << 1;
    // It is read as a file, whose name no format fits.
    QTest::newRow("a file of that very name")
        << QStringList{"odd.laps:3"}
        << QString(QLatin1String("odd.laps:3: unsupported file type ") % formats) << 1;
    QTest::newRow("empty folder") << QStringList{"empty"}
                                  << QString(QLatin1String("empty: no recordings in this folder ")
                                             % formats % QLatin1String("; -r includes subfolders"))
                                  << 1;
    QTest::newRow("empty folder, and none below")
        << QStringList{"-r", "empty"}
        << QString(QLatin1String("empty: no recordings in this folder ") % formats) << 1;
    QTest::newRow("folder that is not to be read")
        << QStringList{"locked"} << "locked: cannot be read; check the folder's permissions" << 1;
    QTest::newRow("unknown channel")
        << QStringList{"--channels", "gear,sped", "race.laps"}
        << "race.laps: there is no channel 'sped'; did you mean speed?" << 2;
}

void tst_ZepimportChoice::problem()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    QFETCH(int, exitCode);
    const Outcome outcome = run(QStringList{"channels"} + arguments);
    QCOMPARE(outcome.errors, QString(QLatin1String("zepimport: ") % error % QLatin1Char('\n')));
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, exitCode);

    const Outcome beside = run(QStringList{"channels"} + arguments + QStringList{"race.laps:3"});
    if (!arguments.contains(QStringLiteral("--channels")))
        QCOMPARE(headings(beside), QStringList{"race.laps: lap #3"});
    QCOMPARE(beside.exitCode, exitCode);
}

void tst_ZepimportChoice::nothingIsLeftOutOfAFolder_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("errors");

    const QString unreadable =
        QStringLiteral("partly/shut: cannot be read; check the folder's permissions");
    const QString unnamed = QStringLiteral("its name is not UTF-8; rename it");
    QTest::newRow("locked folder that is not asked for")
        << QStringList{"partly"} << QStringList{"partly/x.laps: lap #3"} << QStringList();
    QTest::newRow("locked folder below")
        << QStringList{"-r", "partly"} << QStringList{"partly/x.laps: lap #3"}
        << QStringList{unreadable};
    QTest::newRow("nothing but a locked folder")
        << QStringList{"-r", "partly/shut/"} << QStringList() << QStringList{unreadable};
    QTest::newRow("name that is not UTF-8")
        << QStringList{"latin"} << QStringList{"latin/x.laps: lap #3"}
        << QStringList{QString::fromUtf8("latin/N\uFFFDrburg.laps: ") + unnamed};
    QTest::newRow("name that is not UTF-8, and no other")
        << QStringList{"latin/below"} << QStringList()
        << QStringList{QString::fromUtf8("latin/below/N\uFFFDrburg.laps: ") + unnamed};
    QTest::newRow("names that are not UTF-8, also below")
        << QStringList{"-r", "latin"} << QStringList{"latin/x.laps: lap #3"}
        << QStringList{QString::fromUtf8("latin/N\uFFFDrburg.laps: ") + unnamed,
                       QString::fromUtf8("latin/below/N\uFFFDrburg.laps: ") + unnamed};
}

void tst_ZepimportChoice::nothingIsLeftOutOfAFolder()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, errors);
    const Outcome outcome = run(QStringList{"channels"} + arguments);
    QTEST(headings(outcome), "shown");
    QString expected;
    for (const QString &error : errors)
        expected += QLatin1String("zepimport: ") % error % QLatin1Char('\n');
    QCOMPARE(outcome.errors, expected);
    QCOMPARE(outcome.exitCode, errors.isEmpty() ? 0 : 1);
}

void tst_ZepimportChoice::nameThatIsNotUtf8_data()
{
    QTest::addColumn<QString>("command");
    for (const char *command : {"channels", "check"})
        QTest::newRow(command) << command;
}

void tst_ZepimportChoice::nameThatIsNotUtf8()
{
    QFETCH(QString, command);
    ZepimportProcess process;
    process.program = QStringLiteral("/bin/bash");
    process.arguments =
        QStringList{"-c", QStringLiteral("exec \"$0\" \"$1\" latin/$'N\\xfcrburg.laps' race.laps"),
                    QStringLiteral(ZEPIMPORT_PATH), command};
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    process.folder = m_dir.path();
    const Outcome outcome = process.run();
    QCOMPARE(outcome.errors.section(QLatin1Char('\n'), 0, 0),
             QString::fromUtf8("zepimport: latin/N\uFFFDrburg.laps: its name is not UTF-8; rename "
                               "it"));
    QVERIFY2(outcome.output.startsWith(QLatin1String("race.laps: ")), qPrintable(outcome.output));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_ZepimportChoice::rowsOfTheTable()
{
    const QStringList rows =
        run({"laps", "--lap", "6,2", "race.laps"}).output.split(QLatin1Char('\n')).mid(8);
    // The titles, and the laps from 1 to 6.
    const QStringList all = raceTable().split(QLatin1Char('\n')).mid(8);
    QStringList expected{all.at(0), all.at(6), all.at(2)};
    // Without the unfinished lap, the kinds need less space.
    const int kind = all.at(0).indexOf(QLatin1String("Kind"));
    QVERIFY(kind > 0);
    for (QString &row : expected)
        row.remove(kind + int(strlen("timed")), int(strlen("unfinished") - strlen("timed")));
    QCOMPARE(rows, expected + QStringList{""});
}

void tst_ZepimportChoice::severalLapsOfAFile_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("channels") << "channels";
    QTest::newRow("info") << "info";
}

void tst_ZepimportChoice::severalLapsOfAFile()
{
    QFETCH(QString, command);
    const QString first = run({command, "race.laps:1"}).output;
    const QString second = run({command, "race.laps:5"}).output;
    QVERIFY(first.startsWith(QLatin1String("race.laps: lap #1")));
    QCOMPARE(run({command, "race.laps:1,5"}).output, QString(first % QLatin1Char('\n') % second));

    const auto json = [&](const char *file) {
        return QString(run({command, "--json", QString::fromUtf8(file)}).output).simplified();
    };
    QString both = json("race.laps:1");
    both.chop(2); // " ]"
    both += QLatin1String(", ") % json("race.laps:5").mid(2);
    QCOMPARE(json("race.laps:1,5"), both);
}

void tst_ZepimportChoice::channels()
{
    const Outcome outcome =
        run({"channels", "--channels", "LAP*,speed,dr?ver", "--channels=gear", "race.laps:3"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: race.laps: there is no channel 'dr?ver'; did you mean "
                            "driver?\n"));
    QCOMPARE(run({"channels", "--channels", "LAP*,speed,driver", "race.laps:3"}).output,
             QStringLiteral("race.laps: lap #3 of 6, timed, 1:05.123\n"
                            "Channel  Unit  Valid  Minimum     Mean  Maximum\n"
                            "speed    m/s       2       31     36.5       42\n"
                            "gear     -         3        1  2.66667        5\n"
                            "\n"
                            "Calculated\n"
                            "lapdist  m         3        0    10.25     20.5\n"));
}

NAPAMMUL_TEST(tst_ZepimportChoice)
#include "tst_zepimportchoice.moc"
