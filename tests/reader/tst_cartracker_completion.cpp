// When the lap of a car is complete.

#include "reader/cartracker.h"
#include "tests/support/nextfloat.h"
#include "tests/support/roomtests.h"

#include <QTest>

#include <limits>

namespace {

constexpr float FloatNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float NoTime = 1.0e25f;

struct DebugLine {
    QtMsgType type;
    QString category;
    QString text;
};

QVector<DebugLine> debugLines;

/// Notes what is written to the debug log for as long as it lives.
class DebugLog
{
public:
    DebugLog()
    {
        debugLines.clear();
        m_before = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
                debugLines.append({type, QString::fromLatin1(context.category), text});
            });
    }
    ~DebugLog() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY(DebugLog)

private:
    QtMessageHandler m_before;
};

} // namespace

class tst_CarTrackerCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void playersLapIsCompleted_data();
    void playersLapIsCompleted();
    void othersLapIsCompleted_data();
    void othersLapIsCompleted();
    void othersCompletedLapIsLogged();
};

void tst_CarTrackerCompletion::playersLapIsCompleted_data()
{
    QTest::addColumn<bool>("diskLoading");
    QTest::addColumn<int>("lapBefore");
    QTest::addColumn<int>("lap");
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<int>("status");
    QTest::addColumn<float>("timeBefore");
    QTest::addColumn<float>("time");
    QTest::addColumn<bool>("completed");

    const auto row = [](const char *name, bool disk, int lapBefore, int lap, int statusBefore,
                        int status, float timeBefore, float time, bool completed) {
        QTest::addRow("%s", name) << disk << lapBefore << lap << statusBefore << status
                                  << timeBefore << time << completed;
    };
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const float nearZero = 1.0e-5f;

    for (const bool disk : {true, false}) {
        const auto both = [&](const char *name, int lapBefore, int lap, int statusBefore,
                              int status, float timeBefore, float time, bool completed) {
            row(QByteArray(QByteArray(disk ? "recording: " : "live: ") + name).constData(), disk,
                lapBefore, lap, statusBefore, status, timeBefore, time, completed);
        };
        both("no lap before", -1, 4, 6, 6, 90.0f, 0.0f, false);
        both("no lap before, state 6 behind 5", -1, 4, 5, 6, 90.0f, 0.0f, false);
        both("least lap before", std::numeric_limits<int>::min(), 4, 6, 6, 90.0f, 0.0f, false);
        both("on the grid", 3, 4, 6, 2, 90.0f, 0.0f, false);
        both("on the grid, time fell back", 3, 4, 6, 2, 90.0f, 1.0f, false);
        both("on the grid before", 3, 4, 2, 5, 90.0f, 0.0f, false);
        both("on the grid before, time fell back", 3, 4, 2, 5, 90.0f, 1.0f, false);

        both("state 6 behind 5", 3, 3, 5, 6, 90.0f, 90.1f, true);
        both("state 6 behind 6", 3, 3, 6, 6, 90.0f, 90.1f, false);
        both("state 5 behind 5", 3, 3, 5, 5, 90.0f, 90.1f, false);

        both("time zero, next lap", 3, 4, 6, 6, 90.0f, 0.0f, true);
        both("time minus zero, next lap", 3, 4, 6, 6, 90.0f, -0.0f, true);
        both("time zero, next lap, no time before", 3, 4, 6, 6, NoTime, 0.0f, true);
        both("time zero, several laps on", 3, 7, 5, 5, 90.0f, 0.0f, true);
        both("time zero, same lap", 3, 3, 6, 6, 90.0f, 0.0f, false);
        both("time zero, lap before", 3, 2, 6, 6, 90.0f, 0.0f, false);
        both("time zero, lap 0 behind lap 0", 0, 0, 6, 6, 90.0f, 0.0f, false);
        both("time zero, lap 1 behind lap 0", 0, 1, 6, 6, 90.0f, 0.0f, true);
        both("time zero, no lap any more", 3, -1, 6, 6, 90.0f, 0.0f, false);
        both("time nearly zero, same lap", 3, 3, 6, 6, 90.0f, nearZero, false);
        both("time nearly zero, next lap", 3, 4, 6, 6, 90.0f, nearZero, true);
        both("time just above nearly zero, same lap", 3, 3, 6, 6, 90.0f, above(nearZero), true);
        both("time minus nearly zero, same lap", 3, 3, 6, 6, 90.0f, -nearZero, false);
        both("time minus nearly zero, next lap", 3, 4, 6, 6, 90.0f, -nearZero, true);

        both("time fell back by minutes", 3, 3, 6, 6, 90.0f, 0.1f, true);
        both("time fell back by minutes in the first lap of a stint", 3, 3, 5, 5, 90.0f, 0.1f,
             true);
        both("time fell back, although the lap does not count", 3, 2, 6, 6, 90.0f, 0.1f, true);
        both("time fell back on lap 0", 0, 0, 6, 6, 90.0f, 0.1f, true);
        both("time goes on, although the lap counts", 3, 4, 6, 6, 90.0f, 90.1f, false);
        both("time stands", 3, 4, 6, 6, 90.0f, 90.0f, false);
        both("time goes missing", 3, 4, 6, 6, 90.0f, NoTime, false);
        both("time is missing", 3, 4, 6, 6, NoTime, NoTime, false);
        both("time is NaN", 3, 4, 6, 6, 90.0f, FloatNaN, false);
        both("time was NaN", 3, 4, 6, 6, FloatNaN, 1.0f, false);
    }

    row("recording: fell back by 5", true, 3, 4, 6, 6, 15.0f, 10.0f, false);
    row("recording: fell back by more than 5", true, 3, 4, 6, 6, above(15.0f), 10.0f, true);
    row("recording: fell back by less than 5", true, 3, 4, 6, 6, below(15.0f), 10.0f, false);
    row("recording: fell back to below zero", true, 3, 4, 6, 6, 4.5f, -1.0f, true);
    row("recording: went on from below zero", true, 3, 4, 6, 6, -1.0f, 0.1f, false);
    row("recording: was missing", true, 3, 4, 6, 6, NoTime, 0.1f, false);
    row("recording: was 1e24 as a float", true, 3, 4, 6, 6, 1.0e24f, 0.1f, false);
    row("recording: was just below 1e24", true, 3, 4, 6, 6, below(1.0e24f), 0.1f, true);
    row("recording: was infinite", true, 3, 4, 6, 6, infinity, 0.1f, false);

    row("live: fell back by 5", false, 3, 4, 6, 6, 15.0f, 10.0f, true);
    row("live: fell back by the least", false, 3, 4, 6, 6, above(15.0f), 15.0f, true);
    row("live: went on by the least", false, 3, 4, 6, 6, 15.0f, above(15.0f), false);
    row("live: fell back to below zero", false, 3, 4, 6, 6, 4.5f, -1.0f, false);
    row("live: below zero before and now", false, 3, 4, 6, 6, -1.0f, -2.0f, false);
    row("live: zero before", false, 3, 4, 6, 6, 0.0f, -1.0f, false);
    row("live: was missing", false, 3, 4, 6, 6, NoTime, 0.1f, true);
    row("live: was infinite", false, 3, 4, 6, 6, infinity, 0.1f, true);
}

void tst_CarTrackerCompletion::playersLapIsCompleted()
{
    QFETCH(bool, diskLoading);
    QFETCH(int, lapBefore);
    QFETCH(int, lap);
    QFETCH(int, statusBefore);
    QFETCH(int, status);
    QFETCH(float, timeBefore);
    QFETCH(float, time);
    QFETCH(bool, completed);

    CarTracker car;
    car.isPlayerCar = true;
    car.diskLoading = diskLoading;
    car.driverName = "A Driver";
    car.previous.lap = lapBefore;
    car.previous.carStatus = statusBefore;
    car.previous.lapCurrentLapTime = timeBefore;
    car.current.lap = lap;
    car.current.carStatus = status;
    car.current.lapCurrentLapTime = time;

    const DebugLog log;
    QCOMPARE(car.isLapCompleted(), completed);
    car.current.completionHold = true; // that of the tick before counts
    QCOMPARE(car.isLapCompleted(), completed);
    car.previous.completionHold = true;
    QVERIFY(!car.isLapCompleted());
    QVERIFY(debugLines.isEmpty());
}

void tst_CarTrackerCompletion::othersLapIsCompleted_data()
{
    QTest::addColumn<int>("lapBefore");
    QTest::addColumn<int>("lap");
    QTest::addColumn<int>("statusBefore");
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("completed");

    QTest::newRow("next lap") << 3 << 4 << 5 << 5 << true;
    QTest::newRow("same lap") << 3 << 3 << 5 << 5 << false;
    QTest::newRow("same lap, state 6 behind 5") << 3 << 3 << 5 << 6 << false;
    QTest::newRow("lap before") << 3 << 2 << 6 << 6 << true;
    QTest::newRow("several laps on") << 3 << 9 << 6 << 6 << true;
    QTest::newRow("no lap any more") << 3 << -1 << 6 << 6 << true;
    QTest::newRow("first lap behind lap 0") << 0 << 1 << 6 << 6 << true;
    QTest::newRow("no lap before") << -1 << 0 << 6 << 6 << false;
    QTest::newRow("on the grid") << 3 << 4 << 5 << 2 << false;
    QTest::newRow("on the grid before") << 3 << 4 << 2 << 5 << false;
    QTest::newRow("on track from the garage") << 3 << 4 << 3 << 3 << true;
}

void tst_CarTrackerCompletion::othersLapIsCompleted()
{
    QFETCH(int, lapBefore);
    QFETCH(int, lap);
    QFETCH(int, statusBefore);
    QFETCH(int, status);
    QFETCH(bool, completed);

    const DebugLog log;
    for (const bool diskLoading : {false, true}) {
        // Lap times do not count.
        for (const float time : {0.0f, 0.1f, 90.1f}) {
            CarTracker car;
            car.diskLoading = diskLoading;
            car.previous.lap = lapBefore;
            car.previous.carStatus = statusBefore;
            car.previous.lapCurrentLapTime = 90.0f;
            car.current.lap = lap;
            car.current.carStatus = status;
            car.current.lapCurrentLapTime = time;
            QCOMPARE(car.isLapCompleted(), completed);
            car.previous.completionHold = true;
            QVERIFY(!car.isLapCompleted());
        }
    }
    QCOMPARE(debugLines.size(), completed ? 6 : 0);
}

void tst_CarTrackerCompletion::othersCompletedLapIsLogged()
{
    CarTracker car;
    car.driverName = "A Driver";
    car.previous.lap = 3;
    car.previous.carStatus = 5;
    car.current.carStatus = 5;
    car.current.lap = 4;

    const DebugLog log;
    QVERIFY(car.isLapCompleted());
    QCOMPARE(debugLines.size(), 1);
    QCOMPARE(debugLines.first().type, QtDebugMsg);
    QCOMPARE(debugLines.first().category, QString("default"));
    QVERIFY(debugLines.first().text.startsWith("lap completed"));
    QVERIFY(debugLines.first().text.mid(13).contains("A Driver"));
}

NAPAMMUL_TEST(tst_CarTrackerCompletion)

#include "tst_cartracker_completion.moc"
