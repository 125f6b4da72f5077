#pragma once

#include <chrono>

namespace velmoran::examples
{
/// Measures the time since it was made.
class StopWatch
{
public:
    double getSeconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};
} // namespace velmoran::examples
