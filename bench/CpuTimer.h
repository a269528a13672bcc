#pragma once

#include <ctime>

/// Measures the processor time of the calling thread, which excludes that of other programs.
class CpuTimer
{
public:
    double seconds() const { return now() - m_start; }

private:
    static double now()
    {
        timespec time = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    const double m_start = now();
};
