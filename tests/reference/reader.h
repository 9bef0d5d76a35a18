// The plain telemetry reader: every rule step by step, one record at a time, no shortcuts.
#pragma once

#include "ibt/ibtformat.h"
#include "tests/reference/cartracker.h"
#include "tests/reference/tree.h"

namespace reference {

/// Turns the records of a recording into laps. It is itself the root of the session-info tree.
///
/// An operation on a car needs a valid car index unless it says otherwise.
class Reader : public Tree
{
public:
    Reader();

    /// Creates \a count cars, each in its initial state.
    void resize(int count);
    int carCount() const { return m_cars.size(); }

    /// From disk, all variables belong to the player's car. Live, each car gets its element of an
    /// array.
    void setDiskLoading(bool on);
    /// Finds the player's car and all names in the session-info text; true if a name has changed.
    bool updateCarList();
    /// The player's car; -1 when unknown.
    int myCarIdx() const { return m_myCarIdx; }

    void prepareTick();
    /// Stores the variables of one record in the samples of the cars.
    void getRawData(const irsdk_header *header, const irsdk_varHeader *variables, const char *data);
    /// Follows every car with a name through the tick and appends its sample to its lap.
    void processData();

    /// Closes the lap of \a car, unless it is empty.
    void processLap(int car, bool completed);
    void processMyLap(bool completed);
    bool isLapReady(int car) const { return m_cars.at(car).lapReady; }
    bool isMyLapReady() const { return hasMyCar() && m_cars.at(m_myCarIdx).lapReady; }
    bool isCarInWorld(int car) const { return double(m_cars.at(car).current.lapDistPct) > -0.2; }
    bool isSessionRestarted() const { return false; }

    /// The lap being recorded.
    Lap &lap(int car) { return m_cars[car].lap; }
    /// The lap of the player's car. Without such a car, it is a new lap that the caller owns.
    Lap *myLap();
    /// The car's values of this tick.
    Sample &sample(int car) { return m_cars[car].sample; }
    QString &driverName(int car) { return m_cars[car].driverName; }
    QString &teamName(int car) { return m_cars[car].teamName; }
    /// Ignored outside the cars.
    void setCarActive(int car, bool on);
    /// False outside the cars.
    bool isCarActive(int car) const;

    /// Fills the session into \a lap, which is a lap of car \a car.
    void getSessionInfo(int car, Lap *lap) const;
    QUuid sessionId(const QString &text) const;
    void cleanupLap(int car);
    void preprocessLap(int car);
    void normalizeChannelBeginning(int car, const QString &channelName);

    /// Everything that is known about one car, for comparisons.
    const CarTracker &car(int car) const { return m_cars.at(car); }

private:
    /// Indexes of a variable's elements, from first up to, but not including, last.
    struct Elements {
        qint64 first;
        qint64 last;
    };

    bool hasMyCar() const { return m_myCarIdx >= 0 && m_myCarIdx < m_cars.size(); }
    Elements storedElements(const irsdk_varHeader &variable, qint64 recordSize) const;
    void store(const QString &name, qint64 element, const Value &value);
    void shareSessionClock();
    void processCar(int i, int sessionNumber);
    int lapsComplete(int car, int sessionNumber) const;

    QVector<QString> m_varNames;
    QVector<QString> m_varUnits;
    QVector<CarTracker> m_cars;
    int m_myCarIdx = -1;
    bool m_diskLoading = false;
};

} // namespace reference
