#pragma once

#include "model/sample.h"
#include "reader/growinglap.h"

#include <QString>
#include <QUuid>

/// States of a car between two ticks, the values of CarTrackerSample::carStatus.
enum CarStatus : qint32 {
    CarStatusNotKnown = -1, ///< before the first decision
    CarStatusBeforeLine = 2, ///< on track, on the way to the line where its first lap begins
    CarStatusStopped = 3, ///< off track (garage), or standing still on pit road
    CarStatusPitRoad = 4, ///< moving on pit road
    CarStatusOnLap = 5, ///< on track, in the first lap of a stint
    CarStatusLapDone = 6, ///< on track, with a lap of the stint completed
};

/// What is known of a car's lap at one tick.
///
/// Hosts know the fields and their order, so all of them stay, also those that recordings do not
/// use: the reader copies them from tick to tick.
struct CarTrackerSample {
    QUuid lapId; ///< the lap being recorded
    QUuid stintId; ///< the stint being driven
    QString text; ///< not used by recordings; kept for the layout of the struct
    qint32 lap = -1; ///< lap counter: "lap" of the player's car, "LapsComplete" of the others
    qint32 lapInStint = -1; ///< from 0 at a stint start
    qint32 stintCount = 0; ///< stints started
    qint32 spareInt1 = -1; ///< not used by recordings; kept for the layout of the struct
    float lapDistPct = -1.0f; ///< fraction of the lap driven, from "lapdistpct"; -1 when missing
    float lapCurrentLapTime = -1.0f; ///< seconds, from "lapcurrentlaptime"; 1e25 when missing
    float lapLastLapTime = -1.0f; ///< seconds, from "laplastlaptime"; -1 when missing
    qint32 spareInt2 = -1; ///< not used by recordings; kept for the layout of the struct
    qint32 spareInt3 = -1; ///< not used by recordings; kept for the layout of the struct
    qint32 sessionState = 0; ///< from "sessionstate": 1 to 3 before the start, 4 racing
    qint32 carStatus = CarStatusNotKnown; ///< a CarStatus
    qint32 sessionType = -1; ///< a ZEP::Session, from the session info; -1 while not known
    bool lapCompleted = false; ///< the lap was found complete at this tick
    bool spareFlag1 = false; ///< not used by recordings; kept for the layout of the struct
    bool completionHold = false; ///< set in `previous`, it keeps the lap from being completed
    bool spareFlag2 = false; ///< cleared together with completionHold
    qint64 spare64 = 0; ///< not used by recordings; kept for the layout of the struct

    bool operator==(const CarTrackerSample &other) const;
};

/// One car: its state, the values of the current tick, the lap being recorded, and the next lap,
/// which collects what is driven past the line before the first one is closed.
class CarTracker
{
public:
    /// Moves the state on by one tick and decides whether the lap is complete. \a stationary comes
    /// before \a onPitRoad, and that before \a onTrack; with none of them nothing changes.
    ///
    /// A lap is not completed by a car that is stationary or on pit road: lapCompleted keeps its
    /// value of the tick before.
    void updateCarStatus(bool stationary, bool onPitRoad, bool onTrack);
    /// Opens a lap from what was collected past the line.
    void startLap();
    /// Opens a stint, without opening a lap.
    void startStint();
    /// True when the lap that was being recorded at the previous tick ended at this one.
    bool isLapCompleted() const;
    /// Always false: a recording cannot tell.
    bool isLapAborted() const { return false; }
    /// Makes the current tick the previous one, and opens the next lap after a finished one.
    void prepareTick();

    /// True when the current tick lies past the line while `lap` is not closed yet: so much less
    /// than the lap's greatest fraction can only be the start of the next lap.
    bool hasCrossedLine() const;
    /// True when a tick without values changes nothing about this car.
    bool isIdle() const;

    CarTrackerSample current;
    CarTrackerSample previous;
    /// The values of the current tick.
    ZEP::Sample sample;
    /// The lap being recorded; once it is finished, until the next tick, the finished lap.
    GrowingLap lap;
    /// What is driven past the line before `lap` is closed.
    GrowingLap nextLap;
    QString driverName; ///< "UserName" of the session info; a car without one is not followed
    QString teamName; ///< "TeamName" of the session info
    bool isPlayerCar = false;
    bool active = false; ///< the host's selection
    bool diskLoading = false; ///< a recording is read, rather than a running simulator
    bool lapReady = false; ///< a finished lap waits in `lap`

private:
    bool isOwnLapCompleted() const;
};
