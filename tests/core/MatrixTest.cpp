#include "core/utils/Matrix.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <stdexcept>

using velmoran::core::utils::Matrix;

TEST(Matrix, KeepsSixteenFloatsInTheOrderGivenAndRefusesOtherIndices)
{
    const float given[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15.5f};
    Matrix matrix(given);
    EXPECT_EQ(std::memcmp(matrix.getMatrix(), given, sizeof given), 0);

    matrix[12] = -3.0f;
    EXPECT_EQ(matrix.getMatrix()[12], -3.0f);
    EXPECT_EQ(Matrix(matrix)[15], 15.5f);
    for (const int index : {-1, 16, std::numeric_limits<int>::min()})
    {
        EXPECT_THROW(matrix[index], std::out_of_range) << index;
    }
}

TEST(Matrix, TextIsTheShortestThatReadsBackToTheSameFloats)
{
    const char* const identity = "1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1";
    EXPECT_EQ(Matrix().toEventDataString(), identity);
    EXPECT_EQ(Matrix(true).toEventDataString(), identity);
    EXPECT_EQ(Matrix(static_cast<const float*>(nullptr)).toEventDataString(), identity);
    EXPECT_EQ(Matrix(false).toEventDataString(), "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0");

    // Sign, nine digits, point and exponent: no float has a longer text. Sixteen must fit.
    Matrix longest;
    for (int i = 0; i < 16; ++i)
    {
        longest[i] = -1.00000255e-36f;
    }
    EXPECT_EQ(longest.toEventDataString().size(), 16u * 15u + 15u);

    using Limits = std::numeric_limits<float>;
    const float values[16] = {
        0.1f, -0.0f, 1.0f / 3.0f, Limits::max(), Limits::denorm_min(), -Limits::infinity()};
    const Matrix odd(values);
    EXPECT_EQ(odd.toEventDataString(),
              "0.1,-0,0.33333334,3.4028235e+38,1e-45,-inf,0,0,0,0,0,0,0,0,0,0");
}
