// Session-info text as it is found in the wild: what the laps then carry, and whether an inspection
// tells that they are lost.

#include "fuzz/promises.h"
#include "inspect/findinglist.h"
#include "inspect/sessioninfoinspection.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

#include <algorithm>

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

/// 64 drivers, of whom the player is the last.
QByteArray fullGrid()
{
    QByteArray drivers;
    for (int car = 0; car < 64; ++car) {
        const QByteArray number = QByteArray::number(car);
        drivers += " - CarIdx: " + number + "\n   UserName: Driver " + number
            + "\n   TeamName: Team " + number + "\n   CarScreenName: Car " + number + '\n';
    }
    QByteArray text = with("DriverCarIdx: 0", "DriverCarIdx: 63");
    const int list = text.indexOf(" - CarIdx");
    return text.left(list) + drivers + "\n...\n";
}

QByteArray withTabs(QByteArray text)
{
    return text.replace("\n ", "\n\t");
}

bool saysThatLapsAreLost(const QByteArray &text)
{
    FindingList list;
    inspectSessionInfo(text.constData(), {}, &list);
    const QVector<Finding> findings = list.findings();
    return std::any_of(findings.begin(), findings.end(), [](const Finding &finding) {
        return finding.lost == QLatin1String("all laps");
    });
}

} // namespace

class tst_WildSessionInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lapsCarry_data();
    void lapsCarry();
    void nobodyIsFollowed_data();
    void nobodyIsFollowed();

private:
    ImportResult importWith(const QByteArray &text);

    ImportFixture m_fixture;
};

/// Imports a lap and the start of another with \a text; no laps if a promise was broken.
ImportResult tst_WildSessionInfo::importWith(const QByteArray &text)
{
    Recording recording;
    recording.sessionInfo(text).set("IsOnTrack", 1).set("Lap", 1);
    recording.ticks(10, [](Recording &r, int tick) {
        r.set("LapDistPct", 0.05 * tick).set("LapCurrentLapTime", tick == 6 ? 0.5 : 10.0 + tick);
    });
    const QString fileName = m_fixture.write(recording.bytes());
    ImportResult result = m_fixture.importFile(fileName);
    if (!brokenPromise(result, fileName).isEmpty())
        result.laps.clear();
    return result;
}

void tst_WildSessionInfo::lapsCarry_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("team");
    QTest::addColumn<QString>("track");
    const QString driver = QStringLiteral("Test Driver");
    const QString team = QStringLiteral("Test Team");
    const QString track = QStringLiteral("Test Field");
    const QString none;

    QTest::newRow("plain") << Recording::plainSessionInfo() << driver << team << track;

    // Whatever stands behind the first ": " is the name, as it stands.
    for (const char *name : {"Ann@Bee",
                             "@Ann",
                             "{Ann}",
                             "[Ann, Bee]",
                             "# Ann",
                             "Ann # 7",
                             "\"Ann\"",
                             "'Ann'",
                             "\"Ann",
                             "- Ann",
                             "-Ann",
                             "? Ann",
                             "& Ann",
                             "*Ann",
                             "! Ann",
                             "| Ann",
                             "> Ann",
                             "%Ann",
                             "`Ann`",
                             "Ann:Bee",
                             "Ann:",
                             ":Ann",
                             " Ann ",
                             "Ann  Bee",
                             "Ann\tBee",
                             "\tAnn",
                             "...",
                             "---",
                             "null",
                             "0x10",
                             "Ann\x01"
                             "Bee",
                             "Ann\x7f"})
        QTest::addRow("driver %s", name)
            << withDriver(name) << QString::fromLatin1(name) << team << track;
    QTest::newRow("Latin-1 bytes")
        << withDriver("J\xfcrgen Gro\xdf") << QStringLiteral("Jürgen Groß") << team << track;
    QTest::newRow("control bytes above 127")
        << withDriver("A\x80\x9f\xff") << QString::fromLatin1("A\x80\x9f\xff") << team << track;
    // Text is Latin-1, so another encoding shows as what its bytes are there.
    QTest::newRow("UTF-8 bytes") << withDriver("J\xc3\xbcrgen") << QStringLiteral("JÃ¼rgen") << team
                                 << track;
    QTest::newRow("a megabyte on one line") << withDriver(QByteArray(1 << 20, 'x'))
                                            << QString(1 << 20, QLatin1Char('x')) << team << track;
    QTest::newRow("64 drivers") << fullGrid() << QStringLiteral("Driver 63")
                                << QStringLiteral("Team 63") << track;

    // A line that is no entry opens a node, and the entries behind it are lost in there.
    QTest::newRow("line break inside a name")
        << withDriver("Ann\nBee") << QStringLiteral("Ann") << none << track;
    QTest::newRow("line break inside a name, indented")
        << withDriver("Ann\n   Bee") << QStringLiteral("Ann") << none << track;
    QTest::newRow("line break inside the track's name")
        << with("TrackDisplayName: Test Field", "TrackDisplayName: Test\nField") << driver << team
        << QStringLiteral("Test");
    QTest::newRow("separator in the team's name")
        << with("TeamName: Test Team", "TeamName: A: B") << driver << none << track;
    QTest::newRow("carriage return alone in a name")
        << withDriver("Ann\rBee") << QStringLiteral("Ann\rBee") << team << track;
    QTest::newRow("carriage return behind names only")
        << with("Test Driver\n", "Test Driver\r\n").replace("Test Team\n", "Test Team\r\n")
        << QStringLiteral("Test Driver\r") << QStringLiteral("Test Team\r") << track;
    QTest::newRow("comment line at the end of the entries")
        << with("\n\n...", "\n# end\n\n...") << driver << team << track;
    QTest::newRow("blanks behind values")
        << withDriver("Ann  ") << QStringLiteral("Ann  ") << team << track;
    QTest::newRow("no blank behind a dash")
        << with(" - CarIdx", " -CarIdx") << driver << team << track;
    QTest::newRow("byte-order mark")
        << "\xef\xbb\xbf" + Recording::plainSessionInfo() << driver << team << track;
    QTest::newRow("line break in front of a colon in the team's name")
        << with("Test Team", "Mill\nrace: x") << driver << QStringLiteral("Mill") << track;
    QTest::newRow("blanks in a key") << with("UserName", "User Name") << driver << team << track;
    QTest::newRow("no team") << with("   TeamName: Test Team\n", "") << driver << none << track;
    QTest::newRow("empty team") << with("Test Team", "") << driver << QStringLiteral("") << track;
    QTest::newRow("no weekend") << with("WeekendInfo:", "Something:") << driver << team << none;
    QTest::newRow("blank behind the colon of the weekend")
        << with("WeekendInfo:", "WeekendInfo: ") << driver << team << none;
    QTest::newRow("no closing line") << with("...\n", "") << driver << team << track;
    QTest::newRow("no final newline") << with("...\n", "...") << driver << team << track;
    // The closing line of the first document opens a node, and the second one goes in there.
    QTest::newRow("two documents")
        << QByteArray(Recording::plainSessionInfo()
                      + with("Test Driver", "Second Driver").replace("Test Team", "Second Team"))
        << driver << team << track;
    QTest::newRow("two documents without closing lines")
        << QByteArray(with("...\n", "")
                      + with("Test Driver", "Second Driver").replace("Test Team", "Second Team"))
        << driver << team << track;
    QTest::newRow("end of a document in front of the drivers")
        << with("DriverInfo:", "...\nDriverInfo:") << driver << team << track;
    QTest::newRow("empty list behind the drivers")
        << with("\n\n...", "\n\nRadioInfo:\n Radios:\n...") << driver << team << track;
    QTest::newRow("the same driver twice") << QByteArray(
        Recording::plainSessionInfo().chopped(5) + " - CarIdx: 0\n   UserName: Bee\n\n...\n")
                                           << QStringLiteral("Bee") << team << track;
    QTest::newRow("bytes behind a zero") << QByteArray(
        Recording::plainSessionInfo() + QByteArray(1, '\0') + with("Test Driver", "Nobody"))
                                         << driver << team << track;
}

void tst_WildSessionInfo::lapsCarry()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, driver);
    QFETCH(QString, team);
    QFETCH(QString, track);

    const ImportResult result = importWith(text);
    QCOMPARE(int(result.laps.size()), 2);
    QVERIFY(!saysThatLapsAreLost(text));
    for (const auto &lap : result.laps) {
        QVERIFY(lap->getDriverName() == driver);
        const QString teamName = lap->value(QStringLiteral("Team")).value.toString();
        QCOMPARE(teamName, team);
        QCOMPARE(teamName.isNull(), team.isNull());
        QCOMPARE(lap->getTrackName(), track);
    }
}

void tst_WildSessionInfo::nobodyIsFollowed_data()
{
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("separator in the driver's name") << withDriver("Ann: Bee");
    QTest::newRow("separator at the end of the driver's name") << withDriver("Ann: ");
    // Left open, the node takes in the sections behind it, the drivers among them.
    QTest::newRow("separator in the track's name")
        << with("TrackDisplayName: Test Field", "TrackDisplayName: A: B");
    QTest::newRow("empty list in front of the drivers")
        << with("SessionInfo:", "RadioInfo:\n Radios:\n\nSessionInfo:");
    QTest::newRow("empty name") << withDriver("");
    QTest::newRow("tab behind the colon") << with("UserName: Test", "UserName:\tTest");
    QTest::newRow("no driver's name") << with("   UserName: Test Driver\n", "");
    QTest::newRow("empty list of drivers")
        << Recording::plainSessionInfo().left(Recording::plainSessionInfo().indexOf(" - CarIdx"))
            + "\n...\n";
    QTest::newRow("blank behind the colon of the section of the drivers")
        << with("DriverInfo:", "DriverInfo: ");
    QTest::newRow("blank behind the colon of the list of drivers")
        << with(" Drivers:", " Drivers: ");
    QTest::newRow("drivers in brackets") << with(" Drivers:", " Drivers: []");
    QTest::newRow("no player's car") << with(" DriverCarIdx: 0\n", "");
    for (const char *index : {"", "-1", "64", "2147483648", "0.0", "zero", "0x", "00000000000000a"})
        QTest::addRow("player's car %s", index)
            << with("DriverCarIdx: 0", QByteArray("DriverCarIdx: ") + index);
    QTest::newRow("another player's car") << with("DriverCarIdx: 0", "DriverCarIdx: 1");
    QTest::newRow("document marker in front of the drivers")
        << with("DriverInfo:", "---\nDriverInfo:");
    QTest::newRow("carriage returns") << with("\n", "\r\n");
    QTest::newRow("carriage returns only") << with("\n", "\r");
    QTest::newRow("tabs as indentation") << withTabs(Recording::plainSessionInfo());
    QTest::newRow("no final newline behind the driver's name")
        << Recording::plainSessionInfo().left(
               Recording::plainSessionInfo().indexOf("\n   TeamName"));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("line feeds") << QByteArray(1000, '\n');
    QTest::newRow("blanks") << QByteArray(1000, ' ');
    QTest::newRow("first line only") << QByteArray("---\n");
}

void tst_WildSessionInfo::nobodyIsFollowed()
{
    QFETCH(QByteArray, text);

    const ImportResult result = importWith(text);
    QCOMPARE(int(result.laps.size()), 1);
    QVERIFY(result.laps.front()->isEmpty());
    QVERIFY(saysThatLapsAreLost(text));
}

NAPAMMUL_TEST(tst_WildSessionInfo)
#include "tst_wildsessioninfo.moc"
