#include "examples/scenetool/ObjWriter.h"

#include "examples/scenetool/ObjMaterials.h"
#include "examples/scenetool/OutputFile.h"
#include "examples/scenetool/SceneFacts.h"
#include "examples/scenetool/Text.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <Eigen/Core>
#include <Eigen/LU>
#include <boost/pointer_cast.hpp>

#include <array>
#include <cmath>
#include <filesystem>
#include <unordered_map>
#include <vector>

namespace velmoran::examples
{
namespace
{
/// An input as faces use it: the tuples of a stream, picked by a slot of the records.
struct Input
{
    const scene::Stream* stream = nullptr;
    std::size_t slot = 0;

    std::size_t stride() const { return static_cast<std::size_t>(stream->getStride()); }

    std::size_t count() const
    {
        return stream != nullptr && stream->getStride() > 0 ? stream->getData().size() / stride()
                                                            : 0;
    }

    /// The first three floats of a tuple, zeros for those it lacks.
    Eigen::Vector3d tuple(std::size_t index) const
    {
        Eigen::Vector3d value = Eigen::Vector3d::Zero();
        for (std::size_t i = 0; i < std::min<std::size_t>(stride(), 3); ++i)
        {
            const double number = stream->getData()[index * stride() + i];
            value[static_cast<int>(i)] = std::isfinite(number) ? number : 0.0;
        }
        return value;
    }
};

/// What a primitive's corners consist of. `position` has tuples in every usable one.
struct Inputs
{
    Input position;
    Input texture;
    Input normal;
};

Input findInput(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive,
                scene::StreamSemantic semantic)
{
    const auto* own = scene::findStreamMapping(primitive.getStreamMapping(), semantic);
    const auto* vertex = scene::findStreamMapping(primitive.getStreamMapping(), scene::VERTEX);
    const auto* shared = scene::findStreamMapping(mesh.getVertices(), semantic);
    // Positions are only reached through the vertices list.
    const bool isOwn = own != nullptr && semantic != scene::POSITION;
    const auto* mapping = isOwn ? own : shared;
    const auto* slot = isOwn ? own : vertex;
    if (mapping == nullptr || slot == nullptr || slot->getOffset() < 0)
    {
        return {};
    }
    return {mapping->getStream().get(), static_cast<std::size_t>(slot->getOffset())};
}

Inputs findInputs(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive)
{
    Inputs inputs;
    inputs.position = findInput(mesh, primitive, scene::POSITION);
    inputs.normal = findInput(mesh, primitive, scene::NORMAL);
    for (int set = scene::TEXCOORD; set <= scene::TEXCOORD7 && inputs.texture.count() == 0; ++set)
    {
        inputs.texture = findInput(mesh, primitive, static_cast<scene::StreamSemantic>(set));
    }
    return inputs;
}

/// The matrix that takes the geometry of a controller to where it was bound.
Eigen::Matrix4f bindShapeOf(const scene::InstanceControllerPtr& instance)
{
    const scene::ControllerPtr controller = instance->getController();
    const scene::SkinPtr skin = controller ? controller->getSkin() : scene::SkinPtr();
    return skin ? skin->getBindShapeMatrix() : Eigen::Matrix4f(Eigen::Matrix4f::Identity());
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
        const scene::NodePtr root = m_scene->getRoot();
        const auto nodes = root->getNodesBelow();
        const auto worlds = root->getCombinedTransformationsBelow();
        for (std::size_t i = 0; i < nodes.size(); ++i)
        {
            for (const auto& instance : nodes[i]->getInstancedGeometries())
            {
                writeInstance(*nodes[i], instance, worlds[i]);
            }
            for (const auto& instance : nodes[i]->getInstancedControllers())
            {
                writeInstance(*nodes[i], instance->getInstanceGeometry(),
                              worlds[i] * bindShapeOf(instance));
            }
        }
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

    void writeInstance(const scene::Node& node, const scene::InstanceGeometryPtr& instance,
                       const Eigen::Matrix4f& world)
    {
        const auto mesh = instance
                              ? boost::dynamic_pointer_cast<scene::Mesh>(instance->getGeometry())
                              : scene::MeshPtr();
        if (!mesh)
        {
            return;
        }
        // What depends on the matrix is written for each instance.
        m_positionStarts.clear();
        m_normalStarts.clear();
        m_world = world.cast<double>();
        m_isMirrored = m_world.topLeftCorner<3, 3>().determinant() < 0.0;
        for (const auto& primitive : mesh->getMeshPrimitives())
        {
            const Inputs inputs = findInputs(*mesh, *primitive);
            if (primitive->getType() != scene::IMeshPrimitive::TRIANGLES)
            {
                ++m_result.skippedPrimitives;
                continue;
            }
            writeTuples(inputs);
            const std::string symbol = primitive->getMaterialSymbol();
            append("g " + objName(node.getID()) + ' ' + objName(symbol) + '\n');
            append("usemtl " + m_materials.use(symbol, instance->getMaterial(symbol)) + '\n');
            writeFaces(*primitive, inputs);
        }
    }

    void writeTuples(const Inputs& inputs)
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
        if (isNew(inputs.normal, m_normalStarts, m_normalCount))
        {
            writeNormals(inputs.normal);
        }
    }

    static bool isNew(const Input& input, Starts& starts, std::size_t& written)
    {
        if (input.count() == 0 || !starts.emplace(input.stream, written + 1).second)
        {
            return false;
        }
        written += input.count();
        return true;
    }

    void writeNormals(const Input& normal)
    {
        // The cofactors are the inverse transpose times the determinant, and defined
        // for matrices that have no inverse too.
        const Eigen::Matrix3d linear = m_world.topLeftCorner<3, 3>();
        Eigen::Matrix3d turn;
        turn << linear.col(1).cross(linear.col(2)), linear.col(2).cross(linear.col(0)),
            linear.col(0).cross(linear.col(1));
        turn *= m_isMirrored ? -1.0 : 1.0;
        for (std::size_t i = 0; i < normal.count(); ++i)
        {
            appendTuple("vn", (turn * normal.tuple(i)).stableNormalized(), 3);
        }
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

    void writeFaces(const scene::IMeshPrimitive& primitive, const Inputs& inputs)
    {
        const std::vector<unsigned int>& indices = primitive.getIndexStream();
        const std::size_t width = primitive.getIndexStreamStride();
        if (width == 0)
        {
            return;
        }
        for (std::size_t face = 0; face + 3 * width <= indices.size(); face += 3 * width)
        {
            writeFace(indices, face, width, inputs);
        }
    }

    void writeFace(const std::vector<unsigned int>& indices, std::size_t face, std::size_t width,
                   const Inputs& inputs)
    {
        using Corners = std::array<std::size_t, 3>;
        Corners positions{};
        Corners textures{};
        Corners normals{};
        // Fills in the numbers of three tuples; false when one of them is not there.
        const auto number = [&](const Input& input, const Starts& starts, Corners& numbers)
        {
            for (std::size_t corner = 0; corner < 3; ++corner)
            {
                if (input.slot >= width ||
                    indices[face + corner * width + input.slot] >= input.count())
                {
                    return false;
                }
                numbers[corner] =
                    starts.at(input.stream) + indices[face + corner * width + input.slot];
            }
            return true;
        };
        if (!number(inputs.position, m_positionStarts, positions))
        {
            ++m_result.skippedFaces;
            return;
        }
        const bool hasTexture = number(inputs.texture, m_textureStarts, textures);
        const bool hasNormal = number(inputs.normal, m_normalStarts, normals);
        const Corners order = m_isMirrored ? Corners{0, 2, 1} : Corners{0, 1, 2};
        std::string line = "f";
        for (const std::size_t corner : order)
        {
            line += ' ' + std::to_string(positions[corner]);
            line += hasTexture || hasNormal ? "/" : "";
            line += hasTexture ? std::to_string(textures[corner]) : "";
            line += hasNormal ? '/' + std::to_string(normals[corner]) : "";
        }
        append(line + '\n');
        ++m_result.faces;
        m_result.points = m_positionCount;
    }

    scene::SceneManagerPtr m_scene;
    OutputFile& m_file;
    std::string m_text; ///< not written to the file yet
    ObjMaterials m_materials;
    ObjResult m_result;
    Eigen::Matrix4d m_world = Eigen::Matrix4d::Identity();
    bool m_isMirrored = false;
    Starts m_positionStarts; ///< of this instance
    Starts m_normalStarts;   ///< of this instance
    Starts m_textureStarts;  ///< of the whole file
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
