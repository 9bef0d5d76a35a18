#pragma once

#include <chrono>
#include <ctime>

/// Measures the time since it was constructed.
class Stopwatch
{
public:
    double seconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }
    /// Processor time of this thread. Other programs on the machine affect it less.
    double processorSeconds() const { return processorTime() - m_processorStart; }

private:
    static double processorTime()
    {
        std::timespec time;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
    }

    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    double m_processorStart = processorTime();
};
