#pragma once

#include "core/Export.h"

#include <array>
#include <string>

namespace velmoran::core::utils
{
/// A 4x4 matrix: 16 floats, kept in the order in which they are given.
///
/// The scene library gives and expects them column by column: float 4 c + r is
/// row r of column c, so floats 12, 13 and 14 are the translation.
class VELMORAN_CORE_EXPORT Matrix
{
public:
    /// The identity.
    Matrix();

    /// The identity when `identity` is true, 16 zeros otherwise.
    explicit Matrix(bool identity);

    /// Copies 16 floats from `sixteen`; a null pointer gives the identity.
    explicit Matrix(const float* sixteen);

    /// The 16 floats; valid as long as the matrix.
    float* getMatrix();
    const float* getMatrix() const;

    /// Float `index`; throws std::out_of_range unless it is 0 to 15.
    float& operator[](int index);
    const float& operator[](int index) const;

    /// The 16 floats in stored order joined by ",", as the last fields of an event's
    /// data. Each is the shortest text that reads back to the same float ("nan",
    /// "-nan", "inf" or "-inf" if it is not finite), whatever the locale.
    std::string toEventDataString() const;

private:
    std::array<float, 16> m_values;
};
} // namespace velmoran::core::utils
