#include "tests/support/demofile.h"
#include "tests/support/roomtests.h"
#include "tools/circuit.h"

#include <QTest>

#include <algorithm>
#include <cmath>

namespace {

// Records for which the whole tick before them was driven on the circuit.
QVector<int> drivenTicks(const DemoFile &demo)
{
    const QVector<double> surface = demo.values("PlayerTrackSurface");
    QVector<int> ticks;
    for (int i = 1; i < demo.records; ++i) {
        if (surface[i] == 3 && surface[i - 1] == 3)
            ticks.append(i);
    }
    return ticks;
}

double angleBetween(double a, double b)
{
    return std::fabs(std::remainder(a - b, 2 * Pi));
}

} // namespace

class tst_DemoDrive : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void circuit_closed();
    void distanceFitsSpeed_data();
    void distanceFitsSpeed();
    void placeFitsMotion();
    void accelerationFitsSpeed();
    void ranges_data();
    void ranges();
    void fuelFalls();
    void lapTimes_data();
    void lapTimes();
    void lapTimesVary();
    void stints();
    void sessionStates_data();
    void sessionStates();
    void tyresSeenAtStops();
    void withoutSurfaceTemperatures();
    void placesAtResets();
    void abroad();

private:
    QScopedPointer<DemoFile> m_practice;
};

void tst_DemoDrive::initTestCase()
{
    m_practice.reset(new DemoFile(shortDrive()));
    QVERIFY(m_practice->ok);
}

void tst_DemoDrive::circuit_closed()
{
    const Circuit circuit;
    const double lap = circuit.length();
    for (const double distance : {0.0, 0.1, 123.4}) {
        for (const int laps : {-1, 1, 20}) {
            const CircuitPoint a = circuit.at(distance);
            const CircuitPoint b = circuit.at(distance + laps * lap);
            QVERIFY(std::hypot(a.x - b.x, a.y - b.y) < 1e-6);
            QVERIFY(std::fabs(a.altitude - b.altitude) < 1e-6);
            QVERIFY(angleBetween(a.heading, b.heading) < 1e-6);
        }
    }

    double turned = 0;
    constexpr double Step = 0.5;
    for (double distance = 0; distance < lap; distance += Step) {
        const CircuitPoint a = circuit.at(distance);
        const CircuitPoint b = circuit.at(distance + Step);
        const double driven = std::hypot(b.x - a.x, b.y - a.y);
        QVERIFY2(std::fabs(driven - Step) < 0.005, qPrintable(QString::number(distance)));
        QVERIFY(std::fabs(a.curvature) < 1.0 / 10);
        turned += a.curvature * Step;
    }
    // Once around, clockwise.
    QVERIFY2(std::fabs(turned + 2 * Pi) < 0.02, qPrintable(QString::number(turned)));
    // The pit lane needs a straight.
    for (double distance = -Circuit::PitEntry; distance < Circuit::PitExit; ++distance)
        QVERIFY(std::fabs(circuit.at(distance).curvature) < 1.0 / 250);
}

void tst_DemoDrive::distanceFitsSpeed_data()
{
    QTest::addColumn<int>("rate");
    QTest::newRow("60 Hz") << 60;
    QTest::newRow("10 Hz") << 10;
    QTest::newRow("120 Hz") << 120;
}

void tst_DemoDrive::distanceFitsSpeed()
{
    QFETCH(int, rate);
    DemoOptions options = shortDrive();
    options.rate = rate;
    const DemoFile demo(options);
    const double length = Circuit().length();
    const QVector<double> speed = demo.values("Speed");
    const QVector<double> distance = demo.values("LapDist");
    const QVector<double> fraction = demo.values("LapDistPct");
    const QVector<double> lap = demo.values("Lap");
    const QVector<double> inCar = demo.values("IsOnTrack");

    double driven = 0;
    double integral = 0;
    for (int i = 1; i < demo.records; ++i) {
        if (inCar[i] == 0 || inCar[i - 1] == 0)
            continue;
        const double step = distance[i] - distance[i - 1] + (lap[i] - lap[i - 1]) * length;
        driven += step;
        integral += (speed[i] + speed[i - 1]) / 2 / rate;
        QVERIFY(std::fabs(distance[i] - fraction[i] * length) < 0.01);
        // Slower records show less of what happens between them.
        if (rate >= 60)
            QVERIFY2(std::fabs(step - speed[i] / rate) < 0.001, qPrintable(QString::number(i)));
    }
    QVERIFY(driven > 5 * length);
    QVERIFY2(std::fabs(integral / driven - 1) < 0.01,
             qPrintable(QString::number(integral / driven)));
}

void tst_DemoDrive::placeFitsMotion()
{
    const DemoFile &demo = *m_practice;
    const QVector<double> speed = demo.values("Speed");
    const QVector<double> latitude = demo.values("Lat");
    const QVector<double> longitude = demo.values("Lon");
    const QVector<double> yaw = demo.values("Yaw");
    const QVector<double> north = demo.values("YawNorth");
    const QVector<double> yawRate = demo.values("YawRate");
    const QVector<int> ticks = drivenTicks(demo);
    QVERIFY(ticks.size() > 5000);

    const double dt = 1.0 / demo.header.tickRate;
    for (const int i : ticks) {
        const double toRadians = Pi / 180;
        const double dy = (latitude[i] - latitude[i - 1]) * toRadians * Circuit::EarthRadius;
        const double dx = (longitude[i] - longitude[i - 1]) * toRadians * Circuit::EarthRadius
            * std::cos(latitude[i] * toRadians);
        const QByteArray place = QByteArray::number(i);
        QVERIFY2(std::fabs(std::hypot(dx, dy) - speed[i] * dt) < 0.005, place.constData());
        if (speed[i] > 5)
            QVERIFY2(angleBetween(std::atan2(dx, dy), north[i]) < 0.03, place.constData());
        QVERIFY2(angleBetween(north[i], Circuit::NorthOffset - yaw[i]) < 1e-5, place.constData());
        QVERIFY2(angleBetween(yaw[i] - yaw[i - 1], yawRate[i] * dt) < 1e-4, place.constData());
        QVERIFY2(std::fabs(yaw[i]) <= Pi + 1e-6 && north[i] >= 0 && north[i] < 2 * Pi + 1e-6,
                 place.constData());
    }
}

void tst_DemoDrive::accelerationFitsSpeed()
{
    const DemoFile &demo = *m_practice;
    const QVector<double> speed = demo.values("Speed");
    const QVector<double> along = demo.values("LongAccel");
    const QVector<double> across = demo.values("LatAccel");
    const QVector<double> yawRate = demo.values("YawRate");
    const QVector<double> throttle = demo.values("Throttle");
    const QVector<double> brake = demo.values("Brake");
    const double dt = 1.0 / demo.header.tickRate;
    for (const int i : drivenTicks(demo)) {
        const QByteArray place = QByteArray::number(i);
        // Gravity has an effect where the circuit is not level.
        QVERIFY2(std::fabs((speed[i] - speed[i - 1]) / dt - along[i]) < 0.4, place.constData());
        QVERIFY2(std::fabs(speed[i] * yawRate[i] - across[i]) < 2.5, place.constData());
        QVERIFY2(std::hypot(along[i], across[i]) < 18, place.constData());
        QVERIFY2(along[i] < 4 || (throttle[i] > 0.1 && brake[i] < 0.3), place.constData());
    }
}

void tst_DemoDrive::ranges_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<double>("least");
    QTest::addColumn<double>("greatest");

    const auto row = [](const char *name, double least, double greatest) {
        QTest::newRow(name) << QByteArray(name) << least << greatest;
    };
    row("Throttle", 0, 1);
    row("Brake", 0, 1);
    row("Clutch", 0, 1);
    row("Gear", 0, 5);
    row("RPM", 0, 7400);
    row("Speed", 0, 45);
    row("SteeringWheelAngle", -4.71, 4.71);
    row("LapDistPct", -1, 1);
    row("WaterTemp", 50, 110);
    row("OilTemp", 50, 130);
    row("LFtempCM", 10, 130);
    row("RRtempL", 10, 150);
    row("RFpressure", 120, 190);
    row("LRwearR", 0.9, 1);
    row("LFshockDefl", 0, 0.1);
    row("RRrideHeight", 0, 0.1);
    row("FuelLevel", 0.5, 40);
    row("Alt", 0, 200);
}

void tst_DemoDrive::ranges()
{
    QFETCH(QByteArray, name);
    QFETCH(double, least);
    QFETCH(double, greatest);
    const QVector<double> values = m_practice->values(name.constData());
    QCOMPARE(values.size(), m_practice->records);
    const auto range = std::minmax_element(values.cbegin(), values.cend());
    QVERIFY2(*range.first >= least, qPrintable(QString::number(*range.first)));
    QVERIFY2(*range.second <= greatest, qPrintable(QString::number(*range.second)));
    QVERIFY(*range.first < *range.second);
}

void tst_DemoDrive::fuelFalls()
{
    const QVector<double> fuel = m_practice->values("FuelLevel");
    const QVector<int> ticks = drivenTicks(*m_practice);
    for (const int i : ticks)
        QVERIFY(fuel[i] <= fuel[i - 1]);
    QVERIFY(fuel[ticks[5000]] < fuel[ticks.first()] - 0.1);
}

void tst_DemoDrive::lapTimes_data()
{
    QTest::addColumn<SessionKind>("session");
    QTest::newRow("testing") << SessionKind::Testing;
    QTest::newRow("race") << SessionKind::Race;
}

// Every lap time is that of the lap that just ended, and appears a moment after the line.
void tst_DemoDrive::lapTimes()
{
    QFETCH(SessionKind, session);
    DemoOptions options = shortDrive(session);
    options.laps = 2;
    const DemoFile demo(options);
    const QVector<double> time = demo.values("SessionTime");
    const QVector<double> lap = demo.values("Lap");
    const QVector<double> completed = demo.values("LapCompleted");
    const QVector<double> fraction = demo.values("LapDistPct");
    const QVector<double> current = demo.values("LapCurrentLapTime");
    const QVector<double> last = demo.values("LapLastLapTime");
    const QVector<double> best = demo.values("LapBestLapTime");
    const QVector<double> inCar = demo.values("IsOnTrack");

    double line = -1;
    double bestSoFar = 0;
    int laps = 0;
    bool left = false; // the car, since the line
    for (int i = 1; i < demo.records; ++i) {
        left = left || inCar[i] == 0;
        QCOMPARE(completed[i], lap[i] - 1);
        if (lap[i] == lap[i - 1]) {
            QVERIFY(fraction[i] < 0 || fraction[i - 1] < 0 || fraction[i] >= fraction[i - 1]);
            continue;
        }
        QCOMPARE(lap[i], lap[i - 1] + 1);
        QVERIFY(fraction[i - 1] > 0.99 && fraction[i] < 0.01);
        const double step = fraction[i] + 1 - fraction[i - 1];
        const double crossed = time[i - 1] + (time[i] - time[i - 1]) * (1 - fraction[i - 1]) / step;

        const int shown = i + 31;
        QVERIFY(shown < demo.records);
        QVERIFY(last[i + 2] == last[i - 1]);
        if (line >= 0 && !left) {
            const double lapTime = crossed - line;
            QVERIFY2(std::fabs(last[shown] - lapTime) < 0.001,
                     qPrintable(QString::number(lapTime)));
            bestSoFar = bestSoFar > 0 ? std::min(bestSoFar, last[shown]) : last[shown];
            ++laps;
        } else {
            QCOMPARE(last[shown], line < 0 ? 0.0 : -1.0);
        }
        QCOMPARE(best[shown], bestSoFar);
        QVERIFY(std::fabs(current[shown] - (time[shown] - crossed)) < 0.001);
        line = crossed;
        left = false;
    }
    QCOMPARE(laps, 6);
}

void tst_DemoDrive::lapTimesVary()
{
    DemoOptions options = shortDrive();
    options.laps = 6;
    options.stints = 1;
    const DemoFile demo(options);
    QVector<double> times;
    const QVector<double> last = demo.values("LapLastLapTime");
    for (int i = 1; i < demo.records; ++i) {
        if (last[i] != last[i - 1])
            times.append(last[i]);
    }
    QCOMPARE(times.size(), 7);
    times.removeFirst(); // the out-lap
    const auto range = std::minmax_element(times.cbegin(), times.cend());
    const double spread = *range.second - *range.first;
    QVERIFY2(spread > 0.1 && spread < 1.5, qPrintable(QString::number(spread)));
}

// Garage, stall, pit lane, circuit, pit lane, stall, garage and so on.
void tst_DemoDrive::stints()
{
    const QVector<double> inCar = m_practice->values("IsOnTrack");
    const QVector<double> pitRoad = m_practice->values("OnPitRoad");
    const QVector<double> fraction = m_practice->values("LapDistPct");
    QStringList phases;
    for (int i = 0; i < m_practice->records; ++i) {
        const QString phase = fraction[i] < 0 ? QStringLiteral("away")
            : inCar[i] == 0                   ? QStringLiteral("watching")
            : pitRoad[i] != 0                 ? QStringLiteral("pit road")
                                              : QStringLiteral("circuit");
        if (phases.isEmpty() || phases.last() != phase)
            phases.append(phase);
    }
    QCOMPARE(phases.join(QStringLiteral(", ")),
             QStringLiteral("away, watching, pit road, circuit, pit road, watching, "
                            "away, watching, pit road, circuit, pit road"));
}

void tst_DemoDrive::sessionStates_data()
{
    QTest::addColumn<SessionKind>("session");
    QTest::addColumn<QVector<double>>("states");
    QTest::newRow("testing") << SessionKind::Testing << QVector<double>{4};
    QTest::newRow("practice") << SessionKind::Practice << QVector<double>{4};
    QTest::newRow("qualify") << SessionKind::Qualify << QVector<double>{4};
    QTest::newRow("race") << SessionKind::Race << QVector<double>{1, 2, 3, 4, 5, 6};
}

void tst_DemoDrive::sessionStates()
{
    QFETCH(SessionKind, session);
    QFETCH(QVector<double>, states);
    const DemoFile demo(shortDrive(session));
    const QVector<double> state = demo.values("SessionState");
    const QVector<double> fraction = demo.values("LapDistPct");
    const QVector<double> speed = demo.values("Speed");
    QVector<double> seen;
    for (int i = 0; i < demo.records; ++i) {
        if (seen.isEmpty() || seen.last() != state[i])
            seen.append(state[i]);
        if (state[i] < 4) {
            QVERIFY(fraction[i] < 0 || (fraction[i] > 0.95 && fraction[i] < 1));
            QCOMPARE(speed[i], 0.0);
        }
    }
    QCOMPARE(seen, states);
}

void tst_DemoDrive::tyresSeenAtStops()
{
    DemoOptions options = shortDrive(SessionKind::Race);
    options.tyresAtStops = true;
    const DemoFile demo(options);
    const QVector<double> onPitRoad = demo.values("OnPitRoad");
    const QVector<double> speed = demo.values("Speed");
    const QVector<double> lap = demo.values("Lap");
    for (const char *name : {"LFtempCM", "RRwearL"}) {
        const QVector<double> values = demo.values(name);
        QSet<double> seen{values.first()};
        for (int i = 1; i < demo.records; ++i) {
            if (values[i] == values[i - 1])
                continue;
            seen.insert(values[i]);
            const bool isStop = speed[i] < 0.5 && (onPitRoad[i] == 1 || lap[i] == 0);
            QVERIFY2(isStop, qPrintable(QStringLiteral("%1 at %2").arg(name).arg(i)));
        }
        QVERIFY2(seen.size() > 1, name);
    }
}

void tst_DemoDrive::withoutSurfaceTemperatures()
{
    DemoOptions options = shortDrive();
    options.surfaceTemperatures = false;
    const DemoFile demo(options);
    QCOMPARE(demo.table.size(), m_practice->table.size() - 12);
    QVERIFY(demo.values("LFtempM").isEmpty());
    QCOMPARE(demo.values("LFtempCM"), m_practice->values("LFtempCM"));
}

// One record each time the driver gets into the car, and one when the car is put back into its
// stall.
void tst_DemoDrive::placesAtResets()
{
    DemoOptions options = shortDrive();
    options.resets = true;
    const DemoFile demo(options);
    const QVector<double> latitude = demo.values("Lat");
    const QVector<double> longitude = demo.values("Lon");
    const QVector<double> distance = demo.values("LapDist");
    const QVector<double> inCar = demo.values("IsOnTrack");
    const double length = Circuit().length();
    int gettingIn = 0;
    int resets = 0;
    for (int i = 1; i < demo.records; ++i) {
        if (inCar[i] == 0 || latitude[i] != 0)
            continue;
        QCOMPARE(longitude[i], 0.0);
        QCOMPARE(distance[i], 0.0);
        QVERIFY(latitude[i + 1] != 0);
        ++(inCar[i - 1] == 0 ? gettingIn : resets);
        if (inCar[i - 1] != 0) {
            QVERIFY(distance[i - 1] > 0.5 * length && distance[i - 1] < 0.7 * length);
            QVERIFY(std::fabs(distance[i + 1] - (length - Circuit::PitStall)) < 0.1);
        }
    }
    QCOMPARE(gettingIn, 2);
    QCOMPARE(resets, 1);
}

void tst_DemoDrive::abroad()
{
    DemoOptions options = shortDrive();
    options.abroad = true;
    const DemoFile demo(options);
    QVERIFY(demo.text.contains(" TrackDisplayName: Saltbush Downs\n"));
    QVERIFY(demo.text.contains(" TrackLatitude: -32.704150 m\n"));
    QCOMPARE(demo.values("Speed"), m_practice->values("Speed"));
    const QVector<double> latitude = demo.values("Lat");
    const QVector<double> there = m_practice->values("Lat");
    for (int i = 0; i < demo.records; ++i)
        QVERIFY(latitude[i] == there[i] || std::fabs(there[i] - latitude[i] - 80.02) < 0.01);
}

NAPAMMUL_TEST(tst_DemoDrive)
#include "tst_demodrive.moc"
