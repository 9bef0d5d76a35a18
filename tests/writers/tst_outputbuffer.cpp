#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"
#include "writers/outputbuffer.h"
#include "writers/outputfile.h"

#include <QTest>

#include <limits>
#include <random>

class tst_OutputBuffer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void number_data();
    void number();
    void anyNumberReadsBack();
    void pieces();
};

namespace {

QByteArray numberText(double number)
{
    char text[OutputBuffer::NumberSize];
    return QByteArray(text, int(OutputBuffer::writeNumber(text, number) - text));
}

} // namespace

void tst_OutputBuffer::number_data()
{
    QTest::addColumn<double>("number");
    QTest::addColumn<QByteArray>("text");

    using Limits = std::numeric_limits<double>;
    QTest::newRow("zero") << 0.0 << QByteArray("0");
    QTest::newRow("negative zero") << -0.0 << QByteArray("-0");
    QTest::newRow("whole") << 255.0 << QByteArray("255");
    QTest::newRow("tenth") << 0.1 << QByteArray("0.1");
    QTest::newRow("tenth in single precision") << double(0.1F) << QByteArray("0.10000000149011612");
    QTest::newRow("large") << 268697600.0 << QByteArray("268697600");
    QTest::newRow("shorter with an exponent") << 1e6 << QByteArray("1e+06");
    QTest::newRow("longest") << -2.2250738585072014e-308 << QByteArray("-2.2250738585072014e-308");
    QTest::newRow("smallest") << Limits::denorm_min() << QByteArray("5e-324");
    QTest::newRow("greatest") << Limits::max() << QByteArray("1.7976931348623157e+308");
    QTest::newRow("infinite") << Limits::infinity() << QByteArray("inf");
    QTest::newRow("minus infinite") << -Limits::infinity() << QByteArray("-inf");
}

void tst_OutputBuffer::number()
{
    QFETCH(double, number);
    QTEST(numberText(number), "text");
}

void tst_OutputBuffer::anyNumberReadsBack()
{
    std::mt19937_64 random(1);
    for (int i = 0; i < 100000; ++i) {
        const quint64 bits = random();
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        if (std::isnan(number))
            continue;
        const QByteArray text = numberText(number);
        COMPARE_BITS(std::strtod(text.constData(), nullptr), number);
    }
}

void tst_OutputBuffer::pieces()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("text"));
    const QByteArray large(3 << 20, 'x');
    const QByteArray middle(600 << 10, 'y');
    QString problem;
    OutputFile file(name);
    QVERIFY(file.open(false, &problem));
    OutputBuffer buffer(file);
    buffer.append("a");
    buffer.append(large);
    buffer.append("b");
    buffer.append(middle);
    buffer.append(middle);
    char *place = buffer.room(100);
    *place++ = 'c';
    buffer.appendUntil(place);
    buffer.flush();
    QVERIFY(file.commit(&problem));
    QFile written(name);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QVERIFY(written.readAll() == "a" + large + "b" + middle + middle + "c");
}

NAPAMMUL_TEST(tst_OutputBuffer)
#include "tst_outputbuffer.moc"
