#include "bench/SpatialCases.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

namespace velmoran::bench
{
namespace
{
using Eigen::Vector3f;

constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float PI = 3.14159265F;

/// Möller and Trumbore's test in floats; infinite for a miss.
float meetsRay(const TrianglePoints& triangle, const RayPoints& ray)
{
    const Vector3f edge1 = triangle[1] - triangle[0];
    const Vector3f edge2 = triangle[2] - triangle[0];
    const Vector3f p = ray.direction.cross(edge2);
    const float inverse = 1.0F / edge1.dot(p);
    const Vector3f offset = ray.origin - triangle[0];
    const float u = offset.dot(p) * inverse;
    const Vector3f q = offset.cross(edge1);
    const float v = ray.direction.dot(q) * inverse;
    const float t = edge2.dot(q) * inverse;
    return u >= 0.0F && v >= 0.0F && u + v <= 1.0F && t >= 0.0F ? t : INFINITE;
}

Vector3f pointOfRing(unsigned int row, unsigned int column, unsigned int rows, unsigned int columns)
{
    const float around = 2.0F * PI * static_cast<float>(row % rows) / static_cast<float>(rows);
    const float turn =
        2.0F * PI * static_cast<float>(column % columns) / static_cast<float>(columns);
    const float radius = 0.35F + 0.05F * std::sin(5.0F * around) * std::cos(7.0F * turn) +
                         0.01F * std::sin(11.0F * around + 37.0F * turn);
    const float reach = 0.6F + radius * std::cos(around);
    return {reach * std::cos(turn), reach * std::sin(turn), radius * std::sin(around)};
}
} // namespace

bool meetsBox(const TrianglePoints& triangle, const Vector3f& centre, const Vector3f& half)
{
    const TrianglePoints p = {triangle[0] - centre, triangle[1] - centre, triangle[2] - centre};
    const Vector3f low = p[0].cwiseMin(p[1]).cwiseMin(p[2]);
    const Vector3f high = p[0].cwiseMax(p[1]).cwiseMax(p[2]);
    if ((low.array() > half.array()).any() || (high.array() < -half.array()).any())
    {
        return false;
    }
    const Vector3f normal = (p[1] - p[0]).cross(p[2] - p[0]);
    if (std::abs(normal.dot(p[0])) > normal.cwiseAbs().dot(half))
    {
        return false;
    }
    for (std::size_t i = 0; i < 3; ++i)
    {
        const Vector3f edge = p[(i + 1) % 3] - p[i];
        for (int axis = 0; axis < 3; ++axis)
        {
            const int x = (axis + 1) % 3;
            const int y = (axis + 2) % 3;
            const float one = edge[x] * p[i][y] - edge[y] * p[i][x];
            const float other = edge[x] * p[(i + 2) % 3][y] - edge[y] * p[(i + 2) % 3][x];
            const float reach = std::abs(edge[x]) * half[y] + std::abs(edge[y]) * half[x];
            if (std::min(one, other) > reach || std::max(one, other) < -reach)
            {
                return false;
            }
        }
    }
    return true;
}

std::vector<TrianglePoints> makeRing(std::int64_t triangles)
{
    const auto columns = static_cast<unsigned int>(std::sqrt(0.8 * static_cast<double>(triangles)));
    const auto rows = static_cast<unsigned int>(triangles) / (2 * columns);
    std::vector<TrianglePoints> ring;
    for (unsigned int row = 0; row < rows; ++row)
    {
        for (unsigned int column = 0; column < columns; ++column)
        {
            const Vector3f a = pointOfRing(row, column, rows, columns);
            const Vector3f b = pointOfRing(row, column + 1, rows, columns);
            const Vector3f c = pointOfRing(row + 1, column, rows, columns);
            const Vector3f d = pointOfRing(row + 1, column + 1, rows, columns);
            ring.push_back({a, c, b});
            ring.push_back({b, c, d});
        }
    }
    return ring;
}

std::vector<RayPoints> makeRays()
{
    std::mt19937 engine(3);
    std::normal_distribution<float> normal;
    const auto direction = [&]
    {
        const float x = normal(engine);
        const float y = normal(engine);
        return Vector3f(x, y, normal(engine)).normalized();
    };
    std::vector<RayPoints> rays;
    for (std::size_t i = 0; i < RAYS; ++i)
    {
        const Vector3f origin = 3.0F * direction();
        rays.push_back({origin, (direction() - origin).normalized()});
    }
    return rays;
}

double sumOf(const std::vector<float>& distances)
{
    return std::accumulate(distances.begin(), distances.end(), 0.0);
}

FlatOctree::FlatOctree(const std::vector<TrianglePoints>& triangles) : m_triangles(triangles)
{
    Vector3f min = triangles[0][0];
    Vector3f max = min;
    for (const TrianglePoints& triangle : triangles)
    {
        for (const Vector3f& point : triangle)
        {
            min = min.cwiseMin(point);
            max = max.cwiseMax(point);
        }
    }
    std::vector<std::uint32_t> all(triangles.size());
    std::iota(all.begin(), all.end(), 0U);
    m_cells.push_back({min, max, 0, 0, 0});
    divide(0, all, 0);
}

void FlatOctree::divide(std::uint32_t cell, const std::vector<std::uint32_t>& incoming, int depth)
{
    if (incoming.size() <= MAX_PRIMITIVES || depth > MAX_DEPTH)
    {
        m_cells[cell].firstEntry = static_cast<std::uint32_t>(m_entries.size());
        m_cells[cell].entryCount = static_cast<std::uint32_t>(incoming.size());
        m_entries.insert(m_entries.end(), incoming.begin(), incoming.end());
        return;
    }
    const Vector3f min = m_cells[cell].min;
    const Vector3f max = m_cells[cell].max;
    const Vector3f half = (max - min) * 0.25F;
    const auto firstChild = static_cast<std::uint32_t>(m_cells.size());
    m_cells[cell].firstChild = firstChild;
    std::array<Vector3f, 8> centres;
    for (unsigned int i = 0; i < 8; ++i)
    {
        const Vector3f side(static_cast<float>(i & 1U), static_cast<float>((i >> 1U) & 1U),
                            static_cast<float>(i >> 2U));
        const Vector3f low = min + side.cwiseProduct(2.0F * half);
        m_cells.push_back({low, low + 2.0F * half, 0, 0, 0});
        centres[i] = low + half;
    }
    const Vector3f middle = (min + max) * 0.5F;
    std::array<std::vector<std::uint32_t>, 8> lists;
    for (const std::uint32_t index : incoming)
    {
        const TrianglePoints& t = m_triangles[index];
        const Vector3f low = t[0].cwiseMin(t[1]).cwiseMin(t[2]);
        const Vector3f high = t[0].cwiseMax(t[1]).cwiseMax(t[2]);
        for (unsigned int i = 0; i < 8; ++i)
        {
            bool isReached = true;
            for (int axis = 0; axis < 3; ++axis)
            {
                const bool isHigh = ((i >> static_cast<unsigned int>(axis)) & 1U) != 0;
                isReached &= isHigh ? high[axis] >= middle[axis] : low[axis] <= middle[axis];
            }
            if (isReached && meetsBox(t, centres[i], half))
            {
                lists[i].push_back(index);
            }
        }
    }
    for (unsigned int i = 0; i < 8; ++i)
    {
        divide(firstChild + i, lists[i], depth + 1);
    }
}

float FlatOctree::nearest(const RayPoints& ray) const
{
    float found = INFINITE;
    visit(0, ray, ray.direction.cwiseInverse(), found);
    return found < INFINITE ? found : 0.0F;
}

void FlatOctree::visit(std::uint32_t cell, const RayPoints& ray, const Vector3f& inverse,
                       float& nearest) const
{
    const Cell& visited = m_cells[cell];
    const Vector3f atMin = (visited.min - ray.origin).cwiseProduct(inverse);
    const Vector3f atMax = (visited.max - ray.origin).cwiseProduct(inverse);
    const float entry = atMin.cwiseMin(atMax).maxCoeff();
    const float exit = atMin.cwiseMax(atMax).minCoeff();
    if (exit < std::max(entry, 0.0F) || entry > nearest)
    {
        return;
    }
    for (std::uint32_t i = 0; i < visited.entryCount; ++i)
    {
        const float distance = meetsRay(m_triangles[m_entries[visited.firstEntry + i]], ray);
        nearest = std::min(nearest, distance);
    }
    if (visited.firstChild == 0)
    {
        return;
    }
    const unsigned int first = (inverse.x() < 0.0F ? 1U : 0U) | (inverse.y() < 0.0F ? 2U : 0U) |
                               (inverse.z() < 0.0F ? 4U : 0U);
    for (unsigned int i = 0; i < 8; ++i)
    {
        visit(visited.firstChild + (i ^ first), ray, inverse, nearest);
    }
}

std::vector<float> nearestDistances(const FlatOctree& octree)
{
    std::vector<float> distances;
    for (const RayPoints& ray : makeRays())
    {
        distances.push_back(octree.nearest(ray));
    }
    return distances;
}
} // namespace velmoran::bench
