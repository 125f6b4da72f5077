// Poses of some nodes are keyed and removed at random times, and the same is done to simple
// lists. Played at the time of a key, the nodes stand as they were keyed.

#include "core/event/EventManager.h"
#include "fuzz/Input.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/graph/TransformationMatrix.h"
#include "scene/graph/TransformationTranslate.h"
#include "scene/manager/SceneLock.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

using namespace velmoran;
using namespace velmoran::scene;
using boost::posix_time::milliseconds;
using fuzz::check;
using fuzz::Input;

namespace
{
using RowMajor = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

/// The keys of one node as they must be.
class NodeKeys
{
public:
    NodeKeys(NodePtr node, const std::string& sid)
        : m_node(std::move(node)), m_target(m_node->getID() + "/" + sid)
    {
    }

    const NodePtr& node() const { return m_node; }

    void insert(float time)
    {
        std::size_t place = m_times.size();
        while (place > 0 && !(m_times[place - 1] < time))
        {
            --place;
        }
        const RowMajor matrix = m_node->getTransformations();
        m_times.insert(m_times.begin() + static_cast<std::ptrdiff_t>(place), time);
        m_values.insert(m_values.begin() + static_cast<std::ptrdiff_t>(16 * place), matrix.data(),
                        matrix.data() + 16);
        m_wasKeyed = true;
    }

    void remove(float time)
    {
        for (std::size_t i = m_times.size(); i-- > 0;)
        {
            if (std::fabs(time - m_times[i]) < 0.005)
            {
                m_times.erase(m_times.begin() + static_cast<std::ptrdiff_t>(i));
                const auto first = m_values.begin() + static_cast<std::ptrdiff_t>(16 * i);
                m_values.erase(first, first + 16);
                return;
            }
        }
    }

    float lastTime() const { return m_times.empty() ? 0.0F : m_times.back(); }

    /// At a time of keys, the node has the matrix of the first one.
    void compareNode(float time) const
    {
        const auto found = std::find(m_times.begin(), m_times.end(), time);
        if (found != m_times.end())
        {
            const Eigen::Map<const RowMajor> keyed(m_values.data() +
                                                   16 * (found - m_times.begin()));
            check((m_node->getTransformations() - keyed).norm() < 1e-4F * (1.0F + keyed.norm()),
                  "a node stands as it was keyed");
        }
    }

    void compare(const Animation& animation) const
    {
        SamplerPtr sampler;
        for (const AnimationPtr& child : animation.getChildAnimations())
        {
            const auto channels = child->getChannelArray();
            check(channels.size() == 1, "each child has one channel");
            sampler = channels.front().second == m_target ? channels.front().first : sampler;
        }
        check(!sampler == !m_wasKeyed, "there is a channel exactly for what was keyed");
        if (sampler)
        {
            compare(*sampler);
        }
    }

private:
    void compare(const Sampler& sampler) const
    {
        const StreamPtr times = sampler.getStreamBySemantic(Sampler::INPUT);
        const StreamPtr values = sampler.getStreamBySemantic(Sampler::OUTPUT);
        const StreamPtr names = sampler.getStreamBySemantic(Sampler::INTERPOLATION);
        check(times->getData() == m_times, "key times");
        check(values->getData() == m_values, "matrices, row by row");
        check(names->getNameList() == std::vector<std::string>(m_times.size(), "LINEAR"), "names");
        for (const StreamPtr& stream : {times, values, names})
        {
            check(stream->getCount() == static_cast<int>(m_times.size()), "counts");
        }
    }

    NodePtr m_node;
    std::string m_target;
    std::vector<float> m_times;
    std::vector<float> m_values; ///< 16 for each time
    bool m_wasKeyed = false;
};

/// A scene whose nodes get keys, and what must become of it.
class KeyedScene
{
public:
    KeyedScene() : m_lock(m_scene)
    {
        m_scene->getRoot()->setID(m_scene->getSceneID());
        const auto matrix = boost::make_shared<TransformationMatrix>();
        matrix->setSid("own");
        addNode("crane", "own")->addTransformation(matrix);
        addNode("lift", "transform")
            ->addTransformation(boost::make_shared<TransformationTranslate>());
        m_player->attach(m_scene);
        m_player->setAnimation(m_animation);
    }

    NodePtr addNode(const std::string& id, const std::string& sid)
    {
        const auto node = boost::make_shared<Node>(m_scene);
        node->setID(id);
        (m_nodes.empty() ? m_scene->getRoot() : m_nodes.back().node())->addNode(node);
        m_nodes.emplace_back(node, sid);
        return node;
    }

    std::size_t countNodes() const { return m_nodes.size(); }

    void pose(Input& input)
    {
        for (const NodeKeys& keys : m_nodes)
        {
            const float x = input.plainNumber();
            const float y = input.plainNumber();
            const Eigen::AngleAxisf turn(input.plainNumber(),
                                         Eigen::Vector3f(x, y, 1).normalized());
            Eigen::Matrix4f rotation = Eigen::Matrix4f::Identity();
            rotation.topLeftCorner<3, 3>() = turn.toRotationMatrix();
            keys.node()->setTransformations(Eigen::Translation3f(x, y, x - y), rotation);
            const float width = 0.25F * static_cast<float>(1 + input.below(8));
            const float height = 0.25F * static_cast<float>(1 + input.below(8));
            keys.node()->setScale(Eigen::Vector3f(width, height, 1.0F));
        }
    }

    void insert(float time)
    {
        m_player->insertKeyframe(time);
        noteRemoval(time);
        m_frameTimes.push_back(time);
        for (NodeKeys& keys : m_nodes)
        {
            keys.insert(time);
        }
    }

    void remove(float time)
    {
        m_player->removeKeyFrame(m_animation, time);
        noteRemoval(time);
    }

    void compare() const
    {
        check(m_player->getFrameTimes() == m_frameTimes, "frame times");
        double last = 0.0;
        for (const NodeKeys& keys : m_nodes)
        {
            keys.compare(*m_animation);
            last = std::max(last, static_cast<double>(keys.lastTime()));
        }
        check(m_player->getLoopDuration() == milliseconds(static_cast<long>(last * 1000.0)),
              "duration up to the last key");
    }

    /// Goes to a time of keys; behind the last one nothing moves.
    void play(int time)
    {
        m_player->setTime(milliseconds(time));
        const bool shows = m_player->update(milliseconds(10));
        if (milliseconds(time) >= m_player->getLoopDuration())
        {
            check(!shows, "the end of the loop shows nothing");
            return;
        }
        for (const NodeKeys& keys : m_nodes)
        {
            keys.compareNode(static_cast<float>(time / 1000.0));
        }
    }

private:
    void noteRemoval(float time)
    {
        for (std::size_t i = 0; i < m_frameTimes.size(); ++i)
        {
            if (m_frameTimes[i] == time)
            {
                m_frameTimes.erase(m_frameTimes.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
        for (NodeKeys& keys : m_nodes)
        {
            keys.remove(time);
        }
    }

    const SceneManagerPtr m_scene =
        boost::make_shared<SceneManager>(core::event::EventManagerPtr());
    const SceneLock m_lock;
    const AnimationPtr m_animation = boost::make_shared<Animation>("animation", "");
    const boost::shared_ptr<AnimationManager> m_player = boost::make_shared<AnimationManager>();
    std::vector<NodeKeys> m_nodes; ///< each the parent of the next
    std::vector<float> m_frameTimes;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    KeyedScene scene;
    for (unsigned int steps = 0; steps < 40 && !input.isEmpty(); ++steps)
    {
        // Milliseconds that are often closer than the tolerance.
        int time = static_cast<int>(input.below(32));
        time += 250 * (static_cast<int>(input.below(32)) - 8);
        const auto seconds = static_cast<float>(time / 1000.0);
        switch (input.below(6))
        {
        case 0:
            scene.remove(seconds);
            break;
        case 1:
            if (scene.countNodes() < 4)
            {
                scene.addNode("n" + std::to_string(scene.countNodes()), "transform");
            }
            break;
        case 2:
            scene.play(std::max(time, 0));
            break;
        default:
            scene.pose(input);
            scene.insert(seconds);
        }
        scene.compare();
    }
    return 0;
}
