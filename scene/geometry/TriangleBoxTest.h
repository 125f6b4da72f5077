#pragma once

#include "scene/geometry/TriangleCorners.h"

#include <Eigen/Core>

#include <array>

namespace velmoran::scene
{
/// Whether the points are finite and `min` is nowhere above `max`.
bool isBox(const Eigen::Vector3f& min, const Eigen::Vector3f& max);

/// Three planes across each axis, in ascending order: a cell's minimum, centre and maximum.
using Planes = std::array<Eigen::Vector3f, 3>;

// The eight boxes between them are numbered 0 to 7 and stand for bits: a box is on the high
// side of the centre in x when its bit 0 is set, in y for bit 1 and in z for bit 2. These are
// the boxes on no side, the low one, the high one and both.
constexpr std::array<unsigned int, 4> ALONG_X = {0, 0x55, 0xAA, 0xFF};
constexpr std::array<unsigned int, 4> ALONG_Y = {0, 0x33, 0xCC, 0xFF};
constexpr std::array<unsigned int, 4> ALONG_Z = {0, 0x0F, 0xF0, 0xFF};

/// Which boxes between `planes` the triangle meets, of those that its bounds meet: `reached`.
/// The boundary of both counts. The corners have an area, the planes are finite.
///
/// Akenine-Möller's separating axes (2001), for all boxes at once. Where they stand in the
/// projections to the coordinate planes is asked edge by edge from the outside, which saves
/// half of the work (Schwarz and Seidel, 2010).
unsigned int boxesMet(const Corners& corners, const Planes& planes, unsigned int reached);

/// Whether the triangle meets the box; the boundary of both counts. The corners have an area.
bool meetsBox(const Corners& corners, const Eigen::Vector3f& min, const Eigen::Vector3f& max);

} // namespace velmoran::scene
