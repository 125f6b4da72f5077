// Sorting triangles into an octree and picking the nearest one: ours and the limits.

#include "bench/Cases.h"
#include "bench/SpatialCases.h"
#include "core/event/EventManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"
#include "scene/spatial/Octree.h"
#include "scene/spatial/OctreeNode.h"
#include "scene/spatial/Ray.h"

#include <boost/make_shared.hpp>

#include <memory>
#include <numeric>

namespace velmoran::bench
{
namespace
{
using namespace velmoran::scene;

constexpr auto SIZES = &atNAnd4N<50000>;

/// A scene of one node that shows the triangles.
class RingScene
{
public:
    explicit RingScene(const std::vector<TrianglePoints>& triangles)
    {
        const StreamPtr positions = boost::make_shared<Stream>("positions", 3, true);
        std::vector<float> values;
        for (const TrianglePoints& triangle : triangles)
        {
            for (const Eigen::Vector3f& point : triangle)
            {
                values.insert(values.end(), point.data(), point.data() + 3);
            }
        }
        positions->setData(values);
        m_mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
        std::vector<unsigned int> indices(3 * triangles.size());
        std::iota(indices.begin(), indices.end(), 0U);
        m_mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(
            m_mesh, std::vector<StreamMapping>{StreamMapping(VERTEX, StreamPtr(), 0)}, indices));
        node->addInstanceGeometry(boost::make_shared<InstanceGeometry>(m_mesh, MaterialPtr()));
    }

    ~RingScene() { m_mesh->clearPrimitives(); }

    RingScene(const RingScene&) = delete;
    RingScene& operator=(const RingScene&) = delete;

    NodePtr node = boost::make_shared<Node>(SceneManagerPtr());

private:
    MeshPtr m_mesh = boost::make_shared<Mesh>("ring", "");
};

void countCells(const OctreeNode& cell, std::size_t& cells, std::size_t& entries)
{
    ++cells;
    entries += cell.getPrimitives().size();
    for (unsigned int i = 0; i < cell.getChildCount(); ++i)
    {
        countCells(*cell.getChildAt(i), cells, entries);
    }
}

bool isAbout(std::size_t count, std::size_t wanted)
{
    const auto difference = static_cast<double>(count) - static_cast<double>(wanted);
    return std::abs(difference) < 5e-3 * static_cast<double>(wanted);
}

void calculateOurs(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    const RingScene scene(ring);
    scene.node->getBVMin(); // the mesh keeps its bounds
    std::unique_ptr<Octree> octree;
    for (auto _ : state)
    {
        state.PauseTiming(); // reading the faces and releasing the tree before
        octree = std::make_unique<Octree>();
        octree->setSceneNode(scene.node);
        state.ResumeTiming();
        octree->calculate(MAX_DEPTH, MAX_PRIMITIVES);
    }
    std::size_t cells = 0;
    std::size_t entries = 0;
    countCells(*octree->getRoot(), cells, entries);
    // The limit's box test rounds: it misses some boxes whose boundary a triangle just touches.
    const FlatOctree flat(ring);
    require(state, isAbout(cells, flat.cellCount()), "other cells than the limit's");
    require(state, isAbout(entries, flat.entryCount()), "other entries than the limit's");
    countItems(state, state.range(0));
}
BENCHMARK(calculateOurs)->Name("octree/ours")->Apply(SIZES);

void calculateLimit(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    for (auto _ : state)
    {
        const FlatOctree octree(ring);
        benchmark::DoNotOptimize(octree.entryCount());
    }
    countItems(state, state.range(0));
}
BENCHMARK(calculateLimit)->Name("octree/limit")->Apply(SIZES);

/// Size: triangles. There are always as many rays.
void pickOurs(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    const RingScene scene(ring);
    Octree octree;
    octree.setSceneNode(scene.node);
    octree.calculate(MAX_DEPTH, MAX_PRIMITIVES);
    std::vector<RayPtr> rays;
    for (const RayPoints& ray : makeRays())
    {
        rays.push_back(boost::make_shared<Ray>(ray.origin, ray.direction));
    }
    std::vector<float> distances(RAYS);
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < RAYS; ++i)
        {
            const boost::optional<RayHit> hit = octree.pickNearest(rays[i]);
            distances[i] = hit ? hit->distance : 0.0F;
        }
    }
    const double wanted = sumOf(nearestDistances(FlatOctree(ring)));
    require(state, std::abs(sumOf(distances) - wanted) < 1e-4 * wanted, "other hits");
    countItems(state, RAYS);
}
BENCHMARK(pickOurs)->Name("pick/ours")->Apply(SIZES);

void pickLimit(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    const FlatOctree octree(ring);
    const std::vector<RayPoints> rays = makeRays();
    std::vector<float> distances(RAYS);
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < RAYS; ++i)
        {
            distances[i] = octree.nearest(rays[i]);
        }
        benchmark::DoNotOptimize(distances.data());
    }
    countItems(state, RAYS);
}
BENCHMARK(pickLimit)->Name("pick/limit")->Apply(SIZES);
} // namespace
} // namespace velmoran::bench
