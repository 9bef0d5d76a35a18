// Where the lines of a text are stored.

#include "tests/support/roomtests.h"
#include "tests/support/treecontents.h"

#include <QTest>

#include <type_traits>

static_assert(!std::is_polymorphic_v<TYamlTree>);
static_assert(std::is_base_of_v<TStringTree, TYamlTree>);

class tst_YamlTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAnEmptyRoot();
    void countLeadingSpaces_data();
    void countLeadingSpaces();
    void keysAndValues_data();
    void keysAndValues();
    void listItems_data();
    void listItems();
    void indentation_data();
    void indentation();
    void outsideTheDialect_data();
    void outsideTheDialect();
    void emptyValueIsNotNull();
};

void tst_YamlTree::isAnEmptyRoot()
{
    const TYamlTree tree;
    QVERIFY(!tree.hasParent());
    QVERIFY(!tree.parent());
    QVERIFY(TreeContents::of(tree).isEmpty());
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

void tst_YamlTree::keysAndValues_data()
{
    QTest::addColumn<QByteArray>("text"); // after the first line
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
    QTest::addColumn<QByteArray>("text"); // after the first line
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
    QTest::addColumn<QByteArray>("text"); // after the first line
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
    QTest::addColumn<QByteArray>("text"); // after the first line
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
    // The first one counts as an item, after which nothing moves back up. The others are keys.
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

void tst_YamlTree::emptyValueIsNotNull()
{
    TYamlTree tree;
    tree.setYaml("---\nA: \nB:\n");
    QVERIFY(tree.value("A").isEmpty());
    QVERIFY(!tree.value("A").isNull());
    QVERIFY(tree.value("B").isNull());
}

NAPAMMUL_TEST(tst_YamlTree)

#include "tst_yamltree.moc"
