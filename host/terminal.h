#pragma once

#include <QString>

/// Standard output and standard error of the program, both in UTF-8.
class Terminal
{
public:
    /// Looks at standard output: a terminal has a width, and colours unless NO_COLOR is set.
    Terminal();

    /// Columns of the terminal; 0 for no limit (a pipe, a file).
    int width() const { return m_width; }
    bool hasColour() const { return m_colour; }

    /// Writes \a text to standard output as it is.
    void print(const QString &text);
    /// Writes one line to standard output, emphasised where there are colours.
    void printHeading(const QString &line);
    /// Writes one line to standard error, behind the program's name.
    void complain(const QString &line);
    /// Hands everything to the system; false if standard output could not take it all.
    bool flush();

private:
    int m_width = 0;
    bool m_colour = false;
};
