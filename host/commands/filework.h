#pragma once

#include "host/commands/batchoptions.h"
#include "host/commands/exitcode.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class FileOptions;
class Importer;
struct RecordingFile;
class Terminal;

/// What a command does with the files that the user named. Only process() is required, and for
/// a command with BatchOptions also arguments().
struct FileWork {
    /// Says why the command does not process \a file; empty if it does. Called before any is read.
    std::function<QString(const RecordingFile &file)> objection;
    /// Called once, before the first file is read. False ends the command as wrong use; then the
    /// reason has been reported.
    std::function<bool(const QVector<RecordingFile> &files)> accepts;

    /// Does the command's work for one file. Called in the order of the command line.
    std::function<ExitCode(const RecordingFile &file, Importer &importer)> process;

    /// The command and its options for a process that does the same for \a file only.
    std::function<QStringList(const RecordingFile &file)> arguments;
    /// Uses what such a process printed. By default it is printed.
    std::function<void(const QByteArray &output)> takeOutput;

    /// Called once, after the last file, also when files failed.
    std::function<ExitCode()> finish;

    /// What the summary says of files that did not fail; null for no summary.
    const char *success = "done";
};

/// Does \a work for all of \a files, as \a batch says, and returns the worst result.
ExitCode processFiles(const FileOptions &files, const FileWork &work, Terminal &terminal,
                      const BatchOptions &batch = BatchOptions());

/// What several files ended up as, for the user: "2 of 3 files done, failed: a.ibt".
QString filesSummary(int files, const QStringList &failed, const char *success);
