#include "tests/scene/AvatarUnderTest.h"

#include <filesystem>
#include <fstream>

namespace velmoran::scene
{
namespace
{
std::vector<float> blend(const std::vector<float>& own, const std::vector<float>& other,
                         float ratio)
{
    std::vector<float> blended(own);
    for (std::size_t i = 0; i < own.size(); ++i)
    {
        blended[i] = own[i] * ratio + other[i] * (1.0F - ratio);
    }
    return blended;
}

std::size_t countEntries(const char* folder)
{
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

// An avatar that is posed and moved, with a frame of its own for the mesh node; and a taller one.
class Morphing : public testing::Test
{
protected:
    Morphing()
    {
        avatar.node->setTransformations((Eigen::Translation3f(0.5F, -1.0F, 2.0F) *
                                         Eigen::AngleAxisf(1.0F, Eigen::Vector3f::UnitZ()))
                                            .matrix());
        avatar.node->setScale({1.2F, 0.8F, 2.0F});
        avatar.manager->getNodeByID("sacrum")->setTranslation(
            Eigen::Translation3f(7.0F, 0.0F, 0.0F));
        avatar.manager->getNodeByID("spine")->rotate(
            Eigen::AngleAxisf(0.5F, Eigen::Vector3f::UnitX()).matrix());
        avatar.events.take();
        other.events.take();
    }

    static void reset(AvatarUnderTest& scene)
    {
        scene.manager->getNodeByID("sacrum")->setTransformations(
            Eigen::Matrix4f(Eigen::Matrix4f::Identity()));
    }

    AvatarUnderTest avatar;
    AvatarUnderTest other{2.0F};
};
} // namespace

TEST_F(Morphing, BlendsVerticesAndJointsAndBindsThemToEachOther)
{
    // The second time shows that the first one left nothing behind that turns the avatar.
    for (const float ratio : {0.25F, 1.0F, 0.5F, 0.0F})
    {
        SCOPED_TRACE(ratio);
        reset(avatar);
        const std::vector<float> vertices = blend(avatar.pose(), other.pose(), ratio);
        const std::vector<float> joints =
            blend(flat(avatar.jointPositions()), flat(other.jointPositions()), ratio);
        avatar.manager->morph(other.manager, ratio);
        EXPECT_LT(distanceOf(avatar.vertices->getData(), vertices), 1e-5);
        EXPECT_LT(distanceOf(flat(avatar.jointPositions()), joints), 1e-5);
        EXPECT_LT(distanceOf(avatar.pose(), vertices), 1e-5);
        reset(avatar);
        EXPECT_LT(distanceOf(avatar.pose(), vertices), 1e-5);
    }
    EXPECT_LT(distanceOf(avatar.pose(), other.pose()), 1e-5);
}

TEST_F(Morphing, BackAndForthStaysFiniteAndBound)
{
    const AvatarUnderTest original;
    for (int round = 0; round < 5; ++round)
    {
        for (const SceneManagerPtr& target : {avatar.manager, other.manager, original.manager})
        {
            avatar.manager->morph(target, 0.3F);
            EXPECT_LT(distanceOf(avatar.pose(), avatar.vertices->getData()), 1e-4);
        }
    }
    EXPECT_LT(distanceOf(original.pose(), original.vertices->getData()), 1e-6);
}

TEST_F(Morphing, TowardItselfTakesItsOwnPose)
{
    reset(avatar);
    const std::vector<float> posed = avatar.pose();
    const Points joints = avatar.jointPositions();
    avatar.manager->morph(avatar.manager, 0.7F);
    EXPECT_LT(distanceOf(avatar.vertices->getData(), posed), 1e-5);
    EXPECT_LT(distanceOf(flat(avatar.jointPositions()), flat(joints)), 1e-5);
}

TEST_F(Morphing, OfMeshesThatDifferMovesTheJointsOnly)
{
    const std::vector<float> vertices = avatar.vertices->getData();
    other.vertices->setData({1.0F, 2.0F, 3.0F});
    avatar.manager->morph(other.manager, 0.0F);
    EXPECT_EQ(avatar.vertices->getData(), vertices);
    EXPECT_FLOAT_EQ(worldPositionOf(avatar.manager->getNodeByID("head")).y(), 4.0F);
    // The mesh follows: its head's vertex, third of all, keeps its place beside the joint.
    avatar.node->setTransformations(Eigen::Matrix4f(Eigen::Matrix4f::Identity()));
    avatar.node->setScale({1.0F, 1.0F, 1.0F});
    const Eigen::Vector3f vertex(&avatar.pose()[6]);
    EXPECT_NEAR((vertex - worldPositionOf(avatar.manager->getNodeByID("head"))).norm(),
                std::hypot(0.1F, 0.2F), 1e-5F);
}

TEST_F(Morphing, WithoutANamesakeLeavesTheJointsAndBindsTheVertices)
{
    avatar.addJoint("head", "tail", {0.0F, 0.1F, 0.0F});
    reset(avatar);
    const Points joints = avatar.jointPositions();
    const std::vector<float> vertices = blend(avatar.pose(), other.pose(), 0.5F);
    std::ifstream log("SceneManager.log", std::ios::ate);
    avatar.manager->morph(other.manager, 0.5F);
    const std::string logged{std::istreambuf_iterator<char>(log), {}};
    EXPECT_THAT(logged,
                testing::HasSubstr("Invalid joints scene. Found different number of joints."));
    EXPECT_EQ(flat(avatar.jointPositions()), flat(joints));
    EXPECT_LT(distanceOf(avatar.pose(), vertices), 1e-5);
}

TEST_F(Morphing, BindsJointsThatTheJointsInputLacks)
{
    const StreamPtr all = avatar.skin->getJointsInput("JOINT");
    const StreamPtr some = makeNames("some", {"leg", "sacrum"});
    std::vector<StreamPtr> streams = avatar.skin->getStreams();
    streams.push_back(some);
    avatar.skin->setStreams(streams);
    avatar.skin->setJointsInput("JOINT", "some");
    avatar.manager->morph(other.manager, 0.0F);
    EXPECT_LT(distanceOf(avatar.pose(), other.pose()), 1e-5);
    EXPECT_EQ(avatar.skin->getVertexWeightsInput("JOINT"), all);
    EXPECT_THAT(avatar.skin->getJointsInput("JOINT")->getNameList(),
                ElementsAre("leg", "sacrum", "spine", "head"));
    EXPECT_THAT(some->getNameList(), ElementsAre("leg", "sacrum"));
}

TEST_F(Morphing, LeavesTheTargetItsVertices)
{
    other.mesh->clearVertices();
    other.mesh->addVerticesMapping(StreamMapping(POSITION, avatar.vertices, 0));
    const std::vector<float> before = avatar.vertices->getData();
    avatar.manager->morph(other.manager, 0.5F);
    EXPECT_EQ(other.mesh->getVertices().front().getStream(), avatar.vertices);
    EXPECT_EQ(avatar.vertices->getData(), before);
    const StreamPtr own = avatar.mesh->getVertices().front().getStream();
    EXPECT_NE(own->getData(), before);
    EXPECT_THAT(avatar.mesh->getStreams(), ElementsAre(own));
}

TEST_F(Morphing, ReportsTheFirstFaultAndChangesNoMore)
{
    const std::vector<float> before = avatar.vertices->getData();
    const auto expectFault = [&](float ratio, const std::string& message)
    {
        avatar.events.take();
        avatar.manager->morph(other.manager, ratio);
        EXPECT_EQ(avatar.events.log.back(), "DisplayMessageAt:" + message + ", 10, 10");
        EXPECT_EQ(avatar.vertices->getData(), before);
    };
    avatar.manager->morph(SceneManagerPtr(), 2.0F);
    EXPECT_THAT(avatar.events.log, IsEmpty());
    for (const float ratio : {-0.01F, 1.01F, std::nanf("")})
    {
        expectFault(ratio, "Invalid morph ratio. Morphing failed.");
        EXPECT_EQ(avatar.events.log.size(), 1U);
        EXPECT_EQ(worldPositionOf(avatar.manager->getNodeByID("sacrum")).x(), 7.0F);
    }
    const auto twin = boost::make_shared<GeometryManager>(core::event::EventManagerPtr());
    other.manager->setGeometryManager(twin);
    expectFault(0.5F, "Invalid morph targets. Missing avatar geometry.");
    EXPECT_EQ(worldPositionOf(avatar.manager->getNodeByID("sacrum")).x(), 0.0F);
    other.controller->setSkin(SkinPtr());
    expectFault(1.0F, "Invalid morph targets. Missing avatar skin.");
    const NodePtr bare = other.makeNode("human-template");
    const NodePtr root = other.manager->getRoot();
    root->removeChild(other.node);
    root->addNode(bare);
    expectFault(0.0F, "Invalid morph targets. Missing avatar controller.");
    root->removeChild(bare);
    expectFault(0.0F, "Invalid morph targets. Missing avatar controller.");
}

TEST_F(Morphing, NeedsNoSacrum)
{
    for (AvatarUnderTest* scene : {&avatar, &other})
    {
        scene->manager->getNodeByID("sacrum")->setID("pelvis");
        scene->skin->getJointsInput("JOINT")->setNameList({"pelvis", "spine", "head", "leg"});
    }
    const std::vector<float> vertices = blend(avatar.pose(), other.pose(), 0.5F);
    avatar.manager->morph(other.manager, 0.5F);
    EXPECT_EQ(worldPositionOf(avatar.manager->getNodeByID("pelvis")).x(), 3.5F); // not reset
    EXPECT_LT(distanceOf(avatar.pose(), vertices), 1e-5);
}

TEST_F(Morphing, LeavesNoThreadAndNoFileBehind)
{
    const std::size_t threads = countEntries("/proc/self/task");
    const std::size_t files = countEntries(".");
    for (int i = 0; i < 50; ++i)
    {
        avatar.manager->morph(other.manager, 0.5F);
    }
    EXPECT_EQ(countEntries("/proc/self/task"), threads);
    EXPECT_EQ(countEntries("."), files);
}
} // namespace velmoran::scene
