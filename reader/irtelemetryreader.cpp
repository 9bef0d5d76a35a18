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

/// A car that moves less than this fraction of the lap in a tick stands still.
constexpr double StandstillPct = 0.001;

} // namespace

iRTelemetryReader::iRTelemetryReader()
{
    resize(CarCount);
}

void iRTelemetryReader::resize(int count)
{
    m_cars.resize(qMax(0, count));
    m_cars.fill(CarTracker());
    m_tick.clear();
    m_isCounting = false;
    m_finishedLaps = CollectedLaps();
    forgetIdleCars();
}

const CarTracker &iRTelemetryReader::car(int car)
{
    spreadTick();
    flushLaps();
    return m_cars.at(car);
}

ZEP::Sample &iRTelemetryReader::sample(int car)
{
    spreadTick();
    forgetIdleCars();
    return m_cars[car].sample;
}

bool iRTelemetryReader::isCarInWorld(int car) const
{
    return double(m_cars.at(car).current.lapDistPct) > -0.2;
}

void iRTelemetryReader::compileVariables(const irsdk_header *header,
                                         const irsdk_varHeader *varHeaders)
{
    spreadTick();
    flushLaps();
    forgetSessionInfo();
    m_layout.reset();
    m_header = header;
    m_varHeaders = varHeaders;
}

void iRTelemetryReader::startCounting()
{
    m_isCounting = true;
}

void iRTelemetryReader::prepareTick()
{
    m_tick.clear();
    if (isMyLapReady() && !m_cars.at(m_myCarIdx).lap.pending.isEmpty())
        flushLaps(); // what came after the end of a lap belongs to its copies too
    if (m_othersAreIdle) {
        if (hasMyCar())
            m_cars[m_myCarIdx].prepareTick();
    } else {
        for (CarTracker &car : m_cars)
            car.prepareTick();
    }
    m_mySampleIsEmpty = true;
}

void iRTelemetryReader::getRawData(const irsdk_header *header, const irsdk_varHeader *varHeaders,
                                   char *data)
{
    cacheNames(*header, varHeaders);
    if (m_diskLoading && header == m_header && varHeaders == m_varHeaders) {
        if (!hasMyCar())
            return;
        if (m_mySampleIsEmpty && !m_tick.record()) {
            if (!m_layout)
                m_layout.emplace(*header, varHeaders, m_varNames, m_varUnits);
            m_tick.take(data, *m_layout);
            return;
        }
    }
    spreadTick();
    forgetIdleCars();
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
        const auto add = [&](int car, const QString &valueName, int index) {
            if (isCar(car))
                m_cars[car].sample.addValue(valueName, elements.at(index).toVariant(data),
                                            m_varUnits.at(v));
        };

        if (m_diskLoading || !name.startsWith(carPrefix)) {
            add(m_myCarIdx, name, elements.last());
            return;
        }
        const QString carName = name.mid(carPrefix.size());
        const int last = qMin(elements.last(), m_cars.size() - 1);
        for (int car = elements.first(); car <= last; ++car)
            add(car, car == m_myCarIdx ? name : carName, car);
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
    for (int car = 0; car < m_cars.size(); ++car) {
        if (car == m_myCarIdx)
            continue;
        ZEP::Sample &sample = m_cars[car].sample;
        sample.addValue(timeName, time);
        sample.addValue(remainName, remain);
        sample.addValue(tickName, tick, QString());
    }
}

void iRTelemetryReader::processData()
{
    const int session = m_myCarIdx >= 0 ? sessionNumber() : -1;
    if (m_othersAreIdle) {
        if (hasMyCar())
            followCar(m_myCarIdx, session);
        return;
    }

    bool othersAreIdle = true;
    for (int car = 0; car < m_cars.size(); ++car) {
        followCar(car, session);
        if (isCompiled() && car != m_myCarIdx)
            othersAreIdle = othersAreIdle && m_cars.at(car).isIdle();
    }
    // While a recording is read only the player's car gets values.
    m_othersAreIdle = isCompiled() && m_diskLoading && othersAreIdle;
}

void iRTelemetryReader::followCar(int index, int sessionNumber)
{
    CarTracker &car = m_cars[index];
    if (car.driverName.isEmpty())
        return;

    const char *raw = record(index);
    const TickValues tick = raw ? TickValues::from(RecordSource(*m_layout, raw))
                                : TickValues::from(SampleSource(car.sample));
    car.current.lapDistPct = tick.lapDistPct;
    car.current.sessionState = tick.sessionState;
    const bool isInWorld = car.current.lapDistPct > -0.5f;
    if (!isInWorld)
        return;

    bool stationary = false;
    bool onPitRoad = false;
    bool onTrack = false;
    if (index == m_myCarIdx) {
        car.current.lap = tick.lap;
        if (tick.isOnTrack) {
            onPitRoad = tick.onPitRoad.value_or(false);
            onTrack = !onPitRoad;
            car.current.lapLastLapTime = tick.lapLastLapTime;
            car.current.lapCurrentLapTime = tick.lapCurrentLapTime;
        } else {
            stationary = true;
        }
        if (raw) {
            m_tick.mark();
        } else {
            car.sample.addValue(VariableLayout::fullTelemetryName(), VariableLayout::FullTelemetry,
                                QString());
            m_mySampleIsEmpty = false;
        }
    } else {
        if (sessionNumber < 0)
            return;
        car.current.lap = lapsComplete(index, sessionNumber);
        onPitRoad = tick.onPitRoad.value_or(true);
        onTrack = !onPitRoad;
        const float driven = car.current.lapDistPct - car.previous.lapDistPct;
        stationary = onPitRoad && StandstillPct > double(std::abs(driven));
    }

    if (car.current.sessionType == ZEP::SessionNotSet)
        car.current.sessionType = sessionType(sessionNumber);
    car.updateCarStatus(stationary, onPitRoad, onTrack);
    car.current.completionHold = false;
    car.current.spareFlag2 = false;

    if (car.current.lapCompleted)
        processLap(index, true);
    else if (car.current.carStatus == CarStatusBeforeLine)
        return; // a lap begins at the line
    else if (!car.lap.isStarted()
             && (car.current.carStatus == CarStatusStopped
                 || car.current.carStatus == CarStatusPitRoad))
        return; // a lap never begins in the pits
    else if (!tick.isSlow)
        recordTick(index);
}

/// The lap counter of another car, from the results of the session; -1 when they do not have it.
int iRTelemetryReader::lapsComplete(int car, int sessionNumber) const
{
    const TStringTree *session =
        pathSub(QStringLiteral("SessionInfo/Sessions/") % QString::number(sessionNumber));
    const TStringTree *results =
        session ? session->sub(QStringLiteral("ResultsPositions")) : nullptr;
    if (!results)
        return -1;
    for (int entry = 0; entry < m_cars.size(); ++entry) {
        const TStringTree *result = results->sub(QString::number(entry));
        if (result && result->value(QStringLiteral("CarIdx")).toInt() == car)
            return result->value(QStringLiteral("LapsComplete")).toInt();
    }
    return -1;
}

/// Appends the tick to the lap being recorded, or to the next one.
void iRTelemetryReader::recordTick(int index)
{
    CarTracker &car = m_cars[index];
    const char *raw = record(index);
    if (!raw)
        flushLaps();
    const bool toNextLap = car.hasCrossedLine();
    if (!toNextLap)
        car.lap.raiseMaxLapDistPct(car.current.lapDistPct, raw != nullptr);

    GrowingLap &lap = toNextLap ? car.nextLap : car.lap;
    if (!raw) {
        lap.addSample(car.sample);
        return;
    }
    if (m_isCounting)
        return lap.pending.count();
    lap.pending.append(raw, *m_layout);
    if (lap.pending.isFull())
        lap.pending.flushInto(&lap, *m_layout);
}

/// The record that holds the car's values of this tick; null when its sample holds them.
const char *iRTelemetryReader::record(int car) const
{
    return car == m_myCarIdx ? m_tick.record() : nullptr;
}

/// Brings the tick of the player's car into its sample, for whoever may look there or change it.
void iRTelemetryReader::spreadTick()
{
    if (m_tick.record())
        m_tick.spreadInto(&m_cars[m_myCarIdx].sample, *m_layout);
    m_mySampleIsEmpty = false;
}

/// Brings the collected records of the player's lap into it; those of the next one can wait.
void iRTelemetryReader::flushLap()
{
    if (m_layout && hasMyCar() && !m_isCounting)
        m_cars[m_myCarIdx].lap.flush(*m_layout);
}

/// Brings all collected records of the player's car into its laps.
void iRTelemetryReader::flushLaps()
{
    flushLap();
    if (m_layout && hasMyCar() && !m_isCounting)
        m_cars[m_myCarIdx].nextLap.flush(*m_layout);
}

/// For everything that may give another car values, or have it start a lap.
void iRTelemetryReader::forgetIdleCars()
{
    m_othersAreIdle = false;
}
