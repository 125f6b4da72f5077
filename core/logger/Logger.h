#pragma once

#include "core/Export.h"
#include "core/Forward.h"

#include <atomic>
#include <mutex>
#include <new>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace velmoran::core::logger
{
/// Hands messages to its writers.
///
/// A message is one call of `operator<<`: join it in full, begin it with
/// "[INFO] ", "[WARN] " or "[ERROR] ", and end it without a line end. One for which there
/// is no memory is dropped.
///
/// Ownership: shares its writers. Constructing a logger and adding writers opens
///     nothing and is cheap.
/// Threads: every operation may be called from any thread. A message reaches all
///     writers of the logger before its next one starts.
class VELMORAN_CORE_EXPORT Logger
{
public:
    /// Switches all loggers of the process on or off; on at the start.
    static std::atomic<bool> active;

    Logger();
    ~Logger();

    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// Adds a writer behind those added before; ignored when empty.
    void addWriter(const IWriterPtr& writer);

    /// Switches this logger on or off; on at the start.
    void setEnabled(bool enabled);
    bool isEnabled() const;

    /// Writes one message: hands it to each writer in the order added and flushes
    /// that writer. Takes strings, character arrays and whatever a stream takes.
    /// While this logger or all loggers are switched off it does nothing and does not
    /// even format the value.
    template <typename T>
    Logger& operator<<(const T& value);

private:
    bool isWriting() const;
    void write(std::string_view message);

    template <typename T>
    void format(const T& value);

    std::mutex m_mutex;                ///< guards m_writers; held while a message is written
    std::vector<IWriterPtr> m_writers; ///< in the order added, none empty
    std::atomic<bool> m_enabled;
};

template <typename T>
Logger& Logger::operator<<(const T& value)
{
    if (!isWriting())
    {
        return *this;
    }
    try
    {
        format(value);
    }
    catch (const std::bad_alloc&) // whoever logs has more important things to finish
    {
    }
    return *this;
}

template <typename T>
void Logger::format(const T& value)
{
    if constexpr (std::is_convertible_v<const T&, std::string_view> && !std::is_pointer_v<T>)
    {
        write(value);
    }
    else
    {
        std::ostringstream text;
        text << value;
        write(text.str());
    }
}
} // namespace velmoran::core::logger
