#pragma once

#include "scene/Forward.h"

#include <cstddef>
#include <map>
#include <vector>

namespace velmoran::scene
{
/// New keys of an animation, of which either all are put in or none.
///
/// What is prepared makes the channels that are missing and room in their streams; unless
///     the keys are put in, the channels are removed again.
class KeyInsertion
{
public:
    explicit KeyInsertion(Animation& animation);
    ~KeyInsertion();

    KeyInsertion(const KeyInsertion&) = delete;
    KeyInsertion& operator=(const KeyInsertion&) = delete;

    /// Prepares a key with the transform of `node` in the channel of `transformation`.
    void prepare(const NodePtr& node, const ITransformationPtr& transformation);

    /// Puts the keys in at `time` (seconds). Needs no memory.
    void apply(float time);

private:
    struct Key
    {
        NodePtr node;
        SamplerPtr sampler;
    };

    Animation& m_animation;
    const std::size_t m_childrenBefore;
    std::vector<Key> m_keys;
    std::map<SamplerPtr, std::size_t> m_counts; ///< of keys
    bool m_isApplied = false;
};
} // namespace velmoran::scene
