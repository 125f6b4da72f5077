#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>

#include <vector>

namespace velmoran::scene
{
/// Where a joint goes.
struct JointFrame
{
    Eigen::Matrix4f local; ///< for `Node::setTransformations`; the node keeps its scale

    /// Lengths of the columns of `local`, which the node does not keep: what they scaled in
    /// the joint's frame has to be scaled by them now. Ones for a node whose rotation
    /// is one.
    Eigen::Vector3f lostScale;
};

/// New local matrices that bring each joint to its world position and turn it with its bone.
///
/// With W a joint's world matrix, P that of its parent, W' and P' the new ones, t and t' its
/// old and new world position, L = T R S its local matrix, column vectors throughout:
///
///   W' = P' L'                              no node but the joints gets a new local matrix
///   T' = P'^-1 t'                           hence the world translation of W' is t'
///   R' = Q R,  S' = S                       Q: the turn as the parent's frame sees it
///   Q  = A * nearest rotation to P'^-1 D P  linear parts; A is the identity below even scales
///
/// D is the smallest rotation that takes the bone (from the joint to the first joint below
/// it) from its old world direction to the new one: about their cross product, by the angle
/// between them (Rodrigues 1840); opposite directions turn about some axis across both.
/// "Nearest" is in the least squares sense, from the singular value decomposition (Schoenemann
/// 1966). Below a scale that is not the same in all directions D is not a rotation in the
/// parent's frame; A is the smallest rotation there that then brings the bone into
/// place. In every case a bone keeps its direction in the joint's own frame.
///
/// A joint without a bone has Q = 1, so that it turns with what is above it: one with no
/// joint below it, one that coincides with that joint before or after (as far as
/// floats can tell), and `boneless`. A joint whose matrix would not be finite, as
/// below a node with a NaN, keeps its own.
///
/// `joints`: the nodes; those below others may come before these. `positions`: one finite world
/// position each. Nothing is changed. Linear in the joints and the nodes above them.
std::vector<JointFrame> placeJoints(const std::vector<NodePtr>& joints,
                                    const std::vector<Eigen::Vector3f>& positions,
                                    const NodePtr& boneless);
} // namespace velmoran::scene
