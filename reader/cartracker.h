#pragma once

#include "model/lap.h"
#include "model/sample.h"
#include "reader/pendingrecords.h"

#include <QString>
#include <QUuid>

#include <optional>

/// States of a car between two ticks, as CarTrackerSample::carStatus holds them.
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
/// Some fields belong to other sources of telemetry: the reader rolls them on from tick to tick and
/// makes no other use of them.
struct CarTrackerSample {
    QUuid lapId; ///< the lap being recorded
    QUuid stintId; ///< the stint being driven
    QString text; ///< belongs to another source
    qint32 lap = -1; ///< lap counter: "lap" of the player's car, "LapsComplete" of the others
    qint32 lapInStint = -1; ///< from 0 at a stint start
    qint32 stintCount = 0; ///< stints started
    qint32 spareInt1 = -1; ///< belongs to another source
    float lapDistPct = -1.0f; ///< fraction of the lap driven, from "lapdistpct"; -1 when missing
    float lapCurrentLapTime = -1.0f; ///< seconds, from "lapcurrentlaptime"; 1e25 when missing
    float lapLastLapTime = -1.0f; ///< seconds, from "laplastlaptime"; -1 when missing
    qint32 spareInt2 = -1; ///< belongs to another source
    qint32 spareInt3 = -1; ///< belongs to another source
    qint32 sessionState = 0; ///< from "sessionstate": 1 to 3 before the start, 4 racing
    qint32 carStatus = CarStatusNotKnown; ///< a CarStatus
    qint32 sessionType = -1; ///< a ZEP::Session, from the session info; -1 while not known
    bool lapCompleted = false; ///< the lap was found complete at this tick
    bool spareFlag1 = false; ///< belongs to another source
    bool completionHold = false; ///< set in `previous`, it keeps the lap from being completed
    bool spareFlag2 = false; ///< cleared together with completionHold
    qint64 spare64 = 0; ///< belongs to another source

    bool operator==(const CarTrackerSample &other) const;
};

/// One car: its state, the values of the current tick, the lap that it records and the one that
/// collects what it drives past the line before that lap is closed.
class CarTracker
{
public:
    /// Moves the state on by one tick and decides whether the lap is complete. \a stationary counts
    /// before \a onPitRoad, and that before \a onTrack; with none of them nothing changes.
    ///
    /// A car that is stationary or on pit road is not asked for a completed lap, so lapCompleted
    /// keeps its value of the tick before.
    void updateCarStatus(bool stationary, bool onPitRoad, bool onTrack);
    /// Opens a lap from what was collected past the line.
    void startLap();
    /// Opens a stint, without opening a lap.
    void startStint();
    /// True when the lap that was being recorded at the previous tick ended at this one.
    bool isLapCompleted() const;
    /// Never.
    bool isLapAborted() const { return false; }
    /// Makes the current tick the previous one, and opens the next lap behind a finished one.
    void prepareTick();

    /// The greatest fraction of `lap` so far, its calculated value "maxLapDistPct"; none at its
    /// start.
    std::optional<double> maxLapDistPct() const;
    /// True when the current tick lies past the line while `lap` is not closed yet: far behind the
    /// lap's greatest fraction there is only the start of the next one.
    bool hasCrossedLine() const;
    /// Takes the current tick's fraction for the greatest of `lap` if it is. With \a isCollected
    /// the lap itself gets it in flushRecords().
    void keepMaxLapDistPct(bool isCollected);
    /// Brings the collected records of `lap` into it.
    void flushLapRecords(const VariableLayout &layout);
    /// Brings all collected records into `lap` and `nextLap`.
    void flushRecords(const VariableLayout &layout);
    /// True when a tick without values changes nothing about this car.
    bool isIdle() const;
    /// True when nothing of the lap has been recorded.
    bool isLapEmpty() const { return lap.isEmpty() && lapRecords.isEmpty(); }

    CarTrackerSample current;
    CarTrackerSample previous;
    /// The values of the current tick.
    ZEP::Sample sample;
    /// The lap being recorded; once it is finished, until the next tick, the finished lap.
    ZEP::Lap lap;
    /// What is driven past the line before `lap` is closed.
    ZEP::Lap nextLap;
    QString driverName; ///< "UserName" of the session info; a car without one is not followed
    QString teamName; ///< "TeamName" of the session info
    bool isPlayerCar = false;
    bool active = false; ///< the host's selection
    bool diskLoading = false; ///< a recording is read, rather than a running simulator
    bool lapReady = false; ///< a finished lap waits in `lap`

    /// Records of `lap` that are not yet in its channels.
    PendingRecords lapRecords;
    /// Records of `nextLap` that are not yet in its channels.
    PendingRecords nextLapRecords;

    /// The lap's calculated value that holds its greatest fraction while it is recorded.
    static const QString &maxLapDistPctName();

private:
    bool isOwnLapCompleted() const;

    std::optional<float> m_collectedMaxLapDistPct; ///< where it is greater than the lap's own
};
