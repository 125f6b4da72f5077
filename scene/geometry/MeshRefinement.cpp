// Normals and refinement of all primitives of a mesh.

#include "scene/geometry/Mesh.h"
#include "scene/geometry/Subdivision.h"
#include "scene/geometry/TriangleMeshPrimitive.h"
#include "scene/geometry/VertexNormals.h"

#include <set>
#include <vector>

namespace velmoran::scene
{
namespace
{
struct PrimitivesByKind
{
    explicit PrimitivesByKind(const Mesh& mesh)
    {
        std::set<const TriangleMeshPrimitive*> met;
        for (const IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
        {
            auto* const ofTriangles = dynamic_cast<TriangleMeshPrimitive*>(primitive.get());
            if (ofTriangles == nullptr || ofTriangles->getMesh().get() != &mesh)
            {
                others.push_back(primitive.get());
            }
            else if (met.insert(ofTriangles).second) // a mesh may list one twice
            {
                triangles.push_back(ofTriangles);
            }
        }
    }

    std::vector<TriangleMeshPrimitive*> triangles; ///< of this mesh's positions
    std::vector<IMeshPrimitive*> others;
};
} // namespace

void Mesh::recalculateVertexNormals()
{
    const PrimitivesByKind primitives(*this);
    computeVertexNormals(*this, primitives.triangles);
    for (IMeshPrimitive* const other : primitives.others)
    {
        other->recalculateVertexNormals();
    }
}

void Mesh::subDivide(const ControllerPtr& controller)
{
    const PrimitivesByKind primitives(*this);
    subDivideTriangles(*this, primitives.triangles, controller);
    for (IMeshPrimitive* const other : primitives.others)
    {
        other->subDivide(controller);
    }
}
} // namespace velmoran::scene
