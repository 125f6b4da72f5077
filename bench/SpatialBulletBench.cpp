// Sorting triangles into a tree and picking the nearest one: a library for collisions.

#include "bench/Cases.h"
#include "bench/SpatialCases.h"

#ifdef VELMORAN_BENCH_BULLET
#include <BulletCollision/CollisionShapes/btBvhTriangleMeshShape.h>
#include <BulletCollision/CollisionShapes/btTriangleIndexVertexArray.h>
#include <BulletCollision/NarrowPhaseCollision/btRaycastCallback.h>

#include <memory>
#include <numeric>

namespace velmoran::bench
{
namespace
{
constexpr auto SIZES = &atNAnd4N<50000>;

btVector3 toBullet(const Eigen::Vector3f& v)
{
    return btVector3(v.x(), v.y(), v.z());
}

/// Triangles in flat arrays, and a tree of boxes over them, their corners rounded to 16 bit.
class BulletMesh
{
public:
    explicit BulletMesh(const std::vector<TrianglePoints>& triangles)
        : m_indices(3 * triangles.size())
    {
        for (const TrianglePoints& triangle : triangles)
        {
            for (const Eigen::Vector3f& point : triangle)
            {
                m_points.insert(m_points.end(), point.data(), point.data() + 3);
            }
        }
        std::iota(m_indices.begin(), m_indices.end(), 0);
        constexpr int STRIDE = 3 * sizeof(float);
        m_arrays = std::make_unique<btTriangleIndexVertexArray>(
            static_cast<int>(triangles.size()), m_indices.data(), STRIDE,
            static_cast<int>(m_indices.size()), m_points.data(), STRIDE);
    }

    void build() { m_shape = std::make_unique<btBvhTriangleMeshShape>(m_arrays.get(), true); }

    /// The distance to the nearest triangle; 0 for none.
    float nearest(const RayPoints& ray) const
    {
        constexpr float REACH = 8.0F; // beyond every triangle
        const btVector3 from = toBullet(ray.origin);
        const btVector3 to = toBullet(ray.origin + REACH * ray.direction);
        Nearest found(from, to);
        m_shape->performRaycast(&found, from, to);
        return found.m_hitFraction < 1.0F ? found.m_hitFraction * REACH : 0.0F;
    }

private:
    struct Nearest : btTriangleRaycastCallback
    {
        using btTriangleRaycastCallback::btTriangleRaycastCallback;
        btScalar reportHit(const btVector3& /*normal*/, btScalar fraction, int /*part*/,
                           int /*triangle*/) override
        {
            return fraction;
        }
    };

    std::vector<float> m_points;
    std::vector<int> m_indices;
    std::unique_ptr<btTriangleIndexVertexArray> m_arrays;
    std::unique_ptr<btBvhTriangleMeshShape> m_shape;
};

void buildBullet(benchmark::State& state)
{
    BulletMesh mesh(makeRing(state.range(0)));
    for (auto _ : state)
    {
        mesh.build();
    }
    const RayPoints inwards = {{3.0F, 0.0F, 0.0F}, {-1.0F, 0.0F, 0.0F}};
    require(state, mesh.nearest(inwards) > 0.0F, "not built");
    countItems(state, state.range(0));
}
BENCHMARK(buildBullet)->Name("octree/Bullet quantised BVH build")->Apply(SIZES);

void pickBullet(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    BulletMesh mesh(ring);
    mesh.build();
    pickAll(state, ring, [&](const RayPoints& ray) { return mesh.nearest(ray); });
}
BENCHMARK(pickBullet)->Name("pick/Bullet quantised BVH")->Apply(SIZES);
} // namespace
} // namespace velmoran::bench
#endif
