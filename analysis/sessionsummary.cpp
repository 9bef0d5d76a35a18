#include "analysis/sessionsummary.h"

#include "analysis/lapsummary.h"

QString sessionName(ZEP::Session session)
{
    switch (session) {
    case ZEP::SessionOfflineTesting:
        return QStringLiteral("offline testing");
    case ZEP::SessionPractice:
        return QStringLiteral("practice");
    case ZEP::SessionQualify:
        return QStringLiteral("qualifying");
    case ZEP::SessionWarmup:
        return QStringLiteral("warm-up");
    case ZEP::SessionRace:
        return QStringLiteral("race");
    case ZEP::SessionNotSet:
        break;
    }
    return QString();
}

SessionSummary sessionSummary(const Laps &laps, const QDateTime &fileDate)
{
    const ZEP::Lap &lap = *laps[std::size_t(representativeLap(laps))];
    SessionSummary summary;
    summary.track = lap.getTrackName();
    summary.configuration = lap.getTrackConfig();
    summary.car = lap.getCarName();
    summary.driver = lap.getDriverName();
    summary.session = lap.value(QStringLiteral("Session name")).value.toString();
    if (summary.session.isEmpty())
        summary.session = sessionName(lap.getSession());
    summary.date = lap.getDateTime();
    summary.isFileDate = !summary.date.isValid();
    if (summary.isFileDate)
        summary.date = fileDate;
    return summary;
}
