#pragma once

#include <vector>

constexpr double Pi = 3.14159265358979323846;

/// One point of the centre line, in metres on a plane with its origin at the start/finish line.
struct CircuitPoint {
    double x; ///< m, along the main straight in driving direction
    double y; ///< m, to the left of it
    double altitude; ///< m above sea level
    double heading; ///< rad, anticlockwise from x; continuous, so it may exceed pi
    double curvature; ///< 1/m, positive where the circuit turns left
    double slope; ///< rise per metre
};

/// A place on the globe, degrees.
struct GlobePoint {
    double latitude;
    double longitude;
};

/// The demo circuit: closed, about 850 m, eight corners, driven clockwise, with a pit lane to the
/// right of the main straight. Distances run along the centre line, from the start/finish line.
class Circuit
{
public:
    /// Bearing of the main straight (clockwise from north), rad.
    static constexpr double NorthOffset = 0.8211;
    /// The earth as a sphere: its radius, m.
    static constexpr double EarthRadius = 6371008.8;
    static constexpr double Latitude = 47.318420; ///< of the start/finish line, degrees
    static constexpr double Longitude = -8.274610; ///< of the start/finish line, degrees
    /// The start/finish line of a circuit of the same shape, far from the first one.
    static constexpr GlobePoint Abroad{-32.704150, 149.511830};
    static constexpr double Altitude = 143.0; ///< of the start/finish line, m

    /// Where the pit lane begins, before the line, and ends, after it, m.
    static constexpr double PitEntry = 60.0;
    static constexpr double PitExit = 45.0;
    /// How far the player's pit stall and the first grid slot are before the line, m.
    static constexpr double PitStall = 16.0;
    static constexpr double GridSlot = 10.0;
    /// Speed limit between the two, m/s.
    static constexpr double PitSpeedLimit = 60 / 3.6;

    /// \a line is the place of the start/finish line.
    explicit Circuit(const GlobePoint &line = {Latitude, Longitude});

    const GlobePoint &line() const { return m_line; }

    /// One lap, m.
    double length() const { return m_length; }
    /// The point \a distance metres past the line. Any distance is valid, even a negative one or
    /// one of many laps.
    CircuitPoint at(double distance) const;
    /// The place on the globe \a right metres to the right of \a point.
    GlobePoint globe(const CircuitPoint &point, double right) const;

private:
    GlobePoint m_line;
    std::vector<CircuitPoint> m_points; ///< evenly spaced; one more than a lap
    double m_length = 0;
    double m_spacing = 0;
};
