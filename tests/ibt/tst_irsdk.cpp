#include "ibt/irsdk.h"
#include "tests/support/roomtests.h"

#include <QElapsedTimer>
#include <QTest>

#include <limits>
#include <type_traits>

// What code written against the interface relies on.
static_assert(std::is_same_v<decltype(irsdk_startup()), bool>);
static_assert(std::is_same_v<decltype(irsdk_shutdown()), void>);
static_assert(std::is_same_v<decltype(&irsdk_getNewData), bool (*)(char *)>);
static_assert(std::is_same_v<decltype(&irsdk_waitForDataReady), bool (*)(int, char *)>);
static_assert(std::is_same_v<decltype(irsdk_isConnected()), bool>);
static_assert(std::is_convertible_v<decltype(irsdk_getHeader()), const irsdk_header *>);
static_assert(std::is_convertible_v<decltype(irsdk_getVarHeaderPtr()), const irsdk_varHeader *>);
static_assert(std::is_convertible_v<decltype(irsdk_getVarHeaderEntry(0)), const irsdk_varHeader *>);
static_assert(std::is_convertible_v<decltype(irsdk_getSessionInfoStr()), const char *>);
static_assert(std::is_same_v<decltype(irsdk_getSessionInfoStrUpdate()), int>);
static_assert(std::is_same_v<decltype(&irsdk_varNameToIndex), int (*)(const char *)>);
static_assert(std::is_same_v<decltype(&irsdk_varNameToOffset), int (*)(const char *)>);
static_assert(std::is_same_v<decltype(irsdk_getBroadcastMsgID()), unsigned int>);
static_assert(std::is_same_v<decltype(&irsdk_padCarNum), int (*)(int, int)>);

class tst_Irsdk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsConnected_data();
    void nothingIsConnected();
    void noDataArrives_data();
    void noDataArrives();
    void waitingReturnsAtOnce();
    void noVariableIsKnown_data();
    void noVariableIsKnown();
    void noIndexHoldsAnything_data();
    void noIndexHoldsAnything();
    void broadcastsGoNowhere();
    void carNumbersAreNotPadded_data();
    void carNumbersAreNotPadded();
};

void tst_Irsdk::nothingIsConnected_data()
{
    QTest::addColumn<int>("startups");
    QTest::addColumn<int>("shutdowns");

    QTest::newRow("before starting up") << 0 << 0;
    QTest::newRow("started up") << 1 << 0;
    QTest::newRow("started up twice") << 2 << 0;
    QTest::newRow("shut down") << 1 << 1;
    QTest::newRow("shut down twice") << 1 << 2;
}

void tst_Irsdk::nothingIsConnected()
{
    QFETCH(int, startups);
    QFETCH(int, shutdowns);

    for (int i = 0; i < startups; ++i)
        QVERIFY(!irsdk_startup());
    for (int i = 0; i < shutdowns; ++i)
        irsdk_shutdown();
    QVERIFY(!irsdk_isConnected());
    QVERIFY(irsdk_getHeader() == nullptr);
    QVERIFY(irsdk_getSessionInfoStr() == nullptr);
    QCOMPARE(irsdk_getSessionInfoStrUpdate(), -1);
    QVERIFY(irsdk_getVarHeaderPtr() == nullptr);
    QCOMPARE(irsdk_varNameToIndex("Speed"), -1);
    QCOMPARE(irsdk_varNameToOffset("Speed"), -1);
    QCOMPARE(irsdk_getBroadcastMsgID(), std::numeric_limits<unsigned int>::max());
}

void tst_Irsdk::noDataArrives_data()
{
    QTest::addColumn<int>("timeOut");

    QTest::newRow("one tick") << 16;
    QTest::newRow("no time") << 0;
    QTest::newRow("negative time") << -1;
    QTest::newRow("all the time") << std::numeric_limits<int>::max();
}

void tst_Irsdk::noDataArrives()
{
    QFETCH(int, timeOut);

    const QByteArray untouched = QByteArray("0123456789abcdef").repeated(16);
    QByteArray buffer = untouched;
    buffer.detach();
    QVERIFY(!irsdk_getNewData(buffer.data()));
    QCOMPARE(buffer, untouched);
    QVERIFY(!irsdk_waitForDataReady(timeOut, buffer.data()));
    QCOMPARE(buffer, untouched);

    QVERIFY(!irsdk_getNewData(nullptr));
    QVERIFY(!irsdk_waitForDataReady(timeOut, nullptr));
}

void tst_Irsdk::waitingReturnsAtOnce()
{
    constexpr int minute = 60000;
    char buffer[1] = {};
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!irsdk_waitForDataReady(minute, buffer));
    QVERIFY(timer.elapsed() < minute / 2);
}

void tst_Irsdk::noVariableIsKnown_data()
{
    QTest::addColumn<QByteArray>("name");

    QTest::newRow("a variable of every recording") << QByteArray("SessionTime");
    QTest::newRow("in lower case") << QByteArray("speed");
    QTest::newRow("no name") << QByteArray("");
    QTest::newRow("null") << QByteArray();
}

void tst_Irsdk::noVariableIsKnown()
{
    QFETCH(QByteArray, name);

    const char *pointer = name.isNull() ? nullptr : name.constData();
    QCOMPARE(irsdk_varNameToIndex(pointer), -1);
    QCOMPARE(irsdk_varNameToOffset(pointer), -1);
}

void tst_Irsdk::noIndexHoldsAnything_data()
{
    QTest::addColumn<int>("index");

    QTest::newRow("first") << 0;
    QTest::newRow("some") << 42;
    QTest::newRow("negative") << -1;
    QTest::newRow("greatest") << std::numeric_limits<int>::max();
}

void tst_Irsdk::noIndexHoldsAnything()
{
    QFETCH(int, index);

    QVERIFY(irsdk_getData(index) == nullptr);
    QVERIFY(irsdk_getVarHeaderEntry(index) == nullptr);
}

/// Each overload is its own function, and none of them connects anything.
void tst_Irsdk::broadcastsGoNowhere()
{
    constexpr auto threeNumbers =
        static_cast<void (*)(irsdk_BroadcastMsg, int, int, int)>(irsdk_broadcastMsg);
    constexpr auto fraction =
        static_cast<void (*)(irsdk_BroadcastMsg, int, float)>(irsdk_broadcastMsg);
    constexpr auto twoNumbers =
        static_cast<void (*)(irsdk_BroadcastMsg, int, int)>(irsdk_broadcastMsg);

    for (int message = 0; message <= int(irsdk_BroadcastLast); ++message) {
        threeNumbers(static_cast<irsdk_BroadcastMsg>(message), 1, 2, 3);
        fraction(static_cast<irsdk_BroadcastMsg>(message), 1, 2.5f);
        twoNumbers(static_cast<irsdk_BroadcastMsg>(message), 1, 2);
        QVERIFY(!irsdk_isConnected());
        QCOMPARE(irsdk_getBroadcastMsgID(), ~0u);
    }
}

void tst_Irsdk::carNumbersAreNotPadded_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("zeros");

    QTest::newRow("no zeros") << 7 << 0;
    QTest::newRow("two zeros") << 7 << 2;
    QTest::newRow("zero") << 0 << 0;
    QTest::newRow("negative") << -1 << -1;
}

void tst_Irsdk::carNumbersAreNotPadded()
{
    QFETCH(int, number);
    QFETCH(int, zeros);

    QCOMPARE(irsdk_padCarNum(number, zeros), -1);
}

NAPAMMUL_TEST(tst_Irsdk)

#include "tst_irsdk.moc"
