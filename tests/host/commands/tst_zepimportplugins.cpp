#include "tests/support/processlimit.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

/// How the program finds its plug-ins, and which one it takes for a file.
class tst_ZepimportPlugins : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void formats();
    void formatsAsJson();
    void besideTheProgram();
    void installed();
    void path_data();
    void path();
    void sameLibraryTwice();
    void noPlugin_data();
    void noPlugin();
    void remarksWhenVerbose();
    void picksTheFormat_data();
    void picksTheFormat();

private:
    Outcome run(const QStringList &arguments, const QStringList &environment = {},
                const QString &program = {}) const;
    QJsonObject runJson(const QStringList &arguments) const;
    QString file(const QString &name) const { return m_dir.filePath(name); }
    void write(const QString &name, const QByteArray &content) const;

    QTemporaryDir m_dir;
};

namespace {

const QString sheetPlugin = QStringLiteral(LAPSHEET_PLUGIN_PATH);
const QString realPlugin = QStringLiteral(NAPAMMUL_PLUGIN_PATH);
const QString usePath = QStringLiteral("ZEP_PLUGIN_PATH=");

QString folderOf(const QString &path)
{
    return QFileInfo(path).absolutePath();
}

} // namespace

void tst_ZepimportPlugins::initTestCase()
{
    QProcess generator;
    generator.start(QStringLiteral(IBTGEN_PATH),
                    {"--laps", "1", "--rate", "10", file(QStringLiteral("demo.ibt"))});
    QVERIFY(generator.waitForFinished(ProcessLimit));
    QCOMPARE(generator.exitCode(), 0);
    write(QStringLiteral("lap.laps"), "message|0|Reading\nlap|1|1|60000|1|1|1\nchannel|gear||3\n");
    write(QStringLiteral("SHOUT.LAPS"),
          "message|0|Reading\nlap|1|1|60000|1|1|1\nchannel|gear||3\n");
    write(QStringLiteral("sheet.hush"), "");
    QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("empty")));
    QVERIFY(QDir(m_dir.path()).mkdir(QStringLiteral("both")));
    QVERIFY(QFile::copy(sheetPlugin, file(QStringLiteral("both/liblapsheet.so"))));
    QVERIFY(QFile::copy(realPlugin, file(QStringLiteral("both/libnapammul.so"))));
    write(QStringLiteral("both/libtext.so"), "not a library\n");
    write(QStringLiteral("both/readme.txt"), "not a library either\n");
}

Outcome tst_ZepimportPlugins::run(const QStringList &arguments, const QStringList &environment,
                                  const QString &program) const
{
    ZepimportProcess process;
    process.arguments = arguments;
    process.environment = environment;
    process.program = program;
    process.folder = m_dir.path();
    return process.run();
}

QJsonObject tst_ZepimportPlugins::runJson(const QStringList &arguments) const
{
    const Outcome outcome = run(arguments + QStringList{"--json"});
    return QJsonDocument::fromJson(outcome.output.toUtf8()).array().first().toObject();
}

void tst_ZepimportPlugins::write(const QString &name, const QByteArray &content) const
{
    QFile output(file(name));
    QVERIFY(output.open(QIODevice::WriteOnly));
    QCOMPARE(output.write(content), qint64(content.size()));
}

void tst_ZepimportPlugins::formats()
{
    const Outcome outcome = run({"formats", "--plugin", "both"});
    const QString folder = QFileInfo(file(QStringLiteral("both"))).absoluteFilePath();
    QCOMPARE(
        outcome.output,
        QStringLiteral("Format                            Plug-in                        Version"
                       "  Source   Library\n"
                       "Lap sheet (*.laps)                Lap sheets                     1.5    "
                       "  Tests    %1/liblapsheet.so\n"
                       "Silent sheet (*.mute *.hush)      Lap sheets                     1.5    "
                       "  Tests    %1/liblapsheet.so\n"
                       "iRacing binary telemetry (*.ibt)  ZEP iRacing ibt import plugin  0.2    "
                       "  iRacing  %1/libnapammul.so\n")
            .arg(folder));
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ZepimportPlugins::formatsAsJson()
{
    const QJsonObject plugin = runJson({"formats", "--plugin", sheetPlugin});
    QCOMPARE(
        plugin,
        (QJsonObject{{"plugin", "Lap sheets"},
                     {"version", "1.5"},
                     {"source", "Tests"},
                     {"formats", QJsonArray{"Lap sheet (*.laps)", "Silent sheet (*.mute *.hush)"}},
                     {"library", sheetPlugin}}));
}

void tst_ZepimportPlugins::besideTheProgram()
{
    const Outcome outcome = run({"formats"});
    QVERIFY2(outcome.output.contains(realPlugin), qPrintable(outcome.output));
    QCOMPARE(outcome.exitCode, 0);
}

void tst_ZepimportPlugins::installed()
{
    QVERIFY(QDir(m_dir.path()).mkpath(QStringLiteral("prefix/bin")));
    const QString program =
        QFileInfo(file(QStringLiteral("prefix/bin/zepimport"))).absoluteFilePath();
    QVERIFY(QFile::copy(QStringLiteral(ZEPIMPORT_PATH), program));

    const Outcome without = run({"formats"}, {}, program);
    QCOMPARE(without.exitCode, 1);
    const QRegularExpression places(
        QStringLiteral("^zepimport: no import plug-in found \\((.*)/bin: no import plug-in in this "
                       "folder; (.*): no such file or folder\\); "
                       "give its file or folder with --plugin PATH\n$"));
    const QRegularExpressionMatch match = places.match(without.errors);
    QVERIFY2(match.hasMatch(), qPrintable(without.errors));
    QCOMPARE(match.captured(1), QFileInfo(file(QStringLiteral("prefix"))).absoluteFilePath());
    const QString folder = match.captured(2);
    QVERIFY2(folder.startsWith(match.captured(1)), qPrintable(folder));

    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy(realPlugin, folder + QStringLiteral("/libnapammul.so")));
    const Outcome with = run({"formats"}, {}, program);
    QVERIFY2(with.output.contains(folder), qPrintable(with.output));
    QCOMPARE(with.exitCode, 0);
}

void tst_ZepimportPlugins::path_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<QStringList>("libraries");

    const QString sheet = QStringLiteral("liblapsheet.so");
    const QString real = QStringLiteral("libnapammul.so");
    const QStringList none;
    QTest::newRow("option: file") << QStringList{"--plugin", sheetPlugin} << none
                                  << QStringList{sheet};
    QTest::newRow("option: folder")
        << QStringList{"--plugin", folderOf(sheetPlugin)} << none << QStringList{sheet};
    QTest::newRow("option: relative path")
        << QStringList{"--plugin", "both/liblapsheet.so"} << none << QStringList{sheet};
    QTest::newRow("variable: file")
        << none << QStringList{usePath + sheetPlugin} << QStringList{sheet};
    QTest::newRow("variable: list") << none
                                    << QStringList{usePath + QStringLiteral("empty:") + sheetPlugin
                                                   + QLatin1Char(':') + realPlugin}
                                    << QStringList{sheet, real};
    QTest::newRow("the option wins") << QStringList{"--plugin", sheetPlugin}
                                     << QStringList{usePath + realPlugin} << QStringList{sheet};
    QTest::newRow("an empty variable says nothing")
        << none << QStringList{usePath} << QStringList{real};
}

void tst_ZepimportPlugins::path()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, environment);
    QFETCH(QStringList, libraries);
    const Outcome outcome = run(QStringList{"formats", "--json"} + arguments, environment);
    QStringList found;
    for (const QJsonValue &plugin : QJsonDocument::fromJson(outcome.output.toUtf8()).array())
        found.append(QFileInfo(plugin[QLatin1String("library")].toString()).fileName());
    QCOMPARE(found, libraries);
    QCOMPARE(outcome.errors, QString());
}

void tst_ZepimportPlugins::sameLibraryTwice()
{
    const Outcome outcome =
        run({"formats"}, {usePath + folderOf(sheetPlugin) + QStringLiteral(":both")});
    QCOMPARE(outcome.output.count(QLatin1String("Lap sheet (*.laps)")), 1);
    QVERIFY(outcome.output.contains(sheetPlugin));
    QVERIFY(outcome.output.contains(QLatin1String("both/libnapammul.so")));
}

void tst_ZepimportPlugins::noPlugin_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("remark");

    QTest::newRow("missing") << "nowhere"
                             << "nowhere: no such file or folder";
    QTest::newRow("empty folder") << "empty"
                                  << "empty: no import plug-in in this folder";
    QTest::newRow("no library") << "lap.laps"
                                << "lap.laps: not an import plug-in";
}

void tst_ZepimportPlugins::noPlugin()
{
    QFETCH(QString, place);
    QFETCH(QString, remark);
    for (const QStringList &command : {QStringList{"formats"}, QStringList{"laps", "lap.laps"}}) {
        const Outcome outcome = run(command + QStringList{"--plugin", place});
        QCOMPARE(outcome.errors,
                 QStringLiteral("zepimport: no import plug-in found (%1); "
                                "give its file or folder with --plugin PATH\n")
                     .arg(remark));
        QCOMPARE(outcome.output, QString());
        QCOMPARE(outcome.exitCode, 1);
    }
}

void tst_ZepimportPlugins::remarksWhenVerbose()
{
    const QStringList environment{usePath + QStringLiteral("nowhere:") + sheetPlugin};
    QCOMPARE(run({"formats"}, environment).errors, QString());
    QCOMPARE(run({"formats", "--verbose"}, environment).errors,
             QStringLiteral("zepimport: nowhere: no such file or folder\n"));
}

void tst_ZepimportPlugins::picksTheFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title"); // of the output
    QTest::addColumn<QString>("format"); // a part of what is on standard error

    QTest::newRow("recording") << "demo.ibt"
                               << "demo.ibt"
                               << "Using format iRacing binary telemetry (*.ibt)";
    QTest::newRow("lap sheet") << "lap.laps"
                               << "lap.laps"
                               << "[Lap sheets plugin]";
    QTest::newRow("in capitals") << "SHOUT.LAPS"
                                 << "SHOUT.LAPS"
                                 << "[Lap sheets plugin]";
    QTest::newRow("second format, second wildcard") << "sheet.hush"
                                                    << ""
                                                    << "Silent sheet (*.mute *.hush)";
}

void tst_ZepimportPlugins::picksTheFormat()
{
    QFETCH(QString, name);
    QFETCH(QString, title);
    QFETCH(QString, format);
    const Outcome outcome = run({"laps", "--verbose", "--plugin", "both", name});
    QCOMPARE(outcome.output.section(QLatin1Char('\n'), 0, 0), title);
    QVERIFY2(outcome.errors.contains(format), qPrintable(outcome.errors));
}

NAPAMMUL_TEST(tst_ZepimportPlugins)
#include "tst_zepimportplugins.moc"
