// Playing animations: other libraries.

#include "bench/AnimationCases.h"

#ifdef VELMORAN_BENCH_OSG
#include <osg/MatrixTransform>
#include <osgAnimation/Animation>
#include <osgAnimation/Channel>
#include <osgAnimation/StackedQuaternionElement>
#include <osgAnimation/StackedScaleElement>
#include <osgAnimation/StackedTranslateElement>
#include <osgAnimation/UpdateMatrixTransform>
#endif

namespace velmoran::bench
{
namespace
{
#ifdef VELMORAN_BENCH_OSG
/// Nodes that an animation moves, turns and scales, each by three channels.
class OsgPlayer
{
public:
    explicit OsgPlayer(const FlatAnimation& flat) : m_animation(new osgAnimation::Animation)
    {
        m_animation->setWeight(1.0F);
        for (std::size_t node = 0; node < flat.nodes; ++node)
        {
            addNode(flat, node * flat.times.size());
        }
    }

    void evaluate(float time)
    {
        m_animation->resetTargets();
        m_animation->update(time);
        for (std::size_t i = 0; i < m_nodes.size(); ++i)
        {
            osgAnimation::StackedTransform& stack = m_callbacks[i]->getStackedTransforms();
            stack.update(time);
            m_nodes[i]->setMatrix(stack.getMatrix());
        }
    }

    Eigen::Matrix4f local(std::size_t node) const
    {
        return Eigen::Map<const Eigen::Matrix4d>(m_nodes[node]->getMatrix().ptr()).cast<float>();
    }

private:
    static osg::Vec3 toOsg(const Eigen::Vector3f& v) { return osg::Vec3(v.x(), v.y(), v.z()); }
    static osg::Quat toOsg(const Eigen::Quaternionf& q)
    {
        return osg::Quat(q.x(), q.y(), q.z(), q.w());
    }

    template <typename Channel, typename Values>
    void addChannel(const FlatAnimation& flat, std::size_t first, const Values& values,
                    const char* target)
    {
        const osg::ref_ptr<Channel> channel = new Channel;
        channel->setTargetName("node");
        channel->setName(target);
        auto* const keys = channel->getOrCreateSampler()->getOrCreateKeyframeContainer();
        for (std::size_t i = 0; i < flat.times.size(); ++i)
        {
            keys->push_back({flat.times[i], toOsg(values[first + i])});
        }
        m_callbacks.back()->link(channel.get());
        m_animation->addChannel(channel.get());
    }

    void addNode(const FlatAnimation& flat, std::size_t first)
    {
        m_nodes.push_back(new osg::MatrixTransform);
        m_callbacks.push_back(new osgAnimation::UpdateMatrixTransform("node"));
        osgAnimation::StackedTransform& stack = m_callbacks.back()->getStackedTransforms();
        stack.push_back(new osgAnimation::StackedTranslateElement("translate"));
        stack.push_back(new osgAnimation::StackedQuaternionElement("rotate"));
        stack.push_back(new osgAnimation::StackedScaleElement("scale"));
        addChannel<osgAnimation::Vec3LinearChannel>(flat, first, flat.translations, "translate");
        addChannel<osgAnimation::QuatSphericalLinearChannel>(flat, first, flat.rotations, "rotate");
        addChannel<osgAnimation::Vec3LinearChannel>(flat, first, flat.scales, "scale");
    }

    osg::ref_ptr<osgAnimation::Animation> m_animation;
    std::vector<osg::ref_ptr<osg::MatrixTransform>> m_nodes;
    std::vector<osg::ref_ptr<osgAnimation::UpdateMatrixTransform>> m_callbacks;
};

void playOsg(benchmark::State& state)
{
    const FlatAnimation& flat = animationOf(state.range(0), 100);
    OsgPlayer player(flat);
    Playhead playhead(flat);
    player.evaluate(playhead.advance());
    for (auto _ : state)
    {
        for (int i = 0; i < TICKS; ++i)
        {
            player.evaluate(playhead.advance());
        }
    }
    countItems(state, TICKS * state.range(0));

    FlatPlayer wanted(flat);
    const float halfWay = (flat.times[2] + flat.times[3]) / 2.0F;
    wanted.evaluate(halfWay);
    player.evaluate(halfWay);
    for (std::size_t i = 0; i < flat.nodes; ++i)
    {
        require(state, player.local(i).isApprox(wanted.locals()[i], 1e-4F), "wrong matrices");
    }
}
BENCHMARK(playOsg)->Name("play/OpenSceneGraph")->Apply(atNAnd4N<1000>);
#endif
} // namespace
} // namespace velmoran::bench
