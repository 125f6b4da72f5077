#include "examples/scenetool/Canvas.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmoran::examples
{
namespace
{
/// Twice the area of a triangle, seen from the front; negative when it turns the other way.
double doubleArea(const Eigen::Vector2d& a, const Eigen::Vector2d& b, const Eigen::Vector2d& c)
{
    return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

/// The pixels whose centres lie from `low` to `high`, of `size`: the first and one behind the last.
std::array<std::size_t, 2> pixelRange(double low, double high, std::size_t size)
{
    const auto limit = static_cast<double>(size);
    return {static_cast<std::size_t>(std::clamp(std::ceil(low - 0.5), 0.0, limit)),
            static_cast<std::size_t>(std::clamp(std::floor(high + 0.5), 0.0, limit))};
}
} // namespace

Canvas::Canvas(std::size_t width, std::size_t height)
    : m_width(width),
      m_height(height),
      m_depths(width * height, -std::numeric_limits<double>::infinity()),
      m_colours(width * height, Eigen::Vector3f::Ones())
{
}

void Canvas::drawTriangle(const std::array<Eigen::Vector3d, 3>& corners,
                          const Eigen::Vector3d& colour)
{
    const Eigen::Vector2d a = corners[0].head<2>();
    const Eigen::Vector2d b = corners[1].head<2>();
    const Eigen::Vector2d c = corners[2].head<2>();
    const double area = doubleArea(a, b, c);
    if (!std::isfinite(area) || area == 0.0)
    {
        return;
    }
    const Eigen::Vector2d low = a.cwiseMin(b).cwiseMin(c);
    const Eigen::Vector2d high = a.cwiseMax(b).cwiseMax(c);
    const auto [left, right] = pixelRange(low.x(), high.x(), m_width);
    const auto [top, bottom] = pixelRange(low.y(), high.y(), m_height);
    for (std::size_t y = top; y < bottom; ++y)
    {
        for (std::size_t x = left; x < right; ++x)
        {
            const Eigen::Vector2d p(static_cast<double>(x) + 0.5, static_cast<double>(y) + 0.5);
            // How much of each corner there is in p.
            const double u = doubleArea(p, b, c) / area;
            const double v = doubleArea(a, p, c) / area;
            const double w = 1.0 - u - v;
            const double depth = u * corners[0].z() + v * corners[1].z() + w * corners[2].z();
            const std::size_t pixel = y * m_width + x;
            if (u >= 0.0 && v >= 0.0 && w >= 0.0 && depth > m_depths[pixel])
            {
                m_depths[pixel] = depth;
                m_colours[pixel] = colour.cast<float>();
            }
        }
    }
}

Image Canvas::shrink(std::size_t factor) const
{
    Image image;
    image.width = m_width / factor;
    image.height = m_height / factor;
    for (std::size_t y = 0; y < image.height; ++y)
    {
        for (std::size_t x = 0; x < image.width; ++x)
        {
            Eigen::Vector3f sum = Eigen::Vector3f::Zero();
            for (std::size_t i = 0; i < factor * factor; ++i)
            {
                sum += m_colours[(y * factor + i / factor) * m_width + x * factor + i % factor];
            }
            const Eigen::Vector3f mean = sum / static_cast<float>(factor * factor);
            for (const float each : mean)
            {
                image.pixels.push_back(
                    static_cast<unsigned char>(std::lround(std::clamp(each, 0.0F, 1.0F) * 255.0F)));
            }
        }
    }
    return image;
}
} // namespace velmoran::examples
