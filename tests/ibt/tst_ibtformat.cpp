#include "ibt/ibtformat.h"
#include "tests/support/roomtests.h"

#include <QByteArray>
#include <QtEndian>
#include <QTest>

#include <cstddef>
#include <cstring>
#include <limits>
#include <type_traits>

static_assert(
    std::is_trivially_copyable_v<irsdk_header> && std::is_standard_layout_v<irsdk_header>);
static_assert(std::is_trivially_copyable_v<
                  irsdk_diskSubHeader> && std::is_standard_layout_v<irsdk_diskSubHeader>);
static_assert(
    std::is_trivially_copyable_v<irsdk_varHeader> && std::is_standard_layout_v<irsdk_varHeader>);

namespace {

/// \a count bytes as a little-endian number.
template <typename T>
void put(QByteArray &bytes, int offset, T value)
{
    char little[sizeof(T)];
    qToLittleEndian(value, little);
    bytes.replace(offset, sizeof little, little, sizeof little);
}

template <typename Record>
Record layOver(const QByteArray &bytes)
{
    Record record;
    std::memcpy(&record, bytes.constData(), sizeof record);
    return record;
}

} // namespace

class tst_IbtFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layout_data();
    void layout();
    void sizes_data();
    void sizes();
    void headerLiesOverItsBytes();
    void diskSubHeaderLiesOverItsBytes();
    void varHeaderLiesOverItsBytes();
    void typeNumbers_data();
    void typeNumbers();
    void elementSizes_data();
    void elementSizes();
};

void tst_IbtFormat::layout_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("expectedOffset");
    QTest::addColumn<int>("expectedSize");

#define FIELD(record, field, offset, size)                                                         \
    QTest::newRow(#record "." #field)                                                              \
        << int(offsetof(record, field)) << int(sizeof(record::field)) << (offset) << (size)
    FIELD(irsdk_header, ver, 0, 4);
    FIELD(irsdk_header, status, 4, 4);
    FIELD(irsdk_header, tickRate, 8, 4);
    FIELD(irsdk_header, sessionInfoUpdate, 12, 4);
    FIELD(irsdk_header, sessionInfoLen, 16, 4);
    FIELD(irsdk_header, sessionInfoOffset, 20, 4);
    FIELD(irsdk_header, numVars, 24, 4);
    FIELD(irsdk_header, varHeaderOffset, 28, 4);
    FIELD(irsdk_header, numBuf, 32, 4);
    FIELD(irsdk_header, bufLen, 36, 4);
    FIELD(irsdk_header, pad1, 40, 8);
    FIELD(irsdk_header, varBuf, 48, 64);

    FIELD(irsdk_varBuf, tickCount, 0, 4);
    FIELD(irsdk_varBuf, bufOffset, 4, 4);
    FIELD(irsdk_varBuf, pad, 8, 8);

    FIELD(irsdk_diskSubHeader, sessionStartDate, 0, 8);
    FIELD(irsdk_diskSubHeader, sessionStartTime, 8, 8);
    FIELD(irsdk_diskSubHeader, sessionEndTime, 16, 8);
    FIELD(irsdk_diskSubHeader, sessionLapCount, 24, 4);
    FIELD(irsdk_diskSubHeader, sessionRecordCount, 28, 4);

    FIELD(irsdk_varHeader, type, 0, 4);
    FIELD(irsdk_varHeader, offset, 4, 4);
    FIELD(irsdk_varHeader, count, 8, 4);
    FIELD(irsdk_varHeader, countAsTime, 12, 1);
    FIELD(irsdk_varHeader, pad, 13, 3);
    FIELD(irsdk_varHeader, name, 16, 32);
    FIELD(irsdk_varHeader, desc, 48, 64);
    FIELD(irsdk_varHeader, unit, 112, 32);
#undef FIELD
}

void tst_IbtFormat::layout()
{
    QFETCH(int, offset);
    QFETCH(int, size);

    QTEST(offset, "expectedOffset");
    QTEST(size, "expectedSize");
}

void tst_IbtFormat::sizes_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("expected");

    QTest::newRow("main header") << int(sizeof(irsdk_header)) << 112;
    QTest::newRow("buffer descriptor") << int(sizeof(irsdk_varBuf)) << 16;
    QTest::newRow("disk sub-header") << int(sizeof(irsdk_diskSubHeader)) << 32;
    QTest::newRow("variable header") << int(sizeof(irsdk_varHeader)) << 144;
}

void tst_IbtFormat::sizes()
{
    QFETCH(int, size);
    QTEST(size, "expected");
}

void tst_IbtFormat::headerLiesOverItsBytes()
{
    QByteArray bytes(112, '\0');
    for (int word = 0; word < 28; ++word)
        put(bytes, 4 * word, qint32(-1000 - word));
    const auto header = layOver<irsdk_header>(bytes);
    QCOMPARE(header.ver, -1000);
    QCOMPARE(header.status, -1001);
    QCOMPARE(header.tickRate, -1002);
    QCOMPARE(header.sessionInfoUpdate, -1003);
    QCOMPARE(header.sessionInfoLen, -1004);
    QCOMPARE(header.sessionInfoOffset, -1005);
    QCOMPARE(header.numVars, -1006);
    QCOMPARE(header.varHeaderOffset, -1007);
    QCOMPARE(header.numBuf, -1008);
    QCOMPARE(header.bufLen, -1009);
    for (int buffer = 0; buffer < 4; ++buffer) {
        QCOMPARE(header.varBuf[buffer].tickCount, -1012 - 4 * buffer);
        QCOMPARE(header.varBuf[buffer].bufOffset, -1013 - 4 * buffer);
    }
}

void tst_IbtFormat::diskSubHeaderLiesOverItsBytes()
{
    QByteArray bytes(32, '\0');
    put(bytes, 0, Q_INT64_C(1615734566000));
    put(bytes, 8, 1.25);
    put(bytes, 16, -2.5);
    put(bytes, 24, qint32(7));
    put(bytes, 28, qint32(-8));
    const auto header = layOver<irsdk_diskSubHeader>(bytes);
    QCOMPARE(qint64(header.sessionStartDate), Q_INT64_C(1615734566000));
    QVERIFY(header.sessionStartTime == 1.25);
    QVERIFY(header.sessionEndTime == -2.5);
    QCOMPARE(header.sessionLapCount, 7);
    QCOMPARE(header.sessionRecordCount, -8);
}

void tst_IbtFormat::varHeaderLiesOverItsBytes()
{
    QByteArray bytes(144, '\0');
    put(bytes, 0, qint32(4));
    put(bytes, 4, qint32(-5));
    put(bytes, 8, qint32(64));
    put(bytes, 12, quint8(1));
    bytes.replace(16, 4, "Name");
    bytes.replace(48, 4, "Desc");
    bytes.replace(112, 4, "Unit");
    const auto header = layOver<irsdk_varHeader>(bytes);
    QCOMPARE(header.type, 4);
    QCOMPARE(header.offset, -5);
    QCOMPARE(header.count, 64);
    QVERIFY(header.countAsTime);
    QCOMPARE(header.name, "Name");
    QCOMPARE(header.desc, "Desc");
    QCOMPARE(header.unit, "Unit");
}

void tst_IbtFormat::typeNumbers_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("number");

    QTest::newRow("char") << int(irsdk_char) << 0;
    QTest::newRow("bool") << int(irsdk_bool) << 1;
    QTest::newRow("int") << int(irsdk_int) << 2;
    QTest::newRow("bit field") << int(irsdk_bitField) << 3;
    QTest::newRow("float") << int(irsdk_float) << 4;
    QTest::newRow("double") << int(irsdk_double) << 5;
}

void tst_IbtFormat::typeNumbers()
{
    QFETCH(int, type);
    QTEST(type, "number");
}

void tst_IbtFormat::elementSizes_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("size");

    QTest::newRow("char") << 0 << 1;
    QTest::newRow("bool") << 1 << 1;
    QTest::newRow("int") << 2 << 4;
    QTest::newRow("bit field") << 3 << 4;
    QTest::newRow("float") << 4 << 4;
    QTest::newRow("double") << 5 << 8;
    QTest::newRow("first type that is not known") << 6 << 0;
    QTest::newRow("negative type") << -1 << 0;
    QTest::newRow("greatest type") << std::numeric_limits<int>::max() << 0;
    QTest::newRow("least type") << std::numeric_limits<int>::min() << 0;
}

void tst_IbtFormat::elementSizes()
{
    QFETCH(int, type);
    QTEST(int(irsdk_varTypeSize(type)), "size");
}

NAPAMMUL_TEST(tst_IbtFormat)

#include "tst_ibtformat.moc"
