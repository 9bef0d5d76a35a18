#include "host/text/tablewriter.h"
#include "host/text/textwidth.h"
#include "tests/support/roomtests.h"

#include <QTest>

using Align = TableWriter::Align;
using Style = TableWriter::Style;

class tst_TableWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void alignsColumns();
    void leavesNoBlanksAtTheEndOfALine();
    void needsNoTitles();
    void takesMissingCellsAsEmpty();
    void hasSections();
    void fitsTheWidth_data();
    void fitsTheWidth();
    void colours();
    void keepsControlCharactersOut();
    void displayWidth_data();
    void displayWidth();
    void elided_data();
    void elided();
    void printable_data();
    void printable();
    void emptyCells();
};

namespace {

TableWriter fruit()
{
    TableWriter table({{QStringLiteral("Name"), Align::Left, 0, 5},
                       {QStringLiteral("Kind"), Align::Left, 2},
                       {QStringLiteral("Price"), Align::Right, 1},
                       {QStringLiteral("No"), Align::Right}});
    table.addRow({QStringLiteral("Elderberry"), QStringLiteral("bush"), QStringLiteral("12.50"),
                  QStringLiteral("7")});
    table.addRow({QStringLiteral("Fig"), QStringLiteral("tree"), QStringLiteral("3.5"),
                  QStringLiteral("118")});
    return table;
}

} // namespace

void tst_TableWriter::alignsColumns()
{
    QCOMPARE(fruit().text(),
             QStringLiteral("Name        Kind  Price   No\n"
                            "Elderberry  bush  12.50    7\n"
                            "Fig         tree    3.5  118\n"));
}

void tst_TableWriter::leavesNoBlanksAtTheEndOfALine()
{
    TableWriter table({{QStringLiteral("A")}, {QStringLiteral("B")}});
    table.addRow({QStringLiteral("one"), QString()});
    table.addRow({QString(), QStringLiteral("two")});
    QCOMPARE(table.text(), QStringLiteral("A    B\none\n     two\n"));
}

void tst_TableWriter::needsNoTitles()
{
    TableWriter table({{QString()}, {QString()}});
    QCOMPARE(table.text(), QString());
    table.addRow({QStringLiteral("Track"), QStringLiteral("Lakeside")});
    QCOMPARE(table.text(), QStringLiteral("Track  Lakeside\n"));
}

void tst_TableWriter::takesMissingCellsAsEmpty()
{
    TableWriter table({{QStringLiteral("A")}, {QStringLiteral("B")}});
    table.addRow({QStringLiteral("1")});
    table.addRow({});
    QCOMPARE(table.text(), QStringLiteral("A  B\n1\n\n"));
}

void tst_TableWriter::hasSections()
{
    TableWriter table({{QString()}, {QString()}});
    table.addSection(QStringLiteral("A title that is wider than every cell"));
    table.addRow({QStringLiteral("a"), QStringLiteral("1")});
    table.addSection(QStringLiteral("More"));
    table.addRow({QStringLiteral("bb"), QStringLiteral("2")});
    QCOMPARE(table.text(),
             QStringLiteral("A title that is wider than every cell\na   1\n\nMore\nbb  2\n"));
}

void tst_TableWriter::fitsTheWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("firstLines");

    const QString all =
        QStringLiteral("Name        Kind  Price   No\nElderberry  bush  12.50    7\n");
    QTest::newRow("no limit") << 0 << all;
    QTest::newRow("just fits") << 28 << all;
    QTest::newRow("one too wide: shortened")
        << 27 << QStringLiteral("Name       Kind  Price   No\nElderber…  bush  12.50    7\n");
    QTest::newRow("shortest") << 23
                              << QStringLiteral(
                                     "Name   Kind  Price   No\nElde…  bush  12.50    7\n");
    QTest::newRow("the highest rank goes, and the name gets its room")
        << 22 << QStringLiteral("Name        Price   No\nElderberry  12.50    7\n");
    QTest::newRow("the next rank goes")
        << 15 << QStringLiteral("Name         No\nElderberry    7\n");
    QTest::newRow("nothing more to leave out") << 3 << QStringLiteral("Name    No\nElde…    7\n");
}

void tst_TableWriter::fitsTheWidth()
{
    QFETCH(int, width);
    QFETCH(QString, firstLines);
    const QString text = fruit().text(width);
    QCOMPARE(text.left(firstLines.size()), firstLines);
}

void tst_TableWriter::colours()
{
    TableWriter table({{QStringLiteral("A"), Align::Right}});
    table.addSection(QStringLiteral("S"));
    table.addRow({QStringLiteral("1")});
    table.addRow({QStringLiteral("22")}, Style::Best);
    table.addRow({QStringLiteral("3")}, Style::Faint);
    QCOMPARE(table.text(0, true),
             QStringLiteral("\033[1m A\033[0m\n\n\033[1mS\033[0m\n 1\n\033[1;32m22\033[0m\n"
                            "\033[2m 3\033[0m\n"));
}

void tst_TableWriter::keepsControlCharactersOut()
{
    TableWriter table({{QString()}});
    table.addSection(QStringLiteral("a\nb"));
    table.addRow({QStringLiteral("\033[31mred\u009b")});
    QCOMPARE(table.text(), QStringLiteral("a\uFFFDb\n\uFFFD[31mred\uFFFD\n"));
}

void tst_TableWriter::displayWidth_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");

    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("letters") << QStringLiteral("Zoë") << 3;
    QTest::newRow("combining mark") << QStringLiteral("Zoe\u0308") << 3;
    QTest::newRow("joiner") << QStringLiteral("a\u200db") << 2;
    QTest::newRow("wide") << QStringLiteral("筑波") << 4;
    QTest::newRow("outside the first plane") << QStringLiteral("🏁") << 2;
}

void tst_TableWriter::displayWidth()
{
    QFETCH(QString, text);
    QTEST(::displayWidth(text), "width");
}

void tst_TableWriter::elided_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("result");

    QTest::newRow("fits") << QStringLiteral("speed") << 5 << QStringLiteral("speed");
    QTest::newRow("too long") << QStringLiteral("speed") << 4 << QStringLiteral("spe…");
    QTest::newRow("one column") << QStringLiteral("speed") << 1 << QStringLiteral("…");
    QTest::newRow("half a wide character")
        << QStringLiteral("筑波峰") << 4 << QStringLiteral("筑…");
    QTest::newRow("a mark stays with its letter")
        << QStringLiteral("e\u0308ab") << 2 << QStringLiteral("e\u0308…");
}

void tst_TableWriter::elided()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QTEST(::elided(text, width), "result");
}

void tst_TableWriter::printable_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    QTest::newRow("plain") << QStringLiteral("Zoë 🏁 筑波") << QStringLiteral("Zoë 🏁 筑波");
    QTest::newRow("control") << QStringLiteral("a\033b") << QStringLiteral("a\uFFFDb");
    QTest::newRow("right to left")
        << QStringLiteral("a\u202etbi.exe") << QStringLiteral("a\\u202etbi.exe");
    QTest::newRow("isolate") << QStringLiteral("\u2066a\u2069")
                             << QStringLiteral("\\u2066a\\u2069");
    QTest::newRow("without width")
        << QStringLiteral("a\u200bb\ufeff") << QStringLiteral("a\\u200bb\\ufeff");
    QTest::newRow("line") << QStringLiteral("a\u2028b\u2029") << QStringLiteral("a\\u2028b\\u2029");
    QTest::newRow("tag") << QStringLiteral("a\U000e0041b") << QStringLiteral("a\\ue0041b");
    QTest::newRow("half a character")
        << QString(QChar(0xd800) % QLatin1Char('b')) << QString(QChar(0xd800) % QLatin1Char('b'));
}

void tst_TableWriter::printable()
{
    QFETCH(QString, text);
    QTEST(::printable(text), "shown");
}

void tst_TableWriter::emptyCells()
{
    TableWriter table({{QStringLiteral("A")},
                       {QStringLiteral("B"), Align::Right},
                       {QStringLiteral("C")},
                       {QStringLiteral("D"), Align::Right}});
    table.addRow({QStringLiteral("1"), QString(), QString(), QStringLiteral("12")});
    table.addRow({QString(), QStringLiteral("123"), QString(), QString()});
    table.addRow({QString(), QString(), QStringLiteral("1234"), QStringLiteral("1")});
    table.addRow({QStringLiteral("1"), QString(), QString(), QString()});
    QCOMPARE(table.text(),
             QStringLiteral("A    B  C      D\n"
                            "1             12\n"
                            "   123\n"
                            "        1234   1\n"
                            "1\n"));
}

NAPAMMUL_TEST(tst_TableWriter)
#include "tst_tablewriter.moc"
