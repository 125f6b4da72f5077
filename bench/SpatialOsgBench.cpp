// Sorting triangles into a tree and picking the nearest one: a tree of middle planes.

#include "bench/Cases.h"
#include "bench/SpatialCases.h"

#ifdef VELMORAN_BENCH_OSG
#include <osg/Geometry>
#include <osg/KdTree>
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>

namespace velmoran::bench
{
namespace
{
constexpr auto SIZES = &atNAnd4N<50000>;

osg::Vec3 toOsg(const Eigen::Vector3f& v)
{
    return osg::Vec3(v.x(), v.y(), v.z());
}

osg::ref_ptr<osg::Geometry> makeGeometry(const std::vector<TrianglePoints>& ring)
{
    const osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    for (const TrianglePoints& triangle : ring)
    {
        for (const Eigen::Vector3f& point : triangle)
        {
            points->push_back(toOsg(point));
        }
    }
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(points);
    geometry->addPrimitiveSet(
        new osg::DrawArrays(GL_TRIANGLES, 0, static_cast<int>(points->size())));
    return geometry;
}

osg::ref_ptr<osg::KdTree> buildTree(osg::Geometry* geometry)
{
    const osg::ref_ptr<osg::KdTree> tree = new osg::KdTree;
    osg::KdTree::BuildOptions options;
    return tree->build(options, geometry) ? tree : nullptr;
}

void buildOsgKdTree(benchmark::State& state)
{
    const osg::ref_ptr<osg::Geometry> geometry = makeGeometry(makeRing(state.range(0)));
    osg::ref_ptr<osg::KdTree> tree;
    for (auto _ : state)
    {
        state.PauseTiming();
        tree = nullptr;
        state.ResumeTiming();
        tree = buildTree(geometry);
    }
    require(state, tree.valid(), "not built");
    countItems(state, state.range(0));
}
BENCHMARK(buildOsgKdTree)->Name("octree/OpenSceneGraph KdTree build")->Apply(SIZES);

/// The distance to the nearest triangle; 0 for none.
float nearest(osg::Geometry& geometry, const RayPoints& ray)
{
    constexpr float REACH = 8.0F; // beyond every triangle
    const osg::Vec3 origin = toOsg(ray.origin);
    const osg::ref_ptr<osgUtil::LineSegmentIntersector> segment =
        new osgUtil::LineSegmentIntersector(osgUtil::Intersector::MODEL, origin,
                                            origin + toOsg(ray.direction) * REACH);
    segment->setIntersectionLimit(osgUtil::Intersector::LIMIT_NEAREST);
    osgUtil::IntersectionVisitor visitor(segment);
    geometry.accept(visitor);
    return segment->containsIntersections()
               ? static_cast<float>(segment->getFirstIntersection().ratio) * REACH
               : 0.0F;
}

void pickOsg(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    const osg::ref_ptr<osg::Geometry> geometry = makeGeometry(ring);
    geometry->setShape(buildTree(geometry));
    pickAll(state, ring, [&](const RayPoints& ray) { return nearest(*geometry, ray); });
}
BENCHMARK(pickOsg)->Name("pick/OpenSceneGraph KdTree")->Apply(SIZES);
} // namespace
} // namespace velmoran::bench
#endif
