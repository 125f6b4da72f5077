#pragma once

#include "scene/geometry/Mesh.h"
#include "scene/geometry/Stream.h"
#include "scene/geometry/Triangle.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/Vertex.h"
#include "scene/geometry/VertexElement.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>
#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace velmoran::scene
{
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

inline const StreamMapping VERTEX_INPUT(VERTEX, StreamPtr(), 0);

inline StreamPtr makeStream(const std::string& id, int stride, const std::vector<float>& data)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, stride, false);
    stream->setData(data);
    return stream;
}

inline VertexPtr makeVertex(float x, float y, float z)
{
    const VertexPtr vertex = boost::make_shared<Vertex>();
    vertex->setPosition(x, y, z);
    return vertex;
}

inline std::vector<float> valuesOf(const VertexElementPtr& element)
{
    return element ? std::vector<float>(element->values, element->values + element->size)
                   : std::vector<float>();
}

/// Matches floats that may be no numbers.
inline auto areFloats(const std::vector<float>& values)
{
    std::vector<::testing::Matcher<float>> matchers;
    for (const float value : values)
    {
        matchers.push_back(::testing::NanSensitiveFloatEq(value));
    }
    return ::testing::ElementsAreArray(matchers);
}

/// Gives `mesh` an empty primitive with a material symbol.
inline TriangleMeshPrimitivePtr addPrimitive(const MeshPtr& mesh, const std::string& symbol,
                                             const std::vector<StreamMapping>& inputs = {})
{
    const auto primitive = boost::make_shared<TriangleMeshPrimitive>(mesh, inputs);
    primitive->setMaterialSymbol(symbol);
    mesh->addPrimitive(primitive);
    return primitive;
}

/// A mesh with such a primitive.
inline MeshPtr makeMeshOf(const std::string& symbol, const std::string& id)
{
    const MeshPtr mesh = boost::make_shared<Mesh>(id, "");
    addPrimitive(mesh, symbol);
    return mesh;
}

/// A mesh that breaks the circle with its primitives when the test ends.
struct OwnedMesh
{
    ~OwnedMesh() { mesh->clearPrimitives(); }

    TriangleMeshPrimitivePtr addTriangles(const std::vector<StreamMapping>& inputs,
                                          const std::vector<unsigned int>& indices = {}) const
    {
        const auto primitive = boost::make_shared<TriangleMeshPrimitive>(mesh, inputs, indices);
        mesh->addPrimitive(primitive);
        return primitive;
    }

    MeshPtr mesh = boost::make_shared<Mesh>("m", "Mesh");
};
} // namespace velmoran::scene
