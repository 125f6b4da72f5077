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

std::vector<float> normalsOf(const OpenMeshMesh& mesh)
{
    std::vector<float> normals;
    for (const auto& vertex : mesh.vertices())
    {
        const OpenMesh::Vec3f& normal = mesh.normal(vertex);
        normals.insert(normals.end(), normal.data(), normal.data() + 3);
    }
    return normals;
}

void updateOpenMesh(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    OpenMeshMesh mesh = makeOpenMesh(grid);
    for (auto _ : state)
    {
        mesh.update_normals();
    }
    require(state, pointAlike(normalsOf(mesh), computeFlatNormals(grid.positions, grid.indices)),
            "wrong normals");
    countItems(state, state.range(0));
}
BENCHMARK(updateOpenMesh)->Name("normals/OpenMesh update_normals")->Apply(NORMALS_SIZES);
} // namespace
} // namespace velmoran::bench
#endif
