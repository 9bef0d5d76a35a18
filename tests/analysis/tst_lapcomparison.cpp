#include "analysis/lapcomparison.h"

#include "tests/support/drivenlap.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <cmath>

class tst_LapComparison : public QObject
{
    Q_OBJECT

private slots:
    void equalLapsDifferNowhere();
    void differenceGrowsWithDistance();
    void pointsReachTheLine_data();
    void pointsReachTheLine();
    void greatestStretchComesFirst();
    void flutterMakesNoStretch();
    void turnOfHalfAHundredthMakesAStretch();
    void cornerEndsAStretch_data();
    void cornerEndsAStretch();
};

namespace {

constexpr double Step = 1;

LapByDistance curveOf(const std::function<double(double)> &speed, double offset = 0.5)
{
    QString problem;
    const auto curve = LapByDistance::of(lapOf(drivenLap(Length, offset, speed)), &problem);
    return curve.value();
}

std::function<double(double)> even(double speed)
{
    return [speed](double) { return speed; };
}

bool isClose(double actual, double expected, double tolerance)
{
    return std::abs(actual - expected) <= tolerance;
}

} // namespace

void tst_LapComparison::equalLapsDifferNowhere()
{
    const LapByDistance lap = curveOf(even(30));
    const LapComparison comparison(lap, lap, Step);
    for (const LapComparison::Point &point : comparison.points)
        QCOMPARE(point.difference(), 0.0);
    QCOMPARE(comparison.stretches.size(), std::size_t(1));
    QCOMPARE(comparison.stretches.front().begin, 0.0);
    QCOMPARE(comparison.stretches.front().end, Length);
    QCOMPARE(comparison.stretches.front().seconds, 0.0);
}

void tst_LapComparison::differenceGrowsWithDistance()
{
    // Ticks at other places of the lap do not change the result.
    const LapComparison comparison(curveOf(even(30), 0.1), curveOf(even(25), 0.9), Step);
    for (const LapComparison::Point &point : comparison.points) {
        QVERIFY(isClose(point.difference(), point.distance / 25 - point.distance / 30, 1e-9));
        QCOMPARE(point.speeds[0], 30.0);
        QCOMPARE(point.speeds[1], 25.0);
    }
    QCOMPARE(comparison.stretches.size(), std::size_t(1));
    const LapComparison::Stretch &all = comparison.stretches.front();
    QVERIFY(isClose(all.seconds, 4, 1e-9));
    QVERIFY(isClose(all.speeds[0], 30, 1e-6));
    QVERIFY(isClose(all.speeds[1], 25, 1e-6));
}

void tst_LapComparison::pointsReachTheLine_data()
{
    QTest::addColumn<double>("step");
    QTest::addColumn<int>("points");

    QTest::newRow("a metre") << 1.0 << 601;
    QTest::newRow("a metre and a bit") << 1.1 << 547;
    QTest::newRow("a tenth") << 0.1 << 6001;
    QTest::newRow("the lap") << 600.0 << 2;
    QTest::newRow("more than the lap") << 1000.0 << 2;
}

void tst_LapComparison::pointsReachTheLine()
{
    QFETCH(double, step);
    QFETCH(int, points);

    const LapComparison comparison(curveOf(even(30)), curveOf(even(25)), step);
    QCOMPARE(int(comparison.points.size()), points);
    QCOMPARE(comparison.points.front().distance, 0.0);
    QCOMPARE(comparison.points.back().distance, Length);
    for (int i = 0; i < points - 1; ++i)
        QCOMPARE(comparison.points[std::size_t(i)].distance, i * step);
}

void tst_LapComparison::greatestStretchComesFirst()
{
    // The second lap is slower in the first quarter, much faster in the second, then equally fast.
    const auto speed = [](double distance) {
        if (distance < 150)
            return 28.0;
        return distance < 300 ? 36.0 : 30.0;
    };
    const LapComparison comparison(curveOf(even(30)), curveOf(speed), Step);
    QCOMPARE(comparison.stretches.size(), std::size_t(2));

    const LapComparison::Stretch &gain = comparison.stretches[0];
    QVERIFY(isClose(gain.begin, 150, 1));
    QVERIFY(isClose(gain.seconds, 150.0 / 36 - 150.0 / 30, 0.01));

    const LapComparison::Stretch &loss = comparison.stretches[1];
    QCOMPARE(loss.begin, 0.0);
    QCOMPARE(loss.end, gain.begin);
    QVERIFY(isClose(loss.seconds, 150.0 / 28 - 150.0 / 30, 0.01));
    QVERIFY(isClose(loss.speeds[0], 30, 0.1));
    QVERIFY(isClose(loss.speeds[1], 28, 0.1));
}

void tst_LapComparison::flutterMakesNoStretch()
{
    // 2 m at 29 instead of 30 m/s lose 2 ms.
    const auto speed = [](double distance) { return std::fmod(distance, 4) < 2 ? 31.0 : 29.0; };
    const LapComparison comparison(curveOf(even(30)), curveOf(speed), Step);
    QCOMPARE(comparison.stretches.size(), std::size_t(1));
}

void tst_LapComparison::turnOfHalfAHundredthMakesAStretch()
{
    const auto speed = [](double distance) { return std::fmod(distance, 200) < 100 ? 31.0 : 29.0; };
    const LapComparison comparison(curveOf(even(30)), curveOf(speed), Step);
    QCOMPARE(comparison.stretches.size(), std::size_t(6));
    double sum = 0;
    for (const LapComparison::Stretch &stretch : comparison.stretches)
        sum += stretch.seconds;
    QVERIFY(isClose(sum, comparison.points.back().difference(), 1e-9));
}

void tst_LapComparison::cornerEndsAStretch_data()
{
    QTest::addColumn<double>("slower"); // m/s, in the corner
    QTest::addColumn<int>("stretches");

    QTest::newRow("a corner") << 4.0 << 2;
    QTest::newRow("a bump") << 2.0 << 1;
}

void tst_LapComparison::cornerEndsAStretch()
{
    QFETCH(double, slower);
    QFETCH(int, stretches);

    // Fastest at 200 m, slowest at 300 m.
    const auto speed = [slower](double distance) {
        const double behindFastest = distance - 200;
        if (behindFastest < 0)
            return 30 + behindFastest / 100;
        return behindFastest < 100 ? 30 - behindFastest / 100 * slower : 30 - slower;
    };
    const auto laterLap = [speed](double distance) { return speed(distance) * 0.9; };
    const LapComparison comparison(curveOf(speed), curveOf(laterLap), Step);
    QCOMPARE(int(comparison.stretches.size()), stretches);
    for (const LapComparison::Stretch &stretch : comparison.stretches) {
        QVERIFY(stretch.begin == 0 || isClose(stretch.begin, 200, 1));
        QVERIFY(stretch.end == Length || isClose(stretch.end, 200, 1));
        QVERIFY(stretch.seconds > 0);
    }
}

NAPAMMUL_TEST(tst_LapComparison)
#include "tst_lapcomparison.moc"

#include <cmath>
