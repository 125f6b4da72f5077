#pragma once

#include "core/logger/IWriter.h"

#include <mutex>

namespace velmoran::core::logger
{
/// Writes messages to standard output.
///
/// Messages of all console writers and of other users of `stdout` come out
/// whole, in one call each.
class VELMORAN_CORE_EXPORT ConsoleWriter : public IWriter
{
public:
    ConsoleWriter();
    ~ConsoleWriter() override;

    void write(std::string message) override;
    void flush() override;
    void setDecorator(boost::shared_ptr<IDecorator> decorator) override;

private:
    std::mutex m_mutex; ///< guards m_decorator; held while it decorates
    IDecoratorPtr m_decorator;
};
} // namespace velmoran::core::logger
