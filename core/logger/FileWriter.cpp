#include "core/logger/FileWriter.h"

#include "core/logger/IDecorator.h"

#include <cerrno>
#include <system_error>
#include <utility>

namespace velmoran::core::logger
{
namespace
{
std::FILE* openForAppending(const std::string& fileName)
{
    std::FILE* file = std::fopen(fileName.c_str(), "a");
    if (file == nullptr)
    {
        const std::string reason = std::generic_category().message(errno);
        std::fprintf(stderr,
                     "[ERROR] Log file \"%s\" can't be opened for appending (%s); its messages "
                     "are dropped.\n",
                     fileName.c_str(), reason.c_str());
        return nullptr;
    }
    // With a buffer, what a full disk refused would stay there and come out later,
    // in parts and among other messages.
    std::setvbuf(file, nullptr, _IONBF, 0);
    return file;
}
} // namespace

FileWriter::FileWriter(const std::string& fileName) : m_file(openForAppending(fileName)) {}

FileWriter::~FileWriter()
{
    if (m_file != nullptr)
    {
        std::fclose(m_file);
    }
}

void FileWriter::write(std::string message)
{
    if (m_file == nullptr)
    {
        return;
    }
    // Decorating under the lock keeps the time stamps in the file in order.
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::string text = m_decorator ? m_decorator->decorate(message) : std::move(message);
    if (m_isCutOff)
    {
        text.insert(text.begin(), '\n');
    }
    const std::size_t written = std::fwrite(text.data(), 1, text.size(), m_file);
    if (written != 0)
    {
        m_isCutOff = written < text.size();
    }
}

void FileWriter::flush() {}

void FileWriter::setDecorator(boost::shared_ptr<IDecorator> decorator)
{
    // The old decorator ends with the argument, after the lock is released.
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_decorator.swap(decorator);
}
} // namespace velmoran::core::logger
