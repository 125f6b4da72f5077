#include "scene/animation/Animation.h"

#include "core/utils/AllOrNothing.h"
#include "scene/animation/AnimationWalk.h"
#include "scene/animation/ChannelTarget.h"
#include "scene/animation/KeyInsertion.h"
#include "scene/animation/KeyframeEditing.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Node.h"
#include "scene/graph/TransformationMatrix.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>
#include <unordered_set>

namespace velmoran::scene
{
namespace
{
// Where animations that are destroyed while another one releases its children leave
// theirs; set while the outermost destructor of this thread drains its list. A plain
// pointer, so that animations in static objects can still be released at the end.
thread_local std::vector<AnimationPtr>* pendingChildren = nullptr;

void releaseAll(std::vector<AnimationPtr>& children)
{
    if (pendingChildren)
    {
        try
        {
            core::utils::makeRoom(*pendingChildren, children.size());
            std::move(children.begin(), children.end(), std::back_inserter(*pendingChildren));
        }
        catch (const std::bad_alloc&) // they go with their list then, on the stack
        {
        }
        return;
    }
    pendingChildren = &children;
    while (!children.empty())
    {
        // Taken out first: releasing it may append to the list.
        const AnimationPtr released = std::move(children.back());
        children.pop_back();
    }
    pendingChildren = nullptr;
}

template <typename T>
std::vector<T> withoutEmpty(std::vector<T> handles)
{
    handles.erase(std::remove(handles.begin(), handles.end(), nullptr), handles.end());
    return handles;
}

/// The time of the last key in whole milliseconds; zero when there is none.
boost::posix_time::time_duration timeOfLastKey(const SamplerPtr& sampler)
{
    const StreamPtr times = sampler ? sampler->getStreamBySemantic(Sampler::INPUT) : StreamPtr();
    if (!times || times->getParamList().size() != 1 || times->getData().empty())
    {
        return boost::posix_time::time_duration();
    }
    // Beyond the limit, milliseconds would not fit into a duration's microseconds.
    const double limit = 9.0e14;
    const double milliseconds = times->getData().back() * 1000.0;
    return std::isnan(milliseconds) ? boost::posix_time::time_duration()
                                    : boost::posix_time::milliseconds(static_cast<std::int64_t>(
                                          std::clamp(milliseconds, -limit, limit)));
}

/// Whether the list of `node` can be keyed, given that what stands below can or can't.
bool isValidFor(const Node& node, bool valid)
{
    int rotations = 0;
    bool hasMatrix = false;
    for (const ITransformationPtr& transformation : node.getOriginalTransformations())
    {
        const int kind = transformation->getType();
        valid = valid && kind != ITransformation::SCALE && kind != ITransformation::TRANSLATE;
        rotations += kind == ITransformation::ROTATE ? 1 : 0;
        hasMatrix = hasMatrix || kind == ITransformation::MATRIX;
    }
    return hasMatrix || (valid && rotations <= 1);
}

StreamPtr makeStream(const std::string& id, int stride, const std::string& param,
                     const std::string& type)
{
    const StreamPtr stream = boost::make_shared<Stream>(id, stride, false);
    stream->addParam(param, type);
    return stream;
}

/// A sampler for new keys, and its streams: times, values and interpolation names.
std::pair<SamplerPtr, std::vector<StreamPtr>>
makeKeySampler(const std::string& nodeId, const ChannelTarget& target, bool isMatrix)
{
    const std::string id = nodeId + "-node_" + target.path;
    const SamplerPtr sampler = boost::make_shared<Sampler>(nodeId + "-sampler");
    const StreamPtr times = makeStream(id + "-input", 1, "TIME", "float");
    const StreamPtr values = isMatrix ? makeStream(id + "-output", 16, "TRANSFORM", "float4x4")
                                      : makeStream(id + "-output", 1, target.member, "float");
    const StreamPtr names = makeStream(id + "-interpolations", 1, "INTERPOLATION", "Name");
    sampler->addInput("INPUT", times);
    sampler->addInput("OUTPUT", values);
    sampler->addInput("INTERPOLATION", names);
    return {sampler, {times, values, names}};
}
} // namespace

Animation::Animation(std::string id, std::string name)
    : m_id(std::move(id)), m_name(std::move(name))
{
}

Animation::~Animation()
{
    releaseAll(m_childAnimations);
}

const std::string& Animation::getID() const
{
    return m_id;
}

const std::string& Animation::getName() const
{
    return m_name;
}

void Animation::setName(std::string name)
{
    m_name = std::move(name);
}

void Animation::setStreams(const std::vector<StreamPtr>& streams)
{
    m_streams = withoutEmpty(streams);
}

std::vector<StreamPtr> Animation::getStreams() const
{
    return m_streams;
}

StreamPtr Animation::getStreamById(const std::string& id) const
{
    const auto found = std::find_if(m_streams.begin(), m_streams.end(),
                                    [&id](const StreamPtr& s) { return s->getID() == id; });
    return found == m_streams.end() ? StreamPtr() : *found;
}

void Animation::setSamplers(const std::vector<SamplerPtr>& samplers)
{
    m_samplers = withoutEmpty(samplers);
}

const std::vector<SamplerPtr>& Animation::getSamplers() const
{
    return m_samplers;
}

SamplerPtr Animation::getSamplerById(const std::string& id) const
{
    const auto found = std::find_if(m_samplers.begin(), m_samplers.end(),
                                    [&id](const SamplerPtr& s) { return s->getId() == id; });
    return found == m_samplers.end() ? SamplerPtr() : *found;
}

void Animation::addChannel(const SamplerPtr& sampler, std::string target)
{
    m_channels.emplace_back(sampler, std::move(target));
    m_revision.moveOn();
}

std::vector<Animation::Channel> Animation::getChannelArray() const
{
    return m_channels;
}

void Animation::addAnimation(const AnimationPtr& child)
{
    if (child && child.get() != this)
    {
        core::utils::makeRoom(m_childAnimations);
        rememberTarget(child);
        m_childAnimations.push_back(child);
        m_revision.moveOn();
    }
}

std::size_t Animation::getChildAnimationCount() const
{
    return m_childAnimations.size();
}

void Animation::removeChildAnimationsFrom(std::size_t count)
{
    while (m_childAnimations.size() > count)
    {
        const AnimationPtr removed = std::move(m_childAnimations.back());
        m_childAnimations.pop_back();
        // A key of the table would have to be made.
        const auto entry =
            std::find_if(m_childrenByTarget.begin(), m_childrenByTarget.end(),
                         [&removed](const auto& one) { return one.second == removed.get(); });
        if (entry != m_childrenByTarget.end() &&
            std::find(m_childAnimations.begin(), m_childAnimations.end(), removed) ==
                m_childAnimations.end())
        {
            m_childrenByTarget.erase(entry);
        }
        m_revision.moveOn();
    }
}

/// Lets `getChannel` find a child that was made for a target, unless another one was
/// there before.
void Animation::rememberTarget(const AnimationPtr& child)
{
    if (child->m_isForTarget)
    {
        m_childrenByTarget.emplace(std::make_pair(child->m_targetNodeId, child->m_targetSid),
                                   child.get());
    }
}

std::vector<AnimationPtr> Animation::getChildAnimations() const
{
    return m_childAnimations;
}

// The whole tree

boost::posix_time::time_duration Animation::getDuration() const
{
    boost::posix_time::time_duration result;
    for (const Animation* const animation : childrenFirst(*this))
    {
        result = std::max(result, animation->getOwnDuration());
    }
    return result;
}

boost::posix_time::time_duration Animation::getOwnDuration() const
{
    boost::posix_time::time_duration result;
    for (const Channel& channel : m_channels)
    {
        result = std::max(result, timeOfLastKey(channel.first));
    }
    return result;
}

bool Animation::isValid() const
{
    // Only last children count: down to the last one of them, and back up.
    std::vector<const Animation*> path = {this};
    std::unordered_set<const Animation*> met = {this};
    while (!path.back()->m_childAnimations.empty() &&
           met.insert(path.back()->m_childAnimations.back().get()).second)
    {
        path.push_back(path.back()->m_childAnimations.back().get());
    }
    bool valid = true;
    for (; !path.empty(); path.pop_back())
    {
        const NodePtr& node = path.back()->m_targetNode;
        valid = node ? isValidFor(*node, valid) : valid;
    }
    return valid;
}

// Keyframe editing

SamplerPtr Animation::getChannel(const std::string& nodeId, const std::string& target,
                                 const ITransformationPtr& transformation)
{
    const ChannelTarget parsed(target);
    const auto found = m_childrenByTarget.find({nodeId, parsed.path});
    if (found != m_childrenByTarget.end())
    {
        return found->second->m_channels.front().first;
    }
    const bool isMatrix = transformation && transformation->getType() == ITransformation::MATRIX;
    const auto [sampler, streams] = makeKeySampler(nodeId, parsed, isMatrix);
    const AnimationPtr child = boost::make_shared<Animation>(nodeId + "-node-" + parsed.path, "");
    child->setSamplers({sampler});
    child->setStreams(streams);
    child->addChannel(sampler, target);
    child->m_isForTarget = true;
    child->m_targetNodeId = nodeId;
    child->m_targetSid = parsed.path;
    addAnimation(child);
    return sampler;
}

void Animation::insertKeyFrame(const NodePtr& node, float time)
{
    if (!node || !std::isfinite(time))
    {
        return;
    }
    const NodePtr kept = node;
    KeyInsertion insertion(*this);
    for (const ITransformationPtr& transformation : kept->getOriginalTransformations())
    {
        if (transformation->getType() == ITransformation::MATRIX)
        {
            insertion.prepare(kept, transformation);
        }
    }
    if (kept->getOriginalTransformations().empty())
    {
        const auto matrix = boost::make_shared<TransformationMatrix>();
        matrix->setSid("transform");
        insertion.prepare(kept, matrix);
        kept->addTransformation(matrix);
    }
    insertion.apply(time);
}

void Animation::insertTransformations(const NodePtr& node, const ITransformationPtr& transformation,
                                      float time)
{
    if (node && transformation && std::isfinite(time))
    {
        KeyInsertion insertion(*this);
        insertion.prepare(node, transformation);
        insertion.apply(time);
    }
}

void Animation::removeKeyFrame(float time)
{
    for (Animation* const animation : childrenFirst(*this))
    {
        animation->removeOwnKeyFrame(time);
    }
}

void Animation::removeOwnKeyFrame(float time)
{
    for (const Channel& channel : m_channels)
    {
        if (!channel.first || !removeKey(*channel.first, time))
        {
            break;
        }
    }
}

// Settings

int Animation::getTimeRange() const
{
    return m_timeRange;
}

void Animation::setTimeRange(int timeRange)
{
    m_timeRange = timeRange;
}

NodePtr Animation::getTargetNode() const
{
    return m_targetNode;
}

void Animation::setTargetNode(const NodePtr& node)
{
    m_targetNode = node;
}

const core::utils::Revision& Animation::getRevision() const
{
    return m_revision;
}
} // namespace velmoran::scene
