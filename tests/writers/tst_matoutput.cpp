#include "tests/support/roomtests.h"
#include "writers/matvariable.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

class tst_MatVariable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldNames_data();
    void fieldNames();
    void fieldNamesOfManyThatWouldBeTheSame();
    void value_data();
    void value();
    void object();
    void column();
};

void tst_MatVariable::fieldNames_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QStringList>("fields");

    const QString longest(63, QLatin1Char('a'));
    QTest::newRow("none") << QStringList{} << QStringList{};
    QTest::newRow("as they are") << QStringList{"speed", "engine0_rpm", "X1"}
                                 << QStringList{"speed", "engine0_rpm", "X1"};
    QTest::newRow("odd letters") << QStringList{"Air temperature", "µ", "a-b"}
                                 << QStringList{"Air_temperature", "x_", "a_b"};
    QTest::newRow("no letter first")
        << QStringList{"2wd", "_a", ""} << QStringList{"x2wd", "x_a", "x"};
    QTest::newRow("would be the same") << QStringList{"a b", "a-b", "a_b_2", "a.b"}
                                       << QStringList{"a_b", "a_b_2", "a_b_2_2", "a_b_3"};
    QTest::newRow("too long") << QStringList{longest + "bc", longest + "d", longest}
                              << QStringList{longest, longest.left(61) + "_2",
                                             longest.left(61) + "_3"};
}

void tst_MatVariable::fieldNames()
{
    QFETCH(QStringList, names);
    QTEST(matFieldNames(names), "fields");
}

void tst_MatVariable::fieldNamesOfManyThatWouldBeTheSame()
{
    // So many that comparing each with all others would take minutes.
    constexpr int count = 100000;
    const QString longest(63, QLatin1Char('a'));
    QStringList names;
    for (int i = 0; i < count; ++i)
        names << QStringLiteral("a b") << longest;
    const QStringList fields = matFieldNames(names);
    QCOMPARE(QSet<QString>(fields.begin(), fields.end()).size(), 2 * count);
    QCOMPARE(fields.at(0), QStringLiteral("a_b"));
    QCOMPARE(fields.at(2 * count - 2), QStringLiteral("a_b_100000"));
    QCOMPARE(fields.at(2 * count - 1), QString(longest.left(56) % QLatin1String("_100000")));
}

void tst_MatVariable::value_data()
{
    QTest::addColumn<QJsonValue>("json");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("rows");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("number") << QJsonValue(0.1) << int(MAT_C_DOUBLE) << 1 << 1
                            << QByteArray::fromHex("9a9999999999b93f");
    QTest::newRow("true") << QJsonValue(true) << int(MAT_C_UINT8) << 1 << 1 << QByteArray("\1");
    QTest::newRow("text") << QJsonValue("aé") << int(MAT_C_CHAR) << 1 << 2
                          << QByteArray::fromHex("6100e900");
    QTest::newRow("empty text") << QJsonValue("") << int(MAT_C_CHAR) << 0 << 0 << QByteArray();
    QTest::newRow("null") << QJsonValue() << int(MAT_C_DOUBLE) << 0 << 0 << QByteArray();
}

void tst_MatVariable::value()
{
    QFETCH(QJsonValue, json);
    QFETCH(int, rows);
    QFETCH(int, columns);
    const MatVariable variable = matValue(json);
    QTEST(int(variable->class_type), "type");
    QCOMPARE(variable->rank, 2);
    QCOMPARE(variable->dims[0], std::size_t(rows));
    QCOMPARE(variable->dims[1], std::size_t(columns));
    QCOMPARE(variable->isLogical != 0, json.isBool());
    QTEST(QByteArray(static_cast<const char *>(variable->data), int(variable->nbytes)), "bytes");
}

void tst_MatVariable::object()
{
    const MatVariable variable =
        matValue(QJsonObject{{"a b", 1.5}, {"c", QJsonObject{{"d", "text"}}}});
    QCOMPARE(int(variable->class_type), int(MAT_C_STRUCT));
    QCOMPARE(Mat_VarGetNumberOfFields(variable.get()), 2U);
    const matvar_t *number = Mat_VarGetStructFieldByName(variable.get(), "a_b", 0);
    QVERIFY(number);
    QCOMPARE(*static_cast<double *>(number->data), 1.5);
    matvar_t *inner = Mat_VarGetStructFieldByName(variable.get(), "c", 0);
    QVERIFY(inner);
    QVERIFY(Mat_VarGetStructFieldByName(inner, "d", 0));
}

void tst_MatVariable::column()
{
    QVector<double> samples{1, 2, 3};
    const MatVariable variable = matColumn(samples);
    QCOMPARE(variable->dims[0], std::size_t(3));
    QCOMPARE(variable->dims[1], std::size_t(1));
    QCOMPARE(static_cast<const double *>(variable->data), samples.constData());
}

NAPAMMUL_TEST(tst_MatVariable)
#include "tst_matvariable.moc"
