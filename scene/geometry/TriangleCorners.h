#pragma once

#include <Eigen/Core>

#include <array>

namespace velmoran::scene
{
using Corners = std::array<Eigen::Vector3f, 3>; ///< of a triangle

// The tests of triangles compute in double precision from float coordinates, with bounds for
// the rounding errors: what touches always counts, and a gap counts as touching only when it is
// around 1e-15 of the distances between the points.
//
// A difference of two floats is rounded once, as is each product and sum after it: at most a
// few units of 2^-53 of the sum of the products' amounts.
constexpr double PRODUCT_ROUNDING = 0x1p-49; ///< of a product of two or three differences

/// Whether the corners are finite and do not lie on one line. Decided exactly: a sliver has
/// an area, however thin it is.
bool hasArea(const Corners& corners);
} // namespace velmoran::scene
