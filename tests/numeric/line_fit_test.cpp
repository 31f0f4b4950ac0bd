#include <gtest/gtest.h>

#include <vector>

#include "numeric/line_fit.hpp"

namespace vialto::test {

TEST(LineFit, FindsTheLineOfLeastSquaresFarFromTheOriginToo) {
    const std::vector<float> four{1, 2, 3, 4};
    const std::vector<float> rising{1, 0, 0, 3};
    EXPECT_EQ(fit_line(four, rising).intercept, -0.5F);
    EXPECT_EQ(fit_line(four, rising).slope, 0.6F);

    // Sums of squares in 32 bits would lose the slope against the height of the road above the sea.
    std::vector<float> x;
    std::vector<float> y;
    for (int i = 0; i <= 100000; ++i) {
        x.push_back(static_cast<float>(i));
        y.push_back(4096.0F + x.back() / 1024.0F);
    }
    EXPECT_EQ(fit_line(x, y).intercept, 4096.0F);
    EXPECT_EQ(fit_line(x, y).slope, 1.0F / 1024.0F);
    EXPECT_EQ(fit_two_lines(x, x, y)[1].slope, 1.0F / 1024.0F);
}

} // namespace vialto::test
