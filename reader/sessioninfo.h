#pragma once

#include "model/dynamicdata.h"
#include "model/lapheader.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace ZEP {
class Lap;
}
class TYamlTree;

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

    int carIdx;
    std::optional<Weekend> weekend;
    std::optional<Driver> driver;
    std::optional<int> sessionNumber; ///< the session of `session` and of the value "Session name"
    ZEP::Session session = ZEP::SessionNotSet;
    /// The named values of the lap. Laps without values of their own share them.
    ZEP::DynamicData values;
};

/// Reads the tree of the session info and remembers the latest answers, which are right for as long
/// as the tree and the player's car stay the same: call forget() when one of them changes.
class SessionInfo
{
public:
    void forget();

    /// The type of a session; SessionNotSet for one of another type, or that is missing.
    ZEP::Session type(const TYamlTree &tree, int sessionNumber);
    /// What is said of the laps that car \a carIdx drives in a session.
    const CarSessionInfo &ofCar(const TYamlTree &tree, int carIdx, bool isPlayersCar,
                                int sessionNumber);

private:
    struct KnownType {
        int sessionNumber;
        ZEP::Session type;
    };
    std::optional<KnownType> m_type;
    std::optional<CarSessionInfo> m_car;
};
