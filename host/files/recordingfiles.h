#pragma once

#include "host/files/lapchoice.h"

#include <QString>
#include <QVector>

#include <optional>
#include <string>
#include <vector>

class PluginRegistry;

/// A file to import.
struct RecordingFile {
    QString fileName;
    std::optional<LapChoice> laps; ///< chosen for this file only
    QString subfolder; ///< below the folder that the user named; empty for that folder, or a file
};

/// The files that `FILE...` on the command line means, and what is wrong with it.
///
/// An argument is a file, or a folder, which means the files in it that a plug-in reads, by name.
/// What keeps such files from being found there is a problem, as is a name that is not UTF-8.
/// Either may end with a choice of laps, "monday/a.ibt:best", unless there is a file of that
/// very name.
struct RecordingFiles {
    struct Problem {
        bool isWrongUse; ///< of the command line; else it is the fault of a file or folder
        QString name; ///< of the argument, or of the file or folder in it
        QString text; ///< with the name
    };

    /// \a arguments are as the shell gave them. With \a recursive the folders below a folder count
    /// too, but no links to folders. A file that does not exist is in the result: whoever opens it
    /// knows best what is wrong with it.
    RecordingFiles(const std::vector<std::string> &arguments, bool recursive,
                   const PluginRegistry &plugins);

    QVector<RecordingFile> files;
    QVector<Problem> problems;
};
