#include "core/system/IClock.h"

namespace velmoran::core::system
{
IClock::~IClock() = default;
} // namespace velmoran::core::system
