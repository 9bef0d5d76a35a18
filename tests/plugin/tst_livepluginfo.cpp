#include "plugin/livepluginfo.h"
#include "tests/support/roomtests.h"

#include <QTest>

namespace {

ZEP::CarInfo carCalled(const QString &name)
{
    ZEP::CarInfo car;
    car.setDisplayName(name);
    return car;
}

} // namespace

class tst_LivePluginInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyByDefault();
    void names();
    void carsStayInOrder();
    void copiesAreIndependent_data();
    void copiesAreIndependent();
};

void tst_LivePluginInfo::isEmptyByDefault()
{
    const ZEP::LivePluginInfo info;
    QVERIFY(info.carInfoList.isEmpty());
    QVERIFY(info.pluginName().isEmpty());
    QVERIFY(info.sourceName().isEmpty());
}

void tst_LivePluginInfo::names()
{
    ZEP::LivePluginInfo info;
    info.setPluginName("A Plug-in");
    QCOMPARE(info.pluginName(), QString("A Plug-in"));
    QVERIFY(info.sourceName().isEmpty());
    info.setSourceName("A Source");
    QCOMPARE(info.sourceName(), QString("A Source"));
    QCOMPARE(info.pluginName(), QString("A Plug-in"));
    info.setPluginName(QString());
    QVERIFY(info.pluginName().isEmpty());
    QCOMPARE(info.sourceName(), QString("A Source"));
}

void tst_LivePluginInfo::carsStayInOrder()
{
    ZEP::LivePluginInfo info;
    info.carInfoList.append(carCalled("B"));
    info.carInfoList.append(carCalled("A"));
    QCOMPARE(info.carInfoList.size(), 2);
    QCOMPARE(info.carInfoList.first().displayName(), QString("B"));
    QCOMPARE(info.carInfoList.last().displayName(), QString("A"));
}

void tst_LivePluginInfo::copiesAreIndependent_data()
{
    QTest::addColumn<bool>("assigned");

    QTest::newRow("copied") << false;
    QTest::newRow("assigned") << true;
}

void tst_LivePluginInfo::copiesAreIndependent()
{
    QFETCH(bool, assigned);

    ZEP::LivePluginInfo source;
    source.setPluginName("A Plug-in");
    source.setSourceName("A Source");
    source.carInfoList.append(carCalled("A"));

    ZEP::LivePluginInfo target;
    target.setPluginName("Another Plug-in");
    target.carInfoList = {carCalled("B"), carCalled("C")};
    target = source;
    ZEP::LivePluginInfo copy = assigned ? target : ZEP::LivePluginInfo(source);
    QCOMPARE(copy.pluginName(), QString("A Plug-in"));
    QCOMPARE(copy.sourceName(), QString("A Source"));
    QCOMPARE(copy.carInfoList.size(), 1);
    QCOMPARE(copy.carInfoList.first().displayName(), QString("A"));

    copy.setPluginName("Another Plug-in");
    copy.setSourceName("Another Source");
    copy.carInfoList.first().setActive(true);
    copy.carInfoList.append(carCalled("B"));
    QCOMPARE(source.pluginName(), QString("A Plug-in"));
    QCOMPARE(source.sourceName(), QString("A Source"));
    QCOMPARE(source.carInfoList.size(), 1);
    QVERIFY(!source.carInfoList.first().isActive());
}

NAPAMMUL_TEST(tst_LivePluginInfo)

#include "tst_livepluginfo.moc"
