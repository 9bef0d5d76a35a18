#include "host/jobs.h"

#include <QCoreApplication>
#include <QProcessEnvironment>

#include <algorithm>

Jobs::Jobs(const QVector<QStringList> &arguments, int atOnce, const QStringList &environment)
    : m_arguments(arguments), m_atOnce(atOnce), m_environment(environment),
      m_results(std::size_t(arguments.size()))
{
}

void Jobs::startNext()
{
    const int index = int(m_processes.size());
    if (index >= m_arguments.size())
        return;
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment([this] {
        QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
        for (const QString &variable : qAsConst(m_environment))
            variables.insert(variable.section(QLatin1Char('='), 0, 0),
                             variable.section(QLatin1Char('='), 1));
        return variables;
    }());
    process->setStandardInputFile(QProcess::nullDevice());
    const auto isOver = [this, index] { end(index); };
    QObject::connect(process.get(), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
                     isOver);
    QObject::connect(process.get(), &QProcess::errorOccurred,
                     [isOver](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             isOver();
                     });
    m_processes.push_back(std::move(process));
    m_processes.back()->start(QCoreApplication::applicationFilePath(), m_arguments.at(index));
}

void Jobs::end(int index)
{
    QProcess &process = *m_processes[std::size_t(index)];
    auto result = std::make_unique<Result>();
    result->hasEnded =
        process.error() != QProcess::FailedToStart && process.exitStatus() == QProcess::NormalExit;
    result->exitCode = process.exitCode();
    result->output = process.readAllStandardOutput();
    result->errors = process.readAllStandardError();
    m_results[std::size_t(index)] = std::move(result);
    startNext();
    m_loop.quit();
}

void Jobs::run(const std::function<void(int, const Result &)> &done)
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
