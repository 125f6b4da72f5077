// Poses are keyed and removed at random times, and the same is done to a simple list.

#include "core/event/EventManager.h"
#include "fuzz/Input.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <cmath>

using namespace velmoran;
using namespace velmoran::scene;
using fuzz::check;
using fuzz::Input;

namespace
{
/// Keys of one node as they must be: times and heights.
class Model
{
public:
    void insert(float time, float height)
    {
        remove(time);
        m_frameTimes.push_back(time);
        std::size_t place = m_keys.size();
        while (place > 0 && !(m_keys[place - 1].first < time))
        {
            --place;
        }
        m_keys.insert(m_keys.begin() + static_cast<std::ptrdiff_t>(place), {time, height});
    }

    void remove(float time)
    {
        for (std::size_t i = 0; i < m_frameTimes.size(); ++i)
        {
            if (m_frameTimes[i] == time)
            {
                m_frameTimes.erase(m_frameTimes.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
        for (std::size_t i = m_keys.size(); i-- > 0;)
        {
            if (std::fabs(time - m_keys[i].first) < 0.005)
            {
                m_keys.erase(m_keys.begin() + static_cast<std::ptrdiff_t>(i));
                return;
            }
        }
    }

    void compare(const AnimationManager& player, const Animation& animation) const
    {
        check(player.getFrameTimes() == m_frameTimes, "frame times");
        if (animation.getChildAnimations().empty())
        {
            check(m_keys.empty(), "nothing is keyed");
            return;
        }
        const SamplerPtr sampler = animation.getChildAnimations().front()->getSamplers().front();
        const StreamPtr times = sampler->getStreamBySemantic(Sampler::INPUT);
        const StreamPtr values = sampler->getStreamBySemantic(Sampler::OUTPUT);
        const StreamPtr names = sampler->getStreamBySemantic(Sampler::INTERPOLATION);
        check(times->getData().size() == m_keys.size(), "number of key times");
        check(values->getData().size() == 16 * m_keys.size(), "number of values");
        check(names->getNameList().size() == m_keys.size(), "number of names");
        check(times->getCount() == static_cast<int>(m_keys.size()) &&
                  values->getCount() == times->getCount() && names->getCount() == times->getCount(),
              "counts");
        for (std::size_t i = 0; i < m_keys.size(); ++i)
        {
            check(times->getData()[i] == m_keys[i].first, "time of a key");
            check(values->getData()[16 * i + 7] == m_keys[i].second, "height of a key");
        }
    }

private:
    std::vector<float> m_frameTimes;
    std::vector<std::pair<float, float>> m_keys;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const auto scene = boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const SceneLock lock(scene);
    const auto node = boost::make_shared<Node>(scene);
    node->setID("lift");
    scene->getRoot()->setID(scene->getSceneID());
    scene->getRoot()->addNode(node);
    const auto animation = boost::make_shared<Animation>("animation", "");
    const auto player = boost::make_shared<AnimationManager>();
    player->attach(scene);
    player->setAnimation(animation);

    Model model;
    for (unsigned int steps = 0; steps < 60 && !input.isEmpty(); ++steps)
    {
        // Thousandths that are often closer than the tolerance.
        const float time = 0.001F * static_cast<float>(input.below(32)) + input.plainNumber();
        if (input.below(3) == 0)
        {
            player->removeKeyFrame(animation, time);
            model.remove(time);
        }
        else
        {
            const float height = input.plainNumber();
            node->setTranslation(Eigen::Translation3f(0.0F, height, 0.0F));
            player->insertKeyframe(time);
            model.insert(time, height);
        }
        model.compare(*player, *animation);
    }
    return 0;
}
