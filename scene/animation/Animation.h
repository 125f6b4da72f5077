#pragma once

#include "scene/Export.h"
#include "scene/Forward.h"

#include <string>
#include <utility>
#include <vector>

namespace velmoran::scene
{
/// Keyframe data: a tree of animations with their streams, samplers and channels.
///
/// A channel binds a sampler to a target: a node's ID, "/", the SID of one of its
/// transformations, and optionally "." and a member such as X or ANGLE. Without a
/// member the whole transformation is animated.
///
/// Ownership: shares everything it lists, and holds its target node. Animations of
///     any depth are released without recursion.
/// Threads: not locked; callers serialise access.
class VELMORAN_SCENE_EXPORT Animation
{
public:
    /// A sampler and its target.
    using Channel = std::pair<SamplerPtr, std::string>;

    Animation(std::string id, std::string name);

    virtual ~Animation();

    Animation(const Animation&) = delete;
    Animation& operator=(const Animation&) = delete;

    const std::string& getID() const;
    const std::string& getName() const;
    void setName(std::string name);

    // Data: streams and the samplers that give them their roles

    /// Replaces all streams; empty handles are left out.
    void setStreams(const std::vector<StreamPtr>& streams);
    std::vector<StreamPtr> getStreams() const;

    /// The first stream with this ID; empty when there is none. Linear.
    StreamPtr getStreamById(const std::string& id) const;

    /// Replaces all samplers; empty handles are left out.
    void setSamplers(const std::vector<SamplerPtr>& samplers);
    const std::vector<SamplerPtr>& getSamplers() const;

    /// The first sampler with this ID; empty when there is none. Linear.
    SamplerPtr getSamplerById(const std::string& id) const;

    // Channels

    /// Appends a channel, even an equal one or one whose sampler is empty.
    void addChannel(const SamplerPtr& sampler, std::string target);

    /// The channels in the order of adding.
    std::vector<Channel> getChannelArray() const;

    // Children

    /// Appends a child. An empty handle and this animation itself are ignored; no
    /// other animation may come to stand below itself.
    void addAnimation(const AnimationPtr& child);

    /// The children in the order of adding.
    std::vector<AnimationPtr> getChildAnimations() const;

    // Settings

    /// A number that is kept for whoever sets it; 0 at first.
    int getTimeRange() const;
    void setTimeRange(int timeRange);

    /// The node whose transformations this animation edits; empty unless set.
    NodePtr getTargetNode() const;
    void setTargetNode(const NodePtr& node);

private:
    std::string m_id;
    std::string m_name;
    std::vector<StreamPtr> m_streams;   ///< none empty
    std::vector<SamplerPtr> m_samplers; ///< none empty
    std::vector<Channel> m_channels;
    std::vector<AnimationPtr> m_childAnimations; ///< none empty
    int m_timeRange = 0;
    NodePtr m_targetNode;
};
} // namespace velmoran::scene
