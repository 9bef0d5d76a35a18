#include "host/text/displaytext.h"
#include "tests/support/processlimit.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

/// What the commands show of recordings, which the shipped plug-in imports.
class tst_ZepimportRecordings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void laps_data();
    void laps();
    void tableIsItsJson();
    void lapsCutByThePits();
    void timedLapsAreCountedOnce();
    void nothingDriven();
    void channels();
    void info();
    void messages();
    void noRecording_data();
    void noRecording();

private:
    Outcome run(const QStringList &arguments) const;
    QJsonObject runJson(const QStringList &arguments) const;

    QTemporaryDir m_dir;
};

void tst_ZepimportRecordings::initTestCase()
{
    for (const QString &session : QStringList{"practice", "race"}) {
        QProcess generator;
        generator.start(QStringLiteral(IBTGEN_PATH),
                        {"--session", session, "--rate", "20", "--seed", "7",
                         m_dir.filePath(session + QStringLiteral(".ibt"))});
        QVERIFY(generator.waitForFinished(ProcessLimit));
        QCOMPARE(generator.exitCode(), 0);
    }
}

Outcome tst_ZepimportRecordings::run(const QStringList &arguments) const
{
    ZepimportProcess process;
    process.arguments = arguments;
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" NAPAMMUL_PLUGIN_PATH));
    process.folder = m_dir.path();
    return process.run();
}

QJsonObject tst_ZepimportRecordings::runJson(const QStringList &arguments) const
{
    const Outcome outcome = run(arguments + QStringList{"--json"});
    return QJsonDocument::fromJson(outcome.output.toUtf8()).array().first().toObject();
}

void tst_ZepimportRecordings::laps_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("session");
    QTest::newRow("practice") << "practice.ibt"
                              << "Practice";
    QTest::newRow("race") << "race.ibt"
                          << "Race";
}

void tst_ZepimportRecordings::laps()
{
    QFETCH(QString, name);
    QFETCH(QString, session);
    const QJsonObject json = runJson({"laps", name});
    QCOMPARE(json.value(QStringLiteral("session")).toString(), session);
    for (const char *key : {"track", "configuration", "car", "driver", "date"})
        QVERIFY2(json.value(QLatin1String(key)).isString(), key);

    const QJsonArray laps = json.value(QStringLiteral("laps")).toArray();
    QVERIFY(laps.size() > 4);
    QCOMPARE(laps.first()[QLatin1String("kind")].toString(), QStringLiteral("out-lap"));
    QCOMPARE(laps.last()[QLatin1String("kind")].toString(), QStringLiteral("unfinished"));
    double best = 1e9;
    double marked = 0;
    for (const QJsonValue &lap : laps) {
        const double time = lap[QLatin1String("time")].toDouble();
        if (lap[QLatin1String("kind")].toString() == QLatin1String("timed")) {
            QVERIFY(time > 20 && time < 200);
            // The ticks take as long as the lap.
            QVERIFY(std::abs(time * 20 - lap[QLatin1String("samples")].toInt()) < 2);
            QVERIFY(lap[QLatin1String("topSpeed")][QLatin1String("value")].toDouble() > 20);
            QVERIFY(lap[QLatin1String("fuelUsed")][QLatin1String("value")].toDouble() > 0);
            best = std::min(best, time);
        }
        if (lap[QLatin1String("best")].toBool())
            marked = time;
    }
    QCOMPARE(marked, best);
}

void tst_ZepimportRecordings::tableIsItsJson()
{
    const QJsonArray laps =
        runJson({"laps", "practice.ibt"}).value(QStringLiteral("laps")).toArray();
    const Outcome outcome = run({"laps", "practice.ibt"});
    QStringList rows = outcome.output.section(QStringLiteral("\n\n"), 1, 1)
                           .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(rows.size(), laps.size() + 1);
    const QRegularExpression spaces(QStringLiteral(" {2,}"));
    const QStringList titles = rows.takeFirst().trimmed().split(spaces);

    const auto quantity = [](const QJsonValue &json, int decimals) {
        return formatQuantity(
            json.isNull() ? std::nullopt
                          : std::optional<Quantity>({json[QLatin1String("value")].toDouble(),
                                                     json[QLatin1String("unit")].toString()}),
            decimals);
    };
    for (int i = 0; i < rows.size(); ++i) {
        const QJsonValue lap = laps.at(i);
        const QJsonValue time = lap[QLatin1String("time")];
        const QStringList cells = rows.at(i).trimmed().split(spaces);
        QCOMPARE(cells.size(), titles.size());
        const auto cell = [&](const char *title) {
            return cells.value(titles.indexOf(QLatin1String(title)), QStringLiteral("no column"));
        };
        const auto number = [&](const char *key) {
            return QString::number(lap[QLatin1String(key)].toInt());
        };
        QCOMPARE(cell("#"), QString::number(i + 1));
        QCOMPARE(cell("Lap"), number("lapInSession"));
        QCOMPARE(cell("Stint"), number("stint"));
        QCOMPARE(cell("In stint"), number("lapInStint"));
        QCOMPARE(cell("Kind"), lap[QLatin1String("kind")].toString());
        QCOMPARE(cell("Time"),
                 formatLapTime(time.isNull() ? std::nullopt
                                             : std::optional<int>(qRound(time.toDouble() * 1000))));
        QCOMPARE(cell("Gap") == QLatin1String("best"), lap[QLatin1String("best")].toBool());
        QCOMPARE(cell("Samples"), number("samples"));
        QCOMPARE(cell("Top speed"), quantity(lap[QLatin1String("topSpeed")], 1));
        QCOMPARE(cell("Fuel used"), quantity(lap[QLatin1String("fuelUsed")], 2));
    }
}

// The stop splits the lap: its first part has the time of the lap before, and the second one begins
// after the line.
void tst_ZepimportRecordings::lapsCutByThePits()
{
    const QJsonArray laps = runJson({"laps", "race.ibt"}).value(QStringLiteral("laps")).toArray();
    QStringList notes;
    for (const QJsonValue &lap : laps) {
        const QJsonValue part = lap[QLatin1String("part")];
        QCOMPARE(lap[QLatin1String("kind")].toString() == QLatin1String("partial"),
                 part.isObject());
        if (!part.isObject())
            continue;
        QVERIFY(!lap[QLatin1String("best")].toBool());
        QVERIFY(lap[QLatin1String("gap")].isNull());
        notes.append(QStringLiteral("#%1 from %2 m to %3 m")
                         .arg(QString::number(lap[QLatin1String("lap")].toInt()),
                              QString::number(part[QLatin1String("begin")].toDouble(), 'f', 0),
                              QString::number(part[QLatin1String("end")].toDouble(), 'f', 0)));
    }
    QCOMPARE(notes.size(), 2);
    QVERIFY2(notes.at(0).endsWith(QStringLiteral(" from 0 m to 45 m")), qPrintable(notes.at(0)));
    QVERIFY2(notes.at(1).contains(QStringLiteral(" from 47 m to 84")), qPrintable(notes.at(1)));
    const Outcome all = run({"laps", "race.ibt"});
    QCOMPARE(all.output.section(QStringLiteral("\n\n"), 2),
             QStringLiteral("Recorded in part: %1. The times of partial laps are not compared.\n"
                            "Laps left out, because the car entered the pits: 1 between #3 and "
                            "#4.\n")
                 .arg(notes.join(QStringLiteral(", "))));
    const QRegularExpression feet(
        QStringLiteral("\\nRecorded in part: #4 from \\d ft to 14\\d ft, #5 from 15\\d ft to "));
    QVERIFY(feet.match(run({"laps", "race.ibt", "--units", "imperial"}).output).hasMatch());
    QVERIFY(
        !run({"laps", "race.ibt", "--lap", "1,3,6"}).output.contains(QLatin1String("Laps left")));
}

void tst_ZepimportRecordings::timedLapsAreCountedOnce()
{
    int timed = 0;
    const QJsonObject file = runJson({"laps", "race.ibt"});
    for (const QJsonValue lap : file.value(QStringLiteral("laps")).toArray()) {
        if (lap[QLatin1String("kind")].toString() == QLatin1String("timed"))
            ++timed;
    }
    QCOMPARE(timed, 4);
    QCOMPARE(runJson({"laps", "--best", "race.ibt"}).value(QStringLiteral("timedLaps")).toInt(),
             timed);
}

void tst_ZepimportRecordings::nothingDriven()
{
    QFile whole(m_dir.filePath(QStringLiteral("practice.ibt")));
    QFile damaged(m_dir.filePath(QStringLiteral("nobody.ibt")));
    QVERIFY(whole.open(QIODevice::ReadOnly) && damaged.open(QIODevice::WriteOnly));
    // No driver is named for this car.
    const QByteArray bytes =
        whole.readAll().replace("\n DriverCarIdx: 3\n", "\n DriverCarIdx: 9\n");
    QCOMPARE(damaged.write(bytes), qint64(bytes.size()));
    damaged.close();
    for (const char *options : {"laps", "laps --json", "laps --best", "laps --best --json"}) {
        const Outcome outcome = run(QString::fromLatin1(options).split(QLatin1Char(' '))
                                    + QStringList{QStringLiteral("nobody.ibt")});
        QCOMPARE(outcome.errors,
                 QStringLiteral("zepimport: nobody.ibt: contains no lap; zepimport check says "
                                "whether it is damaged\n"));
        QCOMPARE(outcome.exitCode, 0);
    }
}

void tst_ZepimportRecordings::channels()
{
    const QJsonObject json = runJson({"channels", "--lap", "2", "practice.ibt"});
    QCOMPARE(json.value(QStringLiteral("lap")).toInt(), 2);
    const QJsonArray channels = json.value(QStringLiteral("channels")).toArray();
    QVERIFY(channels.size() > 200);
    QStringList names;
    for (const QJsonValue &channel : channels) {
        names.append(channel[QLatin1String("name")].toString());
        QVERIFY(channel[QLatin1String("unit")].toString() != QLatin1String("%"));
        if (channel[QLatin1String("valid")].toInt() == 0)
            continue;
        const double mean = channel[QLatin1String("mean")].toDouble();
        QVERIFY(channel[QLatin1String("minimum")].toDouble() <= mean);
        QVERIFY(channel[QLatin1String("maximum")].toDouble() >= mean);
    }
    for (const char *name : {"speed", "fuellevel", "fuelweight", "lapdistpct"})
        QVERIFY2(names.contains(QLatin1String(name)), name);
    QCOMPARE(run({"channels", "--lap", "2", "practice.ibt"}).output.count(QLatin1Char('\n')),
             channels.size() + 2);
}

void tst_ZepimportRecordings::info()
{
    const Outcome outcome = run({"info", "--lap", "2", "practice.ibt"});
    for (const char *line : {"\nSource ", "\nPlug-in ", "\nTrack length ", "\nMaximum fuel level ",
                             "\nSession name ", "\nCalculated values\nDateTime "})
        QVERIFY2(outcome.output.contains(QLatin1String(line)), line);
    QVERIFY(outcome.output.startsWith(QLatin1String("practice.ibt: lap #2 of ")));
}

void tst_ZepimportRecordings::messages()
{
    const Outcome outcome = run({"laps", "--verbose", "practice.ibt"});
    QStringList lines = outcome.errors.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : qAsConst(lines))
        QVERIFY2(line.contains(QLatin1String("practice.ibt")), qPrintable(line));
    const QRegularExpression expected(
        QStringLiteral("Importing file practice\\.ibt .*\n.*Using format .*\n.*Done in \\d+ ms"));
    QVERIFY2(expected.match(outcome.errors).hasMatch(), qPrintable(outcome.errors));
    QCOMPARE(run({"laps", "practice.ibt"}).errors, QString());
}

void tst_ZepimportRecordings::noRecording_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    QTest::newRow("empty") << QByteArray() << "Error reading irsdk_header";
    QTest::newRow("text") << QByteArray("Dear diary\n") << "Error reading irsdk_header";
    QTest::newRow("zeros up to the second header")
        << QByteArray(112, '\0') << "Error reading irsdk_diskSubHeader";
}

void tst_ZepimportRecordings::noRecording()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    QFile bad(m_dir.filePath(QStringLiteral("bad.ibt")));
    QVERIFY(bad.open(QIODevice::WriteOnly));
    QCOMPARE(bad.write(content), qint64(content.size()));
    bad.close();
    const Outcome outcome = run({"laps", "--quiet", "bad.ibt", "practice.ibt"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: bad.ibt: [ZEP iRacing ibt import plugin plugin] "
                            "IBT import error:  %1; check that the file is a complete "
                            "\"iRacing binary telemetry (*.ibt)\"\n")
                 .arg(reason));
    QVERIFY(outcome.output.startsWith(QLatin1String("practice.ibt\n")));
    QCOMPARE(outcome.exitCode, 1);
}

NAPAMMUL_TEST(tst_ZepimportRecordings)
#include "tst_zepimportrecordings.moc"
