#include "tests/support/randomdrive.h"
#include "tests/support/extremes.h"

#include <cmath>

namespace {

// Values at and around the limits that decide about laps.
constexpr std::array OddFractions = {NaN,  -1.0, -0.5, -0.49, -0.2, 0.0,      0.65,       0.655,
                                     0.8,  0.81, 0.9,  0.91,  1.0,  1.5,      0.40000001, 0.5,
                                     -0.0, 1e30, 1e25, -1e30, 1e-9, Infinity, -Infinity};
constexpr std::array OddTimes = {0.0,  -1.0,    NaN,    Infinity,  -Infinity,  1e30,    1e-5,
                                 1e-6, 1.1e-5,  -0.0,   2147483.5, 2147483.75, 90000.0, -5.0,
                                 1e24, 9.99e23, 1.0e25, 5.0,       5.0000005,  3599.0,  59.9996};
constexpr std::array OddLaps = {-1.0, 0.0, 1.0, 2147483647.0, -2147483648.0, 7.0};
constexpr std::array OddSessionNumbers = {-1.0, 0.0, 1.0, 2.0, 5.0, 2147483647.0};

} // namespace

bool chance(Random *random, double probability)
{
    return random->uniform() < probability;
}

int below(Random *random, int end)
{
    return int(random->uniform() * end);
}

RandomDrive::RandomDrive(Random *random, bool isRace, double wildness)
    : m_random(random), m_isRace(isRace), m_isRollingStart(chance(random, 0.5)),
      m_wildness(wildness),
      m_tickTime(pick(random, std::array{1.0 / 60.0, 0.25, 0.5, 0.5, 1.0, 1.0})),
      m_step(1.0 / random->uniform(20.0, 200.0)), m_zeroAtReset(chance(random, 0.3))
{
    ref(Quantity::FuelLevel) = random->uniform(5.0, 100.0);
    ref(Quantity::SessionTime) = random->uniform(0.0, 1000.0);
    ref(Quantity::LapLastLapTime) = chance(random, 0.5) ? 0.0 : -1.0;
    if (isRace) {
        m_place = Track;
        m_distance = pick(random, std::array{0.98, 0.9, 0.651, 0.65, 0.6, 0.05});
        ref(Quantity::SessionState) = pick(random, std::array{1.0, 2.0, 3.0, 4.0});
    } else {
        m_distance = pick(random, std::array{0.95, 0.81, 0.8, 0.5, 0.02});
        ref(Quantity::SessionState) = 4.0;
        enter(chance(random, 0.8) ? Garage : Track);
    }
}

void RandomDrive::enter(Place place)
{
    m_place = place;
    m_ticksLeft = 1 + below(m_random, place == Garage ? 30 : 25);
}

bool RandomDrive::notices(Notice *notice, double latest)
{
    if (m_distance < notice->at)
        return false;
    ++notice->laps;
    // Usually at the line, sometimes a few ticks too early or too late.
    const double ticks = chance(m_random, 0.6) ? 0.0 : m_random->uniform(-3.0, latest);
    notice->at = std::floor(m_distance + 3.5 * m_step) + 1.0 + ticks * m_step;
    return true;
}

void RandomDrive::move()
{
    const double before = m_distance;
    switch (m_place) {
    case Garage:
        if (--m_ticksLeft <= 0)
            enter(chance(m_random, 0.9) ? PitLane : Track);
        break;
    case PitLane:
        if (chance(m_random, 0.8))
            m_distance += 0.4 * m_step;
        if (--m_ticksLeft <= 0)
            enter(chance(m_random, 0.9) ? Track : Garage);
        break;
    case Track: {
        const bool waits = m_isRace && value(Quantity::SessionState) < 4.0;
        m_distance += m_step
            * (waits && !m_isRollingStart ? m_random->uniform(0.0, 0.4)
                                          : m_random->uniform(0.7, 1.3));
        const double fraction = m_distance - std::floor(m_distance);
        const bool atTheLine = fraction > 0.97 || fraction < 0.03;
        if (!waits && chance(m_random, atTheLine ? 0.03 : 0.001))
            enter(chance(m_random, 0.8) ? PitLane : Garage);
        break;
    }
    }
    ref(Quantity::Speed) = (m_distance - before) * 5000.0 / m_tickTime;
    ref(Quantity::FuelLevel) -= (m_distance - before) * 2.5;
    ref(Quantity::EnergyOfLap) += (m_distance - before) * 7.0;
}

void RandomDrive::moveSession()
{
    if (m_isRace && value(Quantity::SessionState) < 4.0
        && chance(m_random, m_isRollingStart ? 0.01 : 0.08))
        ref(Quantity::SessionState) += 1.0;
    if (chance(m_random, 0.0005))
        ref(Quantity::SessionState) += 1.0;
    if (chance(m_random, 0.001))
        ref(Quantity::SessionNum) += 1.0;
    ref(Quantity::SessionTime) += m_tickTime;
    ref(Quantity::SessionTimeRemain) = 7200.0 - value(Quantity::SessionTime);
    ref(Quantity::SessionTick) += 1.0;
}

void RandomDrive::advance()
{
    moveSession();
    move();
    m_lapTime += m_tickTime;

    if (notices(&m_counter, 4.0))
        ref(Quantity::Lap) = m_counter.laps;
    if (notices(&m_lapTimeReset, 4.0)) {
        m_finishedLapTime = m_lapTime;
        m_lapTime = m_zeroAtReset ? 0.0 : m_random->uniform(0.0, m_tickTime);
    }
    if (notices(&m_lastLapTime, 20.0))
        ref(Quantity::LapLastLapTime) = m_finishedLapTime;
    if (notices(&m_energyReset, 6.0))
        ref(Quantity::EnergyOfLap) = 0.0;
    ref(Quantity::LapCurrentLapTime) = m_lapTime;
    ref(Quantity::LapDistPct) = m_distance - std::floor(m_distance);
    ref(Quantity::IsOnTrack) = m_place != Garage;
    ref(Quantity::OnPitRoad) = m_place == PitLane;

    if (chance(m_random, m_wildness * 0.1))
        spoil();
}

void RandomDrive::spoil()
{
    switch (below(m_random, 13)) {
    case 0:
        ref(Quantity::LapDistPct) = pick(m_random, OddFractions);
        break;
    case 1:
        m_distance -= m_random->uniform(0.0, 0.9);
        break;
    case 2:
        ref(Quantity::LapCurrentLapTime) = pick(m_random, OddTimes);
        break;
    case 3:
        // A lap ends when its time falls back by more than five seconds.
        m_lapTime = chance(m_random, 0.5) ? value(Quantity::LapCurrentLapTime) - 5.0 - m_tickTime
                                          : pick(m_random, OddTimes);
        break;
    case 4:
        ref(Quantity::LapLastLapTime) = pick(m_random, OddTimes);
        break;
    case 5:
        ref(Quantity::Lap) = pick(m_random, OddLaps);
        break;
    case 6:
        m_counter.laps += below(m_random, 5) - 2;
        break;
    case 7:
        ref(Quantity::IsOnTrack) = 1.0 - value(Quantity::IsOnTrack);
        break;
    case 8:
        ref(Quantity::OnPitRoad) = 1.0 - value(Quantity::OnPitRoad);
        break;
    case 9:
        ref(Quantity::SessionState) = below(m_random, 7);
        break;
    case 10:
        ref(Quantity::SessionNum) = pick(m_random, OddSessionNumbers);
        break;
    case 11:
        ref(Quantity::Speed) = pick(m_random, std::array{0.0, 0.5, 1.0, -3.0, NaN});
        break;
    default:
        ref(Quantity::EnergyOfLap) = pick(m_random, std::array{0.0, -2.0, 1e-13, NaN, 1.0e25});
        ref(Quantity::FuelLevel) = pick(m_random, std::array{0.0, 50.0, 1.0e25, NaN});
        break;
    }
}
