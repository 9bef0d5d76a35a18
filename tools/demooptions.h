#pragma once

#include <cstdint>

/// Kind of session that a demo recording comes from.
enum class SessionKind { Testing, Practice, Qualify, Race };

/// What is driven in a demo recording. The same options give the same recording.
struct DemoOptions {
    /// Timed laps that one tank lasts for, in addition to an out-lap and an in-lap.
    static constexpr int MaxLaps = 100;

    SessionKind session = SessionKind::Practice;
    int laps = 2; ///< timed laps of a stint, 1 to MaxLaps
    int stints = 2; ///< from 1
    std::uint32_t seed = 1; ///< of lap times, weather and everything else that is random
    int rate = 60; ///< records per second, 1 to 360
    /// Seconds from the first record to the end, wherever the car is then. Stint follows stint
    /// until then, and 'stints' is not used. 0 for a recording that ends with the last stint.
    double duration = 0;

    // What recordings of the simulator have as well, and ibtgen does not write.

    /// The carcass temperature and the tread of tyres change only while the car stands in the pits.
    bool tyresAtStops = false;
    bool surfaceTemperatures = true; ///< the car has sensors for the surface of its tyres
    /// The driver has the car put back into the stall from the middle of the last lap. The record
    /// of that moment, and of each in which the driver gets into the car, has a latitude, a
    /// longitude and a distance of zero.
    bool resets = false;
    bool abroad = false; ///< another circuit of the same shape, on the other side of the globe
};
