#include "scene/geometry/TriangleBoxTest.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3d;
using Eigen::Vector3f;

constexpr double NORMAL_ROUNDING = 4 * PRODUCT_ROUNDING; ///< with components bounded by the largest

bool isFinite(const Vector3f& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y()) && std::isfinite(point.z());
}

/// The axes that may separate a triangle from the boxes between planes.
class SeparatingAxes
{
public:
    SeparatingAxes(const Corners& corners, const Planes& planes)
    {
        Vector3d low = planes[0].cast<double>();
        Vector3d high = planes[2].cast<double>();
        for (std::size_t i = 0; i < 3; ++i)
        {
            const Vector3d corner = corners[i].cast<double>();
            m_edges[i] = corners[(i + 1) % 3].cast<double>() - corner;
            for (std::size_t j = 0; j < 3; ++j)
            {
                m_offsets[i][j] = planes[j].cast<double>() - corner;
            }
            low = low.cwiseMin(corner);
            high = high.cwiseMax(corner);
        }
        for (std::size_t i = 0; i < 3; ++i)
        {
            m_lengths[i] = m_edges[i].cwiseAbs().maxCoeff();
        }
        const auto longest = static_cast<std::size_t>(
            std::max_element(m_lengths.begin(), m_lengths.end()) - m_lengths.begin());
        const std::size_t next = (longest + 1) % 3;
        const std::size_t last = (longest + 2) % 3;
        m_normal = m_edges[next].cross(m_edges[last]);
        m_normalError = NORMAL_ROUNDING * m_lengths[next] * m_lengths[last];
        m_reach = (high - low).maxCoeff();
    }

    /// The boxes that some axis separates from the triangle.
    unsigned int boxesBeside() const
    {
        return besidePlane() | besideEdges<0, 1>(ALONG_X, ALONG_Y) |
               besideEdges<1, 2>(ALONG_Y, ALONG_Z) | besideEdges<2, 0>(ALONG_Z, ALONG_X);
    }

private:
    using Bits = std::array<unsigned int, 4>;

    /// A term of distances that depends on one axis: at its least on the low side of the
    /// centre and on the high side.
    struct Term
    {
        double onLow;
        double onHigh;
    };

    template <int Axis>
    Term least(std::size_t corner, double factor) const
    {
        const std::array<Vector3d, 3>& offsets = m_offsets[corner];
        const double atCentre = factor * offsets[1].coeff(Axis);
        return {std::min(factor * offsets[0].coeff(Axis), atCentre),
                std::min(factor * offsets[2].coeff(Axis), atCentre)};
    }

    /// The boxes that lie before the triangle's plane, seen along `side` times its normal.
    unsigned int besidePlane(double side) const
    {
        const Term x = least<0>(0, side * m_normal.x());
        const Term y = least<1>(0, side * m_normal.y());
        const Term z = least<2>(0, side * m_normal.z());
        const double tolerance = m_normalError * m_reach;
        const auto isBeside = [&](double xy, double atZ) -> unsigned int
        { return xy + atZ > tolerance ? 1U : 0U; };
        const std::array<double, 4> xy = {x.onLow + y.onLow, x.onHigh + y.onLow, x.onLow + y.onHigh,
                                          x.onHigh + y.onHigh};
        unsigned int beside = 0;
        for (unsigned int i = 0; i < xy.size(); ++i)
        {
            beside |= isBeside(xy[i], z.onLow) << i | isBeside(xy[i], z.onHigh) << (i + 4);
        }
        return beside;
    }

    unsigned int besidePlane() const { return besidePlane(1.0) | besidePlane(-1.0); }

    /// The boxes that lie beyond an edge, seen along the axis besides `X` and `Y`.
    template <int X, int Y>
    unsigned int besideEdges(const Bits& alongX, const Bits& alongY) const
    {
        const double twiceArea = m_normal.coeff(3 - X - Y);
        if (std::abs(twiceArea) > m_normalError)
        {
            return beyondEdges<X, Y>(twiceArea > 0.0 ? 1.0 : -1.0, 0.0, alongX, alongY);
        }
        // Seen as a line, nearly: both sides of each edge are outside.
        return beyondEdges<X, Y>(1.0, 2 * m_normalError, alongX, alongY) |
               beyondEdges<X, Y>(-1.0, 2 * m_normalError, alongX, alongY);
    }

    /// `outwards`: 1 when the corners are seen counterclockwise, otherwise -1. `thickness` is
    /// what the triangle may reach beyond its edges, times their length.
    template <int X, int Y>
    unsigned int beyondEdges(double outwards, double thickness, const Bits& alongX,
                             const Bits& alongY) const
    {
        unsigned int beside = 0;
        for (std::size_t i = 0; i < 3; ++i)
        {
            const double tolerance = PRODUCT_ROUNDING * m_lengths[i] * m_reach + thickness;
            const Term x = least<X>(i, outwards * m_edges[i].coeff(Y));
            const Term y = least<Y>(i, -outwards * m_edges[i].coeff(X));
            const unsigned int lowX =
                sides(x.onLow + y.onLow > tolerance, x.onLow + y.onHigh > tolerance);
            const unsigned int highX =
                sides(x.onHigh + y.onLow > tolerance, x.onHigh + y.onHigh > tolerance);
            beside |= (alongX[1] & alongY[lowX]) | (alongX[2] & alongY[highX]);
        }
        return beside;
    }

    static unsigned int sides(bool low, bool high)
    {
        return static_cast<unsigned int>(low) | (static_cast<unsigned int>(high) << 1U);
    }

    std::array<Vector3d, 3> m_edges; ///< edge i leads from corner i to the next one
    std::array<std::array<Vector3d, 3>, 3> m_offsets; ///< from corner i to plane j
    std::array<double, 3> m_lengths;                  ///< the largest component of each edge
    Vector3d m_normal;    ///< of the two shortest edges, which keeps it precise for a needle
    double m_normalError; ///< no component of the normal has a larger one
    double m_reach;       ///< no component of the offsets is larger
};
} // namespace

bool isBox(const Vector3f& min, const Vector3f& max)
{
    return isFinite(min) && isFinite(max) && (min.array() <= max.array()).all();
}

unsigned int boxesMet(const Corners& corners, const Planes& planes, unsigned int reached)
{
    return reached & ~SeparatingAxes(corners, planes).boxesBeside();
}

bool meetsBox(const Corners& corners, const Vector3f& min, const Vector3f& max)
{
    const Vector3f low = corners[0].cwiseMin(corners[1]).cwiseMin(corners[2]);
    const Vector3f high = corners[0].cwiseMax(corners[1]).cwiseMax(corners[2]);
    const bool isReached = isBox(min, max) && (low.array() <= max.array()).all() &&
                           (high.array() >= min.array()).all();
    return isReached && boxesMet(corners, {min, max, max}, 1U) != 0;
}

} // namespace velmoran::scene
