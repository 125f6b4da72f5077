#include "scene/animation/ChannelTarget.h"

namespace velmoran::scene
{
ChannelTarget::ChannelTarget(const std::string& target) : nodeId(target.substr(0, target.find('/')))
{
    if (nodeId.size() == target.size())
    {
        return;
    }
    path = target.substr(nodeId.size() + 1);
    const std::size_t dot = path.find('.');
    if (dot != std::string::npos)
    {
        member = path.substr(dot + 1);
    }
    const std::size_t end = path.find_first_of(".(");
    sid = path.substr(0, end);
    if (end != std::string::npos && path[end] == '(')
    {
        indices = path.substr(end);
    }
}
} // namespace velmoran::scene
