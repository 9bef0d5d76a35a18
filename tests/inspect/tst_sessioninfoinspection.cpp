// Which line of a session info is blamed for what, and what is lost by it.

#include "inspect/findinglist.h"
#include "inspect/sessioninfoinspection.h"
#include "tests/support/roomtests.h"
#include "tests/support/sessioninfotext.h"
#include "tools/recording.h"

#include <QTest>

namespace {

/// The text of a good recording with one part replaced.
QByteArray with(const QByteArray &part, const QByteArray &other)
{
    const QByteArray text = Recording::plainSessionInfo();
    if (!text.contains(part))
        qFatal("the text has no %s", part.constData());
    return QByteArray(text).replace(part, other);
}

QByteArray withDriver(const QByteArray &name)
{
    return with("UserName: Test Driver", "UserName: " + name);
}

QVector<Finding> inspected(const QByteArray &text, qint64 offset = 0)
{
    FindingList findings;
    inspectSessionInfo(text.constData(), {offset, -1, {0}}, &findings);
    return findings.findings();
}

/// "+" for damage, kind, line, and the text of a finding.
QStringList shortFindings(const QByteArray &text)
{
    QStringList lines;
    for (const Finding &finding : inspected(text)) {
        const bool isDamage = finding.isDamage();
        lines.append((isDamage ? QStringLiteral("+") : QStringLiteral("-"))
                     % findingKindName(finding.kind) % QStringLiteral(" %1: ").arg(finding.line)
                     % finding.text);
    }
    return lines;
}

const QString noDriver = QStringLiteral("; nobody is in the player's car, so no lap is followed");

} // namespace

class tst_SessionInfoInspection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsNothing_data();
    void findsNothing();
    void namesTheLine_data();
    void namesTheLine();
    void nobodyInThePlayersCar_data();
    void nobodyInThePlayersCar();
    void quotes_data();
    void quotes();
    void placeInTheFile();
};

void tst_SessionInfoInspection::findsNothing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("plain") << Recording::plainSessionInfo();
    QTest::newRow("every value that laps carry") << wholeText();
    for (const char *name : {"Ann@Bee", "{Ann}", "# Ann", "\"Ann\"", "- Ann", "? Ann", "Ann:Bee",
                             "Ann:", " Ann ", "Ann\tBee", "\tAnn", "...", "J\xfcrgen"})
        QTest::addRow("driver %s", name) << withDriver(name);
    QTest::newRow("empty value") << with("Test Team", "");
    QTest::newRow("empty value in front of a list item")
        << with("Test Car\n", "\n - CarIdx: 5\n   UserName: Bee\n");
    QTest::newRow("empty value at the end of a section") << with("Test Car", "");
    QTest::newRow("blanks in a key") << with("TeamName", "Team Name");
    QTest::newRow("no closing line") << with("...\n", "");
    QTest::newRow("empty list before entries that are also where they belong")
        << with("\n\n...", "\n\nRadioInfo:\n Radios:\nWeekendInfo:\n TrackName: testfield\n...");
    QTest::newRow("comment where it costs nothing") << with("\n\n...", "\n# end\n\n...");
    QTest::newRow("empty list where it costs nothing")
        << with("\n\n...", "\n\nRadioInfo:\n Radios:\n...");
    QTest::newRow("end of a document in front of a section")
        << with("DriverInfo:", "...\nDriverInfo:");
    QTest::newRow("ends of documents in front of sections")
        << with("SessionInfo:", "...\n\n...\nSessionInfo:")
               .replace("DriverInfo", "...\nDriverInfo");
    QTest::newRow("no entry behind the end of a document")
        << with("DriverInfo:", "...\nA\nDriverInfo:");
    QTest::newRow("two document markers in front of everything")
        << "---\n" + Recording::plainSessionInfo();
    QTest::newRow("byte-order mark") << "\xef\xbb\xbf" + Recording::plainSessionInfo();
    QTest::newRow("comment in the first line") << "# iron" + Recording::plainSessionInfo().mid(3);
    QTest::newRow("no blank behind a dash") << with(" - CarIdx", " -CarIdx");
    QTest::newRow("list items indented further than their section") << with(
        "DriverInfo:", "Results:\n - Position: 1\n   CarIdx: 0\n - Position: 2\nDriverInfo:");
    QTest::newRow("section indented by three blanks")
        << with("DriverInfo:", "Results:\n   CarIdx: 0\nDriverInfo:");
    QTest::newRow("indented too far where it costs nothing")
        << with("   CarScreenName", "      CarScreenName");
    QTest::newRow("empty list in front of another key")
        << with("   SessionType: Practice\n",
                "   SessionType: Practice\n   Positions:\n   Fastest:\n   - CarIdx: 255\n     Lap: "
                "0\n   Average: -1\n");
}

void tst_SessionInfoInspection::findsNothing()
{
    QFETCH(QByteArray, text);
    QCOMPARE(shortFindings(text), QStringList());
}

void tst_SessionInfoInspection::namesTheLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("findings");
    const QByteArray plain = Recording::plainSessionInfo();

    QTest::newRow("separator in the driver's name")
        << withDriver("Ann: Bee")
        << QStringList("+text-separators 21: contains \": \" more than once, so it is lost; 2 "
                       "entries after it are lost: TeamName, CarScreenName"
                       + noDriver);
    QTest::newRow("separator in the team's name")
        << with("Test Team", "A: B")
        << QStringList("+text-separators 22: contains \": \" more than once, so it is lost; the "
                       "entry after it is lost: CarScreenName");
    QTest::newRow("separator at the end of the last value")
        << with("Test Car", "A: ")
        << QStringList("+text-separators 23: contains \": \" more than once, so it is lost");
    QTest::newRow("separator in the track's name")
        << with("Test Field", "A: B")
        << QStringList("+text-separators 5: contains \": \" more than once, so it is lost; 16 "
                       "entries after it are lost: SessionID, SubSessionID, SessionInfo, ..."
                       + noDriver);
    QTest::newRow("empty list in front of the drivers")
        << with("SessionInfo:", "RadioInfo:\n Radios:\n\nSessionInfo:")
        << QStringList("+text-empty-section 10: contains nothing, so what follows is read as part "
                       "of it; 14 entries after it are lost: SessionInfo, Sessions, 0, ..."
                       + noDriver);
    const QString blank =
        QStringLiteral("is read as a value because of the space after its colon; ");
    QTest::newRow("blank behind the first section")
        << with("WeekendInfo:", "WeekendInfo:  ")
        << QStringList(
               "+text-section-blank 2: " + blank
               + "5 entries after it are lost: TrackName, TrackLength, TrackDisplayName, ...");
    QTest::newRow("blank behind the section of the drivers")
        << with("DriverInfo:", "DriverInfo: ")
        << QStringList("+text-section-blank 14: " + blank
                       + "9 entries after it are lost: DriverCarIdx, DriverCarFuelKgPerLtr, "
                         "DriverCarFuelMaxLtr, ..."
                       + noDriver);
    QTest::newRow("blank behind the list of drivers")
        << with(" Drivers:", " Drivers: ")
        << QStringList("+text-section-blank 19: " + blank
                       + "4 entries after it are lost: 0, UserName, TeamName, ..." + noDriver);
    QTest::newRow("blank behind a list in front of the drivers")
        << with("   SessionType: Practice\n",
                "   SessionType: Practice\n   Positions: \n   - CarIdx: 3\n     Lap: 2\n")
        << QStringList("-text-section-blank 13: " + blank + "2 entries after it are lost: 3, Lap");
    QTest::newRow("line break inside a name")
        << withDriver("Ann\nBee")
        << QStringList("+text-no-entry 22: is not an entry; if it belongs to the line before, that "
                       "line is cut off; 2 entries after it are lost: TeamName, CarScreenName");
    const QString cut = QStringLiteral("if it belongs to the line before, that line is cut off");
    QTest::newRow("line break in front of a colon")
        << with("Test Team", "Mill\nrace: x")
        << QStringList("+text-indentation 23: is indented by 0 and the next line by 3 spaces; "
                       + cut + "; the entry after it is lost: CarScreenName");
    QTest::newRow("line break in front of a colon and a blank")
        << with("Test Team", "Mill\nrace: ")
        << QStringList("+text-indentation 23: is indented by 0 and the next line by 3 spaces; "
                       + cut + "; the entry after it is lost: CarScreenName");
    QTest::newRow("line break and a blank in front of a colon")
        << with("Test Team", "Mill\n race: x")
        << QStringList("+text-indentation 23: is indented by 1 and the next line by 3 spaces; "
                       + cut + "; the entry after it is lost: CarScreenName");
    QTest::newRow("two line breaks in front of colons")
        << with("Test Team", "Mill\n race: x\nand: y")
        << QStringList("+text-indentation 24: is indented by 0 and the next line by 3 spaces; "
                       + cut + "; the entry after it is lost: CarScreenName");
    QTest::newRow("line break in front of a colon in the track's name")
        << with("Test Field", "Test\nField: A")
        << QStringList("+text-indentation 6: is indented by 0 and the next line by 1 spaces; " + cut
                       + "; 2 entries after it are lost: SessionID, SubSessionID");
    QTest::newRow("line break in front of a colon in front of the drivers")
        << with("40.000", "40\n000: x")
        << QStringList("+text-indentation 18: is indented by 0 and the next line by 1 spaces; "
                       + cut + "; 6 entries after it are lost: DriverCarMaxFuelPct, Drivers, 0, ..."
                       + noDriver);
    QTest::newRow("no blank behind the colon of the driver's name")
        << with("UserName: Test Driver", "UserName:")
        << QStringList("+text-empty-section 21: contains nothing, so what follows is read as part "
                       "of it; 2 entries after it are lost: TeamName, CarScreenName"
                       + noDriver);
    for (const char *number : {"00", "0 ", " 0"})
        QTest::addRow("separator in the driver's name, player's car '%s'", number)
            << withDriver("Ann: Bee")
                   .replace("DriverCarIdx: 0", QByteArray("DriverCarIdx: ") + number)
            << QStringList("+text-separators 21: contains \": \" more than once, so it is lost; 2 "
                           "entries after it are lost: TeamName, CarScreenName"
                           + noDriver);
    QTest::newRow("another driver twice in front of the player's car")
        << QByteArray("---\nDriverInfo:\n Drivers:\n - CarIdx: 0\n   UserName: A\n   UserName: B\n "
                      "DriverCarIdx: 2\n...\n")
        << QStringList({"-text-repeated 5: is replaced by a later entry with the same name",
                        "+no-driver 7: the list of drivers does not contain car 2" + noDriver});
    QTest::newRow("no line feed behind the driver's name")
        << plain.left(plain.indexOf("\n   TeamName"))
        << QStringList("+text-last-line 21: does not end with a line feed, so it is not read"
                       + noDriver);
    QTest::newRow("tab behind a colon")
        << with("UserName: Test", "UserName:\tTest")
        << QStringList("+text-tab 21: contains a tab where a space belongs, so it is lost; 2 "
                       "entries after it are lost: TeamName, CarScreenName"
                       + noDriver);
    QTest::newRow("list item of one line")
        << with(" - CarIdx: 0\n", " - CarIdx: 7\n - CarIdx: 0\n")
        << QStringList("+text-short-item 20: is the only line of its list item, so what follows is "
                       "read as part of it; 4 entries after it are lost: 0, UserName, TeamName, ..."
                       + noDriver);
    QTest::newRow("first line of a list item twice")
        << with(" - CarIdx: 0\n", " - CarIdx: 0\n - CarIdx: 0\n")
        << QStringList("+text-short-item 20: is the only line of its list item, so what follows is "
                       "read as part of it; 3 entries after it are lost: UserName, TeamName, "
                       "CarScreenName"
                       + noDriver);
    QTest::newRow("comment between entries")
        << with("   UserName", "# who\n   UserName")
        << QStringList("+text-comment 21: is a comment, but is read as an entry; 3 entries after "
                       "it are lost: UserName, TeamName, CarScreenName"
                       + noDriver);
    QTest::newRow("only blanks")
        << with("   TeamName", "  \n   TeamName")
        << QStringList("+text-blanks 22: contains only spaces, which are read as an entry without "
                       "a name; 2 entries after it are lost: TeamName, CarScreenName");
    QTest::newRow("the same driver twice")
        << QByteArray(plain.chopped(5) + " - CarIdx: 0\n   UserName: Bee\n\n...\n")
        << QStringList("+text-repeated 21: is replaced by a later entry with the same name");
    QTest::newRow("two documents") << QByteArray(plain + plain)
                                   << QStringList("-text-document 26: comes after the end of the "
                                                  "first document, and only that one is read");
    QTest::newRow("document marker in front of the drivers")
        << with("DriverInfo:", "---\nDriverInfo:")
        << QStringList("+text-document 15: comes after the end of the first document, and only "
                       "that one is read"
                       + noDriver);
    QTest::newRow("empty document in front of everything")
        << "---\n...\n" + plain
        << QStringList("+text-document 3: comes after the end of the first document, and only that "
                       "one is read"
                       + noDriver);
    QTest::newRow("end of a document in front of a value")
        << with("DriverInfo:", "...\nA: 1\nDriverInfo:")
        << QStringList("+text-document 15: comes after the end of the first document, and only "
                       "that one is read"
                       + noDriver);
    QTest::newRow("end of a document in front of a loss")
        << withDriver("Ann: Bee").replace("DriverInfo:", "...\nDriverInfo:")
        << QStringList("+text-separators 22: contains \": \" more than once, so it is lost; 2 "
                       "entries after it are lost: TeamName, CarScreenName"
                       + noDriver);
    QTest::newRow("end of a document behind a loss")
        << with("Test Field", "A: B").replace("DriverInfo:", "...\nDriverInfo:")
        << QStringList("+text-separators 5: contains \": \" more than once, so it is lost; 16 "
                       "entries after it are lost: SessionID, SubSessionID, SessionInfo, ..."
                       + noDriver);
    QTest::newRow("a document that replaces values of the first one")
        << QByteArray(
               plain
               + "DriverInfo:\n DriverCarIdx: 0\n Drivers:\n - CarIdx: 0\n   UserName: Bee\n...\n")
        << QStringList("+text-repeated 21: is replaced by a later entry with the same name");
    QTest::newRow("no final line feed")
        << plain.chopped(6)
        << QStringList("+text-last-line 23: does not end with a line feed, so it is not read");
    QTest::newRow("no first line")
        << plain.mid(4)
        << QStringList("+text-first-line 1: is the first line, which is not read, so it is lost; 5 "
                       "entries after it are lost: TrackName, TrackLength, TrackDisplayName, ...");
    QTest::newRow("byte-order mark instead of the first line")
        << "\xef\xbb\xbf" + plain.mid(4)
        << QStringList("+text-first-line 1: is the first line, which is not read, so it is lost; 5 "
                       "entries after it are lost: TrackName, TrackLength, TrackDisplayName, ...");
    QTest::newRow("a carriage return")
        << with("Test Team", "Test Team\r")
        << QStringList("+text-carriage-return 22: ends with a carriage return, which becomes part "
                       "of the name or value");
    QTest::newRow("indented too far in front of another item")
        << QByteArray("---\nSessionInfo:\n Sessions:\n - SessionNum: 0\n      SessionLaps: 1\n     "
                      " SessionType: Race\n - SessionNum: 1\n   SessionType: Race\nDriverInfo:\n "
                      "DriverCarIdx: 0\n Drivers:\n - CarIdx: 0\n   UserName: Ann\n...\n")
        << QStringList("-text-indentation 5: is indented by 6 spaces instead of 3; 2 entries after "
                       "it are lost: 1, SessionType");
    QTest::newRow("one entry indented too far")
        << with(" TrackLength", "   TrackLength")
        << QStringList("+text-indentation 4: is indented by 3 spaces instead of 1; 3 entries after "
                       "it are lost: TrackDisplayName, SessionID, SubSessionID");
    QTest::newRow("indented too far without a loss, and something else behind it")
        << with(" SubSessionID", "   SubSessionID").replace("Test Team", "A: B")
        << QStringList("+text-separators 22: contains \": \" more than once, so it is lost; the "
                       "entry after it is lost: CarScreenName");
    QTest::newRow("two blanks a level")
        << QByteArray("---\nA:\n  B:\n    C: 1\n  D: 2\nDriverInfo:\n DriverCarIdx: 0\n Drivers:\n "
                      "- CarIdx: 0\n   UserName: Ann\n...\n")
        << QStringList(
               "-text-indentation 3: is indented by 2 spaces instead of 1; the entry after it is "
               "lost: D");
}

void tst_SessionInfoInspection::namesTheLine()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, findings);
    QCOMPARE(shortFindings(text), findings);
}

void tst_SessionInfoInspection::nobodyInThePlayersCar_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("reason");
    const QByteArray plain = Recording::plainSessionInfo();
    QTest::newRow("empty") << QByteArray() << 0 << "there is no DriverInfo";
    QTest::newRow("first line only") << QByteArray("---\n") << 0 << "there is no DriverInfo";
    QTest::newRow("no player's car")
        << with(" DriverCarIdx: 0\n", "") << 0 << "DriverInfo has no DriverCarIdx";
    for (const char *index : {"", "three", "-1", "64", "2147483648", "0.0", "%1"})
        QTest::addRow("player's car %s", index)
            << with("DriverCarIdx: 0", QByteArray("DriverCarIdx: ") + index) << 15
            << QStringLiteral("DriverCarIdx is \"%1\", which is not the number of a car (0 to 63)")
                   .arg(QLatin1String(index));
    QTest::newRow("another player's car") << with("DriverCarIdx: 0", "DriverCarIdx: 1") << 15
                                          << "the list of drivers does not contain car 1";
    QTest::newRow("empty list of drivers") << plain.left(plain.indexOf(" - CarIdx")) + "\n...\n"
                                           << 15 << "the list of drivers does not contain car 0";
    QTest::newRow("no name") << with("   UserName: Test Driver\n", "") << 20
                             << "the driver of car 0 has no UserName";
    QTest::newRow("empty name") << withDriver("") << 21 << "the driver of car 0 has no UserName";
}

void tst_SessionInfoInspection::nobodyInThePlayersCar()
{
    QFETCH(QByteArray, text);
    QFETCH(int, line);
    QFETCH(QString, reason);
    const QVector<Finding> findings = inspected(text);
    QCOMPARE(findings.size(), 1);
    const Finding &finding = findings.constFirst();
    QCOMPARE(finding.line, line);
    QVERIFY(finding.kind == FindingKind::NoDriver);
    QCOMPARE(finding.lost, QStringLiteral("all laps"));
    QCOMPARE(finding.text, QString(reason % noDriver));
}

void tst_SessionInfoInspection::quotes_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("quote");
    QTest::newRow("plain") << QByteArray("A: B") << "\"   TeamName: A: B\"";
    QTest::newRow("quotation marks") << QByteArray("\"A\": \\B") << R"("   TeamName: \"A\": \\B")";
    QTest::newRow("Latin-1") << QByteArray("J\xfcrgen: B")
                             << QStringLiteral("\"   TeamName: Jürgen: B\"");
    QTest::newRow("tab") << QByteArray("A: \tB: ") << R"("   TeamName: A: \tB: ")";
    QTest::newRow("what a terminal would obey")
        << QByteArray("A: \x1b[2J\x9b\x7f") << R"("   TeamName: A: \x1b[2J\x9b\x7f")";
    QTest::newRow("long") << QByteArray("A: " + QByteArray(1000000, 'x'))
                          << QString(QLatin1String("\"   TeamName: A: ")
                                     % QString(44, QLatin1Char('x')) % QChar(0x2026)
                                     % QLatin1Char('"'));
}

void tst_SessionInfoInspection::quotes()
{
    QFETCH(QByteArray, value);
    QFETCH(QString, quote);
    const QVector<Finding> findings = inspected(with("Test Team", value));
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.constFirst().quote, quote);
}

void tst_SessionInfoInspection::placeInTheFile()
{
    const QByteArray text = with("Test Team", "A: B");
    const Finding finding = inspected(text, 1000).constFirst();
    QCOMPARE(finding.line, 22);
    QCOMPARE(finding.offset.value_or(-1), qint64(1000 + text.indexOf("   TeamName")));
}

NAPAMMUL_TEST(tst_SessionInfoInspection)
#include "tst_sessioninfoinspection.moc"
