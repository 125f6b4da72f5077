// Sorting triangles into a tree and picking the nearest one: a tree of boxes with generic tests.

#include "bench/Cases.h"
#include "bench/SpatialCases.h"

#ifdef VELMORAN_BENCH_CGAL
#define CGAL_NDEBUG // as others use it in released programs
// A false alarm about its optional variants.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <CGAL/AABB_traits.h>
#include <CGAL/AABB_tree.h>
#include <CGAL/AABB_triangle_primitive.h>
#include <CGAL/Simple_cartesian.h>

#include <cmath>

namespace velmoran::bench
{
namespace
{
using Kernel = CGAL::Simple_cartesian<double>;
using Triangles = std::vector<Kernel::Triangle_3>;
using Primitive = CGAL::AABB_triangle_primitive<Kernel, Triangles::const_iterator>;
using Tree = CGAL::AABB_tree<CGAL::AABB_traits<Kernel, Primitive>>;

constexpr auto SIZES = &atNAnd4N<50000>;

Kernel::Point_3 pointOf(const Eigen::Vector3f& point)
{
    const Eigen::Vector3d p = point.cast<double>();
    return {p.x(), p.y(), p.z()};
}

Triangles makeTriangles(const std::vector<TrianglePoints>& ring)
{
    Triangles triangles;
    for (const TrianglePoints& p : ring)
    {
        triangles.emplace_back(pointOf(p[0]), pointOf(p[1]), pointOf(p[2]));
    }
    return triangles;
}

/// The distance to the nearest triangle; 0 for none.
float nearest(const Tree& tree, const Kernel::Ray_3& ray)
{
    const auto hit = tree.first_intersection(ray);
    const auto* const point = hit ? boost::get<Kernel::Point_3>(&hit->first) : nullptr;
    return point == nullptr
               ? 0.0F
               : static_cast<float>(std::sqrt(CGAL::squared_distance(ray.source(), *point)));
}

void buildCgal(benchmark::State& state)
{
    const Triangles triangles = makeTriangles(makeRing(state.range(0)));
    std::unique_ptr<Tree> tree;
    for (auto _ : state)
    {
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
        tree = std::make_unique<Tree>(triangles.begin(), triangles.end());
        tree->build();
    }
    countItems(state, state.range(0));
}
BENCHMARK(buildCgal)->Name("octree/CGAL AABB_tree build")->Apply(SIZES);

void pickCgal(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    const Triangles triangles = makeTriangles(ring);
    Tree tree(triangles.begin(), triangles.end());
    tree.build();
    pickAll(state, ring,
            [&](const RayPoints& ray) {
                return nearest(
                    tree, Kernel::Ray_3(pointOf(ray.origin), pointOf(ray.origin + ray.direction)));
            });
}
BENCHMARK(pickCgal)->Name("pick/CGAL AABB_tree nearest hit")->Apply(SIZES);
} // namespace
} // namespace velmoran::bench
#endif
