#include "tests/support/zepimportprocess.h"

#include "tests/support/processlimit.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include <fcntl.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>

namespace {

/// The two ends of a terminal; none for a width of 0.
class Terminal
{
public:
    explicit Terminal(int width)
    {
        if (width == 0)
            return;
        m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0)
            qFatal("no terminal to be had");
        m_slave = open(ptsname(m_master), O_RDWR | O_NOCTTY | O_CLOEXEC);
        winsize size{};
        size.ws_row = 25;
        size.ws_col = static_cast<unsigned short>(width);
        if (m_slave < 0 || ioctl(m_slave, TIOCSWINSZ, &size) != 0)
            qFatal("no terminal to be had");
    }
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    ~Terminal()
    {
        if (m_master >= 0)
            close(m_master);
        if (m_slave >= 0)
            close(m_slave);
    }

    int slave() const { return m_slave; }

    /// Everything that was written since the last call.
    QByteArray read() const
    {
        QByteArray result;
        char buffer[4096];
        if (m_master < 0)
            return result;
        for (ssize_t n = 1; n > 0;) {
            n = ::read(m_master, buffer, sizeof buffer);
            if (n > 0)
                result.append(buffer, static_cast<int>(n));
        }
        return result;
    }

private:
    int m_master = -1;
    int m_slave = -1;
};

/// From now on, the system starts no further process. It does not send signals either: one that is
/// meant for a process that was never started might reach all processes.
void forbidForks()
{
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone, 3, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_clone3, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_kill, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EAGAIN),
    };
    const sock_fprog program{sizeof rules / sizeof *rules, rules};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        _exit(125);
}

class Process : public QProcess
{
public:
    bool mayFork = true;
    int output = -1; ///< descriptor to become standard output
    int errors = -1; ///< descriptor to become standard error

protected:
    void setupChildProcess() override
    {
        if (output >= 0)
            dup2(output, STDOUT_FILENO);
        if (errors >= 0)
            dup2(errors, STDERR_FILENO);
        // Fails for an ordinary user, for whom permissions apply anyway.
        prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
        prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
        if (!mayFork)
            forbidForks();
    }
};

} // namespace

Outcome ZepimportProcess::run() const
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove(QStringLiteral("ZEP_PLUGIN_PATH"));
    variables.remove(QStringLiteral("NO_COLOR"));
    variables.insert(QStringLiteral("TERM"), QStringLiteral("xterm"));
    for (const QString &variable : environment)
        variables.insert(variable.section(QLatin1Char('='), 0, 0),
                         variable.section(QLatin1Char('='), 1));

    const Terminal terminal(terminalWidth);
    Process process;
    process.mayFork = mayFork;
    process.output = terminal.slave();
    if (errorsToTerminal)
        process.errors = terminal.slave();
    process.setProcessEnvironment(variables);
    process.setWorkingDirectory(folder);
    if (!outputFile.isEmpty())
        process.setStandardOutputFile(outputFile);
    process.start(program.isEmpty() ? QStringLiteral(ZEPIMPORT_PATH) : program, arguments);

    Outcome outcome;
    QByteArray shown;
    for (int i = 0; i < ProcessLimit / 100 && !process.waitForFinished(100); ++i) {
        shown += terminal.read();
        if (process.state() == QProcess::NotRunning)
            break;
    }
    shown += terminal.read();
    if (process.state() == QProcess::NotRunning && process.error() != QProcess::FailedToStart
        && process.exitStatus() == QProcess::NormalExit)
        outcome.exitCode = process.exitCode();
    outcome.output = QString::fromUtf8(terminalWidth > 0 ? shown.replace("\r\n", "\n")
                                                         : process.readAllStandardOutput());
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

QStringList zepimportCommands()
{
    ZepimportProcess process;
    process.arguments = QStringList{QStringLiteral("--help")};
    const QString list = process.run().output.section(QStringLiteral("Subcommands:"), 1);
    const QRegularExpression command(QStringLiteral("^  ([a-z]+) "),
                                     QRegularExpression::MultilineOption);
    QStringList commands;
    for (auto match = command.globalMatch(list); match.hasNext();)
        commands.append(match.next().captured(1));
    commands.sort();
    return commands;
}
