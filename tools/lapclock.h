#pragma once

#include <array>

class Random;

/// The lap counter and lap times as the simulator shows them: it counts a lap as soon as the car
/// crosses the line, and the times follow a moment later. The members are what it remembers of
/// three laps: the one being driven, the last and the best.
class LapClock
{
public:
    /// \a random must outlive the clock.
    explicit LapClock(Random &random) : m_random(random) { }

    /// The car crossed the line at \a time, s.
    void crossLine(double time);
    /// The running lap will not be timed, because the driver left the car.
    void abandonLap();
    /// The time is now \a time, s, and the car has driven \a fraction of the lap.
    void update(double time, double fraction);

    int lap() const { return m_lap; } ///< laps started
    int completed() const { return m_lap - 1; } ///< laps completed; -1 before the first line
    double current() const { return m_current; } ///< s; 0 before the first line
    double last() const { return m_last; } ///< s; 0 before there is one, -1 for an abandoned lap
    double best() const { return m_best; } ///< s; 0 before there is one
    int bestLap() const { return m_bestLap; } ///< 0 before there is one
    /// Time lost to the best or the last lap up to this place, s; 0 without such a lap.
    double deltaToBest() const { return delta(m_bestTrace); }
    double deltaToLast() const { return delta(m_lastTrace); }
    bool hasLast() const { return m_lastTrace.lapTime > 0; }

private:
    static constexpr int Places = 256;
    // When a lap passed each of the places.
    struct Trace {
        double lapTime = 0;
        int reached = 0;
        std::array<double, Places + 1> times{};
    };

    double delta(const Trace &trace) const;

    Random &m_random;
    int m_lap = 0;
    double m_current = 0;
    double m_last = 0;
    double m_best = 0;
    int m_bestLap = 0;
    bool m_running = false; // the present lap began at the line
    double m_lineTime = 0; // beginning of the present lap
    bool m_pending = false; // the line has been crossed, but the times do not show it yet
    double m_pendingUntil = 0;
    double m_pendingLast = 0;
    bool m_shown = false; // the running time shows
    double m_shownSince = 0;
    double m_fraction = 0;
    double m_elapsed = 0; // of the present lap
    Trace m_trace;
    Trace m_lastTrace;
    Trace m_bestTrace;
};
