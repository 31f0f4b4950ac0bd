#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "comparison/norm_cal.hpp"

namespace vialto::test {

class NormCal : public testing::Test {
protected:
    void SetUp() override { reset_event(); }
};

TEST_F(NormCal, SegmentLosesItsMeanAndItsScale) {
    std::vector<float> segment{7.0F, 1.0F, 1.0F, 7.0F}; // mean 4, rms 3
    float rms = 0.0F;
    ASSERT_EQ(norm_cal(0, segment, rms), success);
    EXPECT_EQ(rms, 3.0F);
    EXPECT_EQ(segment, (std::vector<float>{1.0F, -1.0F, -1.0F, 1.0F}));
}

TEST_F(NormCal, TrimmedEndsAreNormalisedWithTheMiddle) {
    std::vector<float> segment{100.0F, 7.0F, 1.0F, -20.0F};
    float rms = 0.0F;
    ASSERT_EQ(norm_cal(1, segment, rms), success);
    EXPECT_EQ(rms, 3.0F);
    EXPECT_EQ(segment, (std::vector<float>{32.0F, 1.0F, -1.0F, -8.0F}));
}

TEST_F(NormCal, FlatSegmentBecomesNaNWithAnRmsOfZero) {
    std::vector<float> segment(5, 2.5F);
    float rms = -1.0F;
    ASSERT_EQ(norm_cal(0, segment, rms), success);
    EXPECT_EQ(rms, 0.0F);
    for (const float sample : segment) {
        EXPECT_TRUE(std::isnan(sample));
    }
}

TEST_F(NormCal, TrimsThatLeaveNothingDivideByZero) {
    std::vector<float> segment{1.0F, 2.0F};
    float rms = 0.0F;
    ASSERT_EQ(norm_cal(1, segment, rms), success);
    EXPECT_TRUE(std::isnan(rms));
    EXPECT_TRUE(std::isnan(segment[0]) && std::isnan(segment[1]));
}

TEST_F(NormCal, TrimsBeyondTheCountFailAndTouchNothing) {
    std::vector<float> segment{1.0F, 2.0F, 4.0F};
    const std::vector<float> before = segment;
    float rms = -1.0F;
    EXPECT_EQ(norm_cal(2, segment, rms), failure);
    EXPECT_EQ(segment, before);
    EXPECT_EQ(rms, -1.0F);
    EXPECT_EQ(current_event().description.trimmed(), "x_num_act should not be zero");
    EXPECT_EQ(current_event().routine.trimmed(), "norm_cal");
    EXPECT_EQ(current_event().error_code, error_code_analysis);
    EXPECT_EQ(current_event().error_type, recoverable_with_failure);
}

} // namespace vialto::test
