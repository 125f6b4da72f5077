#include "examples/scenetool/Channels.h"

#include "scene/animation/Animation.h"
#include "scene/graph/ITransformation.h"
#include "scene/graph/Node.h"
#include "scene/manager/SceneManager.h"

#include <boost/make_shared.hpp>

#include <unordered_set>

namespace velmoran::examples
{
std::vector<scene::AnimationPtr> getAllAnimations(std::vector<scene::AnimationPtr> roots)
{
    for (std::size_t i = 0; i < roots.size(); ++i)
    {
        const auto children = roots[i]->getChildAnimations();
        roots.insert(roots.end(), children.begin(), children.end());
    }
    return roots;
}

ChannelTarget findTarget(const scene::SceneManager& scene, const std::string& target)
{
    ChannelTarget found;
    const std::size_t slash = target.find('/');
    found.node = scene.getNodeByID(target.substr(0, slash));
    if (!found.node || slash == std::string::npos)
    {
        return found;
    }
    const std::string path = target.substr(slash + 1);
    const std::string sid = path.substr(0, path.find_first_of(".("));
    for (const scene::ITransformationPtr& each : found.node->getOriginalTransformations())
    {
        if (each->getSid() == sid)
        {
            found.transformation = each;
            return found;
        }
    }
    return found;
}

std::vector<scene::NodePtr> getAnimatedNodes(const scene::SceneManager& scene,
                                             const scene::AnimationPtr& animation)
{
    std::unordered_set<const scene::Node*> animated;
    for (const scene::AnimationPtr& each : getAllAnimations({animation}))
    {
        for (const auto& [sampler, target] : each->getChannelArray())
        {
            const ChannelTarget found = findTarget(scene, target);
            if (sampler && found.transformation)
            {
                animated.insert(found.node.get());
            }
        }
    }
    std::vector<scene::NodePtr> nodes;
    for (const scene::NodePtr& node : scene.getNodeArray())
    {
        if (animated.count(node.get()) != 0)
        {
            nodes.push_back(node);
        }
    }
    return nodes;
}

scene::AnimationPtr joinAnimations(const scene::SceneManager& scene)
{
    const std::vector<scene::AnimationPtr> library = scene.getAnimationsLibrary();
    if (library.empty())
    {
        return {};
    }
    const auto joined = boost::make_shared<scene::Animation>("joined", "");
    for (const scene::AnimationPtr& animation : library)
    {
        joined->addAnimation(animation);
    }
    return joined;
}
} // namespace velmoran::examples
