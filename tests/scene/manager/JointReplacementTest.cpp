#include "tests/scene/AvatarUnderTest.h"
#include "tests/scene/SceneLog.h"

#include <map>

namespace velmoran::scene
{
namespace
{
using Eigen::Matrix4d;
using Eigen::Vector3d;

constexpr double TOLERANCE = 3e-5; // the worlds here reach to about 20

Matrix4d worldOf(const NodePtr& node)
{
    const NodePtr parent = node->getParent();
    const Matrix4d local = node->getTransformations().cast<double>();
    return parent ? Matrix4d(worldOf(parent) * local) : local;
}

/// A turn about the cross product of two directions that are not opposite.
Eigen::Matrix3d turnBetween(const Vector3d& from, const Vector3d& to)
{
    const Vector3d axis = from.cross(to);
    return axis.norm() == 0.0
               ? Eigen::Matrix3d(Eigen::Matrix3d::Identity())
               : Eigen::AngleAxisd(std::atan2(axis.norm(), from.dot(to)), axis.normalized())
                     .toRotationMatrix();
}

Eigen::Affine3f makeFrame(float degrees, const Eigen::Vector3f& translation, float scale)
{
    return Eigen::Translation3f(translation) *
           Eigen::AngleAxisf(degrees * 0.0174533F,
                             Eigen::Vector3f(1.0F, 2.0F, -1.0F).normalized()) *
           Eigen::Scaling(scale);
}

// The skeleton of the avatar, below a root that is turned, moved and scaled, with a joint
// "hand" below the node "wrist" below the joint "spine", and "tip" that coincides with "hand".
class ReplacedJoints : public testing::Test
{
protected:
    ReplacedJoints()
    {
        setFrame(avatar.manager->getRoot(), makeFrame(40.0F, {3.0F, -2.0F, 5.0F}, 1.5F));
        const NodePtr wrist = avatar.addNode("spine", "wrist");
        setFrame(wrist, makeFrame(70.0F, {0.3F, 0.1F, 0.0F}, 0.5F));
        avatar.addJoint("wrist", "hand", {1.0F, 0.2F, 0.0F});
        avatar.addJoint("hand", "tip", {0.0F, 0.0F, 0.0F});
        avatar.manager->getNodeByID("spine")->rotate(
            Eigen::AngleAxisf(0.8F, Eigen::Vector3f::UnitX()).matrix());
        std::vector<Influences> influences;
        for (std::size_t i = 0; i < avatar.joints.size(); ++i)
        {
            influences.push_back({{static_cast<int>(i), 1.0F}});
        }
        // Vertices one beside each joint, of which each is carried by one.
        Points points = avatar.jointPositions();
        for (Eigen::Vector3f& point : points)
        {
            point += Eigen::Vector3f(0.1F, 0.2F, 0.3F);
        }
        avatar.bind(points, influences);
        avatar.events.take();
    }

    static void setFrame(const NodePtr& node, const Eigen::Affine3f& frame)
    {
        node->setTransformations(frame.matrix());
        node->setScale(frame.linear().colwise().norm());
    }

    /// The joints in the order of the walk.
    std::vector<NodePtr> walk() const
    {
        std::vector<NodePtr> joints;
        std::vector<int> parents;
        SceneManager::transverseSceneForJoints(avatar.manager->getRoot(), joints, parents);
        return joints;
    }

    Points present() const
    {
        Points positions;
        for (const NodePtr& joint : walk())
        {
            positions.push_back(worldPositionOf(joint));
        }
        return positions;
    }

    /// Moves the joints and checks what holds for all skeletons: where the joints are, and
    /// that vertices keep their places in the frames of their joints.
    void replaceAndCheck(const Points& positions)
    {
        std::map<NodePtr, Vector3d> places;
        for (std::size_t i = 0; i < avatar.joints.size(); ++i)
        {
            places[avatar.joints[i]] = vertexIn(i);
        }
        avatar.manager->replaceJoints(makeJointsScene(positions));
        const std::vector<NodePtr> joints = walk();
        for (std::size_t i = 0; i < joints.size(); ++i)
        {
            SCOPED_TRACE(joints[i]->getID());
            EXPECT_LT((worldPositionOf(joints[i]) - positions[i]).norm(),
                      static_cast<float>(TOLERANCE));
            EXPECT_LT((vertexIn(i) - places[avatar.joints[i]]).norm(), TOLERANCE);
            const Eigen::Matrix3f rotation = joints[i]->getRotation().linear();
            EXPECT_TRUE(rotation.isUnitary(1e-5F)) << rotation;
            EXPECT_GT(rotation.determinant(), 0.0F);
        }
    }

    /// Skinned vertex `index`, without the mesh node's own matrix, in the frame of its joint.
    Vector3d vertexIn(std::size_t index) const
    {
        const std::vector<float> posed = avatar.pose();
        const Eigen::Vector3f vertex(&posed[3 * index]);
        const Matrix4d placed = worldOf(avatar.node) * worldOf(avatar.joints[index]);
        return (placed.inverse() * vertex.homogeneous().eval().cast<double>()).head<3>();
    }

    AvatarUnderTest avatar;
};
} // namespace

// In the order of the walk: sacrum, spine, head, hand, tip, leg.
TEST_F(ReplacedJoints, MovesJointsAndTurnsThemWithTheirBones)
{
    const std::vector<NodePtr> joints = walk();
    const Points before = present();
    const std::vector<std::size_t> boneEnds = {1, 2, 2, 3, 4, 5}; // itself: none
    const std::vector<std::size_t> turnsLike = {0, 1, 1, 1, 1, 0};
    Points after = before;
    for (std::size_t i = 0; i < after.size(); ++i)
    {
        const auto x = static_cast<float>(i);
        after[i] += Eigen::Vector3f(0.3F * x, 0.2F - 0.1F * x * x, 0.4F);
    }
    after[4] = after[3];

    std::vector<Matrix4d> wanted;
    for (std::size_t i = 0; i < joints.size(); ++i)
    {
        const std::size_t turning = turnsLike[i];
        const std::size_t end = boneEnds[turning];
        Matrix4d world = worldOf(joints[i]);
        world.topLeftCorner<3, 3>() = turnBetween((before[end] - before[turning]).cast<double>(),
                                                  (after[end] - after[turning]).cast<double>()) *
                                      world.topLeftCorner<3, 3>();
        world.topRightCorner<3, 1>() = after[i].cast<double>();
        wanted.push_back(world);
    }
    replaceAndCheck(after);
    for (std::size_t i = 0; i < joints.size(); ++i)
    {
        EXPECT_LT((worldOf(joints[i]) - wanted[i]).cwiseAbs().maxCoeff(), TOLERANCE)
            << joints[i]->getID();
    }
}

TEST_F(ReplacedJoints, KeepsTheSkeletonThatIsThereAlready)
{
    const std::vector<float> before = avatar.pose();
    replaceAndCheck(present());
    EXPECT_LT(distanceOf(avatar.pose(), before), 1e-5);
}

TEST_F(ReplacedJoints, TurnsChainsAround)
{
    // All joints on a line, and then on the same line the other way round.
    for (const float direction : {1.0F, -1.0F, 1.0F})
    {
        Points line;
        for (std::size_t i = 0; i < 6; ++i)
        {
            line.emplace_back(2.0F, direction * static_cast<float>(i + 1), 0.0F);
        }
        replaceAndCheck(line);
    }
    replaceAndCheck(Points(6, {1.0F, 2.0F, 3.0F})); // all bones without length
    replaceAndCheck({{0, 0, 0}, {0, 1, 0}, {0, 2, 0}, {1, 1, 0}, {1, 1, 0}, {0, -1, 0}});
}

TEST_F(ReplacedJoints, KeepsBonesInTheirFramesBelowUnevenScales)
{
    avatar.manager->getRoot()->setScale({1.0F, 3.0F, 0.5F});
    avatar.manager->getNodeByID("spine")->setScale({-1.0F, 0.5F, 2.0F});
    const std::vector<NodePtr> joints = walk();
    const auto boneOf = [&](std::size_t from, std::size_t to)
    {
        const Eigen::Vector3f end = worldPositionOf(joints[to]);
        const Matrix4d inverse = worldOf(joints[from]).inverse();
        return (inverse * end.homogeneous().eval().cast<double>()).head<3>().normalized().eval();
    };
    const Vector3d sacrum = boneOf(0, 1);
    const Vector3d spine = boneOf(1, 2);
    replaceAndCheck({{1, 0, 0}, {2, 1, 0}, {3, 1, 1}, {0, 4, 0}, {0, 4, 1}, {1, -2, 0}});
    EXPECT_LT((boneOf(0, 1) - sacrum).norm(), TOLERANCE);
    EXPECT_LT((boneOf(1, 2) - spine).norm(), TOLERANCE);
}

TEST_F(ReplacedJoints, StaysFiniteWhereAScaleLeavesNoWayBack)
{
    avatar.manager->getNodeByID("spine")->setScale({1.0F, 0.0F, 1.0F});
    avatar.manager->replaceJoints(makeJointsScene(Points(6, {1.0F, 2.0F, 3.0F})));
    for (const NodePtr& joint : walk())
    {
        EXPECT_TRUE(joint->getCombinedTransformations().allFinite()) << joint->getID();
    }
}

TEST_F(ReplacedJoints, MakesUpInTheSkinForWhatARotationLoses)
{
    Eigen::Matrix4f stretched = Eigen::Matrix4f::Identity();
    stretched.diagonal() << 2.0F, 3.0F, 0.5F, 1.0F;
    const NodePtr leg = avatar.manager->getNodeByID("leg");
    leg->setRotation(stretched);
    const StreamPtr matrices = avatar.skin->getJointsInput("INV_BIND_MATRIX");
    const std::vector<float> bound = matrices->getData();
    const std::vector<float> before = avatar.pose();
    avatar.manager->replaceJoints(makeJointsScene(present()));
    EXPECT_TRUE(leg->getRotation().linear().isIdentity(1e-6F));
    EXPECT_LT(distanceOf(avatar.pose(), before), 1e-5);
    // Whoever shares the stream keeps it.
    EXPECT_EQ(matrices->getData(), bound);
    EXPECT_EQ(avatar.skin->getStreamById("matrices"),
              avatar.skin->getJointsInput("INV_BIND_MATRIX"));
    EXPECT_EQ(avatar.skin->getStreams().size(), 3U);
}

TEST_F(ReplacedJoints, AnnouncesEachJointOnceAndTheSacrumLast)
{
    avatar.manager->replaceJoints(makeJointsScene(present()));
    std::vector<std::string> announced;
    for (const std::string& event : avatar.events.take())
    {
        if (event != "SceneUpdate")
        {
            announced.push_back(event.substr(0, event.find(',')));
        }
    }
    const std::string type = "NodeTransformationUpdate:";
    EXPECT_THAT(announced, ElementsAre(type + "spine", type + "head", type + "hand", type + "tip",
                                       type + "leg", type + "sacrum"));
}

TEST_F(ReplacedJoints, LogsTheFirstFaultAndChangesNothing)
{
    const SceneManagerPtr joints = makeJointsScene(Points(6, {0.0F, 0.0F, 0.0F}));
    const MeshPtr mesh =
        boost::dynamic_pointer_cast<Mesh>(joints->getGeometryManager()->getGeometry("joints"));
    const StreamPtr positions = mesh->getVertices().front().getStream();
    const std::vector<float> before = avatar.pose();
    SceneLog log;
    const auto expectFault = [&](const std::string& message)
    {
        avatar.manager->replaceJoints(joints);
        EXPECT_THAT(log.take(), ElementsAre(message));
        EXPECT_EQ(avatar.pose(), before);
        EXPECT_THAT(avatar.events.take(), IsEmpty());
    };
    avatar.manager->replaceJoints(SceneManagerPtr());
    EXPECT_THAT(log.take(), IsEmpty());

    // From the last check to the first: each fault hides those before.
    avatar.controller->setSkin(SkinPtr());
    expectFault("Invalid scene. Scene must have one and only one controller with a valid skin.");
    avatar.manager->addController(boost::make_shared<Controller>("second", ""));
    expectFault("Invalid scene. Scene must have one and only one controller.");
    const std::string number = "Invalid joints scene. Found different number of joints.";
    for (const std::vector<float>& data :
         {std::vector<float>(17), std::vector<float>(21), std::vector<float>(18, std::nanf(""))})
    {
        positions->setData(data);
        expectFault(number);
    }
    positions->setStride(2);
    expectFault(number);
    mesh->addVerticesMapping(StreamMapping(NORMAL, positions, 0));
    expectFault("Invalid joints scene. Found more than one vertices stream mapping.");
    joints->getGeometryManager()->addGeometry(boost::make_shared<Mesh>("second", ""));
    expectFault("Invalid joints scene. Found more than one geometry.");
}

TEST_F(ReplacedJoints, CollectsJointsInTheOrderOfTheWalk)
{
    std::vector<NodePtr> joints = {avatar.manager->getRoot()};
    std::vector<int> parents = {-5};
    SceneManager::transverseSceneForJoints(NodePtr(), joints, parents);
    SceneManager::transverseSceneForJoints(avatar.manager->getRoot(), joints, parents);
    EXPECT_THAT(idsOf(joints),
                ElementsAre("root", "sacrum", "spine", "head", "hand", "tip", "leg"));
    EXPECT_THAT(parents, ElementsAre(-5, -1, 1, 2, -1, 4, 1));
}
} // namespace velmoran::scene
