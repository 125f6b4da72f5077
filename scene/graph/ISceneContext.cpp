#include "scene/graph/ISceneContext.h"

namespace velmoran::scene
{
ISceneContext::~ISceneContext() = default;
} // namespace velmoran::scene
