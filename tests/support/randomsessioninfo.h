// Session-info texts made up at random.
#pragma once

#include "tools/random.h"

#include <QByteArray>
#include <QVector>

/// Drivers and sessions of a session-info text.
struct RandomSession {
    /// Takes most of it from what recordings hold, and some of it from what they should not.
    RandomSession(Random *random, double wildness);

    bool isRace() const { return types.contains("Race"); }

    QByteArray playerIndex; ///< text of "DriverCarIdx"; not always a car
    QVector<int> drivers; ///< car indexes with an entry
    QVector<QByteArray> types; ///< kind of each session, by session number
};

/// The text, without terminating zero. The wilder it is, the more of its lines are damaged.
QByteArray randomSessionInfo(Random *random, const RandomSession &session, double wildness);
