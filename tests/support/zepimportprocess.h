#pragma once

#include <QString>
#include <QStringList>

/// What one run of the program gave.
struct Outcome {
    int exitCode = -1; ///< -1 where the program did not end by itself
    QString output;
    QString errors; ///< standard error
};

/// One run of the program to come.
struct ZepimportProcess {
    QStringList arguments;
    QStringList environment; ///< "NAME=value", beside an environment that says nothing to it
    QString folder; ///< to run in
    QString program; ///< a copy to run; the built one unless set
    QString outputFile; ///< for standard output instead of the outcome
    int terminalWidth = 0; ///< columns of a terminal to write to; 0: a pipe
    bool errorsToTerminal = false; ///< standard error goes there, too, and to the output
    bool mayFork = true; ///< whether it can start processes; without, it cannot end others either

    /// Runs it to its end, or for a minute. Permissions bind it also where the test runs as root.
    Outcome run() const;
};
