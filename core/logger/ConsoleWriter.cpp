#include "core/logger/ConsoleWriter.h"

#include "core/logger/IDecorator.h"

#include <cstdio>
#include <utility>

namespace velmoran::core::logger
{
ConsoleWriter::ConsoleWriter() = default;

ConsoleWriter::~ConsoleWriter() = default;

void ConsoleWriter::write(std::string message)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::string text = m_decorator ? m_decorator->decorate(message) : std::move(message);
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void ConsoleWriter::flush()
{
    std::fflush(stdout);
}

void ConsoleWriter::setDecorator(boost::shared_ptr<IDecorator> decorator)
{
    // The old decorator ends with the argument, after the lock is released.
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_decorator.swap(decorator);
}
} // namespace velmoran::core::logger
