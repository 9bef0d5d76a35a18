#pragma once

#include <QString>
#include <QStringList>

/// The result of one run of the program.
struct Outcome {
    int exitCode = -1; ///< -1 if the program did not end by itself
    QString output;
    QString errors; ///< standard error
};

/// How to run the program.
struct ZepimportProcess {
    QStringList arguments;
    QStringList environment; ///< "NAME=value", added to an environment that does not affect it
    QString folder; ///< the folder to run in
    QString program; ///< a copy to run; the built one unless set
    QString outputFile; ///< receives standard output, instead of the outcome
    int terminalWidth = 0; ///< columns of a terminal to write to; 0: a pipe
    bool errorsToTerminal = false; ///< standard error also goes to the terminal, and to the output
    bool mayFork = true; ///< if false, it can neither start processes nor end others

    /// Runs it to its end, or for ProcessLimit. Permissions apply even if the test runs as root.
    Outcome run() const;
};

/// The commands that `zepimport --help` lists, sorted; empty if it lists none.
QStringList zepimportCommands();
