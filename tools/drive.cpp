#include "tools/drive.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double FirstSecond = 60; // session time of the first record
constexpr double LaneWidth = 9; // m from the centre line to the pit lane
constexpr double LaneMerge = 30; // m along which the car changes from one to the other
constexpr double GridWidth = 3; // m from the centre line to the grid slot
constexpr double PitBraking = 7; // m/s^2
constexpr double StopBraking = 4; // m/s^2
constexpr double StarterTime = 1.2; // s in the stall until the engine runs
constexpr double LitresPerSecond = 2.2; // of the refuelling rig
constexpr double LitresPerLap = 0.25; // including a reserve
constexpr double Reserve = 3; // l
constexpr double CoolDownDelay = 15; // s after the chequered flag

double smooth(double part)
{
    const double p = std::clamp(part, 0.0, 1.0);
    return p * p * (3 - 2 * p);
}

double smoothSlope(double part)
{
    return part <= 0 || part >= 1 ? 0 : 6 * part * (1 - part);
}

bool isRace(const DemoOptions &options)
{
    return options.session == SessionKind::Race;
}

} // namespace

Drive::Drive(const DemoOptions &options)
    : m_options(options), m_random(options.seed), m_weekend(options),
      m_circuit(options.abroad ? Circuit::Abroad
                               : GlobePoint{Circuit::Latitude, Circuit::Longitude}),
      m_pace(m_circuit), m_car(m_circuit, m_random, m_weekend.airTemperature,
                               isRace(options) ? -Circuit::GridSlot : -Circuit::PitStall),
      m_laps(m_random), m_firstTick(std::int32_t(FirstSecond * options.rate)), m_tick(m_firstTick)
{
    m_startRight = isRace(options) ? GridWidth : LaneWidth;
    addStint(0);
    begin(m_steps.front());
    stand(1);
    m_tyresAtStop = car().wheels;
}

bool Drive::advance()
{
    if (!m_started) {
        m_started = true;
        return true;
    }
    const bool last = m_options.duration > 0
        ? m_tick + 1 - m_firstTick >= std::int32_t(m_options.duration * m_options.rate)
        : m_step + 1 == m_steps.size() && stepDone() && m_stints >= m_options.stints;
    if (last)
        return false;

    m_isNowhere = false;
    if (stepDone()) {
        if (m_step + 1 == m_steps.size())
            addStint(m_stints);
        const bool wasInCar = inCar();
        begin(m_steps[++m_step]);
        m_isNowhere = m_options.resets && !wasInCar && inCar();
    }
    // The car's lags and the driver's corrections need steps no longer than these.
    constexpr int LeastRate = 60;
    const int substeps = (LeastRate + m_options.rate - 1) / m_options.rate;
    const double seconds = 1.0 / (m_options.rate * substeps);
    for (int i = 1; i <= substeps; ++i) {
        m_substepTime = time() + i * seconds;
        m_stepTime += seconds;
        if (m_steps[m_step].kind == Kind::Run)
            run(seconds);
        else
            stand(seconds);
    }
    ++m_tick;
    if (m_steps[m_step].kind != Kind::Run)
        m_tyresAtStop = car().wheels;

    const double best = m_laps.deltaToBest();
    const double toLast = m_laps.deltaToLast();
    m_laps.update(time(), inWorld() ? lapFraction() : 0);
    const auto loss = [this](double before, double now) {
        // At the line it starts again from zero, which is not a loss.
        return std::clamp((now - before) * m_options.rate, -1.0, 1.0);
    };
    m_lossToBest = loss(best, m_laps.deltaToBest());
    m_lossToLast = loss(toLast, m_laps.deltaToLast());
    for (double &noise : m_noise)
        noise = m_random.uniform();
    if (m_sessionState == StateCheckered && time() > m_flagTime + CoolDownDelay)
        m_sessionState = StateCoolDown;
    return true;
}

void Drive::addStint(int stint)
{
    const auto add = [this](Kind kind, double seconds, SessionState state = StateRacing) {
        m_steps.push_back({kind, seconds, state});
    };
    if (stint == 0) {
        add(Kind::Away, 2, isRace(m_options) ? StateGetInCar : StateRacing);
    } else if (isRace(m_options)) {
        add(Kind::Service, std::max(5.0, fuelForStint() / LitresPerSecond));
    } else {
        add(Kind::InStall, 2);
        add(Kind::Watching, 1);
        add(Kind::Away, 3);
    }
    if (!isRace(m_options)) {
        add(Kind::Watching, 1);
        add(Kind::InStall, 3);
    } else if (stint == 0) {
        add(Kind::OnGrid, 3, StateGetInCar);
        add(Kind::OnGrid, 3, StateWarmup);
        add(Kind::OnGrid, 4, StateParadeLaps);
    }
    add(Kind::Run, 0);
    ++m_stints;
    if (m_stints == m_options.stints && m_options.duration <= 0)
        add(Kind::InStall, 3);
}

void Drive::begin(const Step &step)
{
    m_stepTime = 0;
    switch (step.kind) {
    case Kind::Away:
        m_sessionState = step.state;
        m_car.setEngine(false);
        m_laps.abandonLap();
        m_car.fitTyres();
        m_car.fillUp(Reserve + fuelForStint());
        break;
    case Kind::Watching:
    case Kind::InStall:
        m_car.setEngine(false);
        break;
    case Kind::Service:
        m_car.setEngine(false);
        m_car.fitTyres();
        break;
    case Kind::OnGrid:
        m_sessionState = step.state;
        m_car.setEngine(true);
        break;
    case Kind::Run:
        beginRun();
        break;
    }
}

void Drive::beginRun()
{
    const double lap = m_circuit.length();
    const double line = std::ceil(car().distance / lap) * lap;
    const bool fromGrid = isRace(m_options) && m_laps.lap() == 0;
    m_outLaps = fromGrid ? 0 : 1;
    m_lapOfRun = 0;
    m_startRight = fromGrid ? GridWidth : LaneWidth;
    m_laneEnd = fromGrid ? car().distance : line + Circuit::PitExit;
    const double home = line + (m_outLaps + m_options.laps + 1) * lap;
    m_laneStart = home - Circuit::PitEntry;
    m_stop = home - Circuit::PitStall;
    m_car.setEngine(true);
    if (fromGrid)
        m_sessionState = StateRacing;
}

// One step in which the car does not move.
void Drive::stand(double seconds)
{
    const Kind kind = m_steps[m_step].kind;
    if (kind == Kind::InStall && m_stepTime > StarterTime)
        m_car.setEngine(m_step + 1 < m_steps.size() && m_steps[m_step + 1].kind == Kind::Run);
    if (kind == Kind::Service)
        m_car.fillUp(car().fuel + LitresPerSecond * seconds);
    m_car.drive(0, m_startRight, 0, seconds);
}

void Drive::run(double seconds)
{
    constexpr double PacingTime = 2; // s that the driver needs to find a new lap's pace
    m_pacing += (m_wantedPacing - m_pacing) * seconds / PacingTime;

    const double before = car().distance;
    const double next = before + car().speed * seconds;
    const bool fromLane = m_outLaps > 0;
    const double merge = fromLane ? LaneMerge : 5 * GridWidth;
    const double leaving = (next - m_laneEnd + (fromLane ? merge : 0)) / merge;
    const double arriving = (next - m_laneStart) / LaneMerge;
    const double right = m_startRight * (1 - smooth(leaving)) + LaneWidth * smooth(arriving);
    const double slant = -m_startRight * smoothSlope(leaving) / merge
        + LaneWidth * smoothSlope(arriving) / LaneMerge;
    m_car.drive(targetSpeed(), right, slant, seconds);

    const double lap = m_circuit.length();
    if (std::floor(car().distance / lap) > std::floor(before / lap))
        crossLine(seconds);
    constexpr double ResetBefore = 0.4; // of a lap, before the stall
    if (m_options.resets && isLastStep() && car().distance > m_stop - ResetBefore * lap)
        reset();
    if (stepDone())
        m_startRight = LaneWidth;
}

// The car stands in its stall, as if it had been driven there.
void Drive::reset()
{
    m_car.putAt(m_stop);
    m_isNowhere = true;
}

void Drive::crossLine(double seconds)
{
    const double behind = std::fmod(car().distance, m_circuit.length());
    const double ago = std::min(seconds, behind / car().speed);
    m_laps.crossLine(m_substepTime - ago);

    ++m_lapOfRun;
    if (m_lapOfRun <= m_outLaps)
        m_wantedPacing = 0.95;
    else if (m_lapOfRun <= m_outLaps + m_options.laps)
        m_wantedPacing = m_random.uniform(0.972, 0.992);
    else
        m_wantedPacing = 0.93;

    if (m_weekend.raceLaps > 0 && m_laps.completed() == m_weekend.raceLaps) {
        m_sessionState = StateCheckered;
        m_flagTime = m_substepTime;
    }
}

double Drive::targetSpeed() const
{
    const double place = car().distance;
    if (place > m_stop - 0.02)
        return 0;
    // Looks ahead as far as the pedals lag behind.
    double target = m_pacing * m_pace.at(place + 0.02 * car().speed);
    constexpr double Limit = 0.97 * Circuit::PitSpeedLimit;
    const double toLane = m_laneStart - place;
    if (place < m_laneEnd || toLane <= 0)
        target = std::min(target, Limit);
    else
        target = std::min(target, std::sqrt(Limit * Limit + 2 * PitBraking * toLane));
    return std::min(target, std::sqrt(2 * StopBraking * (m_stop - place)));
}

bool Drive::stepDone() const
{
    const Step &step = m_steps[m_step];
    if (step.kind == Kind::Run)
        return car().distance > m_stop - 0.05 && car().speed <= 0;
    return m_stepTime >= step.seconds;
}

// The last run, or what follows it.
bool Drive::isLastStep() const
{
    return m_stints >= m_options.stints && m_step + 2 >= m_steps.size();
}

// Litres for an out-lap, the timed laps and an in-lap.
double Drive::fuelForStint() const
{
    return LitresPerLap * (m_options.laps + 2);
}

double Drive::time() const
{
    return double(m_tick) / m_options.rate;
}

bool Drive::inCar() const
{
    const Kind kind = m_steps[m_step].kind;
    return kind != Kind::Away && kind != Kind::Watching;
}

bool Drive::inWorld() const
{
    return m_steps[m_step].kind != Kind::Away;
}

bool Drive::onPitRoad() const
{
    switch (m_steps[m_step].kind) {
    case Kind::Away:
    case Kind::OnGrid:
        return false;
    case Kind::Run:
        return car().distance < m_laneEnd || car().distance >= m_laneStart;
    default:
        return true;
    }
}

bool Drive::serviced() const
{
    return m_steps[m_step].kind == Kind::Service;
}

TrackSurface Drive::surface() const
{
    switch (m_steps[m_step].kind) {
    case Kind::Away:
        return NotInWorld;
    case Kind::OnGrid:
        return OnTrack;
    case Kind::Run:
        return onPitRoad() ? ApproachingPits : OnTrack;
    default:
        return InPitStall;
    }
}

double Drive::lapDistance() const
{
    if (!inWorld())
        return -1;
    if (m_isNowhere)
        return 0;
    const double lap = m_circuit.length();
    return car().distance - std::floor(car().distance / lap) * lap;
}

double Drive::lapFraction() const
{
    return inWorld() ? lapDistance() / m_circuit.length() : -1;
}

double Drive::latitude() const
{
    return inWorld() && !m_isNowhere ? car().latitude : 0;
}

double Drive::longitude() const
{
    return inWorld() && !m_isNowhere ? car().longitude : 0;
}

const std::array<Wheel, 4> &Drive::seenTyres() const
{
    return m_options.tyresAtStops ? m_tyresAtStop : car().wheels;
}
