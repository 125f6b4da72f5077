#include "scene/geometry/TriangleCorners.h"

#include <Eigen/Geometry>

#include <algorithm>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3d;
using Eigen::Vector3f;

/// Whether floats suffice to see that the corners are finite and have an area.
bool hasClearArea(const Corners& corners)
{
    const Vector3f edge1 = corners[1] - corners[0];
    const Vector3f edge2 = corners[2] - corners[0];
    const float product = edge1.cwiseAbs().sum() * edge2.cwiseAbs().sum();
    // With a NaN or an infinity in it one of the comparisons fails.
    return product > 1e-30F && edge1.cross(edge2).cwiseAbs().sum() > 1e-4F * product;
}

/// Whether the terms sum up to exactly 0: what an addition rounds off is kept as a term of its
/// own (Shewchuk, 1997).
bool isZeroSum(std::array<double, 6> terms)
{
    for (std::size_t count = 1; count < terms.size(); ++count)
    {
        double sum = terms[count];
        for (std::size_t i = 0; i < count; ++i)
        {
            const double term = terms[i];
            const double whole = sum + term;
            const double added = whole - sum;
            terms[i] = (sum - (whole - added)) + (term - added);
            sum = whole;
        }
        terms[count] = sum;
    }
    return std::all_of(terms.begin(), terms.end(), [](double term) { return term == 0.0; });
}

/// Whether the projections of the corners to the plane of axes `x` and `y` lie on one line:
/// twice their area is 0. Products of two floats are exact.
bool isFlat(const Corners& corners, int x, int y)
{
    const Vector3d a = corners[0].cast<double>();
    const Vector3d b = corners[1].cast<double>();
    const Vector3d c = corners[2].cast<double>();
    return isZeroSum(
        {a[x] * b[y], -a[y] * b[x], b[x] * c[y], -b[y] * c[x], c[x] * a[y], -c[y] * a[x]});
}

} // namespace

bool hasArea(const Corners& corners)
{
    if (hasClearArea(corners))
    {
        return true;
    }
    if (!std::all_of(corners.begin(), corners.end(),
                     [](const Vector3f& corner) { return corner.allFinite(); }))
    {
        return false;
    }
    const Vector3d edge1 = corners[1].cast<double>() - corners[0].cast<double>();
    const Vector3d edge2 = corners[2].cast<double>() - corners[0].cast<double>();
    const double product = edge1.cwiseAbs().maxCoeff() * edge2.cwiseAbs().maxCoeff();
    if (edge1.cross(edge2).cwiseAbs().maxCoeff() > PRODUCT_ROUNDING * product)
    {
        return true;
    }
    const bool isPoint = product == 0.0 || corners[1] == corners[2];
    return !isPoint && !(isFlat(corners, 0, 1) && isFlat(corners, 1, 2) && isFlat(corners, 2, 0));
}

} // namespace velmoran::scene
