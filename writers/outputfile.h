#pragma once

#include <QFileDevice>
#include <QString>

#include <memory>

/// A place that an export goes to: a file that is written whole or not at all, a device or pipe
/// that exists already, or standard output.
class OutputFile
{
public:
    /// \a name is a path, or "-" for standard output.
    explicit OutputFile(const QString &name) : m_name(name) { }

    /// Whether the name of a file is free. False with a \a problem for a folder, and for a file
    /// that exists already unless it is to be \a overwritten.
    bool isFree(bool overwritten, QString *problem) const;
    /// Opens the place. False with a \a problem if that is not possible, or the name is not free.
    bool open(bool overwritten, QString *problem);

    /// Appends \a size bytes. After a failure it does nothing.
    void write(const char *bytes, qint64 size);
    /// Makes it fail for \a reason, as if something could not be written.
    void fail(const QString &reason);
    /// False as soon as something could not be written.
    bool isGood() const { return m_error.isEmpty(); }

    /// Ends it. A file gets its name only now, and only if all of it was written and has reached
    /// the disk; else there is a \a problem, and nothing is left of it.
    bool commit(QString *problem);

    /// Whether closing \a descriptor would find that something written there is lost: a network
    /// disk may accept everything, and refuse it at the end. It stays open. Sets errno if so.
    static bool isLost(int descriptor);

private:
    QString m_name;
    std::unique_ptr<QFileDevice> m_device;
    QString m_error;
};
