#include "examples/scenetool/Progress.h"

#include <chrono>

namespace velmoran::examples
{
Progress::Progress(std::ostream* terminal) : m_terminal(terminal)
{
    if (m_terminal != nullptr)
    {
        m_thread = std::thread([this] { run(); });
    }
}

Progress::~Progress()
{
    if (!m_thread.joinable())
    {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isDone = true;
    }
    m_done.notify_one();
    m_thread.join();
}

void Progress::setTask(const std::string& task)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_task = task;
}

void Progress::run()
{
    const char* const wipeLine = "\r\033[K";
    bool hasWritten = false;
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto isDone = [this] { return m_isDone; };
    for (int seconds = 1; !m_done.wait_for(lock, std::chrono::seconds(1), isDone); ++seconds)
    {
        *m_terminal << wipeLine << m_task << ", " << seconds << " s" << std::flush;
        hasWritten = true;
    }
    if (hasWritten)
    {
        *m_terminal << wipeLine << std::flush;
    }
}
} // namespace velmoran::examples
