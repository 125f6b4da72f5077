#pragma once

#include "scene/Forward.h"
#include "scene/deform/JointPalette.h"

#include <Eigen/Core>

#include <string>
#include <unordered_map>
#include <utility>

namespace velmoran::scene
{
/// A stream of a skin, and the one that is to take its place; both empty if none is.
using StreamReplacement = std::pair<StreamPtr, StreamPtr>;

/// Scales what joints carry along the axes of their frames: B becomes diag(scale) * B, for an
/// inverse bind matrix B that takes points into the frame of its joint. By joint name; joints
/// without an entry keep their matrix.
///
/// The skin stays as it is until its stream of matrices is replaced; whoever shares the old one
/// keeps that.
StreamReplacement
scaleInJointFrames(const Skin& skin,
                   const std::unordered_map<std::string, Eigen::Vector3f>& scales);

/// Binds a skin to the present pose, so that vertices in world space stay where they are.
///
/// With W a joint's and N the mesh's world matrix, each inverse bind matrix becomes W^-1, the
/// bind shape matrix N^-1: N * (sum of weight * W * W^-1) * N^-1 * p is p where the weights
/// sum to 1 (linear blend skinning as in `skinVertices`). Joints without a node, which pose
/// nothing, keep their matrix. A joint of the vertex weights that the joints
/// inputs lack is added to them.
/// Streams of the skin that change are new ones. Without a stream for the matrices only
/// the bind shape matrix is set.
void bindToPose(Skin& skin, const JointFinder& findJoint, WorldMatrices& worlds,
                const Eigen::Matrix4d& meshWorld);
} // namespace velmoran::scene
