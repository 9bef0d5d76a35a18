#include "model/channel.h"
#include "tests/support/extremes.h"
#include "tests/support/roomtests.h"
#include "tests/support/samebits.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <type_traits>

static_assert(!std::is_polymorphic_v<ZEP::Channel>);

namespace {

// Hosts rely on exactly these two numbers.
constexpr double NoData = 9.999999562023526e24;
constexpr double Threshold = 1.0000000138484279e24;

ZEP::Channel channelOf(const QVector<double> &samples)
{
    ZEP::Channel channel;
    channel.data = samples;
    return channel;
}

} // namespace

class tst_Channel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyWithoutUnitByDefault();
    void constantsAreTheHostsNumbers();
    void unit();
    void sample_data();
    void sample();
    void missingSampleIsReturnedAsItIs();
    void isValid_data();
    void isValid();
    void isValidOnlyInside_data();
    void isValidOnlyInside();
    void setSample_data();
    void setSample();
    void setSampleDetachesTheSamples();
    void copiesAreIndependent();
};

void tst_Channel::isEmptyWithoutUnitByDefault()
{
    const ZEP::Channel channel;
    QVERIFY(channel.data.isEmpty());
    QVERIFY(channel.unit().isEmpty());
    COMPARE_BITS(channel.sample(0), NoData);
    QVERIFY(!channel.isValid(0));
}

void tst_Channel::constantsAreTheHostsNumbers()
{
    const double noData = ZEP::Channel::NoData;
    const double validBelow = ZEP::Channel::ValidBelow;
    COMPARE_BITS(noData, NoData);
    COMPARE_BITS(noData, double(1e25f));
    COMPARE_BITS(validBelow, Threshold);
    COMPARE_BITS(validBelow, double(1e24f));
}

void tst_Channel::unit()
{
    ZEP::Channel channel;
    channel.setUnit("kg");
    QCOMPARE(channel.unit(), QString("kg"));
    channel.setUnit(QString());
    QVERIFY(channel.unit().isEmpty());
}

void tst_Channel::sample_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("value");

    QTest::newRow("first") << 0 << 1.5;
    QTest::newRow("last") << 2 << -0.0;
    QTest::newRow("in front") << -1 << NoData;
    QTest::newRow("behind") << 3 << NoData;
    QTest::newRow("least index") << MinInt << NoData;
    QTest::newRow("greatest index") << MaxInt << NoData;
}

void tst_Channel::sample()
{
    QFETCH(int, index);
    QFETCH(double, value);

    COMPARE_BITS(channelOf({1.5, 2.5, -0.0}).sample(index), value);
}

void tst_Channel::missingSampleIsReturnedAsItIs()
{
    const ZEP::Channel channel = channelOf({NoData, 2e24, NaN, -Infinity});
    COMPARE_BITS(channel.sample(0), NoData);
    COMPARE_BITS(channel.sample(1), 2e24);
    COMPARE_BITS(channel.sample(2), NaN);
    COMPARE_BITS(channel.sample(3), -Infinity);
}

void tst_Channel::isValid_data()
{
    QTest::addColumn<double>("sample");
    QTest::addColumn<bool>("valid");

    QTest::newRow("zero") << 0.0 << true;
    QTest::newRow("negative zero") << -0.0 << true;
    QTest::newRow("ordinary") << 42.0 << true;
    QTest::newRow("negative") << -42.0 << true;
    QTest::newRow("negative beyond the sentinel") << -2e25 << true;
    QTest::newRow("lowest") << std::numeric_limits<double>::lowest() << true;
    QTest::newRow("negative infinity") << -Infinity << true;
    QTest::newRow("1e24 as a double") << 1e24 << true;
    QTest::newRow("just below the threshold") << std::nextafter(Threshold, 0.0) << true;
    QTest::newRow("the threshold") << Threshold << false;
    QTest::newRow("just above the threshold") << std::nextafter(Threshold, Infinity) << false;
    QTest::newRow("2e24") << 2e24 << false;
    QTest::newRow("the sentinel") << NoData << false;
    QTest::newRow("1e25 as a double") << 1e25 << false;
    QTest::newRow("infinity") << Infinity << false;
    QTest::newRow("NaN") << NaN << false;
    QTest::newRow("negative NaN") << -NaN << false;
}

void tst_Channel::isValid()
{
    QFETCH(double, sample);

    QTEST(ZEP::Channel::isValidSample(sample), "valid");
    QTEST(channelOf({sample}).isValid(0), "valid");
}

void tst_Channel::isValidOnlyInside_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("valid");

    QTest::newRow("first") << 0 << true;
    QTest::newRow("last") << 2 << true;
    QTest::newRow("in front") << -1 << false;
    QTest::newRow("behind") << 3 << false;
    QTest::newRow("least index") << MinInt << false;
    QTest::newRow("greatest index") << MaxInt << false;
}

void tst_Channel::isValidOnlyInside()
{
    QFETCH(int, index);

    QTEST(channelOf({1.0, 2.0, 3.0}).isValid(index), "valid");
}

void tst_Channel::setSample_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("value");
    QTest::addColumn<QVector<double>>("samples");

    const QVector<double> unchanged{1.0, 2.0, 3.0};
    QTest::newRow("first") << 0 << 9.0 << QVector<double>{9.0, 2.0, 3.0};
    QTest::newRow("last") << 2 << 9.0 << QVector<double>{1.0, 2.0, 9.0};
    QTest::newRow("sentinel") << 1 << NoData << QVector<double>{1.0, NoData, 3.0};
    QTest::newRow("NaN") << 1 << NaN << QVector<double>{1.0, NaN, 3.0};
    QTest::newRow("negative zero") << 1 << -0.0 << QVector<double>{1.0, -0.0, 3.0};
    QTest::newRow("in front") << -1 << 9.0 << unchanged;
    QTest::newRow("just behind") << 3 << 9.0 << unchanged;
    QTest::newRow("far behind") << 5 << 9.0 << unchanged;
    QTest::newRow("least index") << MinInt << 9.0 << unchanged;
    QTest::newRow("greatest index") << MaxInt << 9.0 << unchanged;
}

void tst_Channel::setSample()
{
    QFETCH(int, index);
    QFETCH(double, value);
    QFETCH(QVector<double>, samples);

    ZEP::Channel channel = channelOf({1.0, 2.0, 3.0});
    channel.setUnit("m");
    channel.setSample(index, value);
    COMPARE_BITS(channel.data, samples);
    QCOMPARE(channel.unit(), QString("m"));
}

void tst_Channel::setSampleDetachesTheSamples()
{
    const QVector<double> shared{1.0, 2.0};
    ZEP::Channel channel = channelOf(shared);
    channel.setSample(0, 9.0);
    COMPARE_BITS(shared, QVector<double>({1.0, 2.0}));
    COMPARE_BITS(channel.data, QVector<double>({9.0, 2.0}));
}

void tst_Channel::copiesAreIndependent()
{
    ZEP::Channel source = channelOf({1.0, 2.0});
    source.setUnit("m");
    ZEP::Channel copy(source);
    copy.setSample(1, 9.0);
    copy.data.append(3.0);
    copy.setUnit("km");
    COMPARE_BITS(source.data, QVector<double>({1.0, 2.0}));
    QCOMPARE(source.unit(), QString("m"));
    COMPARE_BITS(copy.data, QVector<double>({1.0, 9.0, 3.0}));
    QCOMPARE(copy.unit(), QString("km"));
}

NAPAMMUL_TEST(tst_Channel)

#include "tst_channel.moc"
