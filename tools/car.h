#pragma once

#include "tools/carmodel.h"

#include <array>

class Circuit;
class Random;

/// One wheel with its tyre and damper. Tyre strips are counted from the left.
struct Wheel {
    std::array<double, 3> surface{}; ///< temperature of the strips, C
    std::array<double, 3> carcass{}; ///< temperature of the carcass below them, C
    std::array<double, 3> tread{1, 1, 1}; ///< tread left on the strips, 0 to 1
    double coldPressure = 0; ///< kPa
    double pressure = 0; ///< kPa
    double speed = 0; ///< m/s
    double brakePressure = 0; ///< bar
    double load = 0; ///< N
    double deflection = 0; ///< damper, m
    double deflectionSpeed = 0; ///< m/s
    double rideHeight = 0; ///< m
};

/// Everything about the car that a recording shows. Accelerations and rates are what the driver
/// feels: forward, to the left and turning left are positive. It has as many members as a recording
/// has quantities of a car.
struct CarState {
    double distance = 0; ///< m along the centre line since first crossing the line; negative before
    double right = 0; ///< m to the right of the centre line
    double speed = 0; ///< m/s; 'distance' grows by speed times time
    double longAccel = 0; ///< m/s^2
    double latAccel = 0; ///< m/s^2
    double vertAccel = CarModel::Gravity; ///< m/s^2
    double slip = 0; ///< rad, direction of travel against the car's axis
    double x = 0; ///< m, see CircuitPoint
    double y = 0; ///< m
    double latitude = 0; ///< degrees
    double longitude = 0; ///< degrees
    double altitude = 0; ///< m
    double yaw = 0; ///< rad, anticlockwise from the main straight's direction, within +-pi
    double pitch = 0; ///< rad
    double roll = 0; ///< rad
    double yawRate = 0; ///< rad/s
    double pitchRate = 0; ///< rad/s
    double rollRate = 0; ///< rad/s

    double throttle = 0; ///< 0 to 1
    double brake = 0; ///< 0 to 1
    double clutch = 0; ///< 0 engine disengaged to 1 engaged
    double steering = 0; ///< steering wheel, rad
    double steeringTorque = 0; ///< N m
    int gear = 0;
    double rpm = 0; ///< revs/min
    bool engine = false; ///< running

    double fuel = 0; ///< l
    double fuelUse = 0; ///< kg/h
    double waterTemperature = 0; ///< C
    double oilTemperature = 0; ///< C
    double oilPressure = 0; ///< bar
    double manifoldPressure = 1; ///< bar
    std::array<Wheel, 4> wheels; ///< left front, right front, left rear, right rear
};

/// The demo car on its circuit, moved in steps of time.
class Car
{
public:
    /// Both must outlive the car. It stands \a distance metres past the line.
    Car(const Circuit &circuit, Random &random, double airTemperature, double distance);

    const CarState &state() const { return m_state; }

    void setEngine(bool running) { m_state.engine = running; }
    /// Fills the tank up to \a litres; never removes fuel.
    void fillUp(double litres);
    /// Fits four new tyres.
    void fitTyres();
    /// Puts the car \a distance metres past the line, where it stands.
    void putAt(double distance);
    /// Moves the car on by \a seconds. It gets as close to \a targetSpeed (m/s) as it can. It is
    /// then \a right metres to the right of the centre line, and that distance changes by \a slant
    /// metres per metre.
    void drive(double targetSpeed, double right, double slant, double seconds);

private:
    void operate(double targetSpeed, double seconds);
    void shift(double seconds);
    void place(double slant, double seconds);
    void warm(double seconds);
    void moveWheels(double seconds);

    const Circuit &m_circuit;
    Random &m_random;
    double m_airTemperature;
    double m_shiftTime = 0; // time left of a gear change, s
    int m_nextGear = 0;
    double m_bumps = 0; // smoothed noise of the road, m/s^2
    CarState m_state;
};
