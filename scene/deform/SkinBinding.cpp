#include "scene/deform/SkinBinding.h"

#include "scene/deform/Skin.h"
#include "scene/deform/WorldMatrices.h"
#include "scene/geometry/StreamCount.h"
#include "scene/graph/Node.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>
#include <vector>

namespace velmoran::scene
{
namespace
{
using RowByRow = Eigen::Matrix<float, 4, 4, Eigen::RowMajor>;

constexpr std::size_t MATRIX_SIZE = 16;

/// A copy of `stream` with other matrices.
StreamPtr withMatrices(const Stream& stream, std::vector<float> rows)
{
    StreamPtr replacement = boost::make_shared<Stream>(stream);
    replacement->setCount(static_cast<int>(rows.size() / MATRIX_SIZE));
    replacement->setData(std::move(rows));
    return replacement;
}

/// Adds the joints of the vertex weights that the joints input lacks, and that are nodes.
void completeJoints(Skin& skin, const JointFinder& findJoint)
{
    const StreamPtr joints = skin.getJointsInput("JOINT");
    const StreamPtr weightJoints = skin.getVertexWeightsInput("JOINT");
    if (!joints || !weightJoints || joints == weightJoints)
    {
        return;
    }
    std::vector<std::string> names = joints->getNameList();
    NameIndices known = firstIndices(joints->getNameList());
    for (const std::string& name : weightJoints->getNameList())
    {
        if (known.try_emplace(name, names.size()).second && findJoint(name))
        {
            names.push_back(name);
        }
    }
    if (names.size() != joints->getNameList().size())
    {
        const StreamPtr replacement = boost::make_shared<Stream>(*joints);
        const std::size_t added = names.size() - joints->getNameList().size();
        addToCount(*replacement, added);
        replacement->setNameList(std::move(names));
        skin.replaceStream(joints, replacement);
    }
}
} // namespace

StreamReplacement scaleInJointFrames(const Skin& skin,
                                     const std::unordered_map<std::string, Eigen::Vector3f>& scales)
{
    const StreamPtr matrices = skin.getJointsInput("INV_BIND_MATRIX");
    if (!matrices)
    {
        return StreamReplacement();
    }
    const std::vector<std::string>& names = namesIn(skin.getJointsInput("JOINT"));
    std::vector<float> rows = matrices->getData();
    const std::size_t count = std::min(names.size(), rows.size() / MATRIX_SIZE);
    for (std::size_t i = 0; i < count; ++i)
    {
        const auto scale = scales.find(names[i]);
        if (scale != scales.end())
        {
            Eigen::Map<RowByRow> matrix(&rows[i * MATRIX_SIZE]);
            matrix.topRows<3>() = (scale->second.asDiagonal() * matrix.topRows<3>()).eval();
        }
    }
    return {matrices, withMatrices(*matrices, std::move(rows))};
}

void bindToPose(Skin& skin, const JointFinder& findJoint, WorldMatrices& worlds,
                const Eigen::Matrix4d& meshWorld)
{
    skin.setBindShapeMatrix(affineInverse(meshWorld).cast<float>());
    const StreamPtr matrices = skin.getJointsInput("INV_BIND_MATRIX");
    if (!matrices)
    {
        return;
    }
    completeJoints(skin, findJoint);
    const StreamPtr joints = skin.getJointsInput("JOINT");
    const std::vector<std::string>& names =
        namesIn(joints ? joints : skin.getVertexWeightsInput("JOINT"));
    std::vector<float> rows = matrices->getData();
    rows.resize(std::max(rows.size(), names.size() * MATRIX_SIZE));
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        const NodePtr joint = findJoint(names[i]);
        if (joint)
        {
            Eigen::Map<RowByRow> matrix(&rows[i * MATRIX_SIZE]);
            matrix = affineInverse(worlds.of(*joint)).cast<float>();
        }
    }
    skin.replaceStream(matrices, withMatrices(*matrices, std::move(rows)));
}
} // namespace velmoran::scene
