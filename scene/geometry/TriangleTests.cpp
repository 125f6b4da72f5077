#include "scene/geometry/TriangleTests.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>

namespace velmoran::scene
{
namespace
{
using Eigen::Vector3d;
using Eigen::Vector3f;

// A difference of two floats is rounded once, as is each product and sum after it: at most
// a few units of 2^-53 of the sum of the products' amounts.
constexpr double ROUNDING = 0x1p-49;       ///< of a product of two or three differences
constexpr double PLANE_ROUNDING = 0x1p-47; ///< the same with components bounded by the largest

bool isFinite(const Vector3f& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y()) && std::isfinite(point.z());
}

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

/// a * (b x c) with the amounts of all products: what its rounding error is a fraction of.
double amountOf(const Vector3d& a, const Vector3d& b, const Vector3d& c)
{
    const Vector3d x = a.cwiseAbs();
    const Vector3d y = b.cwiseAbs();
    const Vector3d z = c.cwiseAbs();
    return x[0] * (y[1] * z[2] + y[2] * z[1]) + x[1] * (y[2] * z[0] + y[0] * z[2]) +
           x[2] * (y[0] * z[1] + y[1] * z[0]);
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
        m_normal = m_edges[0].cross(m_edges[1]);
        m_reach = (high - low).maxCoeff();
        m_longest = m_edges[0].cwiseAbs().cwiseMax(m_edges[1].cwiseAbs()).maxCoeff() +
                    m_edges[2].cwiseAbs().maxCoeff();
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
        const double tolerance = PLANE_ROUNDING * m_longest * m_longest * m_reach;
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
        if (std::abs(twiceArea) <= PLANE_ROUNDING * m_longest * m_longest)
        {
            return 0; // seen as a line, which the plane's test covers
        }
        const double outwards = twiceArea > 0.0 ? 1.0 : -1.0;
        const double tolerance = ROUNDING * m_longest * m_reach;
        unsigned int beside = 0;
        for (std::size_t i = 0; i < 3; ++i)
        {
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
    Vector3d m_normal;
    double m_longest; ///< no component of the edges is larger
    double m_reach;   ///< nor one of the offsets
};
} // namespace

bool hasArea(const Corners& corners)
{
    if (hasClearArea(corners))
    {
        return true;
    }
    if (!std::all_of(corners.begin(), corners.end(), isFinite))
    {
        return false;
    }
    const Vector3d edge1 = corners[1].cast<double>() - corners[0].cast<double>();
    const Vector3d edge2 = corners[2].cast<double>() - corners[0].cast<double>();
    const double product = edge1.cwiseAbs().maxCoeff() * edge2.cwiseAbs().maxCoeff();
    if (edge1.cross(edge2).cwiseAbs().maxCoeff() > ROUNDING * product)
    {
        return true;
    }
    const bool isPoint = product == 0.0 || corners[1] == corners[2];
    return !isPoint && !(isFlat(corners, 0, 1) && isFlat(corners, 1, 2) && isFlat(corners, 2, 0));
}

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

TriangleRayTest::TriangleRayTest(const Vector3f& origin, const Vector3f& direction, float extent)
    : m_origin(origin.cast<double>()), m_direction(direction.cast<double>())
{
    const auto reach = static_cast<double>(extent);
    // Offsets are sums of two coordinates, as are edges, of which one product has two.
    const double offset = m_origin.cwiseAbs().maxCoeff() + reach;
    const double longest = std::max(m_direction.cwiseAbs().maxCoeff() * offset, 2 * reach * offset);
    m_error = ROUNDING * 6 * longest * 2 * reach;
}

bool TriangleRayTest::isUsable() const
{
    return m_origin.allFinite() && m_direction.allFinite() && !m_direction.isZero(0.0);
}

boost::optional<double> TriangleRayTest::meets(const Corners& corners) const
{
    const auto isBelow = [this](double value, const Vector3d& a, const Vector3d& b,
                                const Vector3d& c) // a triple product of these
    { return value < 0.0 && (value < -m_error || value < -ROUNDING * amountOf(a, b, c)); };

    const Vector3d corner = corners[0].cast<double>();
    const Vector3d edge1 = corners[1].cast<double>() - corner;
    const Vector3d edge2 = corners[2].cast<double>() - corner;
    const Vector3d offset = m_origin - corner;
    const Vector3d p = m_direction.cross(edge2);
    const double determinant = edge1.dot(p);
    const double side = determinant < 0.0 ? -1.0 : 1.0;
    const double u = side * offset.dot(p);
    if (isBelow(u, offset, m_direction, edge2))
    {
        return boost::none;
    }
    const Vector3d q = offset.cross(edge1);
    const double v = side * m_direction.dot(q);
    if (isBelow(v, m_direction, offset, edge1))
    {
        return boost::none;
    }
    const double depth = side * determinant;
    const double w = depth - u - v;
    if (w < -3 * m_error)
    {
        return boost::none;
    }
    const double t = side * edge2.dot(q);
    const double error = ROUNDING * amountOf(edge1, m_direction, edge2);
    const double wError = error + ROUNDING * (amountOf(offset, m_direction, edge2) +
                                              amountOf(m_direction, offset, edge1));
    if (depth <= error || w < -wError || isBelow(t, edge2, offset, edge1))
    {
        return boost::none;
    }
    return std::max(t, 0.0) / depth;
}
} // namespace velmoran::scene
