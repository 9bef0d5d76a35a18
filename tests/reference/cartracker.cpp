#include "tests/reference/cartracker.h"

#include <QDebug>

#include <cmath>

namespace reference {

int sessionFromText(const QString &text)
{
    if (text == QLatin1String("Race"))
        return Race;
    if (text == QLatin1String("Offline testing"))
        return OfflineTesting;
    if (text == QLatin1String("Qualify"))
        return Qualify;
    if (text == QLatin1String("Practice"))
        return Practice;
    if (text == QLatin1String("Warmup"))
        return Warmup;
    return NotSet;
}

void CarTracker::prepareTick()
{
    previous = current;
    sample.values.clear();
    if (lapReady) {
        startLap();
        lapReady = false;
    }
}

void CarTracker::updateCarStatus(bool stationary, bool onPitRoad, bool onTrack)
{
    const int prev = previous.carStatus;
    const double d = double(current.lapDistPct);

    if (stationary) {
        current.carStatus = Stopped;
        return;
    }
    if (onPitRoad) {
        current.carStatus = OnPitRoad;
        return;
    }
    if (!onTrack)
        return;

    bool newStint = false;
    const bool race = current.sessionType == Race;
    if (race && current.sessionState >= 1 && current.sessionState <= 3) {
        if (prev != Recording && d > 0.65) {
            current.carStatus = RunningToLine;
        } else {
            current.carStatus = Recording;
            newStint = prev != Recording;
        }
    } else if (race && current.sessionState == 4 && prev == Recording) {
        current.carStatus = d > 0.65 ? Recording : Completed;
    } else if (prev == -1 || prev == RunningToLine) {
        current.carStatus = Recording;
        newStint = true;
    } else if (prev == OnPitRoad) {
        if (d > 0.8) {
            current.carStatus = RunningToLine;
        } else {
            current.carStatus = Recording;
            newStint = true;
        }
    }

    if (newStint) {
        startLap();
        startStint();
    }

    current.lapCompleted = isLapCompleted();
    if (current.lapCompleted && current.carStatus == Recording)
        current.carStatus = Completed;
}

void CarTracker::startLap()
{
    lap.clear();
    lap = nextLap;
    lapReady = false;
    nextLap.clear();

    current.lapInStint += 1;
    lap.lapInSession = current.lap;
    current.lapId = QUuid::createUuid();
    lap.lapInStint = current.lapInStint;
}

void CarTracker::startStint()
{
    current.stintId = QUuid::createUuid();
    current.lapInStint = 0;
    current.stintCount += 1;
}

bool CarTracker::isLapCompleted() const
{
    if (previous.lap < 0)
        return false;
    if (current.carStatus == RunningToLine || previous.carStatus == RunningToLine)
        return false;
    if (previous.completionHold)
        return false;

    if (isPlayerCar) {
        if (current.carStatus == Completed && previous.carStatus == Recording)
            return true;
        const float t = current.lapCurrentLapTime;
        const float p = previous.lapCurrentLapTime;
        if (std::fabs(t) <= 1.0e-5f)
            return current.lap >= 0 && current.lap > previous.lap;
        if (diskLoading)
            return p < 1.0e24f && p - t > 5.0f;
        return t > 0.0f && p > 0.0f && p > t;
    }

    if (current.lap != previous.lap) {
        qDebug() << "lap completed" << driverName;
        return true;
    }
    return false;
}

} // namespace reference
