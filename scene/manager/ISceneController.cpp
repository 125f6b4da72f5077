#include "scene/manager/ISceneController.h"

namespace velmoran::scene
{
ISceneController::~ISceneController() = default;
} // namespace velmoran::scene
