#pragma once

#include "core/utils/Revision.h"
#include "scene/Export.h"
#include "scene/Forward.h"

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <map>
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

    /// An empty animation, whose target node is not set.
    Animation(std::string id, std::string name);

    virtual ~Animation();

    Animation(const Animation&) = delete;
    Animation& operator=(const Animation&) = delete;

    const std::string& getID() const;
    const std::string& getName() const;
    void setName(std::string name);

    /// @name Streams, and samplers that give them their roles
    /// @{

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

    /// @}

    /// @name Channels
    /// @{

    /// Appends a channel, even an equal one or one whose sampler is empty.
    void addChannel(const SamplerPtr& sampler, std::string target);

    /// The channels in the order of adding.
    std::vector<Channel> getChannelArray() const;

    /// @}

    /// @name Children
    /// @{

    /// Appends a child. An empty handle and this animation itself are ignored; no
    /// other animation may come to stand below itself.
    void addAnimation(const AnimationPtr& child);

    /// The children in the order of adding.
    std::vector<AnimationPtr> getChildAnimations() const;
    std::size_t getChildAnimationCount() const;

    /// Removes the children behind the first `count`. Needs no memory.
    void removeChildAnimationsFrom(std::size_t count);

    /// @}

    /// @name The whole tree
    /// An animation that is listed more than once counts once.
    /// @{

    /// The time of the last key of all channels here and below, cut to whole
    /// milliseconds; zero when there is none. A channel counts when its "INPUT" stream
    /// has exactly one parameter and at least one value; the last value is taken, in
    /// whatever order they stand. One that is not a number does not count. Linear in the
    /// number of channels.
    boost::posix_time::time_duration getDuration() const;

    /// The same of the channels here alone. Needs no memory.
    boost::posix_time::time_duration getOwnDuration() const;

    /// Whether the poses of the target nodes can be keyed as they are. A node is valid
    /// when its list holds a matrix, or neither scale nor translate and at most one
    /// rotate; an animation without target node is as valid as its last child, and
    /// without children valid. Of several children only the last one counts.
    bool isValid() const;

    /// @}

    /// @name Keyframe editing
    /// Keys are the local matrices of nodes, one sampler for each transformation of the matrix
    /// kind, in child animations of this one.
    /// @{

    /// The sampler that keys `target` on the node `nodeId`: that of the first child that
    /// was made for both, else of a new child.
    ///
    /// `target` is a whole channel target. A new child has the key times ("INPUT", one
    /// parameter "TIME"), values ("OUTPUT") and interpolation names ("INTERPOLATION"),
    /// all empty, and one channel with this target. A value is 16 floats if
    /// `transformation` is a matrix, else one float, whose parameter is named after the
    /// target's member. Logarithmic in the number of children.
    SamplerPtr getChannel(const std::string& nodeId, const std::string& target,
                          const ITransformationPtr& transformation);

    /// Keys the local matrix of `node` at `time` (seconds) on every transformation of
    /// the matrix kind in its list. To a node whose list is empty an identity matrix with
    /// the SID "transform" is added first (`Node::addTransformation`: it raises events,
    /// and its scale becomes 1). Other kinds are not keyed. Does nothing for an empty
    /// handle and a time that is not finite.
    void insertKeyFrame(const NodePtr& node, float time);

    /// Keys the local matrix of `node` at `time` (seconds) under the ID of the node and
    /// the SID of `transformation`.
    ///
    /// The key goes behind the last one that is earlier; a key at the very same time
    /// stays behind it, so remove that first. Its interpolation is "LINEAR". In each
    /// tangent stream of stride s, zeros for one key are put at float s, whatever the
    /// key's place. Does nothing for an empty handle, a time that is not finite, key times
    /// without the one parameter "TIME", and values that are not whole matrices up to
    /// the new key. Linear in the number of keys.
    void insertTransformations(const NodePtr& node, const ITransformationPtr& transformation,
                               float time);

    /// Removes a key closer than 5 ms to `time` (seconds) from the channels here and
    /// below: the last such key of a channel. In each animation the channels are gone
    /// through in order up to the first one that has no such key; those behind it stay
    /// as they are. Linear in the number of keys.
    void removeKeyFrame(float time);

    /// The same here alone. Needs no memory.
    void removeOwnKeyFrame(float time);

    /// @}

    /// @name Settings
    /// @{

    /// A number that is kept for whoever sets it; 0 at first.
    int getTimeRange() const;
    void setTimeRange(int timeRange);

    /// The node whose transformations this animation edits; empty unless set.
    NodePtr getTargetNode() const;

    /// Holds `node`, which may be empty.
    void setTargetNode(const NodePtr& node);

    /// @}

    /// Moves on with every channel and child that is added; samplers, streams and
    /// children have their own.
    const core::utils::Revision& getRevision() const;

private:
    void rememberTarget(const AnimationPtr& child);

    std::string m_id;
    std::string m_name;
    std::vector<StreamPtr> m_streams;   ///< none empty
    std::vector<SamplerPtr> m_samplers; ///< none empty
    std::vector<Channel> m_channels;
    std::vector<AnimationPtr> m_childAnimations; ///< none empty
    core::utils::Revision m_revision;
    int m_timeRange = 0;
    NodePtr m_targetNode;

    // What `getChannel` made this animation for; empty for all others.
    bool m_isForTarget = false;
    std::string m_targetNodeId;
    std::string m_targetSid; ///< the target behind its first "/"

    /// The first child that was made for a node ID and target SID.
    std::map<std::pair<std::string, std::string>, Animation*> m_childrenByTarget;
};
} // namespace velmoran::scene
