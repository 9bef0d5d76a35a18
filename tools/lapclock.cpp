#include "tools/lapclock.h"

#include "tools/random.h"

#include <cstddef>

void LapClock::crossLine(double time)
{
    m_pendingLast = m_lap == 0 ? 0 : -1;
    if (m_running) {
        m_pendingLast = time - m_lineTime;
        m_trace.lapTime = m_pendingLast;
        m_lastTrace = m_trace;
        if (m_bestTrace.lapTime <= 0 || m_trace.lapTime < m_bestTrace.lapTime)
            m_bestTrace = m_trace;
    }
    ++m_lap;
    m_running = true;
    m_lineTime = time;
    m_trace = Trace();
    m_pending = true;
    m_pendingUntil = time + m_random.uniform(0.08, 0.5);
}

void LapClock::abandonLap()
{
    m_running = false;
    m_shown = false;
    m_pending = false;
    m_current = 0;
    m_elapsed = 0;
}

void LapClock::update(double time, double fraction)
{
    if (m_pending && time >= m_pendingUntil) {
        m_pending = false;
        m_shown = true;
        m_shownSince = m_lineTime;
        m_last = m_pendingLast;
        if (m_last > 0 && (m_best <= 0 || m_last < m_best)) {
            m_best = m_last;
            m_bestLap = m_lap - 1;
        }
    }
    if (m_shown)
        m_current = time - m_shownSince;
    if (!m_running)
        return;

    m_fraction = fraction;
    m_elapsed = time - m_lineTime;
    while (m_trace.reached < int(fraction * Places))
        m_trace.times[std::size_t(++m_trace.reached)] = m_elapsed;
}

double LapClock::delta(const Trace &trace) const
{
    if (!m_running || trace.lapTime <= 0)
        return 0;
    const double place = m_fraction * Places;
    const std::size_t first = std::size_t(place);
    if (first >= Places)
        return 0;
    const double next = first + 1 < Places ? trace.times[first + 1] : trace.lapTime;
    const double then = trace.times[first] + (next - trace.times[first]) * (place - double(first));
    return m_elapsed - then;
}
