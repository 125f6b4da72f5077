#pragma once

#include "examples/generator/Figure.h"

#include <array>
#include <vector>

namespace velmoran::generator
{
using Corners = std::array<int, 3>;

/// The smooth union of a figure's limbs as a field: negative inside the body,
/// about the distance to its surface near by.
class BodyField
{
public:
    /// The field is mirrored: what stands at x also stands at -x.
    explicit BodyField(const std::vector<Limb>& limbs);

    double at(const Vec3& p) const;
    Vec3 gradient(const Vec3& p) const;

    /// `p` moved to the surface, by at most `reach`.
    Vec3 projected(const Vec3& p, double reach) const;

    /// The joint whose limb is nearest to `p`.
    int jointAt(const Vec3& p) const;

private:
    /// A limb and a ball around it.
    struct Part
    {
        Limb limb;
        Vec3 centre;
        double reach;
        double widening; ///< at least 1: how far depth widens the limb's surroundings

        /// Not more than the distance of `p` to the limb.
        double leastDistance(const Vec3& p) const;
    };

    std::vector<Part> m_parts;
};

/// A triangle surface; counter-clockwise corners seen from outside.
struct Surface
{
    std::vector<Vec3> points;
    std::vector<Corners> triangles;
};

/// Turns the surface of `field` within `low` and `high` into triangles with edges of
/// about `edge` (surface nets: S. Gibson, 1998). The box is widened to be symmetric
/// about x = 0 and so is the result.
Surface makeSurface(const BodyField& field, const Vec3& low, const Vec3& high, double edge);

/// The indices of the neighbours of each point, ascending.
std::vector<std::vector<int>> neighbours(const Surface& surface);

/// Evens out the triangles: moves points towards the middle of their neighbours and
/// back to the surface of `field`.
void relax(Surface& surface, const BodyField& field, int rounds);

/// Unit normals of the points: the mean of the triangles around, weighted by area.
std::vector<Vec3> pointNormals(const Surface& surface);
} // namespace velmoran::generator
