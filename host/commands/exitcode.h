#pragma once

/// What the program returns to the shell. Of several results, the greatest counts.
enum class ExitCode {
    Success = 0,
    Failure = 1, ///< a file could not be imported (the others were), or nothing could be shown
    WrongUse = 2, ///< a wrong option, or a lap or channel that a file does not have
};
