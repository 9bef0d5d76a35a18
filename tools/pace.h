#pragma once

#include <vector>

class Circuit;

/// The speed of a perfect lap by the car of CarModel: as fast as corners, brakes and engine allow
/// at every point of a circuit.
class Pace
{
public:
    explicit Pace(const Circuit &circuit);

    /// Speed \a distance metres past the line, m/s; any distance is valid.
    double at(double distance) const;
    /// Time of the whole lap, s.
    double lapTime() const { return m_lapTime; }

private:
    double m_length;
    double m_spacing;
    double m_lapTime;
    std::vector<double> m_speeds;
};
