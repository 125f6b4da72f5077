#include "scene/physics/IPhysicsShape.h"

namespace velmoran::scene
{
IPhysicsShape::~IPhysicsShape() = default;
} // namespace velmoran::scene
