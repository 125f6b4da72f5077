#include "core/logger/IDecorator.h"

namespace velmoran::core::logger
{
IDecorator::~IDecorator() = default;
} // namespace velmoran::core::logger
