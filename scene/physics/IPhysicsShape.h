#pragma once

#include "scene/Export.h"

namespace velmoran::scene
{
/// An analytic shape (box, sphere, capsule and the like) of a physics shape.
///
/// The library has no such shapes of its own; derive from it to attach one.
/// Threads: as the derived class says; the library only keeps it.
class VELMORAN_SCENE_EXPORT IPhysicsShape
{
public:
    virtual ~IPhysicsShape();
};
} // namespace velmoran::scene
