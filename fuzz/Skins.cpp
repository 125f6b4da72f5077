// Skins with broken lists: posed, refined, moved and morphed.

#include "core/event/EventManager.h"
#include "fuzz/Meshes.h"
#include "scene/deform/Controller.h"
#include "scene/deform/InstanceController.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/GeometryManager.h"
#include "scene/geometry/InstanceGeometry.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <algorithm>

using namespace velmoran;
using namespace velmoran::scene;
using fuzz::check;
using fuzz::Input;

namespace
{
StreamPtr takeNames(Input& input, const char* id)
{
    const auto names = boost::make_shared<Stream>(id, 1, true);
    for (unsigned int i = input.below(5); i > 0; --i)
    {
        names->addName(input.name("joint", 5));
    }
    return names;
}

SkinPtr takeSkin(Input& input, const MeshPtr& mesh)
{
    const auto skin = boost::make_shared<Skin>(mesh);
    const auto matrices = boost::make_shared<Stream>("matrices", 16, true);
    matrices->setData(input.numbers(80));
    const auto weights = boost::make_shared<Stream>("weights", 1, true);
    weights->setData(input.numbers(12));
    const StreamPtr joints = takeNames(input, "joints");
    const StreamPtr others = takeNames(input, "others");
    skin->setStreams({joints, others, matrices, weights});
    for (const char* const semantic : {"JOINT", "INV_BIND_MATRIX"})
    {
        skin->setJointsInput(semantic, input.below(8) == 0  ? "none"
                                       : semantic[0] == 'J' ? "joints"
                                                            : "matrices");
    }
    skin->setVertexWeightsInput("JOINT", input.flag() ? "joints" : "others");
    skin->setVertexWeightsInput("WEIGHT", input.below(8) == 0 ? "matrices" : "weights");
    std::vector<unsigned int> counts;
    for (unsigned int i = input.below(9); i > 0; --i)
    {
        counts.push_back(input.index(3));
    }
    skin->setVCount(counts);
    std::vector<int> influences;
    for (unsigned int i = input.below(40); i > 0; --i)
    {
        influences.push_back(static_cast<int>(input.index(6)));
    }
    skin->setV(influences);
    return skin;
}

SceneManagerPtr takeAvatar(Input& input)
{
    const auto scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    NodePtr parent = scene->getRoot();
    for (unsigned int i = 0; i < 4; ++i)
    {
        const auto joint = boost::make_shared<Node>(scene);
        joint->setID(i == 0 ? "sacrum" : "joint" + std::to_string(i));
        joint->setType("JOINT");
        parent->addNode(joint);
        const float x = input.plainNumber();
        const float y = input.plainNumber();
        joint->setTranslation(Eigen::Translation3f(x, y, input.number()));
        parent = input.flag() ? joint : parent;
    }
    const MeshPtr mesh = fuzz::takeMesh(input, "human-template-lib");
    scene->getGeometryManager()->addGeometry(mesh);
    const auto controller = boost::make_shared<Controller>("controller", "");
    controller->setSkin(takeSkin(input, mesh));
    scene->addController(controller);
    const auto node = boost::make_shared<Node>(scene);
    node->setID("human-template");
    node->addInstanceController(boost::make_shared<InstanceController>(
        boost::make_shared<InstanceGeometry>(mesh, MaterialPtr()), controller));
    scene->getRoot()->addNode(node);
    return scene;
}

void pose(const SceneManagerPtr& scene)
{
    const ControllerPtr controller = scene->getControllersLibrary().front();
    const SkinPtr skin = controller->getSkin();
    const auto mesh = boost::dynamic_pointer_cast<Mesh>(skin->getSourceGeometry());
    const StreamPtr vertices = mesh && !mesh->getVertices().empty()
                                   ? mesh->getVertices().front().getStream()
                                   : StreamPtr();
    const StreamPtr posed = SceneManager::calculateSkinnedVerticesStream(
        scene, scene->getNodeByID("human-template"), vertices, skin,
        skin->getVertexWeightsInput("JOINT"), skin->getVertexWeightsInput("WEIGHT"),
        skin->getJointsInput("INV_BIND_MATRIX"), skin->getJointsInput("JOINT"));
    check(!posed == !vertices, "there is a result exactly when there are vertices");
    if (posed)
    {
        const auto width = static_cast<std::size_t>(std::max(vertices->getStride(), 0));
        const std::size_t tuples = width != 0 ? vertices->getData().size() / width : 0;
        check(posed->getData().size() == tuples * width, "there are as many vertices");
    }
    for (const int vertex : {-1, 0, 3, 2000000000})
    {
        std::vector<int> joints;
        std::vector<float> weights;
        skin->getVertexJointsAndWeights(vertex, joints, weights);
        check(joints.size() == weights.size(), "each joint has a weight");
        skin->calculateNewJointsAndWeights(vertex, 1, joints, weights);
        check(joints.size() == weights.size(), "each joint has a weight");
    }
}

void refine(const SceneManagerPtr& scene)
{
    const GeometryManagerPtr geometries = scene->getGeometryManager();
    const auto mesh =
        boost::dynamic_pointer_cast<Mesh>(geometries->getGeometry("human-template-lib"));
    if (fuzz::countFaces(*mesh) < 40)
    {
        geometries->subDivideGeometry(mesh->getID(), scene->getControllersLibrary().front());
    }
}

SceneManagerPtr takeJoints(Input& input)
{
    const auto joints = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    joints->getGeometryManager()->addGeometry(fuzz::takeMesh(input, "joints"));
    return joints;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const SceneManagerPtr scene = takeAvatar(input);
    const SceneManagerPtr other = takeAvatar(input);
    pose(scene);
    for (unsigned int steps = 0; steps < 6 && !input.isEmpty(); ++steps)
    {
        switch (input.below(4))
        {
        case 0:
            scene->replaceJoints(takeJoints(input));
            break;
        case 1:
            scene->morph(other, 0.25F * static_cast<float>(input.below(5)));
            break;
        case 2:
            scene->morph(scene, 0.5F);
            break;
        default:
            refine(scene);
        }
        pose(scene);
    }
    return 0;
}
