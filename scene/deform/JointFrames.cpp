#include "scene/deform/JointFrames.h"

#include "scene/deform/WorldMatrices.h"
#include "scene/graph/Node.h"

#include <Eigen/Geometry>
#include <Eigen/SVD>

#include <algorithm>
#include <cstddef>
#include <unordered_map>

namespace velmoran::scene
{
namespace
{
using Eigen::Matrix3d;
using Eigen::Matrix4d;
using Eigen::Vector3d;

constexpr std::size_t NONE = static_cast<std::size_t>(-1);

/// A node's new world matrix and the world turn that led to it, D.
struct Placed
{
    Matrix4d world = Matrix4d::Identity();
    Matrix3d turn = Matrix3d::Identity();
};

Matrix3d smallestRotation(const Vector3d& from, const Vector3d& to)
{
    return Eigen::Quaterniond::FromTwoVectors(from, to).toRotationMatrix();
}

Matrix3d nearestRotation(const Matrix3d& matrix)
{
    // Mostly a rotation up to what floats hold, of which a step of iteration (Bjoerck, Bowie
    // 1971) squares the distance.
    const Matrix3d excess = matrix.transpose() * matrix - Matrix3d::Identity();
    if (excess.norm() < 1e-4)
    {
        return matrix - 0.5 * matrix * excess;
    }
    const Eigen::JacobiSVD<Matrix3d> svd(matrix, Eigen::ComputeFullU | Eigen::ComputeFullV);
    Matrix3d left = svd.matrixU();
    if ((left * svd.matrixV().transpose()).determinant() < 0.0)
    {
        left.col(2) *= -1.0;
    }
    return left * svd.matrixV().transpose();
}

Vector3d translationOf(const Matrix4d& matrix)
{
    return matrix.topRightCorner<3, 1>();
}

Matrix3d linearOf(const Matrix4d& matrix)
{
    return matrix.topLeftCorner<3, 3>();
}

/// Whether two positions differ by more than the floats that they come from can tell.
bool areApart(const Vector3d& a, const Vector3d& b)
{
    return (b - a).norm() > 1e-6 * std::max(a.norm(), b.norm());
}

/// The local matrix of `node` after `setTransformations(matrix)`.
Matrix4d localAfterSetting(const Node& node, const Eigen::Matrix4f& matrix)
{
    Eigen::Matrix4f local = matrix;
    for (int column = 0; column < 3; ++column)
    {
        local.col(column).stableNormalize();
        local.col(column) *= node.getScale()[column];
    }
    return local.cast<double>();
}

class JointPlacement
{
public:
    JointPlacement(const std::vector<NodePtr>& joints,
                   const std::vector<Eigen::Vector3f>& positions, const NodePtr& boneless)
        : m_joints(joints), m_positions(positions), m_placed(Placed())
    {
        for (std::size_t i = 0; i < joints.size(); ++i)
        {
            m_indices.emplace(joints[i].get(), i);
        }
        findBoneEnds();
        const std::size_t without = boneless ? indexOf(*boneless) : NONE;
        if (without != NONE)
        {
            m_boneEnds[without] = NONE;
        }
    }

    std::vector<JointFrame> place()
    {
        m_frames.resize(m_joints.size());
        for (const NodePtr& joint : m_joints)
        {
            m_placed.of(*joint,
                        [this](const Node& node, const Placed& above)
                        {
                            const std::size_t index = indexOf(node);
                            return index != NONE ? placeJoint(index, above) : carry(node, above);
                        });
        }
        return m_frames;
    }

private:
    std::size_t indexOf(const Node& node) const
    {
        const auto found = m_indices.find(&node);
        return found == m_indices.end() ? NONE : found->second;
    }

    /// For each joint, the first one below it with no joint between them.
    void findBoneEnds()
    {
        m_boneEnds.assign(m_joints.size(), NONE);
        AlongParents<std::size_t> nearest(NONE); // joint at or above a node
        for (std::size_t i = 0; i < m_joints.size(); ++i)
        {
            const NodePtr parent = m_joints[i]->getParent();
            const std::size_t above =
                parent ? nearest.of(*parent,
                                    [this](const Node& node, std::size_t ofParent)
                                    {
                                        const std::size_t own = indexOf(node);
                                        return own != NONE ? own : ofParent;
                                    })
                       : NONE;
            if (above != NONE && m_boneEnds[above] == NONE)
            {
                m_boneEnds[above] = i;
            }
        }
    }

    static Placed carry(const Node& node, const Placed& above)
    {
        return {above.world * node.getTransformations().cast<double>(), above.turn};
    }

    Placed placeJoint(std::size_t index, const Placed& above)
    {
        const Node& joint = *m_joints[index];
        const NodePtr parent = joint.getParent();
        const Matrix4d before = parent ? m_worlds.of(*parent) : Matrix4d(Matrix4d::Identity());
        const Matrix4d inverse = affineInverse(above.world);
        const Matrix3d rotation = joint.getRotation().linear().cast<double>();

        Placed placed = above;
        Matrix4d local = Matrix4d::Identity();
        local.topLeftCorner<3, 3>() = turnOf(index, before, inverse, placed.turn) * rotation;
        local.topRightCorner<3, 1>() =
            linearOf(inverse) * positionOf(index) + translationOf(inverse);
        if (!local.allFinite())
        {
            local.topLeftCorner<3, 3>() = rotation;
            local.topRightCorner<3, 1>() =
                joint.getTransformations().topRightCorner<3, 1>().cast<double>();
        }

        JointFrame& frame = m_frames[index];
        frame.local = local.cast<float>();
        const Eigen::Vector3f lengths = frame.local.topLeftCorner<3, 3>().colwise().norm();
        frame.lostScale = (lengths.array() == 0.0F).select(Eigen::Vector3f::Ones(), lengths);
        placed.world = above.world * localAfterSetting(joint, frame.local);
        return placed;
    }

    /// Q of joint `index`. `before` is P, `inverse` P'^-1. `turn` is that of what is above; it
    /// becomes the joint's own D if the joint has a bone.
    Matrix3d turnOf(std::size_t index, const Matrix4d& before, const Matrix4d& inverse,
                    Matrix3d& turn)
    {
        const std::size_t end = m_boneEnds[index];
        if (end == NONE)
        {
            return Matrix3d::Identity();
        }
        const Vector3d from = translationOf(m_worlds.of(*m_joints[index]));
        const Vector3d to = translationOf(m_worlds.of(*m_joints[end]));
        if (!areApart(from, to) || !areApart(positionOf(index), positionOf(end)))
        {
            return Matrix3d::Identity();
        }
        const Vector3d newBone = positionOf(end) - positionOf(index);
        turn = smallestRotation(to - from, newBone);
        const Matrix3d nearest = nearestRotation(linearOf(inverse) * turn * linearOf(before));
        const Vector3d reached = nearest * linearOf(affineInverse(before)) * (to - from);
        return smallestRotation(reached, linearOf(inverse) * newBone) * nearest;
    }

    Vector3d positionOf(std::size_t index) const { return m_positions[index].cast<double>(); }

    const std::vector<NodePtr>& m_joints;
    const std::vector<Eigen::Vector3f>& m_positions;
    std::unordered_map<const Node*, std::size_t> m_indices;
    std::vector<std::size_t> m_boneEnds; ///< for each joint; NONE without a bone
    WorldMatrices m_worlds;              ///< as they are
    AlongParents<Placed> m_placed;       ///< as they will be
    std::vector<JointFrame> m_frames;
};
} // namespace

std::vector<JointFrame> placeJoints(const std::vector<NodePtr>& joints,
                                    const std::vector<Eigen::Vector3f>& positions,
                                    const NodePtr& boneless)
{
    return JointPlacement(joints, positions, boneless).place();
}
} // namespace velmoran::scene
