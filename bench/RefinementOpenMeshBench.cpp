// Refining triangle meshes once: another half-edge mesh, built without its checks (see
// CMakeLists.txt). Its corners move: it refines by Loop's rule.

#include "bench/Cases.h"
#include "bench/Refinements.h"

#ifdef VELMORAN_BENCH_OPENMESH
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>
#include <OpenMesh/Tools/Subdivider/Uniform/LoopT.hh>

namespace velmoran::bench
{
namespace
{
using OpenMeshMesh = OpenMesh::TriMesh_ArrayKernelT<>;

void refineOpenMesh(benchmark::State& state)
{
    const RefinementGrid grid = makeRefinementGrid(state.range(0));
    OpenMeshMesh mesh;
    for (std::size_t i = 0; i < grid.positions.size(); i += 3)
    {
        const float* const position = &grid.positions[i];
        mesh.add_vertex({position[0], position[1], position[2]});
    }
    for (std::size_t i = 0; i < grid.corners.size(); i += 3)
    {
        const auto corner = [&](std::size_t j) { return mesh.vertex_handle(grid.corners[i + j]); };
        mesh.add_face(corner(0), corner(1), corner(2));
    }
    const std::size_t edges = mesh.n_edges();
    OpenMesh::Subdivider::Uniform::LoopT<OpenMeshMesh, float> subdivider;
    subdivider.attach(mesh);
    for (auto _ : state)
    {
        subdivider(1);
    }
    subdivider.detach(); // its destructor would come too late
    require(state, mesh.n_faces() == 4 * grid.corners.size() / 3, "wrong faces");
    require(state, mesh.n_vertices() == grid.positions.size() / 3 + edges, "wrong vertices");
    countItems(state, state.range(0));
}
BENCHMARK(refineOpenMesh)->Name("subdivision/OpenMesh LoopT")->Apply(refinementSizes);
} // namespace
} // namespace velmoran::bench
#endif
