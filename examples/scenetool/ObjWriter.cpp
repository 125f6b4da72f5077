#include "examples/scenetool/ObjWriter.h"

#include "examples/scenetool/ObjMaterials.h"
#include "examples/scenetool/OutputFile.h"
#include "examples/scenetool/PosedMeshes.h"
#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/Text.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Core>
#include <Eigen/LU>

#include <cmath>
#include <filesystem>
#include <map>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace velmoran::examples
{
namespace
{
/// What turns normals where `linear` turns directions: its inverse transpose but for the length.
Eigen::Matrix3d makeNormalMatrix(const Eigen::Matrix3d& linear)
{
    // The cofactors are the inverse transpose times the determinant, and defined for matrices
    // that have no inverse too.
    Eigen::Matrix3d turn;
    turn << linear.col(1).cross(linear.col(2)), linear.col(2).cross(linear.col(0)),
        linear.col(0).cross(linear.col(1));
    return turn * (linear.determinant() < 0.0 ? -1.0 : 1.0);
}

/// Writes one file; see `writeObj`.
class ObjWriter
{
public:
    ObjWriter(const scene::SceneManagerPtr& scene, OutputFile& file) : m_scene(scene), m_file(file)
    {
    }

    void write()
    {
        visitMeshes(m_scene, [this](const PosedMesh& mesh) { writeMesh(mesh); });
        m_file.write(m_text);
    }

    void append(const std::string& text)
    {
        constexpr std::size_t ENOUGH = 1U << 20U;
        m_text += text;
        if (m_text.size() > ENOUGH)
        {
            m_file.write(m_text);
            m_text.clear();
        }
    }

    const ObjResult& getResult() const { return m_result; }
    const ObjMaterials& getMaterials() const { return m_materials; }

private:
    /// Where the tuples of the streams written so far begin, counted from 1.
    using Starts = std::unordered_map<const scene::Stream*, std::size_t>;

    void writeMesh(const PosedMesh& mesh)
    {
        // What depends on the pose is written for each instance.
        m_positionStarts.clear();
        m_normalStarts.clear();
        m_skinnedNormals.clear();
        m_world = mesh.skin ? Eigen::Matrix4d::Identity() : mesh.matrix;
        m_directions =
            mesh.skin ? skinDirections(m_scene, *mesh.skin) : std::vector<Eigen::Matrix3d>();
        m_result.unposedSkins += mesh.lacksJoints ? 1U : 0U;
        for (const auto& primitive : mesh.mesh->getMeshPrimitives())
        {
            if (!hasFaces(*primitive))
            {
                ++m_result.skippedPrimitives;
                continue;
            }
            const MeshInputs inputs = findMeshInputs(mesh, *primitive);
            writeTuples(inputs);
            const std::string symbol = primitive->getMaterialSymbol();
            append("g " + objName(mesh.node->getID()) + ' ' + objName(symbol) + '\n');
            append("usemtl " + m_materials.use(symbol, mesh.instance->getMaterial(symbol)) + '\n');
            visitFaces(*primitive, [&](const MeshFace& face) { writeFace(face, inputs); });
        }
    }

    void writeTuples(const MeshInputs& inputs)
    {
        if (isNew(inputs.position, m_positionStarts, m_positionCount))
        {
            for (std::size_t i = 0; i < inputs.position.count(); ++i)
            {
                appendTuple("v", (m_world * inputs.position.tuple(i).homogeneous()).head<3>(), 3);
            }
        }
        if (isNew(inputs.texture, m_textureStarts, m_textureCount))
        {
            for (std::size_t i = 0; i < inputs.texture.count(); ++i)
            {
                appendTuple("vt", inputs.texture.tuple(i), 2);
            }
        }
        if (m_directions.empty() && isNew(inputs.normal, m_normalStarts, m_normalCount))
        {
            const Eigen::Matrix3d turn = makeNormalMatrix(m_world.topLeftCorner<3, 3>());
            for (std::size_t i = 0; i < inputs.normal.count(); ++i)
            {
                appendTuple("vn", (turn * inputs.normal.tuple(i)).stableNormalized(), 3);
            }
        }
    }

    static bool isNew(const MeshInput& input, Starts& starts, std::size_t& written)
    {
        if (input.count() == 0 || !starts.emplace(input.stream, written + 1).second)
        {
            return false;
        }
        written += input.count();
        return true;
    }

    void appendTuple(const char* kind, const Eigen::Vector3d& value, int size)
    {
        std::string line = kind;
        for (int i = 0; i < size; ++i)
        {
            const auto number = static_cast<float>(value[i]);
            line += ' ' + floatText(std::isfinite(number) ? number + 0.0F : 0.0F);
        }
        append(line + '\n');
    }

    void writeFace(const MeshFace& face, const MeshInputs& inputs)
    {
        if (!pickTuples(inputs.position, face, m_positions))
        {
            ++m_result.skippedFaces;
            return;
        }
        pickTuples(inputs.texture, face, m_textures);
        pickTuples(inputs.normal, face, m_normals);
        const bool mirrored = isMirrored(m_positions.front());
        std::string line = "f";
        for (std::size_t i = 0; i < face.corners; ++i)
        {
            const std::size_t corner = mirrored && i > 0 ? face.corners - i : i;
            line += ' ' + std::to_string(m_positionStarts.at(inputs.position.stream) +
                                         m_positions[corner]);
            line += m_textures.empty() && m_normals.empty() ? "" : "/";
            if (!m_textures.empty())
            {
                line +=
                    std::to_string(m_textureStarts.at(inputs.texture.stream) + m_textures[corner]);
            }
            if (!m_normals.empty())
            {
                line += '/' + std::to_string(numberNormal(inputs.normal, m_normals[corner],
                                                          m_positions[corner]));
            }
        }
        append(line + '\n');
        ++(face.corners == 3 ? m_result.triangles : m_result.polygons);
        m_result.points = m_positionCount;
    }

    bool isMirrored(std::size_t position) const
    {
        const Eigen::Matrix3d linear =
            m_directions.empty() ? m_world.topLeftCorner<3, 3>() : m_directions[position];
        return linear.determinant() < 0.0;
    }

    /// The number of the normal `index` at a position. A skin turns it in another way at each
    /// position, so it is written when it is first met there.
    std::size_t numberNormal(const MeshInput& normal, std::size_t index, std::size_t position)
    {
        if (m_directions.empty())
        {
            return m_normalStarts.at(normal.stream) + index;
        }
        std::size_t& number = m_skinnedNormals[{normal.stream, index, position}];
        if (number == 0)
        {
            const Eigen::Matrix3d turn = makeNormalMatrix(m_directions[position]);
            appendTuple("vn", (turn * normal.tuple(index)).stableNormalized(), 3);
            number = ++m_normalCount;
        }
        return number;
    }

    scene::SceneManagerPtr m_scene;
    OutputFile& m_file;
    std::string m_text; ///< not written to the file yet
    ObjMaterials m_materials;
    ObjResult m_result;
    Eigen::Matrix4d m_world = Eigen::Matrix4d::Identity();
    std::vector<Eigen::Matrix3d> m_directions; ///< by position, of a skin; empty: m_world
    Starts m_positionStarts;                   ///< of this instance
    Starts m_normalStarts;                     ///< of this instance
    Starts m_textureStarts;                    ///< of the whole file

    // Of the face in work; empty when it has no such input

    FaceTuples m_positions;
    FaceTuples m_textures;
    FaceTuples m_normals;

    /// Of this instance, by stream, tuple and position
    std::map<std::tuple<const scene::Stream*, std::size_t, std::size_t>, std::size_t>
        m_skinnedNormals;
    std::size_t m_positionCount = 0;
    std::size_t m_textureCount = 0;
    std::size_t m_normalCount = 0;
};

std::string materialFileName(const std::string& fileName)
{
    std::filesystem::path path(fileName);
    path.replace_extension(".mtl");
    return path == std::filesystem::path(fileName) ? fileName + ".mtl" : path.string();
}
} // namespace

ObjResult writeObj(const scene::SceneManagerPtr& scene, const std::string& fileName)
{
    const std::string materialFile = materialFileName(fileName);
    OutputFile objects(fileName);
    OutputFile materials(materialFile);
    ObjWriter writer(scene, objects);
    writer.append("# Written by scenetool: " + upAxisText(scene) + ", a unit is " +
                  floatText(scene->getMeterUnit()) + " m\n");
    writer.append("mtllib " + std::filesystem::path(materialFile).filename().string() + '\n');
    writer.write();
    materials.write(writer.getMaterials().getText());
    objects.finish();
    materials.finish();
    materials.commit();
    objects.commit();
    ObjResult result = writer.getResult();
    result.materialFile = materialFile;
    return result;
}
} // namespace velmoran::examples
