#pragma once

#include <cstdint>

/// Random numbers that are the same on every platform for the same seed.
class Random
{
public:
    explicit Random(std::uint32_t seed) : m_state(seed) { }

    /// Evenly distributed over [0, 1).
    double uniform() { return double(next() >> 11) * 0x1p-53; }
    /// Evenly distributed over [\a low, \a high).
    double uniform(double low, double high) { return low + (high - low) * uniform(); }
    /// Bell-shaped around 0, standard deviation 1, never beyond 4.
    double noise() { return (uniform() + uniform() + uniform() + uniform() - 2.0) * 1.7320508; }

private:
    // SplitMix64.
    std::uint64_t next()
    {
        std::uint64_t z = (m_state += 0x9e3779b97f4a7c15u);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
        return z ^ (z >> 31);
    }

    std::uint64_t m_state;
};
