// What the README and the pages of docs/ show is what the programs print.

#include "tests/support/outputof.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// Lines that are the same on every machine: without the file's name and date.
QStringList stableLines(QString text)
{
    static const QRegularExpression date(
        QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d"));
    QStringList lines = text.replace(date, QString()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QString &line) {
                                   return line.startsWith(QLatin1String("Date"))
                                       || line.endsWith(QLatin1String(".ibt"));
                               }),
                lines.end());
    return lines;
}

} // namespace

class tst_Readme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void shownLapsAreThoseOfTheDemo();
    void shownScriptsExist();
    void shownCommandsAreKnown();
    void shownOutputIsReal_data();
    void shownOutputIsReal();

private:
    QString m_text;
    QString m_root;
    QTemporaryDir m_dir; ///< with the recording that the pages are about
};

void tst_Readme::initTestCase()
{
    const QString fileName = QFINDTESTDATA("../../README.md");
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_text = QString::fromUtf8(file.readAll());
    m_root = QFileInfo(fileName).absolutePath();
    outputOf(QStringLiteral(IBTGEN_PATH), {m_dir.filePath(QStringLiteral("demo.ibt"))});
}

void tst_Readme::shownLapsAreThoseOfTheDemo()
{
    const QString recording = m_dir.filePath(QStringLiteral("demo.ibt"));
    const QString shown = m_text.section(QStringLiteral("```\n"), 1, 1);
    QVERIFY(shown.startsWith(QLatin1String("build/demo/demo.ibt\n")));
    QCOMPARE(
        stableLines(shown),
        stableLines(outputOf(QStringLiteral(ZEPIMPORT_PATH), {QStringLiteral("laps"), recording})));
}

void tst_Readme::shownScriptsExist()
{
    const QRegularExpression script(QStringLiteral("^    (scripts/\\S+)"),
                                    QRegularExpression::MultilineOption);
    int scripts = 0;
    for (auto match = script.globalMatch(m_text); match.hasNext(); ++scripts) {
        const QFileInfo file(m_root + QLatin1Char('/') + match.next().captured(1));
        QVERIFY2(file.isExecutable(), qPrintable(file.filePath()));
    }
    QCOMPARE(scripts, 2);
}

void tst_Readme::shownCommandsAreKnown()
{
    const QRegularExpression command(QStringLiteral("^    zepimport (\\w+)"),
                                     QRegularExpression::MultilineOption);
    QStringList commands;
    for (auto match = command.globalMatch(m_text); match.hasNext();) {
        const QString name = match.next().captured(1);
        QVERIFY2(
            !outputOf(QStringLiteral(ZEPIMPORT_PATH), {name, QStringLiteral("--help")}).isEmpty(),
            qPrintable(name));
        commands.append(name);
    }
    commands.sort();
    QVERIFY(!commands.isEmpty());
    QCOMPARE(commands.join(QLatin1Char(' ')), zepimportCommands().join(QLatin1Char(' ')));
}

void tst_Readme::shownOutputIsReal_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("shown");

    // ```console, "$ zepimport ..." and what it prints.
    const QRegularExpression block(QStringLiteral("^```console\n\\$ zepimport (.*?)\n(.*?)```"),
                                   QRegularExpression::MultilineOption
                                       | QRegularExpression::DotMatchesEverythingOption);
    for (const QString &page : {QStringLiteral("README.md"), QStringLiteral("docs/zepimport.md")}) {
        QFile file(m_root + QLatin1Char('/') + page);
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(page));
        for (auto match = block.globalMatch(QString::fromUtf8(file.readAll())); match.hasNext();) {
            const QRegularExpressionMatch found = match.next();
            QTest::addRow("%s: %s", qPrintable(page), qPrintable(found.captured(1)))
                << found.captured(1) << found.captured(2);
        }
    }
}

void tst_Readme::shownOutputIsReal()
{
    QFETCH(QString, command);
    QFETCH(QString, shown);

    ZepimportProcess process;
    process.program = QStringLiteral("/bin/sh");
    process.arguments =
        QStringList{"-c", QStringLiteral("\"$0\" ") + command, QStringLiteral(ZEPIMPORT_PATH)};
    process.environment = QStringList{QStringLiteral("NO_COLOR=1")};
    process.folder = m_dir.path();
    process.terminalWidth = 100;
    const Outcome outcome = process.run();
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(stableLines(outcome.output), stableLines(shown));
}

NAPAMMUL_TEST(tst_Readme)

#include "tst_readme.moc"
