#include "inspect/tickgaps.h"

#include "ibt/ibtelements.h"
#include "ibt/lapvariables.h"
#include "inspect/findinglist.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>

namespace {

/// From so many ticks between two records, some are missing.
constexpr double Tolerance = 1.5;
/// Below so many ticks between them, two records are of one tick.
constexpr double LeastStep = 0.5;
/// Seconds that no session lasts.
constexpr double EndOfTime = 1e9;
/// Records from which the time between two is learned.
constexpr std::size_t EnoughToLearn = 256;
/// Places that are remembered.
constexpr int MostPlaces = 1000;

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

TickGaps::TickGaps(const irsdk_header &header, const irsdk_varHeader *table, Unsound unsound)
    : m_layout{header.varBuf[0].bufOffset,
               header.bufLen,
               offsetOf(header, table, "SessionTime", irsdk_double),
               offsetOf(header, table, lapVariableName(LapVariable::SessionNum), irsdk_int),
               offsetOf(header, table, "SessionUniqueID", irsdk_int),
               offsetOf(header, table, "SessionTick", irsdk_int)},
      m_unsound(std::move(unsound)), m_tickRate(header.tickRate),
      m_step(header.tickRate > 0 ? 1.0 / header.tickRate : 0)
{
}

void TickGaps::add(const char *record)
{
    if (!isKnown())
        return;
    Tick tick;
    tick.record = m_count++;
    tick.time = load<double>(record + m_layout.timeOffset);
    m_hasLast = std::abs(tick.time) < EndOfTime;
    if (!m_hasLast) {
        if (m_untimed++ == 0)
            m_firstUntimed = tick.record;
        m_unsound(tick.record, false);
        return;
    }
    if (m_layout.sessionOffset >= 0)
        tick.session = load<qint32>(record + m_layout.sessionOffset);
    if (m_layout.idOffset >= 0)
        tick.id = load<qint32>(record + m_layout.idOffset);
    if (m_layout.tickOffset >= 0)
        tick.tick = load<qint32>(record + m_layout.tickOffset);
    m_last = tick;
    if (m_isStepKnown) {
        follow(tick);
        return;
    }
    m_first.push_back(tick);
    if (m_first.size() == EnoughToLearn)
        learnStep();
}

void TickGaps::end(std::optional<double> endTime)
{
    if (!m_isStepKnown)
        learnStep();
    if (m_doubtful.empty())
        return;
    const Tick &last = m_doubtful.back();
    const double expected = m_trusted.time + double(last.record - m_trusted.record) * m_step;
    const auto isAt = [this](const std::optional<double> &time, double other) {
        return time && std::abs(*time - other) <= tolerance();
    };
    const bool isLater =
        isSameClock(m_trusted, last) && last.time > m_trusted.time && !isAt(endTime, expected);
    if (m_chain == m_doubtful.size() && (isLater || isAt(endTime, last.time)))
        believe();
    else
        giveUp(m_doubtful.size());
}

/// Learns the time between two records, and follows those from which it was learned.
void TickGaps::learnStep()
{
    std::vector<double> steps;
    for (std::size_t i = 1; i < m_first.size(); ++i) {
        if (isSameClock(m_first[i - 1], m_first[i]) && m_first[i].time > m_first[i - 1].time)
            steps.push_back(m_first[i].time - m_first[i - 1].time);
    }
    if (steps.size() > 1) {
        const auto middle = steps.begin() + std::ptrdiff_t(steps.size() / 2);
        std::nth_element(steps.begin(), middle, steps.end());
        const double step = *middle;
        const auto alike = std::count_if(steps.begin(), steps.end(), [step](double other) {
            return std::abs(other - step) < 0.2 * step;
        });
        // Otherwise the records themselves are not sound.
        const bool isLearned = 3 * alike >= 2 * std::ptrdiff_t(m_first.size() - 1);
        if (isLearned && (m_step == 0 || step > Tolerance * m_step || step < LeastStep * m_step)) {
            m_isRateWrong = m_tickRate > 0;
            m_step = step;
        }
    }
    m_isStepKnown = true;
    for (const Tick &tick : std::exchange(m_first, {}))
        follow(tick);
}

bool TickGaps::isSameClock(const Tick &one, const Tick &other)
{
    return one.session == other.session && one.id == other.id;
}

/// Whether no tick is missing from \a before to \a tick.
bool TickGaps::isNext(const Tick &before, const Tick &tick) const
{
    const double most = (double(tick.record - before.record - 1) + Tolerance) * m_step;
    return isSameClock(before, tick) && tick.time >= before.time
        && (m_step == 0 || tick.time - before.time <= most);
}

void TickGaps::follow(const Tick &tick)
{
    if (!m_hasTrusted) {
        trust(tick);
        m_hasTrusted = true;
        return;
    }
    if (isNext(m_trusted, tick)) {
        giveUp(m_doubtful.size());
        if (tick.time > m_trusted.time)
            m_hasSteps = true;
        else
            addStandstill(tick);
        trust(tick);
        return;
    }
    const bool isChained = !m_doubtful.empty() && isNext(m_doubtful.back(), tick)
        && tick.time - m_doubtful.back().time > LeastStep * m_step;
    m_doubtful.push_back(tick);
    m_chain = isChained ? m_chain + 1 : 1;
    if (isChained)
        believe();
}

void TickGaps::addStandstill(const Tick &tick)
{
    m_standstills.add(tick.record, m_trusted.time, tick.time);
    if (m_repeated.size() < MostPlaces)
        m_repeated.append(tick.record);
}

/// The last records in doubt follow each other, so the time has jumped there.
void TickGaps::believe()
{
    giveUp(m_doubtful.size() - m_chain);
    const Tick first = m_doubtful.front();
    const bool isAll = first.record == m_trusted.record + 1;
    if (isSameClock(m_trusted, first)) {
        if (first.time < m_trusted.time) {
            m_returns.add(first.record, m_trusted.time, first.time);
        } else if (isAll && m_tickRate > 0) {
            m_gaps.add(first.record, m_trusted.time, first.time);
            const qint64 records = m_layout.tickOffset >= 0
                ? qMax(qint64(0), qint64(first.tick) - m_trusted.tick - 1)
                : std::llround((first.time - m_trusted.time) / m_step) - 1;
            if (records > 0 && m_missing.size() < MostPlaces)
                m_missing.append({first.record, records});
            m_missingRecords += records;
        }
    }
    m_hasSteps = m_hasSteps || first.time > m_trusted.time;
    trust(m_doubtful.back());
    m_doubtful.clear();
}

void TickGaps::trust(const Tick &tick)
{
    constexpr int Most = 16; // of a weekend
    if ((!m_hasTrusted || tick.session != m_trusted.session) && m_sessions.size() < Most
        && !m_sessions.contains(tick.session))
        m_sessions.append(tick.session);
    m_trusted = tick;
}

/// The first \a count of the records in doubt do not belong where they are.
void TickGaps::giveUp(std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        Tick tick = m_doubtful[i];
        const bool isOther = tick.session != m_trusted.session;
        tick.session = m_trusted.session;
        m_unsound(tick.record, isOther && isNext(m_trusted, tick));
    }
    m_doubtful.erase(m_doubtful.begin(), m_doubtful.begin() + std::ptrdiff_t(count));
}

double TickGaps::tolerance() const
{
    constexpr double AtLeast = 0.1; // seconds, where the rate is unknown
    return m_step > 0 ? Tolerance * m_step : AtLeast;
}

bool TickGaps::endsAt(double time) const
{
    return m_hasLast && std::abs(time - m_last.time) <= tolerance();
}

void TickGaps::report(FindingList *findings) const
{
    reportRate(findings);
    if (m_untimed > 0)
        findings->add(Finding(FindingKind::TimeUnusable,
                              QStringLiteral("%1 of %2 records have no usable time; the first of "
                                             "them is record %3")
                                  .arg(m_untimed)
                                  .arg(m_count)
                                  .arg(m_firstUntimed + 1))
                          .at(m_layout.begin + m_firstUntimed * m_layout.recordSize));
    if (!m_hasSteps && m_returns.count == 0)
        report(findings, m_standstills, FindingKind::TimeStandstill,
               QStringLiteral("the time does not advance"));
    reportGaps(findings);
    report(findings, m_returns, FindingKind::TimeReturn, QStringLiteral("the time goes backwards"),
           QStringLiteral("the order of the records"));
}

void TickGaps::reportRate(FindingList *findings) const
{
    QString problem;
    if (m_tickRate <= 0 && m_count > 1)
        problem = QStringLiteral("the tick rate is %1, so missing ticks cannot be detected")
                      .arg(m_tickRate);
    else if (m_isRateWrong)
        problem = QStringLiteral("the tick rate is %1 per second, but the records are %2 s apart")
                      .arg(m_tickRate)
                      .arg(m_step, 0, 'g', 3);
    else
        return;
    findings->add(
        Finding(FindingKind::TickRate, problem).at(qint64(offsetof(irsdk_header, tickRate))));
}

void TickGaps::reportGaps(FindingList *findings) const
{
    const double ticks = m_step > 0 ? (m_gaps.after - m_gaps.before) / m_step - 1 : 0;
    report(findings, m_gaps, FindingKind::TimeGap,
           ticks < Tolerance ? QStringLiteral("a tick is missing")
                             : QStringLiteral("%1 ticks are missing").arg(ticks, 0, 'f', 0));
}

void TickGaps::report(FindingList *findings, const Event &event, FindingKind kind,
                      const QString &text, const QString &lost) const
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
    Finding finding(kind, whole);
    if (!lost.isEmpty())
        finding.loses(lost);
    findings->add(finding.at(m_layout.begin + event.record * m_layout.recordSize));
}
