#include "reader/cartracker.h"

#include <QDebug>

#include <tuple>

namespace {

/// Lap fraction beyond which a car on the grid, or still at the end of its lap, is before the line.
constexpr double BeforeLineOnGrid = 0.65;
/// The same for a car that comes out of the pit lane, which may lie on either side of the line.
constexpr double BeforeLineFromPits = 0.8;
/// A lap that came further than this is near its end,
constexpr double EndOfLap = 0.9;
/// and a tick whose fraction is less by this much is past the line.
constexpr double BackAtStart = 0.5;
/// A running lap time that falls back by more than this has started again, seconds.
constexpr float LapTimeReset = 5.0f;

bool isBeforeStart(qint32 sessionState)
{
    return sessionState >= 1 && sessionState <= 3;
}

constexpr qint32 SessionStateRacing = 4;

} // namespace

bool CarTrackerSample::operator==(const CarTrackerSample &other) const
{
    const auto fields = [](const CarTrackerSample &s) {
        return std::tie(s.lapId, s.stintId, s.text, s.lap, s.lapInStint, s.stintCount, s.spareInt1,
                        s.lapDistPct, s.lapCurrentLapTime, s.lapLastLapTime, s.spareInt2,
                        s.spareInt3, s.sessionState, s.carStatus, s.sessionType, s.lapCompleted,
                        s.spareFlag1, s.completionHold, s.spareFlag2, s.spare64);
    };
    return fields(*this) == fields(other);
}

void CarTracker::updateCarStatus(bool stationary, bool onPitRoad, bool onTrack)
{
    if (stationary) {
        current.carStatus = CarStatusStopped;
        return;
    }
    if (onPitRoad) {
        current.carStatus = CarStatusPitRoad;
        return;
    }
    if (!onTrack)
        return;

    const bool isRace = current.sessionType == ZEP::SessionRace;
    const qint32 before = previous.carStatus;
    const double lapDistPct = double(current.lapDistPct);
    bool isNewStint = false;

    if (isRace && isBeforeStart(current.sessionState)) {
        const bool onLap = before == CarStatusOnLap;
        const bool onGrid = !onLap && lapDistPct > BeforeLineOnGrid;
        current.carStatus = onGrid ? CarStatusBeforeLine : CarStatusOnLap;
        isNewStint = !onGrid && !onLap;
    } else if (isRace && current.sessionState == SessionStateRacing && before == CarStatusOnLap) {
        current.carStatus = lapDistPct > BeforeLineOnGrid ? CarStatusOnLap : CarStatusLapDone;
    } else if (before == CarStatusNotKnown || before == CarStatusBeforeLine) {
        current.carStatus = CarStatusOnLap;
        isNewStint = true;
    } else if (before == CarStatusPitRoad) {
        isNewStint = !(lapDistPct > BeforeLineFromPits);
        current.carStatus = isNewStint ? CarStatusOnLap : CarStatusBeforeLine;
    }

    if (isNewStint) {
        startLap();
        startStint();
    }
    current.lapCompleted = isLapCompleted();
    if (current.lapCompleted && current.carStatus == CarStatusOnLap)
        current.carStatus = CarStatusLapDone;
}

void CarTracker::startLap()
{
    // Copied, not swapped: the next lap has few ticks as a rule, so only one of the two ever needs
    // room for the records of a whole lap.
    lap = nextLap;
    lapReady = false;
    nextLap.clear();

    ++current.lapInStint;
    current.lapId = QUuid::createUuid();
    lap.setLapInSession(current.lap);
    lap.setLapInStint(current.lapInStint);
}

void CarTracker::startStint()
{
    current.stintId = QUuid::createUuid();
    current.lapInStint = 0;
    ++current.stintCount;
}

bool CarTracker::isLapCompleted() const
{
    if (previous.lap < 0 || current.carStatus == CarStatusBeforeLine
        || previous.carStatus == CarStatusBeforeLine || previous.completionHold)
        return false;
    if (isPlayerCar)
        return isOwnLapCompleted();
    if (current.lap == previous.lap)
        return false;
    qDebug() << "lap completed" << driverName;
    return true;
}

/// The player's car has lap times, which are better than its lap counter: the counter may change
/// some ticks away from the line.
bool CarTracker::isOwnLapCompleted() const
{
    if (current.carStatus == CarStatusLapDone && previous.carStatus == CarStatusOnLap)
        return true;

    const float now = current.lapCurrentLapTime;
    const float before = previous.lapCurrentLapTime;
    if (qFuzzyIsNull(now))
        return current.lap >= 0 && current.lap > previous.lap;
    if (diskLoading)
        return double(before) < ZEP::Channel::ValidBelow && before - now > LapTimeReset;
    return now > 0 && before > 0 && before > now;
}

bool CarTracker::hasCrossedLine() const
{
    const std::optional<double> max = lap.maxLapDistPct();
    return max && *max > EndOfLap && *max - double(current.lapDistPct) > BackAtStart;
}

void CarTracker::prepareTick()
{
    previous = current;
    sample.clear();
    if (lapReady)
        startLap();
}

bool CarTracker::isIdle() const
{
    const CarTrackerSample initial;
    return !lapReady && !sample.hasValues() && current == previous
        && current.lapDistPct == initial.lapDistPct && current.sessionState == initial.sessionState;
}
