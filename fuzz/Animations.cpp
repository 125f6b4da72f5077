// Animations with broken streams and targets: set up, played, scrubbed and keyed. No number that
// is none comes into a node.

#include "core/event/EventManager.h"
#include "fuzz/Meshes.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/graph/Node.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationRotate.h"
#include "scene/graph/TransformationScale.h"
#include "scene/graph/TransformationTranslate.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

using namespace velmoran;
using namespace velmoran::scene;
using boost::posix_time::milliseconds;
using fuzz::check;
using fuzz::Input;

namespace
{
ITransformationPtr takeTransformation(Input& input)
{
    ITransformationPtr result;
    switch (input.below(4))
    {
    case 0:
        result = boost::make_shared<TransformationMatrix>();
        break;
    case 1:
        result = boost::make_shared<TransformationRotate>();
        break;
    case 2:
        result = boost::make_shared<TransformationScale>();
        break;
    default:
        result = boost::make_shared<TransformationTranslate>();
    }
    result->setSid(input.name("s", 3));
    return result;
}

void addNodes(Input& input, const SceneManagerPtr& scene)
{
    for (unsigned int i = 0; i < 3; ++i)
    {
        const auto node = boost::make_shared<Node>(scene);
        node->setID("n" + std::to_string(i));
        for (unsigned int j = input.below(4); j > 0; --j)
        {
            node->addTransformation(takeTransformation(input));
        }
        scene->getRoot()->addNode(node);
    }
}

StreamPtr takeKeyTimes(Input& input)
{
    const StreamPtr times = fuzz::takeStream(input, "times", 6);
    if (input.flag())
    {
        times->setStride(1);
        std::vector<float> sorted = times->getData();
        std::sort(sorted.begin(), sorted.end());
        times->setData(sorted);
    }
    for (unsigned int i = input.below(4) == 0 ? input.below(3) : 1; i > 0; --i)
    {
        times->addParam("TIME", "float");
    }
    return times;
}

SamplerPtr takeSampler(Input& input)
{
    const auto sampler = boost::make_shared<Sampler>("sampler");
    if (input.below(8) != 0)
    {
        sampler->addInput("INPUT", takeKeyTimes(input));
    }
    if (input.below(8) != 0)
    {
        const StreamPtr values = fuzz::takeStream(input, "values", 70);
        static constexpr int STRIDES[] = {1, 3, 4, 16};
        values->setStride(input.flag() ? STRIDES[input.below(4)] : values->getStride());
        sampler->addInput("OUTPUT", values);
    }
    const auto names = boost::make_shared<Stream>("names", 1, true);
    for (unsigned int i = input.below(6); i > 0; --i)
    {
        names->addName(input.flag() ? "LINEAR" : input.flag() ? "STEP" : "");
    }
    sampler->addInput("INTERPOLATION", names);
    return sampler;
}

AnimationPtr takeAnimation(Input& input)
{
    static constexpr const char* MEMBERS[] = {"",       "",       ".X", ".ANGLE", "(2)",
                                              "(3)(0)", "(9)(9)", ".?", "(",      "/"};
    const auto animation = boost::make_shared<Animation>("animation", "");
    for (unsigned int i = input.below(6); i > 0; --i)
    {
        std::string target = input.name("n", 4) + "/";
        target += input.name("s", 4);
        target += MEMBERS[input.below(10)];
        const SamplerPtr sampler = input.below(8) == 0 ? SamplerPtr() : takeSampler(input);
        animation->addChannel(sampler, target);
    }
    return animation;
}

void checkNodes(const SceneManagerPtr& scene)
{
    for (const NodePtr& node : scene->getNodeArray())
    {
        check(node->getTransformations().allFinite(), "matrices stay finite");
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const auto scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const SceneLock lock(scene);
    addNodes(input, scene);
    const auto animation = boost::make_shared<Animation>("all", "");
    animation->addAnimation(takeAnimation(input));
    animation->addAnimation(takeAnimation(input));
    const auto player = boost::make_shared<AnimationManager>();
    player->attach(scene);
    player->setAnimation(animation);
    for (unsigned int steps = 0; steps < 20 && !input.isEmpty(); ++steps)
    {
        switch (input.below(6))
        {
        case 0:
            player->setTime(milliseconds(static_cast<int>(input.below(4000)) - 1000));
            break;
        case 1:
            player->resume();
            break;
        case 2:
            player->pause();
            player->setSmooth(input.flag());
            player->setTimeTarget(milliseconds(input.below(3000)));
            break;
        case 3:
            player->insertKeyframe(input.number());
            break;
        case 4:
            player->removeKeyFrame(animation, input.number());
            break;
        default:
            animation->addAnimation(takeAnimation(input));
        }
        player->update(milliseconds(input.below(500)));
        checkNodes(scene);
    }
    return 0;
}
