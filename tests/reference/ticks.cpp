// What happens to the cars and their laps at every tick.
#include "tests/reference/reader.h"

#include <cmath>

namespace reference {

namespace {

/// The variant \a name of a tick, or \a missing.
QVariant valueOr(const Sample &sample, const char *name, const QVariant &missing)
{
    const QString key = QLatin1String(name);
    return sample.values.contains(key) ? sample.values.value(key).value : missing;
}

const QString MaxLapDistPct = QStringLiteral("maxLapDistPct");

} // namespace

void Reader::prepareTick()
{
    for (CarTracker &car : m_cars)
        car.prepareTick();
}

void Reader::processData()
{
    int sessionNumber = -1;
    if (m_myCarIdx >= 0) {
        sessionNumber = 0;
        if (hasMyCar())
            sessionNumber = toInt(valueOr(m_cars.at(m_myCarIdx).sample, "sessionnum", 0));
    }
    for (int i = 0; i < m_cars.size(); ++i) {
        if (!m_cars.at(i).driverName.isEmpty())
            processCar(i, sessionNumber);
    }
}

void Reader::processCar(int i, int sessionNumber)
{
    CarTracker &car = m_cars[i];
    TickState &current = car.current;

    current.lapDistPct = valueOr(car.sample, "lapdistpct", -1.0f).toFloat();
    current.sessionState = toInt(valueOr(car.sample, "sessionstate", 0));
    if (!(current.lapDistPct > -0.5f))
        return;

    bool stationary = false;
    bool onPitRoad = false;
    bool onTrack = false;
    if (i == m_myCarIdx) {
        current.lap = toInt(valueOr(car.sample, "lap", -1));
        if (!toBool(valueOr(car.sample, "isontrack", false))) {
            stationary = true;
        } else {
            onPitRoad = toBool(valueOr(car.sample, "onpitroad", false));
            current.lapLastLapTime = valueOr(car.sample, "laplastlaptime", -1.0f).toFloat();
            current.lapCurrentLapTime = valueOr(car.sample, "lapcurrentlaptime", 1.0e25f).toFloat();
            onTrack = !onPitRoad;
        }
        car.sample.values.insert(QStringLiteral("fulltelemetry"), {QVariant(1), QString()});
    } else {
        if (sessionNumber < 0)
            return;
        current.lap = lapsComplete(i, sessionNumber);
        if (toBool(valueOr(car.sample, "onpitroad", true))) {
            const float driven = current.lapDistPct - car.previous.lapDistPct;
            stationary = 0.001 > double(std::fabs(driven));
            onPitRoad = true;
        } else {
            onTrack = true;
        }
    }

    if (current.sessionType == NotSet) {
        current.sessionType = sessionFromText(pathValue(QStringLiteral("SessionInfo/Sessions/")
                                                        + QString::number(sessionNumber)
                                                        + QStringLiteral("/SessionType")));
    }

    car.updateCarStatus(stationary, onPitRoad, onTrack);
    current.completionHold = false;

    if (current.lapCompleted) {
        processLap(i, true);
        return;
    }
    if (current.carStatus == RunningToLine)
        return;
    if (car.lap.isEmpty() && (current.carStatus == Stopped || current.carStatus == OnPitRoad))
        return;
    // Live clients may use this spelling in samples. Variables from a file are in lower case.
    if (car.sample.values.contains(QStringLiteral("Speed"))
        && 1.0f > car.sample.values.value(QStringLiteral("Speed")).value.toFloat())
        return;

    if (!car.lap.calculatedValues.contains(MaxLapDistPct)) {
        car.lap.calculatedValues.insert(MaxLapDistPct, {QVariant(current.lapDistPct), QString()});
        car.lap.addSample(car.sample);
        return;
    }
    const double m = car.lap.calculatedValues.value(MaxLapDistPct).value.toDouble();
    const double d = double(current.lapDistPct);
    if (d > m) {
        car.lap.calculatedValues.insert(MaxLapDistPct, {QVariant(current.lapDistPct), QString()});
        car.lap.addSample(car.sample);
    } else if (m > 0.9 && m - d > 0.5) {
        car.nextLap.addSample(car.sample);
    } else {
        car.lap.addSample(car.sample);
    }
}

int Reader::lapsComplete(int car, int sessionNumber) const
{
    const Tree *session =
        pathSub(QStringLiteral("SessionInfo/Sessions/") + QString::number(sessionNumber));
    const Tree *results = session ? session->sub(QStringLiteral("ResultsPositions")) : nullptr;
    if (!results)
        return -1;
    for (int k = 0; k < m_cars.size(); ++k) {
        const Tree *entry = results->sub(QString::number(k));
        if (entry && entry->value(QStringLiteral("CarIdx")).toInt() == car)
            return entry->value(QStringLiteral("LapsComplete")).toInt();
    }
    return -1;
}

void Reader::processMyLap(bool completed)
{
    if (hasMyCar())
        processLap(m_myCarIdx, completed);
}

void Reader::processLap(int i, bool completed)
{
    CarTracker &car = m_cars[i];
    TickState &current = car.current;
    const TickState &previous = car.previous;
    Lap &lap = car.lap;
    if (lap.isEmpty())
        return;

    if (previous.carStatus == Completed)
        lap.lapType = 1;
    else if (previous.carStatus == Recording)
        lap.lapType = 0;

    const float noLapTime = 3599.0f;
    const float t = current.lapLastLapTime;
    const float milliseconds = t * 1000.0f;
    // The bounds are powers of two next to the limits of int: only those are exact as floats.
    const bool fits = milliseconds >= -2147483648.0f && milliseconds < 2147483648.0f;
    if (t < 0.0f || std::fabs(t) <= 1.0e-5f || !completed
        || (lap.lapType == 0 && current.sessionType != Race) || !fits)
        current.lapLastLapTime = noLapTime;
    lap.lapTime = QTime(0, 0).addMSecs(int(current.lapLastLapTime * 1000.0f));

    lap.lapId = previous.lapId;
    lap.stintId = previous.stintId;

    if (completed) {
        lap.lapInSession = previous.lap < 1 ? 0 : previous.lap - 1;
        lap.lapInStint = previous.lapInStint;
    } else {
        lap.lapInSession = current.lap;
        lap.lapInStint = current.lapInStint;
    }
    lap.stintInSession = previous.stintCount;
    lap.completed = completed;

    lap.calculatedValues.insert(QStringLiteral("DateTime"),
                                {QVariant(QDateTime::currentDateTime()), QString()});
    lap.calculatedValues.remove(MaxLapDistPct);

    getSessionInfo(i, &lap);
    cleanupLap(i);
    preprocessLap(i);
    normalizeChannelBeginning(i, QStringLiteral("lapcurrentlaptime"));
    normalizeChannelBeginning(i, QStringLiteral("energybatterytomgu_klap"));
    normalizeChannelBeginning(i, QStringLiteral("energymgu_klapdeploypct"));

    car.lapReady = true;
}

} // namespace reference
