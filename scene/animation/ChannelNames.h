#pragma once

#include <string>

namespace velmoran::scene
{
/// See `AnimationManager::getInterpolationType`.
int interpolationTypeOf(std::string name);

/// See `AnimationManager::indexOfCoordinateValue`.
int coordinateIndexOf(std::string name);

/// Whether a segment whose first key has this interpolation name holds that key.
bool isStep(const std::string& interpolationName);
} // namespace velmoran::scene
