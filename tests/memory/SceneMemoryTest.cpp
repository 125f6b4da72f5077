// What a scene is after an operation that ran out of memory: as before.

#include "core/logger/FileWriterFactory.h"
#include "core/logger/IWriter.h"
#include "core/logger/Logger.h"
#include "scene/graph/Camera.h"
#include "scene/graph/CameraInstance.h"
#include "scene/graph/LayerManager.h"
#include "scene/graph/Light.h"
#include "scene/physics/PhysicsScene.h"
#include "tests/memory/WorldUnderTest.h"

#include <algorithm>
#include <filesystem>

using namespace velmoran::scene;

namespace
{
/// Two scenes that share most identifiers, the way a document merged twice does.
struct TwoWorlds : WorldUnderTest
{
    WorldUnderTest other{"other-"};
};

struct NamedOperation
{
    std::string name;
    void (*operation)(WorldUnderTest&);
};

void PrintTo(const NamedOperation& operation, std::ostream* out)
{
    *out << operation.name;
}

class SceneMemory : public ::testing::TestWithParam<NamedOperation>
{
};

const std::vector<NamedOperation> OPERATIONS = {
    {"AddMaterial", [](WorldUnderTest& w)
     { w.manager->addMaterial(boost::make_shared<Material>("OID9 of a material", "effect")); }},
    {"SetMaterialList",
     [](WorldUnderTest& w)
     {
         w.manager->setMaterialList({boost::make_shared<Material>("OID0", "effect"),
                                     boost::make_shared<Material>("OID1", "effect")});
     }},
    {"AddImageOfATakenID", [](WorldUnderTest& w)
     { w.manager->addImage(boost::make_shared<Image>("image", "another.png", "")); }},
    {"SetSurrounding", [](WorldUnderTest& w)
     { w.manager->setSurrounding(boost::make_shared<Image>("OID7 around", "s.png", "")); }},
    {"AddEffect", [](WorldUnderTest& w)
     { w.manager->addEffect(boost::make_shared<Effect>("OID9 of an effect", "f.fx", "")); }},
    {"AddController", [](WorldUnderTest& w)
     { w.manager->addController(boost::make_shared<Controller>("OID9 of a skin", "")); }},
    {"AddLight", [](WorldUnderTest& w)
     { w.manager->addLight(boost::make_shared<Light>(w.manager, Light::POINT, "OID9 l", "")); }},
    {"SetLightLibrary",
     [](WorldUnderTest& w) {
         w.manager->setLightLibrary(
             {boost::make_shared<Light>(w.manager, Light::POINT, "OID1", "")});
     }},
    {"AddCameraInstance",
     [](WorldUnderTest& w)
     {
         w.manager->addCameraInstance(
             boost::make_shared<CameraInstance>(w.arm, CameraPtr(), "OID9 of an instance"));
     }},
    {"AddAnimation", [](WorldUnderTest& w)
     { w.manager->addAnimation(boost::make_shared<Animation>("OID9 of a walk", "")); }},
    {"SetAnimationsLibrary", [](WorldUnderTest& w)
     { w.manager->setAnimationsLibrary({boost::make_shared<Animation>("OID0", "")}); }},
    {"SetPhysicsSceneLibrary", [](WorldUnderTest& w)
     { w.manager->setPhysicsSceneLibrary({boost::make_shared<PhysicsScene>("OID1", "")}); }},
    {"SetGeometryManager",
     [](WorldUnderTest& w)
     {
         const auto library = boost::make_shared<GeometryManager>(w.eventManager);
         library->addGeometry(boost::make_shared<Mesh>("OID0", ""));
         library->addGeometry(boost::make_shared<Mesh>("OID1", ""));
         w.manager->setGeometryManager(library);
     }},
    {"SetSceneID",
     [](WorldUnderTest& w) { w.manager->setSceneID("OID0 and more than fits in place"); }},
    {"RemoveEffect",
     [](WorldUnderTest& w) { w.manager->removeEffect(w.manager->getEffectByID("effect")); }},
    {"CreateNewCamera", [](WorldUnderTest& w)
     { w.manager->createNewCamera(Camera::PERSPECTIVE, "a node for the camera", "arm"); }},
    {"CreateNewLight", [](WorldUnderTest& w)
     { w.manager->createNewLight(Light::SPOT, "OID9 of a light", "a node", "arm"); }},
    {"AddNode", [](WorldUnderTest& w) { w.hand->addNode(w.makeNode("OID0 of a longer node")); }},
    {"AddNodeToASecondParent",
     [](WorldUnderTest& w) { w.manager->getNodeByID("head")->addNode(w.hand); }},
    {"RemoveNode", [](WorldUnderTest& w) { w.manager->removeNode(w.hand); }},
    {"SetNodeID", [](WorldUnderTest& w) { w.hand->setID("OID0 and more than fits in place"); }},
    {"SetNodeSID", [](WorldUnderTest& w) { w.hand->setSID("OID0 and more than fits in place"); }},
    {"CopyNode", [](WorldUnderTest& w) { w.arm->copyFor(w.manager, "OID0 and more than fits"); }},
    {"AddTransformation",
     [](WorldUnderTest& w) { w.arm->addTransformation(makeTranslation(2.0F)); }},
    {"SetOriginalTransformations",
     [](WorldUnderTest& w) { w.arm->setOriginalTransformations({makeTranslation(2.0F)}); }},
    {"AddInstances", [](WorldUnderTest& w)
     { w.hand->addInstanceGeometry(boost::make_shared<InstanceGeometry>(w.plate, w.material)); }},
    {"SetMaterialOfAnInstance",
     [](WorldUnderTest& w)
     {
         const MaterialPtr other = w.manager->getMaterialWithID("defaultMaterial");
         w.arm->setMaterial(other, 0, 0);
     }},
    {"AddToANewLayer", [](WorldUnderTest& w) { w.arm->addToLayer("a new layer of the node"); }},
    {"RemoveFromANewLayer", [](WorldUnderTest& w) { w.arm->removeFromLayer("a new layer here"); }},
    {"ReplaceGeometry", [](WorldUnderTest& w)
     { w.manager->replaceGeometry("plate", boost::make_shared<Mesh>("a plate", "")); }},
    {"ReplaceSharedStreams", [](WorldUnderTest& w)
     { w.manager->replaceSharedStreams(w.vertices, makeStream("other vertices", 3, {})); }},
    {"ReplaceJoints",
     [](WorldUnderTest& w)
     {
         Points points = w.jointPositions();
         points[1] += Eigen::Vector3f(0.5F, 0.5F, 0.0F);
         w.manager->replaceJoints(makeJointsScene(points));
     }},
    {"EditAMaterialByEvent",
     [](WorldUnderTest& w)
     {
         w.manager->handleEvent(velmoran::core::event::Event(
             "L_MaterialParameterUpdated", ",material,a parameter,a file name.png,texture", ""));
     }},
};
} // namespace

TEST_P(SceneMemory, IsAsBeforeWhenItRunsOut)
{
    expectAllOrNothing(GetParam().operation);
}

INSTANTIATE_TEST_SUITE_P(Operations, SceneMemory, ::testing::ValuesIn(OPERATIONS),
                         [](const auto& row) { return row.param.name; });

TEST(MergingMemory, SceneIsAsBeforeWhenItRunsOut)
{
    const int discard = SceneManager::DISCARD_REPEATED_GEOMETRIES |
                        SceneManager::DISCARD_REPEATED_LAYERS |
                        SceneManager::DISCARD_REPEATED_IMAGES;
    for (const int flags : {0, int(SceneManager::MERGE_REPEATED_NODES),
                            discard | SceneManager::DISCARD_REPEATED_NODES})
    {
        SCOPED_TRACE(flags);
        expectAllOrNothing<TwoWorlds>(
            [flags](TwoWorlds& worlds)
            { worlds.manager->mergeSceneManager(worlds.other.manager, flags, ""); });
    }
}

TEST(MergingMemory, AvatarsAreNotHalfMorphed)
{
    expectAllOrNothing<TwoWorlds>([](TwoWorlds& worlds)
                                  { worlds.manager->morph(worlds.other.manager, 0.5F); });
}

namespace
{
bool hasOpen(const std::filesystem::path& path)
{
    namespace fs = std::filesystem;
    const fs::directory_iterator files("/proc/self/fd");
    return std::any_of(begin(files), end(files),
                       [&](const fs::directory_entry& file)
                       {
                           std::error_code error; // the listing's own may be closed by now
                           return fs::read_symlink(file.path(), error) == path;
                       });
}
} // namespace

TEST(LogOnAFullDisk, DropsMessagesAndTheSceneGoesOn)
{
    namespace fs = std::filesystem;
    const fs::path before = fs::current_path();
    const fs::path folder = before / "full-disk";
    fs::remove_all(folder);
    fs::create_directory(folder);
    // Logs are opened in the working directory, and once in a process.
    for (const char* log : {"SceneManager.log", "GeometryManager.log"})
    {
        fs::create_symlink("/dev/full", folder / log);
    }
    fs::current_path(folder);
    TwoWorlds worlds;
    const std::size_t nodes = worlds.manager->getNodeArray().size();
    worlds.manager->mergeSceneManager(worlds.other.manager, 0, "arm");
    EXPECT_EQ(worlds.manager->getNodeArray().size(), 2 * nodes);
    fs::current_path(before);
    if (!hasOpen("/dev/full"))
    {
        GTEST_SKIP() << "The logs were open before.";
    }
}

TEST(LogWithoutMemory, DropsTheMessage)
{
    velmoran::core::logger::Logger logger;
    logger.addWriter(
        velmoran::core::logger::FileWriterFactory::getInstance()->getFileWriter("memory.log"));
    const FailingMemory failing(1, FailingMemory::THE_REST);
    EXPECT_NO_THROW(logger << std::string_view("longer than what a string holds in place") << 1);
    EXPECT_TRUE(failing.wasReached());
}
