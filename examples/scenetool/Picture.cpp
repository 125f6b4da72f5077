#include "examples/scenetool/Picture.h"

#include "examples/scenetool/ObjMaterials.h"
#include "examples/scenetool/PosedMeshes.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmoran::examples
{
namespace
{
constexpr double HEIGHT = 800.0;
constexpr double MAX_WIDTH = 4000.0;
constexpr double GAP = 0.05;             ///< between the scenes and around them, of their height
constexpr std::size_t SUPERSAMPLING = 2; ///< smooths the edges

/// From the world of a scene to the viewer.
Eigen::Matrix3d makeView(scene::UpAxis up)
{
    Eigen::Matrix3d view = Eigen::Matrix3d::Identity();
    if (up == scene::X_UP)
    {
        view << 0, -1, 0, 1, 0, 0, 0, 0, 1;
    }
    else if (up == scene::Z_UP)
    {
        view << 1, 0, 0, 0, 0, 1, 0, -1, 0;
    }
    return view;
}

/// How bright a triangle is, from 0 to 1, whichever side it shows. The light is above the viewer's
/// right shoulder.
double brightness(const std::array<Eigen::Vector3d, 3>& corners)
{
    const Eigen::Vector3d light = Eigen::Vector3d(0.4, 0.5, 0.8).normalized();
    const Eigen::Vector3d normal =
        (corners[1] - corners[0]).cross(corners[2] - corners[0]).stableNormalized();
    const double towardLight = normal.dot(light) * (normal.z() < 0.0 ? -1.0 : 1.0);
    return 0.3 + 0.7 * std::max(towardLight, 0.0);
}
} // namespace

/// Collects the triangles of a scene.
class Picture::Collector
{
public:
    explicit Collector(scene::UpAxis up) : m_view(makeView(up))
    {
        m_model.low.setConstant(std::numeric_limits<double>::infinity());
        m_model.high = -m_model.low;
    }

    void add(const PosedMesh& mesh)
    {
        for (const auto& primitive : mesh.mesh->getMeshPrimitives())
        {
            const MeshInputs inputs = findMeshInputs(mesh, *primitive);
            const Eigen::Vector3d colour =
                diffuseColour(mesh.instance->getMaterial(primitive->getMaterialSymbol()))
                    .cast<double>();
            visitFaces(*primitive,
                       [&](const MeshFace& face) { addFace(mesh, inputs.position, face, colour); });
        }
    }

    const Model& getModel() const { return m_model; }

private:
    /// As a fan of triangles.
    void addFace(const PosedMesh& mesh, const MeshInput& positions, const MeshFace& face,
                 const Eigen::Vector3d& colour)
    {
        pickTuples(positions, face, m_tuples);
        for (std::size_t i = 2; i < m_tuples.size(); ++i)
        {
            addTriangle(mesh, positions, {m_tuples[0], m_tuples[i - 1], m_tuples[i]}, colour);
        }
    }

    void addTriangle(const PosedMesh& mesh, const MeshInput& positions,
                     const std::array<std::size_t, 3>& tuples, const Eigen::Vector3d& colour)
    {
        Triangle triangle;
        for (std::size_t i = 0; i < tuples.size(); ++i)
        {
            Eigen::Vector3d point = positions.tuple(tuples[i]);
            if (!mesh.skin)
            {
                point = (mesh.matrix * point.homogeneous()).head<3>().eval();
            }
            triangle.corners[i] = m_view * point;
            if (!triangle.corners[i].allFinite())
            {
                return;
            }
        }
        for (const Eigen::Vector3d& corner : triangle.corners)
        {
            m_model.low = m_model.low.cwiseMin(corner.head<2>());
            m_model.high = m_model.high.cwiseMax(corner.head<2>());
        }
        triangle.colour = brightness(triangle.corners) * colour;
        m_model.triangles.push_back(triangle);
    }

    const Eigen::Matrix3d m_view;
    Model m_model;
    FaceTuples m_tuples; ///< of the face in work
};

void Picture::add(const scene::SceneManagerPtr& scene)
{
    Collector collector(scene->getUpAxis());
    visitMeshes(scene, [&collector](const PosedMesh& mesh) { collector.add(mesh); });
    if (!collector.getModel().triangles.empty())
    {
        m_models.push_back(collector.getModel());
    }
}

std::size_t Picture::getCount() const
{
    return m_models.size();
}

Image Picture::render() const
{
    double bottom = std::numeric_limits<double>::infinity();
    double top = -bottom;
    double width = 0.0; // of the widest
    for (const Model& model : m_models)
    {
        bottom = std::min(bottom, model.low.y());
        top = std::max(top, model.high.y());
        width = std::max(width, model.high.x() - model.low.x());
    }
    // All in units of the scene; what has no height is as high as it is wide.
    const double height = top > bottom ? top - bottom : std::max(width, 1e-30);
    const double gap = GAP * height;
    const double column = width + gap;
    const double total = static_cast<double>(m_models.size()) * column + gap;
    const double scale = std::min(HEIGHT / (height + 2.0 * gap), MAX_WIDTH / total);
    const auto pixels = [scale](double length)
    { return static_cast<std::size_t>(std::ceil(length * scale - 1e-6)) * SUPERSAMPLING; };
    Canvas canvas(pixels(total), pixels(height + 2.0 * gap));
    for (std::size_t i = 0; i < m_models.size(); ++i)
    {
        const Model& model = m_models[i];
        const double left =
            gap + column * static_cast<double>(i) + (width - model.low.x() - model.high.x()) / 2.0;
        for (const Triangle& triangle : model.triangles)
        {
            std::array<Eigen::Vector3d, 3> corners;
            for (std::size_t k = 0; k < corners.size(); ++k)
            {
                const Eigen::Vector3d& corner = triangle.corners[k];
                corners[k] = static_cast<double>(SUPERSAMPLING) * scale *
                             Eigen::Vector3d(left + corner.x(), gap + top - corner.y(), corner.z());
            }
            canvas.drawTriangle(corners, triangle.colour);
        }
    }
    return canvas.shrink(SUPERSAMPLING);
}
} // namespace velmoran::examples
