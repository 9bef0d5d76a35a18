// A random drive, tick by tick.
#pragma once

#include "tools/random.h"

#include <array>

/// What a variable of a recording is about.
enum class Quantity {
    SessionTime,
    SessionTimeRemain,
    SessionTick,
    SessionNum,
    SessionState,
    IsOnTrack,
    OnPitRoad,
    Lap,
    LapDistPct,
    LapCurrentLapTime,
    LapLastLapTime,
    Speed,
    FuelLevel,
    EnergyOfLap, ///< counts from zero in every lap
    Nothing, ///< nothing in particular
};

/// True with the given probability.
bool chance(Random *random, double probability);
/// A number from 0 to \a end - 1.
int below(Random *random, int end);

template <typename T, std::size_t Size>
const T &pick(Random *random, const std::array<T, Size> &choice)
{
    return choice[std::size_t(below(random, int(Size)))];
}

/// A car that leaves the garage or the grid, drives laps and visits the pits.
///
/// The wilder the drive, the more often one of its numbers is wrong for a tick: it jumps, falls
/// back, is missing, infinite, or not a number.
class RandomDrive
{
public:
    /// \a isRace: the car starts on the grid and waits for the start.
    RandomDrive(Random *random, bool isRace, double wildness);

    /// Moves on by one tick.
    void advance();
    /// The present value of \a quantity.
    double value(Quantity quantity) const { return m_values[std::size_t(quantity)]; }

private:
    enum Place { Garage, PitLane, Track };

    /// Where along the drive, in laps, a counter notices the next crossing of the line.
    struct Notice {
        double at = 1.0;
        int laps = 0;
    };

    void move();
    void enter(Place place);
    bool notices(Notice *notice, double latest);
    void moveSession();
    void spoil();
    double &ref(Quantity quantity) { return m_values[std::size_t(quantity)]; }

    Random *m_random;
    bool m_isRace;
    bool m_isRollingStart; ///< the car drives laps before the start
    double m_wildness;
    double m_tickTime;
    double m_step; ///< laps per tick
    bool m_zeroAtReset; ///< the lap time is exactly zero at the tick of its reset

    Place m_place = Garage;
    int m_ticksLeft = 0; ///< in the garage or pit lane
    double m_distance = 0.0; ///< laps since the drive began
    Notice m_counter;
    Notice m_lapTimeReset;
    Notice m_lastLapTime;
    Notice m_energyReset;
    double m_lapTime = 0.0;
    double m_finishedLapTime = 0.0;
    std::array<double, std::size_t(Quantity::Nothing) + 1> m_values = {};
};
