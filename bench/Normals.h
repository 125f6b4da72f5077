#pragma once

#include "bench/Cases.h"

#include <vector>

namespace velmoran::bench
{
/// The vertex normals of a mesh in flat arrays: the plain loop. Sums of face normals that
/// are as long as the sine of the angle at the first corner.
std::vector<float> computeFlatNormals(const std::vector<float>& positions,
                                      const std::vector<unsigned int>& indices);

/// Whether all of these unit normals point roughly as those of `computeFlatNormals` do:
/// others weigh the faces unlike us.
bool pointAlike(const std::vector<float>& normals, const std::vector<float>& wanted);

/// 250,000 and a million triangles, four times each.
constexpr auto NORMALS_SIZES = &atNAnd4N<250000, 4>;
} // namespace velmoran::bench
