#include "host/report/reportdata.h"

#include "analysis/lapsummary.h"
#include "analysis/sessionsummary.h"
#include "analysis/ticktrace.h"
#include "host/report/lapjson.h"
#include "host/report/samplepacker.h"
#include "host/text/summaryjson.h"
#include "writers/jsonvalues.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace {

// Everything is drawn by distance or time, so these are stored more finely than other channels.
constexpr double AxisParts = 1e6;
constexpr double PositionParts = 1e5;
constexpr double ChannelParts = 2e4;

/// Indexes of columns.
enum : int { Distance, Time, Latitude, Longitude, Channels };

QJsonObject sessionOfPage(const ChosenLaps &chosen, double length)
{
    const ImportedFile &file = chosen.file;
    const SessionSummary session = sessionSummary(file.laps, file.lastModified());
    const ZEP::Lap &lap = *file.laps[std::size_t(representativeLap(file.laps))];
    QJsonArray values;
    for (const QString &valueName : lap.valueNameList()) {
        QJsonObject value = jsonValue(lap.DynamicData::value(valueName));
        value.insert(QStringLiteral("name"), valueName);
        values.append(value);
    }
    QJsonArray messages;
    const QString name = QFileInfo(file.fileName).fileName();
    for (const ImportMessage &message : file.messages) {
        // People pass pages on, so a page must not reveal the folder of a recording.
        const QString text = QString(message.text).replace(file.fileName, name);
        messages.append(QJsonObject{{QStringLiteral("text"), text},
                                    {QStringLiteral("error"), message.isError}});
    }
    QJsonObject json = sessionJson(session);
    json.insert(QStringLiteral("file"), name);
    json.insert(QStringLiteral("trackLength"), length > 0 ? QJsonValue(length) : QJsonValue());
    json.insert(QStringLiteral("weather"), weatherJson(lap));
    json.insert(QStringLiteral("values"), values);
    json.insert(QStringLiteral("messages"), messages);
    return json;
}

QJsonObject lapOfPage(const ZEP::Lap &lap, const TickTrace &trace, int session, int index,
                      const LapSummary &summary)
{
    QJsonObject json = lapSummaryJson(lap, summary);
    json.insert(QStringLiteral("session"), session);
    json.insert(QStringLiteral("number"), index + 1);
    json.insert(QStringLiteral("noTime"),
                summary.time ? QJsonValue() : QJsonValue(missingTimeReason(lap)));
    json.insert(QStringLiteral("completed"), lap.getCompleted());
    json.insert(QStringLiteral("fromLine"), trace.isFromLine);
    json.insert(QStringLiteral("fuel"), fuelJson(lap));
    json.insert(QStringLiteral("tyres"), tyresJson(lap));
    return json;
}

} // namespace

ReportData::ReportData()
    : m_columns{{{"distance"}, AxisParts, "m", {}},
                {{"time"}, AxisParts, "s", {}},
                {{"lat"}, PositionParts, {}, {}},
                {{"lon"}, PositionParts, {}, {}}}
{
    for (const char *name : {"speed", "throttle", "brake", "gear", "rpm", "steeringwheelangle"})
        m_columns.append({{QString::fromLatin1(name)}, ChannelParts, {}, {}});
}

void ReportData::add(const ChosenLaps &chosen, const QVector<ChosenChannel> &further)
{
    const Laps &all = chosen.file.laps;
    const double length = trackLength(*all[std::size_t(representativeLap(all))]);
    const QVector<LapSummary> summaries = summarize(all);
    QVector<ChosenChannel> channels = further;
    for (int i = Latitude; i < m_columns.size(); ++i)
        channels.append(m_columns.at(i).channel);
    for (const int index : chosen.indices) {
        const ZEP::Lap &lap = chosen.lap(index);
        const TickTrace trace = tickTrace(lap, length);
        m_laps.append(lapOfPage(lap, trace, m_sessions.size(), index, summaries.at(index)));
        m_sizes.append(lap.size());
        m_columns[Distance].laps.append(trace.distance);
        m_columns[Time].laps.append(trace.time);
        for (const ChosenChannel &channel : qAsConst(channels))
            addSamples(lap, channel);
    }
    m_sessions.append(sessionOfPage(chosen, length));
}

void ReportData::addSamples(const ZEP::Lap &lap, const ChosenChannel &channel)
{
    const auto recorded = channel.in(lap);
    if (!recorded)
        return;
    auto column = std::find_if(m_columns.begin() + Latitude, m_columns.end(),
                               [&channel](const Column &other) {
                                   return other.channel.name == channel.name
                                       && other.channel.isCalculated == channel.isCalculated;
                               });
    if (column == m_columns.end())
        column = m_columns.insert(column, {channel, ChannelParts, {}, {}});
    if (column->laps.isEmpty())
        column->unit = recorded->unit();
    column->laps.resize(m_sizes.size());
    Samples &samples = column->laps.last();
    samples.fill(std::numeric_limits<double>::quiet_NaN(), lap.size());
    for (int i = 0; i < samples.size(); ++i) {
        if (recorded->isValid(i))
            samples[i] = recorded->sample(i);
    }
}

QJsonObject ReportData::packed(const Column &column, QByteArray &bytes) const
{
    QVector<Samples> laps = column.laps;
    laps.resize(m_sizes.size());
    for (int i = 0; i < laps.size(); ++i) {
        if (laps.at(i).isEmpty())
            laps[i].fill(std::numeric_limits<double>::quiet_NaN(), m_sizes.at(i));
    }
    const SamplePacker packer(laps, column.parts);
    bytes += packer.bytes();
    return {{QStringLiteral("name"), column.channel.name},
            {QStringLiteral("calculated"), column.channel.isCalculated},
            {QStringLiteral("unit"), column.unit},
            {QStringLiteral("base"), packer.base()},
            {QStringLiteral("step"), packer.step()},
            {QStringLiteral("whole"), packer.isWhole()}};
}

QString ReportData::title() const
{
    const QJsonObject session = m_sessions.first().toObject();
    QStringList parts;
    for (const char *key : {"track", "configuration", "car"}) {
        const QString part = session.value(QLatin1String(key)).toString().trimmed();
        if (!part.isEmpty())
            parts.append(part);
    }
    return parts.join(QLatin1String(", "));
}

QJsonObject ReportData::json() const
{
    QByteArray bytes; // in the order of the columns
    QJsonArray places;
    QJsonArray channels;
    for (int i = 0; i < m_columns.size(); ++i) {
        const Column &column = m_columns.at(i);
        if (i < Channels)
            places.append(packed(column, bytes));
        else if (!column.laps.isEmpty())
            channels.append(packed(column, bytes));
    }
    constexpr int best = 9;
    constexpr int lengthPrefix = 4; // bytes that qCompress() puts before the zlib stream
    const QByteArray samples = qCompress(bytes, best).mid(lengthPrefix).toBase64();
    return {{QStringLiteral("sessions"), m_sessions},
            {QStringLiteral("laps"), m_laps},
            {QStringLiteral("places"), places},
            {QStringLiteral("channels"), channels},
            {QStringLiteral("samples"), QString::fromLatin1(samples)}};
}
