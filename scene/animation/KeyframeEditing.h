#pragma once

#include "scene/Forward.h"

#include <Eigen/Core>

#include <cstddef>

namespace velmoran::scene
{
/// Lets the next `count` calls of `insertKey` succeed without memory.
void makeRoomForKeys(const Sampler& sampler, std::size_t count);

/// Puts the key `matrix` at `time` (seconds) into the streams of `sampler`; see
/// `Animation::insertTransformations`.
void insertKey(const Sampler& sampler, float time, const Eigen::Matrix4f& matrix);

/// Removes the last key closer than 5 ms to `time` from the streams of `sampler`;
/// whether there was one. Streams that have nothing for that key are left alone. Needs no
/// memory.
bool removeKey(const Sampler& sampler, float time);
} // namespace velmoran::scene
