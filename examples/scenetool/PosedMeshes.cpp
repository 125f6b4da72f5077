#include "examples/scenetool/PosedMeshes.h"

#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/geometry/Mesh.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/pointer_cast.hpp>

namespace velmoran::examples
{
namespace
{
PosedMesh makeMesh(const scene::NodePtr& node, const scene::InstanceGeometryPtr& instance,
                   const Eigen::Matrix4f& matrix)
{
    PosedMesh mesh;
    mesh.node = node;
    mesh.instance = instance;
    mesh.mesh = instance ? boost::dynamic_pointer_cast<scene::Mesh>(instance->getGeometry())
                         : scene::MeshPtr();
    mesh.matrix = matrix.cast<double>();
    return mesh;
}

PosedMesh makeSkinned(const scene::SceneManagerPtr& scene, const scene::NodePtr& node,
                      const scene::InstanceControllerPtr& instance, const Eigen::Matrix4f& world)
{
    PosedMesh mesh = makeMesh(node, instance->getInstanceGeometry(), world);
    const scene::ControllerPtr controller = instance->getController();
    const scene::SkinPtr skin = controller ? controller->getSkin() : scene::SkinPtr();
    if (!skin)
    {
        return mesh;
    }
    mesh.matrix *= skin->getBindShapeMatrix().cast<double>();
    mesh.skin = findSkin(node, instance);
    mesh.lacksJoints = !mesh.skin || !canBeSkinned(scene, *mesh.skin);
    if (mesh.lacksJoints)
    {
        mesh.skin.reset();
    }
    else
    {
        mesh.skinnedPositions = skinPositions(scene, *mesh.skin);
    }
    return mesh;
}
} // namespace

MeshInputs findMeshInputs(const PosedMesh& posed, const scene::IMeshPrimitive& primitive)
{
    MeshInputs inputs = findMeshInputs(*posed.mesh, primitive);
    if (posed.skin && inputs.position.stream != nullptr)
    {
        inputs.position.stream = posed.skinnedPositions.get();
    }
    return inputs;
}

void visitMeshes(const scene::SceneManagerPtr& scene,
                 const std::function<void(const PosedMesh&)>& visit)
{
    const auto visitOne = [&visit](const PosedMesh& mesh)
    {
        if (mesh.mesh)
        {
            visit(mesh);
        }
    };
    const scene::NodePtr root = scene->getRoot();
    const auto nodes = root->getNodesBelow();
    const auto worlds = root->getCombinedTransformationsBelow();
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
        for (const scene::InstanceGeometryPtr& instance : nodes[i]->getInstancedGeometries())
        {
            visitOne(makeMesh(nodes[i], instance, worlds[i]));
        }
        for (const scene::InstanceControllerPtr& instance : nodes[i]->getInstancedControllers())
        {
            visitOne(makeSkinned(scene, nodes[i], instance, worlds[i]));
        }
    }
}
} // namespace velmoran::examples
