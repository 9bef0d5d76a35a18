#include "host/report/samplepacker.h"
#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <cmath>

using Samples = QVector<double>;
using LapSamples = QVector<Samples>;

Q_DECLARE_METATYPE(LapSamples)

class tst_SamplePacker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytes_data();
    void bytes();
    void readsBack_data();
    void readsBack();
    void longestStep();
};

namespace {

/// The next number of \a bytes from \a place on.
quint64 nextNumber(const QByteArray &bytes, int &place)
{
    quint64 number = 0;
    for (int shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(bytes.at(place++));
        number |= quint64(byte & 0x7f) << shift;
        if (byte < 0x80)
            return number;
    }
}

/// The samples of laps with as many ticks as those of \a laps, and nothing behind them.
LapSamples unpacked(const SamplePacker &packer, const LapSamples &laps)
{
    LapSamples result;
    int place = 0;
    for (const Samples &samples : laps) {
        Samples lap;
        qint64 steps = 0;
        for (int i = 0; i < samples.size(); ++i) {
            const quint64 number = nextNumber(packer.bytes(), place);
            if (number == 0) {
                lap.append(NaN);
                continue;
            }
            steps += number % 2 == 1 ? qint64(number - 1) / 2 : -qint64(number) / 2;
            lap.append(packer.base() + packer.step() * double(steps));
        }
        result.append(lap);
    }
    return place == packer.bytes().size() ? result : LapSamples();
}

} // namespace

void tst_SamplePacker::bytes_data()
{
    QTest::addColumn<LapSamples>("laps");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("no lap") << LapSamples() << QByteArray();
    QTest::newRow("no tick") << LapSamples{{}} << QByteArray();
    QTest::newRow("missing") << LapSamples{{NaN, NaN}} << QByteArray("\0\0", 2);
    QTest::newRow("still") << LapSamples{{7, 7, 7}} << QByteArray("\1\1\1");
    QTest::newRow("up and down") << LapSamples{{0, 1, 3, 2, 0}} << QByteArray("\1\3\5\2\4");
    QTest::newRow("over a missing one")
        << LapSamples{{0, NaN, 2, NaN, 1}} << QByteArray("\1\0\5\0\2", 5);
    QTest::newRow("largest of one byte") << LapSamples{{0, 63}} << QByteArray("\1\x7f");
    QTest::newRow("smallest of two bytes") << LapSamples{{64, 0}} << QByteArray("\x81\1\x80\1");
    QTest::newRow("each lap from the base on")
        << LapSamples{{5, 6}, {6, 5}} << QByteArray("\1\3\3\2");
}

void tst_SamplePacker::bytes()
{
    QFETCH(LapSamples, laps);
    QFETCH(QByteArray, bytes);
    QCOMPARE(SamplePacker(laps, 100).bytes(), bytes);
}

void tst_SamplePacker::readsBack_data()
{
    QTest::addColumn<LapSamples>("laps");
    QTest::addColumn<double>("step"); // at most; 0: exactly
    QTest::addColumn<bool>("isWhole");

    QTest::newRow("gears") << LapSamples{{-1, 0, 1, 2, 8}} << 0.0 << true;
    QTest::newRow("a wide range of whole numbers")
        << LapSamples{{-999999999, 999999999}} << 0.0 << true;
    QTest::newRow("constant") << LapSamples{{0.1, 0.1}, {0.1}} << 0.0 << false;
    QTest::newRow("a pedal") << LapSamples{{0, 0.123456, 1}, {0.5}} << 1e-4 << false;
    QTest::newRow("range of another lap") << LapSamples{{0.25}, {0, 2000}} << 0.2 << false;
    QTest::newRow("far from zero") << LapSamples{{47.31720001, 47.31910001}} << 1.9e-7 << false;
    QTest::newRow("whole numbers beyond 1e9") << LapSamples{{0, 1e9}} << 1e5 << false;
    QTest::newRow("huge") << LapSamples{{-1e299, 9e23}} << 1e295 << false;
    QTest::newRow("tiny") << LapSamples{{0, 1e-320, 5e-324}} << 1e-290 << false;
    QTest::newRow("not finite") << LapSamples{{0.5, Infinity, -Infinity, 0.25, NaN}} << 2.5e-5
                                << false;
    QTest::newRow("beyond every range") << LapSamples{{0.5, -1.7e308, 0.25}} << 2.5e-5 << false;
}

void tst_SamplePacker::readsBack()
{
    QFETCH(LapSamples, laps);
    QFETCH(double, step);
    QFETCH(bool, isWhole);
    const SamplePacker packer(laps, 10000);
    QCOMPARE(packer.isWhole(), isWhole);
    if (step > 0)
        QVERIFY2(packer.step() <= step, qPrintable(QString::number(packer.step())));

    const LapSamples read = unpacked(packer, laps);
    QCOMPARE(read.size(), laps.size());
    for (int lap = 0; lap < laps.size(); ++lap) {
        QCOMPARE(read.at(lap).size(), laps.at(lap).size());
        for (int i = 0; i < laps.at(lap).size(); ++i) {
            const double written = laps.at(lap).at(i);
            const double found = read.at(lap).at(i);
            if (!(std::abs(written) < 1e300)) {
                QVERIFY(std::isnan(found));
                continue;
            }
            QVERIFY2(std::abs(found - written) <= step * 0.500001,
                     qPrintable(QString::number(found)));
        }
    }
}

void tst_SamplePacker::longestStep()
{
    const LapSamples laps{{-60.25, 60.5}};
    QCOMPARE(SamplePacker(laps, 10).step(), 10.0);
    QCOMPARE(SamplePacker(laps, 10, 3).step(), 1.0);
    QCOMPARE(SamplePacker(laps, 1e9, 3).step(), 1e-7);
}

NAPAMMUL_TEST(tst_SamplePacker)
#include "tst_samplepacker.moc"
