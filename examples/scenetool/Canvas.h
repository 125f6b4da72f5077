#pragma once

#include <Eigen/Core>

#include <array>
#include <cstddef>
#include <vector>

namespace velmoran::examples
{
/// A picture of rows from the top, three bytes a pixel: red, green and blue.
struct Image
{
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<unsigned char> pixels;
};

/// A white surface to draw on, where what is nearer hides what is farther.
class Canvas
{
public:
    Canvas(std::size_t width, std::size_t height);

    /// Fills a triangle with one colour, from 0 to 1 each. Corners in pixels, x to the right, y
    /// down, z toward the viewer; what lies beside the surface is cut off. Nothing is drawn
    /// when a number is none, or without area.
    void drawTriangle(const std::array<Eigen::Vector3d, 3>& corners, const Eigen::Vector3d& colour);

    /// The surface at one `factor`-th of its size, which divides its sides: each pixel the mean of
    /// a square.
    Image shrink(std::size_t factor) const;

private:
    std::size_t m_width;
    std::size_t m_height;
    std::vector<double> m_depths;           ///< by pixel
    std::vector<Eigen::Vector3f> m_colours; ///< by pixel
};
} // namespace velmoran::examples
