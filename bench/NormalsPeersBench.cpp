// Vertex normals of a mesh: another library, built without its checks (see CMakeLists.txt).

#include "bench/Cases.h"
#include "bench/Grids.h"
#include "bench/Normals.h"

#ifdef VELMORAN_BENCH_OPENMESH
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>

namespace velmoran::bench
{
namespace
{
struct Traits : OpenMesh::DefaultTraits
{
    VertexAttributes(OpenMesh::Attributes::Normal);
    FaceAttributes(OpenMesh::Attributes::Normal);
};

using OpenMeshMesh = OpenMesh::TriMesh_ArrayKernelT<Traits>;

OpenMeshMesh makeOpenMesh(const FlatGrid& grid)
{
    OpenMeshMesh mesh;
    std::vector<OpenMesh::VertexHandle> vertices;
    for (std::size_t i = 0; i < grid.positions.size(); i += 3)
    {
        vertices.push_back(
            mesh.add_vertex({grid.positions[i], grid.positions[i + 1], grid.positions[i + 2]}));
    }
    for (std::size_t i = 0; i < grid.indices.size(); i += 3)
    {
        mesh.add_face(vertices[grid.indices[i]], vertices[grid.indices[i + 1]],
                      vertices[grid.indices[i + 2]]);
    }
    return mesh;
}

/// Its normals weight unlike ours, so that only the directions are alike.
bool isPlausible(const OpenMeshMesh& mesh, const FlatGrid& grid)
{
    const std::vector<float> normals = computeFlatNormals(grid.positions, grid.indices);
    for (std::size_t i = 0; i < grid.vertexCount(); ++i)
    {
        const OpenMesh::Vec3f& theirs = mesh.normal(mesh.vertex_handle(static_cast<unsigned>(i)));
        const float* const ours = &normals[3 * i];
        if (!(theirs[0] * ours[0] + theirs[1] * ours[1] + theirs[2] * ours[2] > 0.5F))
        {
            return false;
        }
    }
    return true;
}

void updateOpenMesh(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    OpenMeshMesh mesh = makeOpenMesh(grid);
    for (auto _ : state)
    {
        mesh.update_normals();
    }
    require(state, isPlausible(mesh, grid), "wrong normals");
    countItems(state, state.range(0));
}
BENCHMARK(updateOpenMesh)->Name("normals/OpenMesh update_normals")->Apply(NORMALS_SIZES);
} // namespace
} // namespace velmoran::bench
#endif
