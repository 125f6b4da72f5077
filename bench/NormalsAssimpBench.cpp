// Vertex normals of a mesh: a library that finds equal corners by their positions.

#include "bench/Cases.h"
#include "bench/Grids.h"
#include "bench/Normals.h"

#ifdef VELMORAN_BENCH_ASSIMP
#include <assimp/Importer.hpp>
#include <assimp/mesh.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <string>

namespace velmoran::bench
{
namespace
{
/// Puts a grid in the place of a mesh: corners of their own for each triangle.
void replaceByGrid(aiMesh& mesh, const FlatGrid& grid)
{
    delete[] mesh.mVertices;
    delete[] mesh.mFaces;
    mesh.mNumVertices = static_cast<unsigned int>(grid.indices.size());
    mesh.mVertices = new aiVector3D[grid.indices.size()];
    mesh.mNumFaces = static_cast<unsigned int>(grid.triangleCount());
    mesh.mFaces = new aiFace[grid.triangleCount()];
    for (unsigned int i = 0; i < mesh.mNumVertices; ++i)
    {
        const float* const position = &grid.positions[3 * std::size_t(grid.indices[i])];
        mesh.mVertices[i].Set(position[0], position[1], position[2]);
    }
    for (unsigned int i = 0; i < mesh.mNumFaces; ++i)
    {
        mesh.mFaces[i].mNumIndices = 3;
        mesh.mFaces[i].mIndices = new unsigned int[3]{3 * i, 3 * i + 1, 3 * i + 2};
    }
}

void smoothAssimp(benchmark::State& state)
{
    const FlatGrid grid = makeFlatGrid(state.range(0));
    // Only scenes that it has read can be worked on.
    const std::string any = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";
    Assimp::Importer importer;
    importer.ReadFileFromMemory(any.data(), any.size(), 0, "obj");
    require(state, importer.GetScene() != nullptr, "no mesh to work on");
    aiMesh& mesh = *importer.GetScene()->mMeshes[0];
    replaceByGrid(mesh, grid);
    for (auto _ : state)
    {
        state.PauseTiming(); // it leaves normals that are there as they are
        delete[] mesh.mNormals;
        mesh.mNormals = nullptr;
        state.ResumeTiming();
        importer.ApplyPostProcessing(aiProcess_GenSmoothNormals);
    }
    const std::vector<float> byVertex = computeFlatNormals(grid.positions, grid.indices);
    std::vector<float> found;
    std::vector<float> wanted;
    for (unsigned int i = 0; i < mesh.mNumVertices; ++i)
    {
        const float* const normal = &byVertex[3 * std::size_t(grid.indices[i])];
        wanted.insert(wanted.end(), normal, normal + 3);
        found.insert(found.end(), {mesh.mNormals[i].x, mesh.mNormals[i].y, mesh.mNormals[i].z});
    }
    require(state, pointAlike(found, wanted), "wrong normals");
    countItems(state, state.range(0));
}
BENCHMARK(smoothAssimp)->Name("normals/Assimp GenSmoothNormals")->Apply(&atNAnd4N<250000>);
} // namespace
} // namespace velmoran::bench
#endif
