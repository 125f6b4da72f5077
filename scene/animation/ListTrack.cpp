#include "scene/animation/ListTrack.h"

#include "scene/animation/MatrixKeys.h"
#include "scene/animation/SamplerKeys.h"
#include "scene/graph/TransformParts.h"
#include "scene/graph/TransformationValues.h"

#include <algorithm>

namespace velmoran::scene
{
void ListTrack::put(const KeyMoment& moment, TransformationValues& values) const
{
    EvaluatedPose pose;
    if (moment.state == KeyMoment::NO_KEYS)
    {
        return;
    }
    if (matrices == nullptr)
    {
        keys->evaluate(moment.segment, count, &values.floats[first]);
    }
    else if (matrices->evaluate(moment.segment, pose))
    {
        const Eigen::Matrix3f rotation = pose.matrix.topLeftCorner<3, 3>();
        Eigen::Map<Eigen::Matrix4f>(values.floats.data()) =
            composeTransform(pose.matrix.topRightCorner<3, 1>(), rotation, pose.scale.head<3>());
    }
}

bool evaluateList(const std::vector<ITransformationPtr>& list, const ListTrack* begin,
                  const ListTrack* end, const std::vector<KeyClock>& clocks, EvaluatedPose& pose)
{
    const auto momentOf = [&clocks](const ListTrack& track) -> const KeyMoment&
    { return clocks[track.clock].getMoment(); };
    if (std::none_of(begin, end,
                     [&](const ListTrack& track)
                     { return momentOf(track).state == KeyMoment::WITHIN; }))
    {
        return false;
    }
    Eigen::Matrix4f product = Eigen::Matrix4f::Identity();
    const ListTrack* track = begin;
    for (std::size_t entry = 0; entry < list.size(); ++entry)
    {
        TransformationValues values = valuesOf(*list[entry]);
        for (; track != end && track->entry == entry; ++track)
        {
            track->put(momentOf(*track), values);
        }
        product *= matrixOf(values);
    }
    const TransformParts parts = splitTransform(product);
    pose.matrix = composeTransform(parts.translation, withUnitColumns(parts.rotation),
                                   Eigen::Vector3f::Ones());
    pose.scale << parts.scaling.diagonal(), 0.0F;
    return true;
}
} // namespace velmoran::scene
