// Refining triangle meshes once: ours and the limit.

#include "bench/Cases.h"
#include "bench/Refinements.h"
#include "scene/deform/Controller.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <limits>

namespace velmoran::bench
{
using namespace velmoran::scene;

RefinementGrid makeRefinementGrid(std::int64_t triangles)
{
    constexpr unsigned int COLUMNS = 250;
    const auto rows = static_cast<unsigned int>(triangles / 2 / COLUMNS);
    RefinementGrid grid;
    for (unsigned int row = 0; row <= rows; ++row)
    {
        for (unsigned int column = 0; column <= COLUMNS; ++column)
        {
            const auto z = static_cast<float>((column * row) % 7);
            grid.positions.insert(grid.positions.end(),
                                  {static_cast<float>(column), static_cast<float>(row), z});
        }
    }
    for (unsigned int row = 0; row < rows; ++row)
    {
        for (unsigned int column = 0; column < COLUMNS; ++column)
        {
            const unsigned int corner = row * (COLUMNS + 1) + column;
            const unsigned int above = corner + COLUMNS + 1;
            grid.corners.insert(grid.corners.end(),
                                {corner, corner + 1, above, above, corner + 1, above + 1});
        }
    }
    return grid;
}

namespace
{
/// Triangles round one corner, which has the largest index.
RefinementGrid makeFan(std::int64_t triangles)
{
    RefinementGrid fan;
    for (std::int64_t i = 0; i <= triangles; ++i)
    {
        fan.positions.insert(fan.positions.end(), {static_cast<float>(i), 0.0F, 0.0F});
    }
    fan.positions.insert(fan.positions.end(), {0.0F, 1.0F, 0.0F});
    for (unsigned int i = 0; i < static_cast<unsigned int>(triangles); ++i)
    {
        fan.corners.insert(fan.corners.end(), {static_cast<unsigned int>(triangles + 1), i, i + 1});
    }
    return fan;
}

/// Positions that are known to be distinct, edges known by their indices: each vertex has a
/// chain of the edges to vertices of a larger index. Quadratic where many edges meet in a small
/// one.
class FlatRefinement
{
public:
    explicit FlatRefinement(const RefinementGrid& grid)
        : m_grid(grid), m_corners(grid.positions.size() / 3, NONE), m_chains(m_corners)
    {
        refined.positions.reserve(4 * grid.positions.size() + 4096);
        refined.corners.reserve(4 * grid.corners.size());
        m_edges.reserve(grid.corners.size());
        for (std::size_t i = 0; i < grid.corners.size(); i += 3)
        {
            const unsigned int* const c = &grid.corners[i];
            const unsigned int a = corner(c[0]);
            const unsigned int ab = midpoint(c[0], c[1]);
            const unsigned int ca = midpoint(c[2], c[0]);
            const unsigned int b = corner(c[1]);
            const unsigned int bc = midpoint(c[1], c[2]);
            const unsigned int d = corner(c[2]);
            const unsigned int all[] = {a, ab, ca, ab, b, bc, ca, bc, d, ab, bc, ca};
            refined.corners.insert(refined.corners.end(), std::begin(all), std::end(all));
        }
    }

    RefinementGrid refined;

private:
    static constexpr unsigned int NONE = std::numeric_limits<unsigned int>::max();

    struct Edge
    {
        unsigned int larger;
        unsigned int midpoint;
        unsigned int next;
    };

    unsigned int add(float x, float y, float z)
    {
        refined.positions.insert(refined.positions.end(), {x, y, z});
        return static_cast<unsigned int>(refined.positions.size() / 3 - 1);
    }

    unsigned int corner(unsigned int index)
    {
        if (m_corners[index] == NONE)
        {
            const float* const p = &m_grid.positions[3 * index];
            m_corners[index] = add(p[0], p[1], p[2]);
        }
        return m_corners[index];
    }

    unsigned int midpoint(unsigned int from, unsigned int to)
    {
        unsigned int& chain = m_chains[std::min(from, to)];
        const unsigned int larger = std::max(from, to);
        for (unsigned int edge = chain; edge != NONE; edge = m_edges[edge].next)
        {
            if (m_edges[edge].larger == larger)
            {
                return m_edges[edge].midpoint;
            }
        }
        const float* const a = &m_grid.positions[3 * from];
        const float* const b = &m_grid.positions[3 * to];
        const unsigned int added = add(a[0] + (b[0] - a[0]) * 0.5F, a[1] + (b[1] - a[1]) * 0.5F,
                                       a[2] + (b[2] - a[2]) * 0.5F);
        m_edges.push_back({larger, added, chain});
        chain = static_cast<unsigned int>(m_edges.size() - 1);
        return added;
    }

    const RefinementGrid& m_grid;
    std::vector<unsigned int> m_corners; ///< of the refined grid
    std::vector<unsigned int> m_chains;  ///< first edge
    std::vector<Edge> m_edges;
};

StreamPtr makeStream(const char* id, int stride, std::vector<float> data)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, stride, true);
    stream->setData(std::move(data));
    return stream;
}

enum Kind
{
    POSITIONS_ONLY,
    ALL_ATTRIBUTES, ///< normals and texture coordinates, too, each with an index of its own
    SKINNED         ///< 4 influences of each vertex
};

/// One primitive.
MeshPtr makeMesh(const RefinementGrid& grid, Kind kind)
{
    const MeshPtr mesh = boost::make_shared<Mesh>("grid", "grid");
    const StreamPtr positions = makeStream("positions", 3, grid.positions);
    mesh->addStream(positions);
    mesh->addVerticesMapping(StreamMapping(POSITION, positions, 0));
    std::vector<StreamMapping> inputs = {StreamMapping(VERTEX, StreamPtr(), 0)};
    if (kind == ALL_ATTRIBUTES)
    {
        std::vector<float> normals;
        std::vector<float> coordinates;
        for (std::size_t i = 0; i < grid.positions.size(); i += 3)
        {
            const float x = grid.positions[i];
            const float y = grid.positions[i + 1];
            normals.insert(normals.end(), {x, y, 1000.0F}); // any lengths will do
            coordinates.insert(coordinates.end(), {x / 256.0F, y / 256.0F});
        }
        inputs.emplace_back(NORMAL, makeStream("normals", 3, normals), 1);
        inputs.emplace_back(TEXCOORD, makeStream("coordinates", 2, coordinates), 2);
    }
    std::vector<unsigned int> indices;
    for (const unsigned int corner : grid.corners)
    {
        indices.insert(indices.end(), inputs.size(), corner);
    }
    mesh->addPrimitive(boost::make_shared<TriangleMeshPrimitive>(mesh, inputs, indices));
    return mesh;
}

ControllerPtr makeController(const MeshPtr& mesh, Kind kind)
{
    constexpr int INFLUENCES = 4;
    const ControllerPtr controller = boost::make_shared<Controller>("controller", "");
    const int vertices = static_cast<int>(mesh->getVertices()[0].getStream()->getData().size() / 3);
    std::vector<int> v;
    std::vector<float> weights;
    for (int i = 0; i < INFLUENCES * vertices; ++i)
    {
        v.insert(v.end(), {i / 1000 + i % INFLUENCES, i});
        weights.push_back(static_cast<float>(i % 997) / 997.0F);
    }
    const SkinPtr skin = boost::make_shared<Skin>(mesh);
    skin->setStreams({makeStream("weights", 1, weights)});
    skin->setVertexWeightsInput("WEIGHT", "weights");
    skin->setVCount(std::vector<unsigned int>(static_cast<std::size_t>(vertices), INFLUENCES));
    skin->setV(v);
    controller->setSkin(kind == SKINNED ? skin : SkinPtr());
    return controller;
}

void refineOurs(benchmark::State& state, RefinementGrid (*make)(std::int64_t), Kind kind)
{
    const RefinementGrid grid = make(state.range(0));
    const MeshPtr mesh = makeMesh(grid, kind);
    const ControllerPtr controller = makeController(mesh, kind);
    for (auto _ : state)
    {
        mesh->subDivide(controller);
    }
    const RefinementGrid wanted = FlatRefinement(grid).refined;
    const IMeshPrimitive& primitive = *mesh->getPrimitive(0);
    require(state, mesh->getStreams()[0]->getData() == wanted.positions, "wrong positions");
    for (std::size_t i = 0; i < wanted.corners.size(); ++i)
    {
        const std::size_t width = primitive.getIndexStreamStride();
        const unsigned int* const record = &primitive.getIndexStream()[i * width];
        require(state, std::count(record, record + width, wanted.corners[i]) == long(width),
                "wrong indices");
    }
    countItems(state, state.range(0));
    mesh->clearPrimitives();
}
BENCHMARK_CAPTURE(refineOurs, positions, makeRefinementGrid, POSITIONS_ONLY)
    ->Name("subdivision/ours, positions")
    ->Apply(refinementSizes);
BENCHMARK_CAPTURE(refineOurs, all, makeRefinementGrid, ALL_ATTRIBUTES)
    ->Name("subdivision/ours, normals and texture coordinates")
    ->Apply(refinementSizes);
BENCHMARK_CAPTURE(refineOurs, skinned, makeRefinementGrid, SKINNED)
    ->Name("subdivision/ours, skinned")
    ->Apply(refinementSizes);
BENCHMARK_CAPTURE(refineOurs, fan, makeFan, POSITIONS_ONLY)
    ->Name("subdivision/ours, fan")
    ->Apply(refinementSizes);

void refineFlat(benchmark::State& state)
{
    const RefinementGrid grid = makeRefinementGrid(state.range(0));
    for (auto _ : state)
    {
        const FlatRefinement refinement(grid);
        benchmark::DoNotOptimize(refinement.refined.positions.data());
    }
    countItems(state, state.range(0));
}
BENCHMARK(refineFlat)->Name("subdivision/limit")->Apply(refinementSizes);
} // namespace
} // namespace velmoran::bench
