#include "inspect/tickgaps.h"

#include "ibt/ibtelements.h"
#include "inspect/findinglist.h"

#include <cmath>
#include <cstddef>
#include <cstring>

namespace {

/// From so many ticks between two records, some are missing.
constexpr double Tolerance = 1.5;
/// Below so many ticks between them, two records are of one tick.
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
            offset = variable.type == type && variable.count == 1
                    && !ibtReadableElements(variable, header.bufLen).isEmpty()
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
    : m_layout{header.varBuf[0].bufOffset, header.bufLen,
               offsetOf(header, table, "SessionTime", irsdk_double),
               offsetOf(header, table, "SessionNum", irsdk_int)},
      m_tickRate(header.tickRate)
{
}

void TickGaps::add(const char *record)
{
    if (!isKnown())
        return;
    const qint64 number = m_count++;
    const double time = load<double>(record + m_layout.timeOffset);
    if (!(std::abs(time) < EndOfTime)) {
        if (m_firstUntimed < 0)
            m_firstUntimed = number;
        m_hasBefore = false;
        return;
    }
    const qint32 session =
        m_layout.sessionOffset < 0 ? 0 : load<qint32>(record + m_layout.sessionOffset);
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
    constexpr double atLeast = 0.1; // seconds, where the rate is unknown
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
    reportRate(findings);
    if (m_firstUntimed >= 0)
        findings->add(Finding(FindingKind::TimeUnusable,
                              QStringLiteral("%1 of %2 records have no usable time; the first of "
                                             "them is record %3")
                                  .arg(m_count - m_timed)
                                  .arg(m_count)
                                  .arg(m_firstUntimed + 1))
                          .at(m_layout.begin + m_firstUntimed * m_layout.recordSize));
    if (m_steps == 0 && m_returns.count == 0)
        report(findings, m_standstills, FindingKind::TimeStandstill,
               QStringLiteral("the time does not advance"));
    if (!isRateTooHigh())
        reportGaps(findings);
    report(findings, m_returns, FindingKind::TimeReturn, QStringLiteral("the time goes backwards"));
}

void TickGaps::reportRate(FindingList *findings) const
{
    QString problem;
    if (m_tickRate <= 0 && m_count > 1) {
        problem = QStringLiteral("the tick rate is %1, so missing ticks cannot be detected")
                      .arg(m_tickRate);
    } else if (isRateTooHigh() || isMostSteps(m_crowds)) {
        const Event &steps = isRateTooHigh() ? m_gaps : m_crowds;
        problem = QStringLiteral("the tick rate is %1 per second, but the records are %2 s apart")
                      .arg(m_tickRate)
                      .arg(steps.seconds / double(steps.count), 0, 'g', 3);
    } else {
        return;
    }
    findings->add(
        Finding(FindingKind::TickRate, problem).at(qint64(offsetof(irsdk_header, tickRate))));
}

void TickGaps::reportGaps(FindingList *findings) const
{
    const double ticks = (m_gaps.after - m_gaps.before) * m_tickRate - 1;
    report(findings, m_gaps, FindingKind::TimeGap,
           ticks < Tolerance ? QStringLiteral("a tick is missing")
                             : QStringLiteral("%1 ticks are missing").arg(ticks, 0, 'f', 0));
}

void TickGaps::report(FindingList *findings, const Event &event, FindingKind kind,
                      const QString &text) const
{
    if (event.count == 0)
        return;
    QString whole = text
        % QStringLiteral(" between record %1, at %2 s, and the next one, at %3 s")
              .arg(event.record)
              .arg(event.before, 0, 'g', 9)
              .arg(event.after, 0, 'g', 9);
    if (event.count > 1)
        whole += QStringLiteral("; there are %1 such places").arg(event.count)
            % (event.seconds == 0
                   ? QString()
                   : QStringLiteral(", %1 s in total").arg(std::abs(event.seconds), 0, 'g', 9));
    findings->add(Finding(kind, whole).at(m_layout.begin + event.record * m_layout.recordSize));
}
