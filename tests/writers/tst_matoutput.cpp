#include "model/channel.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "writers/matoutput.h"
#include "writers/outputbuffer.h"
#include "writers/outputfile.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

#include <matio.h>

#include <limits>

/// What is written is read by another library.
class tst_MatOutput : public QObject
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
    void structs();
};

namespace {

struct MatVariableDeleter {
    void operator()(matvar_t *variable) const { Mat_VarFree(variable); }
};
using MatVariable = std::unique_ptr<matvar_t, MatVariableDeleter>;

/// The field "it" of what libmatio reads in a file with the struct "them" of \a count; null if it
/// cannot read it.
MatVariable readBack(const MatOutput::Contents &values, int count = 1)
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("a.mat"));
    QString problem;
    OutputFile file(name);
    if (!file.open(false, &problem))
        return nullptr;
    OutputBuffer buffer(file);
    MatOutput counted;
    values(counted);
    MatOutput out(buffer);
    out.fileHeader();
    out.variable("them", {"it"}, count, values, counted.size());
    buffer.flush();
    if (!file.commit(&problem) || QFileInfo(name).size() != out.size())
        return nullptr;
    mat_t *mat = Mat_Open(QFile::encodeName(name).constData(), MAT_ACC_RDONLY);
    MatVariable read(mat ? Mat_VarRead(mat, "them") : nullptr);
    if (mat)
        Mat_Close(mat);
    return read;
}

} // namespace

void tst_MatOutput::fieldNames_data()
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

void tst_MatOutput::fieldNames()
{
    QFETCH(QStringList, names);
    QTEST(matFieldNames(names), "fields");
}

void tst_MatOutput::fieldNamesOfManyThatWouldBeTheSame()
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

void tst_MatOutput::value_data()
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

void tst_MatOutput::value()
{
    QFETCH(QJsonValue, json);
    QFETCH(int, rows);
    QFETCH(int, columns);
    const MatVariable read = readBack([&](MatOutput &out) { out.value(json); });
    QVERIFY(read);
    const matvar_t *variable = Mat_VarGetStructFieldByName(read.get(), "it", 0);
    QVERIFY(variable);
    QTEST(int(variable->class_type), "type");
    QCOMPARE(variable->rank, 2);
    QCOMPARE(variable->dims[0], std::size_t(rows));
    QCOMPARE(variable->dims[1], std::size_t(columns));
    QCOMPARE(variable->isLogical != 0, json.isBool());
    QTEST(QByteArray(static_cast<const char *>(variable->data), int(variable->nbytes)), "bytes");
}

void tst_MatOutput::object()
{
    const QJsonObject json{{"a b", 1.5}, {"c", QJsonObject{{"d", "text"}}}};
    const MatVariable read = readBack([&](MatOutput &out) { out.value(json); });
    QVERIFY(read);
    matvar_t *variable = Mat_VarGetStructFieldByName(read.get(), "it", 0);
    QVERIFY(variable);
    QCOMPARE(int(variable->class_type), int(MAT_C_STRUCT));
    QCOMPARE(Mat_VarGetNumberOfFields(variable), 2U);
    const matvar_t *number = Mat_VarGetStructFieldByName(variable, "a_b", 0);
    QVERIFY(number);
    QCOMPARE(*static_cast<double *>(number->data), 1.5);
    matvar_t *inner = Mat_VarGetStructFieldByName(variable, "c", 0);
    QVERIFY(inner);
    QVERIFY(Mat_VarGetStructFieldByName(inner, "d", 0));
}

void tst_MatOutput::column()
{
    // Also more than is written at once.
    for (const int count : {0, 3, 20000}) {
        QVector<double> samples(count, 1.5);
        if (count > 1) {
            samples[1] = ZEP::Channel::NoData;
            samples[count - 1] = -0.0;
        }
        const MatVariable read = readBack([&](MatOutput &out) { out.column(samples); });
        QVERIFY(read);
        const matvar_t *variable = Mat_VarGetStructFieldByName(read.get(), "it", 0);
        QVERIFY(variable);
        QCOMPARE(int(variable->class_type), int(MAT_C_DOUBLE));
        QCOMPARE(variable->dims[0], std::size_t(count));
        QCOMPARE(variable->dims[1], std::size_t(1));
        if (count > 1)
            samples[1] = std::numeric_limits<double>::quiet_NaN();
        COMPARE_BITS(QVector<double>(static_cast<const double *>(variable->data),
                                     static_cast<const double *>(variable->data) + count),
                     samples);
    }
}

void tst_MatOutput::structs()
{
    const MatVariable read = readBack(
        [](MatOutput &out) {
            out.value(QStringLiteral("first"));
            out.structs({"a", "longer"}, 1, [](MatOutput &fields) {
                fields.value(1);
                fields.value(2);
            });
        },
        2);
    QVERIFY(read);
    QCOMPARE(read->dims[0], std::size_t(1));
    QCOMPARE(read->dims[1], std::size_t(2));
    const matvar_t *first = Mat_VarGetStructFieldByName(read.get(), "it", 0);
    matvar_t *second = Mat_VarGetStructFieldByName(read.get(), "it", 1);
    QVERIFY(first && second);
    QCOMPARE(first->dims[1], std::size_t(5));
    const matvar_t *inner = Mat_VarGetStructFieldByName(second, "longer", 0);
    QVERIFY(inner);
    QCOMPARE(*static_cast<double *>(inner->data), 2.0);
}

NAPAMMUL_TEST(tst_MatOutput)
#include "tst_matoutput.moc"
