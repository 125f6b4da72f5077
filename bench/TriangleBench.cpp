// Reading all triangles of a primitive as objects.

#include "bench/Allocations.h"
#include "bench/Cases.h"
#include "bench/Grids.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

#include <boost/make_shared.hpp>

#include <array>
#include <vector>

namespace velmoran::bench
{
namespace
{
using namespace velmoran::scene;

// The larger size has the million triangles.
constexpr auto SIZES = &atNAnd4N<250000>;

constexpr std::size_t ATTRIBUTES = 3;  // position, normal and texture coordinate
constexpr std::size_t CORNER_SIZE = 8; // their floats

/// A grid whose corners have three attributes with an index of their own each. Sums of its
/// numbers are exact, in whatever order.
struct Grid
{
    std::vector<float> positions;
    std::vector<float> normals;
    std::vector<float> coordinates;
    std::vector<unsigned int> indices;
};

Grid makeGrid(std::int64_t triangles)
{
    FlatGrid flat = makeFlatGrid(triangles);
    Grid grid;
    for (std::size_t i = 0; i < flat.vertexCount(); ++i)
    {
        const float* const position = &flat.positions[3 * i];
        grid.normals.insert(grid.normals.end(), {0.0F, 0.5F, 0.75F});
        grid.coordinates.insert(grid.coordinates.end(),
                                {position[0] / 512.0F, position[1] / 512.0F});
    }
    grid.indices = repeatIndices(flat.indices, ATTRIBUTES);
    grid.positions = std::move(flat.positions);
    return grid;
}

StreamPtr makeStream(const char* id, int stride, const std::vector<float>& data)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, stride, true);
    stream->setData(data);
    return stream;
}

MeshPtr makeMesh(const Grid& grid)
{
    const MeshPtr mesh = boost::make_shared<Mesh>("grid", "grid");
    const StreamPtr positions = makeStream("positions", 3, grid.positions);
    mesh->addStream(positions);
    mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    const std::vector<StreamMapping> mapping = {
        StreamMapping(VERTEX, StreamPtr(), 0),
        StreamMapping(NORMAL, makeStream("normals", 3, grid.normals), 1),
        StreamMapping(TEXCOORD, makeStream("coordinates", 2, grid.coordinates), 2),
    };
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, mapping, grid.indices));
    return mesh;
}

double sumOf(const Vertex& vertex)
{
    double sum = 0.0;
    for (unsigned int i = 0; i < vertex.getElementCount(); ++i)
    {
        const VertexElementPtr element = vertex.getElementAt(i);
        for (int j = 0; j < element->size; ++j)
        {
            sum += static_cast<double>(element->values[j]);
        }
    }
    return sum;
}

double sumOf(const std::vector<IPrimitivePtr>& triangles)
{
    double sum = 0.0;
    for (const IPrimitivePtr& triangle : triangles)
    {
        for (const VertexPtr& vertex : triangle->getVertexArray())
        {
            sum += sumOf(*vertex);
        }
    }
    return sum;
}

/// All corners of all triangles, their attributes in a row.
std::vector<float> gather(const Grid& grid)
{
    const std::size_t corners = grid.indices.size() / ATTRIBUTES;
    std::vector<float> values(corners * CORNER_SIZE);
    float* next = values.data();
    for (std::size_t i = 0; i < corners; ++i)
    {
        const unsigned int* const record = &grid.indices[i * ATTRIBUTES];
        const float* const position = &grid.positions[record[0] * 3];
        const float* const normal = &grid.normals[record[1] * 3];
        const float* const coordinate = &grid.coordinates[record[2] * 2];
        next = std::copy_n(position, 3, next);
        next = std::copy_n(normal, 3, next);
        next = std::copy_n(coordinate, 2, next);
    }
    return values;
}

double sumOf(const std::vector<float>& values)
{
    double sum = 0.0;
    for (const float value : values)
    {
        sum += static_cast<double>(value);
    }
    return sum;
}

void readFlat(benchmark::State& state)
{
    const Grid grid = makeGrid(state.range(0));
    std::vector<float> values;
    for (auto _ : state)
    {
        values = gather(grid);
        benchmark::DoNotOptimize(values.data());
    }
    const auto corners = static_cast<std::size_t>(3 * state.range(0));
    require(state, values.size() == corners * CORNER_SIZE, "wrong size");
    countItems(state, state.range(0));
}
BENCHMARK(readFlat)->Name("triangles/limit")->Apply(SIZES);

void readOurs(benchmark::State& state)
{
    const Grid grid = makeGrid(state.range(0));
    const MeshPtr mesh = makeMesh(grid);
    const IMeshPrimitivePtr primitive = mesh->getPrimitive(0);
    const auto count = static_cast<double>(state.range(0));
    // A triangle, its vertices, the element list of each, and for each attribute of a
    // corner an element with its floats.
    const double handedOut = 1 + 3 + 3 + 3 * static_cast<double>(ATTRIBUTES) * 2;
    std::uint64_t allocations = 0;
    std::vector<IPrimitivePtr> triangles;
    for (auto _ : state)
    {
        const std::uint64_t before = countAllocations();
        triangles = primitive->getPrimitives();
        allocations = countAllocations() - before;
        benchmark::DoNotOptimize(triangles.data());
    }
    // One allocation is that of the list itself.
    state.counters["allocs_per_triangle"] = static_cast<double>(allocations - 1) / count;
    state.counters["objects_per_triangle"] = handedOut;
    require(state, sumOf(triangles) == sumOf(gather(grid)), "wrong values");
    countItems(state, state.range(0));
    mesh->clearPrimitives();
}
BENCHMARK(readOurs)->Name("triangles/ours, all held")->Apply(SIZES);

void readOursOneByOne(benchmark::State& state)
{
    const Grid grid = makeGrid(state.range(0));
    const MeshPtr mesh = makeMesh(grid);
    const IMeshPrimitivePtr primitive = mesh->getPrimitive(0);
    double sum = 0.0;
    for (auto _ : state)
    {
        sum = 0.0;
        const unsigned int count = primitive->getCount();
        for (unsigned int i = 0; i < count; ++i)
        {
            for (const VertexPtr& vertex : primitive->getPrimitiveAt(i)->getVertexArray())
            {
                sum += sumOf(*vertex);
            }
        }
    }
    require(state, sum == sumOf(gather(grid)), "wrong values");
    countItems(state, state.range(0));
    mesh->clearPrimitives();
}
BENCHMARK(readOursOneByOne)->Name("triangles/ours, one by one and summed")->Apply(SIZES);
} // namespace
} // namespace velmoran::bench
