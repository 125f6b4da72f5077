#pragma once

#include "core/Forward.h"

#include <array>
#include <cstddef>
#include <stdexcept>

namespace velmoran::core::utils
{
/// A short vector of N components, e.g. a position, an axis or a scale.
///
/// A default-constructed vector holds N zeros. One made from its components
/// holds these and N zeros behind them (x, y, z, 0, 0, 0), which can be read and
/// written like any element but belong to no component.
template <typename T, int N>
class Vector
{
    static_assert(N > 0, "a vector has at least one component");

public:
    Vector() : m_elements(), m_size(COMPONENTS) {}

    /// Three components, for vectors of three only.
    Vector(T x, T y, T z) : m_elements{{x, y, z}}, m_size(2 * COMPONENTS)
    {
        static_assert(N == 3, "three values make a vector of three components");
    }

    /// Element `index`; throws std::out_of_range when nothing is stored there.
    T& operator[](std::size_t index)
    {
        requireElement(index);
        return m_elements[index];
    }
    const T& operator[](std::size_t index) const
    {
        requireElement(index);
        return m_elements[index];
    }

    /// Writes the component-wise minimum of `a` and `b` into `out`, which may be
    /// one of them. Where two components tie or can't be compared, that of `b`
    /// is taken.
    static void min(Vector& out, const Vector& a, const Vector& b)
    {
        for (std::size_t i = 0; i < COMPONENTS; ++i)
        {
            out.m_elements[i] =
                b.m_elements[i] > a.m_elements[i] ? a.m_elements[i] : b.m_elements[i];
        }
    }

    /// Writes the component-wise maximum, with the rules of `min`.
    static void max(Vector& out, const Vector& a, const Vector& b)
    {
        for (std::size_t i = 0; i < COMPONENTS; ++i)
        {
            out.m_elements[i] =
                a.m_elements[i] > b.m_elements[i] ? a.m_elements[i] : b.m_elements[i];
        }
    }

    /// Equal when all components are; what stands behind them does not count.
    friend bool operator==(const Vector& a, const Vector& b)
    {
        for (std::size_t i = 0; i < COMPONENTS; ++i)
        {
            if (!(a.m_elements[i] == b.m_elements[i]))
            {
                return false;
            }
        }
        return true;
    }
    friend bool operator!=(const Vector& a, const Vector& b) { return !(a == b); }

private:
    static constexpr std::size_t COMPONENTS = static_cast<std::size_t>(N);

    void requireElement(std::size_t index) const
    {
        if (index >= m_size)
        {
            throw std::out_of_range("velmoran::core::utils::Vector: no such element");
        }
    }

    // No operation stores more than 2 N elements, so they stand inline and their
    // number beside them: transformations hold several vectors, and copying one
    // allocates nothing.
    std::array<T, 2 * COMPONENTS> m_elements; ///< zero from m_size on
    std::size_t m_size;                       ///< elements that can be accessed
};
} // namespace velmoran::core::utils
