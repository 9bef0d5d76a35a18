#include "host/text/textwidth.h"
#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTest>

/// The command line, and how the output suits the place that it goes to.
class tst_ZepimportUsage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void wrongUse_data();
    void wrongUse();
    void filesAfterTwoDashes();
    void listOptionsTakeOneWord();
    void help_data();
    void help();
    void version();

    void terminal_data();
    void terminal();
    void noColours_data();
    void noColours();
    void fullDisk_data();
    void fullDisk();
    void outputLostAtTheEnd();
    void anyLocale();
    void units_data();
    void units();
    void unitsAreNotForPrograms();
    void oddNames_data();
    void oddNames();

private:
    ZepimportProcess process(const QStringList &arguments) const;

    QTemporaryDir m_dir;
};

void tst_ZepimportUsage::initTestCase()
{
    QFile file(m_dir.filePath(QStringLiteral("race.laps")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(raceSheet()), qint64(raceSheet().size()));
    QVERIFY(file.copy(m_dir.filePath(QStringLiteral("-dash.laps"))));
    QVERIFY2(zepimportCommands().contains(QStringLiteral("laps")), "--help lists no commands");
}

ZepimportProcess tst_ZepimportUsage::process(const QStringList &arguments) const
{
    ZepimportProcess result;
    result.arguments = arguments;
    result.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    result.folder = m_dir.path();
    return result;
}

void tst_ZepimportUsage::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");

    QTest::newRow("nothing") << QStringList() << "no command given; see zepimport --help";
    QTest::newRow("no such command")
        << QStringList{"draw", "race.laps"} << "there is no command 'draw'; see zepimport --help";
    QTest::newRow("mistyped command")
        << QStringList{"lap", "race.laps"}
        << "there is no command 'lap'; did you mean laps? See zepimport --help";
    QTest::newRow("no such option of the program")
        << QStringList{"--colour"} << "there is no option '--colour'; see zepimport --help";
    QTest::newRow("no file") << QStringList{"laps"}
                             << "FILE is required; see zepimport laps --help";
    QTest::newRow("no such option")
        << QStringList{"info", "--colour", "race.laps"}
        << "The following argument was not expected: --colour; see zepimport info --help";
    QTest::newRow("lap 0") << QStringList{"info", "--lap", "0", "race.laps"}
                           << "--lap: '0' is not a choice of laps; use best, last, all, or "
                              "numbers such as 3, 3,5-7 or 3-; see zepimport info --help";
    QTest::newRow("file that looks like an option")
        << QStringList{"laps", "-dash.laps"}
        << "'-dash.laps' is read as an option; for the file of this name, write ./-dash.laps; see "
           "zepimport laps --help";
    QTest::newRow("file for a command that takes none")
        << QStringList{"formats", "--", "-dash.laps"}
        << "The following argument was not expected: ./-dash.laps; see zepimport formats --help";
    QTest::newRow("path missing") << QStringList{
        "formats", "--plugin"} << "--plugin: 1 required PATH missing; see zepimport formats --help";
}

void tst_ZepimportUsage::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Outcome outcome = process(arguments).run();
    QCOMPARE(outcome.errors, QString(QLatin1String("zepimport: ") % error % QLatin1Char('\n')));
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, 2);
}

void tst_ZepimportUsage::filesAfterTwoDashes()
{
    const QString both = process({"laps", "--best", "race.laps", "./-dash.laps"}).run().output;
    QCOMPARE(both.count(QLatin1String(".laps")), 2);
    QCOMPARE(process({"laps", "--best", "race.laps", "--", "-dash.laps"}).run().output, both);
    QCOMPARE(process({"laps", "--best", "--", "race.laps", "-dash.laps"}).run().output, both);
    QCOMPARE(process({"laps", "--best", "-j", "2", "race.laps", "--", "-dash.laps"}).run().output,
             both);
}

void tst_ZepimportUsage::listOptionsTakeOneWord()
{
    const QString help = process({"channels", "--help"}).run().output;
    QVERIFY2(help.contains(QLatin1String("--channels NAMES  ")), qPrintable(help));
    const Outcome list = process({"channels", "--channels", "gear,speed", "race.laps"}).run();
    QCOMPARE(list.exitCode, 0);
    const Outcome words =
        process({"channels", "--channels", "gear", "race.laps", "--channels", "speed"}).run();
    QCOMPARE(words.output, list.output);
}

void tst_ZepimportUsage::help_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("contains");

    QTest::newRow("program") << QStringList{"--help"} << "zepimport COMMAND --help";
    for (const QString &command : zepimportCommands())
        QTest::newRow(qPrintable(command))
            << QStringList{command, "--help"}
            << QStringLiteral("Examples:\n  zepimport %1").arg(command);
}

void tst_ZepimportUsage::help()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, contains);
    const Outcome outcome = process(arguments).run();
    QVERIFY2(outcome.output.contains(contains), qPrintable(outcome.output));
    for (const QString &line : outcome.output.split(QLatin1Char('\n')))
        QVERIFY2(displayWidth(line) <= 80, qPrintable(line));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ZepimportUsage::version()
{
    const Outcome outcome = process({"--version"}).run();
    const QRegularExpression expected(QStringLiteral("^zepimport \\d+\\.\\d+\\.\\d+\n"
                                                     "Lap sheets 1\\.5, (/.*)\n$"));
    const QRegularExpressionMatch match = expected.match(outcome.output);
    QVERIFY2(match.hasMatch(), qPrintable(outcome.output));
    QCOMPARE(match.captured(1), QStringLiteral(LAPSHEET_PLUGIN_PATH));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);

    ZepimportProcess without = process({"--version"});
    without.environment = QStringList{"ZEP_PLUGIN_PATH=nowhere"};
    const QString output = without.run().output;
    QVERIFY2(output.endsWith(
                 QLatin1String("\nno import plug-in found (nowhere: no such file or folder)\n")),
             qPrintable(output));
}

void tst_ZepimportUsage::terminal_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("titles");

    QTest::newRow("wide") << 140
                          << "#  Lap  Stint  In stint  Kind            Time     Gap  Samples"
                             "  Top speed  Fuel used";
    QTest::newRow("80 columns")
        << 80 << "#  Lap  Stint  In stint  Kind            Time     Gap  Top speed  Fuel used";
    QTest::newRow("narrow") << 40 << "#  Lap  Kind            Time     Gap";
}

void tst_ZepimportUsage::terminal()
{
    QFETCH(int, width);
    QFETCH(QString, titles);
    ZepimportProcess coloured = process({"laps", "race.laps"});
    coloured.terminalWidth = width;
    const Outcome outcome = coloured.run();
    QCOMPARE(outcome.exitCode, 0);
    const QString bold = QStringLiteral("\033[1m%1\033[0m\n");
    QVERIFY2(outcome.output.startsWith(bold.arg(QStringLiteral("race.laps"))),
             qPrintable(outcome.output));
    QVERIFY2(outcome.output.contains(bold.arg(titles)), qPrintable(outcome.output));
    QVERIFY(outcome.output.contains(QLatin1String("\n\033[1;32m3    2 ")));

    QString plain = outcome.output;
    plain.remove(QRegularExpression(QStringLiteral("\033\\[[0-9;]*m")));
    for (const QString &line : plain.split(QLatin1Char('\n')))
        QVERIFY2(displayWidth(line) <= width, qPrintable(line));
}

void tst_ZepimportUsage::noColours_data()
{
    QTest::addColumn<QString>("variable");
    QTest::newRow("asked for") << "NO_COLOR=1";
    QTest::newRow("asked for with nothing") << "NO_COLOR=";
    QTest::newRow("dumb terminal") << "TERM=dumb";
}

void tst_ZepimportUsage::noColours()
{
    QFETCH(QString, variable);
    ZepimportProcess plain = process({"laps", "race.laps"});
    plain.terminalWidth = 140;
    plain.environment.append(variable);
    QCOMPARE(plain.run().output, raceTable());
}

void tst_ZepimportUsage::fullDisk_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("laps") << QStringList{"laps", "race.laps"};
    QTest::newRow("help") << QStringList{"--help"};
    QTest::newRow("help of a command") << QStringList{"laps", "--help"};
    QTest::newRow("version") << QStringList{"--version"};
}

void tst_ZepimportUsage::fullDisk()
{
    QFETCH(QStringList, arguments);
    ZepimportProcess full = process(arguments);
    full.outputFile = QStringLiteral("/dev/full");
    const Outcome outcome = full.run();
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: the output could not be written; is the disk full?\n"));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_ZepimportUsage::outputLostAtTheEnd()
{
    ZepimportProcess lost = process({"laps", "race.laps"});
    lost.environment += QStringList{"LD_PRELOAD=" FAILING_DISK_PATH, "FAILING_CALL=close",
                                    "ASAN_OPTIONS=verify_asan_link_order=0"};
    lost.outputFile = m_dir.filePath(QStringLiteral("laps.txt"));
    const Outcome outcome = lost.run();
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: the output could not be written; is the disk full?\n"));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_ZepimportUsage::anyLocale()
{
    QVERIFY(QFile::copy(m_dir.filePath(QStringLiteral("race.laps")),
                        m_dir.filePath(QStringLiteral("zoë.laps"))));
    ZepimportProcess ascii = process({"laps", "zoë.laps"});
    ascii.environment.append(QStringLiteral("LC_ALL=C"));
    QString expected = raceTable();
    const Outcome outcome = ascii.run();
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output, expected.replace(QStringLiteral("race."), QStringLiteral("zoë.")));
}

void tst_ZepimportUsage::units_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("metric");
    QTest::addColumn<QString>("imperial");
    QTest::newRow("laps") << QStringList{"laps"} << "151.2 km/h 2.00 l"
                          << "94.0 mph 0.53 gal";
    QTest::newRow("laps, in processes")
        << QStringList{"laps", "-j", "2", "b.laps"} << "151.2 km/h 2.00 l"
        << "94.0 mph 0.53 gal";
    QTest::newRow("info") << QStringList{"info"} << "Air temperature 21.5 °C"
                          << "Air temperature 70.7 °F";
    QTest::newRow("channels") << QStringList{"channels"} << "speed km/h 2 111.6 131.4 151.2"
                              << "speed mph 2 69.345 81.6482 93.9513";
}

void tst_ZepimportUsage::units()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, metric);
    QFETCH(QString, imperial);
    const QString other = m_dir.filePath(QStringLiteral("b.laps"));
    QVERIFY(QFile::exists(other)
            || QFile::copy(m_dir.filePath(QStringLiteral("race.laps")), other));
    arguments += QStringLiteral("race.laps");
    const QString plain = process(arguments).run().output;
    QCOMPARE(process(arguments + QStringList{"--units", "raw"}).run().output, plain);
    for (const auto &[system, line] : {std::pair("metric", metric), {"imperial", imperial}}) {
        const Outcome outcome = process(arguments + QStringList{"--units", system}).run();
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY2(outcome.output.simplified().contains(line), qPrintable(outcome.output));
        QVERIFY(!plain.simplified().contains(line));
    }
}

void tst_ZepimportUsage::unitsAreNotForPrograms()
{
    for (const char *command : {"laps", "info", "channels"}) {
        QJsonArray recorded =
            QJsonDocument::fromJson(process({command, "race.laps", "--json"}).run().output.toUtf8())
                .array();
        const QJsonArray asked =
            QJsonDocument::fromJson(process({command, "race.laps", "--json", "--units", "imperial"})
                                        .run()
                                        .output.toUtf8())
                .array();
        QVERIFY(!recorded.isEmpty());
        if (command == QByteArray("info")) // has identifiers of its own in each import
            QCOMPARE(asked.first()[QLatin1String("values")],
                     recorded.first()[QLatin1String("values")]);
        else
            QCOMPARE(asked, recorded);
    }
}

void tst_ZepimportUsage::oddNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("right to left")
        << QStringLiteral("a\u202e.laps") << QStringLiteral("a\\u202e.laps");
    QTest::newRow("isolate") << QStringLiteral("a\u2066.laps") << QStringLiteral("a\\u2066.laps");
    QTest::newRow("without width")
        << QStringLiteral("a\u200b.laps") << QStringLiteral("a\\u200b.laps");
    QTest::newRow("line") << QStringLiteral("a\u2028.laps") << QStringLiteral("a\\u2028.laps");
}

void tst_ZepimportUsage::oddNames()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    const Outcome missing = process({"laps", name}).run();
    QCOMPARE(missing.errors,
             QString(QLatin1String("zepimport: ") % shown
                     % QLatin1String(": no such file; check the path\n")));
    QVERIFY(QFile::copy(m_dir.filePath(QStringLiteral("race.laps")), m_dir.filePath(name)));
    for (const char *command : {"laps", "info", "channels"}) {
        const Outcome outcome = process({command, name}).run();
        QVERIFY2(outcome.output.startsWith(shown), qPrintable(outcome.output));
        QVERIFY2(!outcome.output.contains(name), qPrintable(outcome.output));
    }
}

NAPAMMUL_TEST(tst_ZepimportUsage)
#include "tst_zepimportusage.moc"
