#include "tests/examples/ToolFiles.h"

#include "examples/collada/ColladaReader.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

// The normals of whole documents, beside the same sums in double precision.
namespace velmoran::examples::test
{
namespace
{
using Eigen::Vector3d;

/// The position tuple and the normal of each corner of a primitive.
struct Corner
{
    std::size_t tuple;
    Vector3d normal;
};

/// Behind the last input if there is none.
std::size_t placeOf(const scene::IMeshPrimitive& primitive, scene::StreamSemantic semantic)
{
    const std::vector<scene::StreamMapping>& inputs = primitive.getStreamMapping();
    const scene::StreamMapping* const found = scene::findStreamMapping(inputs, semantic);
    return found != nullptr ? static_cast<std::size_t>(found - inputs.data()) : inputs.size();
}

scene::StreamPtr streamOf(const std::vector<scene::StreamMapping>& inputs,
                          scene::StreamSemantic semantic)
{
    return scene::findStreamMapping(inputs, semantic)->getStream();
}

Vector3d tupleOf(const scene::Stream& stream, std::size_t tuple)
{
    const float* const floats = &stream.getData().at(3 * tuple);
    return {floats[0], floats[1], floats[2]};
}

std::vector<Corner> readCorners(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive)
{
    const std::vector<unsigned int>& indices = primitive.getIndexStream();
    const std::size_t width = primitive.getStreamMapping().size();
    const std::size_t own = placeOf(primitive, scene::NORMAL);
    const scene::StreamPtr normals = own < width ? primitive.getStreamMapping()[own].getStream()
                                                 : streamOf(mesh.getVertices(), scene::NORMAL);
    std::vector<Corner> corners;
    for (std::size_t record = 0; record + width <= indices.size(); record += width)
    {
        const std::size_t tuple = indices[record + placeOf(primitive, scene::VERTEX)];
        corners.push_back({tuple, tupleOf(*normals, own < width ? indices[record + own] : tuple)});
    }
    return corners;
}

Vector3d unitEdge(const Vector3d& from, const Vector3d& to)
{
    const Vector3d edge = to - from;
    return (edge.isZero(0.0) ? Vector3d(0.001, 0.0, 0.0) : edge).normalized();
}

class Sums
{
public:
    explicit Sums(const scene::Stream& positions)
        : m_positions(positions), m_sums(positions.getData().size() / 3, Vector3d::Zero())
    {
    }

    void add(const std::vector<Corner>& corners)
    {
        for (std::size_t i = 0; i + 3 <= corners.size(); i += 3)
        {
            const Vector3d first = tupleOf(m_positions, corners[i].tuple);
            const Vector3d one = unitEdge(first, tupleOf(m_positions, corners[i + 1].tuple));
            const Vector3d other = unitEdge(first, tupleOf(m_positions, corners[i + 2].tuple));
            for (std::size_t j = i; j < i + 3; ++j)
            {
                m_sums[corners[j].tuple] += one.cross(other);
            }
        }
    }

    /// Returns how many normals could be compared.
    std::size_t compare(const std::vector<Corner>& corners) const
    {
        std::size_t compared = 0;
        for (const Corner& corner : corners)
        {
            const Vector3d& sum = m_sums[corner.tuple];
            if (sum.norm() > 1e-3) // the direction of less is a matter of rounding
            {
                EXPECT_LT((corner.normal - sum.normalized()).norm(), 1e-3) << corner.tuple;
                ++compared;
            }
        }
        return compared;
    }

private:
    const scene::Stream& m_positions;
    std::vector<Vector3d> m_sums;
};

std::size_t compareNormals(const scene::Mesh& mesh)
{
    const scene::StreamPtr positions = streamOf(mesh.getVertices(), scene::POSITION);
    std::vector<std::vector<Corner>> primitives;
    Sums sums(*positions);
    for (const scene::IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        primitives.push_back(readCorners(mesh, *primitive));
        sums.add(primitives.back());
    }
    std::size_t compared = 0;
    for (const std::vector<Corner>& corners : primitives)
    {
        compared += sums.compare(corners);
    }
    return compared;
}
} // namespace

TEST(NormalsOfModels, AgreeWithSumsInDoublePrecision)
{
    std::vector<std::string> files = {exampleDocument("room.dae"), exampleDocument("avatar.dae")};
    for (const SharedDocument& document : wholeSharedDocuments())
    {
        files.push_back(document.file);
    }
    for (const std::string& file : files)
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
            if (mesh)
            {
                scene->getGeometryManager()->recalculateVertexNormals(mesh->getID());
                compared += compareNormals(*mesh);
            }
        }
        EXPECT_GT(compared, 0U);
    }
}
} // namespace velmoran::examples::test
