#pragma once

#include "scene/Forward.h"
#include "scene/animation/EvaluatedPose.h"
#include "scene/animation/KeyClock.h"

#include <cstddef>
#include <vector>

namespace velmoran::scene
{
class MatrixKeys;
class SamplerKeys;
struct TransformationValues;

/// A channel that puts its value in the place of numbers of a node's list.
struct ListTrack
{
    const SamplerKeys* keys;
    const MatrixKeys* matrices; ///< null unless a whole matrix is driven
    std::size_t clock;          ///< index of the channel's clock
    std::size_t entry;          ///< index in the list
    std::size_t first;          ///< the first number of that entry
    std::size_t count;          ///< of numbers

    /// Puts the value at a moment in its place, if there is one. Behind the last key that is
    /// put there.
    void put(const KeyMoment& moment, TransformationValues& values) const;
};

/// Multiplies a list of transformations in order, with the values of the tracks from
/// `begin` to `end` in their places, and splits the product. The tracks stand in the order
/// of the list. False when all are over.
bool evaluateList(const std::vector<ITransformationPtr>& list, const ListTrack* begin,
                  const ListTrack* end, const std::vector<KeyClock>& clocks, EvaluatedPose& pose);
} // namespace velmoran::scene
