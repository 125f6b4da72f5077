#include "scene/graph/Node.h"

#include "core/utils/AllOrNothing.h"
#include "scene/EventTypes.h"
#include "scene/graph/HandleList.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/NodeWalk.h"
#include "scene/graph/RaiseIfHeard.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <new>
#include <unordered_set>

namespace velmoran::scene
{
namespace
{
/// Children whose parent has gone, waiting for their turn to be released: a tree is
/// as deep as a document makes it, and the stack is not.
using PendingNodes = std::vector<std::vector<NodePtr>>;
thread_local PendingNodes* t_pendingRelease = nullptr;

const TreeRevisionPtr& revisionOfNodesWithoutScene()
{
    // Never deleted: nodes may be made and edited after static objects have gone.
    static const TreeRevisionPtr& revision =
        *new TreeRevisionPtr(boost::make_shared<TreeRevision>(0));
    return revision;
}

void releaseWithoutRecursion(std::vector<NodePtr>& children)
{
    if (t_pendingRelease != nullptr)
    {
        try
        {
            t_pendingRelease->push_back(std::move(children));
        }
        catch (const std::bad_alloc&) // they go with their list then, on the stack
        {
        }
        return;
    }
    // The first list waits in the variable: most trees that are dropped when memory has run
    // out are small.
    PendingNodes pending;
    t_pendingRelease = &pending;
    std::vector<NodePtr> released = std::move(children);
    released.clear();
    while (!pending.empty())
    {
        released = std::move(pending.back());
        pending.pop_back();
        released.clear();
    }
    t_pendingRelease = nullptr;
}
} // namespace

Node::Node(const boost::shared_ptr<ISceneContext>& scene) : Node(WithID(), scene, generateID()) {}

Node::Node(WithID, const boost::shared_ptr<ISceneContext>& scene, const std::string& id)
    : m_id(id),
      m_sceneManager(scene),
      m_treeRevision(scene ? scene->getTreeRevision() : revisionOfNodesWithoutScene()),
      m_translation(Eigen::Vector3f::Zero()),
      m_scale(Eigen::Vector3f::Ones()),
      m_rotation(Eigen::Transform<float, 3, Eigen::Affine>::Identity()),
      m_transformations(Eigen::Matrix4f::Identity())
{
}

Node::~Node()
{
    if (!m_children.empty())
    {
        releaseWithoutRecursion(m_children);
    }
}

NodePtr Node::copyFor(const boost::shared_ptr<ISceneContext>& scene, const std::string& id) const
{
    takeNumber();
    const NodePtr copy(new Node(WithID(), scene, id));
    copy->m_sid = m_sid;
    copy->m_name = m_name;
    copy->m_type = m_type;
    copy->m_translation = m_translation;
    copy->m_rotation = m_rotation;
    copy->m_scale = m_scale;
    copy->m_transformations = m_transformations;
    copy->m_originalTransformations.reserve(m_originalTransformations.size());
    for (const ITransformationPtr& transformation : m_originalTransformations)
    {
        copy->m_originalTransformations.push_back(transformation->clone());
    }
    if (scene)
    {
        scene->addID(id);
        scene->addID(m_sid);
    }
    return copy;
}

// Identity

std::string Node::generateID()
{
    return "Node" + std::to_string(takeNumber());
}

const std::string& Node::getID() const
{
    return m_id;
}

void Node::setID(const std::string& id)
{
    std::string kept = id;
    const ISceneContextPtr scene = m_sceneManager.lock();
    if (scene)
    {
        scene->addID(id);
    }
    m_id.swap(kept);
    noteTreeChange();
}

const std::string& Node::getSID() const
{
    return m_sid;
}

void Node::setSID(const std::string& sid)
{
    std::string kept = sid;
    const ISceneContextPtr scene = m_sceneManager.lock();
    if (scene)
    {
        scene->addID(sid);
    }
    m_sid.swap(kept);
}

const std::string& Node::getName() const
{
    return m_name;
}

void Node::setName(const std::string& name)
{
    m_name = name;
}

const std::string& Node::getType() const
{
    return m_type;
}

void Node::setType(const std::string& type)
{
    m_type = type;
}

// Hierarchy

void Node::addNode(const boost::shared_ptr<Node>& child)
{
    if (!child || m_sceneManager.expired() || isSelfOrAncestor(*child))
    {
        return;
    }
    const NodePtr self = weak_from_this().lock();
    const NodePtr kept = child; // the argument may live in a list that a handler changes
    const bool isSecondParent = self && !kept->m_parent.expired();
    if (isSecondParent)
    {
        core::utils::makeRoom(kept->m_formerParents);
    }
    m_children.push_back(kept);
    if (self)
    {
        if (isSecondParent)
        {
            kept->m_formerParents.push_back(kept->m_parent);
        }
        kept->m_parent = self;
    }
    noteTreeChange();
    if (kept->m_treeRevision == m_treeRevision && !isAddingHeard())
    {
        kept->updateLocalMatrix();
        return;
    }
    kept->triggerTransformationUpdate();
    raiseTopologyUpdate("NodeAdded", *kept);
}

void Node::removeChild(const boost::shared_ptr<Node>& child)
{
    if (!child)
    {
        return;
    }
    const NodePtr kept = child;
    m_children.erase(std::remove(m_children.begin(), m_children.end(), kept), m_children.end());
    const auto isThisOrGone = [this](const boost::weak_ptr<Node>& parent)
    {
        const NodePtr node = parent.lock();
        return !node || node.get() == this;
    };
    if (isThisOrGone(kept->m_parent))
    {
        kept->m_parent.reset();
    }
    std::vector<boost::weak_ptr<Node>>& former = kept->m_formerParents;
    former.erase(std::remove_if(former.begin(), former.end(), isThisOrGone), former.end());
    noteTreeChange();
    raiseTopologyUpdate("NodeRemoved", *kept);
}

boost::shared_ptr<Node> Node::getChildNode(unsigned int index) const
{
    return entryAt(m_children, index);
}

unsigned int Node::getChildCount() const
{
    return static_cast<unsigned int>(m_children.size());
}

const std::vector<boost::shared_ptr<Node>>& Node::getChildren() const
{
    return m_children;
}

boost::shared_ptr<Node> Node::getParent() const
{
    return m_parent.lock();
}

// Search

std::vector<boost::shared_ptr<Node>> Node::getNodesBelow()
{
    std::vector<NodePtr> nodes;
    NodeWalk walk(*this);
    while (Node* const node = walk.next())
    {
        nodes.push_back(node->shared_from_this());
    }
    return nodes;
}

boost::shared_ptr<Node> Node::findByID(const std::string& id)
{
    NodeWalk walk(*this);
    while (Node* const node = walk.next())
    {
        if (node->m_id == id)
        {
            return node->shared_from_this();
        }
    }
    return NodePtr();
}

boost::shared_ptr<Node> Node::findByName(const std::string& name)
{
    NodeWalk walk(*this);
    while (Node* const node = walk.next())
    {
        if (node->m_name == name)
        {
            return node->shared_from_this();
        }
    }
    return NodePtr();
}

bool Node::isListedTwice() const
{
    return !m_formerParents.empty();
}

const TreeRevisionPtr& Node::getTreeRevision() const
{
    return m_treeRevision;
}

// Private

unsigned int Node::takeNumber()
{
    static std::atomic<unsigned int> seqID{0};
    return seqID.fetch_add(1);
}

void Node::noteTreeChange()
{
    m_treeRevision->fetch_add(1);
}

bool Node::isSelfOrAncestor(const Node& candidate) const
{
    if (&candidate == this)
    {
        return true;
    }
    if (candidate.m_children.empty())
    {
        return false;
    }
    // At the same pace upwards, over every parent that lists a node, and downwards from
    // the candidate; whichever way ends first knows.
    NodeWalk<const Node> below(candidate);
    std::vector<NodePtr> pending;
    std::unordered_set<const Node*> metShared;
    const auto pushParents = [&pending](const Node& node)
    {
        append(pending, node.m_parent.lock());
        for (const boost::weak_ptr<Node>& former : node.m_formerParents)
        {
            append(pending, former.lock());
        }
    };
    pushParents(*this);
    while (!pending.empty())
    {
        const NodePtr above = pending.back();
        pending.pop_back();
        if (above.get() == &candidate)
        {
            return true;
        }
        if (!above->isListedTwice() || metShared.insert(above.get()).second)
        {
            pushParents(*above);
        }
        const Node* const underneath = below.next();
        if (underneath == nullptr || underneath == this)
        {
            return underneath == this;
        }
    }
    return false;
}

/// Whether somebody listens to an event that adding a node of the same scene raises: one
/// look at the scene instead of one for each event, for large trees are built unheard.
bool Node::isAddingHeard() const
{
    const ISceneContextPtr scene = m_sceneManager.lock();
    const core::event::EventManagerPtr manager =
        scene ? scene->getEventManager() : core::event::EventManagerPtr();
    return manager && (manager->hasListeners(events::nodeTransformationUpdate()) ||
                       manager->hasListeners(events::sceneUpdate()) ||
                       manager->hasListeners(events::sceneTopologyUpdate()));
}

void Node::raiseTopologyUpdate(const char* kind, const Node& child) const
{
    const core::event::EventManagerPtr listeners =
        listenersOf(m_sceneManager, events::sceneTopologyUpdate());
    if (listeners)
    {
        listeners->triggerEvent(events::sceneTopologyUpdate().getName(),
                                std::string(kind) + "," + m_id + "," + child.m_id);
    }
}
} // namespace velmoran::scene
