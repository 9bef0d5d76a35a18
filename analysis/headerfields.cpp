#include "analysis/headerfields.h"

#include "analysis/lapsummary.h"
#include "analysis/laptime.h"
#include "analysis/sessionsummary.h"

QVector<HeaderField> headerFields(const ZEP::Lap &lap)
{
    const std::optional<int> time = lapTime(lap);
    const auto field = [](const char *title, const char *key, const QVariant &value) {
        return HeaderField{QString::fromLatin1(title), QString::fromLatin1(key), value};
    };
    const auto id = [](const QUuid &uuid) {
        return uuid.isNull() ? QString() : uuid.toString(QUuid::WithoutBraces);
    };
    return {
        field("Track", "track", lap.getTrackName()),
        field("Configuration", "configuration", lap.getTrackConfig()),
        field("Car", "car", lap.getCarName()),
        field("Car id", "carId", lap.getCarId().toString()),
        field("Driver", "driver", lap.getDriverName()),
        field("Session", "session", sessionName(lap.getSession())),
        field("Date", "date", lap.getDateTime()),
        field("Kind", "kind", lapKindName(lapKind(lap))),
        field("Lap time", "time", time ? QTime::fromMSecsSinceStartOfDay(*time) : QTime()),
        field("Completed", "completed", lap.getCompleted()),
        field("Lap in session", "lapInSession", lap.getLapInSession()),
        field("Stint in session", "stint", lap.getStintInSession()),
        field("Lap in stint", "lapInStint", lap.getLapInStint()),
        field("Samples", "samples", lap.size()),
        field("Channels", "channels",
              lap.getAvailableChannels().size() + lap.getAvailableCalculatedChannels().size()),
        field("Lap id", "lapId", id(lap.getLapId())),
        field("Stint id", "stintId", id(lap.getStintId())),
        field("Session id", "sessionId", id(lap.getSessionId())),
        field("Source", "source", lap.getSource()),
        field("Plug-in", "plugin", lap.getPlugin()),
        field("File", "fileName", lap.getFileName()),
    };
}
