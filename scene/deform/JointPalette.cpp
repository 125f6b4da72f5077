#include "scene/deform/JointPalette.h"

#include "scene/deform/WorldMatrices.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"

namespace velmoran::scene
{
namespace
{
constexpr std::size_t BIND_MATRIX_SIZE = 16;

/// World matrices by joint name; null for a joint without node.
class JointWorlds
{
public:
    JointWorlds(const JointFinder& findJoint, WorldMatrices& worlds)
        : m_findJoint(findJoint), m_worlds(worlds)
    {
    }

    /// `name` stays where it is as long as this lives.
    const Eigen::Matrix4d* of(const std::string& name)
    {
        const auto [entry, isNew] = m_known.try_emplace(name, nullptr);
        if (isNew)
        {
            const NodePtr node = m_findJoint(name);
            entry->second = node ? &m_worlds.of(*node) : nullptr;
        }
        return entry->second;
    }

private:
    const JointFinder& m_findJoint;
    WorldMatrices& m_worlds;
    std::unordered_map<std::string_view, const Eigen::Matrix4d*> m_known;
};
} // namespace

JointPalette makeJointPalette(const JointBinding& binding, const JointFinder& findJoint,
                              WorldMatrices& worlds, const Eigen::Matrix4d& left,
                              const Eigen::Matrix4d& right)
{
    const std::vector<std::string>& names = namesIn(binding.weightJoints);
    const auto bindIndices = firstIndices(namesIn(binding.bindJoints));
    const std::vector<float> none;
    const std::vector<float>& rows =
        binding.inverseBindMatrices ? binding.inverseBindMatrices->getData() : none;

    JointWorlds jointWorlds(findJoint, worlds);
    JointPalette palette;
    palette.matrices.resize(names.size());
    palette.isMissing.assign(names.size(), true);
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        const auto bound = bindIndices.find(names[i]);
        const std::size_t matrix = bound != bindIndices.end() ? bound->second : i;
        const Eigen::Matrix4d* const world = jointWorlds.of(names[i]);
        if (world == nullptr || matrix >= rows.size() / BIND_MATRIX_SIZE)
        {
            palette.isComplete = false;
            continue;
        }
        const Eigen::Matrix4d pose = left * *world * matrixAt(rows, matrix) * right;
        palette.matrices[i] = PoseMatrix(pose.cast<float>());
        palette.isMissing[i] = false;
    }
    return palette;
}

Eigen::Matrix4d matrixAt(const std::vector<float>& rows, std::size_t index)
{
    using RowByRow = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;
    return Eigen::Map<const RowByRow>(&rows[index * BIND_MATRIX_SIZE]).cast<double>();
}

const std::vector<std::string>& namesIn(const StreamPtr& stream)
{
    static const std::vector<std::string> none;
    return stream ? stream->getNameList() : none;
}

NameIndices firstIndices(const std::vector<std::string>& names)
{
    NameIndices indices;
    indices.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        indices.try_emplace(names[i], i);
    }
    return indices;
}
} // namespace velmoran::scene
