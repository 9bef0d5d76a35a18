// What the plain importer knows about one car, and the states of the car.
#pragma once

#include "tests/reference/lap.h"

namespace reference {

/// Values of TickState::carStatus; -1 before the first tick.
enum CarStatus {
    RunningToLine = 2, ///< on track before a lap has begun
    Stopped = 3, ///< in the garage, or standing on pit road
    OnPitRoad = 4,
    Recording = 5,
    Completed = 6, ///< has crossed the line
};

/// Values of TickState::sessionType and of Lap::session.
enum Session { NotSet = -1, OfflineTesting = 0, Practice = 1, Qualify = 2, Warmup = 3, Race = 5 };

/// The session kind that the session-info text calls \a text; NotSet for any other text.
int sessionFromText(const QString &text);

/// State of one car at one tick.
struct TickState {
    QUuid lapId;
    QUuid stintId;
    QString text;
    int lap = -1;
    int lapInStint = -1;
    int stintCount = 0;
    float lapDistPct = -1.0f;
    float lapCurrentLapTime = -1.0f;
    float lapLastLapTime = -1.0f;
    int sessionState = 0;
    int carStatus = -1;
    int sessionType = NotSet;
    bool lapCompleted = false;
    bool completionHold = false;
};

struct CarTracker {
    TickState current;
    TickState previous;
    Sample sample;
    Lap lap; ///< being recorded
    Lap nextLap; ///< samples beyond the line, before the lap is closed
    QString driverName;
    QString teamName;
    bool isPlayerCar = false;
    bool active = false;
    bool diskLoading = false;
    bool lapReady = false;

    void prepareTick();
    void updateCarStatus(bool stationary, bool onPitRoad, bool onTrack);
    void startLap();
    void startStint();
    bool isLapCompleted() const;
};

} // namespace reference
