#include "host/recordtimes.h"

#include "host/findinglist.h"

#include <cstddef>
#include <cstring>

namespace {

/// Ticks from one record to the next, from which on some are missing between them.
constexpr double Tolerance = 1.5;

/// The offset of a single element of \a type called \a name that lies in the record, else -1.
int offsetOf(const irsdk_header &header, const irsdk_varHeader *table, const char *name,
             qint32 type)
{
    int offset = -1;
    for (int i = 0; i < header.numVars; ++i) {
        const irsdk_varHeader &variable = table[i];
        if (qstrnicmp(variable.name, name, sizeof variable.name) == 0)
            offset = variable.type == type && variable.count == 1 && variable.offset >= 0
                    && variable.offset <= header.bufLen - irsdk_varTypeSize(type)
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

void RecordTimes::Event::add(qint64 atRecord, double from, double to)
{
    if (count++ == 0) {
        record = atRecord;
        before = from;
        after = to;
    }
    seconds += to - from;
}

RecordTimes::RecordTimes(const irsdk_header &header, const irsdk_varHeader *table)
    : m_begin(header.varBuf[0].bufOffset), m_recordSize(header.bufLen), m_tickRate(header.tickRate)
{
    m_timeOffset = offsetOf(header, table, "SessionTime", irsdk_double);
    m_sessionOffset = offsetOf(header, table, "SessionNum", irsdk_int);
}

void RecordTimes::add(const char *record)
{
    const double time = load<double>(record + m_timeOffset);
    const qint32 session = m_sessionOffset < 0 ? 0 : load<qint32>(record + m_sessionOffset);
    // Every session has a clock of its own.
    if (m_count > 0 && session == m_session) {
        if (time < m_time)
            m_returns.add(m_count, m_time, time);
        else if (m_tickRate > 0 && (time - m_time) * m_tickRate > Tolerance)
            m_gaps.add(m_count, m_time, time);
    }
    m_time = time;
    m_session = session;
    ++m_count;
}

void RecordTimes::report(FindingList *findings) const
{
    if (m_tickRate <= 0 && m_count > 1) {
        Finding finding;
        finding.kind = QStringLiteral("tick-rate");
        finding.offset = qint64(offsetof(irsdk_header, tickRate));
        finding.text = QStringLiteral("%1 ticks a second are no rate, so nothing tells whether "
                                      "ticks are missing")
                           .arg(m_tickRate);
        findings->add(finding);
    }
    const double ticks = (m_gaps.after - m_gaps.before) * m_tickRate - 1;
    report(findings, m_gaps, "time-gap",
           ticks < Tolerance ? QStringLiteral("a tick is missing")
                             : QStringLiteral("%1 ticks are missing").arg(ticks, 0, 'f', 0));
    report(findings, m_returns, "time-return", QStringLiteral("the time runs backwards"));
}

void RecordTimes::report(FindingList *findings, const Event &event, const char *kind,
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
        finding.text += QStringLiteral("; so it is in %1 places, %2 s in all")
                            .arg(event.count)
                            .arg(qAbs(event.seconds), 0, 'g', 9);
    findings->add(finding);
}
