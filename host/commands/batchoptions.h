#pragma once

class CommandOptions;

/// `--quiet` and `--jobs`: how a command goes about many files.
class BatchOptions
{
public:
    void declare(CommandOptions &options);
    /// Only `--quiet`, for a command that makes one thing of all files.
    void declareQuiet(CommandOptions &options);

    /// Files to process at once. More than one: each in a process of its own.
    int jobs() const { return m_jobs; }
    /// Whether to show the progress, and a summary. Not for a command that does not declare this.
    bool isShown() const { return m_isDeclared && !m_quiet; }

private:
    bool m_isDeclared = false;
    bool m_quiet = false;
    int m_jobs = 1;
};
