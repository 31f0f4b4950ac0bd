#include <gtest/gtest.h>

#include <vector>

#include "numeric/line_fit.hpp"

namespace vialto::test {

TEST(LineFit, FindsTheLineOfLeastSquaresFarFromTheOriginToo) {
    const Line line = fit_line(std::vector<float>{1, 2, 3, 4}, std::vector<float>{1, 0, 0, 3});
    EXPECT_EQ(line.intercept, -0.5F);
    EXPECT_EQ(line.slope, 0.6F);

    // Sums of squares in 32 bits would lose the slope against the height of the road above the sea.
    std::vector<float> x;
    std::vector<float> y;
    for (int i = 0; i <= 100000; ++i) {
        x.push_back(static_cast<float>(i));
        y.push_back(4096.0F + x.back() / 1024.0F);
    }
    EXPECT_EQ(fit_line(x, y).intercept, 4096.0F);
    EXPECT_EQ(fit_line(x, y).slope, 1.0F / 1024.0F);
}

} // namespace vialto::test
