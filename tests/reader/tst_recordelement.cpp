// Which elements of a record are read, and as what.

#include "reader/recordelement.h"
#include "tests/support/roomtests.h"
#include "tools/recording.h"

#include <QTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(irsdk_varHeader)

namespace {

irsdk_varHeader variable(qint32 type, qint32 offset, qint32 count)
{
    irsdk_varHeader header = {};
    header.type = type;
    header.offset = offset;
    header.count = count;
    return header;
}

irsdk_header headerOf(qint32 recordBytes)
{
    irsdk_header header = {};
    header.bufLen = recordBytes;
    return header;
}

template <typename T>
QByteArray bytesOf(T value)
{
    return QByteArray(reinterpret_cast<const char *>(&value), sizeof value);
}

} // namespace

class tst_RecordElement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultElementReadsAsInvalid();
    void conversionsAreThoseOfQVariant_data();
    void conversionsAreThoseOfQVariant();
    void unalignedElementIsRead();
    void storedElements_data();
    void storedElements();
    void unknownTypeTakesTheValueConvertedBefore();
    void unknownTypeTakesNothingFromOutsideTheRecord();
};

void tst_RecordElement::defaultElementReadsAsInvalid()
{
    const RecordElement element;
    QVERIFY(!element.toVariant(nullptr).isValid());
    QCOMPARE(element.toInt(nullptr), 0);
    QCOMPARE(element.toFloat(nullptr), 0.0f);
    QCOMPARE(element.toBool(nullptr), false);
}

void tst_RecordElement::conversionsAreThoseOfQVariant_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("char") << int(irsdk_char) << bytesOf('A') << QVariant(65);
    QTest::newRow("char is signed") << int(irsdk_char) << bytesOf('\xff') << QVariant(-1);
    QTest::newRow("bool") << int(irsdk_bool) << bytesOf('\1') << QVariant(true);
    QTest::newRow("bool zero") << int(irsdk_bool) << bytesOf('\0') << QVariant(false);
    QTest::newRow("bool of another byte") << int(irsdk_bool) << bytesOf('\x80') << QVariant(true);
    QTest::newRow("int") << int(irsdk_int) << bytesOf(qint32(-7)) << QVariant(-7);
    QTest::newRow("int greatest") << int(irsdk_int) << bytesOf(INT_MAX) << QVariant(INT_MAX);
    QTest::newRow("bit field is signed")
        << int(irsdk_bitField) << bytesOf(quint32(0x80000000u)) << QVariant(INT_MIN);
    QTest::newRow("float") << int(irsdk_float) << bytesOf(0.1f) << QVariant(0.1f);
    QTest::newRow("float rounded up as an int")
        << int(irsdk_float) << bytesOf(2.5f) << QVariant(2.5f);
    QTest::newRow("float rounded away from zero")
        << int(irsdk_float) << bytesOf(-2.6f) << QVariant(-2.6f);
    QTest::newRow("float below a half is false")
        << int(irsdk_float) << bytesOf(0.3f) << QVariant(0.3f);
    QTest::newRow("double") << int(irsdk_double) << bytesOf(0.1) << QVariant(0.1);
    QTest::newRow("double narrowed to float")
        << int(irsdk_double) << bytesOf(1e-50) << QVariant(1e-50);
}

void tst_RecordElement::conversionsAreThoseOfQVariant()
{
    QFETCH(int, type);
    QFETCH(QByteArray, bytes);
    QFETCH(QVariant, expected);

    const RecordElement element(type, 0);
    const QVariant value = element.toVariant(bytes.constData());
    QCOMPARE(value.userType(), expected.userType());
    QCOMPARE(value, expected);
    QCOMPARE(element.toInt(bytes.constData()), expected.toInt());
    QCOMPARE(element.toBool(bytes.constData()), expected.toBool());
    QVERIFY(element.toFloat(bytes.constData()) == expected.toFloat());
}

void tst_RecordElement::unalignedElementIsRead()
{
    const QByteArray record = QByteArray(3, 'x') + bytesOf(12.25);
    QCOMPARE(RecordElement(irsdk_double, 3).toVariant(record.constData()).toDouble(), 12.25);
}

void tst_RecordElement::storedElements_data()
{
    QTest::addColumn<int>("recordBytes");
    QTest::addColumn<irsdk_varHeader>("header");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last"); // -1: none

    QTest::newRow("scalar") << 8 << variable(irsdk_float, 0, 1) << 0 << 0;
    QTest::newRow("scalar at the end") << 8 << variable(irsdk_float, 4, 1) << 0 << 0;
    QTest::newRow("scalar one byte too far") << 8 << variable(irsdk_float, 5, 1) << 0 << -1;
    QTest::newRow("scalar one byte before") << 8 << variable(irsdk_char, -1, 1) << 0 << -1;
    QTest::newRow("array") << 24 << variable(irsdk_float, 0, 6) << 0 << 5;
    QTest::newRow("array cut by the end") << 23 << variable(irsdk_float, 0, 6) << 0 << 4;
    QTest::newRow("array cut by the start") << 24 << variable(irsdk_int, -5, 6) << 2 << 5;
    QTest::newRow("array cut at both ends") << 8 << variable(irsdk_int, -4, 100) << 1 << 2;
    QTest::newRow("count beyond any record") << 16 << variable(irsdk_double, 0, INT_MAX) << 0 << 1;
    QTest::newRow("count zero") << 8 << variable(irsdk_float, 0, 0) << 0 << -1;
    QTest::newRow("count negative") << 8 << variable(irsdk_float, 0, -3) << 0 << -1;
    QTest::newRow("char is one element") << 64 << variable(irsdk_char, 3, 32) << 0 << 0;
    QTest::newRow("char of count zero") << 64 << variable(irsdk_char, 3, 0) << 0 << 0;
    QTest::newRow("char of negative count") << 64 << variable(irsdk_char, 3, -9) << 0 << 0;
    QTest::newRow("offset smallest")
        << 8 << variable(irsdk_double, INT_MIN, INT_MAX) << 268435456 << 268435456;
    QTest::newRow("offset greatest") << 8 << variable(irsdk_double, INT_MAX, INT_MAX) << 0 << -1;
    QTest::newRow("record of no bytes") << 0 << variable(irsdk_char, 0, 1) << 0 << -1;
    QTest::newRow("record of negative size") << INT_MIN << variable(irsdk_float, 0, 1) << 0 << -1;
    QTest::newRow("unknown type needs no bytes") << 0 << variable(6, 1000, 3) << 0 << 2;
    QTest::newRow("unknown type below zero") << 8 << variable(-1, -1000, 1) << 0 << 0;
    QTest::newRow("unknown type of count zero") << 8 << variable(6, 0, 0) << 0 << -1;
}

void tst_RecordElement::storedElements()
{
    QFETCH(int, recordBytes);
    QFETCH(irsdk_varHeader, header);
    QFETCH(int, first);
    QFETCH(int, last);

    int calls = 0;
    forEachVariable(headerOf(recordBytes), &header, 1, [&](int v, const StoredElements &elements) {
        ++calls;
        QCOMPARE(v, 0);
        QCOMPARE(elements.first(), first);
        QCOMPARE(elements.last(), last);
        const qint64 size = irsdk_varTypeSize(header.type);
        if (size > 0) {
            QCOMPARE(qint64(elements.at(last).offset()), header.offset + last * size);
            QVERIFY(elements.at(first).offset() >= 0);
            QVERIFY(elements.at(last).offset() + size <= recordBytes);
        }
    });
    QCOMPARE(calls, last < 0 ? 0 : 1);
}

void tst_RecordElement::unknownTypeTakesTheValueConvertedBefore()
{
    const irsdk_varHeader table[] = {
        variable(9, 0, 1),          variable(irsdk_int, 0, 2), variable(9, 0, 4),
        variable(irsdk_char, 8, 1), variable(-1, 0, 1),
    };
    const QByteArray record = bytesOf(qint32(10)) + bytesOf(qint32(20)) + bytesOf('\5');

    QVariantList values;
    forEachVariable(headerOf(record.size()), table, 5, [&](int, const StoredElements &elements) {
        values.append(elements.at(elements.last()).toVariant(record.constData()));
    });
    QCOMPARE(values, (QVariantList{QVariant(), 20, 20, 5, 5}));
}

void tst_RecordElement::unknownTypeTakesNothingFromOutsideTheRecord()
{
    const irsdk_varHeader table[] = {
        variable(irsdk_int, 0, 1),
        variable(irsdk_int, 4, 1),
        variable(9, 0, 1),
    };
    const QByteArray record = bytesOf(qint32(10)) + QByteArray(3, 'x');

    QVariantList values;
    forEachVariable(headerOf(record.size()), table, 3, [&](int, const StoredElements &elements) {
        values.append(elements.at(elements.last()).toVariant(record.constData()));
    });
    QCOMPARE(values, (QVariantList{10, 10}));
}

NAPAMMUL_TEST(tst_RecordElement)

#include "tst_recordelement.moc"
