#include "host/text/terminal.h"

#include "host/text/escapes.h"
#include "host/text/textwidth.h"
#include "writers/outputfile.h"

#include <QByteArray>
#include <QtGlobal>

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

/// Set for the processes that the program starts: "WIDTH" or "WIDTH coloured".
constexpr char ForTerminal[] = "ZEPIMPORT_FOR_TERMINAL";

/// Columns of the terminal at \a descriptor; 0 if it is none.
int terminalWidth(int descriptor)
{
    winsize size{};
    return isatty(descriptor) != 0 && ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool isDumb()
{
    return qgetenv("TERM") == "dumb";
}

} // namespace

Terminal::Terminal()
{
    if (isatty(STDERR_FILENO) != 0 && !isDumb()) {
        constexpr int usualWidth = 80; // of a terminal that does not report it
        const int width = terminalWidth(STDERR_FILENO);
        m_statusWidth = width > 0 ? width : usualWidth;
    }
    m_width = terminalWidth(STDOUT_FILENO);
    m_colour = isatty(STDOUT_FILENO) != 0 && !qEnvironmentVariableIsSet("NO_COLOR") && !isDumb();
    const QList<QByteArray> parent = qgetenv(ForTerminal).split(' ');
    if (!parent.first().isEmpty()) {
        m_width = parent.first().toInt();
        m_colour = parent.size() > 1;
    }
}

Terminal::~Terminal()
{
    hideStatus();
}

QStringList Terminal::environment() const
{
    return {QLatin1String(ForTerminal) % QLatin1Char('=') % QString::number(m_width)
            % QLatin1String(m_colour ? " coloured" : "")};
}

void Terminal::print(const QString &text)
{
    hideStatus();
    m_hasPrinted = true;
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    showStatus();
}

void Terminal::printHeading(const QString &line)
{
    const QString safe = printable(line);
    print((m_colour ? Escapes::styled(safe, Escapes::Bold) : safe) % QLatin1Char('\n'));
}

void Terminal::complain(const QString &line)
{
    passOnErrors(
        QString(QLatin1String("zepimport: ") % printable(line) % QLatin1Char('\n')).toUtf8());
}

void Terminal::passOnErrors(const QByteArray &lines)
{
    // Both streams may end up in one place, where the order shows which file a line belongs to.
    std::fflush(stdout);
    hideStatus();
    writeErrors(lines);
    showStatus();
}

void Terminal::setStatus(const QString &line)
{
    if (m_statusWidth == 0)
        return;
    hideStatus();
    m_status = line;
    showStatus();
}

void Terminal::writeErrors(const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

void Terminal::hideStatus()
{
    if (!m_status.isEmpty())
        writeErrors(Escapes::ClearLine);
}

void Terminal::showStatus()
{
    if (m_status.isEmpty())
        return;
    // What was written before has to be above it.
    std::fflush(stdout);
    writeErrors(m_status.toUtf8());
}

bool Terminal::flush()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0
        && !(m_hasPrinted && OutputFile::isLost(STDOUT_FILENO));
}
