#include "scene/animation/Animation.h"

#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"

#include <algorithm>
#include <iterator>

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
        std::move(children.begin(), children.end(), std::back_inserter(*pendingChildren));
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
}

std::vector<Animation::Channel> Animation::getChannelArray() const
{
    return m_channels;
}

void Animation::addAnimation(const AnimationPtr& child)
{
    if (child && child.get() != this)
    {
        m_childAnimations.push_back(child);
    }
}

std::vector<AnimationPtr> Animation::getChildAnimations() const
{
    return m_childAnimations;
}

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
} // namespace velmoran::scene
