#include "scene/graph/CameraInstance.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationTranslate.h"
#include "tests/scene/animation/AnimationBuilders.h"

namespace velmoran::scene
{
namespace
{
using Vector3 = core::utils::Vector<float, 3>;

StreamPtr streamOf(const AnimationPtr& animation, Sampler::Semantic semantic)
{
    return animation->getChannelArray().front().first->getStreamBySemantic(semantic);
}

TEST(AnimationModel, MakesOneChildForEachTargetOfANode)
{
    Animation animation("a", "");
    const auto rotate = boost::make_shared<TransformationRotate>();
    const SamplerPtr sampler = animation.getChannel("N", "N/rotateX.ANGLE", rotate);
    EXPECT_EQ(animation.getChannel("N", "N/rotateX.ANGLE", rotate), sampler);
    const SamplerPtr matrix =
        animation.getChannel("N", "N/transform", boost::make_shared<TransformationMatrix>());
    animation.getChannel("N", "N", rotate);
    const std::vector<AnimationPtr> children = animation.getChildAnimations();
    ASSERT_EQ(children.size(), 3U);
    EXPECT_EQ(children[0]->getID(), "N-node-rotateX.ANGLE");
    EXPECT_EQ(children[2]->getID(), "N-node-");
    EXPECT_EQ(matrix->getId(), "N-sampler");
    EXPECT_EQ(children[0]->getChannelArray().front().second, "N/rotateX.ANGLE");
    std::vector<std::string> ids;
    for (const StreamPtr& stream : children[0]->getStreams())
    {
        ids.push_back(stream->getID() + " " + stream->getParamList().front().first + " " +
                      stream->getParamList().front().second);
    }
    EXPECT_THAT(ids, ElementsAre("N-node_rotateX.ANGLE-input TIME float",
                                 "N-node_rotateX.ANGLE-output ANGLE float",
                                 "N-node_rotateX.ANGLE-interpolations INTERPOLATION Name"));
    const StreamPtr values = matrix->getStreamBySemantic(Sampler::OUTPUT);
    EXPECT_EQ(values->getStride(), 16);
    EXPECT_EQ(values->getParamList().front().second, "float4x4");
}

TEST(AnimationModel, LastsAsLongAsItsLastKeyBelowInWholeMilliseconds)
{
    Animation animation("a", "");
    EXPECT_EQ(animation.getDuration(), milliseconds(0));
    animation.addChannel(makeSampler({0, 0.5F}, {}, 1), "N/x");
    animation.addChannel(makeSampler({}, {}, 1), "N/x");
    const auto child = boost::make_shared<Animation>("b", "");
    child->addChannel(makeSampler({0, 1.9995F}, {}, 1), "N/x");
    const SamplerPtr twoParams = makeSampler({0, 9}, {}, 1);
    twoParams->getStreamBySemantic(Sampler::INPUT)->addParam("MORE", "float");
    child->addChannel(twoParams, "N/x");
    animation.addAnimation(child);
    EXPECT_EQ(animation.getDuration(), milliseconds(1999));
}

TEST(AnimationModel, IsValidAsItsLastChildAndItsTargetNodeSay)
{
    const SceneUnderTest scene;
    const NodePtr node = scene.makeNode("n");
    const auto invalid = boost::make_shared<Animation>("i", "");
    invalid->setTargetNode(node);
    EXPECT_TRUE(invalid->isValid());
    node->addTransformation(boost::make_shared<TransformationRotate>(Vector3(0, 0, 1), 10.0F));
    EXPECT_TRUE(invalid->isValid());
    node->addTransformation(boost::make_shared<TransformationRotate>(Vector3(0, 1, 0), 10.0F));
    EXPECT_FALSE(invalid->isValid());
    Animation parent("p", "");
    parent.addAnimation(invalid);
    EXPECT_FALSE(parent.isValid());
    parent.addAnimation(boost::make_shared<Animation>("v", ""));
    EXPECT_TRUE(parent.isValid());
    node->addTransformation(boost::make_shared<TransformationMatrix>());
    EXPECT_TRUE(invalid->isValid());
}

TEST(KeyframeEditing, ReplacesListsByMatricesAndKeysAllButRootAndDefaultCamera)
{
    PlayedScene scene;
    const NodePtr arm = scene.addNode("root", "arm");
    arm->addTransformation(boost::make_shared<TransformationRotate>(Vector3(0, 0, 1), 90.0F));
    arm->addTransformation(boost::make_shared<TransformationTranslate>(Vector3(1, 2, 3)));
    arm->addTransformation(boost::make_shared<TransformationScale>(2.0F, 3.0F, 4.0F));
    scene.manager->createNewCamera(0, "eye", "root");
    const Eigen::Matrix4f pose = arm->getTransformations();

    scene.player->insertKeyframe(1.0F); // no animation: lists are converted only
    ASSERT_EQ(arm->getOriginalTransformations().size(), 1U);
    const auto matrix =
        boost::dynamic_pointer_cast<TransformationMatrix>(arm->getOriginalTransformations()[0]);
    ASSERT_TRUE(matrix);
    EXPECT_EQ(matrix->getSid(), "transform");
    EXPECT_EQ(Eigen::Matrix4f(Eigen::Map<const Eigen::Matrix4f>(matrix->getMatrix().getMatrix())),
              pose);
    EXPECT_THAT(scene.player->getTargetedTransformationsForNode(arm), ElementsAre("transform"));
    EXPECT_THAT(scene.player->getFrameTimes(), IsEmpty());

    scene.player->setAnimation(scene.animation);
    scene.player->setTime(milliseconds(100));
    for (const float time : {1.0F, 0.5F, 0.75F, 0.75F, 0.753F})
    {
        scene.player->insertKeyframe(time);
    }
    EXPECT_TRUE(scene.player->paused());
    EXPECT_EQ(scene.player->getLoopDuration(), milliseconds(1000));
    // The frame time 0.75 was erased by its exact repetition, not by 0.753.
    EXPECT_THAT(scene.player->getFrameTimes(), ElementsAre(1.0F, 0.5F, 0.75F, 0.753F));
    ASSERT_EQ(scene.animation->getChildAnimations().size(), 1U); // neither root nor camera
    const AnimationPtr keyed = scene.animation->getChildAnimations().front();
    EXPECT_THAT(streamOf(keyed, Sampler::INPUT)->getData(), ElementsAre(0.5F, 0.753F, 1.0F));
    EXPECT_THAT(streamOf(keyed, Sampler::INTERPOLATION)->getNameList(),
                ElementsAre("LINEAR", "LINEAR", "LINEAR"));
    const StreamPtr values = streamOf(keyed, Sampler::OUTPUT);
    EXPECT_EQ(values->getCount(), 3);
    EXPECT_EQ(std::vector<float>(values->getData().begin() + 16, values->getData().begin() + 32),
              rowByRow(pose));

    scene.player->removeKeyFrame(scene.animation, 0.51F); // farther than 5 ms
    EXPECT_EQ(streamOf(keyed, Sampler::INPUT)->getCount(), 3);
    scene.player->removeKeyFrame(scene.animation, 1.003F);
    EXPECT_EQ(streamOf(keyed, Sampler::INPUT)->getCount(), 2);
    EXPECT_EQ(streamOf(keyed, Sampler::OUTPUT)->getData().size(), 32U);
    EXPECT_EQ(scene.player->getLoopDuration(), milliseconds(753));
}

TEST(KeyframeEditing, PutsTangentsBehindTheFirstKeyAndStopsAtTheFirstChannelWithoutKey)
{
    const SceneUnderTest scene;
    const NodePtr node = scene.makeNode("n");
    Animation animation("a", "");
    animation.insertKeyFrame(node, 1.0F); // an empty list gets an identity matrix first
    ASSERT_EQ(node->getOriginalTransformations().size(), 1U);
    const SamplerPtr sampler =
        animation.getChildAnimations().front()->getChannelArray().front().first;
    const auto tangents = boost::make_shared<Stream>("t", 2, true);
    tangents->setData({1, 2, 3, 4});
    tangents->setCount(2);
    sampler->addInput("IN_TANGENT", tangents);
    animation.insertKeyFrame(node, 2.0F);
    EXPECT_THAT(tangents->getData(), ElementsAre(1, 2, 0, 0, 3, 4));
    EXPECT_EQ(tangents->getCount(), 3);

    // A single matrix, which may stand in no list.
    const auto matrix = boost::make_shared<TransformationMatrix>();
    matrix->setSid("second");
    Animation single("s", "");
    single.insertTransformations(node, matrix, 3.0F);
    single.insertTransformations(node, matrix, std::nanf(""));
    single.insertTransformations(NodePtr(), matrix, 3.0F);
    single.insertKeyFrame(NodePtr(), 3.0F);
    ASSERT_EQ(single.getChildAnimations().size(), 1U);
    const AnimationPtr keyed = single.getChildAnimations().front();
    ASSERT_EQ(keyed->getChannelArray().size(), 1U);
    EXPECT_EQ(keyed->getChannelArray().front().second, "n/second");
    EXPECT_THAT(streamOf(keyed, Sampler::INPUT)->getData(), ElementsAre(3));

    Animation walked("w", "");
    const SamplerPtr first = makeSampler({0, 1}, {5, 6}, 1);
    const SamplerPtr last = makeSampler({0, 1}, {7, 8}, 1);
    walked.addChannel(first, "n/a");
    walked.addChannel(SamplerPtr(), "n/b");
    walked.addChannel(last, "n/c");
    walked.removeKeyFrame(0.996F);
    EXPECT_THAT(first->getStreamBySemantic(Sampler::OUTPUT)->getData(), ElementsAre(5));
    EXPECT_THAT(last->getStreamBySemantic(Sampler::INPUT)->getData(), ElementsAre(0, 1));
}

TEST(KeyframeEditing, ErasesFrameTimesInOnePass)
{
    AnimationManager player;
    for (const float time : {1.0F, 1.0F, 1.0F, 0.5F})
    {
        player.insertFrameTime(time);
    }
    player.removeFrameTime(1.0F);
    EXPECT_THAT(player.getFrameTimes(), ElementsAre(1.0F, 0.5F));
}

TEST(AnimationCamera, StandsWhereTheDefaultCameraStands)
{
    PlayedScene scene;
    EXPECT_FALSE(AnimationManager().getDefaultCamera());
    EXPECT_FALSE(scene.player->getDefaultCamera()); // makes it
    const CameraInstancePtr standard = scene.player->getDefaultCamera();
    ASSERT_TRUE(standard);
    EXPECT_EQ(standard->getParentNode()->getID(), "DefaultCamera");
    standard->getParentNode()->move(1, 2, 3);
    scene.player->addAnimationCamera();
    const NodePtr node = scene.manager->getNodeByID("AnimationCamera");
    ASSERT_TRUE(node);
    EXPECT_EQ(node->getTransformations(), standard->getParentNode()->getTransformations());
    ASSERT_EQ(node->getOriginalTransformations().size(), 1U);
    EXPECT_EQ(node->getOriginalTransformations()[0]->getSid(), "transform");
    EXPECT_EQ(scene.manager->getCameraInstanceCount(), 2U);
}
} // namespace
} // namespace velmoran::scene
