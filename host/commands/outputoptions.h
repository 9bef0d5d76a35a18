#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <string>

class CommandOptions;
class OutputFile;
struct RecordingFile;
class Terminal;

/// `--output` and `--force`: where to write, and whether to replace what is there.
class OutputOptions
{
public:
    enum class Need { Optional, Required };

    /// \a valueName and \a text describe --output, \a forceText describes --force.
    void declareOutput(CommandOptions &options, const std::string &valueName,
                       const std::string &text, Need need = Need::Optional);
    void declareForce(CommandOptions &options, const std::string &text);

    bool isGiven() const { return !m_output.empty(); }
    bool isStandardOutput() const { return m_output == "-"; }
    void chooseStandardOutput() { m_output = "-"; }
    /// As the user wrote it; empty unless given.
    QString name() const;
    /// Whether what exists already is replaced.
    bool isForced() const { return m_force; }

    /// Opens \a file for writing, and commits what was written. False if that failed; then that has
    /// been reported.
    bool open(OutputFile *file, Terminal &terminal) const;
    static bool commit(OutputFile *file, Terminal &terminal);

    /// Whether \a output is one of \a recordings, which must not be replaced; then that has been
    /// reported.
    static bool isRecording(const QString &output, const QVector<RecordingFile> &recordings,
                            Terminal &terminal);

    /// The same choice as arguments of another process, with \a name, which may be empty, instead
    /// of this one's.
    QStringList arguments(const QString &name) const;

private:
    std::string m_output;
    bool m_force = false;
};
