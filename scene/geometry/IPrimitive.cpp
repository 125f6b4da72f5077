#include "scene/geometry/IPrimitive.h"

namespace velmoran::scene
{
IPrimitive::~IPrimitive() = default;
} // namespace velmoran::scene
