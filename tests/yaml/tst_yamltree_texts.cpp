// Whole texts: which of their lines are read, and how large they may be.

#include "tests/support/roomtests.h"
#include "tests/support/treecontents.h"

#include <QTest>

#include <memory>

class tst_YamlTreeTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linesRead_data();
    void linesRead();
    void sessionInfo();
    void latin1();
    void nullIsAnEmptyText();
    void textsMerge();
    void everyTextStartsAtTheRoot();
    void manyLines();
    void manyLevels();
    void manyLevelsByIndentation();
};

void tst_YamlTreeTexts::linesRead_data()
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

void tst_YamlTreeTexts::linesRead()
{
    QFETCH(QByteArray, text);
    QTEST(contentsOf(text), "contents");
}

void tst_YamlTreeTexts::sessionInfo()
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

    // Because of the empty key before the dedent, everything after it is one level too deep.
    QVERIFY(!tree.sub("DriverInfo"));
    QCOMPARE(tree.pathValue("SessionInfo/DriverInfo/DriverCarIdx"), QString("3"));
    QCOMPARE(tree.pathValue("SessionInfo/DriverInfo/Drivers/3/UserName"), QString("A B"));
    QCOMPARE(tree.pathValue("SessionInfo/DriverInfo/Drivers/12/UserName"), QString("Cy"));
    QVERIFY(tree.pathValue("SessionInfo/DriverInfo/Drivers/3/CarIdx").isNull());
    QVERIFY(tree.pathSub("SessionInfo/.."));
}

void tst_YamlTreeTexts::latin1()
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

void tst_YamlTreeTexts::nullIsAnEmptyText()
{
    TYamlTree tree;
    tree.setYaml("---\nA: 1\n");
    tree.setYaml(nullptr);
    QCOMPARE(TreeContents::of(tree), QStringList{"A=1"});
}

void tst_YamlTreeTexts::textsMerge()
{
    TYamlTree tree;
    tree.setYaml("---\nW:\n A: 1\n B: 1\n L:\n - I: 1\n   X: 1\n");
    const TStringTree *node = tree.sub("W");
    tree.setYaml("---\nW:\n B: 2\n C: 2\n L:\n - I: 1\n   Y: 2\n - I: 2\n   Y: 3\nV:\n D: 4\n");
    QCOMPARE(static_cast<const TStringTree *>(tree.sub("W")), node);
    QCOMPARE(TreeContents::of(tree),
             (QStringList{"V/", "V/D=4", "W/", "W/A=1", "W/B=2", "W/C=2", "W/L/", "W/L/1/",
                          "W/L/1/X=1", "W/L/1/Y=2", "W/L/2/", "W/L/2/Y=3"}));
}

void tst_YamlTreeTexts::everyTextStartsAtTheRoot()
{
    TYamlTree tree;
    tree.setYaml("---\nA:\n B:\n  - I: 1\n");
    // Neither the node nor the indentation, the kind of line or the item flag is kept.
    tree.setYaml("---\n C:\n");
    tree.setYaml("---\n D: 1\n");
    tree.setYaml("---\n \nE: 2\n");
    QCOMPARE(TreeContents::of(tree),
             (QStringList{"D=1", "/", "/E=2", "A/", "A/B/", "A/B/1/", "C/"}));
}

void tst_YamlTreeTexts::manyLines()
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
    QCOMPARE(TreeContents::childrenOf(*tree.sub("L")).size(), count);
    QCOMPARE(tree.pathValue("L/0/V"), QString("v0"));
    QCOMPARE(tree.pathValue("L/99999/V"), QString("v99999"));
    QCOMPARE(TreeContents::valuesOf(*tree.sub("W")).size(), count);
    QCOMPARE(tree.pathValue("W/K99999"), QString("99999"));
}

/// One stack frame per level would overflow the stack by far.
void tst_YamlTreeTexts::manyLevels()
{
    constexpr int depth = 200000;
    const QByteArray text = "---\n" + QByteArray("- A: 1\n").repeated(depth) + "K: v\n";
    auto tree = std::make_unique<TYamlTree>();
    tree->setYaml(text.constData());

    // The last line is dedented only by the dash.
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

void tst_YamlTreeTexts::manyLevelsByIndentation()
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

NAPAMMUL_TEST(tst_YamlTreeTexts)

#include "tst_yamltree_texts.moc"
