// The cars of a session: which one is the player's, who drives them, and which the host selected.

#include "tests/support/readerticks.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <limits>

namespace {

QByteArray driverInfo(const QByteArray &entries)
{
    return "---\nDriverInfo:\n" + entries;
}

} // namespace

class tst_IrTelemetryReaderCarList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void myCarIdx_data();
    void myCarIdx();
    void names_data();
    void names();
    void threeDrivers();
    void carsAreNamedByPositionInNoWay();
    void myCarIsForgottenFirst();
    void withoutDriversCarsStayAsTheyAre();
    void namesChange();
    void namesStayWhereTheListIsSilent();
    void carIds();
    void namesAreWrittenInPlace();
    void setDiskLoading();
    void active_data();
    void active();
    void textsMerge();
};

void tst_IrTelemetryReaderCarList::myCarIdx_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("index");

    const auto row = [](const char *name, const QByteArray &value, int index) {
        QTest::addRow("%s", name) << driverInfo(" DriverCarIdx: " + value + '\n') << index;
    };
    row("first car", "0", 0);
    row("some car", "12", 12);
    row("last car", "63", 63);
    row("no such car", "64", 64);
    row("far beyond", "2147483647", 2147483647);
    row("more than an int", "2147483648", -1);
    row("negative", "-5", -5);
    row("minus one", "-1", -1);
    row("leading zero", "012", 12);
    row("no number", "none", -1);
    row("number and text", "12 cars", -1);
    row("fraction", "12.0", -1);
    row("quoted", "\"12\"", -1);
    row("empty", "", -1);

    QTest::newRow("no text") << QByteArray() << -1;
    QTest::newRow("no driver info") << QByteArray("---\nWeekendInfo:\n DriverCarIdx: 3\n") << -1;
    QTest::newRow("no index") << driverInfo(" DriverUserID: 3\n") << -1;
    QTest::newRow("index is a node") << driverInfo(" DriverCarIdx:\n") << -1;
    QTest::newRow("index at the top")
        << QByteArray("---\nDriverCarIdx: 3\nDriverInfo:\n A: 1\n") << -1;
    QTest::newRow("other letters") << QByteArray("---\nDriverinfo:\n DriverCarIdx: 3\n") << -1;
}

void tst_IrTelemetryReaderCarList::myCarIdx()
{
    QFETCH(QByteArray, text);
    QFETCH(int, index);

    iRTelemetryReader reader;
    reader.setYaml(text.constData());
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), index);

    // The mark of the player's car is set with the list of drivers.
    reader.setYaml(driverInfo(" Drivers:\n - CarIdx: 0\n   UserName: A\n").constData());
    QVERIFY(reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), index);
    for (int car = 0; car < 64; ++car)
        QCOMPARE(reader.car(car).isPlayerCar, car == index);
}

void tst_IrTelemetryReaderCarList::names_data()
{
    QTest::addColumn<QByteArray>("entry");
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("team");
    QTest::addColumn<bool>("changed");

    QTest::newRow("both") << QByteArray("UserName: A B\n   TeamName: C D\n") << "A B"
                          << "C D" << true;
    QTest::newRow("only a driver") << QByteArray("UserName: A B\n") << "A B"
                                   << "" << true;
    QTest::newRow("only a team") << QByteArray("TeamName: C D\n") << ""
                                 << "C D" << true;
    QTest::newRow("neither") << QByteArray("CarNumber: 7\n") << ""
                             << "" << false;
    QTest::newRow("both empty") << QByteArray("UserName: \n   TeamName: \n") << ""
                                << "" << false;
    QTest::newRow("quotes and blanks stay") << QByteArray("UserName:  \"A  B\" \n") << " \"A  B\" "
                                            << "" << true;
    QTest::newRow("Latin-1") << QByteArray("UserName: J\xfcrgen\n") << QStringLiteral("J\u00fcrgen")
                             << "" << true;
    QTest::newRow("a colon makes it no value") << QByteArray("UserName: A: B\n") << ""
                                               << "" << false;
    QTest::newRow("other letters") << QByteArray("Username: A\n") << ""
                                   << "" << false;
}

void tst_IrTelemetryReaderCarList::names()
{
    QFETCH(QByteArray, entry);

    iRTelemetryReader reader;
    reader.setYaml(driverInfo(" Drivers:\n - CarIdx: 5\n   " + entry).constData());
    QTEST(reader.updateCarList(), "changed");
    QTEST(reader.driverName(5), "driver");
    QTEST(reader.teamName(5), "team");
    QVERIFY(!reader.updateCarList());
}

void tst_IrTelemetryReaderCarList::threeDrivers()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(1, {0, 1, 2}).constData());
    QVERIFY(reader.updateCarList());
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), 1);
    for (int car = 0; car < 64; ++car) {
        const QString number = QString::number(car);
        QCOMPARE(reader.driverName(car), car < 3 ? QString("Driver " + number) : QString());
        QCOMPARE(reader.teamName(car), car < 3 ? QString("Team " + number) : QString());
        QCOMPARE(reader.car(car).isPlayerCar, car == 1);
        QCOMPARE(reader.sample(car).carId(), QVariant(car));
    }
}

/// Neither the position in the list nor a field called CarIdx counts: only the first field's value.
void tst_IrTelemetryReaderCarList::carsAreNamedByPositionInNoWay()
{
    iRTelemetryReader reader;
    reader.setYaml(driverInfo(" Drivers:\n"
                              " - CarIdx: 7\n   UserName: Seven\n"
                              " - UserID: 4\n   UserName: Four\n   CarIdx: 9\n"
                              " - CarIdx: 03\n   UserName: Leading zero\n"
                              " - CarIdx: -1\n   UserName: Negative\n"
                              " - CarIdx: 64\n   UserName: Beyond\n"
                              " - CarIdx: 63\n   UserName: Last\n")
                       .constData());
    QVERIFY(reader.updateCarList());
    for (int car = 0; car < 64; ++car) {
        const QString expected = car == 7 ? "Seven" : car == 4 ? "Four" : car == 63 ? "Last" : "";
        QCOMPARE(reader.driverName(car), expected);
    }
}

void tst_IrTelemetryReaderCarList::myCarIsForgottenFirst()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(3, {3, 4}).constData());
    QVERIFY(reader.updateCarList());
    QVERIFY(reader.car(3).isPlayerCar);

    reader.setYaml(driverInfo(" DriverCarIdx: 4\n").constData());
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), 4);
    QVERIFY(!reader.car(3).isPlayerCar);
    QVERIFY(reader.car(4).isPlayerCar);

    reader.setYaml(driverInfo(" DriverCarIdx: nobody's\n").constData());
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), -1);
    QVERIFY(!reader.car(4).isPlayerCar);
}

/// Without a list of drivers the index is still taken over, the marks are not.
void tst_IrTelemetryReaderCarList::withoutDriversCarsStayAsTheyAre()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(3, {3, 4}).constData());
    QVERIFY(reader.updateCarList());
    reader.clear();
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), -1);
    QCOMPARE(reader.driverName(3), QString("Driver 3"));
    QVERIFY(reader.car(3).isPlayerCar);

    reader.setYaml("---\nDriverInfo:\n DriverCarIdx: 4\n");
    QVERIFY(!reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), 4);
    QVERIFY(reader.car(3).isPlayerCar);
    QVERIFY(!reader.car(4).isPlayerCar);
}

void tst_IrTelemetryReaderCarList::namesChange()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(3, {3, 4}).constData());
    QVERIFY(reader.updateCarList());
    reader.setYaml(driverInfo(" Drivers:\n - CarIdx: 4\n   UserName: Driver 4\n   TeamName: New\n")
                       .constData());
    QVERIFY(reader.updateCarList());
    QCOMPARE(reader.driverName(4), QString("Driver 4"));
    QCOMPARE(reader.teamName(4), QString("New"));
    QVERIFY(!reader.updateCarList());

    reader.setYaml(driverInfo(" Drivers:\n - CarIdx: 4\n   UserName: \n").constData());
    QVERIFY(reader.updateCarList());
    QVERIFY(reader.driverName(4).isEmpty());
    QCOMPARE(reader.teamName(4), QString("New"));
}

void tst_IrTelemetryReaderCarList::namesStayWhereTheListIsSilent()
{
    iRTelemetryReader reader;
    reader.setYaml(sessionInfoOf(3, {3, 4}).constData());
    QVERIFY(reader.updateCarList());

    // Another list altogether: its entry has no team, the other car has no entry.
    reader.clear();
    reader.setYaml(driverInfo(" Drivers:\n - CarIdx: 3\n   UserName: New\n").constData());
    QVERIFY(reader.updateCarList());
    QCOMPARE(reader.driverName(3), QString("New"));
    QVERIFY(reader.teamName(3).isEmpty());
    QCOMPARE(reader.driverName(4), QString("Driver 4"));
    QCOMPARE(reader.teamName(4), QString("Team 4"));
}

void tst_IrTelemetryReaderCarList::carIds()
{
    iRTelemetryReader reader;
    QVERIFY(!reader.updateCarList());
    QVERIFY(!reader.sample(7).carId().isValid());
    reader.setYaml(sessionInfoOf(3, {3}).constData());
    QVERIFY(reader.updateCarList());
    QCOMPARE(reader.sample(7).carId().userType(), int(QMetaType::Int));
    QCOMPARE(reader.sample(7).carId(), QVariant(7));

    reader.prepareTick();
    QCOMPARE(reader.sample(7).carId(), QVariant(7));
}

void tst_IrTelemetryReaderCarList::namesAreWrittenInPlace()
{
    iRTelemetryReader reader;
    reader.driverName(5) = "A";
    reader.teamName(5) = "B";
    reader.sample(5).addValue("speed", 1, QString());
    QCOMPARE(reader.car(5).driverName, QString("A"));
    QCOMPARE(reader.car(5).teamName, QString("B"));
    QVERIFY(reader.car(5).sample.containsValue("speed"));
}

void tst_IrTelemetryReaderCarList::setDiskLoading()
{
    iRTelemetryReader reader;
    reader.setDiskLoading(true);
    for (int car = 0; car < 64; ++car)
        QVERIFY(reader.car(car).diskLoading);
    reader.setDiskLoading(false);
    for (int car = 0; car < 64; ++car)
        QVERIFY(!reader.car(car).diskLoading);
}

void tst_IrTelemetryReaderCarList::active_data()
{
    QTest::addColumn<int>("car");
    QTest::addColumn<bool>("exists");

    QTest::newRow("first") << 0 << true;
    QTest::newRow("some") << 12 << true;
    QTest::newRow("last") << 63 << true;
    QTest::newRow("just beyond") << 64 << false;
    QTest::newRow("minus one") << -1 << false;
    QTest::newRow("least") << std::numeric_limits<int>::min() << false;
    QTest::newRow("greatest") << std::numeric_limits<int>::max() << false;
}

void tst_IrTelemetryReaderCarList::active()
{
    QFETCH(int, car);
    QFETCH(bool, exists);

    iRTelemetryReader reader;
    QVERIFY(!reader.isCarActive(car));
    reader.setCarActive(car, true);
    QCOMPARE(reader.isCarActive(car), exists);
    for (int other = 0; other < 64; ++other)
        QCOMPARE(reader.isCarActive(other), exists && other == car);
    reader.setCarActive(car, false);
    QVERIFY(!reader.isCarActive(car));
}

void tst_IrTelemetryReaderCarList::textsMerge()
{
    iRTelemetryReader reader;
    reader.setYaml("---\nDriverInfo:\n DriverCarIdx: 3\n");
    reader.setYaml("---\nDriverInfo:\n Drivers:\n - CarIdx: 3\n   UserName: A\n");
    reader.setYaml(nullptr);
    QVERIFY(reader.updateCarList());
    QCOMPARE(reader.myCarIdx(), 3);
    QCOMPARE(reader.driverName(3), QString("A"));
    QVERIFY(reader.car(3).isPlayerCar);
}

NAPAMMUL_TEST(tst_IrTelemetryReaderCarList)

#include "tst_irtelemetryreader_carlist.moc"
