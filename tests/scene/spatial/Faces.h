#pragma once

#include "scene/spatial/Ray.h"
#include "tests/scene/geometry/GeometryBuilders.h"

#include <Eigen/Core>

#include <random>

namespace velmoran::scene
{
inline RayPtr makeRay(const Eigen::Vector3f& origin, const Eigen::Vector3f& direction)
{
    return boost::make_shared<Ray>(origin, direction);
}

inline IPrimitivePtr makeFace(const Eigen::Vector3f& a, const Eigen::Vector3f& b,
                              const Eigen::Vector3f& c)
{
    return boost::make_shared<Triangle>(makeVertex(a.x(), a.y(), a.z()),
                                        makeVertex(b.x(), b.y(), b.z()),
                                        makeVertex(c.x(), c.y(), c.z()));
}

class Random
{
public:
    Eigen::Vector3f point(float reach)
    {
        std::uniform_real_distribution<float> in(-reach, reach);
        const float x = in(m_engine);
        const float y = in(m_engine);
        return {x, y, in(m_engine)};
    }

    /// Three points.
    std::vector<Eigen::Vector3f> points(float reach)
    {
        return {point(reach), point(reach), point(reach)};
    }

    /// The positions of `count` triangles of some size, up to 1 from the origin.
    std::vector<float> soup(int count, float size)
    {
        std::vector<float> positions;
        for (int i = 0; i < count; ++i)
        {
            const Eigen::Vector3f centre = point(1.0F - size);
            for (int corner = 0; corner < 3; ++corner)
            {
                const Eigen::Vector3f p = centre + point(size);
                positions.insert(positions.end(), p.data(), p.data() + 3);
            }
        }
        return positions;
    }

private:
    std::mt19937 m_engine{11};
};
} // namespace velmoran::scene
