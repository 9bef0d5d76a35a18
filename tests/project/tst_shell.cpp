#include "tests/support/outputof.h"
#include "tests/support/roomtests.h"
#include "tests/support/zepimportprocess.h"

#include <QRegularExpression>
#include <QTest>

/// Manual pages and completions know every command and every option of the programs, and no other.
class tst_Shell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyCommandHasAPage();
    void optionsOfPages_data();
    void optionsOfPages();
    void pagesAreClean_data();
    void pagesAreClean();
    void commandsOfShells_data();
    void commandsOfShells();
    void optionsOfShells_data();
    void optionsOfShells();
    void choicesOfBash_data();
    void choicesOfBash();
    void installed();

private:
    QString page(const QString &command) const;

    QString m_packaging;
    QStringList m_commands;
};

namespace {

// An option as a shell is offered it. zsh puts those that exclude it before it, in parentheses.
const QString optionPattern = QStringLiteral("^(?:\\([^)]*\\))?--([\\w-]+)");

QString help(const QStringList &command)
{
    if (command == QStringList{"ibtgen"})
        return outputOf(QStringLiteral(IBTGEN_PATH), {"--help"});
    return outputOf(QStringLiteral(ZEPIMPORT_PATH), command + QStringList{"--help"});
}

/// Everything that \a pattern captures in \a text, in order, each once.
QStringList captured(const QString &pattern, const QString &text)
{
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    QStringList found;
    for (auto match = expression.globalMatch(text); match.hasNext();)
        found.append(match.next().captured(1));
    found.sort();
    found.removeDuplicates();
    return found;
}

/// The long options of \a command, without dashes.
QStringList longOptions(const QString &command)
{
    return captured(QStringLiteral("^  (?:-\\w,)?--([\\w-]+)"), help({command}));
}

/// How the words that were \a found in \a file differ from the \a expected ones; empty if they do
/// not.
QString difference(const QString &file, const QStringList &found, const QStringList &expected)
{
    if (found == expected)
        return QString();
    QStringList missing = expected;
    QStringList unknown = found;
    for (const QString &word : found)
        missing.removeOne(word);
    for (const QString &word : expected)
        unknown.removeOne(word);
    return QStringLiteral("%1: missing: [%2], unknown: [%3]")
        .arg(file, missing.join(QLatin1String(", ")), unknown.join(QLatin1String(", ")));
}

/// The file in packaging/ that completes words in \a shell.
QString completionFile(const QString &shell)
{
    return shell == QLatin1String("zsh") ? QStringLiteral("completions/_zepimport")
                                         : QStringLiteral("completions/zepimport.") + shell;
}

/// The name of the manual page of \a command, or of the program if it is empty. "ibtgen" is a
/// program of its own.
QString pageName(const QString &command)
{
    if (command.isEmpty())
        return QStringLiteral("zepimport");
    return command == QLatin1String("ibtgen") ? command : QStringLiteral("zepimport-") + command;
}

/// The file of that page in packaging/.
QString pageFile(const QString &command)
{
    return QStringLiteral("man/%1.1").arg(pageName(command));
}

/// What \a shell offers after \a words, of which the last one is to be completed.
QStringList offered(const QString &shell, const QString &packaging, const QStringList &words)
{
    const QString file = packaging + QLatin1Char('/') + completionFile(shell);
    QString output;
    if (shell == QLatin1String("bash")) {
        const QString script = QStringLiteral("source \"$0\"; COMP_WORDS=(\"$@\"); "
                                              "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _zepimport; "
                                              "printf '%s\\n' \"${COMPREPLY[@]}\"");
        output = outputOf(shell, QStringList{"--norc", "-c", script, file} + words);
    } else if (shell == QLatin1String("fish")) {
        output = outputOf(shell,
                          {"--no-config", "-c",
                           QStringLiteral("source %1; complete -C \"%2\"")
                               .arg(file, words.join(QLatin1Char(' ')))});
    } else {
        // Prints what zsh would be told to offer.
        const QString script = QStringLiteral(
            "_describe() { print -l -- \"${(@P)2}\" }; "
            "_arguments() { print -l -- \"$@\" }; "
            "words=(\"$@\"); CURRENT=$#; PREFIX=${@[-1]}; source \"$0\"; _zepimport");
        output = outputOf(shell, QStringList{"-f", "-c", script, file} + words);
    }
    return output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

void tst_Shell::initTestCase()
{
    const QString completions = QFINDTESTDATA("../../packaging/completions/zepimport.bash");
    m_packaging = QFileInfo(completions).dir().absoluteFilePath(QStringLiteral(".."));
    m_commands = zepimportCommands();
    QVERIFY2(m_commands.contains(QStringLiteral("laps")), qPrintable(m_commands.join(", ")));
}

QString tst_Shell::page(const QString &command) const
{
    QFile file(m_packaging + QLatin1Char('/') + pageFile(command));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll()).replace(QLatin1String("\\-"), QLatin1String("-"));
}

void tst_Shell::everyCommandHasAPage()
{
    QStringList names{QStringLiteral("zepimport.1"), QStringLiteral("ibtgen.1")};
    for (const QString &command : qAsConst(m_commands))
        names.append(QStringLiteral("zepimport-%1.1").arg(command));
    names.sort();
    QStringList pages = QDir(m_packaging + QStringLiteral("/man")).entryList(QDir::Files);
    pages.sort();
    QCOMPARE(difference(QStringLiteral("man"), pages, names), QString());
    const QString sections = page(QString());
    const QStringList described = captured(
        QStringLiteral("^\\.BR zepimport-([a-z]+) \\(1\\)$"),
        sections.section(QStringLiteral(".SH COMMANDS"), 1).section(QStringLiteral(".SH"), 0, 0));
    QCOMPARE(difference(pageFile({}) + QStringLiteral(", COMMANDS"), described, m_commands),
             QString());
    const QStringList seen = captured(QStringLiteral("^\\.BR zepimport-([a-z]+) \\(1\\),?$"),
                                      sections.section(QStringLiteral(".SH SEE ALSO"), 1));
    QCOMPARE(difference(pageFile({}) + QStringLiteral(", SEE ALSO"), seen, m_commands), QString());
}

void tst_Shell::optionsOfPages_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("program") << "";
    QTest::newRow("ibtgen") << "ibtgen";
    for (const QString &command : qAsConst(m_commands))
        QTest::newRow(qPrintable(command)) << command;
}

void tst_Shell::optionsOfPages()
{
    QFETCH(QString, command);
    // "-o, --output" for each option, or "--split".
    QStringList expected;
    const QRegularExpression option(QStringLiteral("^  (?:(-\\w),)?(--[\\w-]+)"),
                                    QRegularExpression::MultilineOption);
    const QString text = help(command.isEmpty() ? QStringList() : QStringList{command});
    for (auto match = option.globalMatch(text); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        const QString both = found.captured(1) + QStringLiteral(", ") + found.captured(2);
        expected.append(found.captured(1).isEmpty() ? found.captured(2) : both);
    }
    expected.sort();
    QVERIFY(!expected.isEmpty());
    QString described = page(command).section(QStringLiteral(".SH OPTIONS"), 1);
    described = described.section(QStringLiteral("\n.SH"), 0, 0);
    described.remove(QStringLiteral("\\fB")).remove(QStringLiteral("\\fR"));
    const QStringList options =
        captured(QStringLiteral("^\\.TP\\n((?:-\\w, )?--[\\w-]+)"), described);
    QCOMPARE(difference(pageFile(command), options, expected), QString());
}

void tst_Shell::pagesAreClean_data()
{
    optionsOfPages_data();
}

void tst_Shell::pagesAreClean()
{
    QFETCH(QString, command);
    const QString shown = outputOf(
        QStringLiteral("man"),
        {"--warnings", "-E", "UTF-8", "-l", m_packaging + QLatin1Char('/') + pageFile(command)});
    QVERIFY2(shown.startsWith(pageName(command).toUpper() + QStringLiteral("(1)")),
             qPrintable(shown));
}

void tst_Shell::commandsOfShells_data()
{
    QTest::addColumn<QString>("shell");
    QTest::newRow("bash") << "bash";
    QTest::newRow("fish") << "fish";
    QTest::newRow("zsh") << "zsh";
}

void tst_Shell::commandsOfShells()
{
    QFETCH(QString, shell);
    const QStringList words = offered(shell, m_packaging, {"zepimport", ""});
    // Descriptions follow a tab in fish, and a colon in zsh.
    const QStringList commands =
        captured(QStringLiteral("^([a-z]+)(?:[\t:]|$)"), words.join(QLatin1Char('\n')));
    QCOMPARE(difference(completionFile(shell), commands, m_commands), QString());
    const QStringList options = offered(shell, m_packaging, {"zepimport", "--"});
    QCOMPARE(difference(completionFile(shell),
                        captured(optionPattern, options.join(QLatin1Char('\n'))),
                        {"help", "version"}),
             QString());
}

void tst_Shell::optionsOfShells_data()
{
    QTest::addColumn<QString>("shell");
    QTest::addColumn<QString>("command");
    for (const char *shell : {"bash", "fish", "zsh"}) {
        for (const QString &command : qAsConst(m_commands))
            QTest::addRow("%s: %s", shell, qPrintable(command)) << shell << command;
    }
}

void tst_Shell::optionsOfShells()
{
    QFETCH(QString, shell);
    QFETCH(QString, command);
    const QStringList words = offered(shell, m_packaging, {"zepimport", command, "--"});
    QCOMPARE(difference(completionFile(shell) + QLatin1String(", ") + command,
                        captured(optionPattern, words.join(QLatin1Char('\n'))),
                        longOptions(command)),
             QString());
}

void tst_Shell::choicesOfBash_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("choices");

    QTest::newRow("command") << QStringList{"ex"} << QStringList{"export"};
    QTest::newRow("lap") << QStringList{"laps", "--lap", "b"} << QStringList{"best"};
    QTest::newRow("channels") << QStringList{"export", "a.ibt", "--channels", ""}
                              << QStringList{"driver", "engine", "position", "tyres"};
    QTest::newRow("format") << QStringList{"export", "--format", ""}
                            << QStringList{"csv", "json", "mat"};
    QTest::newRow("units") << QStringList{"export", "--units", "h"} << QStringList{"header"};
    QTest::newRow("system of units")
        << QStringList{"laps", "--units", "m"} << QStringList{"metric"};
    QTest::newRow("file, left to bash") << QStringList{"laps", "a"} << QStringList{};
}

void tst_Shell::choicesOfBash()
{
    QFETCH(QStringList, words);
    QTEST(offered(QStringLiteral("bash"), m_packaging, QStringList{"zepimport"} + words),
          "choices");
}

void tst_Shell::installed()
{
    const QTemporaryDir dir;
    outputOf(QStringLiteral("cmake"),
             {"--install", QStringLiteral(BUILD_FOLDER), "--component", "shell", "--prefix",
              dir.path()});
    for (const char *file :
         {"man/man1/zepimport.1", "man/man1/zepimport-laps.1", "man/man1/ibtgen.1",
          "bash-completion/completions/zepimport", "zsh/site-functions/_zepimport",
          "fish/vendor_completions.d/zepimport.fish"})
        QVERIFY2(QFile::exists(dir.filePath(QStringLiteral("share/") + QLatin1String(file))), file);
}

NAPAMMUL_TEST(tst_Shell)
#include "tst_shell.moc"
