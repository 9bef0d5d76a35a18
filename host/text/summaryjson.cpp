#include "host/text/summaryjson.h"

#include "writers/jsonvalues.h"

QJsonObject sessionJson(const SessionSummary &session)
{
    return {{QStringLiteral("track"), jsonText(session.track)},
            {QStringLiteral("configuration"), jsonText(session.configuration)},
            {QStringLiteral("car"), jsonText(session.car)},
            {QStringLiteral("driver"), jsonText(session.driver)},
            {QStringLiteral("session"), jsonText(session.session)},
            {QStringLiteral("date"), jsonDateTime(session.date)},
            {QStringLiteral("dateOfFile"), session.isFileDate}};
}

namespace {

QJsonValue partJson(const std::optional<LapPart> &part)
{
    if (!part)
        return QJsonValue();
    return QJsonObject{{QStringLiteral("begin"), part->begin}, {QStringLiteral("end"), part->end}};
}

} // namespace

QJsonObject lapSummaryJson(const ZEP::Lap &lap, const LapSummary &summary)
{
    return {{QStringLiteral("lapInSession"), lap.getLapInSession()},
            {QStringLiteral("stint"), lap.getStintInSession()},
            {QStringLiteral("lapInStint"), lap.getLapInStint()},
            {QStringLiteral("kind"), lapKindName(summary.kind)},
            {QStringLiteral("time"), jsonTime(summary.time)},
            {QStringLiteral("gap"), jsonTime(summary.gap)},
            {QStringLiteral("best"), summary.isBest},
            {QStringLiteral("part"), partJson(summary.part)},
            {QStringLiteral("missingBefore"), summary.missingBefore},
            {QStringLiteral("samples"), lap.size()},
            {QStringLiteral("topSpeed"), jsonQuantity(summary.topSpeed)},
            {QStringLiteral("fuelUsed"), jsonQuantity(summary.fuelUsed)},
            {QStringLiteral("fuelAdded"), jsonQuantity(summary.fuelAdded)}};
}
