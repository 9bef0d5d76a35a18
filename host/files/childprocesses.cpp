#include "host/files/childprocesses.h"

#include <QCoreApplication>
#include <QProcessEnvironment>
#include <QSocketNotifier>

#include <utility>

namespace {

/// Whether \a process, just started, has none: Qt 5.15 overlooks that the system refused to fork,
/// and would wait for an end without end.
bool isUnforked(const QProcess &process)
{
    return process.processId() < 0;
}

/// Puts an unforked process aside. It is never deleted: that would kill process -1, which means all
/// that the user has.
void abandon(std::unique_ptr<QProcess> process)
{
    // One of them listens to a descriptor that was never set.
    const auto notifiers = process->findChildren<QSocketNotifier *>();
    for (QSocketNotifier *notifier : notifiers)
        notifier->setEnabled(false);
    static auto *const abandoned = new std::vector<QProcess *>; // never deleted itself
    abandoned->push_back(process.release());
}

} // namespace

ChildProcesses::ChildProcesses(const QVector<QStringList> &arguments, int atOnce,
                               const QStringList &environment)
    : m_arguments(arguments), m_atOnce(atOnce), m_environment(environment),
      m_processes(std::size_t(arguments.size())), m_results(std::size_t(arguments.size()))
{
}

void ChildProcesses::startNext()
{
    if (m_next >= m_arguments.size())
        return;
    const int index = m_next++;
    std::unique_ptr<QProcess> &process = m_processes[std::size_t(index)];
    process = std::make_unique<QProcess>();
    process->setProcessEnvironment([this] {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        for (const QString &variable : qAsConst(m_environment))
            variables.insert(variable.section(QLatin1Char('='), 0, 0),
                             variable.section(QLatin1Char('='), 1));
        return variables;
    }());
    process->setStandardInputFile(QProcess::nullDevice());
    QObject::connect(process.get(), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                     [this, index] { end(index); });
    QObject::connect(process.get(), &QProcess::errorOccurred,
                     [this, index](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             giveUp(index);
                     });
    process->start(QCoreApplication::applicationFilePath(), m_arguments.at(index));
    if (isUnforked(*process)) {
        abandon(std::move(process));
        giveUp(index);
    }
}

void ChildProcesses::giveUp(int index)
{
    m_results[std::size_t(index)] = std::make_unique<Result>();
    for (; m_next < m_arguments.size(); ++m_next)
        m_results[std::size_t(m_next)] = std::make_unique<Result>();
    m_loop.quit();
}

void ChildProcesses::end(int index)
{
    QProcess &process = *m_processes[std::size_t(index)];
    auto result = std::make_unique<Result>();
    result->end = process.exitStatus() == QProcess::NormalExit ? End::Exit : End::Crash;
    result->exitCode = process.exitCode();
    result->output = process.readAllStandardOutput();
    result->errors = process.readAllStandardError();
    m_results[std::size_t(index)] = std::move(result);
    startNext();
    m_loop.quit();
}

void ChildProcesses::run(const std::function<void(int, const Result &)> &done)
{
    for (int i = 0; i < m_atOnce; ++i)
        startNext();
    for (std::size_t i = 0; i < m_results.size(); ++i) {
        while (!m_results[i])
            m_loop.exec();
        done(int(i), *m_results[i]);
        m_results[i] = nullptr;
        m_processes[i] = nullptr;
    }
}
