#include "examples/collada/Animations.h"

#include "examples/collada/Transformations.h"
#include "scene/animation/Animation.h"
#include "scene/animation/AnimationManager.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace velmoran::examples::collada
{
Animations::Animations(Document& document, Sources& sources)
    : m_document(document), m_sources(sources)
{
    // Level by level, so that children keep their order and any depth is read.
    std::vector<std::pair<pugi::xml_node, scene::AnimationPtr>> pending;
    for (const pugi::xml_node& element : document.getElements("library_animations", "animation"))
    {
        m_animations.push_back(readAnimation(element));
        pending.emplace_back(element, m_animations.back());
    }
    for (std::size_t i = 0; i < pending.size(); ++i)
    {
        const auto [parentElement, parent] = pending[i];
        for (const pugi::xml_node& element : parentElement.children("animation"))
        {
            const scene::AnimationPtr child = readAnimation(element);
            parent->addAnimation(child);
            pending.emplace_back(element, child);
        }
    }
}

const std::vector<scene::AnimationPtr>& Animations::getAnimations() const
{
    return m_animations;
}

scene::AnimationPtr Animations::readAnimation(const pugi::xml_node& element)
{
    const auto animation = boost::make_shared<scene::Animation>(getAttribute(element, "id"),
                                                                getAttribute(element, "name"));
    animation->setStreams(m_sources.getStreamsIn(element));
    std::vector<scene::SamplerPtr> samplers;
    for (const pugi::xml_node& sampler : element.children("sampler"))
    {
        samplers.push_back(getSampler(sampler));
    }
    animation->setSamplers(samplers);
    for (const pugi::xml_node& channel : element.children("channel"))
    {
        const std::string target = getAttribute(channel, "target");
        checkTarget(channel, target);
        animation->addChannel(
            getSampler(m_document.resolveAttribute(channel, "source", {"sampler"})), target);
    }
    return animation;
}

scene::SamplerPtr Animations::getSampler(const pugi::xml_node& element)
{
    scene::SamplerPtr& sampler = m_samplers[element.internal_object()];
    if (!sampler)
    {
        sampler = boost::make_shared<scene::Sampler>(getAttribute(element, "id"));
        for (const pugi::xml_node& input : element.children("input"))
        {
            sampler->addInput(getAttribute(input, "semantic"), m_sources.getInput(input));
        }
        checkKeys(element, *sampler);
    }
    return sampler;
}

/// Says what keeps the keys of a sampler from being played as they are meant.
void Animations::checkKeys(const pugi::xml_node& element, const scene::Sampler& sampler)
{
    const scene::StreamPtr times = sampler.getStreamBySemantic(scene::Sampler::INPUT);
    const scene::StreamPtr values = sampler.getStreamBySemantic(scene::Sampler::OUTPUT);
    const scene::StreamPtr names = sampler.getStreamBySemantic(scene::Sampler::INTERPOLATION);
    if (!times || !values)
    {
        m_document.warn(element, std::string("it has no ") + (times ? "OUTPUT" : "INPUT") +
                                     "; what it moves will not play");
        return;
    }
    const auto& params = times->getParamList();
    if (params.size() != 1 || params.front().first != "TIME")
    {
        m_document.warn(element, "the one parameter of its INPUT is not TIME; what it moves will "
                                 "not play");
    }
    const auto compare = [&](std::size_t count, const char* what)
    {
        const auto keys = static_cast<std::size_t>(times->getCount());
        if (count != keys)
        {
            m_document.warn(element, "it has " + std::to_string(keys) + " key times, but " +
                                         std::to_string(count) + ' ' + what);
        }
    };
    compare(static_cast<std::size_t>(values->getCount()), "values");
    if (names)
    {
        compare(names->getNameList().size(), "names of interpolations");
    }
}

/// A target is an ID, "/", the SID of a transformation and often a member: ".X" or
/// "(3)". Targets at other things than nodes are kept and move nothing.
void Animations::checkTarget(const pugi::xml_node& channel, const std::string& target)
{
    const std::size_t slash = target.find('/');
    const std::string id = target.substr(0, slash);
    const pugi::xml_node node = m_document.find(id, {"node"});
    if (!node)
    {
        if (!m_document.hasID(id))
        {
            m_document.warn(channel, "its target " + quote(target) + " names nothing");
        }
        return;
    }
    const std::string path = slash == std::string::npos ? "" : target.substr(slash + 1);
    if (const char* const fault = findFault(node, path))
    {
        m_document.warn(channel, "its target " + quote(target) + ' ' + fault);
    }
}

/// What is wrong with what follows the ID in a target; null when nothing is.
const char* Animations::findFault(const pugi::xml_node& node, const std::string& path)
{
    if (path.find('/') != std::string::npos)
    {
        return "leads on from that node, which is not followed";
    }
    const std::size_t end = path.find_first_of(".(");
    if (!hasSid(node, path.substr(0, end)))
    {
        return "names no transformation of that node";
    }
    const bool hasName = end != std::string::npos && path[end] == '.';
    if (hasName && scene::AnimationManager::indexOfCoordinateValue(path.substr(end + 1)) < 0)
    {
        return "names a member that transformations have not";
    }
    return nullptr;
}

bool Animations::hasSid(const pugi::xml_node& node, const std::string& sid)
{
    const auto [sids, isNew] = m_nodeSids.try_emplace(node.internal_object());
    if (isNew)
    {
        for (const pugi::xml_node& child : node.children())
        {
            if (isTransformation(child))
            {
                sids->second.insert(getAttribute(child, "sid"));
            }
        }
    }
    return sids->second.count(sid) != 0;
}
} // namespace velmoran::examples::collada
