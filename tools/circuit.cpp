#include "tools/circuit.h"

#include <cmath>
#include <cstddef>

namespace {

struct Place {
    double x;
    double y;
};

// Control points of a closed cubic B-spline. It runs straight through the first ones, along x.
constexpr Place ControlPoints[] = {{0, 0},     {38, 0},    {76, 0},     {112, -2},   {135, -17},
                                   {134, -43}, {111, -55}, {82, -50},   {55, -53},   {40, -74},
                                   {55, -99},  {90, -105}, {114, -122}, {109, -150}, {79, -161},
                                   {44, -155}, {12, -131}, {-17, -114}, {-47, -126}, {-78, -120},
                                   {-90, -93}, {-79, -68}, {-93, -47},  {-128, -44}, {-144, -24},
                                   {-131, -5}, {-106, 0},  {-76, 0},    {-38, 0}};
constexpr int ControlCount = sizeof ControlPoints / sizeof ControlPoints[0];
constexpr int StepsPerControl = 400;
constexpr double Drop = 1.4; // half the height between the highest and the lowest point, m

// The spline at \a t, counted in control points; its start is the first one.
Place spline(double t)
{
    const int first = int(t);
    const double u = t - first;
    const double weights[] = {(1 - u) * (1 - u) * (1 - u) / 6, (3 * u * u * u - 6 * u * u + 4) / 6,
                              (-3 * u * u * u + 3 * u * u + 3 * u + 1) / 6, u * u * u / 6};
    Place place{0, 0};
    for (int i = 0; i < 4; ++i) {
        const Place &control = ControlPoints[(first + i - 1 + ControlCount) % ControlCount];
        place.x += weights[i] * control.x;
        place.y += weights[i] * control.y;
    }
    return place;
}

double between(double a, double b, double part)
{
    return a + (b - a) * part;
}

} // namespace

Circuit::Circuit(const GlobePoint &line) : m_line(line)
{
    constexpr int Steps = ControlCount * StepsPerControl;
    std::vector<Place> places(Steps + 1);
    std::vector<double> distances(Steps + 1, 0.0);
    for (std::size_t i = 0; i <= Steps; ++i) {
        places[i] = spline(double(i) / StepsPerControl);
        if (i > 0)
            distances[i] = distances[i - 1]
                + std::hypot(places[i].x - places[i - 1].x, places[i].y - places[i - 1].y);
    }
    m_length = distances.back();

    constexpr double WantedSpacing = 0.25;
    const auto count = std::size_t(m_length / WantedSpacing);
    m_spacing = m_length / double(count);
    m_points.resize(count + 1);
    std::size_t step = 0;
    for (std::size_t i = 0; i <= count; ++i) {
        const double distance = double(i) * m_spacing;
        while (step + 2 < distances.size() && distances[step + 1] < distance)
            ++step;
        const double part = (distance - distances[step]) / (distances[step + 1] - distances[step]);
        CircuitPoint &point = m_points[i];
        point = CircuitPoint{};
        point.x = between(places[step].x, places[step + 1].x, part);
        point.y = between(places[step].y, places[step + 1].y, part);
        const double turn = 2 * Pi * double(i) / double(count);
        point.altitude = Altitude - Drop * (1 - std::cos(turn));
        point.slope = -Drop * std::sin(turn) * 2 * Pi / m_length;
    }

    // Across several points, because neighbours are too close for an exact direction.
    constexpr std::size_t Reach = 4;
    double heading = 0;
    for (std::size_t i = 0; i <= count; ++i) {
        const CircuitPoint &before = m_points[(i + count - Reach) % count];
        const CircuitPoint &behind = m_points[(i + Reach) % count];
        const double direction = std::atan2(behind.y - before.y, behind.x - before.x);
        heading += std::remainder(direction - heading, 2 * Pi);
        m_points[i].heading = heading;
    }
    for (std::size_t i = 0; i <= count; ++i) {
        const double turn =
            m_points[(i + Reach) % count].heading - m_points[(i + count - Reach) % count].heading;
        m_points[i].curvature = std::remainder(turn, 2 * Pi) / (2 * Reach * m_spacing);
    }
}

CircuitPoint Circuit::at(double distance) const
{
    const double lap = std::floor(distance / m_length);
    const double index = (distance - lap * m_length) / m_spacing;
    const std::size_t last = m_points.size() - 2;
    const std::size_t first = index < double(last) ? std::size_t(index) : last;
    const double part = index - double(first);
    const CircuitPoint &a = m_points[first];
    const CircuitPoint &b = m_points[first + 1];
    return {between(a.x, b.x, part),
            between(a.y, b.y, part),
            between(a.altitude, b.altitude, part),
            between(a.heading, b.heading, part),
            between(a.curvature, b.curvature, part),
            between(a.slope, b.slope, part)};
}

GlobePoint Circuit::globe(const CircuitPoint &point, double right) const
{
    const double x = point.x + right * std::sin(point.heading);
    const double y = point.y - right * std::cos(point.heading);
    const double east = x * std::sin(NorthOffset) - y * std::cos(NorthOffset);
    const double north = x * std::cos(NorthOffset) + y * std::sin(NorthOffset);
    constexpr double DegreesPerMetre = 180 / (Pi * EarthRadius);
    return {m_line.latitude + north * DegreesPerMetre,
            m_line.longitude + east * DegreesPerMetre / std::cos(m_line.latitude * Pi / 180)};
}
