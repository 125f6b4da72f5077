#include "core/logger/Logger.h"

#include "core/logger/IWriter.h"

namespace velmoran::core::logger
{
std::atomic<bool> Logger::active{true};

Logger::Logger() : m_enabled(true) {}

Logger::~Logger() = default;

void Logger::addWriter(const IWriterPtr& writer)
{
    if (!writer)
    {
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_writers.push_back(writer);
}

void Logger::setEnabled(bool enabled)
{
    m_enabled = enabled;
}

bool Logger::isEnabled() const
{
    return m_enabled;
}

bool Logger::isWriting() const
{
    return active && m_enabled;
}

void Logger::write(std::string_view message)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    // Logging may have been switched off while this message waited for its turn.
    if (!isWriting())
    {
        return;
    }
    for (const IWriterPtr& writer : m_writers)
    {
        writer->write(std::string(message));
        writer->flush();
    }
}
} // namespace velmoran::core::logger
