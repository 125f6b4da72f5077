#pragma once

#include <condition_variable>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>

namespace velmoran::examples
{
/// Says on a terminal what a piece of work is doing once it takes more than a second,
/// on one line that is wiped out at the end.
class Progress
{
public:
    /// Writes to `terminal`; stays silent when that is null. Nobody else may write
    /// there before this object is gone.
    explicit Progress(std::ostream* terminal);

    ~Progress();

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// What is being done from now on, e.g. "Reading room.dae".
    void setTask(const std::string& task);

private:
    void run();

    std::ostream* const m_terminal;
    std::mutex m_mutex; ///< guards the two members below
    std::string m_task;
    bool m_isDone = false;
    std::condition_variable m_done;
    std::thread m_thread; ///< runs only with a terminal
};
} // namespace velmoran::examples
