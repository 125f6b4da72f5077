// Sorting triangles into a tree and picking the nearest one: a library for tracing rays.

#include "bench/Cases.h"
#include "bench/SpatialCases.h"

#ifdef VELMORAN_BENCH_EMBREE
#include <embree3/rtcore.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

namespace velmoran::bench
{
namespace
{
/// A scene of triangles with corners of their own, worked on by one thread.
class EmbreeScene
{
public:
    EmbreeScene(const std::vector<TrianglePoints>& triangles, RTCBuildQuality quality)
        : m_device(rtcNewDevice("threads=1,set_affinity=0")), m_scene(rtcNewScene(m_device))
    {
        const RTCGeometry geometry = rtcNewGeometry(m_device, RTC_GEOMETRY_TYPE_TRIANGLE);
        auto* const points = static_cast<float*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), 3 * triangles.size()));
        auto* const indices = static_cast<unsigned int*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3,
                                    3 * sizeof(unsigned int), triangles.size()));
        for (std::size_t corner = 0; corner < 3 * triangles.size(); ++corner)
        {
            std::copy_n(triangles[corner / 3][corner % 3].data(), 3, points + 3 * corner);
            indices[corner] = static_cast<unsigned int>(corner);
        }
        rtcSetGeometryBuildQuality(geometry, quality);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(m_scene, geometry);
        rtcReleaseGeometry(geometry);
        rtcSetSceneBuildQuality(m_scene, quality);
    }

    ~EmbreeScene()
    {
        rtcReleaseScene(m_scene);
        rtcReleaseDevice(m_device);
    }

    EmbreeScene(const EmbreeScene&) = delete;
    EmbreeScene& operator=(const EmbreeScene&) = delete;

    void build() { rtcCommitScene(m_scene); }

    /// The distance to the nearest triangle; 0 for none.
    float nearest(const RayPoints& ray) const
    {
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        RTCRayHit hit = {};
        hit.ray.org_x = ray.origin.x();
        hit.ray.org_y = ray.origin.y();
        hit.ray.org_z = ray.origin.z();
        hit.ray.dir_x = ray.direction.x();
        hit.ray.dir_y = ray.direction.y();
        hit.ray.dir_z = ray.direction.z();
        hit.ray.tfar = std::numeric_limits<float>::infinity();
        hit.ray.mask = ~0U;
        hit.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        rtcIntersect1(m_scene, &context, &hit);
        return hit.hit.geomID == RTC_INVALID_GEOMETRY_ID ? 0.0F : hit.ray.tfar;
    }

private:
    RTCDevice m_device;
    RTCScene m_scene;
};

/// Its worker may be another thread, so that the whole process is timed.
void embreeSizes(benchmark::internal::Benchmark* benchmark)
{
    atNAnd4N<50000>(benchmark);
    benchmark->MeasureProcessCPUTime();
}

void buildEmbree(benchmark::State& state, RTCBuildQuality quality)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    for (auto _ : state)
    {
        state.PauseTiming();
        auto scene = std::make_unique<EmbreeScene>(ring, quality);
        state.ResumeTiming();
        scene->build();
        state.PauseTiming();
        const RayPoints inwards = {{3.0F, 0.0F, 0.0F}, {-1.0F, 0.0F, 0.0F}};
        require(state, scene->nearest(inwards) > 0.0F, "not built");
        scene.reset();
        state.ResumeTiming();
    }
    countItems(state, state.range(0));
}
BENCHMARK_CAPTURE(buildEmbree, low, RTC_BUILD_QUALITY_LOW)
    ->Name("octree/Embree build, low quality")
    ->Apply(embreeSizes);
BENCHMARK_CAPTURE(buildEmbree, medium, RTC_BUILD_QUALITY_MEDIUM)
    ->Name("octree/Embree build, medium quality")
    ->Apply(embreeSizes);

void pickEmbree(benchmark::State& state)
{
    const std::vector<TrianglePoints> ring = makeRing(state.range(0));
    EmbreeScene scene(ring, RTC_BUILD_QUALITY_MEDIUM);
    scene.build();
    pickAll(state, ring, [&](const RayPoints& ray) { return scene.nearest(ray); });
}
BENCHMARK(pickEmbree)->Name("pick/Embree")->Apply(embreeSizes);
} // namespace
} // namespace velmoran::bench
#endif
