#include "scene/animation/ListTrack.h"

#include "scene/animation/SamplerKeys.h"
#include "scene/graph/TransformParts.h"
#include "scene/graph/TransformationValues.h"

namespace velmoran::scene
{
bool ListTrack::put(float time, TransformationValues& values)
{
    if (matrices == nullptr)
    {
        float* const numbers = &values.floats[first];
        return keys->evaluate(time, cursor, count, numbers) ||
               (keys->evaluateAfterEnd(time, count, numbers), false);
    }
    EvaluatedPose pose;
    const bool hasValue = matrices->evaluate(time, cursor, pose);
    if (hasValue || matrices->evaluateAfterEnd(time, pose))
    {
        const Eigen::Matrix3f rotation = pose.matrix.topLeftCorner<3, 3>();
        Eigen::Map<Eigen::Matrix4f>(values.floats.data()) =
            composeTransform(pose.matrix.topRightCorner<3, 1>(), rotation, pose.scale);
    }
    return hasValue;
}

bool evaluateList(const std::vector<ITransformationPtr>& list, ListTrack* begin, ListTrack* end,
                  float time, EvaluatedPose& pose)
{
    bool hasValue = false;
    Eigen::Matrix4f product = Eigen::Matrix4f::Identity();
    ListTrack* track = begin;
    for (std::size_t entry = 0; entry < list.size(); ++entry)
    {
        TransformationValues values = valuesOf(*list[entry]);
        for (; track != end && track->entry == entry; ++track)
        {
            hasValue = track->put(time, values) || hasValue;
        }
        product *= matrixOf(values);
    }
    if (hasValue)
    {
        const TransformParts parts = splitTransform(product);
        pose.matrix = composeTransform(parts.translation, parts.rotation, Eigen::Vector3f::Ones());
        pose.scale = parts.scaling.diagonal();
    }
    return hasValue;
}
} // namespace velmoran::scene
