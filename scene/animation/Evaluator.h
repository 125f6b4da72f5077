#pragma once

#include "scene/Export.h"

namespace velmoran::scene
{
/// Base of whatever an application attaches to a scene to evaluate it by; the scene
/// only keeps such objects.
class VELMORAN_SCENE_EXPORT Evaluator
{
public:
    virtual ~Evaluator();
};
} // namespace velmoran::scene
