#include "host/terminal.h"

#include "host/textwidth.h"

#include <QByteArray>
#include <QtGlobal>

#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

Terminal::Terminal()
{
    if (isatty(STDOUT_FILENO) == 0)
        return;
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0)
        m_width = size.ws_col;
    m_colour = !qEnvironmentVariableIsSet("NO_COLOR") && qgetenv("TERM") != "dumb";
}

void Terminal::print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
}

void Terminal::printHeading(const QString &line)
{
    const QString safe = printable(line);
    print(m_colour ? QString(QLatin1String("\033[1m") % safe % QLatin1String("\033[0m\n"))
                   : QString(safe % QLatin1Char('\n')));
}

void Terminal::complain(const QString &line)
{
    // Both streams may end up in one place, where the order tells which file a line belongs to.
    std::fflush(stdout);
    const QByteArray bytes =
        QString(QLatin1String("zepimport: ") % printable(line) % QLatin1Char('\n')).toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
}

bool Terminal::flush()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}
