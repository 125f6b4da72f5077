#pragma once

#include "core/Export.h"
#include "core/Forward.h"

#include <string>

namespace velmoran::core::logger
{
/// Where the messages of loggers go.
///
/// Threads: several loggers may share a writer; every operation must be callable
///     from any thread, and each message must come out whole. A writer is called
///     under its logger's lock, so it must not log through that logger.
class VELMORAN_CORE_EXPORT IWriter
{
public:
    /// Writes one message, which has no line end of its own. A message that can't
    /// be written is dropped.
    virtual void write(std::string message) = 0;

    /// Called right after each message: it must now be out.
    virtual void flush() = 0;

    /// Lets `decorator` make the written text from each later message, in place of
    /// the decorator set before. Without one, messages are written as they are.
    virtual void setDecorator(boost::shared_ptr<IDecorator> decorator) = 0;

    virtual ~IWriter();
};
} // namespace velmoran::core::logger
