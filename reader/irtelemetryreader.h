#pragma once

#include "ibt/ibtformat.h"
#include "ibt/ibtlimits.h"
#include "reader/carsessioninfo.h"
#include "reader/cartracker.h"
#include "reader/pendingtick.h"
#include "reader/variablelayout.h"
#include "yaml/yamltree.h"

#include <QString>
#include <QUuid>
#include <QVector>

#include <optional>

/// How much came of collected records, in finished laps and in those being recorded.
struct CollectedLaps {
    qint64 laps = 0; ///< that have a tick
    qint64 ticks = 0;
    qint64 channels = 0; ///< to which each tick adds a sample

    void add(qint64 ticksOfLap)
    {
        laps += ticksOfLap > 0 ? 1 : 0;
        ticks += ticksOfLap;
    }
};

/// Follows the cars of a session tick by tick and makes laps of what they drive.
///
/// The reader is the tree of the session info. For every tick call prepareTick(), getRawData() and
/// processData(), then take the lap if isMyLapReady(). It serves one recording, on one thread.
/// Operations on a car index are unchecked where they do not say otherwise.
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
    const CarTracker &car(int car);

    // --- Session and cars

    /// Adds the session-info text, zero-terminated Latin-1, to the tree.
    void setYaml(const char *text);
    /// Takes the player's car and the names of drivers and teams from the tree. True when a name
    /// changed.
    bool updateCarList();
    /// True: a recording is read, and all variables belong to the player's car. False: a simulator
    /// runs, and the elements of "CarIdx" variables are spread over the cars.
    void setDiskLoading(bool on);

    /// Index of the player's car as the session info gives it; -1 when not known.
    int myCarIdx() const { return m_myCarIdx; }
    /// True when myCarIdx() is the index of a car.
    bool hasMyCar() const { return isCar(m_myCarIdx); }
    QString &driverName(int car);
    QString &teamName(int car);
    /// The host's selection of a car; an index without a car is ignored.
    void setCarActive(int car, bool on);
    /// False for an index without a car.
    bool isCarActive(int car) const;

    // --- Ticks

    /// Promises that \a header, \a varHeaders and the session info stay as they are for as long as
    /// they are handed to getRawData(), that references from sample(), driverName(), teamName(),
    /// lap() and myLap() are not kept over prepareTick(), getRawData() or processData(), and that
    /// copies and channels of a lap are kept of finished laps only. Records are then collected and
    /// turned into channels many at a time; every operation gives what it gives without the
    /// promise. setYaml() and updateCarList() may still be called.
    void compileVariables(const irsdk_header *header, const irsdk_varHeader *varHeaders);

    /// From the first tick until resize(), laps of collected records are followed and closed as
    /// ever, but hold nothing: only isMyLapReady() and collectedLaps() tell of them. Until then all
    /// records have to be of the compiled table, and nobody may look at a car, a sample or a lap.
    void startCounting();

    /// Makes the current tick the previous one and drops its values.
    void prepareTick();
    /// Takes the values of one record: \a data holds \a header's bufLen bytes and is described by
    /// \a header's numVars variables. Names and units are those of the first table ever handed in.
    void getRawData(const irsdk_header *header, const irsdk_varHeader *varHeaders, char *data);
    /// Moves all cars on by the tick that was taken.
    void processData();
    /// Never.
    bool isSessionRestarted() const { return false; }

    /// The values of the current tick.
    ZEP::Sample &sample(int car);
    /// True when the car has a place on the lap.
    bool isCarInWorld(int car) const;

    // --- Laps

    bool isLapReady(int car) const { return m_cars.at(car).lapReady; }
    /// True when a lap of the player's car was completed at this tick; take it from myLap().
    bool isMyLapReady() const { return hasMyCar() && isLapReady(m_myCarIdx); }
    /// The lap that the car records or has just finished.
    ZEP::Lap &lap(int car);
    /// The lap of the player's car. Without such a car a new empty lap, which the caller owns.
    ZEP::Lap *myLap();
    /// What compileVariables() has made of the player's ticks, finished laps included.
    CollectedLaps collectedLaps() const;

    /// Closes the car's lap and makes it ready to be taken. An empty lap is left alone.
    void processLap(int car, bool completed);
    /// Closes the lap of the player's car, if there is one.
    void processMyLap(bool completed);

    // --- The steps of closing a lap

    /// Copies the session info of a car onto \a lap.
    void getSessionInfo(int car, ZEP::Lap *lap);
    /// Removes the channels that are of no use within a lap.
    void cleanupLap(int car);
    /// Corrects and derives channels.
    void preprocessLap(int car);
    /// Repairs the start of a channel that counts from zero in every lap: the ticks that still
    /// carry the count of the lap before get a value in proportion to the lap fraction.
    void normalizeChannelBeginning(int car, const QString &channelName);

    /// The id of a session: \a text padded with zeros on the left to the digits of a UUID; null for
    /// text that makes none.
    static QUuid sessionId(const QString &text);

private:
    bool isCar(int car) const { return isIbtCarIdx(car, m_cars.size()); }

    void cacheNames(const irsdk_header &header, const irsdk_varHeader *varHeaders);
    void extract(const irsdk_header &header, const irsdk_varHeader *varHeaders, const char *data);
    void copySessionClock();

    void followCar(int car, int sessionNumber);
    int lapsComplete(int car, int sessionNumber) const;
    void recordTick(int car);

    int sessionNumber() const;
    QString sessionTypeName(int sessionNumber) const;
    ZEP::Session sessionType(int sessionNumber);
    const CarSessionInfo &sessionInfo(int car, int sessionNumber);
    CarSessionInfo readSessionInfo(int car) const;
    void forgetSessionInfo();

    void addMotionChannels(ZEP::Lap *lap) const;

    bool isCompiled() const { return m_header != nullptr; }
    const char *record(int car) const;
    void spreadTick();
    void flushLap();
    void flushLaps();
    void forgetIdleCars();

    QVector<QString> m_varNames;
    QVector<QString> m_varUnits;
    QVector<CarTracker> m_cars;
    qint32 m_myCarIdx = -1;
    [[maybe_unused]] bool m_reserved = false; ///< belongs to another source
    bool m_diskLoading = false;

    // What compileVariables() makes possible. The values of the player's tick are either in m_tick,
    // and the car's sample is empty, or they are in the sample.
    const irsdk_header *m_header = nullptr;
    const irsdk_varHeader *m_varHeaders = nullptr;
    std::optional<VariableLayout> m_layout; ///< made of the table when the first record comes
    PendingTick m_tick;
    bool m_mySampleIsEmpty = false; ///< known to be empty
    bool m_othersAreIdle = false; ///< known to be idle, all cars but the player's
    bool m_isCounting = false; ///< records are counted, not kept
    CollectedLaps m_finishedLaps;

    struct KnownSessionType {
        int sessionNumber;
        ZEP::Session type;
    };
    std::optional<KnownSessionType> m_sessionType;
    std::optional<CarSessionInfo> m_sessionInfo; ///< of the last lap that was closed
};
