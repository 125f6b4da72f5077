#pragma once

#include "core/logger/Logger.h"
#include "scene/Forward.h"
#include "scene/animation/ChannelTarget.h"
#include "scene/animation/RevisionStamp.h"

#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velmoran::scene
{
class SamplerKeys;
using SamplerKeysPtr = boost::shared_ptr<SamplerKeys>;

/// Where one usable channel goes.
struct ChannelBinding
{
    SamplerKeysPtr keys;
    std::string sid;
    std::size_t entry;    ///< index in the node's list of transformations
    ChannelMember member; ///< as the target names it
    std::size_t first;    ///< the first of the entry's numbers that is driven
    std::size_t count;    ///< how many are driven
    bool isWholeMatrix;
};

/// The usable channels of each node, in the order of evaluation.
using ChannelBindings = std::map<NodePtr, std::vector<ChannelBinding>>;

/// Whether all channels drive one whole matrix, so that the node takes its pose from it.
bool isDrivenByMatrix(const std::vector<ChannelBinding>& channels);

/// Tells of channels without a valid target, once for each.
class ChannelWarnings
{
public:
    explicit ChannelWarnings(core::logger::Logger& logger) : m_logger(logger) {}

    /// `kind` is that of the target transformation, `LOOKAT` when there is none.
    void warn(const SamplerPtr& sampler, const std::string& target, int kind);

    /// Forgets what was told.
    void clear() { m_told.clear(); }

private:
    core::logger::Logger& m_logger;
    std::set<std::pair<boost::weak_ptr<Sampler>, std::string>> m_told;
};

/// Finds the nodes and transformations that the channels of an animation drive.
class ChannelBinder
{
public:
    using Keys = std::unordered_map<SamplerPtr, SamplerKeysPtr>;

    /// Takes copied keys over from `known` where they are current. `warnings` may be null.
    ChannelBinder(const SceneManager& scene, Keys known, ChannelWarnings* warnings);

    /// Binds the channels of `animation` and all animations below it.
    void bind(const Animation& animation);

    const ChannelBindings& getBindings() const { return m_bindings; }

    /// The copied keys of all channels that were looked at.
    Keys takeKeys() { return std::move(m_used); }

    /// The state of the animations and transformation lists that were looked at.
    RevisionStamp takeStamp() { return std::move(m_stamp); }

private:
    void bindChannel(const SamplerPtr& sampler, const std::string& target);
    SamplerKeysPtr keysOf(const SamplerPtr& sampler);
    std::size_t findEntry(const NodePtr& node, const std::string& sid);
    void warn(const SamplerPtr& sampler, const std::string& target, int kind);

    const SceneManager& m_scene;
    Keys m_known;
    Keys m_used;
    ChannelWarnings* m_warnings;
    ChannelBindings m_bindings;
    RevisionStamp m_stamp;
    std::set<const Node*> m_watched; ///< nodes whose lists are in m_stamp
};
} // namespace velmoran::scene
