#include "scene/spatial/Ray.h"

namespace velmoran::scene
{
Ray::Ray() : Ray(Eigen::Vector3f::Zero(), Eigen::Vector3f::Zero()) {}

Ray::Ray(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction)
    : m_origin(origin), m_direction(direction)
{
}

Ray::~Ray() = default;

const Eigen::Vector3f& Ray::getOrigin() const
{
    return m_origin;
}

const Eigen::Vector3f& Ray::getDirection() const
{
    return m_direction;
}
} // namespace velmoran::scene
