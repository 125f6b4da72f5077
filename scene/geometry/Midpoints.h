#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace velmoran::scene
{
// How the value in the middle of an edge follows from the values at its ends. A value that
// is not finite may give a NaN, finite ones never do.
// HAS_SEAMS: whether the triangles at an edge may have other values there.

/// Positions, whose values tell which edges are the same.
struct PositionMidpoint
{
    static constexpr std::size_t WIDTH = 3;
    static constexpr bool HAS_SEAMS = false;

    /// The last bit depends on the direction.
    static void write(const float* from, const float* to, float* middle)
    {
        for (std::size_t i = 0; i < WIDTH; ++i)
        {
            middle[i] = from[i] + (to[i] - from[i]) * 0.5F;
        }
    }
};

/// Unit normals; those of opposite ends give zeros.
struct NormalMidpoint
{
    static constexpr std::size_t WIDTH = 3;
    static constexpr bool HAS_SEAMS = true;

    static void write(const float* from, const float* to, float* middle)
    {
        // In double precision no sum or square of floats runs over or vanishes.
        double sum[WIDTH];
        double square = 0.0;
        for (std::size_t i = 0; i < WIDTH; ++i)
        {
            sum[i] = static_cast<double>(from[i]) + static_cast<double>(to[i]);
            square += sum[i] * sum[i];
        }
        const double scale = square == 0.0 ? 0.0 : 1.0 / std::sqrt(square);
        std::transform(sum, sum + WIDTH, middle,
                       [scale](double value) { return static_cast<float>(value * scale); });
    }
};

/// Texture coordinates.
struct TextureMidpoint
{
    static constexpr std::size_t WIDTH = 2;
    static constexpr bool HAS_SEAMS = true;

    static void write(const float* from, const float* to, float* middle)
    {
        for (std::size_t i = 0; i < WIDTH; ++i)
        {
            middle[i] = from[i] * 0.5F + to[i] * 0.5F;
        }
    }
};
} // namespace velmoran::scene
