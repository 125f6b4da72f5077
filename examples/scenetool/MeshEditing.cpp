#include "examples/scenetool/MeshEditing.h"

#include "examples/scenetool/GeometryFacts.h"
#include "examples/scenetool/MeshFaces.h"
#include "examples/scenetool/StopWatch.h"
#include "scene/deform/Controller.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/IMeshPrimitive.h"
#include "scene/geometry/Mesh.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>

namespace velmoran::examples
{
namespace
{
std::vector<PrimitiveSize> measure(const scene::Mesh& mesh)
{
    std::vector<PrimitiveSize> sizes;
    for (const scene::IMeshPrimitivePtr& primitive : mesh.getMeshPrimitives())
    {
        sizes.push_back({kindText(*primitive), primitive->getMaterialSymbol(),
                         countTriangles(*primitive), measureArea(mesh, *primitive)});
    }
    return sizes;
}
} // namespace

std::size_t countTriangles(const std::vector<PrimitiveSize>& primitives)
{
    std::size_t triangles = 0;
    for (const PrimitiveSize& primitive : primitives)
    {
        triangles += primitive.triangles;
    }
    return triangles;
}

double sumArea(const std::vector<PrimitiveSize>& primitives)
{
    double area = 0.0;
    for (const PrimitiveSize& primitive : primitives)
    {
        area += primitive.area;
    }
    return area;
}

bool canBeEdited(const scene::Mesh& mesh)
{
    const std::vector<scene::IMeshPrimitivePtr>& primitives = mesh.getMeshPrimitives();
    return std::all_of(primitives.begin(), primitives.end(),
                       [](const scene::IMeshPrimitivePtr& each)
                       { return each->getType() == scene::IMeshPrimitive::TRIANGLES; });
}

std::vector<scene::ControllerPtr> findSkinsOf(const scene::SceneManager& scene,
                                              const scene::MeshPtr& mesh)
{
    std::vector<scene::ControllerPtr> skins;
    for (const scene::ControllerPtr& controller : scene.getControllersLibrary())
    {
        if (controller->getSkin() && controller->getSkin()->getSourceGeometry() == mesh)
        {
            skins.push_back(controller);
        }
    }
    return skins;
}

MeshChange editMesh(const scene::SceneManager& scene, const scene::MeshPtr& mesh,
                    const MeshEdits& edits)
{
    MeshChange change;
    change.mesh = mesh;
    change.before = measure(*mesh);
    const scene::GeometryManagerPtr manager = scene.getGeometryManager();
    if (edits.subdivisions > 0 && canBeEdited(*mesh))
    {
        const std::vector<scene::ControllerPtr> skins = findSkinsOf(scene, mesh);
        const scene::ControllerPtr skin = skins.empty() ? scene::ControllerPtr() : skins.front();
        change.skinID = skin ? skin->getID() : "";
        const StopWatch watch;
        for (unsigned int i = 0; i < edits.subdivisions; ++i)
        {
            manager->subDivideGeometry(mesh->getID(), skin);
        }
        change.subdivisionSeconds = watch.getSeconds();
    }
    if (edits.normals && canBeEdited(*mesh))
    {
        const StopWatch watch;
        manager->recalculateVertexNormals(mesh->getID());
        change.normalsSeconds = watch.getSeconds();
    }
    change.after = measure(*mesh);
    return change;
}
} // namespace velmoran::examples
