#include "core/utils/Matrix.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <stdexcept>

namespace velmoran::core::utils
{
namespace
{
constexpr std::array<float, 16> IDENTITY = {1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f,
                                            0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f};

// "-1.00000255e-36": no float has a longer shortest text.
constexpr std::size_t LONGEST_FLOAT = 15;

std::size_t checkedIndex(int index)
{
    if (index < 0 || index > 15)
    {
        throw std::out_of_range("velmoran::core::utils::Matrix: index outside 0 to 15");
    }
    return static_cast<std::size_t>(index);
}
} // namespace

Matrix::Matrix() : m_values(IDENTITY) {}

Matrix::Matrix(bool identity) : m_values()
{
    if (identity)
    {
        m_values = IDENTITY;
    }
}

Matrix::Matrix(const float* sixteen) : m_values(IDENTITY)
{
    if (sixteen != nullptr)
    {
        std::copy_n(sixteen, m_values.size(), m_values.begin());
    }
}

float* Matrix::getMatrix()
{
    return m_values.data();
}

const float* Matrix::getMatrix() const
{
    return m_values.data();
}

float& Matrix::operator[](int index)
{
    return m_values[checkedIndex(index)];
}

const float& Matrix::operator[](int index) const
{
    return m_values[checkedIndex(index)];
}

std::string Matrix::toEventDataString() const
{
    std::array<char, 16 * (LONGEST_FLOAT + 1)> text;
    char* end = text.data();
    for (const float value : m_values)
    {
        if (end != text.data())
        {
            *end++ = ',';
        }
        end = std::to_chars(end, text.data() + text.size(), value).ptr;
    }
    return std::string(text.data(), end);
}
} // namespace velmoran::core::utils
