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
        const ListTrack* const next = std::find_if(
            track, end, [entry](const ListTrack& other) { return other.entry != entry; });
        // What is over gives way to what still has a value.
        for (const KeyMoment::State state : {KeyMoment::OVER, KeyMoment::WITHIN})
        {
            for (const ListTrack* one = track; one != next; ++one)
            {
                if (momentOf(*one).state == state)
                {
                    one->put(momentOf(*one), values);
                }
            }
        }
        track = next;
        product *= matrixOf(values);
    }
    pose = poseAsIs(product);
    return true;
}
} // namespace velmoran::scene
