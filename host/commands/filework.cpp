#include "host/commands/filework.h"

#include "host/commands/fileoptions.h"
#include "host/files/childprocesses.h"
#include "host/files/importer.h"
#include "host/files/recordingfiles.h"
#include "host/text/progress.h"
#include "host/text/terminal.h"

#include <QFileInfo>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

/// Processes files here or in other processes, and keeps count.
class FileRun
{
public:
    FileRun(const QVector<RecordingFile> &files, const FileWork &work, Importer &importer,
            Terminal &terminal)
        : m_files(files), m_work(work), m_importer(importer), m_terminal(terminal)
    {
    }

    void showProgress()
    {
        QVector<qint64> sizes;
        for (const RecordingFile &file : m_files)
            sizes.append(QFileInfo(file.fileName).size());
        m_progress.emplace(m_terminal, sizes);
    }

    void runHere()
    {
        for (int i = 0; i < m_files.size(); ++i)
            end(i, m_work.process(m_files.at(i), m_importer));
    }

    /// \a options go to each process.
    void runJobs(int atOnce, const QStringList &options)
    {
        QVector<QStringList> arguments;
        for (const RecordingFile &file : m_files) {
            arguments.append(
                m_work.arguments(file) + options
                + QStringList{QStringLiteral("--quiet"), QStringLiteral("--"), file.fileName});
        }
        ChildProcesses jobs(arguments, atOnce, m_terminal.environment());
        jobs.run([this](int index, const ChildProcesses::Result &job) {
            m_terminal.passOnErrors(job.errors);
            end(index, result(m_files.at(index), job));
        });
    }

    /// Removes the bar.
    void hideProgress() { m_progress.reset(); }

    ExitCode result() const { return m_result; }
    const QStringList &failed() const { return m_failed; }

private:
    ExitCode result(const RecordingFile &file, const ChildProcesses::Result &job)
    {
        switch (job.end) {
        case ChildProcesses::End::Exit:
            if (!job.output.isEmpty() && m_work.takeOutput)
                m_work.takeOutput(job.output);
            else
                m_terminal.print(QString::fromUtf8(job.output));
            return static_cast<ExitCode>(job.exitCode);
        case ChildProcesses::End::Crash:
            m_terminal.complain(file.fileName
                                % QLatin1String(": its process crashed; the file may be damaged"));
            return ExitCode::Failure;
        case ChildProcesses::End::NoStart:
            break;
        }
        if (!std::exchange(m_isAlone, true))
            m_terminal.complain(
                QStringLiteral("no more processes could be started, so this one reads "
                               "the remaining files; choose fewer --jobs"));
        return m_work.process(file, m_importer);
    }

    void end(int index, ExitCode code)
    {
        if (code != ExitCode::Success)
            m_failed.append(m_files.at(index).fileName);
        m_result = std::max(m_result, code);
        if (m_progress)
            m_progress->finishFile(index);
    }

    const QVector<RecordingFile> &m_files;
    const FileWork &m_work;
    Importer &m_importer;
    Terminal &m_terminal;
    std::optional<Progress> m_progress;
    bool m_isAlone = false; ///< no other process could be started
    ExitCode m_result = ExitCode::Success;
    QStringList m_failed;
};

/// The files of \a found that \a work processes. For the others, the user is told what is wrong,
/// their names are added to \a refused, and *result is changed.
QVector<RecordingFile> acceptedFiles(const RecordingFiles &found, const FileWork &work,
                                     Terminal &terminal, QStringList *refused, ExitCode *result)
{
    for (const RecordingFiles::Problem &problem : found.problems) {
        terminal.complain(problem.text);
        refused->append(problem.name);
        *result = std::max(*result, problem.isWrongUse ? ExitCode::WrongUse : ExitCode::Failure);
    }
    if (!work.objection)
        return found.files;
    QVector<RecordingFile> accepted;
    for (const RecordingFile &file : found.files) {
        const QString objection = work.objection(file);
        if (objection.isEmpty()) {
            accepted.append(file);
            continue;
        }
        terminal.complain(objection);
        refused->append(file.fileName);
        *result = ExitCode::WrongUse;
    }
    return accepted;
}

} // namespace

ExitCode processFiles(const FileOptions &options, const FileWork &work, Terminal &terminal,
                      const BatchOptions &batch)
{
    const std::optional<PluginRegistry> plugins = options.plugins().load(terminal);
    if (!plugins)
        return ExitCode::Failure;
    ExitCode result = ExitCode::Success;
    QStringList refused;
    const QVector<RecordingFile> files =
        acceptedFiles(options.find(*plugins), work, terminal, &refused, &result);
    if (work.accepts && !work.accepts(files))
        return ExitCode::WrongUse;

    const bool isShown = batch.isShown() && files.size() > 1;
    Importer importer(*plugins, terminal, options.plugins().isVerbose());
    FileRun run(files, work, importer, terminal);
    if (isShown)
        run.showProgress();
    if (batch.jobs() > 1 && files.size() > 1)
        run.runJobs(batch.jobs(), options.plugins().arguments());
    else
        run.runHere();
    run.hideProgress();
    result = std::max(result, run.result());
    if (work.finish)
        result = std::max(result, work.finish());
    if (isShown && work.success)
        terminal.complain(
            filesSummary(files.size() + refused.size(), refused + run.failed(), work.success));
    return result;
}

QString filesSummary(int files, const QStringList &failed, const char *success)
{
    constexpr int mostNames = 5;
    const QString good = QStringLiteral("%1 of %2 files %3")
                             .arg(files - failed.size())
                             .arg(files)
                             .arg(QLatin1String(success));
    if (failed.isEmpty())
        return good;
    const QString more = failed.size() > mostNames
        ? QStringLiteral(" and %1 more").arg(failed.size() - mostNames)
        : QString();
    return good % QLatin1String(", failed: ")
        % QStringList(failed.mid(0, mostNames)).join(QLatin1String(", ")) % more;
}
