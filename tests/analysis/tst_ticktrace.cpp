#include "analysis/ticktrace.h"
#include "tests/support/extremes.h"
#include "tests/support/lapchannels.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <cmath>

using Samples = QVector<double>;

/// The place and the time of a lap at each tick.
class tst_TickTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void length_data();
    void length();
    void distance_data();
    void distance();
    void time_data();
    void time();
    void positions_data();
    void positions();
    void units_data();
    void units();
};

namespace {

QString text(const Samples &samples)
{
    QStringList texts;
    for (const double sample : samples)
        texts.append(QString::number(sample, 'g', 10));
    return texts.join(QLatin1Char(' '));
}

} // namespace

void tst_TickTrace::length_data()
{
    QTest::addColumn<Columns>("columns");
    QTest::addColumn<QVariant>("named");
    QTest::addColumn<QString>("unit");
    QTest::addColumn<double>("metres");

    QTest::newRow("nothing known") << Columns() << QVariant() << QString() << 0.0;
    QTest::newRow("named in kilometres") << Columns() << QVariant(0.84) << "km" << 840.0;
    QTest::newRow("named in metres") << Columns() << QVariant(840.0) << "m" << 840.0;
    QTest::newRow("named in another unit") << Columns() << QVariant(0.52) << "mi" << 0.0;
    QTest::newRow("named zero") << Columns() << QVariant(0.0) << "km" << 0.0;
    QTest::newRow("no number") << Columns() << QVariant("long") << "km" << 0.0;
    QTest::newRow("measured where the fraction is greatest")
        << Columns{{"lapdist", {8, 450, 800, 2}}, {"lapdistpct", {0.02, 0.5, 0.8, 0.01}}}
        << QVariant(0.84) << "km" << 1000.0;
    QTest::newRow("measured in the first half only")
        << Columns{{"lapdist", {8, 400}}, {"lapdistpct", {0.02, 0.5}}} << QVariant(0.84) << "km"
        << 840.0;
    QTest::newRow("samples missing")
        << Columns{{"lapdist", {800, NoSample}}, {"lapdistpct", {0.8, 0.9}}} << QVariant() << ""
        << 1000.0;
}

void tst_TickTrace::length()
{
    QFETCH(Columns, columns);
    QFETCH(QVariant, named);
    QFETCH(QString, unit);
    QFETCH(double, metres);
    ZEP::Lap lap = lapOf(columns);
    if (named.isValid())
        lap.addValue(QStringLiteral("Track length"), named, unit);
    QCOMPARE(trackLength(lap), metres);
}

void tst_TickTrace::distance_data()
{
    QTest::addColumn<Columns>("columns");
    QTest::addColumn<Samples>("distance");

    QTest::newRow("none") << Columns{{"speed", {1, 2}}} << Samples();
    QTest::newRow("all missing") << Columns{{"lapdist", {NoSample, NoSample}}} << Samples();
    QTest::newRow("as recorded") << Columns{{"lapdist", {1, 50, 99}}} << Samples{1, 50, 99};
    QTest::newRow("one missing") << Columns{{"lapdist", {1, NoSample, 99}}} << Samples{1, NaN, 99};
    QTest::newRow("from the fraction") << Columns{{"lapdistpct", {0.01, 0.5}}} << Samples{1, 50};
    QTest::newRow("from the grid behind the line")
        << Columns{{"lapdist", {90, 95, NoSample, 1, 60}}} << Samples{-10, -5, NaN, 1, 60};
    QTest::newRow("a few metres back") << Columns{{"lapdist", {50, 48, 52}}} << Samples{50, 48, 52};
}

void tst_TickTrace::distance()
{
    QFETCH(Columns, columns);
    QFETCH(Samples, distance);
    QCOMPARE(text(tickTrace(lapOf(columns), 100).distance), text(distance));
}

void tst_TickTrace::time_data()
{
    QTest::addColumn<Columns>("columns");
    QTest::addColumn<Samples>("time");
    QTest::addColumn<bool>("isFromLine");

    const Samples ticks{100.5, 101, 101.5};
    QTest::newRow("none") << Columns{{"lapdist", {1, 2, 3}}} << Samples() << true;
    QTest::newRow("no distance") << Columns{{"sessiontime", ticks}} << Samples{0, 0.5, 1} << false;
    QTest::newRow("from the line, between two ticks")
        << Columns{{"sessiontime", ticks}, {"lapdist", {0.5, 5.5, 10.5}}}
        << Samples{0.05, 0.55, 1.05} << true;
    QTest::newRow("at the line") << Columns{{"sessiontime", ticks}, {"lapdist", {0, 5, 10}}}
                                 << Samples{0, 0.5, 1} << true;
    QTest::newRow("from a tick before the line")
        << Columns{{"sessiontime", ticks}, {"lapdist", {99, 4, 9}}} << Samples{-0.1, 0.4, 0.9}
        << true;
    QTest::newRow("from the grid")
        << Columns{{"sessiontime", ticks}, {"lapdist", {95, 99, 3}}} << Samples{0, 0.5, 1} << true;
    QTest::newRow("from the pits") << Columns{{"sessiontime", ticks}, {"lapdist", {20, 25, 30}}}
                                   << Samples{0, 0.5, 1} << false;
    QTest::newRow("standing at the line")
        << Columns{{"sessiontime", ticks}, {"lapdist", {0.5, 0.5, 0.5}}} << Samples{0, 0.5, 1}
        << true;
    QTest::newRow("first ticks missing")
        << Columns{{"sessiontime", {NoSample, 101, 101.5}}, {"lapdist", {0.1, 0.5, 5.5}}}
        << Samples{NaN, 0.05, 0.55} << true;
    QTest::newRow("the lap's own time")
        << Columns{{"lapcurrentlaptime", {0.02, 0.52, 1.02}}, {"lapdist", {0.5, 5.5, 10.5}}}
        << Samples{0.02, 0.52, 1.02} << true;
    QTest::newRow("both, of which the session's is finer")
        << Columns{{"lapcurrentlaptime", {9, 9, 9}}, {"sessiontime", ticks}} << Samples{0, 0.5, 1}
        << false;
}

void tst_TickTrace::time()
{
    QFETCH(Columns, columns);
    QFETCH(Samples, time);
    QFETCH(bool, isFromLine);
    const TickTrace trace = tickTrace(lapOf(columns), 100);
    QCOMPARE(text(trace.time), text(time));
    if (!time.isEmpty())
        QCOMPARE(trace.isFromLine, isFromLine);
}

void tst_TickTrace::positions_data()
{
    QTest::addColumn<Columns>("columns");
    QTest::addColumn<Samples>("latitude");
    QTest::addColumn<Samples>("longitude");
    QTest::addColumn<Samples>("distance");

    QTest::newRow("as recorded") << Columns{{"lat", {50, 51}},
                                            {"lon", {9, -9}},
                                            {"lapdist", {1, 2}}}
                                 << Samples{50, 51} << Samples{9, -9} << Samples{1, 2};
    QTest::newRow("put back into the stall")
        << Columns{{"lat", {50, 51, 0, 50}}, {"lon", {9, 9, 0, 9}}, {"lapdist", {0, 60, 0, 95}}}
        << Samples{50, 51, NaN, 50} << Samples{9, 9, NaN, 9} << Samples{0, 60, NaN, NaN};
    QTest::newRow("gets into the car")
        << Columns{{"lat", {50, 0, 50, 51}}, {"lon", {9, 0, 9, 9}}, {"lapdist", {95, 0, 90, 98}}}
        << Samples{50, NaN, 50, 51} << Samples{9, NaN, 9, 9} << Samples{NaN, NaN, 90, 98};
    QTest::newRow("gets into the car in the first record")
        << Columns{{"lat", {0, 50, 51}}, {"lon", {0, 9, 9}}, {"lapdist", {0, 90, 98}}}
        << Samples{NaN, 50, 51} << Samples{NaN, 9, 9} << Samples{NaN, 90, 98};
    QTest::newRow("no latitude") << Columns{{"lon", {9, 9}}, {"lapdist", {0, 1}}} << Samples()
                                 << Samples() << Samples{0, 1};
    QTest::newRow("at the line exactly")
        << Columns{{"lat", {50, 50}}, {"lon", {9, 9}}, {"lapdist", {0, 1}}} << Samples{50, 50}
        << Samples{9, 9} << Samples{0, 1};
    QTest::newRow("on the equator")
        << Columns{{"lat", {0, 0}}, {"lon", {9, 9}}, {"lapdist", {0, 1}}} << Samples{0, 0}
        << Samples{9, 9} << Samples{0, 1};
    QTest::newRow("not on the globe")
        << Columns{{"lat", {90.5, 50, 50}}, {"lon", {9, -181, 9}}, {"lapdist", {0, 1, 2}}}
        << Samples{NaN, NaN, 50} << Samples{NaN, NaN, 9} << Samples{0, 1, 2};
    QTest::newRow("one of them missing")
        << Columns{{"lat", {0, 0}}, {"lapdist", {0, 1}}} << Samples() << Samples() << Samples{0, 1};
}

void tst_TickTrace::positions()
{
    QFETCH(Columns, columns);
    const TickTrace trace = tickTrace(lapOf(columns), 100);
    QFETCH(Samples, latitude);
    QFETCH(Samples, longitude);
    QFETCH(Samples, distance);
    QCOMPARE(text(trace.latitude), text(latitude));
    QCOMPARE(text(trace.longitude), text(longitude));
    QCOMPARE(text(trace.distance), text(distance));
}

void tst_TickTrace::units_data()
{
    QTest::addColumn<QString>("unit");
    QTest::addColumn<Samples>("distance");
    QTest::addColumn<QString>("unknown");

    QTest::newRow("metres") << "m" << Samples{0.5, 0.99} << QString();
    QTest::newRow("kilometres") << "km" << Samples{500, 990} << QString();
    QTest::newRow("feet") << "ft" << Samples{0.1524, 0.301752} << QString();
    QTest::newRow("fathoms") << "fathom" << Samples() << "lapdist is in fathom";
}

void tst_TickTrace::units()
{
    QFETCH(QString, unit);
    ZEP::Lap lap;
    lap.addChannel(newChannel({0.5, 0.99}, unit), QStringLiteral("lapdist"));
    const TickTrace trace = tickTrace(lap, 0);
    QFETCH(Samples, distance);
    QCOMPARE(text(trace.distance), text(distance));
    QTEST(trace.unknownUnits, "unknown");
}

NAPAMMUL_TEST(tst_TickTrace)
#include "tst_ticktrace.moc"
