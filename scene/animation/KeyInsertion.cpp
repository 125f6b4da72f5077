#include "scene/animation/KeyInsertion.h"

#include "scene/animation/Animation.h"
#include "scene/animation/KeyframeEditing.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Node.h"

namespace velmoran::scene
{
KeyInsertion::KeyInsertion(Animation& animation)
    : m_animation(animation), m_childrenBefore(animation.getChildAnimationCount())
{
}

KeyInsertion::~KeyInsertion()
{
    if (!m_isApplied)
    {
        m_animation.removeChildAnimationsFrom(m_childrenBefore);
    }
}

void KeyInsertion::prepare(const NodePtr& node, const ITransformationPtr& transformation)
{
    const std::string target = node->getID() + "/" + transformation->getSid();
    const SamplerPtr sampler = m_animation.getChannel(node->getID(), target, transformation);
    makeRoomForKeys(*sampler, ++m_counts[sampler]);
    m_keys.push_back({node, sampler});
}

void KeyInsertion::apply(float time)
{
    m_isApplied = true;
    for (const Key& key : m_keys)
    {
        insertKey(*key.sampler, time, key.node->getTransformations());
    }
}
} // namespace velmoran::scene
