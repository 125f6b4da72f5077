#pragma once

#include "scene/Forward.h"

namespace velmoran::scene
{
/// What a picking ray met.
struct RayHit
{
    IPrimitivePtr element; ///< the face, its corners in world space
    float distance = 0.0F; ///< from the ray's origin, in world units
    IGeometryPtr geometry; ///< whose face it is
};
} // namespace velmoran::scene
