#pragma once

#include "core/Export.h"

#include <string>

namespace velmoran::core::logger
{
/// Turns a message into the text that a writer writes.
///
/// Threads: may be called from several threads at once when several writers
///     share it. It is called under the writer's lock, so it must not log.
class VELMORAN_CORE_EXPORT IDecorator
{
public:
    /// The text to write for `message`.
    virtual std::string decorate(const std::string& message) = 0;

    virtual ~IDecorator();
};
} // namespace velmoran::core::logger
