#include "inspect/recordvalues.h"

#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <cstring>

class tst_RecordValues : public QObject
{
    Q_OBJECT

private slots:
    void lapThatComesBackIsForeign_data();
    void lapThatComesBackIsForeign();
};

void tst_RecordValues::lapThatComesBackIsForeign_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("count");

    QTest::newRow("in the record") << 0 << 1;
    // Element 536870912 of it is the first that lies in the record.
    QTest::newRow("beginning far before the record") << MinInt << MaxInt;
}

void tst_RecordValues::lapThatComesBackIsForeign()
{
    QFETCH(int, offset);
    QFETCH(int, count);

    irsdk_varHeader lap{};
    lap.type = irsdk_int;
    lap.offset = offset;
    lap.count = count;
    std::strcpy(lap.name, "Lap");
    irsdk_header header{};
    header.numVars = 1;
    header.bufLen = sizeof(int);
    const RecordValues values(header, &lap);

    const int before = 2;
    const int other = 3;
    const auto bytes = [](const int &number) { return reinterpret_cast<const char *>(&number); };
    QVERIFY(values.isForeign(bytes(before), bytes(other), bytes(before)));
    QVERIFY(!values.isForeign(bytes(before), bytes(other), bytes(other)));
    QVERIFY(!values.isForeign(bytes(before), bytes(before), bytes(before)));
}

NAPAMMUL_TEST(tst_RecordValues)
#include "tst_recordvalues.moc"
