#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationTranslate.h"
#include "tests/scene/animation/AnimationBuilders.h"

#include <Eigen/Geometry>

#include <cmath>
#include <thread>

namespace velmoran::scene
{
namespace
{
using Eigen::AngleAxisf;
using Eigen::Matrix4f;
using Eigen::Vector3f;
using Vector3 = core::utils::Vector<float, 3>;

constexpr float PI = 3.14159265F;

Matrix4f posed(const Vector3f& translation, float degrees, const Vector3f& axis,
               const Vector3f& scale = Vector3f::Ones())
{
    const Eigen::Affine3f pose = Eigen::Translation3f(translation) *
                                 AngleAxisf(degrees * PI / 180.0F, axis) * Eigen::Scaling(scale);
    return pose.matrix();
}

std::vector<float> joined(const std::vector<Matrix4f>& matrices)
{
    std::vector<float> floats;
    for (const Matrix4f& matrix : matrices)
    {
        const std::vector<float> rows = rowByRow(matrix);
        floats.insert(floats.end(), rows.begin(), rows.end());
    }
    return floats;
}

/// Adds a transformation with a SID to the list of a node.
template <typename T, typename... Values>
boost::shared_ptr<T> addNamed(const NodePtr& node, const std::string& sid, Values... values)
{
    const auto transformation = boost::make_shared<T>(values...);
    transformation->setSid(sid);
    node->addTransformation(transformation);
    return transformation;
}

/// A node "n" whose list is the matrix "m".
struct MatrixPlayback : testing::Test
{
    MatrixPlayback() { addNamed<TransformationMatrix>(node, "m"); }

    /// Puts the translation "t" in front of the matrix.
    void addTranslation(float z) const
    {
        const auto translation = boost::make_shared<TransformationTranslate>(Vector3(0, 0, z));
        translation->setSid("t");
        node->setOriginalTransformations({translation, node->getOriginalTransformations()[0]});
    }

    void expectPose(const Matrix4f& expected)
    {
        EXPECT_TRUE(node->getTransformations().isApprox(expected, 1e-5F))
            << node->getTransformations() << "\ninstead of\n"
            << expected;
    }

    PlayedScene scene;
    const NodePtr node = scene.addNode("root", "n");
    const Matrix4f first = posed(Vector3f(0, 0, 0), 0, Vector3f::UnitZ());
    const Matrix4f second = posed(Vector3f(2, 4, 0), 90, Vector3f::UnitZ(), Vector3f(1, 3, 1));
};

TEST_F(MatrixPlayback, TurnsAlongTheGreatArcSnapsAtTheEndAndHoldsNothingAfterIt)
{
    scene.play(makeSampler({0.5F, 1.5F, 3}, joined({first, second, second}), 16), "n/m");
    EXPECT_EQ(scene.player->getLoopDuration(), milliseconds(3000));
    EXPECT_TRUE(scene.showAt(100));
    expectPose(first); // before the first key
    EXPECT_TRUE(scene.showAt(1000));
    expectPose(posed(Vector3f(1, 2, 0), 45, Vector3f::UnitZ(), Vector3f(1, 2, 1)));
    EXPECT_TRUE(scene.showAt(1495));
    expectPose(second);
    EXPECT_TRUE(scene.showAt(1480));
    EXPECT_NEAR(node->getTransformations()(0, 3), 1.96F, 1e-5F);

    const NodePtr late = scene.addNode("n", "late");
    addNamed<TransformationMatrix>(late, "m");
    scene.animation->addChannel(makeSampler({0, 1}, joined({second, second}), 16), "late/m");
    const Matrix4f before = late->getTransformations();
    scene.showAt(2000); // behind that channel's last key
    EXPECT_EQ(late->getTransformations(), before);
    scene.showAt(1000);
    EXPECT_TRUE(late->getTransformations().isApprox(second));
}

TEST_F(MatrixPlayback, StepsAndMultipliesOntoWhatPrecedesTheMatrix)
{
    addTranslation(7);
    scene.play(makeSampler({0, 1, 2}, joined({second, first, first}), 16, "Step"), "n/m");
    EXPECT_THAT(scene.player->getTargetedTransformationsForNode(node), ElementsAre("m"));
    scene.showAt(999);
    Matrix4f expected = second;
    expected(2, 3) += 7.0F;
    expectPose(expected);
    AnimationManager::EvaluatedTransformations evaluated;
    scene.player->playAnimation(scene.animation, evaluated);
    ASSERT_EQ(evaluated[node].size(), 3U); // T, R and S, without what precedes the matrix
    EXPECT_TRUE(evaluated[node][0].isApprox(posed(Vector3f(2, 4, 0), 0, Vector3f::UnitZ())));
    EXPECT_NEAR(evaluated[node][2](1, 1), 3.0F, 1e-5F);
    EXPECT_TRUE((evaluated[node][0] * evaluated[node][1] * evaluated[node][2]).isApprox(second));

    // Another animation than the player's; this one goes on as before.
    const auto other = boost::make_shared<Animation>("other", "");
    other->addChannel(makeSampler({0, 1}, joined({first, first}), 16), "n/m");
    scene.player->playAnimation(other, evaluated);
    EXPECT_TRUE((evaluated[node][0] * evaluated[node][1] * evaluated[node][2]).isApprox(first));
    scene.player->playAnimation(AnimationPtr(), evaluated);
    EXPECT_EQ(scene.player->getAnimation(), scene.animation);
    expectPose(expected);
    scene.showAt(998);
    expectPose(expected);
}

TEST_F(MatrixPlayback, IsBlendedBesideAnotherDrivenTransformation)
{
    addTranslation(0);
    scene.play(makeSampler({0, 1}, {0, 0, 6, 0, 0, 8}, 3), "n/t");
    scene.animation->addChannel(makeSampler({0, 1}, joined({first, second}), 16), "n/m");
    scene.player->setAnimation(scene.animation);
    scene.showAt(500);
    Matrix4f expected = posed(Vector3f(1, 2, 0), 45, Vector3f::UnitZ(), Vector3f(1, 2, 1));
    expected(2, 3) += 7.0F;
    expectPose(expected);
}

TEST_F(MatrixPlayback, ChangesBetweenTurnsAreNoticedAtTheNextOne)
{
    const SamplerPtr sampler = makeSampler({0, 1, 3}, joined({first, second, second}), 16);
    scene.play(sampler, "n/m");
    scene.showAt(1000);
    expectPose(second);
    sampler->getStreamBySemantic(Sampler::OUTPUT)->mutableData()[16 + 3] = 9.0F;
    scene.showAt(1000);
    EXPECT_NEAR(node->getTransformations()(0, 3), 9.0F, 1e-5F);

    node->setID("other");
    EXPECT_FALSE(scene.showAt(1000));
    const NodePtr heir = scene.addNode("root", "n");
    EXPECT_FALSE(scene.showAt(1000)); // it has no such transformation yet
    addNamed<TransformationMatrix>(heir, "x");
    EXPECT_FALSE(scene.showAt(1000));
    heir->getOriginalTransformations()[0]->setSid("m");
    EXPECT_TRUE(scene.showAt(1000));
    EXPECT_NEAR(heir->getTransformations()(0, 3), 9.0F, 1e-5F);
    scene.manager->getRoot()->removeChild(heir);
    EXPECT_FALSE(scene.showAt(1000));
}

TEST_F(MatrixPlayback, MovesThePlayheadAsItsStateSays)
{
    scene.play(makeSampler({0, 2}, joined({first, second}), 16), "n/m");
    AnimationManager& player = *scene.player;
    const auto millis = [&] { return player.getCurrentTime().total_milliseconds(); };
    EXPECT_TRUE(player.update(milliseconds(1900)));
    EXPECT_TRUE(player.update(milliseconds(300)));
    EXPECT_EQ(millis(), 200);
    EXPECT_FALSE(player.update(milliseconds(9000))); // one subtraction only
    EXPECT_EQ(millis(), 2000);

    player.pause();
    player.setTimeTarget(milliseconds(1000)); // jumps, evaluates once, then stands
    EXPECT_TRUE(player.update(milliseconds(1)));
    EXPECT_EQ(millis(), 1000);
    EXPECT_FALSE(player.update(milliseconds(1)));
    player.setTime(milliseconds(1000));
    EXPECT_TRUE(player.update(milliseconds(1)));
    EXPECT_FALSE(player.update(milliseconds(1)));
    player.setSmooth(true);
    player.setTimeTarget(milliseconds(0));
    EXPECT_TRUE(player.update(milliseconds(600)));
    EXPECT_EQ(millis(), 400);
    EXPECT_TRUE(player.update(milliseconds(600)));
    EXPECT_EQ(millis(), 0);
    player.setTime(milliseconds(2000));
    EXPECT_FALSE(player.update(milliseconds(1))); // nothing at the very end
    player.resume();
    EXPECT_FALSE(player.paused());
    EXPECT_TRUE(player.update(milliseconds(100)));
    EXPECT_EQ(millis(), 100);

    AnimationManager alone;
    alone.setAnimation(scene.animation);
    EXPECT_FALSE(alone.update(milliseconds(1)));
}

TEST(ListPlayback, EvaluatesEveryFormOfTarget)
{
    // At rest the node is T(1, 2, 3) * R(z, 90) * S(2, 2, 2).
    const auto rest = [](const Vector3f& t, float degrees, const Vector3f& s)
    { return posed(t, degrees, Vector3f::UnitZ(), s); };
    const Vector3f t(1, 2, 3);
    const Vector3f s(2, 2, 2);
    // The target; the value at 1 s, with zeros at 0 s; and the pose at 0.5 s.
    const std::tuple<const char*, std::vector<float>, Matrix4f> rows[] = {
        {"n/t", {8, 6, 4}, rest(Vector3f(4, 3, 2), 90, s)},
        {"n/t.Y", {8}, rest(Vector3f(1, 4, 3), 90, s)},
        {"n/t.y", {8}, rest(Vector3f(1, 4, 3), 90, s)},
        {"n/t(2)", {8}, rest(Vector3f(1, 2, 4), 90, s)},
        {"n/s", {2, 4, 6}, rest(t, 90, Vector3f(1, 2, 3))},
        {"n/s.X", {6}, rest(t, 90, Vector3f(3, 2, 2))},
        {"n/r.ANGLE", {60}, rest(t, 30, s)},
        {"n/r(3)", {60}, rest(t, 30, s)},
        {"n/r.Q", {60}, rest(t, 90, s)},
        {"n/t(3)", {60}, rest(t, 90, s)},
        {"n/none", {60}, rest(t, 90, s)},
        {"nobody/t", {60, 60, 60}, rest(t, 90, s)},
        {"n", {60, 60, 60}, rest(t, 90, s)},
    };
    for (const auto& [target, last, expected] : rows)
    {
        SCOPED_TRACE(target);
        PlayedScene scene;
        const NodePtr node = scene.addNode("root", "n");
        addNamed<TransformationTranslate>(node, "t", Vector3(1, 2, 3));
        addNamed<TransformationRotate>(node, "r", Vector3(0, 0, 1), 90.0F);
        addNamed<TransformationScale>(node, "s", 2.0F, 2.0F, 2.0F);
        std::vector<float> values(last.size(), 0.0F);
        values.insert(values.end(), last.begin(), last.end());
        scene.play(makeSampler({0, 1}, values, static_cast<int>(last.size())), target);
        testing::internal::CaptureStdout();
        for (int turn = 0; turn < 3; ++turn)
        {
            scene.showAt(500);
        }
        const std::string said = testing::internal::GetCapturedStdout();
        const bool isValid = !expected.isApprox(rest(t, 90, s));
        const std::size_t warning = said.find("[WARN] No valid target...");
        EXPECT_EQ(warning == std::string::npos, isValid) << said;
        EXPECT_EQ(isValid ? warning : said.find("[WARN] No", warning + 8), std::string::npos)
            << "told more than once";
        EXPECT_TRUE(node->getTransformations().isApprox(expected, 1e-5F))
            << node->getTransformations();
    }
}

TEST(ListPlayback, CombinesChannelsOfOneNode)
{
    PlayedScene scene;
    const NodePtr node = scene.addNode("root", "n");
    const auto rotate = addNamed<TransformationRotate>(node, "r", Vector3(0, 0, 1), 0.0F);
    addNamed<TransformationScale>(node, "s", -1.0F, 1.0F, 1.0F);
    scene.animation->addChannel(makeSampler({0, 2}, {30, 30}, 1), "n/r.ANGLE");
    // Two clips for one number: the one that is over gives way.
    scene.animation->addChannel(makeSampler({1, 2}, {5, 5}, 1), "n/s.Y");
    scene.animation->addChannel(makeSampler({0, 1}, {7, 7}, 1), "n/s.Y");
    scene.player->setAnimation(scene.animation);
    scene.showAt(1500);
    const Eigen::Affine3f expected =
        AngleAxisf(PI / 6.0F, Vector3f::UnitZ()) * Eigen::Scaling(-1.0F, 5.0F, 1.0F);
    EXPECT_TRUE(node->getTransformations().isApprox(expected.matrix(), 1e-5F))
        << node->getTransformations();
    EXPECT_EQ(rotate->getAngle(), 0.0F); // the list itself is not written
}

TEST(ListPlayback, BrokenDataIsSkippedAndLeavesNoNaN)
{
    const auto only = [](const char* semantic, Sampler::Semantic role)
    {
        const auto sampler = boost::make_shared<Sampler>("s");
        sampler->addInput(semantic, makeSampler({0, 1}, {1, 2}, 1)->getStreamBySemantic(role));
        return sampler;
    };
    const std::pair<std::string, SamplerPtr> rows[] = {
        {"no sampler", SamplerPtr()},
        {"empty sampler", boost::make_shared<Sampler>("s")},
        {"no times", only("OUTPUT", Sampler::OUTPUT)},
        {"no values", only("INPUT", Sampler::INPUT)},
        {"no keys", makeSampler({}, {}, 1)},
        {"one key", makeSampler({1}, {4}, 1)},
        {"fewer values than times", makeSampler({0, 1, 2}, {4}, 1)},
        {"stride 0", makeSampler({0, 1}, {4, 5}, 0)},
        {"negative stride", makeSampler({0, 1}, {4, 5}, -3)},
        {"wide stride", makeSampler({0, 1}, {4, 5, 6}, 3)},
        {"unsorted times", makeSampler({1, 0, 2, 0}, {4, 5, 6, 7}, 1)},
        {"equal times", makeSampler({0, 0.5F, 0.5F, 1}, {4, 5, 6, 7}, 1)},
        {"times that are no numbers", makeSampler({NOT_A_NUMBER, NOT_A_NUMBER}, {4, 5}, 1)},
        {"values that are no numbers", makeSampler({0, 1}, {NOT_A_NUMBER, 5}, 1)},
        {"infinite values", makeSampler({0, 1}, {-INFINITY, INFINITY}, 1)},
    };
    for (const char* const target : {"n/t.X", "n/t", "n/m", "n/m(0)(3)"})
    {
        for (const auto& [name, sampler] : rows)
        {
            SCOPED_TRACE(target + (", " + name));
            PlayedScene scene;
            const NodePtr node = scene.addNode("root", "n");
            addNamed<TransformationTranslate>(node, "t");
            addNamed<TransformationMatrix>(node, "m");
            scene.animation->addChannel(makeSampler({0, 2}, {0, 0}, 1), "root/none");
            scene.animation->addChannel(sampler, target);
            scene.player->setAnimation(scene.animation);
            for (const int millis : {0, 250, 500, 750, 999, 1500})
            {
                scene.showAt(millis);
                EXPECT_TRUE(node->getTransformations().allFinite());
            }
            std::vector<float> times;
            scene.player->calculateFrameTimes(scene.animation, times);
        }
    }
}

TEST(Playback, GivesKeyedPosesBack)
{
    PlayedScene scene;
    std::vector<NodePtr> joints{scene.manager->getRoot()};
    for (int i = 0; i < 20; ++i)
    {
        joints.push_back(scene.addNode(joints.back()->getID(), "joint" + std::to_string(i)));
    }
    scene.player->setAnimation(scene.animation);
    std::vector<std::vector<Matrix4f>> worlds;
    for (int key = 0; key <= 10; ++key)
    {
        for (std::size_t i = 1; i < joints.size(); ++i)
        {
            const float turn = 0.1F * static_cast<float>(key + 1) * static_cast<float>(i);
            joints[i]->setTransformations(
                Eigen::Translation3f(turn, 1.0F, 0.0F),
                posed(Vector3f::Zero(), 20.0F * turn, Vector3f(1.0F, turn, 2.0F).normalized()));
        }
        scene.player->insertKeyframe(0.25F * static_cast<float>(key));
        worlds.push_back(joints[0]->getCombinedTransformationsBelow());
    }
    for (int key = 0; key < 10; ++key) // nothing is evaluated at the loop's end
    {
        scene.showAt(250 * key);
        const std::vector<Matrix4f> played = joints[0]->getCombinedTransformationsBelow();
        for (std::size_t i = 0; i < played.size(); ++i)
        {
            EXPECT_TRUE(played[i].isApprox(worlds[static_cast<std::size_t>(key)][i], 1e-5F));
        }
    }
}

TEST(Playback, RaisesTwoPairsForEachNodeAndCollectsFrameTimesInOrder)
{
    PlayedScene scene;
    const NodePtr node = scene.addNode("root", "n");
    addNamed<TransformationTranslate>(node, "t");
    scene.play(makeSampler({0, 1}, {1, 2}, 1), "n/t.X");
    scene.events.take();
    scene.showAt(500);
    EXPECT_EQ(scene.events.count("NodeTransformationUpdate:n,"), 2U);
    EXPECT_EQ(scene.events.log.size(), 4U);

    const auto parent = boost::make_shared<Animation>("p", "");
    parent->addChannel(makeSampler({3, 1, 0.5F}, {}, 1), "x");
    parent->addAnimation(scene.animation);
    std::vector<float> times{9};
    scene.player->calculateFrameTimes(parent, times);
    EXPECT_THAT(times, ElementsAre(9, 0, 1, 3, 0.5F));

    EXPECT_EQ(AnimationManager::interpolateBezier(2, 4, 0, 1, 0.5F, {9, 9}, {9, 9}), 3.0F);
    EXPECT_EQ(AnimationManager::interpolateBezier(2, 4, 1, 1, 5, {9, 9}, {9, 9}), 2.0F);
    EXPECT_EQ(AnimationManager::getInterpolationType("BEZIER"), 2);
    EXPECT_EQ(AnimationManager::getInterpolationType(""), 1);
    EXPECT_EQ(AnimationManager::indexOfCoordinateValue("ANGLE"), 3);
    EXPECT_EQ(AnimationManager::indexOfCoordinateValue("v"), -1);
}

TEST(Playback, RunsWhileOthersEditAndListen)
{
    SceneUnderTest scene;
    const NodePtr node = scene.addNode("root", "n");
    addNamed<TransformationMatrix>(node, "m");
    const auto animation = boost::make_shared<Animation>("a", "");
    const Matrix4f moved = posed(Vector3f(1, 0, 0), 90, Vector3f::UnitY());
    const SamplerPtr sampler = makeSampler({0, 0.02F}, joined({Matrix4f::Identity(), moved}), 16);
    animation->addChannel(sampler, "n/m");
    scene.events.setEventManager(core::event::EventManagerPtr());
    std::atomic<std::size_t> heard{0};
    core::event::EventBase listener(scene.eventManager);
    for (const char* const type : {"NodeTransformationUpdate", "SyncScene"})
    {
        listener.registerHandler(type, [&heard](const core::event::Event& event)
                                 { heard += event.getEventData().getData().size() + 1; });
    }

    scene.manager->setAnimationsLibrary({animation});
    const AnimationManagerPtr player = scene.manager->getAnimationManager();
    scene.manager->lockScene();
    player->setAnimation(animation);
    scene.manager->unlockScene();
    while (heard == 0)
    {
        std::this_thread::yield();
    }
    std::thread editor(
        [&]
        {
            for (int i = 0; i < 300; ++i)
            {
                scene.manager->lockScene();
                const NodePtr added = scene.addNode("n", "n" + std::to_string(i % 7));
                sampler->getStreamBySemantic(Sampler::OUTPUT)->mutableData()[3] += 0.01F;
                player->setTime(milliseconds(i % 20));
                node->removeChild(added);
                scene.manager->unlockScene();
                std::this_thread::yield();
            }
        });
    editor.join();
    scene.manager->stop();
    EXPECT_TRUE(node->getTransformations().allFinite());
}
} // namespace
} // namespace velmoran::scene
