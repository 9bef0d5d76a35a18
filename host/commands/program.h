#pragma once

/// The whole of `zepimport`: finds the command that the arguments name, and runs it. Returns what
/// the process has to return.
int runProgram(int argc, char *argv[]);
