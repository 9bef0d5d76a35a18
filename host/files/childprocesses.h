#pragma once

#include <QByteArray>
#include <QEventLoop>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>
#include <vector>

/// Runs the program itself many times, some in parallel, so that a plug-in that crashes does not
/// affect the work of the other processes. Needs a QCoreApplication.
class ChildProcesses
{
public:
    enum class End {
        Exit, ///< by itself
        Crash,
        NoStart, ///< it never ran
    };
    /// How one of them ended.
    struct Result {
        End end = End::NoStart;
        int exitCode = 0;
        QByteArray output;
        QByteArray errors; ///< standard error
    };

    /// Runs a process for each of \a arguments, \a atOnce of them at a time, with \a environment in
    /// the form "NAME=value" in addition to its own.
    ChildProcesses(const QVector<QStringList> &arguments, int atOnce,
                   const QStringList &environment);

    /// Calls \a done with the index and the result of each process, in their order, as soon as it
    /// and all before it have ended. Returns when all have. After one that could not be started no
    /// other is.
    void run(const std::function<void(int, const Result &)> &done);

private:
    void startNext();
    void end(int index);
    void giveUp(int index);

    QVector<QStringList> m_arguments;
    int m_atOnce;
    QStringList m_environment;
    QEventLoop m_loop;
    int m_next = 0; ///< index of the one to start next
    std::vector<std::unique_ptr<QProcess>> m_processes; ///< by index; the started ones
    std::vector<std::unique_ptr<Result>> m_results; ///< by index; of those that ended
};
