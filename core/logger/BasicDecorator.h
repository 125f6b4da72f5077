#pragma once

#include "core/logger/IDecorator.h"

namespace velmoran::core::logger
{
/// Makes a line of each message: local time stamp, blank, message, line end.
///
/// The stamp looks like "2024-03-01T09:05:07.042". Holds no state.
class VELMORAN_CORE_EXPORT BasicDecorator : public IDecorator
{
public:
    BasicDecorator();

    std::string decorate(const std::string& message) override;
};
} // namespace velmoran::core::logger
