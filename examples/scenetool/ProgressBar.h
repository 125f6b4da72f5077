#pragma once

#include <ostream>
#include <string>

namespace velmoran::examples
{
/// Shows on a terminal how much of a piece of work of known length is done, on one line
/// that is wiped out at the end. Made, used and destroyed on one thread.
class ProgressBar
{
public:
    /// Writes to `terminal`; stays silent when that is null. Nobody else may write there
    /// before this object is gone.
    ProgressBar(std::ostream* terminal, std::string task);

    ~ProgressBar();

    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Draws `done`, from 0 to 1, with `detail` behind it.
    void show(double done, const std::string& detail);

private:
    std::ostream* const m_terminal;
    const std::string m_task;
};
} // namespace velmoran::examples
