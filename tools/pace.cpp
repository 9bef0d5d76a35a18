#include "tools/pace.h"

#include "tools/carmodel.h"
#include "tools/circuit.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double TopSpeed = 44; // m/s

// The part of the tyres' grip that is left for braking and accelerating in a corner, 0 to 1.
double gripLeft(double speed, double curvature)
{
    const double used = speed * speed * std::fabs(curvature) / CarModel::Cornering;
    return std::sqrt(std::max(0.0, 1 - used * used));
}

} // namespace

Pace::Pace(const Circuit &circuit) : m_length(circuit.length())
{
    const std::size_t count = std::size_t(m_length);
    m_spacing = m_length / double(count);
    m_speeds.resize(count);
    std::vector<double> curvatures(count);
    for (std::size_t i = 0; i < count; ++i) {
        curvatures[i] = circuit.at(double(i) * m_spacing).curvature;
        const double corner =
            std::sqrt(CarModel::Cornering / std::max(1e-6, std::fabs(curvatures[i])));
        m_speeds[i] = std::min(TopSpeed, corner);
    }

    // Twice around in each direction, so that the end of the lap fits its beginning.
    for (std::size_t i = 2 * count; i > 0; --i) {
        const double next = m_speeds[i % count];
        double &speed = m_speeds[(i - 1) % count];
        const double braking = CarModel::Braking * gripLeft(next, curvatures[i % count]);
        speed = std::min(speed, std::sqrt(next * next + 2 * braking * m_spacing));
    }
    for (std::size_t i = 0; i < 2 * count; ++i) {
        const double speed = m_speeds[i % count];
        double &next = m_speeds[(i + 1) % count];
        const double gain = CarModel::acceleration(speed) * gripLeft(speed, curvatures[i % count]);
        next = std::min(next, std::sqrt(speed * speed + 2 * std::max(0.0, gain) * m_spacing));
    }

    m_lapTime = 0;
    for (const double speed : m_speeds)
        m_lapTime += m_spacing / speed;
}

double Pace::at(double distance) const
{
    const double lap = std::floor(distance / m_length);
    const double index = (distance - lap * m_length) / m_spacing;
    const std::size_t first = std::min(std::size_t(index), m_speeds.size() - 1);
    const std::size_t second = first + 1 < m_speeds.size() ? first + 1 : 0;
    return m_speeds[first] + (m_speeds[second] - m_speeds[first]) * (index - double(first));
}
