// Vertex normals of a mesh: ours and the limit.

#include "bench/Cases.h"
#include "bench/Grids.h"
#include "bench/Normals.h"
#include "bench/Skins.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

#include <boost/make_shared.hpp>

#include <cmath>

namespace velmoran::bench
{
std::vector<float> computeFlatNormals(const std::vector<float>& positions,
                                      const std::vector<unsigned int>& indices)
{
    std::vector<float> normals(positions.size());
    for (std::size_t i = 0; i < indices.size(); i += 3)
    {
        const float* const a = &positions[3 * static_cast<std::size_t>(indices[i])];
        const float* const b = &positions[3 * static_cast<std::size_t>(indices[i + 1])];
        const float* const c = &positions[3 * static_cast<std::size_t>(indices[i + 2])];
        const float e1[] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        const float e2[] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
        const float scale = 1.0F / std::sqrt((e1[0] * e1[0] + e1[1] * e1[1] + e1[2] * e1[2]) *
                                             (e2[0] * e2[0] + e2[1] * e2[1] + e2[2] * e2[2]));
        const float x = (e1[1] * e2[2] - e1[2] * e2[1]) * scale;
        const float y = (e1[2] * e2[0] - e1[0] * e2[2]) * scale;
        const float z = (e1[0] * e2[1] - e1[1] * e2[0]) * scale;
        for (std::size_t corner = i; corner < i + 3; ++corner)
        {
            float* const sum = &normals[3 * static_cast<std::size_t>(indices[corner])];
            sum[0] += x;
            sum[1] += y;
            sum[2] += z;
        }
    }
    for (std::size_t i = 0; i < normals.size(); i += 3)
    {
        float* const sum = &normals[i];
        const float scale = 1.0F / std::sqrt(sum[0] * sum[0] + sum[1] * sum[1] + sum[2] * sum[2]);
        sum[0] *= scale;
        sum[1] *= scale;
        sum[2] *= scale;
    }
    return normals;
}

bool pointAlike(const std::vector<float>& normals, const std::vector<float>& wanted)
{
    bool isAlike = normals.size() == wanted.size();
    for (std::size_t i = 0; isAlike && i < wanted.size(); i += 3)
    {
        const float* const a = &normals[i];
        const float* const b = &wanted[i];
        isAlike = a[0] * b[0] + a[1] * b[1] + a[2] * b[2] > 0.5F;
    }
    return isAlike;
}

namespace
{
using namespace velmoran::scene;

/// A grid as a mesh of our own, with normals that are all zeros.
struct GridMesh
{
    explicit GridMesh(const FlatGrid& grid)
        : positions(makeStream("positions", 3, grid.positions)),
          normals(makeStream("normals", 3, std::vector<float>(grid.positions.size())))
    {
        mesh->addStream(positions);
        mesh->addStream(normals);
        mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    }

    ~GridMesh() { mesh->clearPrimitives(); }

    void addPrimitive(const std::vector<StreamMapping>& inputs,
                      const std::vector<unsigned int>& indices) const
    {
        mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, inputs, indices));
    }

    static StreamPtr makeStream(const char* id, int stride, const std::vector<float>& data)
    {
        const StreamPtr stream = boost::make_shared<Stream>(id, stride, true);
        stream->setData(data);
        return stream;
    }

    MeshPtr mesh = boost::make_shared<Mesh>("grid", "grid");
    StreamPtr positions;
    StreamPtr normals;
};

void withVertices(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    const GridMesh ours(grid);
    ours.mesh->addVerticesMapping(StreamMapping(NORMAL, ours.normals, 0));
    ours.addPrimitive({StreamMapping(VERTEX, StreamPtr(), 0)}, grid.indices);
    for (auto _ : state)
    {
        ours.mesh->recalculateVertexNormals();
    }
    const std::vector<float> wanted = computeFlatNormals(grid.positions, grid.indices);
    require(state, differenceOf(ours.normals->getData(), wanted) < 1e-5, "wrong normals");
    countItems(state, state.range(0));
}
BENCHMARK(withVertices)->Name("normals/ours, with the vertices")->Apply(NORMALS_SIZES);

void inOwnSlot(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    const GridMesh ours(grid);
    const StreamPtr coordinates =
        GridMesh::makeStream("coordinates", 2, std::vector<float>(2 * grid.vertexCount()));
    ours.addPrimitive({StreamMapping(VERTEX, StreamPtr(), 0),
                       StreamMapping(NORMAL, ours.normals, 1),
                       StreamMapping(TEXCOORD, coordinates, 2)},
                      repeatIndices(grid.indices, 3));
    for (auto _ : state)
    {
        ours.mesh->recalculateVertexNormals();
    }
    const std::vector<float> byPosition = computeFlatNormals(grid.positions, grid.indices);
    const std::vector<float>& stored = ours.mesh->getStream("normals")->getData();
    const std::vector<unsigned int>& entries = ours.mesh->getPrimitive(0)->getIndexStream();
    std::vector<float> wanted;
    std::vector<float> found;
    for (std::size_t record = 0; record < entries.size(); record += 3)
    {
        const float* const normal = &byPosition[3 * static_cast<std::size_t>(entries[record])];
        const float* const own = &stored[3 * static_cast<std::size_t>(entries[record + 1])];
        wanted.insert(wanted.end(), normal, normal + 3);
        found.insert(found.end(), own, own + 3);
    }
    require(state, differenceOf(found, wanted) < 1e-5, "wrong normals");
    countItems(state, state.range(0));
}
BENCHMARK(inOwnSlot)->Name("normals/ours, in a slot of their own")->Apply(NORMALS_SIZES);

void flat(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    std::vector<float> normals;
    for (auto _ : state)
    {
        normals = computeFlatNormals(grid.positions, grid.indices);
        benchmark::DoNotOptimize(normals.data());
    }
    countItems(state, state.range(0));
}
BENCHMARK(flat)->Name("normals/limit")->Apply(NORMALS_SIZES);
} // namespace
} // namespace velmoran::bench
