#include "examples/generator/BodySurface.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace velmoran::generator
{
namespace
{
constexpr double MAX_BLEND = 0.05; ///< metres over which two limbs flow into each other

/// How far a point is from a limb, and how thick the limb is there.
struct Reading
{
    double distance; ///< to the limb's surface, negative inside
    double radius;
};

Reading readingOf(const Limb& limb, const Vec3& p)
{
    const Vec3 axis = limb.to - limb.from;
    const double size = dot(axis, axis);
    const double t = size > 0.0 ? std::clamp(dot(p - limb.from, axis) / size, 0.0, 1.0) : 0.0;
    Vec3 offset = p - (limb.from + axis * t);
    offset.z /= limb.depth;
    const double radius = limb.fromRadius + (limb.toRadius - limb.fromRadius) * t;
    return {length(offset) - radius, radius};
}

/// The minimum of two distances, rounded off where they differ by less than `blend`.
double smoothMinimum(double a, double b, double blend)
{
    const double overlap = std::max(blend - std::abs(a - b), 0.0) / blend;
    return std::min(a, b) - overlap * overlap * blend / 4.0;
}

/// A regular grid of samples of a field, and the surface points found in its cells.
class Grid
{
public:
    Grid(const BodyField& field, const Vec3& low, const Vec3& high, double edge)
        : m_field(field),
          m_low(low),
          m_edge(edge),
          m_count{cells(low.x, high.x, edge), cells(low.y, high.y, edge),
                  cells(low.z, high.z, edge)}
    {
        const int all = m_count[0] * m_count[1] * m_count[2];
        m_values.reserve(static_cast<std::size_t>(all));
        for (int i = 0; i < all; ++i)
        {
            m_values.push_back(m_field.at(position(unpack(i))));
        }
        m_pointOfCell.assign(m_values.size(), -1);
    }

    Surface surface()
    {
        Surface result;
        placePoints(result);
        connectPoints(result);
        return result;
    }

private:
    using Index = std::array<int, 3>;

    static int cells(double low, double high, double edge)
    {
        return static_cast<int>((high - low) / edge + 0.5) + 1;
    }

    Index unpack(int i) const
    {
        return {i % m_count[0], (i / m_count[0]) % m_count[1], i / (m_count[0] * m_count[1])};
    }

    std::size_t pack(const Index& i) const
    {
        return static_cast<std::size_t>((i[2] * m_count[1] + i[1]) * m_count[0] + i[0]);
    }

    Vec3 position(const Index& i) const
    {
        return m_low + Vec3{i[0] * m_edge, i[1] * m_edge, i[2] * m_edge};
    }

    /// A point in each cell that the surface crosses: the mean of its crossings with
    /// the cell's edges.
    void placePoints(Surface& result)
    {
        for (int z = 0; z + 1 < m_count[2]; ++z)
        {
            for (int y = 0; y + 1 < m_count[1]; ++y)
            {
                for (int x = 0; x + 1 < m_count[0]; ++x)
                {
                    placePoint({x, y, z}, result);
                }
            }
        }
    }

    void placePoint(const Index& cell, Surface& result)
    {
        Vec3 sum;
        int crossings = 0;
        for (unsigned corner = 0; corner < 8; ++corner)
        {
            for (unsigned axis = 0; axis < 3; ++axis)
            {
                const unsigned other = corner | (1U << axis);
                if (other == corner)
                {
                    continue;
                }
                const Index a = atCorner(cell, corner);
                const Index b = atCorner(cell, other);
                const double va = m_values[pack(a)];
                const double vb = m_values[pack(b)];
                if ((va < 0.0) != (vb < 0.0))
                {
                    sum = sum + between(position(a), position(b), va / (va - vb));
                    ++crossings;
                }
            }
        }
        if (crossings > 0)
        {
            m_pointOfCell[pack(cell)] = static_cast<int>(result.points.size());
            result.points.push_back(m_field.projected(sum * (1.0 / crossings), m_edge));
        }
    }

    static Index atCorner(const Index& cell, unsigned corner)
    {
        return {cell[0] + static_cast<int>(corner & 1U),
                cell[1] + static_cast<int>(corner >> 1U & 1U),
                cell[2] + static_cast<int>(corner >> 2U & 1U)};
    }

    /// Two triangles for each grid edge that the surface crosses, between the points
    /// of the four cells around that edge.
    void connectPoints(Surface& result)
    {
        for (std::size_t i = 0; i < m_values.size(); ++i)
        {
            const Index at = unpack(static_cast<int>(i));
            for (std::size_t axis = 0; axis < 3; ++axis)
            {
                const std::size_t u = (axis + 1) % 3;
                const std::size_t v = (axis + 2) % 3;
                Index next = at;
                ++next[axis];
                if (next[axis] >= m_count[axis] || at[u] == 0 || at[v] == 0)
                {
                    continue;
                }
                const bool inside = m_values[pack(at)] < 0.0;
                if (inside != (m_values[pack(next)] < 0.0))
                {
                    addQuad(at, u, v, inside, result);
                }
            }
        }
    }

    void addQuad(const Index& at, std::size_t u, std::size_t v, bool outward, Surface& result) const
    {
        std::array<int, 4> quad{};
        const std::array<std::array<int, 2>, 4> around{{{1, 1}, {0, 1}, {0, 0}, {1, 0}}};
        for (std::size_t corner = 0; corner < 4; ++corner)
        {
            Index cell = at;
            cell[u] -= around[corner][0];
            cell[v] -= around[corner][1];
            quad[corner] = m_pointOfCell[pack(cell)];
        }
        if (!outward)
        {
            std::swap(quad[1], quad[3]);
        }
        const auto& points = result.points;
        const auto diagonal = [&](int a, int b) {
            return length(points[static_cast<std::size_t>(a)] -
                          points[static_cast<std::size_t>(b)]);
        };
        if (diagonal(quad[0], quad[2]) <= diagonal(quad[1], quad[3]))
        {
            result.triangles.push_back({quad[0], quad[1], quad[2]});
            result.triangles.push_back({quad[0], quad[2], quad[3]});
        }
        else
        {
            result.triangles.push_back({quad[0], quad[1], quad[3]});
            result.triangles.push_back({quad[1], quad[2], quad[3]});
        }
    }

    const BodyField& m_field;
    Vec3 m_low;
    double m_edge;
    Index m_count;
    std::vector<double> m_values;
    std::vector<int> m_pointOfCell; ///< by the cell's lowest corner, -1 without point
};
} // namespace

BodyField::BodyField(const std::vector<Limb>& limbs)
{
    for (const Limb& limb : limbs)
    {
        const double widening = std::max(1.0, limb.depth);
        const double radius = std::max(limb.fromRadius, limb.toRadius);
        m_parts.push_back({limb, between(limb.from, limb.to, 0.5),
                           0.5 * length(limb.to - limb.from) + radius * widening, widening});
    }
}

double BodyField::Part::leastDistance(const Vec3& p) const
{
    return (length(p - centre) - reach) / widening;
}

double BodyField::at(const Vec3& p) const
{
    const Vec3 mirrored{std::abs(p.x), p.y, p.z};
    double value = 1.0;
    for (const Part& part : m_parts)
    {
        if (part.leastDistance(mirrored) > value + MAX_BLEND)
        {
            continue; // it would change nothing
        }
        const Reading reading = readingOf(part.limb, mirrored);
        // Thin limbs flow into each other over a shorter way than thick ones.
        value = smoothMinimum(value, reading.distance, std::min(0.6 * reading.radius, MAX_BLEND));
    }
    return value;
}

Vec3 BodyField::gradient(const Vec3& p) const
{
    constexpr double step = 0.001;
    const Vec3 dx{step, 0.0, 0.0};
    const Vec3 dy{0.0, step, 0.0};
    const Vec3 dz{0.0, 0.0, step};
    return Vec3{at(p + dx) - at(p - dx), at(p + dy) - at(p - dy), at(p + dz) - at(p - dz)} *
           (0.5 / step);
}

Vec3 BodyField::projected(const Vec3& p, double reach) const
{
    Vec3 result = p;
    double distance = at(result);
    for (int round = 0; round < 4 && std::abs(distance) > 1e-6; ++round)
    {
        const Vec3 slope = gradient(result);
        result = result - slope * (distance / std::max(dot(slope, slope), 0.05));
        distance = at(result);
    }
    const Vec3 move = result - p;
    const double size = length(move);
    return size <= reach ? result : p + move * (reach / size);
}

int BodyField::jointAt(const Vec3& p) const
{
    const auto nearest =
        std::min_element(m_parts.begin(), m_parts.end(),
                         [&](const Part& a, const Part& b)
                         { return readingOf(a.limb, p).distance < readingOf(b.limb, p).distance; });
    return nearest->limb.joint;
}

Surface makeSurface(const BodyField& field, const Vec3& low, const Vec3& high, double edge)
{
    // An odd number of cells from side to side keeps the middle between two of them.
    const double half = std::max(std::abs(low.x), std::abs(high.x));
    const double side = (std::floor(half / edge) + 1.5) * edge;
    return Grid(field, {-side, low.y, low.z}, {side, high.y, high.z}, edge).surface();
}

std::vector<std::vector<int>> neighbours(const Surface& surface)
{
    std::vector<std::vector<int>> result(surface.points.size());
    for (const Corners& triangle : surface.triangles)
    {
        for (std::size_t i = 0; i < 3; ++i)
        {
            std::vector<int>& around = result[static_cast<std::size_t>(triangle[i])];
            around.push_back(triangle[(i + 1) % 3]);
            around.push_back(triangle[(i + 2) % 3]);
        }
    }
    for (std::vector<int>& around : result)
    {
        std::sort(around.begin(), around.end());
        around.erase(std::unique(around.begin(), around.end()), around.end());
    }
    return result;
}

void relax(Surface& surface, const BodyField& field, int rounds)
{
    const std::vector<std::vector<int>> around = neighbours(surface);
    for (int round = 0; round < rounds; ++round)
    {
        std::vector<Vec3> moved;
        moved.reserve(surface.points.size());
        for (std::size_t i = 0; i < surface.points.size(); ++i)
        {
            const Vec3& p = surface.points[i];
            Vec3 sum;
            for (const int neighbour : around[i])
            {
                sum = sum + surface.points[static_cast<std::size_t>(neighbour)];
            }
            const Vec3 middle = sum * (1.0 / static_cast<double>(around[i].size()));
            const Vec3 target = between(p, middle, 0.5);
            moved.push_back(field.projected(target, 0.05));
        }
        surface.points.swap(moved);
    }
}

std::vector<Vec3> pointNormals(const Surface& surface)
{
    std::vector<Vec3> normals(surface.points.size());
    for (const Corners& triangle : surface.triangles)
    {
        const Vec3& a = surface.points[static_cast<std::size_t>(triangle[0])];
        const Vec3& b = surface.points[static_cast<std::size_t>(triangle[1])];
        const Vec3& c = surface.points[static_cast<std::size_t>(triangle[2])];
        const Vec3 weighted = cross(b - a, c - a);
        for (const int corner : triangle)
        {
            Vec3& normal = normals[static_cast<std::size_t>(corner)];
            normal = normal + weighted;
        }
    }
    std::transform(normals.begin(), normals.end(), normals.begin(), normalized);
    return normals;
}
} // namespace velmoran::generator
