#include "tools/car.h"

#include "tools/circuit.h"
#include "tools/random.h"

#include <algorithm>
#include <cmath>

using namespace CarModel;

namespace {

constexpr double ShiftTime = 0.05; // s
constexpr double FrontPressure = 124; // kPa, cold
constexpr double RearPressure = 129; // kPa, cold
constexpr double Kelvin = 273.15;

// Moves value towards target with a lag of 'time' seconds.
double follow(double value, double target, double seconds, double time)
{
    constexpr double Near = 1e-9;
    if (std::fabs(target - value) < Near)
        return target;
    return value + (target - value) * std::min(1.0, seconds / time);
}

} // namespace

Car::Car(const Circuit &circuit, Random &random, double airTemperature, double distance)
    : m_circuit(circuit), m_random(random), m_airTemperature(airTemperature)
{
    m_state.distance = distance;
    m_state.waterTemperature = 72;
    m_state.oilTemperature = 68;
    fitTyres();
    place(0, 1);
    m_state.yawRate = m_state.pitchRate = m_state.rollRate = 0;
    moveWheels(1);
    for (Wheel &wheel : m_state.wheels)
        wheel.deflectionSpeed = 0;
}

void Car::fillUp(double litres)
{
    m_state.fuel = std::max(m_state.fuel, std::min(litres, FuelCapacity));
}

void Car::fitTyres()
{
    for (std::size_t i = 0; i < m_state.wheels.size(); ++i) {
        Wheel &wheel = m_state.wheels[i];
        wheel.surface.fill(m_airTemperature + 8);
        wheel.carcass.fill(m_airTemperature + 8);
        wheel.tread.fill(1);
        wheel.coldPressure = i < 2 ? FrontPressure : RearPressure;
        wheel.pressure = wheel.coldPressure;
    }
}

void Car::putAt(double distance)
{
    m_state.distance = distance;
    m_state.speed = 0;
}

void Car::drive(double targetSpeed, double right, double slant, double seconds)
{
    operate(targetSpeed, seconds);
    m_state.distance += m_state.speed * seconds;
    m_state.right = right;
    shift(seconds);
    place(slant, seconds);
    moveWheels(seconds);
    warm(seconds);
}

// Speed and pedals.
void Car::operate(double targetSpeed, double seconds)
{
    CarState &s = m_state;
    const double available = s.engine ? acceleration(s.speed) : -drag(s.speed);
    const double wanted = (targetSpeed - s.speed) / seconds;
    const double before = s.speed;
    s.speed = std::max(0.0, s.speed + std::clamp(wanted, -Braking, available) * seconds);
    s.longAccel = (s.speed - before) / seconds;

    const bool standing = s.speed < 0.01;
    const double force = s.longAccel + drag(s.speed);
    const double throttle = standing || force < 0 ? 0 : force / (available + drag(s.speed));
    const double brake = standing ? 0.6 : std::max(0.0, -force / Braking - 0.03);
    s.throttle = follow(s.throttle, std::clamp(throttle, 0.0, 1.0), seconds, 0.05);
    s.brake = follow(s.brake, std::clamp(brake, 0.0, 1.0), seconds, 0.04);
    if (!s.engine)
        s.throttle = 0;
}

// Gear, clutch and engine.
void Car::shift(double seconds)
{
    CarState &s = m_state;
    const auto engineSpeed = [&](int gear) { return GearSpeeds[std::size_t(gear)] * s.speed; };
    if (m_shiftTime > 0) {
        m_shiftTime -= seconds;
        if (m_shiftTime <= 0)
            s.gear = m_nextGear;
    } else {
        m_nextGear = s.gear;
        if (s.speed < 0.3)
            m_nextGear = s.throttle > 0 ? 1 : 0;
        else if (s.gear == 0)
            m_nextGear = 1;
        else if (s.gear < Gears && engineSpeed(s.gear) > ShiftUp)
            m_nextGear = s.gear + 1;
        else if (s.gear > 1 && engineSpeed(s.gear - 1) < ShiftDown)
            m_nextGear = s.gear - 1;
        if (m_nextGear != s.gear) {
            s.gear = 0;
            m_shiftTime = ShiftTime;
        }
    }

    double rpm = 0;
    if (s.engine) {
        const double launch = s.gear == 1 && s.throttle > 0.3 ? 4200 : IdleSpeed;
        const int gear = s.gear > 0 ? s.gear : m_nextGear;
        rpm = std::max(launch, engineSpeed(gear)) + 8 * m_random.noise();
    }
    s.rpm = follow(s.rpm, rpm, seconds, 0.04);
    s.clutch = s.gear == 0 ? 0 : follow(s.clutch, s.speed > 4 ? 1 : s.speed / 4, seconds, 0.1);
    s.manifoldPressure =
        follow(s.manifoldPressure, s.engine ? 0.3 + 0.7 * s.throttle : 1.0, seconds, 0.08);
    s.oilPressure =
        follow(s.oilPressure, s.engine ? 1.2 + 3.4 * s.rpm / RedLine : 0.0, seconds, 0.3);
    s.fuelUse = s.engine ? (0.8 + 27 * s.throttle) * s.rpm / RedLine : 0;
    s.fuel = std::max(0.2, s.fuel - s.fuelUse / FuelDensity / 3600 * seconds);
}

// Where the car is and which way it points.
void Car::place(double slant, double seconds)
{
    CarState &s = m_state;
    const CircuitPoint point = m_circuit.at(s.distance);
    const GlobePoint globe = m_circuit.globe(point, s.right);
    s.x = point.x;
    s.y = point.y;
    s.latitude = globe.latitude;
    s.longitude = globe.longitude;
    s.altitude = point.altitude;

    const double yaw = std::remainder(point.heading - std::atan(slant), 2 * Pi);
    s.yawRate = std::remainder(yaw - s.yaw, 2 * Pi) / seconds;
    s.yaw = yaw;
    const double moving = std::min(1.0, s.speed / 5);
    m_bumps = follow(m_bumps, 2.2 * m_random.noise(), seconds, 0.02);
    s.latAccel = s.speed * s.yawRate + 0.3 * moving * m_bumps;
    s.vertAccel = Gravity + moving * m_bumps;
    s.slip = -0.0025 * s.latAccel;

    const double pitch = std::atan(point.slope) - 0.0016 * s.longAccel;
    const double roll = 0.0022 * s.latAccel;
    s.pitchRate = (pitch - s.pitch) / seconds;
    s.rollRate = (roll - s.roll) / seconds;
    s.pitch = pitch;
    s.roll = roll;

    const double roadWheel =
        Wheelbase * (s.speed > 1 ? s.yawRate / s.speed : point.curvature) + 0.0022 * s.latAccel;
    s.steering = follow(s.steering, SteeringRatio * roadWheel, seconds, 0.06);
    s.steeringTorque = -0.9 * s.latAccel - 0.2 * moving * m_bumps;
}

void Car::moveWheels(double seconds)
{
    CarState &s = m_state;
    const double weight = (Mass + s.fuel * FuelDensity) * s.vertAccel;
    const double along = Mass * s.longAccel * CentreOfGravity / Wheelbase / 2;
    const double across = Mass * s.latAccel * CentreOfGravity / TrackWidth / 2;
    for (std::size_t i = 0; i < s.wheels.size(); ++i) {
        Wheel &wheel = s.wheels[i];
        const bool front = i < 2;
        const double leftness = i % 2 == 0 ? 1 : -1;
        wheel.load = std::max(
            0.0, weight * (front ? 0.215 : 0.285) + (front ? -along : along) - leftness * across);
        wheel.speed = std::max(0.0, s.speed - leftness * s.yawRate * TrackWidth / 2);
        wheel.brakePressure = s.brake * (front ? 46 : 29);
        const double deflection = wheel.load / (front ? 42000 : 52000);
        wheel.deflectionSpeed = (deflection - wheel.deflection) / seconds;
        wheel.deflection = deflection;
        wheel.rideHeight = (front ? 0.062 : 0.079) - 0.9 * deflection;
    }
}

void Car::warm(double seconds)
{
    CarState &s = m_state;
    const double effort = s.engine ? 0.2 + s.throttle * s.rpm / RedLine : 0;
    const double cooling = 0.25 + s.speed / 40;
    const double water = s.engine ? 74 + 14 * effort / cooling : m_airTemperature;
    s.waterTemperature = follow(s.waterTemperature, std::min(water, 108.0), seconds, 90);
    const double oil = s.engine ? 78 + 24 * effort : m_airTemperature;
    s.oilTemperature = follow(s.oilTemperature, oil, seconds, 140);

    for (std::size_t i = 0; i < s.wheels.size(); ++i) {
        Wheel &wheel = s.wheels[i];
        const double push = (i < 2 ? 0.3 : 0.5) * std::fabs(s.longAccel) + std::fabs(s.latAccel);
        const double work = wheel.load * push * s.speed * 1e-6; // friction, without a real unit
        // Cambered wheels lean on their inner edge, so that edge is the warmest.
        const double lean = i % 2 == 0 ? 0.06 : -0.06;
        for (std::size_t strip = 0; strip < 3; ++strip) {
            const double share = 1 + lean * (double(strip) - 1);
            const double hot = m_airTemperature + 14 + 160 * work * share;
            wheel.surface[strip] =
                follow(wheel.surface[strip], hot, seconds, s.speed > 1 ? 4.0 : 60.0);
            wheel.carcass[strip] = follow(wheel.carcass[strip], wheel.surface[strip], seconds, 70);
            wheel.tread[strip] = std::max(0.3, wheel.tread[strip] - 4e-5 * work * share * seconds);
        }
        const double heat = (wheel.carcass[1] + Kelvin) / (m_airTemperature + 8 + Kelvin);
        // Pressures are gauge pressures, but the gas law needs absolute ones.
        wheel.pressure = (wheel.coldPressure + 101.3) * heat - 101.3;
    }
}
