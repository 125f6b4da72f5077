#pragma once

#include "core/logger/Logger.h"
#include "scene/Export.h"
#include "scene/Forward.h"
#include "scene/manager/ISceneController.h"

#include <Eigen/Core>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/weak_ptr.hpp>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmoran::scene
{
class ChannelWarnings;
class PlaybackPlan;
struct ChannelBinding;

/// Plays one animation over a scene, and hosts keyframe editing and the animation
/// camera.
///
/// The playhead is a time in the current animation, with the resolution of
/// microseconds; poses are evaluated at whole milliseconds, cut off.
///
/// | state              | `update(dt)`                                                  |
/// |--------------------|---------------------------------------------------------------|
/// | no scene, or no    | nothing, answers false                                        |
/// | current animation  |                                                               |
/// | playing            | moves on by dt; at the end of the loop or behind it, the loop |
/// |                    | duration is taken off once                                    |
/// | paused             | jumps to the time target                                      |
/// | paused, smooth     | glides to the time target by dt                               |
/// | paused, at target  | answers false, except once after `setTime`                    |
///
/// A playhead that stands at the loop's end or behind it afterwards is set to the end, and
/// nothing is evaluated there.
///
/// Evaluation. A channel holds its first key before it, and no value after its last key.
///     Targets name a node's ID, "/", the SID of one of its transformations and perhaps a
///     member, which begins at the first "." or "(" behind it: "x", "y", "z", "w" or
///     "angle" in any case, an index "(2)", or a matrix element "(3)(0)". Members count as
///     in the value: x, y, z of a vector; axis and angle in degrees of a rotation. Of a
///     matrix element the column comes first, as in `TransformationMatrix::getValue`;
///     documents disagree, so where the channels of a matrix name elements (r)(3) but
///     none (3)(r), the row comes first. A whole value is 3 floats of a scale or
///     translate, 4 of a rotate, 16 of a matrix, row by row.
///     - A node whose channels all drive one whole matrix takes that matrix: translation
///       and column lengths are interpolated linearly, rotations along the great arc,
///       and everything from 0.99 of a segment on is its end. "STEP" takes the earlier
///       key's matrix as it is. The local matrix becomes B * T * R with the scale S,
///       where B is the product of the transformations in front of that matrix, as they
///       were when the animation was set up or the list was changed last. Transformations
///       behind it do not count. (A list with two matrices that are both driven is
///       multiplied, as below; keying it keys the node's whole matrix on each.)
///     - Any other node: the interpolated values take the places of those in its list
///       ("STEP" the earlier key, else linear; a whole matrix as above), the list is
///       multiplied in order, and the product taken apart so that T * R * S is the product:
///       R has the directions of its columns, S their lengths. A channel past its last
///       key holds that as long as another one of the node has a value, but gives way to
///       one that has a value for the same number. Look-at and skew are not applied; rotation axes
///       are normalised.
///     In both, the entries of the list themselves are not written. Of several channels
///     for one value the last one counts, children before parents. A channel whose streams
///     or target can't be used is skipped; unusable targets are told once for each
///     channel on standard output. A pose with a NaN or an infinity is left out.
///
/// Ownership: the scene holds its animation manager, which remembers the scene weakly:
///     dropping the last handle of a scene destroys both. Holds the current animation
///     and the nodes of the targeted transformations.
/// Threads: takes no lock. `update` runs on the scene's worker under the scene lock; all
///     other operations may be called from any thread that holds the scene lock, or from
///     handlers that run under it. Without it they may be called before an animation is
///     set. What was changed between two updates, in the tree, its
///     identifiers and transformation lists, in animations, samplers and streams, holds
///     from the next update on, provided that it was changed under the scene lock; for
///     `Stream::mutableData` see there.
/// Events: an update raises "NodeTransformationUpdate" and "SceneUpdate" twice for
///     each animated node, once for the matrix and once for the scale. Handlers run under
///     the scene lock; they may call this manager.
/// Cost: an update is linear in the number of channels, whatever the number of keys. After a
///     change to what it plays it prepares anew what was changed; after one to what another
///     player of the process plays it looks once whether that was its own. Without listeners
///     it builds no text and allocates nothing for the nodes of its scene.
class VELMORAN_SCENE_EXPORT AnimationManager : public ISceneController
{
public:
    /// A time or a span of time.
    using Duration = boost::posix_time::time_duration;

    /// The SIDs of the transformations that playback drives, by node.
    using TargetedTransformations = std::map<NodePtr, std::vector<std::string>>;

    /// Evaluated matrices by node: translation T, rotation R and scale S, in this order.
    using EvaluatedTransformations = std::map<NodePtr, std::vector<Eigen::Matrix4f>>;

    /// Nothing to play, the playhead at zero, playing, not smooth.
    AnimationManager();

    ~AnimationManager() override;

    AnimationManager(const AnimationManager&) = delete;
    AnimationManager& operator=(const AnimationManager&) = delete;

    /// @name Scene controller
    /// @{

    /// False: playing writes to the scene's nodes.
    bool isReadOnly() override;

    /// Remembers the scene in place of the one before; an empty handle forgets it. The
    /// worker may call `update` meanwhile as long as no animation is set; otherwise
    /// the caller, also of `SceneManager::addSceneController`, holds the scene lock.
    void attach(boost::shared_ptr<SceneManager> scene) override;

    /// Moves the playhead by `elapsed` and writes the poses; whether nodes were written.
    /// A special value, such as not-a-date-time, counts as no time.
    bool update(boost::posix_time::time_duration elapsed) override;

    /// @}

    /// @name Current animation
    /// @{

    /// Makes `animation` the one that is played, sets up its targets and takes its
    /// duration. The playhead stays where it is. An empty handle plays nothing.
    void setAnimation(const AnimationPtr& animation);

    /// Replaces the targeted transformations and base matrices by those of `animation`,
    /// found in the scene as it is now. An empty handle clears them.
    void setUpAnimation(const AnimationPtr& animation);

    AnimationPtr getAnimation() const;

    /// @}

    /// @name Playhead
    /// @{

    /// Stops where the playhead is: the time target becomes the current time.
    void pause();

    /// Lets the playhead run on from where it is.
    void resume();

    /// Whether the playhead stands or glides to its target.
    bool paused() const;

    /// Whether a paused playhead glides to its target (true) or jumps there.
    void setSmooth(bool smooth);

    /// Where a paused playhead goes. A special value is ignored.
    void setTimeTarget(Duration time);

    /// Sets playhead and target, and makes a paused manager evaluate once more. The time
    /// is taken as it is, not clamped to the loop. A special value is ignored.
    void setTime(Duration time);

    Duration getCurrentTime() const;

    /// The duration of the current animation when it was set or last keyed here.
    Duration getLoopDuration() const;

    /// @}

    /// @name Evaluation
    /// @{

    /// Evaluates `animation` at the current time over the nodes of the scene. Sets the
    /// entry of each node for which a channel has a value; leaves other entries alone.
    /// The node's base matrix is not part of T. Nothing without scene or animation.
    /// An animation that is not the current one is prepared anew at each call, which
    /// costs time in proportion to its keys.
    void playAnimation(const AnimationPtr& animation, EvaluatedTransformations& out);

    /// Appends the key times (seconds) of `animation`, children first, in the order met,
    /// each that is not in `out` yet. They are not sorted.
    void calculateFrameTimes(const AnimationPtr& animation, std::vector<float>& out) const;

    /// The value at `t` on the straight line from (t0, p0) to (t1, p1); p0 when both times
    /// are the same. The control points change nothing.
    static float interpolateBezier(float p0, float p1, float t0, float t1, float t,
                                   Eigen::Vector2f c0, Eigen::Vector2f c1);

    /// The code of an interpolation name in any case: "step" 0, "linear" 1, "bezier" 2,
    /// "hermite" 3, "cardinal" 4, "bspline" 5; any other name is 1.
    static int getInterpolationType(std::string name);

    /// The component that a member names in any case: "x" 0, "y" 1, "z" 2, "w" and "angle"
    /// 3; -1 for any other name.
    static int indexOfCoordinateValue(std::string name);

    /// @}

    /// @name Targets
    /// @{

    const TargetedTransformations& getTargetedTransformationsMap() const;

    /// The SIDs of one node; none when it has no entry.
    std::vector<std::string> getTargetedTransformationsForNode(const NodePtr& node) const;
    bool isNodeTargeted(const NodePtr& node) const;

    /// @}

    /// @name Keyframe editing
    /// @{

    /// Records the pose of the scene's nodes at `time` (seconds) in the current animation
    /// and pauses.
    ///
    /// First every node without a matrix in its transformation list gets one, with the
    /// SID "transform" and its local matrix, in place of the list; the former list is not
    /// restored. Then of each channel below the animation's children the last key
    /// closer than 5 ms is removed, `time` is appended to the frame
    /// times and each node's local matrix is keyed, except for the root and the node of
    /// the scene's first camera; a node with the scene's ID counts as the root. Without
    /// current animation only the lists are converted. A time that is not finite does
    /// nothing. Costs time in proportion to n log n for n nodes, plus the keys.
    void insertKeyframe(float time);

    /// Removes the frame times that equal `time`, but of several in a row only every
    /// other one, the first included, and the keys closer than 5 ms to it from the children of
    /// `animation`. The loop duration becomes that of `animation`. Does nothing for an empty
    /// handle.
    void removeKeyFrame(const AnimationPtr& animation, float time);

    /// Appends a frame time (seconds), also one that is there already.
    void insertFrameTime(float time);

    /// Removes the frame times that equal `time`, but of several in a row only every
    /// other one, the first included.
    void removeFrameTime(float time);

    /// The frame times (seconds) in the order of insertion.
    std::vector<float>& getFrameTimes();
    const std::vector<float>& getFrameTimes() const;

    /// @}

    /// @name Animation camera
    /// @{

    /// The scene's first camera instance. A scene that has none gets a camera at a node
    /// with the ID "DefaultCamera", and the answer is empty this once. Empty without scene.
    CameraInstancePtr getDefaultCamera();

    /// Adds a camera at a node with the ID "AnimationCamera" that stands where the
    /// default camera stands, if that has a node. The node's list is a single matrix with
    /// the SID "transform", ready to be keyed. Not entered into the targets. When the
    /// scene has no camera yet, this one becomes its default camera. Nothing without
    /// scene.
    void addAnimationCamera();

    /// @}

private:
    using BaseMatrices = std::map<NodePtr, Eigen::Matrix4f>; ///< identity where there is no entry

    bool movePlayhead(const Duration& elapsed);
    bool writePoses(const SceneManagerPtr& scene);
    void insertKeys(Animation& animation, const std::vector<NodePtr>& nodes, float time);
    void removeKeys(const std::vector<Animation*>& animations, float time);
    static const Eigen::Matrix4f* setUpNode(const NodePtr& node,
                                            const std::vector<ChannelBinding>& channels,
                                            TargetedTransformations& targets,
                                            BaseMatrices& baseMatrices);
    PlaybackPlan& preparePlan(const SceneManagerPtr& scene);

    boost::weak_ptr<SceneManager> m_sceneManager;
    Duration m_currentTime;
    Duration m_loopDuration;
    Duration m_timeTarget;
    TargetedTransformations m_targetedTransformations;
    BaseMatrices m_baseMatrices;
    std::vector<float> m_frameTimes; ///< seconds, in the order of insertion
    bool m_paused = false;
    bool m_smooth = false;
    AnimationPtr m_animation;
    bool m_refresh = false; ///< evaluate once although the paused playhead stands
    core::logger::Logger m_logger;
    std::unique_ptr<ChannelWarnings> m_warnings; ///< writes to m_logger
    std::unique_ptr<PlaybackPlan> m_plan; ///< of m_animation, refers to m_baseMatrices; made by
                                          ///< the first evaluation
};
} // namespace velmoran::scene
