#include "reader/irtelemetryreader.h"

#include "reader/variantnumber.h"

#include <cmath>

namespace {

/// Length of a text field of a variable header, which is zero-terminated unless it is full.
template <std::size_t N>
QString fieldText(const char (&field)[N])
{
    return QString::fromLatin1(field, int(qstrnlen(field, N)));
}

/// A car is followed at ticks with a greater lap fraction. A car that is not in the world has -1,
/// places begin at 0, and half-way between them no rounding matters.
constexpr float FollowedAbove = -0.5f;
/// Hosts are told that a car with a greater lap fraction is in the world. They have always had this
/// limit, which is not the one above which a car is followed.
constexpr double InWorldAbove = -0.2;
/// A car that moves less than this fraction of the lap in a tick stands still.
constexpr double StandstillPct = 0.001;

/// Where a car is, as CarTracker::updateCarStatus() asks for it.
struct Whereabouts {
    bool stationary = false;
    bool onPitRoad = false;
    bool onTrack = false;
};

/// The player's car has its own variables. Off the track its lap times are not read and stay.
Whereabouts updatePlayersCar(CarTrackerSample *current, const TickValues &tick)
{
    Whereabouts where;
    current->lap = tick.lap;
    if (!tick.isOnTrack) {
        where.stationary = true;
        return where;
    }
    where.onPitRoad = tick.onPitRoad.value_or(false);
    where.onTrack = !where.onPitRoad;
    current->lapLastLapTime = tick.lapLastLapTime;
    current->lapCurrentLapTime = tick.lapCurrentLapTime;
    return where;
}

/// Only the place and the pit road are known of other cars. A car without the latter is on pit
/// road.
Whereabouts whereaboutsOfOther(const CarTracker &car, const TickValues &tick)
{
    Whereabouts where;
    where.onPitRoad = tick.onPitRoad.value_or(true);
    where.onTrack = !where.onPitRoad;
    const float driven = car.current.lapDistPct - car.previous.lapDistPct;
    where.stationary = where.onPitRoad && StandstillPct > double(std::abs(driven));
    return where;
}

} // namespace

iRTelemetryReader::iRTelemetryReader()
{
    resize(CarCount);
}

/// The gate: every operation that is not const begins here, except those that say why not.
///
/// It puts everything where it would be if nobody had called compileVariables(): the tick of the
/// player's car into its sample, its records into its laps. And it forgets what was found out for
/// speed: which cars are idle, and what the session info says. After that, whatever an operation
/// changes, nothing is left that the change could make wrong.
void iRTelemetryReader::settle()
{
    if (hasMyCar())
        m_raw.settle(&m_cars[m_myCarIdx]);
    m_sessionInfo.forget();
    m_othersAreIdle = false;
}

void iRTelemetryReader::resize(int count)
{
    // What is pending goes with the laps and samples to which it belongs: it is dropped before
    // settle() would bring it there.
    m_cars.resize(qMax(0, count));
    m_cars.fill(CarTracker());
    m_raw.restart();
    settle();
}

const CarTracker &iRTelemetryReader::car(int carIdx)
{
    settle();
    return m_cars.at(carIdx);
}

ZEP::Sample &iRTelemetryReader::sample(int carIdx)
{
    settle();
    return m_cars[carIdx].sample;
}

bool iRTelemetryReader::isCarInWorld(int carIdx) const
{
    return double(m_cars.at(carIdx).current.lapDistPct) > InWorldAbove;
}

void iRTelemetryReader::compileVariables(const irsdk_header *header,
                                         const irsdk_varHeader *varHeaders)
{
    settle();
    m_raw.compile(header, varHeaders);
}

void iRTelemetryReader::startCounting()
{
    settle();
    m_raw.startCounting();
}

/// Not through the gate, since it is called for every tick: the tick is dropped, each car moves its
/// laps on together with what is pending of them, and a tick without values changes no idle car.
void iRTelemetryReader::prepareTick()
{
    m_raw.dropTick();
    // Ticks that came after the end of a lap belong to copies of it too: they share its channels.
    if (isMyLapReady())
        m_raw.flush(&m_cars[m_myCarIdx].lap);
    if (m_othersAreIdle) {
        if (hasMyCar())
            m_cars[m_myCarIdx].prepareTick();
        return;
    }
    for (CarTracker &car : m_cars)
        car.prepareTick();
}

/// Not through the gate with the first record of a tick, which only becomes the pending tick: the
/// sample of the player's car is empty, and other cars get no values while a recording is read.
void iRTelemetryReader::getRawData(const irsdk_header *header, const irsdk_varHeader *varHeaders,
                                   char *data)
{
    cacheNames(*header, varHeaders);
    if (m_diskLoading && m_raw.isCompiled(header, varHeaders)) {
        if (!hasMyCar())
            return;
        if (!m_raw.hasTick() && !m_cars.at(m_myCarIdx).sample.hasValues()) {
            m_raw.takeTick(data, m_varNames, m_varUnits);
            return;
        }
    }
    settle();
    extract(*header, varHeaders, data);
    if (!m_diskLoading)
        copySessionClock();
}

void iRTelemetryReader::cacheNames(const irsdk_header &header, const irsdk_varHeader *varHeaders)
{
    if (!m_varNames.isEmpty())
        return;
    for (int v = 0; v < header.numVars; ++v) {
        m_varNames.append(fieldText(varHeaders[v].name).toLower());
        m_varUnits.append(fieldText(varHeaders[v].unit));
    }
}

/// Adds the values of one record to the samples of the cars.
void iRTelemetryReader::extract(const irsdk_header &header, const irsdk_varHeader *varHeaders,
                                const char *data)
{
    static const QString carPrefix = QStringLiteral("caridx");
    const int count = qMin(header.numVars, m_varNames.size());

    forEachVariable(header, varHeaders, count, [&](int v, const StoredElements &elements) {
        const QString &name = m_varNames.at(v);
        const auto add = [&](int carIdx, const QString &valueName, int element) {
            if (isCar(carIdx))
                m_cars[carIdx].sample.addValue(valueName, elements.at(element).toVariant(data),
                                               m_varUnits.at(v));
        };

        if (m_diskLoading || !name.startsWith(carPrefix)) {
            add(m_myCarIdx, name, elements.last());
            return;
        }
        const QString carName = name.mid(carPrefix.size());
        const int last = qMin(elements.last(), m_cars.size() - 1);
        for (int carIdx = elements.first(); carIdx <= last; ++carIdx)
            add(carIdx, carIdx == m_myCarIdx ? name : carName, carIdx);
    });
}

/// The session clock exists once per record; every car gets it.
void iRTelemetryReader::copySessionClock()
{
    if (!hasMyCar())
        return;
    const QString timeName = QStringLiteral("sessiontime");
    const QString remainName = QStringLiteral("sessiontimeremain");
    const QString tickName = QStringLiteral("sessiontick");

    const ZEP::Sample &mine = m_cars.at(m_myCarIdx).sample;
    const ZEP::Value time = mine.value(timeName);
    const ZEP::Value remain = mine.value(remainName);
    const QVariant tick = unsignedOf(mine.value(tickName).value);
    for (int carIdx = 0; carIdx < m_cars.size(); ++carIdx) {
        if (carIdx == m_myCarIdx)
            continue;
        ZEP::Sample &sample = m_cars[carIdx].sample;
        sample.addValue(timeName, time);
        sample.addValue(remainName, remain);
        sample.addValue(tickName, tick, QString());
    }
}

/// Not through the gate, since it is called for every tick: it reads the tick of the player's car
/// where it is, records it as what it is, and visits all cars unless the others are idle.
void iRTelemetryReader::processData()
{
    const int session = m_myCarIdx >= 0 ? sessionNumber() : -1;
    if (m_othersAreIdle) {
        if (hasMyCar())
            followCar(m_myCarIdx, session);
        return;
    }

    bool othersAreIdle = true;
    for (int carIdx = 0; carIdx < m_cars.size(); ++carIdx) {
        followCar(carIdx, session);
        if (m_raw.isCompiled() && carIdx != m_myCarIdx)
            othersAreIdle = othersAreIdle && m_cars.at(carIdx).isIdle();
    }
    // While a recording is read only the player's car gets values.
    m_othersAreIdle = m_raw.isCompiled() && m_diskLoading && othersAreIdle;
}

/// The number of the session at this tick of the player's car; 0 when it is missing.
int iRTelemetryReader::sessionNumber() const
{
    if (!hasMyCar())
        return 0;
    return m_raw.hasTick() ? TickValues::sessionNumber(m_raw.tick())
                           : TickValues::sessionNumber(SampleSource(m_cars.at(m_myCarIdx).sample));
}

void iRTelemetryReader::followCar(int carIdx, int sessionNumber)
{
    CarTracker &car = m_cars[carIdx];
    if (car.driverName.isEmpty())
        return;

    const bool isRaw = carIdx == m_myCarIdx && m_raw.hasTick();
    const TickValues tick =
        isRaw ? TickValues::from(m_raw.tick()) : TickValues::from(SampleSource(car.sample));
    car.current.lapDistPct = tick.lapDistPct;
    car.current.sessionState = tick.sessionState;
    if (!(car.current.lapDistPct > FollowedAbove))
        return;

    Whereabouts where;
    if (carIdx == m_myCarIdx) {
        where = updatePlayersCar(&car.current, tick);
        if (isRaw)
            m_raw.markTick();
        else
            car.sample.addValue(VariableLayout::fullTelemetryName(), VariableLayout::FullTelemetry,
                                QString());
    } else {
        if (sessionNumber < 0)
            return;
        car.current.lap = lapsComplete(carIdx, sessionNumber);
        where = whereaboutsOfOther(car, tick);
    }

    if (car.current.sessionType == ZEP::SessionNotSet)
        car.current.sessionType = sessionInfo()->type(*this, sessionNumber);
    car.updateCarStatus(where.stationary, where.onPitRoad, where.onTrack);
    car.current.completionHold = false;
    car.current.spareFlag2 = false;

    if (car.current.lapCompleted)
        closeLap(carIdx, true);
    else if (car.current.carStatus == CarStatusBeforeLine)
        return; // a lap begins at the line
    else if (!car.lap.isStarted()
             && (car.current.carStatus == CarStatusStopped
                 || car.current.carStatus == CarStatusPitRoad))
        return; // a lap never begins in the pits
    else if (!tick.isSlow)
        recordTick(&car, isRaw);
}

/// The lap counter of another car, from the results of the session; -1 when they do not have it.
int iRTelemetryReader::lapsComplete(int carIdx, int sessionNumber) const
{
    const TStringTree *session =
        pathSub(QStringLiteral("SessionInfo/Sessions/") % QString::number(sessionNumber));
    const TStringTree *results =
        session ? session->sub(QStringLiteral("ResultsPositions")) : nullptr;
    if (!results)
        return -1;
    for (int entry = 0; entry < m_cars.size(); ++entry) {
        const TStringTree *result = results->sub(QString::number(entry));
        if (result && result->value(QStringLiteral("CarIdx")).toInt() == carIdx)
            return result->value(QStringLiteral("LapsComplete")).toInt();
    }
    return -1;
}

/// Appends the tick, which is a raw record or the sample of \a car, to the lap being recorded or to
/// the next one.
void iRTelemetryReader::recordTick(CarTracker *car, bool isRaw)
{
    const bool toNextLap = car->hasCrossedLine();
    GrowingLap &lap = toNextLap ? car->nextLap : car->lap;
    if (!toNextLap)
        lap.raiseMaxLapDistPct(car->current.lapDistPct, isRaw);
    if (isRaw) {
        m_raw.appendTickTo(&lap);
        return;
    }
    // Values only get into a sample through the gate, so no earlier tick is still pending.
    Q_ASSERT(lap.pending.isEmpty());
    lap.addSample(car->sample);
}

/// What the session info says. Without the promise of compileVariables() the tree may have changed
/// since it was read.
SessionInfo *iRTelemetryReader::sessionInfo()
{
    if (!m_raw.isCompiled())
        m_sessionInfo.forget();
    return &m_sessionInfo;
}
