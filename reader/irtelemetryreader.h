#pragma once

#include "ibt/ibtformat.h"
#include "ibt/ibtlimits.h"
#include "reader/cartracker.h"
#include "reader/rawrecords.h"
#include "reader/sessioninfo.h"
#include "yaml/yamltree.h"

#include <QString>
#include <QUuid>
#include <QVector>

/// Follows the cars of a session tick by tick and makes laps of what they drive.
///
/// The reader is the tree of the session info. For every tick call prepareTick(), getRawData() and
/// processData(), then take the lap if isMyLapReady(). It serves one recording, on one thread. A
/// \a carIdx is the number of a car in the session; it is not checked where nothing else is said.
///
/// It has many operations because hosts know each of them by its name. Each concern has a source
/// file of its own: the car list, closing a lap, and the steps of closing it.
class iRTelemetryReader : public TYamlTree
{
public:
    /// Cars that a session can have; their numbers run from 0.
    static constexpr int CarCount = IbtCarCount;

    iRTelemetryReader();

    /// Sets the number of cars and brings every one of them into its initial state.
    void resize(int count);
    int carCount() const { return m_cars.size(); }
    /// All that is known of one car, up to date at the moment of the call.
    const CarTracker &car(int carIdx);

    // --- Session and cars

    /// Adds the session-info text, zero-terminated Latin-1, to the tree.
    void setYaml(const char *text);
    /// Reads the player's car and the names of drivers and teams from the tree. True when a name
    /// changed.
    bool updateCarList();
    /// True: a recording is read, and all variables belong to the player's car. False: a simulator
    /// runs, and the elements of "CarIdx" variables are spread over the cars.
    void setDiskLoading(bool on);

    /// The number of the player's car, as the session info has it; -1 when not known.
    int myCarIdx() const { return m_myCarIdx; }
    /// True when myCarIdx() is the number of a car.
    bool hasMyCar() const { return isCar(m_myCarIdx); }
    QString &driverName(int carIdx);
    QString &teamName(int carIdx);
    /// The host's selection of a car; a number without a car is ignored.
    void setCarActive(int carIdx, bool on);
    /// False for a number without a car.
    bool isCarActive(int carIdx) const;

    // --- Ticks

    /// Makes reading fast. Every operation returns what it returns without this call, but you
    /// promise:
    /// - \a header, \a varHeaders and the session info stay as they are for as long as they are
    ///   passed to getRawData(); setYaml() and updateCarList() may still be called;
    /// - references from sample(), driverName(), teamName(), lap() and myLap() are not kept over
    ///   prepareTick(), getRawData() or processData();
    /// - only finished laps are copied, and only their channels are kept.
    void compileVariables(const irsdk_header *header, const irsdk_varHeader *varHeaders);

    /// From the first tick until resize(), laps are followed and closed as usual, but contain
    /// nothing: only isMyLapReady() and collectedLaps() report them. Until then all records have to
    /// be of the compiled table, the player's car has to stay the same, and nobody may look at a
    /// car, a sample or a lap.
    void startCounting();

    /// Makes the current tick the previous one and drops its values.
    void prepareTick();
    /// Reads the values of one record: \a data has \a header's bufLen bytes, which \a varHeaders
    /// describes with \a header's numVars entries. Names and units are those of the first table
    /// that was ever passed.
    void getRawData(const irsdk_header *header, const irsdk_varHeader *varHeaders, char *data);
    /// Moves all cars on by the tick that was read.
    void processData();
    /// Always false: a recording cannot tell.
    bool isSessionRestarted() const { return false; }

    /// The values of the current tick.
    ZEP::Sample &sample(int carIdx);
    /// True when the car has a place on the lap.
    bool isCarInWorld(int carIdx) const;

    // --- Laps

    bool isLapReady(int carIdx) const { return m_cars.at(carIdx).lapReady; }
    /// True when a lap of the player's car was completed at this tick; take it from myLap().
    bool isMyLapReady() const { return hasMyCar() && isLapReady(m_myCarIdx); }
    /// The lap that the car records or has just finished.
    ZEP::Lap &lap(int carIdx);
    /// The lap of the player's car. Without such a car a new empty lap, which the caller owns.
    ZEP::Lap *myLap();
    /// What compileVariables() has made of the player's ticks, finished laps included.
    CollectedLaps collectedLaps() const;

    /// Closes the car's lap and makes it ready to be taken. An empty lap stays as it is.
    void processLap(int carIdx, bool completed);
    /// Closes the lap of the player's car, if there is one.
    void processMyLap(bool completed);

    // --- The steps of closing a lap

    /// Copies the session info of a car onto \a lap.
    void getSessionInfo(int carIdx, ZEP::Lap *lap);
    /// Removes the channels that are of no use within a lap.
    void cleanupLap(int carIdx);
    /// Corrects and derives channels.
    void preprocessLap(int carIdx);
    /// Repairs the start of a channel that counts from zero in every lap: ticks that still have the
    /// count of the previous lap get a value in proportion to the lap fraction.
    void normalizeChannelBeginning(int carIdx, const QString &channelName);

    /// The id of a session: \a text padded with zeros on the left to the digits of a UUID; null for
    /// text that makes none.
    static QUuid sessionId(const QString &text);

private:
    bool isCar(int carIdx) const { return isIbtCarIdx(carIdx, m_cars.size()); }
    void settle();

    void cacheNames(const irsdk_header &header, const irsdk_varHeader *varHeaders);
    void extract(const irsdk_header &header, const irsdk_varHeader *varHeaders, const char *data);
    void copySessionClock();

    void followCar(int carIdx, int sessionNumber);
    int lapsComplete(int carIdx, int sessionNumber) const;
    void recordTick(CarTracker *car, bool isRaw);
    void closeLap(int carIdx, bool completed);

    int sessionNumber() const;
    SessionInfo *sessionInfo();

    QVector<QString> m_varNames;
    QVector<QString> m_varUnits;
    QVector<CarTracker> m_cars;
    qint32 m_myCarIdx = -1;
    /// Not used by recordings; kept for the layout of the class.
    [[maybe_unused]] bool m_reserved = false;
    bool m_diskLoading = false;

    // What makes reading fast. After settle() none of it has any influence.
    RawRecords m_raw; ///< of the player's car
    SessionInfo m_sessionInfo;
    bool m_othersAreIdle = false; ///< all cars but the player's are known to be idle
};
