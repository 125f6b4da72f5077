#include "scene/animation/Animation.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>
#include <boost/thread/thread.hpp>
#include <boost/weak_ptr.hpp>
#include <gmock/gmock.h>

#include <string>

using namespace velmoran::scene;
using ::testing::ElementsAre;

namespace
{
StreamPtr makeAnimationStream(const std::string& id)
{
    return boost::make_shared<Stream>(id, 1, false);
}

AnimationPtr makeAnimation()
{
    return boost::make_shared<Animation>("id", "");
}
} // namespace

TEST(Sampler, FindsTheFirstInputOfARoleAndNeverAnUnknownOne)
{
    const StreamPtr times = makeAnimationStream("times");
    const StreamPtr values = makeAnimationStream("values");
    Sampler sampler("s");
    sampler.addInput("input", values);
    sampler.addInput("INPUT", StreamPtr());
    for (const char* name : {"INPUT", "OUTPUT", "IN_TANGENT", "OUT_TANGENT", "INTERPOLATION"})
    {
        sampler.addInput(name, times);
        sampler.addInput(name, values);
    }
    EXPECT_THAT(sampler.getInputsSemantics(),
                ElementsAre(Sampler::UNKNOWN, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4));
    EXPECT_EQ(sampler.getStreamBySemantic(Sampler::INTERPOLATION), times);
    EXPECT_FALSE(sampler.getStreamBySemantic(Sampler::UNKNOWN));
}

TEST(Animation, LeavesOutEmptyPartsAndItselfAndFindsTheFirstByID)
{
    const SamplerPtr sampler = boost::make_shared<Sampler>("s");
    const StreamPtr stream = makeAnimationStream("x");
    const AnimationPtr animation = makeAnimation();
    animation->setStreams({StreamPtr(), stream, makeAnimationStream("x")});
    animation->setSamplers({SamplerPtr(), sampler});
    animation->addAnimation(AnimationPtr());
    animation->addAnimation(animation);
    EXPECT_EQ(animation->getStreams().size(), 2U);
    EXPECT_EQ(animation->getStreamById("x"), stream);
    EXPECT_FALSE(animation->getStreamById("X"));
    EXPECT_EQ(animation->getSamplerById("s"), sampler);
    EXPECT_TRUE(animation->getChildAnimations().empty());
}

TEST(Animation, ReleasesAnyDepthOnASmallStackAndLeavesHeldPartsWhole)
{
    AnimationPtr root = makeAnimation();
    AnimationPtr held;
    AnimationPtr last = root;
    for (int depth = 1; depth <= 100000; ++depth)
    {
        const AnimationPtr child = makeAnimation();
        last->addAnimation(makeAnimation());
        last->addAnimation(child);
        last = child;
        held = depth == 99999 ? child : held;
    }
    const boost::weak_ptr<Animation> deepest = last;
    last.reset();
    boost::thread::attributes attributes;
    attributes.set_stack_size(262144);
    boost::thread(attributes, [&] { root.reset(); }).join();
    EXPECT_EQ(held->getChildAnimations().size(), 2U);
    held.reset();
    EXPECT_TRUE(deepest.expired());
}
