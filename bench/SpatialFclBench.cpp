// Sorting triangles into a tree: oriented boxes, each with a swept sphere.

#include "bench/Cases.h"
#include "bench/SpatialCases.h"

#ifdef VELMORAN_BENCH_FCL
#include <fcl/geometry/bvh/BVH_model.h>

#include <memory>

namespace velmoran::bench
{
namespace
{
using Model = fcl::BVHModel<fcl::OBBRSS<double>>;

std::unique_ptr<Model> makeModel(const std::vector<TrianglePoints>& ring)
{
    auto model = std::make_unique<Model>();
    model->beginModel(static_cast<int>(ring.size()), static_cast<int>(3 * ring.size()));
    for (const TrianglePoints& p : ring)
    {
        model->addTriangle(p[0].cast<double>(), p[1].cast<double>(), p[2].cast<double>());
    }
    return model;
}

void buildFcl(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    std::unique_ptr<Model> model;
    for (auto _ : state)
    {
        state.PauseTiming();
        model = makeModel(ring);
        state.ResumeTiming();
        model->endModel();
    }
    require(state, model->getNumBVs() == 2 * static_cast<int>(ring.size()) - 1, "wrong tree");
    countItems(state, state.range(0));
}
BENCHMARK(buildFcl)->Name("octree/FCL OBBRSS build")->Apply(&atNAnd4N<50000>);
} // namespace
} // namespace velmoran::bench
#endif
