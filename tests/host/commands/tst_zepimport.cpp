#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/stat.h>

/// What the commands show of laps that a test wrote down, and of files that give none.
class tst_Zepimport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void laps();
    void lapsAsJson();
    void info();
    void infoAsJson();
    void channels();
    void channelsAsJson();
    void infinityAsJson();
    void chosenLap();
    void lapThatDoesNotExist();

    void failingFile_data();
    void failingFile();
    void oneFileOfSeveralFails();
    void jsonOfSeveralFiles();
    void verbose();
    void errorBesideLaps();

private:
    Outcome run(const QStringList &arguments) const;
    void write(const char *name, const QByteArray &content) const;

    QTemporaryDir m_dir;
};

namespace {

QJsonArray parsed(const Outcome &outcome)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(outcome.output.toUtf8(), &error);
    if (!document.isArray())
        qWarning("%s", qPrintable(error.errorString()));
    return document.array();
}

QJsonValue fromJson(const char *text)
{
    return QJsonDocument::fromJson(QByteArray("[") + text + "]").array().first();
}

} // namespace

void tst_Zepimport::initTestCase()
{
    write("race.laps", raceSheet());
    write("short.laps", "lap|1|1|60000|1|1|1\nchannel|gear||3\n");
    write("broken.laps", "message|0|Reading the sheet\nmessage|-2|Line 7 makes no sense\n");
    write("patchy.laps", "message|-2|Lap 2 is lost\nlap|1|1|60000|1|1|1\nchannel|gear||3\n");
    write("nothing.mute", "");
    write("notes.txt", "");
    write("locked.laps", raceSheet());
    QVERIFY(QFile::setPermissions(m_dir.filePath(QStringLiteral("locked.laps")), {}));
    QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("folder.laps")));
    QCOMPARE(
        mkfifo(QFile::encodeName(m_dir.filePath(QStringLiteral("pipe.laps"))).constData(), 0600),
        0);
}

Outcome tst_Zepimport::run(const QStringList &arguments) const
{
    ZepimportProcess process;
    process.arguments = arguments;
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    process.folder = m_dir.path();
    return process.run();
}

void tst_Zepimport::write(const char *name, const QByteArray &content) const
{
    QFile file(m_dir.filePath(QString::fromUtf8(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void tst_Zepimport::laps()
{
    const Outcome outcome = run({"laps", "race.laps"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output, raceTable());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_Zepimport::lapsAsJson()
{
    const QJsonArray files = parsed(run({"laps", "--json", "race.laps"}));
    QCOMPARE(files.size(), 1);
    QJsonObject file = files.first().toObject();
    const QJsonArray laps = file.take(QStringLiteral("laps")).toArray();
    QCOMPARE(QJsonValue(file), fromJson(R"({"file": "race.laps", "track": "Lakeside",
        "configuration": " Short circuit", "car": "Formula Junior", "driver": "Zoë Ångström",
        "session": "race", "date": "2024-05-31T18:30:00.000", "dateOfFile": false})"));
    QCOMPARE(laps.size(), 6);
    QCOMPARE(laps.at(0), fromJson(R"({"lap": 1, "lapInSession": 0, "stint": 1, "lapInStint": 0,
        "kind": "out-lap", "time": null, "gap": null, "best": false, "samples": 3,
        "part": null, "missingBefore": 0, "topSpeed": {"value": 20.5, "unit": "m/s"},
        "fuelUsed": {"value": 0.5, "unit": "l"}, "fuelAdded": null})"));
    QCOMPARE(laps.at(1), fromJson(R"({"lap": 2, "lapInSession": 1, "stint": 1, "lapInStint": 1,
        "kind": "timed", "time": 65.623, "gap": 0.5, "best": false, "samples": 4,
        "part": null, "missingBefore": 0, "topSpeed": {"value": 41.26, "unit": "m/s"},
        "fuelUsed": null, "fuelAdded": null})"));
    QCOMPARE(laps.at(2).toObject().value(QStringLiteral("best")), QJsonValue(true));
    QCOMPARE(laps.at(2).toObject().value(QStringLiteral("gap")), QJsonValue(0));
    QCOMPARE(laps.at(5), fromJson(R"({"lap": 6, "lapInSession": 6, "stint": 2, "lapInStint": 0,
        "kind": "empty", "time": null, "gap": null, "best": false, "samples": 0,
        "part": null, "missingBefore": 0, "topSpeed": null, "fuelUsed": null, "fuelAdded": null})"));
}

void tst_Zepimport::info()
{
    const Outcome outcome = run({"info", "race.laps"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output, QStringLiteral(R"(race.laps: lap #3 of 6, timed, 1:05.123
Track               Lakeside
Configuration       Short circuit
Car                 Formula Junior
Car id              -
Driver              Zoë Ångström
Session             race
Date                2024-05-31 18:30:00
Kind                timed
Lap time            1:05.123
Completed           yes
Lap in session      2
Stint in session    1
Lap in stint        2
Samples             3
Channels            5
Lap id              -
Stint id            -
Session id          -
Source              -
Plug-in             -
File                -

Values
Air temperature     21.5 C
Club                -
Licence color       #ff0080
Maximum fuel level  50 l
)"));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_Zepimport::infoAsJson()
{
    QJsonObject file = parsed(run({"info", "--json", "race.laps"})).first().toObject();
    QCOMPARE(QJsonValue(file), fromJson(R"({"file": "race.laps", "lap": 3,
        "header": {"track": "Lakeside", "configuration": " Short circuit",
            "car": "Formula Junior", "carId": null, "driver": "Zoë Ångström", "session": "race",
            "date": "2024-05-31T18:30:00.000", "kind": "timed", "time": 65.123,
            "completed": true, "lapInSession": 2, "stint": 1, "lapInStint": 2, "samples": 3,
            "channels": 5, "lapId": null, "stintId": null, "sessionId": null, "source": null,
            "plugin": null, "fileName": null},
        "values": {"Air temperature": {"value": 21.5, "unit": "C"},
            "Club": {"value": null, "unit": ""},
            "Licence color": {"value": "#ff0080", "unit": ""},
            "Maximum fuel level": {"value": 50, "unit": "l"}},
        "calculatedValues": {}})"));
}

void tst_Zepimport::channels()
{
    const Outcome outcome = run({"channels", "race.laps"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output, QStringLiteral(R"(race.laps: lap #3 of 6, timed, 1:05.123
Channel    Unit  Valid  Minimum     Mean  Maximum
dead       C         0        -        -        -
fuellevel  l         3   45.999  46.9997       48
gear       -         3        1  2.66667        5
speed      m/s       2       31     36.5       42

Calculated
lapdist    m         3        0    10.25     20.5
)"));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_Zepimport::channelsAsJson()
{
    const QJsonObject file = parsed(run({"channels", "--json", "race.laps"})).first().toObject();
    QCOMPARE(file.value(QStringLiteral("lap")), QJsonValue(3));
    const QJsonArray channels = file.value(QStringLiteral("channels")).toArray();
    QCOMPARE(channels.size(), 5);
    QCOMPARE(channels.at(0), fromJson(R"({"name": "dead", "unit": "C", "calculated": false,
        "valid": 0, "minimum": null, "mean": null, "maximum": null})"));
    QCOMPARE(channels.at(3), fromJson(R"({"name": "speed", "unit": "m/s", "calculated": false,
        "valid": 2, "minimum": 31, "mean": 36.5, "maximum": 42})"));
    QCOMPARE(channels.at(4), fromJson(R"({"name": "lapdist", "unit": "m", "calculated": true,
        "valid": 3, "minimum": 0, "mean": 10.25, "maximum": 20.5})"));
}

void tst_Zepimport::infinityAsJson()
{
    write("infinite.laps", "lap|1|1|60000|1|1|1\nchannel|gear||1 -inf 3\n");
    const QJsonObject file =
        parsed(run({"channels", "--json", "infinite.laps"})).first().toObject();
    QCOMPARE(file.value(QStringLiteral("channels")).toArray().first(),
             fromJson(R"({"name": "gear", "unit": "", "calculated": false,
        "valid": 3, "minimum": "-inf", "mean": "-inf", "maximum": 3})"));
}

void tst_Zepimport::chosenLap()
{
    QCOMPARE(run({"channels", "--lap", "5", "race.laps"}).output,
             QStringLiteral("race.laps: lap #5 of 6, unfinished\n"
                            "Channel  Unit  Valid  Minimum  Mean  Maximum\n"
                            "gear     -         2        1   1.5        2\n"));
    QVERIFY(run({"info", "race.laps", "--lap=6"})
                .output.startsWith(QStringLiteral("race.laps: lap #6 of 6, empty\n")));
}

void tst_Zepimport::lapThatDoesNotExist()
{
    const Outcome outcome = run({"channels", "--lap", "2", "short.laps", "race.laps"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: short.laps: there is no lap #2; the only lap is #1\n"
                            "zepimport: 1 of 2 files done, failed: short.laps\n"));
    QVERIFY(outcome.output.startsWith(QStringLiteral("race.laps: lap #2 of 6")));
    QCOMPARE(outcome.exitCode, 2);
}

void tst_Zepimport::failingFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("error");

    QTest::newRow("missing") << "none.laps"
                             << "none.laps: no such file; check the path";
    QTest::newRow("folder") << "folder.laps"
                            << "folder.laps: no recordings in this folder "
                               "(supported: *.laps, *.mute, *.hush); -r includes subfolders";
    QTest::newRow("pipe") << "pipe.laps"
                          << "pipe.laps: is not a regular file; copy its contents to one";
    QTest::newRow("locked") << "locked.laps"
                            << "locked.laps: cannot be read (Permission denied); "
                               "check its permissions";
    QTest::newRow("no format fits")
        << "notes.txt"
        << "notes.txt: unsupported file type (supported: *.laps, *.mute, *.hush)";
    QTest::newRow("error of the plug-in")
        << "broken.laps"
        << "broken.laps: [Lap sheets plugin] Line 7 makes no sense; "
           "check that the file is a complete \"Lap sheet (*.laps)\"";
    QTest::newRow("plug-in says nothing")
        << "nothing.mute"
        << "nothing.mute: contains no laps; "
           "check that the file is a complete \"Silent sheet (*.mute *.hush)\"";
}

void tst_Zepimport::failingFile()
{
    QFETCH(QString, file);
    QFETCH(QString, error);
    const Outcome outcome = run({"laps", file});
    QCOMPARE(outcome.errors, QString(QLatin1String("zepimport: ") % error % QLatin1Char('\n')));
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, 1);
}

void tst_Zepimport::oneFileOfSeveralFails()
{
    const Outcome outcome = run({"laps", "race.laps", "none.laps", "race.laps"});
    QCOMPARE(outcome.output, QString(raceTable() % QLatin1Char('\n') % raceTable()));
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: none.laps: no such file; check the path\n"
                            "zepimport: 2 of 3 files done, failed: none.laps\n"));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_Zepimport::jsonOfSeveralFiles()
{
    const Outcome outcome = run({"laps", "--json", "race.laps", "none.laps", "short.laps"});
    const QJsonArray files = parsed(outcome);
    QCOMPARE(files.size(), 2);
    QCOMPARE(files.at(1).toObject().value(QStringLiteral("file")), QJsonValue("short.laps"));
    QCOMPARE(outcome.exitCode, 1);

    const Outcome nothing = run({"laps", "--json", "none.laps"});
    QCOMPARE(nothing.output, QStringLiteral("[\n]\n"));
    QCOMPARE(nothing.exitCode, 1);
}

void tst_Zepimport::verbose()
{
    const Outcome outcome = run({"laps", "-v", "race.laps"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: race.laps: [Lap sheets plugin] Reading the sheet\n"));
    QCOMPARE(outcome.output, raceTable());
    QCOMPARE(run({"laps", "broken.laps", "--verbose"}).errors.count(QLatin1Char('\n')), 2);
}

void tst_Zepimport::errorBesideLaps()
{
    const Outcome outcome = run({"laps", "patchy.laps"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: patchy.laps: [Lap sheets plugin] Lap 2 is lost\n"));
    QVERIFY(outcome.output.contains(QLatin1String("1:00.000")));
    QCOMPARE(outcome.exitCode, 0);
}

NAPAMMUL_TEST(tst_Zepimport)
#include "tst_zepimport.moc"
