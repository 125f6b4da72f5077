// Vertex normals of a mesh by objects: what it costs to make a triangle and three vertices for
// each face, as an interface of triangles and vertices suggests.

#include "bench/Cases.h"
#include "bench/Grids.h"
#include "bench/Normals.h"
#include "bench/Skins.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <cmath>

namespace velmoran::bench
{
namespace
{
/// A list of attributes by name.
struct VertexObject
{
    struct Element
    {
        int semantic;
        std::vector<float> values;
    };

    std::vector<boost::shared_ptr<Element>> elements;

    Eigen::Vector3f position() const { return Eigen::Vector3f(elements.front()->values.data()); }
};

struct TriangleObject
{
    boost::shared_ptr<VertexObject> vertices[3];
};

boost::shared_ptr<TriangleObject> makeTriangle(const FlatGrid& grid, std::size_t first)
{
    const auto triangle = boost::make_shared<TriangleObject>();
    for (std::size_t i = 0; i < 3; ++i)
    {
        const float* const position = &grid.positions[3 * std::size_t(grid.indices[first + i])];
        const auto element = boost::make_shared<VertexObject::Element>();
        element->values.assign(position, position + 3);
        triangle->vertices[i] = boost::make_shared<VertexObject>();
        triangle->vertices[i]->elements.push_back(element);
    }
    return triangle;
}

std::vector<float> computeByObjects(const FlatGrid& grid)
{
    std::vector<boost::shared_ptr<TriangleObject>> triangles;
    for (std::size_t i = 0; i < grid.indices.size(); i += 3)
    {
        triangles.push_back(makeTriangle(grid, i));
    }
    std::vector<float> normals(grid.positions.size());
    const unsigned int* index = grid.indices.data();
    for (const boost::shared_ptr<TriangleObject>& triangle : triangles)
    {
        const Eigen::Vector3f a = triangle->vertices[0]->position();
        const Eigen::Vector3f e1 = triangle->vertices[1]->position() - a;
        const Eigen::Vector3f e2 = triangle->vertices[2]->position() - a;
        const Eigen::Vector3f normal = e1.normalized().cross(e2.normalized());
        for (int corner = 0; corner < 3; ++corner, ++index)
        {
            Eigen::Map<Eigen::Vector3f>{&normals[3 * std::size_t(*index)]} += normal;
        }
    }
    for (std::size_t i = 0; i < normals.size(); i += 3)
    {
        Eigen::Map<Eigen::Vector3f>{&normals[i]}.normalize();
    }
    return normals;
}

void byObjects(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    std::vector<float> normals;
    for (auto _ : state)
    {
        normals = computeByObjects(grid);
    }
    const std::vector<float> wanted = computeFlatNormals(grid.positions, grid.indices);
    require(state, differenceOf(normals, wanted) < 1e-5, "wrong normals");
    countItems(state, state.range(0));
}
BENCHMARK(byObjects)->Name("normals/an object for each triangle")->Apply(&atNAnd4N<250000>);
} // namespace
} // namespace velmoran::bench
