#include "yaml/yamltree.h"

#include <QTest>

#include <memory>
#include <type_traits>

static_assert(!std::is_polymorphic_v<TYamlTree>);
static_assert(std::is_base_of_v<TStringTree, TYamlTree>);

namespace {

/// Lists what any node of a tree holds.
class Contents : public TStringTree
{
public:
    /// Every child as "path/" and every value as "path/key=value", node by node: its values first,
    /// then each child followed by what it holds, all in ascending order.
    static QStringList of(const TStringTree &node, const QString &path = QString())
    {
        QStringList lines;
        const QMap<QString, QString> &pairs = node.*(&Contents::values);
        for (auto pair = pairs.cbegin(); pair != pairs.cend(); ++pair)
            lines += path + pair.key() + '=' + pair.value();
        const QMap<QString, TStringTree *> &children = node.*(&Contents::subTrees);
        for (auto child = children.cbegin(); child != children.cend(); ++child) {
            const QString childPath = path + child.key() + '/';
            lines += childPath;
            lines += of(*child.value(), childPath);
        }
        return lines;
    }

    static QMap<QString, TStringTree *> childrenOf(const TStringTree &node)
    {
        return node.*(&Contents::subTrees);
    }

    static QMap<QString, QString> valuesOf(const TStringTree &node)
    {
        return node.*(&Contents::values);
    }
};

QStringList contentsOf(const QByteArray &text)
{
    TYamlTree tree;
    tree.setYaml(text.constData());
    return Contents::of(tree);
}

} // namespace

class tst_YamlTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAnEmptyRoot();

    void countLeadingSpaces_data();
    void countLeadingSpaces();

    void linesRead_data();
    void linesRead();
    void keysAndValues_data();
    void keysAndValues();
    void listItems_data();
    void listItems();
    void indentation_data();
    void indentation();
    void outsideTheDialect_data();
    void outsideTheDialect();

    void sessionInfo();
    void emptyValueIsNotNull();
    void latin1();
    void nullIsAnEmptyText();
    void textsMerge();
    void everyTextStartsAtTheRoot();

    void manyLines();
    void manyLevels();
    void manyLevelsByIndentation();
};

void tst_YamlTree::isAnEmptyRoot()
{
    const TYamlTree tree;
    QVERIFY(!tree.hasParent());
    QVERIFY(!tree.parent());
    QVERIFY(Contents::of(tree).isEmpty());
}

void tst_YamlTree::countLeadingSpaces_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("flagBefore");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("flagAfter");

    const auto row = [](const char *name, const QString &line, int count, bool isListItem) {
        QTest::addRow("%s", name) << line << false << count << isListItem;
        QTest::addRow("%s, behind a list item", name) << line << true << count << isListItem;
    };
    row("no blanks", "Key: v", 0, false);
    row("one blank", " Key: v", 1, false);
    row("many blanks", "          Key: v", 10, false);
    row("one character", "K", 0, false);
    row("dash", "- A: 1", 1, true);
    row("blanks and dash", "  - A: 1", 3, true);
    row("only a dash", "-", 1, true);
    row("blanks and only a dash", "  -", 3, true);
    row("three dashes", "---", 1, true);
    row("dash without blank", " -A", 2, true);
    row("dash inside the key", " A-B: 1", 1, false);
    row("blanks behind the text do not count", " A  ", 1, false);
    row("tab", "\tKey: v", 0, false);
    row("blanks and tab", "  \tKey: v", 2, false);
    row("tab and dash", "\t- A: 1", 0, false);
    row("non-breaking blank", QString(QChar(0xa0)) + "Key: v", 0, false);
    row("carriage return", "  \r", 2, false);

    QTest::newRow("empty") << "" << false << 0 << false;
    QTest::newRow("empty, behind a list item") << "" << true << 0 << true;
    QTest::newRow("only blanks") << "   " << false << 0 << false;
    QTest::newRow("only blanks, behind a list item") << "   " << true << 0 << true;
}

void tst_YamlTree::countLeadingSpaces()
{
    QFETCH(QString, line);
    QFETCH(bool, flagBefore);

    bool isListItem = flagBefore;
    QTEST(TYamlTree::countLeadingSpaces(line, isListItem), "count");
    QTEST(isListItem, "flagAfter");
}

void tst_YamlTree::linesRead_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("contents");

    const QStringList nothing;
    QTest::newRow("empty text") << QByteArray("") << nothing;
    QTest::newRow("only a line feed") << QByteArray("\n") << nothing;
    QTest::newRow("one line, not ended") << QByteArray("A: 1") << nothing;
    QTest::newRow("one line") << QByteArray("A: 1\n") << nothing;
    QTest::newRow("first line is never read") << QByteArray("A: 1\nB: 2\n") << QStringList{"B=2"};
    QTest::newRow("empty first line") << QByteArray("\nB: 2\n") << QStringList{"B=2"};
    QTest::newRow("last line is not ended") << QByteArray("---\nA: 1\nB: 2") << QStringList{"A=1"};
    QTest::newRow("second line is not ended") << QByteArray("---\nA: 1") << nothing;
    QTest::newRow("blanks behind the last line feed")
        << QByteArray("---\nA: 1\n ") << QStringList{"A=1"};
    QTest::newRow("two line feeds at the end") << QByteArray("---\nA: 1\n\n") << QStringList{"A=1"};
    QTest::newRow("empty lines are skipped")
        << QByteArray("---\n\nA:\n\n B: 1\n\n\n C: 2\n") << (QStringList{"A/", "A/B=1", "A/C=2"});
    QTest::newRow("closing mark is a key")
        << QByteArray("---\nA: 1\n...\n") << (QStringList{"A=1", "../"});
    QTest::newRow("zero ends the text")
        << QByteArray("---\nA: 1\nB: 2\0\nC: 3\n", 20) << QStringList{"A=1"};
    QTest::newRow("zero behind a line feed")
        << QByteArray("---\nA: 1\n\0B: 2\n", 15) << QStringList{"A=1"};
    QTest::newRow("zero at the front") << QByteArray("\0---\nA: 1\n", 10) << nothing;
    QTest::newRow("carriage returns stay")
        << QByteArray("---\r\nA:\r\n B: v\r\n") << (QStringList{"A:/", "A:/B=v\r"});
    QTest::newRow("a carriage return ends no line") << QByteArray("---\rA: 1\rB: 2\r") << nothing;
    QTest::newRow("a line of one carriage return is a key")
        << QByteArray("---\n\r\n") << QStringList{"/"};
    QTest::newRow("other line ends are characters")
        << QByteArray("---\nA: 1\v2\f3\x85"
                      "4\n")
        << QStringList{QStringLiteral("A=1\v2\f3\u00854")};
}

void tst_YamlTree::linesRead()
{
    QFETCH(QByteArray, text);
    QTEST(contentsOf(text), "contents");
}

void tst_YamlTree::keysAndValues_data()
{
    QTest::addColumn<QByteArray>("text"); // behind the first line
    QTest::addColumn<QStringList>("contents");

    QTest::newRow("value") << QByteArray("A: 1\n") << QStringList{"A=1"};
    QTest::newRow("values in a node")
        << QByteArray("W:\n A: spa\n B: 93\n") << (QStringList{"W/", "W/A=spa", "W/B=93"});
    QTest::newRow("later value wins") << QByteArray("A: 1\nA: 2\n") << QStringList{"A=2"};
    QTest::newRow("blanks in the key go")
        << QByteArray("Track  Name : x\n") << QStringList{"TrackName=x"};
    QTest::newRow("tabs in the key stay")
        << QByteArray("Track\tName: x\n") << QStringList{"Track\tName=x"};
    QTest::newRow("blanks in the value stay")
        << QByteArray("A:  a  b \n") << QStringList{"A= a  b "};
    QTest::newRow("quotes stay") << QByteArray("A: \"a b\"\n") << QStringList{"A=\"a b\""};
    QTest::newRow("comment is text") << QByteArray("A: 1 # one\n") << QStringList{"A=1 # one"};
    QTest::newRow("empty value") << QByteArray("A: \n") << QStringList{"A="};
    QTest::newRow("empty key") << QByteArray(": 1\n") << QStringList{"=1"};
    QTest::newRow("empty key and value") << QByteArray(": \n") << QStringList{"="};
    QTest::newRow("colon without blank is no end of the key")
        << QByteArray("A:b: 1\n") << QStringList{"A:b=1"};
    QTest::newRow("colon in the value") << QByteArray("A: 12:30\n") << QStringList{"A=12:30"};
    QTest::newRow("colon at the end of the value") << QByteArray("A: b:\n") << QStringList{"A=b:"};
    QTest::newRow("two colons") << QByteArray("A:: 1\n") << QStringList{"A:=1"};

    QTest::newRow("key") << QByteArray("A:\n") << QStringList{"A/"};
    QTest::newRow("blanks in a key") << QByteArray(" Track Name :\n") << QStringList{"TrackName/"};
    QTest::newRow("key without colon loses a character")
        << QByteArray("Abc\n") << QStringList{"Ab/"};
    QTest::newRow("key of one character") << QByteArray("A\n") << QStringList{"/"};
    QTest::newRow("colon followed by a tab") << QByteArray("A:\t1\n") << QStringList{"A:\t/"};
    QTest::newRow("three parts are a key")
        << QByteArray("TeamName: A: B\n") << QStringList{"TeamName:A:/"};
    QTest::newRow("four parts are a key") << QByteArray("T: A: B: C\n") << QStringList{"T:A:B:/"};
    QTest::newRow("three parts, the last one empty")
        << QByteArray("T: A: \n") << QStringList{"T:A:/"};
    QTest::newRow("key that was there is entered again")
        << QByteArray("A:\n B: 1\nA:\n C: 2\n") << (QStringList{"A/", "A/B=1", "A/C=2"});
    QTest::newRow("child and value of one name")
        << QByteArray("A: 1\nA:\n B: 2\n") << (QStringList{"A=1", "A/", "A/B=2"});
}

void tst_YamlTree::keysAndValues()
{
    QFETCH(QByteArray, text);
    QTEST(contentsOf("---\n" + text), "contents");
}

void tst_YamlTree::listItems_data()
{
    QTest::addColumn<QByteArray>("text"); // behind the first line
    QTest::addColumn<QStringList>("contents");

    QTest::newRow("items are named after their first value")
        << QByteArray("DriverInfo:\n Drivers:\n - CarIdx: 0\n   UserName: A B\n - CarIdx: 12\n   "
                      "UserName: Cy\n")
        << QStringList{"DriverInfo/",
                       "DriverInfo/Drivers/",
                       "DriverInfo/Drivers/0/",
                       "DriverInfo/Drivers/0/UserName=A B",
                       "DriverInfo/Drivers/12/",
                       "DriverInfo/Drivers/12/UserName=Cy"};
    QTest::newRow("blanks in the name go")
        << QByteArray("L:\n - Name:  A B \n   K: v\n") << (QStringList{"L/", "L/AB/", "L/AB/K=v"});
    QTest::newRow("items of one name merge")
        << QByteArray("L:\n - I: 1\n   A: x\n   B: x\n - I: 1\n   B: y\n   C: y\n")
        << (QStringList{"L/", "L/1/", "L/1/A=x", "L/1/B=y", "L/1/C=y"});
    QTest::newRow("first value is empty")
        << QByteArray("L:\n - I: \n   A: x\n") << (QStringList{"L/", "L//", "L//A=x"});
    QTest::newRow("list in an item")
        << QByteArray(
               "L:\n - I: 1\n   M:\n   - J: 2\n     A: x\n   - J: 3\n     A: y\n - I: 4\n   B: z\n")
        << QStringList{"L/",       "L/1/",        "L/1/M/", "L/1/M/2/", "L/1/M/2/A=x",
                       "L/1/M/3/", "L/1/M/3/A=y", "L/4/",   "L/4/B=z"};
    QTest::newRow("key behind a list") << QByteArray("L:\n - I: 1\n   A: x\nM:\n B: y\n")
                                       << (QStringList{"L/", "L/1/", "L/1/A=x", "M/", "M/B=y"});
    QTest::newRow("value behind a list")
        << QByteArray("W:\n L:\n - I: 1\n   A: x\n B: y\n")
        << (QStringList{"W/", "W/B=y", "W/L/", "W/L/1/", "W/L/1/A=x"});
    QTest::newRow("item in the root") << QByteArray("- I: 1\n") << QStringList{"1/"};
    QTest::newRow("only line of an item, the next one nests")
        << QByteArray("L:\n - A: 1\n - A: 2\n") << (QStringList{"L/", "L/1/", "L/1/2/"});
    QTest::newRow("three items of one line nest")
        << QByteArray("- A: 1\n- A: 1\n- A: 1\n") << (QStringList{"1/", "1/1/", "1/1/1/"});
    QTest::newRow("value at the item's level goes into the item")
        << QByteArray("- A: 1\n B: 2\n") << (QStringList{"1/", "1/B=2"});

    QTest::newRow("no value, same level: a key with its dash")
        << QByteArray("- Foo\n") << QStringList{"-Fo/"};
    QTest::newRow("no value but a colon: a key with its dash")
        << QByteArray("- Foo:\n") << QStringList{"-Foo/"};
    QTest::newRow("no value, deeper: a key with its dash")
        << QByteArray("A:\n - F oo\n") << (QStringList{"A/", "A/-Fo/"});
    QTest::newRow("no value, behind a dedent: the whole text")
        << QByteArray("A:\n B:\n   C: 1\n - Fo o\n")
        << (QStringList{"A/", "A/-Foo/", "A/B/", "A/B/C=1"});
    QTest::newRow("no value but a colon, behind a dedent")
        << QByteArray("A:\n B:\n   C: 1\n - Foo:\n")
        << (QStringList{"A/", "A/-Foo:/", "A/B/", "A/B/C=1"});
    QTest::newRow("three parts, same level: a key with its dash")
        << QByteArray("- A: B: C\n") << QStringList{"-A:B:/"};
    QTest::newRow("three parts, behind a dedent: the last one")
        << QByteArray("A:\n B:\n   C: 1\n - X: Y: Z z\n")
        << (QStringList{"A/", "A/B/", "A/B/C=1", "A/Zz/"});
    QTest::newRow("dash without blank is an item too")
        << QByteArray("-I: 1\n A: x\n") << (QStringList{"1/", "1/A=x"});
    QTest::newRow("negative number is an item too")
        << QByteArray("A:\n -1: x\n") << (QStringList{"A/", "A/x/"});
}

void tst_YamlTree::listItems()
{
    QFETCH(QByteArray, text);
    QTEST(contentsOf("---\n" + text), "contents");
}

void tst_YamlTree::indentation_data()
{
    QTest::addColumn<QByteArray>("text"); // behind the first line
    QTest::addColumn<QStringList>("contents");

    QTest::newRow("keys at one level")
        << QByteArray("A:\nB:\nC:\n") << (QStringList{"A/", "B/", "C/"});
    QTest::newRow("keys at a deeper level")
        << QByteArray("W:\n A:\n B:\n C: 1\n") << (QStringList{"W/", "W/A/", "W/B/", "W/B/C=1"});
    QTest::newRow("value at the level of an empty key goes into it")
        << QByteArray("A:\nB: 1\n") << (QStringList{"A/", "A/B=1"});
    QTest::newRow("key behind a value behind an empty key goes into it")
        << QByteArray("A:\nB: 1\nC:\n") << (QStringList{"A/", "A/B=1", "A/C/"});
    QTest::newRow("value behind two empty keys goes into the second")
        << QByteArray("A:\nB:\nC: 1\n") << (QStringList{"A/", "B/", "B/C=1"});
    QTest::newRow("empty key followed by a dedent is one level too deep")
        << QByteArray("A:\n B: 1\n C:\nD: 2\n") << (QStringList{"A/", "A/B=1", "A/D=2", "A/C/"});
    QTest::newRow("empty key followed by a dedent and a key")
        << QByteArray("A:\n C:\nD:\n") << (QStringList{"A/", "A/C/", "A/D/"});
    QTest::newRow("item followed by its level's key goes into the item")
        << QByteArray("L:\n - I: 1\n  K:\n") << (QStringList{"L/", "L/1/", "L/1/K/"});
    QTest::newRow("dedent by one") << QByteArray("A:\n B:\n  C: 1\n D: 2\n")
                                   << (QStringList{"A/", "A/D=2", "A/B/", "A/B/C=1"});
    QTest::newRow("dedent by several") << QByteArray("A:\n B:\n  C:\n   D: 1\nE: 2\n")
                                       << (QStringList{"E=2", "A/", "A/B/", "A/B/C/", "A/B/C/D=1"});
    QTest::newRow("deeper by several counts once")
        << QByteArray("A:\n     B: 1\n") << (QStringList{"A/", "A/B=1"});
    QTest::newRow("deeper by several, back by several: past the root")
        << QByteArray("A:\n     B: 1\nC: 2\n") << (QStringList{"C=2", "A/", "A/B=1"});
    QTest::newRow("deeper by two twice, back by two: two levels up")
        << QByteArray("A:\n  B:\n    C: 1\n  D: 2\n")
        << (QStringList{"D=2", "A/", "A/B/", "A/B/C=1"});
    QTest::newRow("value deeper than a value stays in the node")
        << QByteArray("A: 1\n   B: 2\n") << (QStringList{"A=1", "B=2"});
    QTest::newRow("key deeper than a value stays in the node")
        << QByteArray("A: 1\n B:\n  C: 2\n") << (QStringList{"A=1", "B/", "B/C=2"});

    QTest::newRow("dedent past the root, value")
        << QByteArray("    A: 1\nB: 2\n") << (QStringList{"A=1", "B=2"});
    QTest::newRow("dedent past the root, key")
        << QByteArray("    A: 1\nB:\n C: 2\n") << (QStringList{"A=1", "B/", "B/C=2"});
    QTest::newRow("dedent past the root, item")
        << QByteArray("     A: 1\n- I: 2\n  B: 3\n") << (QStringList{"A=1", "2/", "2/B=3"});
    QTest::newRow("dedent past the root from a node")
        << QByteArray("      A:\nB: 2\n") << (QStringList{"B=2", "A/"});
    QTest::newRow("dedent past the root again and again")
        << QByteArray("    A:\n  B:\nC:\n    D: 1\n  E: 2\nF: 3\n")
        << (QStringList{"E=2", "F=3", "A/", "B/", "C/", "C/D=1"});
}

void tst_YamlTree::indentation()
{
    QFETCH(QByteArray, text);
    QTEST(contentsOf("---\n" + text), "contents");
}

void tst_YamlTree::outsideTheDialect_data()
{
    QTest::addColumn<QByteArray>("text"); // behind the first line
    QTest::addColumn<QStringList>("contents");

    QTest::newRow("only blanks: back to the top, into a child without name")
        << QByteArray("A:\n B: 1\n   \n C: 2\n") << (QStringList{"/", "/C=2", "A/", "A/B=1"});
    QTest::newRow("only blanks, behind an item's value")
        << QByteArray("L:\n - I: 1\n   A: x\n  \nB: y\n")
        << (QStringList{"/", "/B=y", "L/", "L/1/", "L/1/A=x"});
    QTest::newRow("only blanks, behind an item's first line")
        << QByteArray("L:\n - I: 1\n  \nB: y\n") << (QStringList{"/", "/B=y", "L/", "L/1/"});
    QTest::newRow("only blanks at the top")
        << QByteArray(" \nA: 1\n") << (QStringList{"/", "/A=1"});
    // The first one counts as an item, behind which nothing steps back up; the others are keys.
    QTest::newRow("only blanks three times, behind an item's first line")
        << QByteArray("L:\n - I: 1\n  \n  \n  \nB: y\n")
        << (QStringList{"/", "//", "//B=y", "L/", "L/1/"});
    QTest::newRow("only blanks twice, behind a key")
        << QByteArray("A:\n B: 1\n  \n  \nC: 2\n") << (QStringList{"/", "/C=2", "A/", "A/B=1"});
    QTest::newRow("comment is a key")
        << QByteArray("# comment\nA:\n") << (QStringList{"#commen/", "A/"});
    QTest::newRow("comment with a value") << QByteArray("# A: 1\n") << QStringList{"#A=1"};
    QTest::newRow("flow list is text") << QByteArray("A: [1, 2]\n") << QStringList{"A=[1, 2]"};
    QTest::newRow("flow mapping is a key") << QByteArray("A: {B: 1}\n") << QStringList{"A:{B:1/"};
    QTest::newRow("anchor is text")
        << QByteArray("A: &x 1\nB: *x\n") << (QStringList{"A=&x 1", "B=*x"});
    QTest::newRow("folded text") << QByteArray("A: >\n  some\n  text\nB: 1\n")
                                 << (QStringList{"A=>", "B=1", "som/", "tex/"});
    QTest::newRow("quoted key keeps its quotes")
        << QByteArray("\"A\": 1\n") << QStringList{"\"A\"=1"};
    QTest::newRow("tab is no indentation")
        << QByteArray("A:\n\tB: 1\n") << (QStringList{"A/", "A/\tB=1"});
    QTest::newRow("slash in a key")
        << QByteArray("A/B: 1\nC/D:\n") << (QStringList{"A/B=1", "C/D/"});
    QTest::newRow("second document mark")
        << QByteArray("A: 1\n---\nB: 2\n") << (QStringList{"A=1", "B=2", "--/"});
}

void tst_YamlTree::outsideTheDialect()
{
    QFETCH(QByteArray, text);
    QTEST(contentsOf("---\n" + text), "contents");
}

void tst_YamlTree::sessionInfo()
{
    TYamlTree tree;
    tree.setYaml("---\n"
                 "WeekendInfo:\n"
                 " TrackName: spa\n"
                 " TrackID: 93\n"
                 " TrackDisplayName: \"Spa \" \n"
                 " WeekendOptions:\n"
                 "  NumStarters: 1\n"
                 "  WeatherTemp: 25.56 C\n"
                 "\n"
                 "SessionInfo:\n"
                 " Sessions:\n"
                 " - SessionNum: 0\n"
                 "   SessionType: Practice\n"
                 "   ResultsPositions:\n"
                 "   - Position: 1\n"
                 "     CarIdx: 3\n"
                 "   - Position: 2\n"
                 "     CarIdx: 12\n"
                 "   ResultsFastestLap:\n"
                 "   - CarIdx: 255\n"
                 "     FastestLap: 0\n"
                 "   ResultsOfficial: 0\n"
                 " - SessionNum: 1\n"
                 "   SessionType: Race\n"
                 "   ResultsPositions:\n"
                 "\n"
                 "DriverInfo:\n"
                 " DriverCarIdx: 3\n"
                 " Drivers:\n"
                 " - CarIdx: 3\n"
                 "   UserName: A B\n"
                 "   TeamName: \n"
                 " - CarIdx: 12\n"
                 "   UserName: Cy\n"
                 "\n"
                 "...\n");
    QCOMPARE(tree.pathValue("WeekendInfo/TrackName"), QString("spa"));
    QCOMPARE(tree.pathValue("WeekendInfo/TrackID"), QString("93"));
    QCOMPARE(tree.pathValue("WeekendInfo/TrackDisplayName"), QString("\"Spa \" "));
    QCOMPARE(tree.pathValue("WeekendInfo/WeekendOptions/WeatherTemp"), QString("25.56 C"));
    QCOMPARE(tree.pathValue("SessionInfo/Sessions/0/SessionType"), QString("Practice"));
    QCOMPARE(tree.pathValue("SessionInfo/Sessions/0/ResultsPositions/1/CarIdx"), QString("3"));
    QCOMPARE(tree.pathValue("SessionInfo/Sessions/0/ResultsPositions/2/CarIdx"), QString("12"));
    QCOMPARE(tree.pathValue("SessionInfo/Sessions/0/ResultsFastestLap/255/FastestLap"),
             QString("0"));
    QCOMPARE(tree.pathValue("SessionInfo/Sessions/0/ResultsOfficial"), QString("0"));
    QCOMPARE(tree.pathValue("SessionInfo/Sessions/1/SessionType"), QString("Race"));
    QVERIFY(tree.pathValue("SessionInfo/Sessions/0/SessionNum").isNull());

    // The empty key before the dedent leaves everything behind it one level too deep.
    QVERIFY(!tree.sub("DriverInfo"));
    QCOMPARE(tree.pathValue("SessionInfo/DriverInfo/DriverCarIdx"), QString("3"));
    QCOMPARE(tree.pathValue("SessionInfo/DriverInfo/Drivers/3/UserName"), QString("A B"));
    QCOMPARE(tree.pathValue("SessionInfo/DriverInfo/Drivers/12/UserName"), QString("Cy"));
    QVERIFY(tree.pathValue("SessionInfo/DriverInfo/Drivers/3/CarIdx").isNull());
    QVERIFY(tree.pathSub("SessionInfo/.."));
}

void tst_YamlTree::emptyValueIsNotNull()
{
    TYamlTree tree;
    tree.setYaml("---\nA: \nB:\n");
    QVERIFY(tree.value("A").isEmpty());
    QVERIFY(!tree.value("A").isNull());
    QVERIFY(tree.value("B").isNull());
}

void tst_YamlTree::latin1()
{
    QByteArray text("---\nN\xfcrburg: M\xfcller\n");
    QString every;
    for (int code = 0x80; code <= 0xff; ++code)
        every += QChar(code);
    text += "all: " + every.toLatin1() + '\n';
    TYamlTree tree;
    tree.setYaml(text.constData());
    QCOMPARE(tree.value(QStringLiteral("N\u00fcrburg")), QStringLiteral("M\u00fcller"));
    QCOMPARE(tree.value("all"), every);
}

void tst_YamlTree::nullIsAnEmptyText()
{
    TYamlTree tree;
    tree.setYaml("---\nA: 1\n");
    tree.setYaml(nullptr);
    QCOMPARE(Contents::of(tree), QStringList{"A=1"});
}

void tst_YamlTree::textsMerge()
{
    TYamlTree tree;
    tree.setYaml("---\nW:\n A: 1\n B: 1\n L:\n - I: 1\n   X: 1\n");
    const TStringTree *node = tree.sub("W");
    tree.setYaml("---\nW:\n B: 2\n C: 2\n L:\n - I: 1\n   Y: 2\n - I: 2\n   Y: 3\nV:\n D: 4\n");
    QCOMPARE(static_cast<const TStringTree *>(tree.sub("W")), node);
    QCOMPARE(Contents::of(tree),
             (QStringList{"V/", "V/D=4", "W/", "W/A=1", "W/B=2", "W/C=2", "W/L/", "W/L/1/",
                          "W/L/1/X=1", "W/L/1/Y=2", "W/L/2/", "W/L/2/Y=3"}));
}

void tst_YamlTree::everyTextStartsAtTheRoot()
{
    TYamlTree tree;
    tree.setYaml("---\nA:\n B:\n  - I: 1\n");
    // Neither the node nor the indentation, the kind of line or the item flag is carried over.
    tree.setYaml("---\n C:\n");
    tree.setYaml("---\n D: 1\n");
    tree.setYaml("---\n \nE: 2\n");
    QCOMPARE(Contents::of(tree), (QStringList{"D=1", "/", "/E=2", "A/", "A/B/", "A/B/1/", "C/"}));
}

void tst_YamlTree::manyLines()
{
    constexpr int count = 100000;
    QByteArray text("---\nL:\n");
    text.reserve(60 * count);
    for (int i = 0; i < count; ++i)
        text += " - I: " + QByteArray::number(i) + "\n   V: v" + QByteArray::number(i) + '\n';
    text += "W:\n";
    for (int i = 0; i < count; ++i)
        text += " K" + QByteArray::number(i) + ": " + QByteArray::number(i) + '\n';

    TYamlTree tree;
    tree.setYaml(text.constData());
    QCOMPARE(Contents::childrenOf(*tree.sub("L")).size(), count);
    QCOMPARE(tree.pathValue("L/0/V"), QString("v0"));
    QCOMPARE(tree.pathValue("L/99999/V"), QString("v99999"));
    QCOMPARE(Contents::valuesOf(*tree.sub("W")).size(), count);
    QCOMPARE(tree.pathValue("W/K99999"), QString("99999"));
}

/// One stack frame per level would be far more than a stack holds.
void tst_YamlTree::manyLevels()
{
    constexpr int depth = 1000000;
    const QByteArray text = "---\n" + QByteArray("- A: 1\n").repeated(depth) + "K: v\n";
    auto tree = std::make_unique<TYamlTree>();
    tree->setYaml(text.constData());

    // The last line dedents by the dash only.
    const TStringTree *node = tree.get();
    int levels = 0;
    while (const TStringTree *child = node->sub("1")) {
        if (!node->value("K").isNull())
            QCOMPARE(levels, depth - 1);
        node = child;
        ++levels;
    }
    QCOMPARE(levels, depth);
    QCOMPARE(node->parent()->value("K"), QString("v"));
    tree.reset();
}

void tst_YamlTree::manyLevelsByIndentation()
{
    constexpr int depth = 3000;
    QByteArray text("---\n");
    text.reserve(depth * (depth + 8) / 2);
    for (int i = 0; i < depth; ++i)
        text += QByteArray(i, ' ') + "N:\n";
    text += QByteArray(depth, ' ') + "K: deepest\n";
    text += "K: top\n";

    TYamlTree tree;
    tree.setYaml(text.constData());
    QCOMPARE(tree.value("K"), QString("top"));
    QCOMPARE(tree.pathValue(QStringLiteral("N/").repeated(depth) + "K"), QString("deepest"));
}

QTEST_APPLESS_MAIN(tst_YamlTree)

#include "tst_yamltree.moc"
