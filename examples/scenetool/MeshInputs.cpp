#include "examples/scenetool/MeshInputs.h"

#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/StreamMapping.h"

#include <algorithm>
#include <cmath>

namespace velmoran::examples
{
namespace
{
MeshInput findInput(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive,
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
} // namespace

std::size_t MeshInput::stride() const
{
    return static_cast<std::size_t>(stream->getStride());
}

std::size_t MeshInput::count() const
{
    return stream != nullptr && stream->getStride() > 0 ? stream->getData().size() / stride() : 0;
}

Eigen::Vector3d MeshInput::tuple(std::size_t index) const
{
    Eigen::Vector3d value = Eigen::Vector3d::Zero();
    for (std::size_t i = 0; i < std::min<std::size_t>(stride(), 3); ++i)
    {
        const double number = stream->getData()[index * stride() + i];
        value[static_cast<int>(i)] = std::isfinite(number) ? number : 0.0;
    }
    return value;
}

MeshInputs findMeshInputs(const scene::Mesh& mesh, const scene::IMeshPrimitive& primitive)
{
    MeshInputs inputs;
    inputs.position = findInput(mesh, primitive, scene::POSITION);
    inputs.normal = findInput(mesh, primitive, scene::NORMAL);
    for (int set = scene::TEXCOORD; set <= scene::TEXCOORD7 && inputs.texture.count() == 0; ++set)
    {
        inputs.texture = findInput(mesh, primitive, static_cast<scene::StreamSemantic>(set));
    }
    return inputs;
}

bool pickTuples(const MeshInput& input, const MeshFace& face, FaceTuples& tuples)
{
    tuples.clear();
    const std::size_t count = input.slot < face.width ? input.count() : 0;
    for (std::size_t corner = 0; corner < face.corners; ++corner)
    {
        const std::size_t tuple = count > 0 ? face.records[corner * face.width + input.slot] : 0;
        if (tuple >= count)
        {
            tuples.clear();
            return false;
        }
        tuples.push_back(tuple);
    }
    return true;
}
} // namespace velmoran::examples
