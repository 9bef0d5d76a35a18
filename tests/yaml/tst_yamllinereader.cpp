// Where a line of a session info is stored, depending on the lines before it.

#include "tests/support/roomtests.h"
#include "yaml/yamllinereader.h"

#include <QTest>

namespace {

/// The names of the nodes from the root to \a node; empty for the root.
QString pathOf(const TStringTree *node)
{
    QString path;
    for (; node->hasParent(); node = node->parent()) {
        const TStringTree *parent = node->parent();
        for (const char *name : {"A", "B", "1", "2", ".", "..", "--"}) {
            if (parent->sub(QLatin1String(name)) == node)
                path.prepend(QLatin1Char('/') % QLatin1String(name));
        }
    }
    return path;
}

} // namespace

class tst_YamlLineReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void node_data();
    void node();
};

void tst_YamlLineReader::node_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << QStringList() << "";
    QTest::newRow("value") << QStringList{"A: 1"} << "";
    QTest::newRow("key") << QStringList{"A:"} << "/A";
    QTest::newRow("value inside") << QStringList{"A:", " B: 1"} << "/A";
    QTest::newRow("list item") << QStringList{"A:", " - B: 1"} << "/A/1";
    QTest::newRow("next list item") << QStringList{"A:", " - B: 1", "   C: 1", " - B: 2"} << "/A/2";
    QTest::newRow("empty line") << QStringList{"A:", " B: 1", ""} << "/A";
    QTest::newRow("back at the root") << QStringList{"A:", " B: 1", "C: 1"} << "";
    QTest::newRow("end of a document") << QStringList{"A:", " B: 1", "..."} << "/..";
    QTest::newRow("key behind it") << QStringList{"A:", " B: 1", "...", "B:"} << "/B";
    QTest::newRow("value behind it") << QStringList{"A:", " B: 1", "...", "B: 1"} << "/..";
    QTest::newRow("key behind a document marker")
        << QStringList{"A:", " B: 1", "---", "B:"} << "/A/B";
    QTest::newRow("key behind both") << QStringList{"A:", " B: 1", "...", "---", "B:"} << "/../B";
}

void tst_YamlLineReader::node()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, path);
    TStringTree root(nullptr);
    YamlLineReader reader(&root);
    const TStringTree *node = &root;
    for (const QString &line : qAsConst(lines))
        node = reader.read(line).node;
    QCOMPARE(pathOf(node), path);

    YamlLineReader again(&root);
    for (const QString &line : qAsConst(lines))
        QVERIFY(again.follow(line).node);
    QCOMPARE(again.follow(QString()).node, node);
}

NAPAMMUL_TEST(tst_YamlLineReader)
#include "tst_yamllinereader.moc"
