#pragma once

#include "model/dynamicdata.h"
#include "model/lapheader.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace ZEP {
class Lap;
}

/// What the session info says of a car's laps in one session, read once for all of them.
struct CarSessionInfo {
    struct Weekend {
        QString trackName;
        QString trackConfig;
        QUuid sessionId;
    };
    struct Driver {
        QString driverName;
        QString carName;
    };

    /// Copies everything onto \a lap; what is not known leaves the lap as it is.
    void copyTo(ZEP::Lap *lap) const;

    int car;
    std::optional<Weekend> weekend;
    std::optional<Driver> driver;
    std::optional<int> sessionNumber; ///< the session of `session` and of the value "Session name"
    ZEP::Session session = ZEP::SessionNotSet;
    /// The named values of the lap. Laps without values of their own share them.
    ZEP::DynamicData values;
};
