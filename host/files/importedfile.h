#pragma once

#include "analysis/laps.h"

#include <QDateTime>
#include <QFileInfo>
#include <QString>
#include <QVector>

/// What a plug-in said while it imported a file.
struct ImportMessage {
    QString text;
    bool isError;
};

/// An imported file: at least one lap, in the order of the plug-in.
struct ImportedFile {
    QString fileName;
    QString format;
    Laps laps;
    QVector<ImportMessage> messages; ///< as the plug-in sent them, in that order
    /// Whether the system could read the file to its end; otherwise laps may be short or missing.
    bool isWhole = true;

    /// When the file was last changed.
    QDateTime lastModified() const { return QFileInfo(fileName).lastModified(); }
};
