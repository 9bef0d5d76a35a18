// Which elements of a variable a record contains. tst_recordelement asks the same through the
// reader.

#include "ibt/ibtelements.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <limits>

namespace {

constexpr std::int32_t IntMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t IntMin = std::numeric_limits<std::int32_t>::min();

constexpr irsdk_varHeader variable(std::int32_t type, std::int32_t offset, std::int32_t count)
{
    irsdk_varHeader header{};
    header.type = type;
    header.offset = offset;
    header.count = count;
    return header;
}

} // namespace

Q_DECLARE_METATYPE(irsdk_varHeader)

class tst_IbtElements : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readable_data();
    void readable();
    void elementCounts();
    void nothingReadableIsAlwaysTheSame();
    void knownTypes();
};

void tst_IbtElements::readable_data()
{
    QTest::addColumn<int>("recordBytes");
    QTest::addColumn<irsdk_varHeader>("header");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last"); // -1: none

    QTest::newRow("scalar") << 8 << variable(irsdk_float, 4, 1) << 0 << 0;
    QTest::newRow("scalar over the end") << 8 << variable(irsdk_float, 5, 1) << 0 << -1;
    QTest::newRow("scalar over the start") << 8 << variable(irsdk_float, -1, 1) << 0 << -1;
    QTest::newRow("array") << 24 << variable(irsdk_double, 0, 3) << 0 << 2;
    QTest::newRow("array over the end") << 23 << variable(irsdk_double, 0, 3) << 0 << 1;
    QTest::newRow("array over the start") << 24 << variable(irsdk_int, -5, 6) << 2 << 5;
    QTest::newRow("array over both ends") << 8 << variable(irsdk_int, -4, 100) << 1 << 2;
    QTest::newRow("array before the record") << 8 << variable(irsdk_int, -8, 2) << 0 << -1;
    QTest::newRow("char") << 8 << variable(irsdk_char, 7, 32) << 0 << 0;
    QTest::newRow("char of count zero") << 8 << variable(irsdk_char, 7, 0) << 0 << 0;
    QTest::newRow("count zero") << 8 << variable(irsdk_int, 0, 0) << 0 << -1;
    QTest::newRow("count smallest") << 8 << variable(irsdk_int, 0, IntMin) << 0 << -1;
    QTest::newRow("all at their limits")
        << IntMax << variable(irsdk_bool, IntMin, IntMax) << 0 << -1;
    QTest::newRow("record of negative size") << IntMin << variable(irsdk_bool, 0, 1) << 0 << -1;
    QTest::newRow("record of negative size, offset greatest")
        << IntMin << variable(irsdk_bool, IntMax, IntMax) << 0 << -1;
    QTest::newRow("unknown type") << 8 << variable(6, 1000, 3) << 0 << 2;
    QTest::newRow("unknown type of negative number") << 8 << variable(-1, -1000, 1) << 0 << 0;
    QTest::newRow("unknown type of count zero") << 8 << variable(6, 0, 0) << 0 << -1;
}

void tst_IbtElements::readable()
{
    QFETCH(int, recordBytes);
    QFETCH(irsdk_varHeader, header);
    QFETCH(int, first);
    QFETCH(int, last);

    const IbtElements elements = ibtReadableElements(header, recordBytes);
    QCOMPARE(elements.first, first);
    QCOMPARE(elements.last, last);
    QCOMPARE(elements.isEmpty(), last < 0);
}

void tst_IbtElements::elementCounts()
{
    QCOMPARE(ibtElementCount(variable(irsdk_float, 0, 6)), 6);
    QCOMPARE(ibtElementCount(variable(irsdk_float, 0, -6)), -6);
    QCOMPARE(ibtElementCount(variable(irsdk_char, 0, 32)), 1);
    QCOMPARE(ibtElementCount(variable(irsdk_char, 0, -32)), 1);
    QCOMPARE(ibtElementCount(variable(99, 0, 3)), 3);
}

void tst_IbtElements::nothingReadableIsAlwaysTheSame()
{
    // A caller may compare the last element with that of the count.
    for (const std::int32_t offset : {IntMin, -64, -5, 5, 8, 64, IntMax}) {
        const IbtElements elements = ibtReadableElements(variable(irsdk_float, offset, 1), 8);
        QVERIFY(elements.isEmpty());
        QCOMPARE(elements.first, 0);
        QCOMPARE(elements.last, -1);
    }
}

void tst_IbtElements::knownTypes()
{
    for (std::int32_t type = irsdk_char; type <= irsdk_double; ++type)
        QVERIFY(isKnownIbtType(type));
    for (const std::int32_t type : {IntMin, -1, irsdk_double + 1, IntMax})
        QVERIFY(!isKnownIbtType(type));
}

NAPAMMUL_TEST(tst_IbtElements)

#include "tst_ibtelements.moc"
