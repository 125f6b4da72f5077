#include "examples/scenetool/MeshInputs.h"
#include "tests/examples/ToolFiles.h"

#include <Eigen/Geometry>

// The normals of whole documents, beside the same sums in double precision.
namespace velmoran::examples::test
{
namespace
{
using Eigen::Vector3d;

/// The position tuple and the normal of a corner.
struct Corner
{
    std::size_t tuple;
    Vector3d normal;
};

std::vector<Corner> readCorners(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive)
{
    const MeshInputs inputs = findMeshInputs(mesh, primitive);
    std::vector<Corner> corners;
    visitFaces(primitive,
               [&](const MeshFace& face)
               {
                   FaceTuples positions;
                   FaceTuples normals;
                   ASSERT_TRUE(pickTuples(inputs.position, face, positions));
                   ASSERT_TRUE(pickTuples(inputs.normal, face, normals));
                   for (std::size_t i = 0; i < face.corners; ++i)
                   {
                       corners.push_back({positions[i], inputs.normal.tuple(normals[i])});
                   }
               });
    return corners;
}

Vector3d unitEdge(const Vector3d& from, const Vector3d& to)
{
    const Vector3d edge = to - from;
    return (edge.isZero(0.0) ? Vector3d(0.001, 0.0, 0.0) : edge).normalized();
}

/// Returns how many normals could be compared.
std::size_t compareNormals(const scene::Mesh& mesh)
{
    std::vector<Corner> corners; // of all primitives, which share their positions
    for (const scene::IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        const std::vector<Corner> more = readCorners(mesh, *primitive);
        corners.insert(corners.end(), more.begin(), more.end());
    }
    const MeshInput positions = findMeshInputs(mesh, *mesh.getMeshPrimitives().at(0)).position;
    std::vector<Vector3d> sums(positions.count(), Vector3d::Zero());
    for (std::size_t i = 0; i + 3 <= corners.size(); i += 3)
    {
        const Vector3d first = positions.tuple(corners[i].tuple);
        const Vector3d normal = unitEdge(first, positions.tuple(corners[i + 1].tuple))
                                    .cross(unitEdge(first, positions.tuple(corners[i + 2].tuple)));
        for (std::size_t j = i; j < i + 3; ++j)
        {
            sums[corners[j].tuple] += normal;
        }
    }
    std::size_t compared = 0;
    for (const Corner& corner : corners)
    {
        const Vector3d& sum = sums[corner.tuple];
        if (sum.norm() > 1e-3) // the direction of less is a matter of rounding
        {
            EXPECT_LT((corner.normal - sum.normalized()).norm(), 1e-3) << corner.tuple;
            ++compared;
        }
    }
    return compared;
}
} // namespace

TEST(NormalsOfModels, AgreeWithSumsInDoublePrecision)
{
    for (const std::string& file : wholeDocuments({"room.dae", "avatar.dae"}))
    {
        SCOPED_TRACE(file);
        const auto scene = boost::make_shared<scene::SceneManager>(core::event::EventManagerPtr());
        ColladaReader().readFile(file, scene);
        std::vector<scene::IGeometryPtr> geometries;
        scene->getGeometryManager()->getGeometries(geometries);
        std::size_t compared = 0;
        for (const scene::IGeometryPtr& geometry : geometries)
        {
            const auto mesh = boost::dynamic_pointer_cast<scene::Mesh>(geometry);
            if (mesh && !mesh->getMeshPrimitives().empty())
            {
                scene->getGeometryManager()->recalculateVertexNormals(mesh->getID());
                compared += compareNormals(*mesh);
            }
        }
        EXPECT_GT(compared, 0U);
    }
}
} // namespace velmoran::examples::test
