#pragma once

#include <array>

/// What the demo car can do: a light single-seater with five gears.
namespace CarModel {

constexpr double Gravity = 9.80665; ///< m/s^2
constexpr double Mass = 560; ///< kg, with driver, without fuel
constexpr double Wheelbase = 2.45; ///< m
constexpr double TrackWidth = 1.48; ///< m
constexpr double CentreOfGravity = 0.34; ///< height, m
constexpr double WheelRadius = 0.27; ///< m
constexpr double SteeringRatio = 12.5; ///< steering wheel to road wheel

constexpr double FuelCapacity = 40; ///< l
constexpr double FuelDensity = 0.75; ///< kg/l

constexpr double IdleSpeed = 950; ///< engine, revs/min
constexpr double ShiftUp = 6900; ///< engine, revs/min
constexpr double ShiftDown = 5900; ///< engine in the lower gear, revs/min
constexpr double RedLine = 7400; ///< engine, revs/min
constexpr int Gears = 5;
/// Engine speed in each gear at 1 m/s, (revs/min)/(m/s); entry 0 is neutral.
constexpr std::array<double, Gears + 1> GearSpeeds{0, 420, 302, 236, 193, 164};

constexpr double Braking = 11; ///< the driver's hardest braking on a straight, m/s^2

/// Air drag and rolling resistance at \a speed, m/s^2.
constexpr double drag(double speed)
{
    return 0.15 + 0.00068 * speed * speed;
}

/// Greatest acceleration on a straight at \a speed, with drag subtracted, m/s^2.
constexpr double acceleration(double speed)
{
    constexpr double Power = 88000; // W
    const double engine = speed > 1 ? Power / (Mass * speed) : Power / Mass;
    return (engine < 5.5 ? engine : 5.5) - drag(speed);
}

/// Greatest cornering acceleration, m/s^2.
constexpr double Cornering = 14.8;

} // namespace CarModel
