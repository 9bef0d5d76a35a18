#pragma once

#include "tools/car.h"
#include "tools/circuit.h"
#include "tools/demooptions.h"
#include "tools/lapclock.h"
#include "tools/pace.h"
#include "tools/random.h"
#include "tools/weekend.h"

#include <array>
#include <cstdint>
#include <vector>

/// The simulator's session states.
enum SessionState {
    StateGetInCar = 1,
    StateWarmup = 2,
    StateParadeLaps = 3,
    StateRacing = 4,
    StateCheckered = 5,
    StateCoolDown = 6,
};

/// The simulator's track surfaces that the car drives on.
enum TrackSurface { NotInWorld = -1, InPitStall = 1, ApproachingPits = 2, OnTrack = 3 };

/// A demo drive from the driver's first seconds to the last, one tick at a time:
///
/// - a stint begins in the pit stall (in a race, the first one on the grid): an out-lap, the timed
///   laps, an in-lap back to the stall;
/// - before and between the stints the driver is out of the car, first while the car can still be
///   seen in its stall, then with no car in the world. In a race the car is serviced instead;
/// - a race goes through all session states; the chequered flag falls after the last timed lap.
///
/// Its members are the state of that drive at one tick, every part of which depends on the others.
class Drive
{
public:
    explicit Drive(const DemoOptions &options);
    Drive(const Drive &) = delete;
    Drive &operator=(const Drive &) = delete;

    /// Moves on to the next tick. False if the drive has ended; then nothing has changed.
    bool advance();

    const DemoOptions &options() const { return m_options; }
    const Weekend &weekend() const { return m_weekend; }
    const Circuit &circuit() const { return m_circuit; }
    const Pace &pace() const { return m_pace; }
    const CarState &car() const { return m_car.state(); }
    const LapClock &laps() const { return m_laps; }

    std::int32_t tick() const { return m_tick; } ///< since the session began
    double time() const; ///< since the session began, s
    SessionState sessionState() const { return m_sessionState; }
    bool inCar() const; ///< the driver sits in the car
    bool inWorld() const; ///< there is a car
    bool onPitRoad() const;
    bool serviced() const; ///< the crew is at work
    TrackSurface surface() const;
    /// The simulator does not know where the car is: for one tick, while it is put somewhere.
    bool isNowhere() const { return m_isNowhere; }
    /// The tyres as sensors or the crew last saw their carcass and their tread.
    const std::array<Wheel, 4> &seenTyres() const;
    /// m past the line, from 0 to less than a lap; -1 without a car, 0 for one that is nowhere
    double lapDistance() const;
    double lapFraction() const; ///< the same as a fraction of the lap
    double latitude() const; ///< degrees; 0 without a car, and for one that is nowhere
    double longitude() const; ///< the same
    double lossToBest() const { return m_lossToBest; } ///< change of laps().deltaToBest(), s/s
    double lossToLast() const { return m_lossToLast; } ///< change of laps().deltaToLast(), s/s
    /// Evenly distributed over [0, 1), new at every tick: for values that look like noise.
    double noise(int index) const { return m_noise[index & 3]; }

private:
    enum class Kind { Away, Watching, InStall, Service, OnGrid, Run };
    struct Step {
        Kind kind;
        double seconds; // 0 for a run
        SessionState state; // on the grid only
    };

    void addStint(int stint);
    void begin(const Step &step);
    void beginRun();
    void stand(double seconds);
    void run(double seconds);
    void crossLine(double seconds);
    double targetSpeed() const;
    bool stepDone() const;
    bool isLastStep() const;
    void reset();
    double fuelForStint() const;

    DemoOptions m_options;
    Random m_random;
    Weekend m_weekend;
    Circuit m_circuit;
    Pace m_pace;
    Car m_car;
    LapClock m_laps;

    std::vector<Step> m_steps;
    std::size_t m_step = 0;
    int m_stints = 0; // planned so far
    double m_stepTime = 0; // since the step began
    bool m_isNowhere = false;
    std::array<Wheel, 4> m_tyresAtStop; // when the car last stood in the pits

    std::int32_t m_firstTick;
    std::int32_t m_tick;
    bool m_started = false;
    double m_substepTime = 0; // session time within a tick
    SessionState m_sessionState = StateRacing;
    double m_flagTime = 0; // when the chequered flag fell

    // The present run. Its places are distances driven since the first crossing of the line.
    double m_laneEnd = 0; // of the pit lane that it began in, or where it began
    double m_laneStart = 0; // of the pit lane that it ends in
    double m_stop = 0; // in the stall
    double m_startRight = 0; // m beside the centre line at the start
    int m_outLaps = 0; // laps before the first timed one
    int m_lapOfRun = 0; // laps begun in this run, so far
    double m_pacing = 0.9; // fraction of the perfect lap's speed
    double m_wantedPacing = 0.9;

    double m_lossToBest = 0;
    double m_lossToLast = 0;
    double m_noise[4] = {};
};
