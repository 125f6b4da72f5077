#pragma once

#include "scene/Forward.h"
#include "scene/animation/MatrixKeys.h"

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
class SamplerKeys;
struct TransformationValues;

/// A channel that puts its value in the place of numbers of a node's list.
struct ListTrack
{
    const SamplerKeys* keys;
    const MatrixKeys* matrices; ///< null unless a whole matrix is driven
    std::size_t entry;          ///< index in the list
    std::size_t first;          ///< the first number of that entry
    std::size_t count;          ///< of numbers
    std::size_t cursor = 0;

    /// Puts the value at `time` in its place; whether there is one. Behind the last key
    /// that is put there, but does not count as a value.
    bool put(float time, TransformationValues& values);
};

/// Multiplies a list of transformations in order, with the values of the tracks from
/// `begin` to `end` in their places, and splits the product. The tracks stand in the order of
/// the list. False when no track has a value at `time`.
bool evaluateList(const std::vector<ITransformationPtr>& list, ListTrack* begin, ListTrack* end,
                  float time, EvaluatedPose& pose);
} // namespace velmoran::scene
