#include "tests/support/racesheet.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

/// `zepimport report` as a process: options, files and data. What a browser makes of the page is
/// tested in tests/report/.
class tst_ZepimportReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void page();
    void data();
    void chosenLaps();
    void furtherChannels();
    void severalFiles();
    void oneFileOfSeveralFails();
    void hostileTexts();
    void remarksHideFolders();

    void wrongUse_data();
    void wrongUse();
    void existingPageIsKept();
    void unwritable_data();
    void unwritable();
    void standardOutput();
    void withoutChartLibrary();

private:
    Outcome run(const QStringList &arguments) const;
    void write(const char *name, const QByteArray &content) const;
    QByteArray read(const char *name) const;
    QJsonObject pageData(const char *name) const;

    QTemporaryDir m_dir;
};

void tst_ZepimportReport::initTestCase()
{
    write("race.laps", raceSheet());
    write("other.laps", "lap|1|1|60000|1|1|1\ntrack|Ring\nchannel|gear||3\n");
}

void tst_ZepimportReport::cleanup()
{
    QDir dir(m_dir.path());
    for (const QString &name : dir.entryList({QStringLiteral("*.html")}, QDir::AllEntries)) {
        QFile::remove(dir.filePath(name));
        dir.rmdir(name);
    }
}

Outcome tst_ZepimportReport::run(const QStringList &arguments) const
{
    ZepimportProcess process;
    process.arguments = QStringList{"report"} + arguments;
    process.environment.append(QStringLiteral("ZEP_PLUGIN_PATH=" LAPSHEET_PLUGIN_PATH));
    process.folder = m_dir.path();
    return process.run();
}

void tst_ZepimportReport::write(const char *name, const QByteArray &content) const
{
    QFile file(m_dir.filePath(QString::fromUtf8(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray tst_ZepimportReport::read(const char *name) const
{
    QFile file(m_dir.filePath(QString::fromUtf8(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject tst_ZepimportReport::pageData(const char *name) const
{
    const QByteArray page = read(name);
    const QByteArray begin = "<script id=\"data\" type=\"application/json\">";
    const int from = page.indexOf(begin) + begin.size();
    return QJsonDocument::fromJson(page.mid(from, page.indexOf("</script>", from) - from)).object();
}

void tst_ZepimportReport::page()
{
    const Outcome outcome = run({"race.laps", "-o", "race.html"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, 0);
    const QByteArray page = read("race.html");
    QVERIFY(page.startsWith("<!DOCTYPE html>"));
    QVERIFY(page.contains("<title>Lakeside, Short circuit, Formula Junior</title>"));
    QVERIFY2(page.contains("Permission is hereby granted"), "the licence of the chart library");
    for (const char *place : {"@POLICY@", "@TITLE@", "@LICENCE@", "@DATA@", "src=\"", "<link"})
        QVERIFY2(!page.contains(place), place);
}

void tst_ZepimportReport::data()
{
    QCOMPARE(run({"race.laps", "-o", "race.html"}).exitCode, 0);
    const QJsonObject data = pageData("race.html");

    const QJsonObject session = data.value(QStringLiteral("sessions")).toArray().at(0).toObject();
    QCOMPARE(session.value(QStringLiteral("file")), QJsonValue("race.laps"));
    QCOMPARE(session.value(QStringLiteral("driver")), QJsonValue("Zoë Ångström"));
    QCOMPARE(
        session.value(QStringLiteral("weather")).toObject().value(QStringLiteral("airTemperature")),
        QJsonValue(QJsonObject{{"value", 21.5}, {"unit", "C"}}));
    const QJsonArray messages = session.value(QStringLiteral("messages")).toArray();
    QCOMPARE(messages.size(), 1);
    QCOMPARE(messages.at(0).toObject().value(QStringLiteral("text")),
             QJsonValue("[Lap sheets plugin] Reading the sheet"));

    const QJsonArray laps = data.value(QStringLiteral("laps")).toArray();
    QCOMPARE(laps.size(), 6);
    const QStringList reasons{
        "out-laps are not timed",    "", "", "", "still being driven when the recording ended",
        "nothing was recorded of it"};
    for (int i = 0; i < laps.size(); ++i)
        QCOMPARE(laps.at(i).toObject().value(QStringLiteral("noTime")).toString(), reasons.at(i));
    const QJsonObject best = laps.at(2).toObject();
    QCOMPARE(best.value(QStringLiteral("best")), QJsonValue(true));
    QCOMPARE(best.value(QStringLiteral("time")), QJsonValue(65.123));
    QCOMPARE(best.value(QStringLiteral("fuel")),
             QJsonValue(QJsonObject{{"start", QJsonObject{{"value", 48}, {"unit", "l"}}},
                                    {"end", QJsonObject{{"value", 45.999}, {"unit", "l"}}}}));

    QStringList channels;
    for (const QJsonValue &channel : data.value(QStringLiteral("channels")).toArray())
        channels.append(channel.toObject().value(QStringLiteral("name")).toString());
    QCOMPARE(channels, (QStringList{"speed", "gear"}));
}

void tst_ZepimportReport::chosenLaps()
{
    QCOMPARE(run({"race.laps", "--lap", "2-3", "-o", "race.html"}).exitCode, 0);
    const QJsonArray laps = pageData("race.html").value(QStringLiteral("laps")).toArray();
    QCOMPARE(laps.size(), 2);
    QCOMPARE(laps.at(0).toObject().value(QStringLiteral("number")), QJsonValue(2));
    QCOMPARE(laps.at(0).toObject().value(QStringLiteral("gap")), QJsonValue(0.5));
}

void tst_ZepimportReport::furtherChannels()
{
    QCOMPARE(run({"race.laps", "--channels", "lapdist,fuel*,speed", "-o", "race.html"}).exitCode,
             0);
    QStringList channels;
    for (const QJsonValue &channel :
         pageData("race.html").value(QStringLiteral("channels")).toArray())
        channels.append(channel.toObject().value(QStringLiteral("name")).toString());
    QCOMPARE(channels, (QStringList{"speed", "gear", "fuellevel", "lapdist"}));

    const Outcome unknown = run({"race.laps", "--channels", "sped", "-o", "unknown.html"});
    QVERIFY2(unknown.errors.startsWith(
                 QLatin1String("zepimport: race.laps: there is no channel 'sped'")),
             qPrintable(unknown.errors));
    QCOMPARE(unknown.exitCode, 2);
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("unknown.html"))));
}

void tst_ZepimportReport::severalFiles()
{
    QCOMPARE(run({"race.laps:best", "other.laps", "-o", "both.html"}).exitCode, 0);
    const QJsonObject data = pageData("both.html");
    QCOMPARE(data.value(QStringLiteral("sessions")).toArray().size(), 2);
    const QJsonArray laps = data.value(QStringLiteral("laps")).toArray();
    QCOMPARE(laps.size(), 2);
    QCOMPARE(laps.at(0).toObject().value(QStringLiteral("number")), QJsonValue(3));
    QCOMPARE(laps.at(1).toObject().value(QStringLiteral("session")), QJsonValue(1));
}

void tst_ZepimportReport::oneFileOfSeveralFails()
{
    const Outcome outcome = run({"none.laps", "race.laps", "-o", "race.html"});
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: none.laps: no such file; check the path\n"
                            "zepimport: 1 of 2 files done, failed: none.laps\n"));
    QCOMPARE(outcome.exitCode, 1);
    QCOMPARE(pageData("race.html").value(QStringLiteral("sessions")).toArray().size(), 1);

    QCOMPARE(run({"none.laps", "-o", "none.html"}).exitCode, 1);
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("none.html"))));
}

void tst_ZepimportReport::hostileTexts()
{
    const QByteArray driver = "</script><script>alert(1)</script><!--@DATA@";
    write("hostile.laps",
          "lap|1|1|60000|1|1|1\ndriver|" + driver + "\ntrack|</title>@DATA@\nchannel|gear||3\n");
    QCOMPARE(run({"hostile.laps", "-o", "hostile.html"}).exitCode, 0);
    const QByteArray page = read("hostile.html");
    QVERIFY(!page.contains("<script>alert"));
    QVERIFY(page.contains("<title>&lt;/title&gt;@DATA@</title>"));
    const QJsonObject session =
        pageData("hostile.html").value(QStringLiteral("sessions")).toArray().at(0).toObject();
    QCOMPARE(session.value(QStringLiteral("driver")).toString(), QString::fromUtf8(driver));
}

void tst_ZepimportReport::remarksHideFolders()
{
    const QString name = m_dir.filePath(QStringLiteral("told.laps"));
    write("told.laps",
          "message|0|Reading " + name.toUtf8() + "\nlap|1|1|60000|1|1|1\nchannel|gear||3\n");
    QCOMPARE(run({name, "-o", "told.html"}).exitCode, 0);
    const QByteArray page = read("told.html");
    QVERIFY(page.contains("Reading told.laps"));
    QVERIFY(!page.contains(m_dir.path().toUtf8()));
}

void tst_ZepimportReport::wrongUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");

    QTest::newRow("no output") << QStringList{"race.laps"}
                               << "--output is required; see zepimport report --help";
    QTest::newRow("no file") << QStringList{"-o", "race.html"}
                             << "FILE is required; see zepimport report --help";
    QTest::newRow("no such lap") << QStringList{"race.laps:9", "-o", "race.html"}
                                 << "race.laps: there is no lap #9; choose from 1 to 6";
    QTest::newRow("no web page") << QStringList{
        "race.laps", "-o",
        "race.pdf"} << "race.pdf: a report is a web page; choose a name that ends in .html";
    QTest::newRow("over a recording")
        << QStringList{"race.laps", "-o", "race.laps", "--force"}
        << "race.laps: is the recording itself; choose another output";
}

void tst_ZepimportReport::wrongUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Outcome outcome = run(arguments);
    QCOMPARE(outcome.errors, QString(QLatin1String("zepimport: ") % error % QLatin1Char('\n')));
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(read("race.laps"), raceSheet());
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("race.pdf"))));
}

void tst_ZepimportReport::existingPageIsKept()
{
    write("kept.html", "mine");
    const Outcome kept = run({"race.laps", "-o", "kept.html"});
    QCOMPARE(kept.errors,
             QStringLiteral("zepimport: kept.html: already exists; choose another name, or use "
                            "--force to replace it\n"));
    QCOMPARE(kept.exitCode, 1);
    QCOMPARE(read("kept.html"), QByteArray("mine"));

    QCOMPARE(run({"race.laps", "-o", "kept.html", "--force"}).exitCode, 0);
    QVERIFY(read("kept.html").startsWith("<!DOCTYPE html>"));
}

void tst_ZepimportReport::unwritable_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<QString>("error");

    QTest::newRow("no such folder") << "none/race.html"
                                    << "none/race.html: cannot be written (No such file or "
                                       "directory); choose another location";
    QTest::newRow("a folder") << "."
                              << ".: is a folder; give a file in it";
    QTest::newRow("full disk") << "/dev/full"
                               << "/dev/full: cannot be written (No space left on device); free "
                                  "some space, or choose another location";
}

void tst_ZepimportReport::unwritable()
{
    QFETCH(QString, output);
    QFETCH(QString, error);
    const Outcome outcome = run({"race.laps", "-o", output});
    QCOMPARE(outcome.errors, QString(QLatin1String("zepimport: ") % error % QLatin1Char('\n')));
    QCOMPARE(outcome.exitCode, 1);
}

void tst_ZepimportReport::standardOutput()
{
    const Outcome outcome = run({"race.laps", "-o", "-"});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
    QCOMPARE(run({"race.laps", "-o", "race.html"}).exitCode, 0);
    QCOMPARE(outcome.output, QString::fromUtf8(read("race.html")));
}

void tst_ZepimportReport::withoutChartLibrary()
{
    ZepimportProcess process;
    process.program = QStringLiteral(ZEPIMPORT_WITHOUT_REPORT_PATH);
    process.arguments = QStringList{"report", "race.laps", "-o", "race.html"};
    process.folder = m_dir.path();
    const Outcome outcome = process.run();
    QCOMPARE(outcome.errors,
             QStringLiteral("zepimport: this build cannot write reports: it was made without their "
                            "chart library; build it where npm can fetch it\n"));
    QCOMPARE(outcome.exitCode, 1);
    QVERIFY(!QFile::exists(m_dir.filePath(QStringLiteral("race.html"))));
}

NAPAMMUL_TEST(tst_ZepimportReport)
#include "tst_zepimportreport.moc"
