// What the README shows is what the programs print.

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

/// The output of a program that has to succeed.
QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        return QString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// Lines that are the same on every machine: without the file's name and date.
QStringList stableLines(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
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

private:
    QString m_text;
    QString m_root;
};

void tst_Readme::initTestCase()
{
    const QString fileName = QFINDTESTDATA("../README.md");
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::ReadOnly));
    m_text = QString::fromUtf8(file.readAll());
    m_root = QFileInfo(fileName).absolutePath();
}

void tst_Readme::shownLapsAreThoseOfTheDemo()
{
    const QTemporaryDir dir;
    const QString recording = dir.filePath(QStringLiteral("demo.ibt"));
    run(QStringLiteral(IBTGEN_PATH), {recording});
    const QString shown = m_text.section(QStringLiteral("```\n"), 1, 1);
    QVERIFY(shown.startsWith(QLatin1String("build/demo/demo.ibt\n")));
    QCOMPARE(stableLines(shown),
             stableLines(run(QStringLiteral(ZEPIMPORT_PATH), {QStringLiteral("laps"), recording})));
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
    int commands = 0;
    for (auto match = command.globalMatch(m_text); match.hasNext(); ++commands) {
        const QString name = match.next().captured(1);
        QVERIFY2(!run(QStringLiteral(ZEPIMPORT_PATH), {name, QStringLiteral("--help")}).isEmpty(),
                 qPrintable(name));
    }
    QCOMPARE(commands, 4);
}

QTEST_GUILESS_MAIN(tst_Readme)

#include "tst_readme.moc"
