#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>

#include "numeric/clock.hpp"
#include "numeric/inverse.hpp"
#include "numeric/rounding.hpp"

namespace vialto {
namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(Rounding, TruncatesTowardsZeroAndRoundsHalvesAway) {
    struct Case {
        float value;
        std::int32_t truncated;
        std::int32_t nearest;
    };
    const Case cases[] = {
        {0.0F, 0, 0},
        {0.49999997F, 0, 0},
        {0.5F, 0, 1},
        {-0.5F, 0, -1},
        {1.5F, 1, 2},
        {2.5F, 2, 3},
        {-2.5F, -2, -3},
        {-2.49F, -2, -2},
        {8388609.0F, 8388609, 8388609},
        {2147483520.0F, 2147483520, 2147483520},
        {2147483648.0F, highest, highest},
        {-2147483648.0F, lowest, lowest},
        {3e38F, highest, highest},
        {-infinity, lowest, lowest},
        {std::nanf(""), 0, 0},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(truncate(c.value), c.truncated) << c.value;
        EXPECT_EQ(nint(c.value), c.nearest) << c.value;
    }
    EXPECT_EQ(truncate(2147483647.9), highest);
    EXPECT_EQ(nint(-2147483648.6), lowest);
}

TEST(Inverse, TimesItsMatrixIsUnity) {
    // The second needs its rows exchanged at both of its first two pivots.
    const SquareMatrix<3> matrices[] = {
        {{{4.0F, 1.0F, 0.0F}, {1.0F, 3.0F, 1.0F}, {0.0F, 1.0F, 2.0F}}},
        {{{0.0F, 0.0F, 2.0F}, {1.0F, 0.0F, 3.0F}, {5.0F, 4.0F, 1.0F}}},
    };
    for (const SquareMatrix<3>& matrix : matrices) {
        SquareMatrix<3> inverse{};
        ASSERT_EQ(invert(matrix, inverse), inverse_found);
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j) {
                float sum = 0.0F;
                for (std::size_t k = 0; k < 3; ++k) {
                    sum += matrix[i][k] * inverse[k][j];
                }
                EXPECT_NEAR(sum, i == j ? 1.0F : 0.0F, 1e-6F);
            }
        }
    }
}

TEST(Inverse, SingularMatrixHasACodeAndLeavesTheResult) {
    const SquareMatrix<2> matrices[] = {
        {{{1.0F, 2.0F}, {2.0F, 4.0F}}},
        {{{0.0F, 0.0F}, {0.0F, 1.0F}}},
        {{{infinity, 1.0F}, {1.0F, 1.0F}}},
        {{{std::nanf(""), 1.0F}, {1.0F, 1.0F}}},
    };
    for (const SquareMatrix<2>& matrix : matrices) {
        SquareMatrix<2> inverse{};
        inverse[1][0] = 7.0F;
        EXPECT_EQ(invert(matrix, inverse), matrix_is_singular);
        EXPECT_EQ(inverse[1][0], 7.0F);
    }
}

TEST(Clock, TellsAPossibleDateAndTime) {
    const auto [date, time] = current_date_and_time();
    EXPECT_GE(date.year, 1970);
    EXPECT_TRUE(date.month >= 1 && date.month <= 12 && date.day >= 1 && date.day <= 31);
    EXPECT_TRUE(time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59);
}

} // namespace
} // namespace vialto
