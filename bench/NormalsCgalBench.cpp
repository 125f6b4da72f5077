// Vertex normals of a mesh: a library that looks for the normal most visible from all faces.

#include "bench/Cases.h"
#include "bench/Grids.h"
#include "bench/Normals.h"

#ifdef VELMORAN_BENCH_CGAL
#define CGAL_NDEBUG // its checks would be timed
// False alarms about its optional values.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <CGAL/Polygon_mesh_processing/compute_normal.h>
#include <CGAL/Simple_cartesian.h>
#include <CGAL/Surface_mesh.h>

namespace velmoran::bench
{
namespace
{
using Kernel = CGAL::Simple_cartesian<float>;
using SurfaceMesh = CGAL::Surface_mesh<Kernel::Point_3>;
using Vertex = SurfaceMesh::Vertex_index;

SurfaceMesh makeSurfaceMesh(const FlatGrid& grid)
{
    SurfaceMesh mesh;
    for (std::size_t i = 0; i < grid.positions.size(); i += 3)
    {
        const float* const position = &grid.positions[i];
        mesh.add_vertex(Kernel::Point_3(position[0], position[1], position[2]));
    }
    for (std::size_t i = 0; i < grid.indices.size(); i += 3)
    {
        const unsigned int* const corner = &grid.indices[i];
        mesh.add_face(Vertex(corner[0]), Vertex(corner[1]), Vertex(corner[2]));
    }
    return mesh;
}

void computeCgal(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    SurfaceMesh mesh = makeSurfaceMesh(grid);
    const auto normals = mesh.add_property_map<Vertex, Kernel::Vector_3>("v:normal").first;
    for (auto _ : state)
    {
        CGAL::Polygon_mesh_processing::compute_vertex_normals(mesh, normals);
    }
    std::vector<float> found;
    for (const Vertex vertex : mesh.vertices())
    {
        const Kernel::Vector_3& normal = normals[vertex];
        found.insert(found.end(), {normal.x(), normal.y(), normal.z()});
    }
    require(state, pointAlike(found, computeFlatNormals(grid.positions, grid.indices)),
            "wrong normals");
    countItems(state, state.range(0));
}
BENCHMARK(computeCgal)->Name("normals/CGAL compute_vertex_normals")->Apply(&atNAnd4N<250000>);
} // namespace
} // namespace velmoran::bench
#endif
