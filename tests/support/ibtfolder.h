// Recordings as files, for as long as a test needs them.
#pragma once

#include "ibt/ibtfile.h"
#include "tools/recording.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

constexpr int HeadersSize = Recording::HeaderSize + Recording::SubHeaderSize;

/// As many bytes as one read of records asks for; what lies on either side of it is worth a look.
constexpr int BlockSize = 256 * 1024;

/// A temporary folder with one recording in it.
class IbtFolder
{
public:
    /// Writes \a bytes to the recording and opens it.
    IbtFile opened(const QByteArray &bytes) const
    {
        QFile file(recordingPath());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write %s", qPrintable(recordingPath()));
        file.close();
        return IbtFile(QFile::encodeName(recordingPath()).constData());
    }

    /// Does the same, and reads the two headers.
    IbtFile readUpToHeaders(const QByteArray &bytes) const
    {
        IbtFile file = opened(bytes);
        if (!file.isOpen() || !file.readHeader() || !file.readDiskSubHeader())
            qFatal("cannot read the headers of %s", qPrintable(recordingPath()));
        return file;
    }

    QString recordingPath() const { return filePath(QStringLiteral("recording.ibt")); }
    QString filePath(const QString &fileName) const { return m_folder.filePath(fileName); }
    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};
