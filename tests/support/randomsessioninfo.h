// Random session-info texts.
#pragma once

#include "tools/random.h"

#include <QByteArray>
#include <QVector>

/// Drivers and sessions of a session-info text.
struct RandomSession {
    /// Most of it is what recordings contain, and some of it is what they should not contain.
    RandomSession(Random *random, double wildness);

    bool isRace() const { return types.contains("Race"); }

    QByteArray playerIndex; ///< text of "DriverCarIdx"; not always a car
    QVector<int> drivers; ///< car indexes with an entry
    QVector<QByteArray> types; ///< kind of each session, by session number
};

/// The text, without a terminating zero. The wilder it is, the more of its lines are damaged.
QByteArray randomSessionInfo(Random *random, const RandomSession &session, double wildness);
