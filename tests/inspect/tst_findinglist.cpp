#include "inspect/findinglist.h"
#include "tests/support/roomtests.h"

#include <QTest>

namespace {

QStringList texts(const FindingList &list)
{
    QStringList result;
    for (const Finding &each : list.findings())
        result.append(each.text);
    return result;
}

} // namespace

class tst_FindingList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheOrder();
    void countsTheRestOfAKind();
    void neverLosesTheOnlyDamage();
    void names_data();
    void names();
};

void tst_FindingList::keepsTheOrder()
{
    FindingList list;
    QVERIFY(list.findings().isEmpty());
    list.add(Finding(FindingKind::Variable, "1"));
    list.add(Finding(FindingKind::Overlap, "2"));
    list.add(Finding(FindingKind::Variable, "3"));
    QCOMPARE(texts(list), QStringList({"1", "2", "3"}));
}

void tst_FindingList::countsTheRestOfAKind()
{
    FindingList list;
    for (int i = 0; i < FindingList::MostOfAKind; ++i)
        list.add(Finding(FindingKind::Variable, QString::number(i)));
    QCOMPARE(list.findings().size(), int(FindingList::MostOfAKind));
    list.add(Finding(FindingKind::Overlap, "other"));
    for (int i = 0; i < 5; ++i)
        list.add(Finding(FindingKind::Variable, "not kept"));

    const QStringList shown = texts(list);
    QCOMPARE(shown.size(), FindingList::MostOfAKind + 2);
    QCOMPARE(shown.at(FindingList::MostOfAKind), QStringLiteral("5 more like the last one"));
    QCOMPARE(list.findings().at(FindingList::MostOfAKind).others, 5);
    QCOMPARE(shown.last(), QStringLiteral("other"));
}

void tst_FindingList::neverLosesTheOnlyDamage()
{
    FindingList list;
    for (int i = 0; i < 20; ++i)
        list.add(Finding(FindingKind::Variable, "remark"));
    list.add(Finding(FindingKind::Variable, "damage").loses(Finding::everything()));
    QCOMPARE(texts(list).last(), QStringLiteral("damage"));
}

void tst_FindingList::names_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("variable");
    QTest::addColumn<bool>("hasOffset");
    QTest::addColumn<QString>("place");
    QTest::newRow("line") << 7 << "" << true << "session info, line 7";
    QTest::newRow("variable") << 0 << "Speed" << true << "variable Speed";
    QTest::newRow("offset") << 0 << "" << true << "byte 112";
    QTest::newRow("nowhere") << 0 << "" << false << "";
}

void tst_FindingList::names()
{
    QFETCH(int, line);
    QFETCH(QString, variable);
    QFETCH(bool, hasOffset);
    QFETCH(QString, place);
    Finding made(FindingKind::Variable, QString());
    made.inLine(line, QString()).about(variable);
    if (hasOffset)
        made.at(112);
    QCOMPARE(made.place(), place);
}

NAPAMMUL_TEST(tst_FindingList)
#include "tst_findinglist.moc"
