#include "examples/collada/SkinBinder.h"

#include "scene/deform/Controller.h"
#include "scene/deform/Skin.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace velmoran::examples::collada
{
namespace
{
/// What a document may ask for by instances of controllers: 400 MB of copies, or some
/// seconds of looking up names.
constexpr std::uint64_t MAX_WORK = 100000000;
constexpr std::uint64_t WORK_PER_NAME = 4;

const char* const JOINTS = "joints";
const char* const VERTEX_WEIGHTS = "vertex_weights";

scene::StreamPtr getNames(const scene::Skin& skin, const char* input)
{
    return input == JOINTS ? skin.getJointsInput("JOINT") : skin.getVertexWeightsInput("JOINT");
}

/// Puts a stream of the same ID in the place of one of a skin's. Inputs follow.
void replaceStream(scene::Skin& skin, const scene::StreamPtr& current,
                   const scene::StreamPtr& stream)
{
    std::vector<scene::StreamPtr> streams = skin.getStreams();
    std::replace(streams.begin(), streams.end(), current, stream);
    skin.setStreams(streams);
}

/// Gives the list a stream of its own, since other skins may share the one that it has.
void putNames(scene::Skin& skin, const char* input, const std::vector<std::string>& names)
{
    const scene::StreamPtr current = getNames(skin, input);
    if (current->getNameList() != names)
    {
        const auto stream = boost::make_shared<scene::Stream>(*current);
        stream->setNameList(names);
        stream->setCount(static_cast<int>(names.size()));
        replaceStream(skin, current, stream);
    }
}

bool hasNegativeJoint(const std::vector<int>& v)
{
    for (std::size_t i = 0; i < v.size(); i += 2)
    {
        if (v[i] < 0)
        {
            return true;
        }
    }
    return false;
}

/// Gives the influences of the bind shape the joint behind all others, and that the identity as
/// its inverse bind matrix. Its name is to follow. Answers false, with nothing changed, when
/// there are no such influences or the skin lacks a list for them.
bool addBindShapeJoint(scene::Skin& skin)
{
    const scene::StreamPtr names = skin.getJointsInput("JOINT");
    const scene::StreamPtr weighted = skin.getVertexWeightsInput("JOINT");
    const scene::StreamPtr matrices = skin.getJointsInput("INV_BIND_MATRIX");
    if (!names || !weighted || !matrices || !hasNegativeJoint(skin.getV()))
    {
        return false;
    }
    std::vector<int> v = skin.getV();
    for (std::size_t i = 0; i < v.size(); i += 2)
    {
        v[i] = v[i] < 0 ? static_cast<int>(weighted->getNameList().size()) : v[i];
    }
    skin.setV(std::move(v));
    const auto longer = boost::make_shared<scene::Stream>(*matrices);
    std::vector<float> data = matrices->getData();
    data.resize(16 * names->getNameList().size());
    const Eigen::Matrix4f identity = Eigen::Matrix4f::Identity();
    data.insert(data.end(), identity.data(), identity.data() + identity.size());
    longer->setCount(static_cast<int>(data.size() / 16));
    longer->setData(std::move(data));
    replaceStream(skin, matrices, longer);
    return true;
}

/// Shares the streams; the lists of influences are copied.
scene::ControllerPtr copyController(const scene::Controller& controller, const std::string& id)
{
    const auto copy = boost::make_shared<scene::Controller>(id, controller.getName());
    copy->setSkin(boost::make_shared<scene::Skin>(*controller.getSkin()));
    return copy;
}

std::string describeMissing(const std::vector<std::string>& missing, std::size_t all)
{
    constexpr std::size_t MAX_SHOWN = 3;
    std::string text = std::to_string(missing.size()) + " of its " + std::to_string(all) +
                       " joints name no node: ";
    for (std::size_t i = 0; i < std::min(missing.size(), MAX_SHOWN); ++i)
    {
        text += (i == 0 ? "" : ", ") + quote(missing[i]);
    }
    return text + (missing.size() > MAX_SHOWN ? ", ..." : "");
}
} // namespace

SkinBinder::SkinBinder(Document& document, const Content& content,
                       const std::vector<PlacedNode>& nodes, const scene::SceneManagerPtr& scene)
    : m_document(document),
      m_content(content),
      m_nodes(nodes),
      m_scene(scene),
      m_search(content.nodes, nodes)
{
}

scene::ControllerPtr SkinBinder::bind(std::size_t place, const GeometryDraft& instance)
{
    if (!instance.controller->getSkin())
    {
        return instance.controller;
    }
    m_warns = m_seen.insert(instance.element.internal_object()).second;
    m_search.moveTo(place);
    Entry& entry = getEntry(instance.controller);
    const bool isFirst = entry.bound.empty();
    std::uint64_t names = 0;
    for (const JointList& list : entry.lists)
    {
        names += list.names.size();
    }
    if (!spend(names * WORK_PER_NAME, instance) && !isFirst)
    {
        return instance.controller;
    }
    const auto [bound, isNew] = entry.bound.try_emplace(findNames(entry, instance));
    if (!isNew)
    {
        return bound->second;
    }
    bound->second = instance.controller;
    const scene::SkinPtr skin = instance.controller->getSkin();
    if (!isFirst)
    {
        if (!spend(skin->getV().size() + skin->getVCount().size(), instance))
        {
            return instance.controller;
        }
        bound->second = copyController(*instance.controller, m_scene->generateID());
        m_scene->addController(bound->second);
    }
    auto next = bound->first.begin();
    for (const JointList& list : entry.lists)
    {
        const auto end =
            next + static_cast<std::ptrdiff_t>(list.names.size()) + (entry.usesBindShape ? 1 : 0);
        putNames(*bound->second->getSkin(), list.input, Names(next, end));
        next = end;
    }
    return bound->second;
}

std::vector<std::string> SkinBinder::getSkeletonIDs(std::size_t place,
                                                    const GeometryDraft& instance)
{
    m_search.moveTo(place);
    std::vector<std::string> ids;
    for (const SkeletonDraft& skeleton : instance.skeletons)
    {
        const std::optional<std::size_t> found = m_search.findDraft(skeleton.draft);
        ids.push_back(found ? m_nodes[*found].node->getID() : skeleton.id);
    }
    return ids;
}

/// Reads the lists of the skin before they are changed.
SkinBinder::Entry& SkinBinder::getEntry(const scene::ControllerPtr& controller)
{
    const auto [found, isNew] = m_entries.try_emplace(controller.get());
    Entry& entry = found->second;
    if (!isNew)
    {
        return entry;
    }
    const scene::SkinPtr skin = controller->getSkin();
    for (const char* input : {JOINTS, VERTEX_WEIGHTS})
    {
        const scene::StreamPtr names = getNames(*skin, input);
        if (names && (input == JOINTS || names != getNames(*skin, JOINTS)))
        {
            entry.lists.push_back(
                {input, m_content.sources.getNameKind(names), names->getNameList()});
        }
    }
    entry.usesBindShape = addBindShapeJoint(*skin);
    return entry;
}

/// Where the joints that a `<Name_array>` names are looked for.
SkinBinder::Places SkinBinder::findSkeletons(const GeometryDraft& instance)
{
    Places tops;
    for (const SkeletonDraft& skeleton : instance.skeletons)
    {
        if (const std::optional<std::size_t> place = m_search.findDraft(skeleton.draft))
        {
            tops.push_back(*place);
        }
    }
    if (tops.empty())
    {
        if (!instance.skeletons.empty())
        {
            warn(instance, "its skeleton is not in the scene; its joints are looked for in all of "
                           "that");
        }
        tops.push_back(0);
    }
    return tops;
}

/// The IDs of the joints' nodes, list after list, each with the root behind it if influences go to
/// the bind shape. What names no node stays as it is.
SkinBinder::Names SkinBinder::findNames(const Entry& entry, const GeometryDraft& instance)
{
    const Places tops = findSkeletons(instance);
    Names ids;
    Names missing;
    std::size_t all = 0;
    for (const JointList& list : entry.lists)
    {
        all += list.names.size();
        for (const std::string& name : list.names)
        {
            const std::optional<std::size_t> place = findJoint(list.kind, name, tops);
            ids.push_back(place ? m_nodes[*place].node->getID() : name);
            if (!place)
            {
                missing.push_back(name);
            }
        }
        if (entry.usesBindShape)
        {
            ids.push_back(m_nodes.front().node->getID());
        }
    }
    if (!missing.empty())
    {
        warn(instance, describeMissing(missing, all));
    }
    return ids;
}

std::optional<std::size_t> SkinBinder::findJoint(NameKind kind, const std::string& name,
                                                 const Places& tops) const
{
    if (kind == NameKind::PATHS)
    {
        return followPath(name, tops);
    }
    const std::optional<std::size_t> bySid =
        kind == NameKind::WORDS ? findBelow(name, tops, true) : std::nullopt;
    return bySid ? bySid : m_search.findID(name);
}

std::optional<std::size_t> SkinBinder::followPath(const std::string& path, const Places& tops) const
{
    std::size_t end = path.find('/');
    const std::string start = path.substr(0, end);
    Places reached = tops;
    bool withTops = true; // a skeleton's own SID may come first
    if (start != ".")
    {
        const std::optional<std::size_t> place = m_search.findID(start);
        reached = place ? Places{*place} : Places{};
        withTops = false;
    }
    while (end != std::string::npos && !reached.empty())
    {
        const std::size_t begin = end + 1;
        end = path.find('/', begin);
        const std::string sid = path.substr(begin, end == std::string::npos ? end : end - begin);
        const std::optional<std::size_t> place = findBelow(sid, reached, withTops);
        reached = place ? Places{*place} : Places{};
        withTops = false;
    }
    return reached.empty() ? std::nullopt : std::make_optional(reached.front());
}

std::optional<std::size_t> SkinBinder::findBelow(const std::string& sid, const Places& tops,
                                                 bool withTops) const
{
    for (const std::size_t top : tops)
    {
        if (const std::optional<std::size_t> place = m_search.findSid(sid, top, withTops))
        {
            return place;
        }
    }
    return std::nullopt;
}

/// False, with a warning, when instances have asked for too much.
bool SkinBinder::spend(std::uint64_t work, const GeometryDraft& instance)
{
    if (m_work + work > MAX_WORK)
    {
        warn(instance, "it moves with the joints of the first instance: the joints of all "
                       "instances come to too much");
        return false;
    }
    m_work += work;
    return true;
}

/// Once for each instance that the document writes, however often it is copied.
void SkinBinder::warn(const GeometryDraft& instance, const std::string& reason)
{
    if (m_warns)
    {
        m_document.warn(instance.element, reason);
    }
}
} // namespace velmoran::examples::collada
