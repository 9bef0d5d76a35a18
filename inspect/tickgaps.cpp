#include "inspect/tickgaps.h"

#include "inspect/findinglist.h"

#include <cmath>
#include <cstddef>
#include <cstring>

namespace {

/// Ticks from one record to the next, from which on some are missing between them.
constexpr double Tolerance = 1.5;
/// Ticks below which two records are of one tick.
constexpr double LeastStep = 0.5;
/// Seconds that no session lasts.
constexpr double EndOfTime = 1e9;

/// The offset of a single element of \a type called \a name that lies in the record, else -1.
int offsetOf(const irsdk_header &header, const irsdk_varHeader *table, const char *name,
             qint32 type)
{
    int offset = -1;
    for (int i = 0; i < header.numVars; ++i) {
        const irsdk_varHeader &variable = table[i];
        if (qstrnicmp(variable.name, name, sizeof variable.name) == 0)
            offset = variable.type == type && variable.count == 1 && variable.offset >= 0
                    && variable.offset <= qint64(header.bufLen) - irsdk_varTypeSize(type)
                ? variable.offset
                : -1;
    }
    return offset;
}

template <typename T>
T load(const char *place)
{
    T value;
    std::memcpy(&value, place, sizeof value);
    return value;
}

} // namespace

void TickGaps::Event::add(qint64 atRecord, double from, double to)
{
    if (count++ == 0) {
        record = atRecord;
        before = from;
        after = to;
    }
    seconds += to - from;
}

TickGaps::TickGaps(const irsdk_header &header, const irsdk_varHeader *table)
    : m_begin(header.varBuf[0].bufOffset), m_recordSize(header.bufLen), m_tickRate(header.tickRate)
{
    m_timeOffset = offsetOf(header, table, "SessionTime", irsdk_double);
    m_sessionOffset = offsetOf(header, table, "SessionNum", irsdk_int);
}

void TickGaps::add(const char *record)
{
    if (!isKnown())
        return;
    const qint64 number = m_count++;
    const double time = load<double>(record + m_timeOffset);
    if (!(std::abs(time) < EndOfTime)) {
        if (m_firstUntimed < 0)
            m_firstUntimed = number;
        m_hasBefore = false;
        return;
    }
    const qint32 session = m_sessionOffset < 0 ? 0 : load<qint32>(record + m_sessionOffset);
    // Every session has a clock of its own.
    if (m_hasBefore && session == m_session) {
        const double ticks = (time - m_time) * m_tickRate;
        m_steps += time > m_time ? 1 : 0;
        if (time < m_time)
            m_returns.add(number, m_time, time);
        else if (!(time > m_time))
            m_standstills.add(number, m_time, time);
        else if (m_tickRate > 0 && ticks > Tolerance)
            m_gaps.add(number, m_time, time);
        else if (m_tickRate > 0 && ticks < LeastStep)
            m_crowds.add(number, m_time, time);
    }
    m_time = time;
    m_session = session;
    m_hasBefore = true;
    ++m_timed;
}

bool TickGaps::endsAt(double time) const
{
    constexpr double atLeast = 0.1; // seconds, where the rate tells nothing
    return hasLast()
        && std::abs(time - m_time) <= (m_tickRate > 0 ? Tolerance / m_tickRate : atLeast);
}

/// Too many to be exceptions.
bool TickGaps::isMostSteps(const Event &event) const
{
    constexpr qint64 few = 10;
    constexpr double most = 0.9;
    return m_steps >= few && double(event.count) > most * double(m_steps);
}

void TickGaps::report(FindingList *findings) const
{
    const QString apart =
        QStringLiteral("%1 ticks a second do not fit the records, which are %2 s apart");
    const auto meanOf = [](const Event &event) { return event.seconds / double(event.count); };
    const bool isTooFast = isMostSteps(m_gaps);
    if (m_tickRate <= 0 && m_count > 1)
        reportRate(findings,
                   QStringLiteral("%1 ticks a second are no rate, so nothing tells whether ticks "
                                  "are missing")
                       .arg(m_tickRate));
    else if (isTooFast || isMostSteps(m_crowds))
        reportRate(findings,
                   apart.arg(m_tickRate).arg(meanOf(isTooFast ? m_gaps : m_crowds), 0, 'g', 3));
    if (m_firstUntimed >= 0) {
        Finding finding;
        finding.kind = QStringLiteral("time-unusable");
        finding.offset = m_begin + m_firstUntimed * m_recordSize;
        finding.text =
            QStringLiteral("%1 of %2 records have no usable time, the first one is record %3")
                .arg(m_count - m_timed)
                .arg(m_count)
                .arg(m_firstUntimed + 1);
        findings->add(finding);
    }
    if (m_steps == 0 && m_returns.count == 0)
        report(findings, m_standstills, "time-standstill", QStringLiteral("the time stands still"));

    const double ticks = (m_gaps.after - m_gaps.before) * m_tickRate - 1;
    if (!isTooFast)
        report(findings, m_gaps, "time-gap",
               ticks < Tolerance ? QStringLiteral("a tick is missing")
                                 : QStringLiteral("%1 ticks are missing").arg(ticks, 0, 'f', 0));
    report(findings, m_returns, "time-return", QStringLiteral("the time runs backwards"));
}

void TickGaps::reportRate(FindingList *findings, const QString &problem) const
{
    Finding finding;
    finding.kind = QStringLiteral("tick-rate");
    finding.offset = qint64(offsetof(irsdk_header, tickRate));
    finding.text = problem;
    findings->add(finding);
}

void TickGaps::report(FindingList *findings, const Event &event, const char *kind,
                      const QString &text) const
{
    if (event.count == 0)
        return;
    Finding finding;
    finding.kind = QLatin1String(kind);
    finding.offset = m_begin + event.record * m_recordSize;
    finding.text = text
        % QStringLiteral(" between record %1, at %2 s, and the next one, at %3 s")
              .arg(event.record)
              .arg(event.before, 0, 'g', 9)
              .arg(event.after, 0, 'g', 9);
    if (event.count > 1)
        finding.text += QStringLiteral("; there are %1 such places").arg(event.count)
            % (event.seconds == 0
                   ? QString()
                   : QStringLiteral(", %1 s in all").arg(std::abs(event.seconds), 0, 'g', 9));
    findings->add(finding);
}
