#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "numeric/inverse.hpp"
#include "numeric/rounding.hpp"

namespace vialto {
namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
constexpr float infinity = std::numeric_limits<float>::infinity();
const float nan = std::nanf("");

TEST(Rounding, TruncatesTowardsZeroAndRoundsHalvesAway) {
    const struct {
        float value;
        std::int32_t truncated, nearest;
    } cases[] = {
        {0.49999997F, 0, 0},
        {0.5F, 0, 1},
        {-0.5F, 0, -1},
        {2.5F, 2, 3},
        {-2.49F, -2, -2},
        {8388609.0F, 8388609, 8388609},
        {2147483648.0F, highest, highest},
        {-2147483648.0F, lowest, lowest},
        {-infinity, lowest, lowest},
        {nan, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(truncate(c.value), c.truncated) << c.value;
        EXPECT_EQ(nint(c.value), c.nearest) << c.value;
    }
    EXPECT_EQ(truncate(2147483647.9), highest);
    EXPECT_EQ(nint(-2147483648.6), lowest);
    EXPECT_EQ(nint(0.49999999999999994), 0);
}

TEST(Inverse, IsExactWhereItsNumbersAreAndUntouchedWhereThereIsNone) {
    using Matrix = SquareMatrix<3>;
    constexpr Matrix untouched{{{7.0F}}};
    constexpr float tiny = 0x1p-30F;
    const struct {
        Matrix matrix, inverse;
    } cases[] = {
        // Rows are exchanged at both of the first two pivots.
        {{{{0, 0, 2}, {4, 8, 0}, {1, 4, 0}}}, {{{0, 0.5F, -1}, {0, -0.125F, 0.5F}, {0.5F, 0, 0}}}},
        // Elimination by the tiny element would lose the other row.
        {{{{tiny, 1, 0}, {1, 1, 0}, {0, 0, 4}}}, {{{-1, 1, 0}, {1, -tiny, 0}, {0, 0, 0.25F}}}},
        {{{{1, 2, 0}, {2, 4, 0}, {0, 0, 1}}}, untouched},
        {{{{0, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, untouched},
        {{{{infinity, 1, 0}, {1, 1, 0}, {0, 0, 1}}}, untouched},
        {{{{nan, 1, 0}, {1, 1, 0}, {0, 0, 1}}}, untouched},
    };
    for (const auto& c : cases) {
        Matrix inverse = untouched;
        EXPECT_EQ(invert(c.matrix, inverse),
                  c.inverse == untouched ? matrix_is_singular : inverse_found);
        EXPECT_EQ(inverse, c.inverse);
    }
}

} // namespace
} // namespace vialto
