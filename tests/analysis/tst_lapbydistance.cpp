#include "analysis/lapbydistance.h"

#include "tests/support/drivenlap.h"
#include "tests/support/roomtests.h"

#include <QTest>

class tst_LapByDistance : public QObject
{
    Q_OBJECT

private slots:
    void timeAndSpeedByDistance();
    void goesOnToTheLineAtAnEvenSpeed_data();
    void goesOnToTheLineAtAnEvenSpeed();
    void passesOver_data();
    void passesOver();
    void problem_data();
    void problem();
    void units_data();
    void units();
};

namespace {

/// 30 m/s, which is half a metre per tick.
double evenSpeed(double)
{
    return 30;
}

Columns evenLap()
{
    return drivenLap(Length, 0.5, evenSpeed);
}

void compareWithEvenLap(const LapByDistance &curve)
{
    for (const double distance : {0.0, 0.1, 100.0, 333.3, Length}) {
        QVERIFY2(
            std::abs(curve.time(distance) - distance / 30) < 1e-9,
            qPrintable(QStringLiteral("%1 s at %2 m").arg(curve.time(distance)).arg(distance)));
        QCOMPARE(curve.speed(distance), 30.0);
    }
    QCOMPARE(curve.length(), Length);
}

} // namespace

void tst_LapByDistance::timeAndSpeedByDistance()
{
    QString problem;
    const auto curve = LapByDistance::of(lapOf(evenLap()), &problem);
    QVERIFY2(curve, qPrintable(problem));
    compareWithEvenLap(*curve);
}

void tst_LapByDistance::goesOnToTheLineAtAnEvenSpeed_data()
{
    QTest::addColumn<double>("offset");

    QTest::newRow("first tick just behind the line") << 0.001;
    QTest::newRow("first tick almost a tick behind the line") << 0.999;
}

void tst_LapByDistance::goesOnToTheLineAtAnEvenSpeed()
{
    QFETCH(double, offset);

    QString problem;
    const auto curve = LapByDistance::of(lapOf(drivenLap(Length, offset, evenSpeed)), &problem);
    QVERIFY2(curve, qPrintable(problem));
    compareWithEvenLap(*curve);
}

void tst_LapByDistance::passesOver_data()
{
    QTest::addColumn<QVector<double>>("distances"); // inserted before tick 100, at its time
    QTest::addColumn<double>("speed");

    QTest::newRow("a missing distance") << QVector<double>{NoSample} << 30.0;
    QTest::newRow("a distance that is no number") << QVector<double>{qQNaN()} << 30.0;
    QTest::newRow("a missing speed") << QVector<double>{50} << NoSample;
    QTest::newRow("a speed that is infinite") << QVector<double>{50} << -qInf();
    QTest::newRow("ticks rolled back") << QVector<double>{49, 48, 49.5} << 2.0;
    QTest::newRow("two ticks at one time") << QVector<double>{50.2, 50.1} << 30.0;
}

void tst_LapByDistance::passesOver()
{
    QFETCH(QVector<double>, distances);
    QFETCH(double, speed);

    Columns columns = evenLap();
    for (const double distance : distances) {
        columns["sessiontime"].insert(100, columns["sessiontime"].at(99));
        columns["lapdist"].insert(100, distance);
        columns["lapdistpct"].insert(100, distance / Length);
        columns["speed"].insert(100, speed);
    }
    QString problem;
    const auto curve = LapByDistance::of(lapOf(columns), &problem);
    QVERIFY2(curve, qPrintable(problem));
    compareWithEvenLap(*curve);
}

void tst_LapByDistance::problem_data()
{
    QTest::addColumn<Columns>("columns");
    QTest::addColumn<QString>("problem");

    const auto without = [](const QString &name) {
        Columns columns = evenLap();
        columns.remove(name);
        return columns;
    };
    const auto part = [](int begin, int length) {
        Columns columns = evenLap();
        for (QVector<double> &samples : columns)
            samples = samples.mid(begin, length);
        return columns;
    };
    const auto filled = [](const QString &name, double value) {
        Columns columns = evenLap();
        columns[name].fill(value);
        return columns;
    };
    QTest::newRow("no lapdist, and no track length") << without("lapdist") << "has no distance";
    QTest::newRow("no lapdistpct, and no track length")
        << without("lapdistpct") << "has no distance";
    QTest::newRow("no clock") << without("sessiontime") << "has no time";
    QTest::newRow("no speed") << without("speed") << "has no speed";
    QTest::newRow("no samples") << part(0, 0) << "has no time";
    QTest::newRow("one sample") << part(0, 1) << "has no distance";
    QTest::newRow("missing samples only") << filled("lapdist", NoSample) << "has no distance";
    QTest::newRow("standing clock") << filled("sessiontime", 7) << "has no distance";
    QTest::newRow("begins in the middle")
        << part(200, -1) << "does not go from line to line, but from 100 m to 600 m of 600 m";
    QTest::newRow("ends in the middle")
        << part(0, 800) << "does not go from line to line, but from 0 m to 400 m of 600 m";
    QTest::newRow("fraction stays 0") << filled("lapdistpct", 0) << "has no distance";
}

void tst_LapByDistance::problem()
{
    QFETCH(Columns, columns);
    QFETCH(QString, problem);

    QString actual;
    QVERIFY(!LapByDistance::of(lapOf(columns), &actual));
    QCOMPARE(actual, problem);
}

void tst_LapByDistance::units_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<double>("factor"); // from the unit of the other tests
    QTest::addColumn<QString>("problem");

    const QString none;
    QTest::newRow("km/h") << "speed"
                          << "km/h" << 3.6 << none;
    QTest::newRow("mph") << "speed"
                         << "mph" << 3600 / 1609.344 << none;
    QTest::newRow("kilometres") << "lapdist"
                                << "km" << 0.001 << none;
    QTest::newRow("milliseconds") << "sessiontime"
                                  << "ms" << 1000.0 << none;
    QTest::newRow("furlongs a fortnight")
        << "speed"
        << "fur/fn" << 1.0 << "cannot be compared: speed is in fur/fn, which is not known here";
    QTest::newRow("fathoms") << "lapdist"
                             << "fathom" << 1.0
                             << "cannot be compared: lapdist is in fathom, which is not known here";
}

void tst_LapByDistance::units()
{
    QFETCH(QString, channel);
    QFETCH(QString, unit);
    QFETCH(double, factor);
    QFETCH(QString, problem);

    Columns columns = evenLap();
    QVector<double> converted = columns.take(channel);
    for (double &sample : converted)
        sample *= factor;
    ZEP::Lap lap = lapOf(columns);
    lap.addChannel(newChannel(converted, unit), channel);
    QString actual;
    const auto curve = LapByDistance::of(lap, &actual);
    QCOMPARE(actual, problem);
    QCOMPARE(bool(curve), problem.isEmpty());
    if (!curve)
        return;
    for (const double distance : {0.0, 333.3, Length}) {
        QVERIFY(std::abs(curve->time(distance) - distance / 30) < 1e-6);
        QCOMPARE(curve->speed(distance), 30.0);
    }
}

NAPAMMUL_TEST(tst_LapByDistance)
#include "tst_lapbydistance.moc"
