#pragma once

#include <chrono>
#include <ctime>

/// The processor time that the calling thread uses from now on: what it works, not what it waits, so that a
/// busy machine doesn't fail a test.
class CpuTime final {
public:
    [[nodiscard]] std::chrono::milliseconds elapsed() const
    {
        return std::chrono::duration_cast<std::chrono::milliseconds>(now() - m_start);
    }

private:
    static std::chrono::nanoseconds now()
    {
        timespec time = {};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }

    std::chrono::nanoseconds m_start = now();
};
