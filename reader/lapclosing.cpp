// Closing a lap: its header, its session info, and the steps that make it fit for the host.

#include "reader/irtelemetryreader.h"

#include <QDateTime>

namespace {

/// LapHeader::NoLapTime in seconds, as lap times are recorded.
constexpr float NoLapTime = float(ZEP::LapHeader::NoLapTime) / 1000.0f;
static_assert(int(NoLapTime * 1000.0f) == ZEP::LapHeader::NoLapTime);

/// The first float, in milliseconds, that no int holds.
constexpr float MsLimit = 2147483648.0f;

} // namespace

ZEP::Lap &iRTelemetryReader::lap(int car)
{
    flushLap();
    return m_cars[car].lap;
}

ZEP::Lap *iRTelemetryReader::myLap()
{
    return hasMyCar() ? &lap(m_myCarIdx) : new ZEP::Lap;
}

CollectedLaps iRTelemetryReader::collectedLaps() const
{
    CollectedLaps laps = m_finishedLaps;
    if (!m_layout || !hasMyCar())
        return laps;
    const CarTracker &car = m_cars.at(m_myCarIdx);
    if (!car.lapReady)
        laps.add(car.lap.pending.recorded());
    laps.add(car.nextLap.pending.recorded());
    laps.channels = qint64(m_layout->columns().size());
    return laps;
}

void iRTelemetryReader::processLap(int index, bool completed)
{
    CarTracker &car = m_cars[index];
    if (!car.lap.isStarted())
        return;
    if (index == m_myCarIdx) {
        m_finishedLaps.add(car.lap.pending.recorded());
    } else {
        forgetIdleCars();
    }
    if (m_isCounting) {
        car.lapReady = true;
        return;
    }
    flushLap();
    ZEP::Lap &lap = car.lap;

    if (car.previous.carStatus == CarStatusLapDone)
        lap.setLapType(ZEP::LapTypeTimed);
    else if (car.previous.carStatus == CarStatusOnLap)
        lap.setLapType(ZEP::LapTypeOutLap);

    // Only in a race does the first lap of a stint begin at a line that counts.
    const bool isOutLap =
        lap.getLapType() == ZEP::LapTypeOutLap && car.current.sessionType != ZEP::SessionRace;
    float &seconds = car.current.lapLastLapTime;
    if (!completed || isOutLap || seconds < 0 || qFuzzyIsNull(seconds)
        || !(seconds * 1000.0f < MsLimit))
        seconds = NoLapTime;
    lap.setLapTime(QTime(0, 0).addMSecs(int(seconds * 1000.0f)));

    // The current tick may already belong to the next lap.
    lap.setLapId(car.previous.lapId);
    lap.setStintId(car.previous.stintId);
    if (completed) {
        lap.setLapInSession(car.previous.lap < 1 ? 0 : car.previous.lap - 1);
        lap.setLapInStint(car.previous.lapInStint);
    } else {
        lap.setLapInSession(car.current.lap);
        lap.setLapInStint(car.current.lapInStint);
    }
    lap.setStintInSession(car.previous.stintCount);
    lap.setCompleted(completed);
    lap.setCalculatedValue(QStringLiteral("DateTime"), QDateTime::currentDateTime(), QString());
    lap.removeCalculatedValue(GrowingLap::maxLapDistPctName());

    getSessionInfo(index, &lap);
    cleanupLap(index);
    preprocessLap(index);
    for (const char *counter :
         {"lapcurrentlaptime", "energybatterytomgu_klap", "energymgu_klapdeploypct"})
        normalizeChannelBeginning(index, QLatin1String(counter));
    // The host keeps the lap; what growing took beyond it is given back.
    for (const QSharedPointer<ZEP::Channel> &channel : lap.channels())
        channel->data.squeeze();
    car.lapReady = true;
}

void iRTelemetryReader::processMyLap(bool completed)
{
    if (hasMyCar())
        processLap(m_myCarIdx, completed);
}
