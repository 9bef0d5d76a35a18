#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Standard output and standard error of the program, both in UTF-8.
class Terminal
{
public:
    /// Looks at standard output: a terminal has a width, and colours unless NO_COLOR is set.
    Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;
    /// Removes the status.
    ~Terminal();

    /// Columns of the terminal; 0 for no limit (a pipe, a file).
    int width() const { return m_width; }
    bool hasColour() const { return m_colour; }

    /// What a process of the same program has to find in its environment, "NAME=value", to print
    /// for this terminal, though it prints into a pipe.
    QStringList environment() const;

    /// Writes \a text to standard output as it is.
    void print(const QString &text);
    /// Writes one line to standard output, emphasised where there are colours.
    void printHeading(const QString &line);
    /// Writes one line to standard error, after the program's name.
    void complain(const QString &line);
    /// Writes to standard error what another process of the program wrote there.
    void passOnErrors(const QByteArray &lines);

    /// Columns for the status; 0 where standard error is no terminal, and nothing is shown.
    int statusWidth() const { return m_statusWidth; }
    /// Shows \a line at the bottom of standard error, in the place of the line before, and below
    /// whatever is written meanwhile. An empty one removes it.
    void setStatus(const QString &line);

    /// Hands everything to the system; false if standard output could not take it all.
    bool flush();

private:
    void writeErrors(const QByteArray &bytes);
    void hideStatus();
    void showStatus();

    int m_width = 0;
    bool m_colour = false;
    bool m_hasPrinted = false; ///< else standard output is not this object's to judge
    int m_statusWidth = 0;
    QString m_status;
};
