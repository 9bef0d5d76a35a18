// Closing a lap: its header, its session info, and the steps that make it fit for the host.

#include "reader/irtelemetryreader.h"

#include <QDateTime>

namespace {

/// LapHeader::NoLapTime in seconds, as lap times are recorded.
constexpr float NoLapTime = float(ZEP::LapHeader::NoLapTime) / 1000.0f;
static_assert(int(NoLapTime * 1000.0f) == ZEP::LapHeader::NoLapTime);

/// The smallest float of milliseconds that is too large for an int.
constexpr float MsLimit = 2147483648.0f;

/// Writes into the lap what the rules know of it. The ids and counters of a completed lap are those
/// of the tick before: the current tick may already belong to the next lap.
void setHeader(CarTracker *car, bool completed)
{
    ZEP::Lap &lap = car->lap;
    if (car->previous.carStatus == CarStatusLapDone)
        lap.setLapType(ZEP::LapTypeTimed);
    else if (car->previous.carStatus == CarStatusOnLap)
        lap.setLapType(ZEP::LapTypeOutLap);

    // Only in a race does the first lap of a stint begin at a line that counts.
    const bool isOutLap =
        lap.getLapType() == ZEP::LapTypeOutLap && car->current.sessionType != ZEP::SessionRace;
    float &seconds = car->current.lapLastLapTime;
    if (!completed || isOutLap || seconds < 0 || qFuzzyIsNull(seconds)
        || !(seconds * 1000.0f < MsLimit))
        seconds = NoLapTime;
    lap.setLapTime(QTime(0, 0).addMSecs(int(seconds * 1000.0f)));

    lap.setLapId(car->previous.lapId);
    lap.setStintId(car->previous.stintId);
    if (completed) {
        lap.setLapInSession(car->previous.lap < 1 ? 0 : car->previous.lap - 1);
        lap.setLapInStint(car->previous.lapInStint);
    } else {
        lap.setLapInSession(car->current.lap);
        lap.setLapInStint(car->current.lapInStint);
    }
    lap.setStintInSession(car->previous.stintCount);
    lap.setCompleted(completed);
}

} // namespace

/// Not through the gate, since an import asks for every finished lap: the caller only gets this
/// lap, which needs only its own records, and those of the next lap can wait. The steps of closing
/// a lap get it here as well.
ZEP::Lap &iRTelemetryReader::lap(int carIdx)
{
    GrowingLap &lap = m_cars[carIdx].lap;
    m_raw.flush(&lap);
    return lap;
}

ZEP::Lap *iRTelemetryReader::myLap()
{
    return hasMyCar() ? &lap(m_myCarIdx) : new ZEP::Lap;
}

CollectedLaps iRTelemetryReader::collectedLaps() const
{
    return m_raw.collected(hasMyCar() ? &m_cars.at(m_myCarIdx) : nullptr);
}

void iRTelemetryReader::processLap(int carIdx, bool completed)
{
    settle();
    closeLap(carIdx, completed);
}

void iRTelemetryReader::processMyLap(bool completed)
{
    if (hasMyCar())
        processLap(m_myCarIdx, completed);
}

void iRTelemetryReader::getSessionInfo(int carIdx, ZEP::Lap *lap)
{
    settle();
    sessionInfo()->ofCar(*this, carIdx, carIdx == m_myCarIdx, sessionNumber()).copyTo(lap);
}

/// Not through the gate, since it is called at the end of every lap: it looks at the tick where it
/// is, at the lap with its own records, and at the session info as it still is.
void iRTelemetryReader::closeLap(int carIdx, bool completed)
{
    CarTracker &car = m_cars[carIdx];
    if (!car.lap.isStarted())
        return;
    const bool isMine = carIdx == m_myCarIdx;
    if (isMine)
        m_raw.addFinished(car.lap);
    if (m_raw.isCounting()) {
        car.lapReady = true;
        return;
    }

    m_raw.flush(&car.lap);
    setHeader(&car, completed);
    ZEP::Lap &lap = car.lap;
    lap.setCalculatedValue(QStringLiteral("DateTime"), QDateTime::currentDateTime(), QString());
    lap.removeCalculatedValue(GrowingLap::maxLapDistPctName());

    sessionInfo()->ofCar(*this, carIdx, isMine, sessionNumber()).copyTo(&lap);
    cleanupLap(carIdx);
    preprocessLap(carIdx);
    for (const char *counter :
         {"lapcurrentlaptime", "energybatterytomgu_klap", "energymgu_klapdeploypct"})
        normalizeChannelBeginning(carIdx, QLatin1String(counter));
    // The host keeps the lap; memory that its growing left unused is given back.
    for (const QSharedPointer<ZEP::Channel> &channel : lap.channels())
        channel->data.squeeze();
    car.lapReady = true;
}
