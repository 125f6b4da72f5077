#pragma once

#include "scene/Export.h"

#include <Eigen/Core>

namespace velmoran::scene
{
/// A half line for picking: what stands at `origin + t * direction` with t >= 0.
///
/// The direction need not be normalised.
class VELMORAN_SCENE_EXPORT Ray
{
public:
    /// Origin and direction (0, 0, 0), which meets nothing.
    Ray();

    /// Takes both as they are, in scene units.
    Ray(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction);

    virtual ~Ray();

    const Eigen::Vector3f& getOrigin() const;
    const Eigen::Vector3f& getDirection() const;

private:
    Eigen::Vector3f m_origin;
    Eigen::Vector3f m_direction;
};
} // namespace velmoran::scene
