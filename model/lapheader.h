#pragma once

#include "model/dynamicdata.h"

#include <QDateTime>
#include <QString>
#include <QTime>
#include <QUuid>
#include <QVariant>

namespace ZEP {

/// Kind of session. Hosts store the numbers.
enum Session : qint32 {
    SessionNotSet = -1,
    SessionOfflineTesting = 0,
    SessionPractice = 1,
    SessionQualify = 2,
    SessionWarmup = 3,
    SessionRace = 5, ///< 4 is not used by recordings
};

/// Kind of lap. Hosts store the numbers.
enum LapType : qint32 {
    LapTypeNotSet = -1,
    LapTypeOutLap = 0, ///< the first lap of a stint
    LapTypeTimed = 1, ///< a later lap of a stint
};

/// Who drove a lap, where, in which car and session, when and how fast, and where it was read from.
/// Besides these fields, which hosts know by name, it has an open set of named values (track,
/// weather, car, driver).
class LapHeader : public DynamicData
{
public:
    /// The lap time of a lap without a valid one, in milliseconds: hosts show 00:59:59.000 as none.
    static constexpr int NoLapTime = 3599000;

    QUuid getLapId() const { return m_lapId; }
    void setLapId(const QUuid &lapId) { m_lapId = lapId; }

    /// Shared by all laps of a stint.
    QUuid getStintId() const { return m_stintId; }
    void setStintId(const QUuid &stintId) { m_stintId = stintId; }

    /// The car as its source knows it (the iRacing car index); invalid if not set.
    QVariant getCarId() const { return m_carId; }
    void setCarId(const QVariant &carId) { m_carId = carId; }

    QUuid getSessionId() const { return m_sessionId; }
    void setSessionId(const QUuid &sessionId) { m_sessionId = sessionId; }

    int getLapInSession() const { return m_lapInSession; }
    void setLapInSession(int lapInSession) { m_lapInSession = lapInSession; }

    int getLapInStint() const { return m_lapInStint; }
    void setLapInStint(int lapInStint) { m_lapInStint = lapInStint; }

    int getStintInSession() const { return m_stintInSession; }
    void setStintInSession(int stintInSession) { m_stintInSession = stintInSession; }

    ZEP::Session getSession() const { return m_session; }
    void setSession(const ZEP::Session &session) { m_session = session; }

    QString getDriverName() const { return m_driverName; }
    void setDriverName(const QString &driverName) { m_driverName = driverName; }

    /// False for a lap that was still being driven when the recording ended.
    bool getCompleted() const { return m_completed; }
    void setCompleted(bool completed) { m_completed = completed; }

    ZEP::LapType getLapType() const { return m_lapType; }
    void setLapType(const ZEP::LapType &lapType) { m_lapType = lapType; }

    /// Time of day from 00:00:00.000, in milliseconds; null if not set.
    QTime getLapTime() const { return m_lapTime; }
    void setLapTime(const QTime &lapTime) { m_lapTime = lapTime; }

    QString getFileName() const { return m_fileName; }
    void setFileName(const QString &fileName) { m_fileName = fileName; }

    QString getTrackName() const { return m_trackName; }
    void setTrackName(const QString &trackName) { m_trackName = trackName; }

    /// Layout of the track.
    QString getTrackConfig() const { return m_trackConfig; }
    void setTrackConfig(const QString &trackConfig) { m_trackConfig = trackConfig; }

    /// Model of the car.
    QString getCarName() const { return m_carName; }
    void setCarName(const QString &carName) { m_carName = carName; }

    /// Where the data comes from (a simulator, a logger).
    QString getSource() const { return m_source; }
    void setSource(const QString &source) { m_source = source; }

    /// The plug-in that produced the lap.
    QString getPlugin() const { return m_plugin; }
    void setPlugin(const QString &plugin) { m_plugin = plugin; }

    /// When the lap was driven.
    QDateTime getDateTime() const { return m_dateTime; }
    void setDateTime(const QDateTime &dateTime) { m_dateTime = dateTime; }

private:
    QDateTime m_dateTime;
    QString m_driverName;
    QString m_trackName;
    QString m_trackConfig;
    QString m_carName;
    QString m_fileName;
    QTime m_lapTime;
    QString m_source;
    QString m_plugin;
    QUuid m_lapId;
    QUuid m_stintId;
    QVariant m_carId;
    QUuid m_sessionId;
    int m_lapInSession = 0;
    int m_lapInStint = 0;
    int m_stintInSession = 0;
    ZEP::Session m_session = SessionNotSet;
    ZEP::LapType m_lapType = LapTypeNotSet;
    bool m_completed = false;
};

} // namespace ZEP
