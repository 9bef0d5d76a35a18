#include "tests/support/processlimit.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

/// What `zepimport compare` shows of two laps.
class tst_ZepimportCompare : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void tableOfStretches();
    void chartsOnATerminal();
    void noChartsWhereThereIsNoRoom();
    void lapsOfOneFileOrTwo_data();
    void lapsOfOneFileOrTwo();
    void json();
    void placesAsCsv();
    void placesOnStandardOutput();
    void existingFileIsKeptUnlessForced();
    void differenceAtTheLineIsThatOfTheTimes_data();
    void differenceAtTheLineIsThatOfTheTimes();
    void units();
    void refused_data();
    void refused();

private:
    QByteArray content(const char *name) const;
    Outcome run(const QStringList &arguments, int terminalWidth = 0) const;

    QTemporaryDir m_dir;
};

namespace {

/// A lap of 400 m on \a track with a tick every 4 m, each at the second that \a clock tells.
QByteArray lapSheet(const QByteArray &track, int milliseconds, double (*clock)(double),
                    double length = 400)
{
    constexpr int ticks = 100;
    QByteArray distances;
    QByteArray fractions;
    QByteArray times;
    QByteArray speeds;
    for (int tick = 0; tick < ticks; ++tick) {
        const double distance = (tick + 0.5) * length / ticks;
        distances += QByteArray::number(distance) + ' ';
        fractions += QByteArray::number(distance / length, 'g', 17) + ' ';
        times += QByteArray::number(100 + clock(distance), 'g', 17) + ' ';
        const double around = length / 1000;
        const double seconds = clock(distance + around) - clock(distance - around);
        speeds += QByteArray::number(2 * around / seconds) + ' ';
    }
    return "lap|1|1|" + QByteArray::number(milliseconds) + "|1|1|1\ntrack|" + track
        + "\nchannel|lapdist|m|" + distances.trimmed() + "\nchannel|lapdistpct|pu|"
        + fractions.trimmed() + "\nchannel|sessiontime|s|" + times.trimmed()
        + "\nchannel|speed|m/s|" + speeds.trimmed() + '\n';
}

double evenClock(double distance)
{
    return distance / 20;
}

/// Loses 1 s in the first half, and gains 0.4 s back in the second.
double otherClock(double distance)
{
    return distance < 200 ? distance / 20 * 1.1 : 11 + (distance - 200) / 20 * 0.96;
}

} // namespace

void tst_ZepimportCompare::initTestCase()
{
    const auto write = [this](const char *name, const QByteArray &content) {
        QFile file(m_dir.filePath(QString::fromUtf8(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    };
    const QByteArray even = lapSheet("Lakeside", 20000, evenClock);
    write("two.laps", lapSheet("Lakeside", 20600, otherClock) + even);
    write("even.laps", even);
    write("hillside.laps", lapSheet("Hillside", 20000, evenClock));
    write("long.laps", lapSheet("Lakeside", 20250, evenClock, 405));
    write("endless.laps",
          lapSheet(
              "Lakeside", 20000, [](double distance) { return distance / 5e18; }, 1e20));
    write("short.laps",
          "lap|1|1|3599000|1|1|1\ntrack|Lakeside\nchannel|speed|m/s|1 2\n"
          "lap|1|1|20000|2|1|2\ntrack|Lakeside\nchannel|speed|m/s|1 2\n");

    QProcess generator;
    generator.start(QStringLiteral(IBTGEN_PATH),
                    {"--seed", "7", m_dir.filePath(QStringLiteral("practice.ibt"))});
    QVERIFY(generator.waitForFinished(ProcessLimit));
    QCOMPARE(generator.exitCode(), 0);
}

QByteArray tst_ZepimportCompare::content(const char *name) const
{
    QFile file(m_dir.filePath(QString::fromUtf8(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Outcome tst_ZepimportCompare::run(const QStringList &arguments, int terminalWidth) const
{
    ZepimportProcess process;
    process.arguments = QStringList{"compare"} + arguments;
    process.environment.append(
        QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH ":" NAPAMMUL_PLUGIN_PATH));
    process.folder = m_dir.path();
    process.terminalWidth = terminalWidth;
    return process.run();
}

void tst_ZepimportCompare::tableOfStretches()
{
    const Outcome outcome = run({"two.laps:best", "two.laps:1"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output, QStringLiteral(R"(A  two.laps: lap #2, 0:20.000
B  two.laps: lap #1, 0:20.600

At the finish line, B is 0.600 s slower than A.

 From     To  Difference  Mean speed A  Mean speed B
  0 m  202 m    +0.996 s      20.0 m/s      18.2 m/s
202 m  400 m    -0.396 s      20.0 m/s      20.8 m/s
)"));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ZepimportCompare::chartsOnATerminal()
{
    const Outcome outcome = run({"two.laps:best", "two.laps:1"}, 80);
    QCOMPARE(outcome.errors, QString());
    QVERIFY(outcome.output.contains(QStringLiteral("Time difference, s (above 0: B is behind A)")));
    QVERIFY(outcome.output.contains(QStringLiteral("Speed, m/s  \033[36m━━ A\033[0m")));
    static const QRegularExpression escape(QStringLiteral("\033\\[\\d*m"));
    for (QString line : outcome.output.split(QLatin1Char('\n')))
        QVERIFY2(line.remove(escape).size() <= 80, qPrintable(line));
}

void tst_ZepimportCompare::noChartsWhereThereIsNoRoom()
{
    const Outcome outcome = run({"two.laps:best", "two.laps:1"}, 10);
    QCOMPARE(outcome.exitCode, 0);
    QVERIFY(!outcome.output.contains(QStringLiteral("Speed, m/s")));
}

void tst_ZepimportCompare::lapsOfOneFileOrTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");

    QTest::newRow("best laps of two files")
        << QStringList{"two.laps", "even.laps"} << "two.laps: lap #2, 0:20.000"
        << "even.laps: lap #1, 0:20.000";
    QTest::newRow("two laps of one file")
        << QStringList{"two.laps", "--lap", "1,2"} << "two.laps: lap #1, 0:20.600"
        << "two.laps: lap #2, 0:20.000";
    QTest::newRow("a lap of each")
        << QStringList{"even.laps:1", "two.laps:1"} << "even.laps: lap #1, 0:20.000"
        << "two.laps: lap #1, 0:20.600";
}

void tst_ZepimportCompare::lapsOfOneFileOrTwo()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, first);
    QFETCH(QString, second);

    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output.section(QLatin1Char('\n'), 0, 0), QStringLiteral("A  ") + first);
    QCOMPARE(outcome.output.section(QLatin1Char('\n'), 1, 1), QStringLiteral("B  ") + second);
}

void tst_ZepimportCompare::json()
{
    const Outcome outcome = run({"two.laps:2", "two.laps:1", "--grid", "100", "--json"});
    const QJsonObject object = QJsonDocument::fromJson(outcome.output.toUtf8()).object();
    const QJsonArray laps = object.value(QStringLiteral("laps")).toArray();
    QCOMPARE(laps.size(), 2);
    QCOMPARE(laps.at(0).toObject(),
             (QJsonObject{{"file", "two.laps"}, {"lap", 2}, {"time", 20.0}}));
    QCOMPARE(object.value(QStringLiteral("stretches")).toArray().size(), 2);
    const QJsonArray points = object.value(QStringLiteral("points")).toArray();
    QCOMPARE(points.size(), 5);
    QCOMPARE(points.at(1).toObject().value(QStringLiteral("distance")).toDouble(), 100.0);
    QCOMPARE(points.at(1).toObject().value(QStringLiteral("difference")).toDouble(), 0.5);
    QCOMPARE(points.at(4).toObject().value(QStringLiteral("distance")).toDouble(), 400.0);
    QCOMPARE(points.at(4).toObject().value(QStringLiteral("difference")),
             object.value(QStringLiteral("difference")));
}

void tst_ZepimportCompare::placesAsCsv()
{
    const Outcome outcome =
        run({"two.laps:2", "two.laps:1", "--grid", "200", "--output", "places.csv"});
    QCOMPARE(outcome.errors, QString());
    QVERIFY(outcome.output.startsWith(QLatin1String("A  two.laps")));

    const QList<QByteArray> lines = content("places.csv").split('\n');
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines.at(0), QByteArray("distance,difference,time_a,time_b,speed_a,speed_b"));
    QCOMPARE(lines.at(1), QByteArray("m,s,s,s,m/s,m/s"));
    QCOMPARE(lines.at(2).left(8), QByteArray("0,0,0,0,"));
    const QList<QByteArray> middle = lines.at(3).split(',');
    QCOMPARE(middle.size(), 6);
    QCOMPARE(middle.at(0), QByteArray("200"));
    QCOMPARE(middle.at(1).toDouble(), middle.at(3).toDouble() - middle.at(2).toDouble());
    QCOMPARE(middle.at(2).toDouble(), 10.0);
    QCOMPARE(middle.at(4).toDouble(), 20.0);
    QCOMPARE(lines.at(4).left(4), QByteArray("400,"));
    QCOMPARE(lines.at(5), QByteArray());
}

void tst_ZepimportCompare::placesOnStandardOutput()
{
    const Outcome outcome = run({"two.laps:2", "two.laps:1", "--grid", "200", "-o", "-"});
    QCOMPARE(outcome.errors, QString());
    QVERIFY(outcome.output.startsWith(QLatin1String("distance,")));
    QCOMPARE(outcome.output.count(QLatin1Char('\n')), 5);
}

void tst_ZepimportCompare::existingFileIsKeptUnlessForced()
{
    const QStringList arguments{"two.laps:2", "two.laps:1", "-o", "kept.csv"};
    QFile file(m_dir.filePath(QStringLiteral("kept.csv")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("mine"), qint64(4));
    file.close();

    QCOMPARE(run(arguments).exitCode, 1);
    QCOMPARE(content("kept.csv"), QByteArray("mine"));
    QCOMPARE(run(arguments + QStringList{"--force"}).exitCode, 0);
    QVERIFY(content("kept.csv").startsWith("distance,"));

    const QByteArray recording = content("even.laps");
    const Outcome outcome = run({"even.laps", "two.laps", "-o", "even.laps", "--force"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: even.laps: is the recording itself; choose another "
                            "output\n"));
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(content("even.laps"), recording);
}

void tst_ZepimportCompare::differenceAtTheLineIsThatOfTheTimes_data()
{
    QTest::addColumn<QStringList>("laps");

    QTest::newRow("first stint") << QStringList{"practice.ibt:2", "practice.ibt:3"};
    QTest::newRow("second stint") << QStringList{"practice.ibt:5", "practice.ibt:6"};
    QTest::newRow("of both stints") << QStringList{"practice.ibt:6", "practice.ibt:best"};
}

void tst_ZepimportCompare::differenceAtTheLineIsThatOfTheTimes()
{
    QFETCH(QStringList, laps);
    constexpr double tick = 1.0 / 60;

    const Outcome outcome = run(laps + QStringList{"--json"});
    QCOMPARE(outcome.errors, QString());
    const QJsonObject object = QJsonDocument::fromJson(outcome.output.toUtf8()).object();
    const QJsonArray sides = object.value(QStringLiteral("laps")).toArray();
    const double times = sides.at(1).toObject().value(QStringLiteral("time")).toDouble()
        - sides.at(0).toObject().value(QStringLiteral("time")).toDouble();
    const double difference = object.value(QStringLiteral("difference")).toDouble();
    QVERIFY(!qFuzzyIsNull(times));
    QVERIFY2(std::abs(difference - times) < tick,
             qPrintable(QStringLiteral("%1 s instead of %2 s").arg(difference).arg(times)));
}

void tst_ZepimportCompare::units()
{
    const QStringList arguments{"two.laps:1", "two.laps:2"};
    const QString recorded = run(arguments).output;
    QVERIFY(recorded.contains(QLatin1String(" m/s")));
    for (const char *unit : {"km/h", "mph"}) {
        const QString system =
            unit == QByteArray("mph") ? QStringLiteral("imperial") : QStringLiteral("metric");
        const Outcome outcome = run(arguments + QStringList{"--units", system});
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.output.count(QLatin1String(unit)), recorded.count(QLatin1String("m/s")));
        QVERIFY(!outcome.output.contains(QLatin1String("m/s")));
    }
}

void tst_ZepimportCompare::refused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("one lap")
        << QStringList{"even.laps"}
        << "compare needs two laps, and even.laps has no other timed one; add a lap of another file"
        << 2;
    QTest::newRow("one lap of several")
        << QStringList{"two.laps:2"}
        << "compare needs two laps, not 1; choose another, as in two.laps:2 two.laps:1" << 2;
    QTest::newRow("three laps")
        << QStringList{"two.laps:1,2", "even.laps"}
        << "compare needs two laps, not 3; choose two of them, as in two.laps:1 two.laps:2" << 2;
    QTest::newRow("a lap that is not there")
        << QStringList{"two.laps:1", "two.laps:3"}
        << "two.laps: there is no lap #3; choose from 1 to 2" << 2;
    QTest::newRow("a file that is not there")
        << QStringList{"even.laps", "none.laps"} << "none.laps: no such file; check the path" << 1;
    QTest::newRow("a lap without a valid time")
        << QStringList{"even.laps", "short.laps:1"}
        << "short.laps: lap #1 has no time (no valid time was recorded); choose another lap" << 1;
    QTest::newRow("a lap without distance")
        << QStringList{"even.laps", "short.laps:2"}
        << "short.laps: lap #2 has no time; choose another lap" << 1;
    QTest::newRow("different tracks")
        << QStringList{"even.laps", "hillside.laps"}
        << "laps of different tracks cannot be compared: even.laps on Lakeside, hillside.laps on "
           "Hillside"
        << 1;
    QTest::newRow("tracks of different lengths")
        << QStringList{"even.laps", "long.laps"}
        << "laps of different lengths cannot be compared: even.laps: lap #1, 0:20.000 is 400 m, "
           "long.laps: lap #1, 0:20.250 is 405 m"
        << 1;
    QTest::newRow("a lap without end")
        << QStringList{"endless.laps", "endless.laps"}
        << "endless.laps: lap #1, 0:20.000 is 1e+20 m long, too long for a grid of 1 m; choose a "
           "larger --grid, or another lap"
        << 1;
    QTest::newRow("a grid of nothing")
        << QStringList{"even.laps", "two.laps", "--grid", "0"}
        << "--grid: Value 0 not in range 0.010000 to 1000.000000; see zepimport compare --help"
        << 2;
    QTest::newRow("a grid that is no number")
        << QStringList{"even.laps", "two.laps", "--grid", "nan"}
        << "--grid: 'nan' is not a number; see zepimport compare --help" << 2;
    QTest::newRow("a grid without end")
        << QStringList{"even.laps", "two.laps", "--grid", "inf"}
        << "--grid: Value inf not in range 0.010000 to 1000.000000; see zepimport compare --help"
        << 2;
    QTest::newRow("JSON and places on standard output")
        << QStringList{"even.laps", "two.laps", "-o", "-", "--json"}
        << "--json and --output - both write to standard output; see zepimport compare --help" << 2;
}

void tst_ZepimportCompare::refused()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    QFETCH(int, exitCode);

    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.errors, QStringLiteral("zepimport: ") + error + QLatin1Char('\n'));
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, exitCode);
}

NAPAMMUL_TEST(tst_ZepimportCompare)
#include "tst_zepimportcompare.moc"
