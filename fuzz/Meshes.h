#pragma once

#include "fuzz/Input.h"
#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/TriangleMeshPrimitive.h"

#include <boost/make_shared.hpp>

#include <string>
#include <vector>

namespace velmoran::fuzz
{
inline scene::StreamPtr takeStream(Input& input, const std::string& id, unsigned int most)
{
    const int stride = static_cast<int>(input.below(6)) - 1;
    const bool sharesValues = input.flag();
    const auto stream = boost::make_shared<scene::Stream>(id, stride, sharesValues);
    stream->setData(input.numbers(most));
    stream->setCount(static_cast<int>(input.index(8)));
    return stream;
}

/// Inputs of any semantic at any offset.
inline std::vector<scene::StreamMapping> takeInputs(Input& input, unsigned int most)
{
    std::vector<scene::StreamMapping> inputs;
    for (unsigned int i = input.below(most + 1); i > 0; --i)
    {
        const auto semantic = static_cast<scene::StreamSemantic>(input.below(16));
        const scene::StreamPtr stream =
            input.below(8) == 0 ? scene::StreamPtr() : takeStream(input, "input", 12);
        inputs.emplace_back(semantic, stream, static_cast<int>(input.below(4)) - 1);
    }
    return inputs;
}

inline std::vector<unsigned int> takeIndices(Input& input, unsigned int most)
{
    std::vector<unsigned int> indices(input.below(most + 1));
    std::generate(indices.begin(), indices.end(), [&input] { return input.index(6); });
    return indices;
}

/// A mesh whose lists may be broken in any way. Clear its primitives to free it.
inline scene::MeshPtr takeMesh(Input& input, const std::string& id)
{
    const auto mesh = boost::make_shared<scene::Mesh>(id, "");
    if (input.below(8) != 0)
    {
        const auto positions = boost::make_shared<scene::Stream>("positions", 3, false);
        positions->setData(input.numbers(24));
        mesh->addStream(positions);
        mesh->addVerticesMapping(scene::StreamMapping(scene::POSITION, positions, 0));
    }
    for (const scene::StreamMapping& mapping : takeInputs(input, 2))
    {
        mesh->addVerticesMapping(mapping);
    }
    for (unsigned int i = input.below(4); i > 0; --i)
    {
        std::vector<scene::StreamMapping> inputs;
        if (input.below(8) != 0)
        {
            inputs.emplace_back(scene::VERTEX, scene::StreamPtr(), 0);
        }
        for (const scene::StreamMapping& mapping : takeInputs(input, 3))
        {
            inputs.push_back(mapping);
        }
        mesh->addPrimitive(
            boost::make_shared<scene::TriangleMeshPrimitive>(mesh, inputs, takeIndices(input, 40)));
    }
    return mesh;
}

/// The faces of all primitives, also those that can't be read.
inline unsigned int countFaces(const scene::Mesh& mesh)
{
    unsigned int count = 0;
    for (const scene::IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        count += primitive->getCount();
    }
    return count;
}
} // namespace velmoran::fuzz
