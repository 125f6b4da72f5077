#pragma once

#include "scene/animation/Animation.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace velmoran::scene
{
/// An animation and all animations below it, children before their parent and in order.
/// One that is listed more than once stands only where it is met last, which may be behind
/// one of its parents. Needs no
/// recursion and ends where animations stand below themselves.
template <typename AnimationType>
std::vector<AnimationType*> childrenFirst(AnimationType& root)
{
    // The reverse of parents before children, children from the last one on.
    std::vector<AnimationType*> result;
    std::unordered_set<const Animation*> met;
    std::vector<AnimationType*> open = {&root};
    while (!open.empty())
    {
        AnimationType* const animation = open.back();
        open.pop_back();
        if (met.insert(animation).second)
        {
            result.push_back(animation);
            for (const AnimationPtr& child : animation->getChildAnimations())
            {
                open.push_back(child.get());
            }
        }
    }
    std::reverse(result.begin(), result.end());
    return result;
}
} // namespace velmoran::scene
