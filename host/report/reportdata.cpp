#include "host/report/reportdata.h"

#include "analysis/lapsummary.h"
#include "analysis/sessionsummary.h"
#include "analysis/ticktrace.h"
#include "host/report/lapjson.h"
#include "host/report/samplepacker.h"
#include "host/text/summaryjson.h"
#include "writers/jsonvalues.h"

#include <QFileInfo>
#include <QMap>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

namespace {

// Everything is drawn by distance or time, so these are stored more finely than other channels.
constexpr double AxisParts = 1e6;
constexpr double PositionParts = 1e5;
constexpr double ChannelParts = 2e4;

constexpr double AnyStep = std::numeric_limits<double>::infinity();
/// A tenth of a metre, in degrees of latitude; a degree of longitude is not longer than that.
constexpr double PositionStep = 9e-7;

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
    json.insert(QStringLiteral("tyresSeenAtStops"), areTyresSeenAtStops(file.laps));
    json.insert(QStringLiteral("values"), values);
    json.insert(QStringLiteral("messages"), messages);
    return json;
}

QJsonObject lapOfPage(const ZEP::Lap &lap, const TickTrace &trace, int session, int index,
                      bool tyresSeenAtStops)
{
    return {{QStringLiteral("session"), session},
            {QStringLiteral("number"), index + 1},
            {QStringLiteral("noTime"),
             lapTime(lap) ? QJsonValue() : QJsonValue(missingTimeReason(lap))},
            {QStringLiteral("completed"), lap.getCompleted()},
            {QStringLiteral("fromLine"), trace.isFromLine},
            {QStringLiteral("fuel"), fuelJson(lap)},
            {QStringLiteral("tyres"), tyresJson(lap, tyresSeenAtStops)}};
}

/// The same text for laps of one track and configuration.
QString trackOf(const ZEP::Lap &lap)
{
    return lap.getTrackName() % QLatin1Char('\n') % lap.getTrackConfig();
}

} // namespace

ReportData::ReportData()
    : m_columns{{{"distance"}, AxisParts, AnyStep, "m", {}},
                {{"time"}, AxisParts, AnyStep, "s", {}},
                {{"lat"}, PositionParts, PositionStep, "deg", {}},
                {{"lon"}, PositionParts, PositionStep, "deg", {}}}
{
    for (const char *name : {"speed", "throttle", "brake", "gear", "rpm", "steeringwheelangle"})
        m_columns.append({{QString::fromLatin1(name)}, ChannelParts, AnyStep, {}, {}});
}

void ReportData::add(const ChosenLaps &chosen, const QVector<ChosenChannel> &further)
{
    const Laps &all = chosen.file.laps;
    const ZEP::Lap &representative = *all[std::size_t(representativeLap(all))];
    const double length = trackLength(representative);
    const QVector<LapSummary> summaries = summarize(all);
    const int session = sessionOf(chosen, length);
    const bool tyresSeenAtStops = areTyresSeenAtStops(all);
    QVector<ChosenChannel> channels = further;
    for (int i = Channels; i < m_columns.size(); ++i)
        channels.append(m_columns.at(i).channel);
    for (const int index : chosen.indices) {
        const QPair<int, int> identity(session, index);
        if (m_known.contains(identity))
            continue;
        m_known.insert(identity);
        const ZEP::Lap &lap = chosen.lap(index);
        const TickTrace trace = tickTrace(lap, length);
        m_laps.append({session, index, trackOf(representative), summaries.at(index), lap.size(),
                       lapOfPage(lap, trace, session, index, tyresSeenAtStops)});
        QJsonObject &json = m_laps.last().json;
        const QJsonObject summary = lapSummaryJson(lap, summaries.at(index));
        for (auto member = summary.begin(); member != summary.end(); ++member)
            json.insert(member.key(), member.value());
        m_columns[Distance].laps.append(trace.distance);
        m_columns[Time].laps.append(trace.time);
        m_columns[Latitude].laps.append(trace.latitude);
        m_columns[Longitude].laps.append(trace.longitude);
        for (const ChosenChannel &channel : qAsConst(channels))
            addSamples(lap, channel);
    }
}

/// The index of the session of \a chosen, which is added unless its file has been before.
int ReportData::sessionOf(const ChosenLaps &chosen, double trackLength)
{
    QString file = QFileInfo(chosen.file.fileName).canonicalFilePath();
    if (file.isEmpty())
        file = chosen.file.fileName;
    const int known = m_files.indexOf(file);
    if (known >= 0)
        return known;
    m_files.append(file);
    m_sessions.append(sessionOfPage(chosen, trackLength));
    return m_files.size() - 1;
}

void ReportData::addSamples(const ZEP::Lap &lap, const ChosenChannel &channel)
{
    const auto recorded = channel.in(lap);
    if (!recorded)
        return;
    auto *column = std::find_if(m_columns.begin() + Channels, m_columns.end(),
                                [&channel](const Column &other) {
                                    return other.channel.name == channel.name
                                        && other.channel.isCalculated == channel.isCalculated;
                                });
    if (column == m_columns.end())
        column = m_columns.insert(column, {channel, ChannelParts, AnyStep, {}, {}});
    if (column->laps.isEmpty())
        column->unit = recorded->unit();
    column->laps.resize(m_laps.size());
    Samples &samples = column->laps.last();
    samples.fill(std::numeric_limits<double>::quiet_NaN(), lap.size());
    for (int i = 0; i < samples.size(); ++i) {
        if (recorded->isValid(i))
            samples[i] = recorded->sample(i);
    }
}

/// The indices of the laps, session by session, in the order of their files.
QVector<int> ReportData::order() const
{
    QVector<int> order(m_laps.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [this](int a, int b) {
        return std::pair(m_laps.at(a).session, m_laps.at(a).index)
            < std::pair(m_laps.at(b).session, m_laps.at(b).index);
    });
    return order;
}

/// Laps of one track are compared, whatever file they are in.
QJsonArray ReportData::lapsJson(const QVector<int> &order) const
{
    QVector<LapSummary> summaries;
    for (const int i : order)
        summaries.append(m_laps.at(i).summary);
    QMap<QString, QVector<LapSummary *>> tracks;
    QMap<int, QVector<LapSummary *>> files;
    for (int i = 0; i < order.size(); ++i) {
        tracks[m_laps.at(order.at(i)).track].append(&summaries[i]);
        files[m_laps.at(order.at(i)).session].append(&summaries[i]);
    }
    QVector<bool> isBestOfFile;
    for (const auto &laps : qAsConst(files))
        compareTimes(laps);
    for (const LapSummary &summary : qAsConst(summaries))
        isBestOfFile.append(summary.isBest);
    for (const auto &laps : qAsConst(tracks))
        compareTimes(laps);

    QJsonArray laps;
    for (int i = 0; i < order.size(); ++i) {
        QJsonObject json = m_laps.at(order.at(i)).json;
        const LapSummary &summary = summaries.at(i);
        json.insert(QStringLiteral("gap"), jsonTime(summary.gap));
        json.insert(QStringLiteral("best"), summary.isBest);
        json.insert(QStringLiteral("bestOfFile"), isBestOfFile.at(i));
        json.insert(QStringLiteral("timed"), summary.isTimed());
        laps.append(json);
    }
    return laps;
}

QJsonObject ReportData::packed(const Column &column, const QVector<int> &order,
                               QByteArray &bytes) const
{
    QJsonArray packings;
    int next = 0;
    for (int session = 0; session < m_sessions.size(); ++session) {
        QVector<Samples> laps;
        for (; next < order.size() && m_laps.at(order.at(next)).session == session; ++next) {
            const int lap = order.at(next);
            laps.append(column.laps.value(lap));
            if (laps.last().isEmpty())
                laps.last().fill(std::numeric_limits<double>::quiet_NaN(), m_laps.at(lap).size);
        }
        const SamplePacker packer(laps, column.parts, column.longestStep);
        bytes += packer.bytes();
        packings.append(QJsonObject{{QStringLiteral("base"), packer.base()},
                                    {QStringLiteral("step"), packer.step()},
                                    {QStringLiteral("whole"), packer.isWhole()}});
    }
    return {{QStringLiteral("name"), column.channel.name},
            {QStringLiteral("calculated"), column.channel.isCalculated},
            {QStringLiteral("unit"), column.unit},
            {QStringLiteral("packings"), packings}};
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
    const QVector<int> order = this->order();
    QByteArray bytes; // in the order of the columns
    QJsonArray places;
    QJsonArray channels;
    for (int i = 0; i < m_columns.size(); ++i) {
        const Column &column = m_columns.at(i);
        if (i < Channels)
            places.append(packed(column, order, bytes));
        else if (!column.laps.isEmpty())
            channels.append(packed(column, order, bytes));
    }
    constexpr int best = 9;
    constexpr int lengthPrefix = 4; // bytes that qCompress() puts before the zlib stream
    const QByteArray samples = qCompress(bytes, best).mid(lengthPrefix).toBase64();
    return {{QStringLiteral("sessions"), m_sessions},
            {QStringLiteral("laps"), lapsJson(order)},
            {QStringLiteral("places"), places},
            {QStringLiteral("channels"), channels},
            {QStringLiteral("samples"), QString::fromLatin1(samples)}};
}
