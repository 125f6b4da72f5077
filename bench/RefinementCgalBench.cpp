// Refining triangle meshes once: a library that splits the edges of a half-edge mesh in place.

#include "bench/Cases.h"
#include "bench/Refinements.h"

#ifdef VELMORAN_BENCH_CGAL
#define CGAL_NDEBUG // its checks would be timed
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>
#include <CGAL/subdivision_method_3.h>

namespace velmoran::bench
{
namespace
{
using Point = CGAL::Simple_cartesian<float>::Point_3;
using SurfaceMesh = CGAL::Surface_mesh<Point>;

/// Splits edges in the middle and leaves vertices where they are.
struct MidpointMask
{
    SurfaceMesh* mesh;

    void edge_node(SurfaceMesh::Halfedge_index half, Point& point) const
    {
        point = CGAL::midpoint(mesh->point(mesh->source(half)), mesh->point(mesh->target(half)));
    }

    void vertex_node(SurfaceMesh::Vertex_index vertex, Point& point) const
    {
        point = mesh->point(vertex);
    }

    void border_node(SurfaceMesh::Halfedge_index half, Point& edgePoint, Point& vertexPoint) const
    {
        edge_node(half, edgePoint);
        vertex_node(mesh->target(half), vertexPoint);
    }
};

void refineCgal(benchmark::State& state)
{
    const RefinementGrid grid = makeRefinementGrid(state.range(0));
    SurfaceMesh mesh;
    for (std::size_t i = 0; i < grid.positions.size(); i += 3)
    {
        const float* const position = &grid.positions[i];
        mesh.add_vertex(Point(position[0], position[1], position[2]));
    }
    for (std::size_t i = 0; i < grid.corners.size(); i += 3)
    {
        const unsigned int* const corner = &grid.corners[i];
        mesh.add_face(SurfaceMesh::Vertex_index(corner[0]), SurfaceMesh::Vertex_index(corner[1]),
                      SurfaceMesh::Vertex_index(corner[2]));
    }
    const std::size_t edges = mesh.number_of_edges();
    for (auto _ : state)
    {
        CGAL::Subdivision_method_3::PTQ(mesh, MidpointMask{&mesh},
                                        CGAL::parameters::number_of_iterations(1));
    }
    require(state, mesh.number_of_faces() == 4 * grid.corners.size() / 3, "wrong faces");
    require(state, mesh.number_of_vertices() == grid.positions.size() / 3 + edges,
            "wrong vertices");
    countItems(state, state.range(0));
}
BENCHMARK(refineCgal)->Name("subdivision/CGAL")->Apply(refinementSizes);
} // namespace
} // namespace velmoran::bench
#endif
