#include "host/text/progress.h"

#include "host/text/displaytext.h"
#include "host/text/terminal.h"
#include "host/text/textwidth.h"

#include <QStringList>

#include <algorithm>
#include <numeric>

Progress::Progress(Terminal &terminal, const QVector<qint64> &sizes)
    : m_terminal(terminal), m_sizes(sizes)
{
    m_state.files = sizes.size();
    m_state.bytes = std::accumulate(sizes.begin(), sizes.end(), qint64(0));
    m_clock.start();
    show();
}

Progress::~Progress()
{
    m_terminal.setStatus(QString());
}

void Progress::finishFile(int index)
{
    ++m_state.doneFiles;
    m_state.doneBytes += m_sizes.at(index);
    m_state.milliseconds = m_clock.elapsed();
    show();
}

void Progress::show()
{
    m_terminal.setStatus(line(m_state, m_terminal.statusWidth()));
}

QString Progress::line(const State &state, int width)
{
    constexpr int longestBar = 30;
    constexpr int shortestBar = 5;
    constexpr double bytesPerMegabyte = 1e6;
    const double share = state.bytes > 0 ? double(state.doneBytes) / double(state.bytes) : 0;
    QStringList parts{QStringLiteral("%1 %").arg(int(share * 100), 3),
                      QStringLiteral("%1 of %2 files").arg(state.doneFiles).arg(state.files)};
    if (state.doneBytes > 0 && state.milliseconds > 0) {
        const double bytesPerSecond = double(state.doneBytes) * 1000 / double(state.milliseconds);
        const double left = double(state.bytes - state.doneBytes) / bytesPerSecond;
        parts.append(QStringLiteral("%1 MB/s").arg(bytesPerSecond / bytesPerMegabyte, 0, 'f', 1));
        parts.append(formatDuration(qint64(left + 0.5)) % QLatin1String(" left"));
    }
    const QString text = parts.join(QLatin1String("  "));
    // The last column stays free: a terminal may go to the next line after it.
    const int bar = std::min(longestBar, width - int(text.size()) - 4);
    if (bar < shortestBar)
        return elided(text, std::max(1, width));
    const int full = int(share * bar);
    return QLatin1Char('[') % QString(full, QLatin1Char('#'))
        % QString(bar - full, QLatin1Char('-')) % QLatin1String("] ") % text;
}
