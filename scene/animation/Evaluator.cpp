#include "scene/animation/Evaluator.h"

namespace velmoran::scene
{
Evaluator::~Evaluator() = default;
} // namespace velmoran::scene
