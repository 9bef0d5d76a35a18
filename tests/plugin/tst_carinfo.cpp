#include "plugin/carinfo.h"
#include "tests/support/roomtests.h"

#include <QTest>

class tst_CarInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyByDefault();
    void id_data();
    void id();
    void idIsHandedOutAsACopy();
    void displayName();
    void active();
    void copiesAreIndependent_data();
    void copiesAreIndependent();
};

void tst_CarInfo::isEmptyByDefault()
{
    const ZEP::CarInfo car;
    QVERIFY(!car.id().isValid());
    QVERIFY(car.displayName().isEmpty());
    QVERIFY(!car.isActive());
}

void tst_CarInfo::id_data()
{
    QTest::addColumn<QVariant>("id");

    QTest::newRow("index") << QVariant(7);
    QTest::newRow("zero") << QVariant(0);
    QTest::newRow("text") << QVariant(QString("car 7"));
    QTest::newRow("unset again") << QVariant();
}

void tst_CarInfo::id()
{
    QFETCH(QVariant, id);

    ZEP::CarInfo car;
    car.setId(12);
    car.setId(id);
    QCOMPARE(car.id(), id);
    QCOMPARE(car.id().userType(), id.userType());
    QVERIFY(car.displayName().isEmpty());
}

void tst_CarInfo::idIsHandedOutAsACopy()
{
    ZEP::CarInfo car;
    car.setId(7);
    QVariant id = car.id();
    id = 8;
    QCOMPARE(car.id(), QVariant(7));
}

void tst_CarInfo::displayName()
{
    ZEP::CarInfo car;
    car.setDisplayName("A Car");
    QCOMPARE(car.displayName(), QString("A Car"));
    QVERIFY(!car.id().isValid());
    car.setDisplayName(QString());
    QVERIFY(car.displayName().isEmpty());
}

void tst_CarInfo::active()
{
    ZEP::CarInfo car;
    car.setActive(true);
    QVERIFY(car.isActive());
    car.setActive(true);
    QVERIFY(car.isActive());
    car.setActive(false);
    QVERIFY(!car.isActive());
}

void tst_CarInfo::copiesAreIndependent_data()
{
    QTest::addColumn<bool>("assigned");

    QTest::newRow("copied") << false;
    QTest::newRow("assigned") << true;
}

void tst_CarInfo::copiesAreIndependent()
{
    QFETCH(bool, assigned);

    ZEP::CarInfo source;
    source.setId(7);
    source.setDisplayName("A Car");
    source.setActive(true);

    ZEP::CarInfo target;
    target.setId(8);
    target = source;
    ZEP::CarInfo copy = assigned ? target : ZEP::CarInfo(source);
    QCOMPARE(copy.id(), QVariant(7));
    QCOMPARE(copy.displayName(), QString("A Car"));
    QVERIFY(copy.isActive());

    copy.setId(9);
    copy.setDisplayName("Another Car");
    copy.setActive(false);
    QCOMPARE(source.id(), QVariant(7));
    QCOMPARE(source.displayName(), QString("A Car"));
    QVERIFY(source.isActive());
}

NAPAMMUL_TEST(tst_CarInfo)

#include "tst_carinfo.moc"
