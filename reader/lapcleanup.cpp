// Channels that are of no use within a lap.

#include "reader/irtelemetryreader.h"

void iRTelemetryReader::cleanupLap(int carIdx)
{
    // The spelling is part of what hosts rely on: recorded names are lower-case, so of these only
    // "sessionnum" leaves a recorded lap; the others leave laps from sources that keep capitals.
    static const QString names[] = {
        QStringLiteral("IsOnTrack"),
        QStringLiteral("IsOnTrackCar"),
        QStringLiteral("PlayerCarClassPosition"),
        QStringLiteral("PlayerCarDriverIncidentCount"),
        QStringLiteral("PlayerCarIdx"),
        QStringLiteral("PlayerCarMyIncidentCount"),
        QStringLiteral("PlayerCarPosition"),
        QStringLiteral("PlayerCarTeamIncidentCount"),
        QStringLiteral("PlayerCarWeightPenalty"),
        QStringLiteral("sessionnum"),
        QStringLiteral("SessionUniqueID"),
        QStringLiteral("TireLF_RumblePitch"),
        QStringLiteral("TireLR_RumblePitch"),
        QStringLiteral("TireRF_RumblePitch"),
        QStringLiteral("TireRR_RumblePitch"),
    };
    ZEP::Lap &closed = lap(carIdx);
    for (const QString &name : names)
        closed.removeChannel(name);
}
