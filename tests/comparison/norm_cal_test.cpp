#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "comparison/norm_cal.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

TEST(NormCal, SegmentLosesMeanAndScaleOfItsMiddle) {
    struct Case {
        std::int32_t i_trim;
        std::vector<float> segment, normalised;
    };
    const Case cases[] = {
        {0, {7.0F, 1.0F, 1.0F, 7.0F}, {1.0F, -1.0F, -1.0F, 1.0F}}, // mean 4, rms 3
        {1, {100.0F, 7.0F, 1.0F, -20.0F}, {32.0F, 1.0F, -1.0F, -8.0F}},
    };
    float rms = 0.0F;
    for (const Case& c : cases) {
        std::vector<float> segment = c.segment;
        EXPECT_EQ(norm_cal(c.i_trim, segment, rms), success);
        EXPECT_EQ(rms, 3.0F);
        EXPECT_EQ(segment, c.normalised);
    }
}

TEST(NormCal, TrimsMayLeaveNothingButNotLess) {
    reset_event();
    std::vector<float> segment{1.0F, 2.0F};
    float rms = 5.0F;
    EXPECT_EQ(norm_cal(2, segment, rms), failure);
    EXPECT_EQ(summary_of_current_event(), "101 2 norm_cal: x_num_act should not be zero");
    EXPECT_TRUE(rms == 5.0F && segment[0] == 1.0F && segment[1] == 2.0F);
    EXPECT_EQ(norm_cal(1, segment, rms), success);
    EXPECT_TRUE(std::isnan(rms) && std::isnan(segment[0]) && std::isnan(segment[1]));
}

} // namespace vialto::test
