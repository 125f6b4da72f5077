#include "core/event/EventManager.h"
#include "core/utils/AllOrNothing.h"
#include "core/utils/Matrix.h"
#include "scene/EventTypes.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Node.h"
#include "scene/graph/NodeWalk.h"
#include "scene/graph/TransformParts.h"
#include "scene/graph/TransformationFolding.h"

#include <boost/container/small_vector.hpp>

#include <algorithm>

namespace velmoran::scene
{
namespace
{
using core::event::Event;
using core::event::EventManagerPtr;

/// Calls `visit` with every node from the root down to `node`. A loop: chains are
/// as long as a document makes them.
template <typename Visit>
void forEachFromRoot(const Node& node, Visit visit)
{
    boost::container::small_vector<NodePtr, 16> ancestors;
    for (NodePtr parent = node.getParent(); parent; parent = parent->getParent())
    {
        ancestors.push_back(parent);
    }
    std::for_each(ancestors.rbegin(), ancestors.rend(),
                  [&](const NodePtr& ancestor) { visit(*ancestor); });
    visit(node);
}
} // namespace

// Transform

void Node::setTranslation(const Eigen::Translation<float, 3>& translation)
{
    m_translation = translation.vector();
    triggerTransformationUpdate();
}

void Node::addTranslation(const Eigen::Vector3f& offset)
{
    m_translation += offset;
    triggerTransformationUpdate();
}

void Node::addTranslation(float x, float y, float z)
{
    addTranslation(Eigen::Vector3f(x, y, z));
}

Eigen::Translation<float, 3> Node::getTranslation() const
{
    return Eigen::Translation<float, 3>(m_translation);
}

void Node::setRotation(const Eigen::Transform<float, 3, Eigen::Affine>& rotation)
{
    m_rotation = rotation;
    triggerTransformationUpdate();
}

void Node::setRotation(const Eigen::Matrix4f& rotation)
{
    m_rotation.matrix() = rotation;
    m_rotation.makeAffine();
    triggerTransformationUpdate();
}

void Node::addRotation(const Eigen::Matrix3f& rotation)
{
    rotate(rotation);
}

Eigen::Transform<float, 3, Eigen::Affine> Node::getRotation() const
{
    return m_rotation;
}

void Node::setScale(const Eigen::Vector3f& scale)
{
    m_scale = scale;
    triggerTransformationUpdate();
}

void Node::scale(const Eigen::Vector3f& scale)
{
    setScale(scale);
}

Eigen::Vector3f Node::getScale() const
{
    return m_scale;
}

void Node::move(const Eigen::Vector3f& offset)
{
    m_translation += m_scale.cwiseProduct(m_rotation.linear() * offset + m_rotation.translation());
    triggerTransformationUpdate();
}

void Node::move(float x, float y, float z)
{
    move(Eigen::Vector3f(x, y, z));
}

void Node::rotate(const Eigen::Matrix3f& rotation)
{
    m_rotation.linear() = withUnitColumns(m_rotation.linear() * rotation);
    triggerTransformationUpdate();
}

void Node::setTransformations(const Eigen::Translation<float, 3>& translation,
                              const Eigen::Matrix4f& rotation)
{
    m_translation = translation.vector();
    setRotation(rotation);
}

void Node::setTransformations(const Eigen::Matrix4f& matrix)
{
    m_translation = matrix.block<3, 1>(0, 3);
    m_rotation.setIdentity();
    m_rotation.linear() = withUnitColumns(matrix.block<3, 3>(0, 0));
    triggerTransformationUpdate();
}

void Node::addTransformation(const Eigen::Matrix4f& matrix)
{
    m_translation += matrix.block<3, 1>(0, 3);
    m_rotation.linear() = Eigen::Matrix3f(m_rotation.linear() * matrix.block<3, 3>(0, 0));
    triggerTransformationUpdate();
}

void Node::addTransformation(const ITransformationPtr& transformation)
{
    if (transformation)
    {
        // A listener may change the list that holds the argument, or let go of this node.
        const NodePtr self = weak_from_this().lock();
        const ITransformationPtr kept = transformation;
        core::utils::makeRoom(m_originalTransformations);
        foldTransformation(*this, *kept);
        m_originalTransformations.push_back(kept);
        m_listRevision.moveOn();
    }
}

const Eigen::Matrix4f& Node::getTransformations() const
{
    return m_transformations;
}

Eigen::Matrix4f Node::getCombinedTransformations() const
{
    Eigen::Matrix4f world = Eigen::Matrix4f::Identity();
    bool first = true;
    forEachFromRoot(*this,
                    [&](const Node& node)
                    {
                        world = first ? node.m_transformations
                                      : Eigen::Matrix4f(world * node.m_transformations);
                        first = false;
                    });
    return world;
}

std::vector<Eigen::Matrix4f> Node::getCombinedTransformationsBelow() const
{
    // A walk that comes from the parent has the parent's world already. A node that
    // several parents list, or whose parent has no handle to link to, may hang
    // elsewhere.
    const bool linked = !weak_from_this().expired();
    std::vector<Eigen::Matrix4f> worlds;
    NodeWalk walk(*this);
    while (const Node* const node = walk.next())
    {
        const std::size_t above = walk.positionOfParent();
        const bool fromParent =
            !worlds.empty() && node->m_formerParents.empty() && (linked || above != 0);
        worlds.push_back(fromParent ? Eigen::Matrix4f(worlds[above] * node->m_transformations)
                                    : node->getCombinedTransformations());
    }
    return worlds;
}

Eigen::Transform<float, 3, Eigen::Affine> Node::getCombinedRotations() const
{
    Eigen::Transform<float, 3, Eigen::Affine> combined;
    bool first = true;
    forEachFromRoot(*this,
                    [&](const Node& node)
                    {
                        combined = first ? node.m_rotation : combined * node.m_rotation;
                        first = false;
                    });
    return combined;
}

void Node::setCombinedRotations(const Eigen::Matrix4f& rotation)
{
    const NodePtr parent = m_parent.lock();
    m_rotation.matrix() =
        parent ? Eigen::Matrix4f(parent->getCombinedRotations().inverse().matrix() * rotation)
               : rotation;
    triggerTransformationUpdate();
}

const std::vector<ITransformationPtr>& Node::getOriginalTransformations() const
{
    return m_originalTransformations;
}

void Node::setOriginalTransformations(const std::vector<ITransformationPtr>& transformations)
{
    std::vector<ITransformationPtr> kept;
    kept.reserve(transformations.size());
    std::copy_if(transformations.begin(), transformations.end(), std::back_inserter(kept),
                 [](const ITransformationPtr& t) { return static_cast<bool>(t); });
    m_originalTransformations.swap(kept);
    m_listRevision.moveOn();
}

void Node::exchangeOriginalTransformations(std::vector<ITransformationPtr>& transformations)
{
    m_originalTransformations.swap(transformations);
    m_listRevision.moveOn();
}

const core::utils::Revision& Node::getListRevision() const
{
    return m_listRevision;
}

void Node::triggerTransformationUpdate()
{
    updateLocalMatrix();
    const ISceneContextPtr scene = m_sceneManager.lock();
    const EventManagerPtr manager = scene ? scene->getEventManager() : EventManagerPtr();
    if (!manager)
    {
        return;
    }
    if (manager->hasListeners(events::nodeTransformationUpdate()))
    {
        const core::utils::Matrix matrix(m_transformations.data());
        manager->triggerEvent(
            Event(events::nodeTransformationUpdate(), m_id + "," + matrix.toEventDataString(), ""));
    }
    if (manager->hasListeners(events::sceneUpdate()))
    {
        manager->triggerEvent(Event(events::sceneUpdate(), "", ""));
    }
}

void Node::updateLocalMatrix()
{
    m_transformations =
        composeTransform(m_translation + m_rotation.translation(), m_rotation.linear(), m_scale);
}
} // namespace velmoran::scene
