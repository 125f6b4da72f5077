#pragma once

#include "scene/Forward.h"
#include "scene/deform/SkinningKernel.h"

#include <Eigen/Core>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velmoran::scene
{
class WorldMatrices;

/// Finds the node of a joint by the joint's name; empty when there is none.
using JointFinder = std::function<NodePtr(const std::string&)>;

/// Where a skin's joints are bound. The handles may be empty and hold nothing then.
struct JointBinding
{
    StreamPtr weightJoints;        ///< names, by joint index
    StreamPtr bindJoints;          ///< names, in the order of the matrices
    StreamPtr inverseBindMatrices; ///< 16 floats each, row by row
};

/// The matrices that pose what joints carry.
struct JointPalette
{
    std::vector<PoseMatrix> matrices; ///< by joint index

    /// By joint index: whether the joint has no node or no inverse bind matrix.
    std::vector<bool> isMissing;
    bool isComplete = true; ///< none is missing
};

/// The palette of all joint indices: left * joint's world * inverse bind matrix * right.
///
/// A joint's inverse bind matrix is that of the first entry of `bindJoints` with its name;
/// without such an entry the one at its own index. Worlds and products are in double
/// precision. Each distinct name is looked for once. Linear in the names.
JointPalette makeJointPalette(const JointBinding& binding, const JointFinder& findJoint,
                              WorldMatrices& worlds, const Eigen::Matrix4d& left,
                              const Eigen::Matrix4d& right);

/// Matrix `index` of a stream of inverse bind matrices, which has that many.
Eigen::Matrix4d matrixAt(const std::vector<float>& rows, std::size_t index);

/// The names in a stream; none for an empty handle.
const std::vector<std::string>& namesIn(const StreamPtr& stream);

/// Indices by names, whose text stands elsewhere.
using NameIndices = std::unordered_map<std::string_view, std::size_t>;

/// The index of the first entry of each name; valid as long as `names` stays as it is.
NameIndices firstIndices(const std::vector<std::string>& names);
} // namespace velmoran::scene
