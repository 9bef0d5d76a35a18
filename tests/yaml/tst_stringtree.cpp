#include "tests/support/roomtests.h"
#include "yaml/stringtree.h"

#include <QTest>

#include <memory>
#include <type_traits>

static_assert(!std::is_polymorphic_v<TStringTree>);

namespace {

/// A root that gives access to its maps.
class Root : public TStringTree
{
public:
    Root() : TStringTree(nullptr) { }

    QStringList childNames() const { return subTrees.keys(); }
    QStringList keys() const { return values.keys(); }
};

} // namespace

class tst_StringTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newNodeIsEmpty();
    void constructorDoesNotRegisterWithTheParent();
    void addSubCreatesOnce();
    void subNeverCreates();
    void childrenAscendAsText();
    void namesAreCaseSensitive();
    void set_data();
    void set();
    void valueNeverInserts();
    void emptyValueIsNotNull();
    void valuesAndChildrenAreApart();

    void pathSub_data();
    void pathSub();
    void pathValue_data();
    void pathValue();
    void lookingUpAPathChangesNothing();
    void pathSetCreatesTheChain();
    void pathSet_data();
    void pathSet();
    void pathSetUsesWhatIsThere();
    void pathsStartAtTheirNode();

    void clearKeepsTheValues();
    void clearedNodeCanBeFilledAgain();
    void deepTreeIsDestroyed_data();
    void deepTreeIsDestroyed();
    void wideTreeIsDestroyed();
};

void tst_StringTree::newNodeIsEmpty()
{
    const Root root;
    QVERIFY(!root.hasParent());
    QVERIFY(!root.parent());
    QVERIFY(root.childNames().isEmpty());
    QVERIFY(root.keys().isEmpty());
}

void tst_StringTree::constructorDoesNotRegisterWithTheParent()
{
    Root root;
    const TStringTree node(&root);
    QVERIFY(node.hasParent());
    QCOMPARE(node.parent(), static_cast<TStringTree *>(&root));
    QVERIFY(root.childNames().isEmpty());
}

void tst_StringTree::addSubCreatesOnce()
{
    Root root;
    TStringTree *node = root.addSub("x");
    QVERIFY(node);
    QVERIFY(node->hasParent());
    QCOMPARE(node->parent(), static_cast<TStringTree *>(&root));
    node->set("key", "value");

    QCOMPARE(root.addSub("x"), node);
    QCOMPARE(root.sub("x"), node);
    QCOMPARE(node->value("key"), QString("value"));
    QCOMPARE(root.childNames(), QStringList{"x"});
}

void tst_StringTree::subNeverCreates()
{
    Root root;
    QVERIFY(!root.sub("x"));
    QVERIFY(!root.sub(""));
    QVERIFY(root.childNames().isEmpty());
}

void tst_StringTree::childrenAscendAsText()
{
    Root root;
    for (const QString &name :
         {QString("2"), QString("b"), QString("10"), QString("B"), QString("1"), QString("")})
        root.addSub(name);
    QCOMPARE(root.childNames(), (QStringList{"", "1", "10", "2", "B", "b"}));
}

void tst_StringTree::namesAreCaseSensitive()
{
    Root root;
    TStringTree *lower = root.addSub("node");
    TStringTree *upper = root.addSub("Node");
    QVERIFY(lower != upper);
    QVERIFY(!root.sub("NODE"));
    root.set("key", "1");
    root.set("Key", "2");
    QCOMPARE(root.value("key"), QString("1"));
    QCOMPARE(root.value("Key"), QString("2"));
    QVERIFY(root.value("KEY").isNull());
    QVERIFY(!root.sub("nod"));
    QVERIFY(root.value("ke").isNull());
}

void tst_StringTree::set_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");

    QTest::newRow("plain") << "key"
                           << "value";
    QTest::newRow("quotes and blanks stay") << "key"
                                            << " \"a  b\" ";
    QTest::newRow("empty key") << ""
                               << "value";
    QTest::newRow("slash in the key") << "a/b"
                                      << "value";
    QTest::newRow("empty value") << "key"
                                 << "";
}

void tst_StringTree::set()
{
    QFETCH(QString, key);
    QFETCH(QString, value);

    Root root;
    root.set(key, "old");
    root.set(key, value);
    QCOMPARE(root.value(key), value);
    QCOMPARE(root.keys(), QStringList{key});
}

void tst_StringTree::valueNeverInserts()
{
    const Root root;
    QVERIFY(root.value("key").isNull());
    QVERIFY(root.value("").isNull());
    QVERIFY(root.keys().isEmpty());
}

void tst_StringTree::emptyValueIsNotNull()
{
    Root root;
    root.set("key", "");
    QVERIFY(root.value("key").isEmpty());
    QVERIFY(!root.value("key").isNull());
    QVERIFY(!root.pathValue("key").isNull());
}

void tst_StringTree::valuesAndChildrenAreApart()
{
    Root root;
    root.set("name", "value");
    QVERIFY(!root.sub("name"));
    root.addSub("name")->set("key", "deeper");
    QCOMPARE(root.value("name"), QString("value"));
    QCOMPARE(root.pathValue("name/key"), QString("deeper"));
    root.addSub("other");
    QVERIFY(root.value("other").isNull());
}

void tst_StringTree::pathSub_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("found");

    QTest::newRow("one segment") << "WeekendInfo" << true;
    QTest::newRow("two segments") << "DriverInfo/Drivers" << true;
    QTest::newRow("three segments") << "DriverInfo/Drivers/3" << true;
    QTest::newRow("unknown") << "NoSuchNode" << false;
    QTest::newRow("unknown in the middle") << "DriverInfo/NoSuchNode/3" << false;
    QTest::newRow("unknown at the end") << "DriverInfo/Drivers/4" << false;
    QTest::newRow("a value is no child") << "WeekendInfo/TrackName" << false;
    QTest::newRow("numbers are text") << "DriverInfo/Drivers/03" << false;
    QTest::newRow("other letters") << "driverinfo/Drivers" << false;
    QTest::newRow("empty path") << "" << false;
    QTest::newRow("null path") << QString() << false;
    QTest::newRow("slash in front") << "/WeekendInfo" << false;
    QTest::newRow("slash behind") << "WeekendInfo/" << false;
    QTest::newRow("two slashes") << "DriverInfo//Drivers" << false;
    QTest::newRow("only a slash") << "/" << false;
    QTest::newRow("blank behind") << "WeekendInfo " << false;
}

void tst_StringTree::pathSub()
{
    QFETCH(QString, path);
    QFETCH(bool, found);

    Root root;
    root.addSub("WeekendInfo")->set("TrackName", "spa");
    TStringTree *drivers = root.addSub("DriverInfo")->addSub("Drivers");
    TStringTree *driver = drivers->addSub("3");
    driver->set("UserName", "A B");
    QCOMPARE(root.pathSub(path) != nullptr, found);
    if (path.endsWith("/3") && found)
        QCOMPARE(root.pathSub(path), driver);

    // If nodes without a name exist, every empty segment leads to one.
    Root nameless;
    TStringTree *first = nameless.addSub("");
    TStringTree *second = first->addSub("");
    QCOMPARE(nameless.pathSub(""), first);
    QCOMPARE(nameless.pathSub("/"), second);
    QVERIFY(!nameless.pathSub("//"));
}

void tst_StringTree::pathValue_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value"); // null: not found

    QTest::newRow("own value") << "Version"
                               << "2";
    QTest::newRow("in a child") << "WeekendInfo/TrackName"
                                << " \"spa\" ";
    QTest::newRow("in a child's child") << "DriverInfo/Drivers/3"
                                        << "three";
    QTest::newRow("unknown key") << "NoSuchKey" << QString();
    QTest::newRow("unknown node") << "NoSuchNode/Key" << QString();
    QTest::newRow("unknown node in the middle") << "DriverInfo/NoSuchNode/3" << QString();
    QTest::newRow("unknown key in a child") << "WeekendInfo/NoSuchKey" << QString();
    QTest::newRow("a child is no value") << "WeekendInfo" << QString();
    QTest::newRow("other letters") << "WeekendInfo/trackName" << QString();
    QTest::newRow("empty path") << "" << QString();
    QTest::newRow("null path") << QString() << QString();
    QTest::newRow("slash in front") << "/Version" << QString();
    QTest::newRow("slash behind") << "WeekendInfo/TrackName/" << QString();
    QTest::newRow("slash behind a node") << "WeekendInfo/" << QString();
    QTest::newRow("two slashes") << "WeekendInfo//TrackName" << QString();
}

void tst_StringTree::pathValue()
{
    QFETCH(QString, path);
    QFETCH(QString, value);

    Root root;
    root.set("Version", "2");
    root.addSub("WeekendInfo")->set("TrackName", " \"spa\" ");
    root.addSub("DriverInfo")->addSub("Drivers")->set("3", "three");
    QCOMPARE(root.pathValue(path), value);
    QCOMPARE(root.pathValue(path).isNull(), value.isNull());
}

void tst_StringTree::lookingUpAPathChangesNothing()
{
    Root root;
    QVERIFY(root.pathValue("a/b/c").isNull());
    QVERIFY(root.pathValue("a").isNull());
    QVERIFY(!root.pathSub("a/b/c"));
    QVERIFY(root.childNames().isEmpty());
    QVERIFY(root.keys().isEmpty());
}

void tst_StringTree::pathSetCreatesTheChain()
{
    Root root;
    root.pathSet("x/y/z", "1");
    QCOMPARE(root.pathValue("x/y/z"), QString("1"));
    QVERIFY(!root.pathSub("x/y/z"));
    QCOMPARE(root.childNames(), QStringList{"x"});
    QVERIFY(root.keys().isEmpty());
    const TStringTree *y = root.pathSub("x/y");
    QVERIFY(y);
    QCOMPARE(y->value("z"), QString("1"));
    QCOMPARE(y->parent(), root.sub("x"));
    QCOMPARE(root.sub("x")->parent(), static_cast<TStringTree *>(&root));
}

void tst_StringTree::pathSet_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("nodes");
    QTest::addColumn<QString>("key");

    QTest::newRow("one segment") << "key" << QStringList{} << "key";
    QTest::newRow("two segments") << "x/key" << QStringList{"x"} << "key";
    QTest::newRow("empty path") << "" << QStringList{} << "";
    QTest::newRow("null path") << QString() << QStringList{} << "";
    QTest::newRow("slash in front") << "/key" << QStringList{""} << "key";
    QTest::newRow("slash behind") << "x/" << QStringList{"x"} << "";
    QTest::newRow("two slashes") << "x//key" << (QStringList{"x", ""}) << "key";
    QTest::newRow("only a slash") << "/" << QStringList{""} << "";
}

void tst_StringTree::pathSet()
{
    QFETCH(QString, path);
    QFETCH(QStringList, nodes);
    QFETCH(QString, key);

    Root root;
    root.pathSet(path, "value");
    const TStringTree *node = &root;
    for (const QString &name : qAsConst(nodes)) {
        node = node->sub(name);
        QVERIFY(node);
    }
    QCOMPARE(node->value(key), QString("value"));
    QCOMPARE(root.pathValue(path), QString("value"));
}

void tst_StringTree::pathSetUsesWhatIsThere()
{
    Root root;
    TStringTree *x = root.addSub("x");
    x->set("key", "old");
    x->set("other", "stays");
    root.pathSet("x/key", "new");
    QCOMPARE(root.sub("x"), x);
    QCOMPARE(x->value("key"), QString("new"));
    QCOMPARE(x->value("other"), QString("stays"));
}

void tst_StringTree::pathsStartAtTheirNode()
{
    Root root;
    root.pathSet("x/y/z", "1");
    TStringTree *x = root.sub("x");
    QCOMPARE(x->pathValue("y/z"), QString("1"));
    QCOMPARE(x->pathSub("y"), root.pathSub("x/y"));
    QVERIFY(!x->pathSub("x"));
}

void tst_StringTree::clearKeepsTheValues()
{
    Root root;
    root.set("key", "value");
    root.pathSet("x/y/z", "1");
    root.pathSet("w/z", "2");
    root.clear();
    QCOMPARE(root.value("key"), QString("value"));
    QVERIFY(root.childNames().isEmpty());
    QVERIFY(!root.sub("x"));
    QVERIFY(root.pathValue("x/y/z").isNull());

    root.clear();
    QCOMPARE(root.keys(), QStringList{"key"});
}

void tst_StringTree::clearedNodeCanBeFilledAgain()
{
    Root root;
    TStringTree *x = root.addSub("x");
    x->pathSet("y/z", "1");
    x->clear();
    QVERIFY(!root.pathSub("x/y"));
    QCOMPARE(root.sub("x"), x);
    x->pathSet("y/z", "2");
    QCOMPARE(root.pathValue("x/y/z"), QString("2"));
}

void tst_StringTree::deepTreeIsDestroyed_data()
{
    QTest::addColumn<bool>("cleared");

    QTest::newRow("destroyed") << false;
    QTest::newRow("cleared") << true;
}

/// One stack frame per level would overflow the stack by far.
void tst_StringTree::deepTreeIsDestroyed()
{
    QFETCH(bool, cleared);

    constexpr int depth = 1000000;
    auto root = std::make_unique<Root>();
    root->pathSet(QStringLiteral("n/").repeated(depth) + "key", "deepest");

    int levels = 0;
    TStringTree *node = root.get();
    while (TStringTree *child = node->sub("n")) {
        node = child;
        ++levels;
    }
    QCOMPARE(levels, depth);
    QCOMPARE(node->value("key"), QString("deepest"));
    while (node->hasParent()) {
        node = node->parent();
        --levels;
    }
    QCOMPARE(levels, 0);

    if (cleared) {
        root->clear();
        QVERIFY(root->childNames().isEmpty());
    }
    root.reset();
}

void tst_StringTree::wideTreeIsDestroyed()
{
    constexpr int width = 100000;
    Root root;
    for (int i = 0; i < width; ++i)
        root.addSub(QString::number(i))->addSub("child")->set("key", QString::number(i));
    QCOMPARE(root.childNames().size(), width);
    QCOMPARE(root.pathValue("99999/child/key"), QString("99999"));
    root.clear();
    QVERIFY(root.childNames().isEmpty());
}

NAPAMMUL_TEST(tst_StringTree)

#include "tst_stringtree.moc"
