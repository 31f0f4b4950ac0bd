#include <gtest/gtest.h>

#include <vector>

#include "numeric/line_fit.hpp"

namespace vialto::test {

TEST(LineFit, FindsTheLineOfLeastSquares) {
    struct Case {
        std::vector<float> x;
        std::vector<float> y;
        float intercept;
        float slope;
    };
    const Case cases[] = {
        {{0, 1, 2, 3}, {1, 3, 5, 7}, 1.0F, 2.0F},
        {{0, 1, 2}, {0, 3, 0}, 1.0F, 0.0F},
        {{1, 2, 3, 4}, {1, 0, 0, 3}, -0.5F, 0.6F},
    };
    for (const Case& c : cases) {
        const Line line = fit_line(c.x, c.y);
        EXPECT_EQ(line.intercept, c.intercept);
        EXPECT_EQ(line.slope, c.slope);
    }
}

// Sums of squares in 32 bits would lose the slope against the height of the road above the sea.
TEST(LineFit, KeepsASmallSlopeFarFromTheOrigin) {
    std::vector<float> x(100001);
    std::vector<float> y(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<float>(i);
        y[i] = 4096.0F + static_cast<float>(i) / 1024.0F;
    }
    const Line line = fit_line(x, y);
    EXPECT_EQ(line.intercept, 4096.0F);
    EXPECT_EQ(line.slope, 1.0F / 1024.0F);
}

} // namespace vialto::test
