#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QVector>

class Terminal;

/// Shows on a terminal how far a command is with its files: a bar, how fast it goes, and how long
/// it will still take. Both are calculated from the sizes of the files.
class Progress
{
public:
    /// How far it is.
    struct State {
        int doneFiles = 0;
        int files = 0;
        qint64 doneBytes = 0;
        qint64 bytes = 0;
        qint64 milliseconds = 0; ///< since the beginning
    };

    /// \a sizes of the files in bytes. \a terminal must outlive this.
    Progress(Terminal &terminal, const QVector<qint64> &sizes);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    /// Removes the bar.
    ~Progress();

    /// The file at \a index is done, well or not.
    void finishFile(int index);

    /// What is shown, in at most \a width columns.
    static QString line(const State &state, int width);

private:
    void show();

    Terminal &m_terminal;
    QVector<qint64> m_sizes;
    State m_state;
    QElapsedTimer m_clock;
};
