#pragma once

#include "tools/demooptions.h"

#include <cstdint>

/// What is decided before anybody drives: the kind of session and the weather.
struct Weekend {
    explicit Weekend(const DemoOptions &options);

    SessionKind session;
    int sessionNum; ///< number of the session that is driven; the weekend may have earlier ones
    int playerCarIdx;
    int raceLaps; ///< of a race that ends by laps; 0 for other sessions
    bool abroad; ///< the circuit is the one on the other side of the globe
    int cars; ///< in the session, including the player's
    std::int64_t startDate; ///< seconds since 1970-01-01 UTC
    double timeOfDay; ///< in the simulated world, seconds since midnight
    double airTemperature; ///< C
    double trackTemperature; ///< C
    double airPressure; ///< Pa
    double airDensity; ///< kg/m^3
    double windSpeed; ///< m/s
    double windDirection; ///< where it comes from, clockwise from north, rad
    double humidity; ///< 0 to 1
    int skies; ///< 0 clear, 1 partly cloudy, 2 mostly cloudy, 3 overcast
};
