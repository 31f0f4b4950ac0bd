#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "comparison/preparation.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

// The number of points and the samples, or the event.
std::string told(std::int64_t points, const Road& samples) {
    const std::string event = summary_of_current_event();
    return event.empty() ? std::to_string(points) + testing::PrintToString(samples) : event;
}

std::string trimmed(std::int32_t if_padding, std::int32_t first, std::int32_t last,
                    std::int32_t main_filter = 0, std::int32_t end = 0) {
    reset_event();
    tProfinfo info{first, last, -7, -7, 0.025F, {main_filter, 0, 0, 0, 0, 0, 0, 0, 0, 0, end}};
    Road filtered;
    (void)prefiltering(Road{10, 11, 12, 13, 14, 15}, if_padding, info, filtered);
    return told(info.i_filt_leadout + 1, filtered);
}

std::string resampled(const Road& profile, float interval, float step) {
    reset_event();
    Road room;
    PreparedProfile result;
    (void)resampling(profile, interval, step, room, result);
    return told(result.count, {result.samples.begin(), result.samples.end()});
}

} // namespace

TEST(ComparisonStep, IsTheFirstFractionThatTheLargerIntervalHoldsWhole) {
    EXPECT_FLOAT_EQ(upsamp_step(0.025F, 0.05F), 0.025F);
    EXPECT_FLOAT_EQ(upsamp_step(0.04F, 0.03F), 0.01F);
    EXPECT_FLOAT_EQ(upsamp_step(0.0015F, 0.004515F), 0.0015F);  // quotient 3.01 is near 3,
    EXPECT_FLOAT_EQ(upsamp_step(0.0015F, 0.004485F), 0.00508F); // 2.99 is not
    EXPECT_FLOAT_EQ(upsamp_step(0.001F, 0.001F), 0.00508F);     // no step of 1 mm or less
    EXPECT_FLOAT_EQ(upsamp_step(0.001F, 3.41e35F), 0.00508F);   // infinite in mm
}

TEST(Padding, ReflectsOddlyAboutBothEnds) {
    Road padded(7);
    EXPECT_EQ(profpad(Road{1, 2, 4}, padded), success);
    reset_event();
    EXPECT_EQ(profpad(Road{1, 2}, padded), failure);
    EXPECT_EQ(summary_of_current_event(),
              "101 2 profpad: Padded array should be (3 times - 2) of the org array");
    EXPECT_EQ(padded, (Road{-2, 0, 1, 2, 4, 6, 7}));
}

TEST(Trimming, SectionMovesToTheFrontAndLosesItsLastPointsAtTheEnd) {
    EXPECT_EQ(trimmed(2, 0, 5), "5{ 10, 11, 12, 13, 14, 15 }");
    EXPECT_EQ(trimmed(1, 0, 5), "4{ 10, 11, 12, 13, 14, 0 }");
    EXPECT_EQ(trimmed(1, 2, 3), "2{ 12, 13, 12, 13, 0, 0 }");
    EXPECT_EQ(trimmed(2, 4, 1), "0{ 10, 11, 0, 0, 0, 0 }");
    EXPECT_EQ(trimmed(2, INT32_MAX, INT32_MIN), "0{ 0, 0, 0, 0, 0, 0 }");
}

TEST(Trimming, FilterThatEndsOutsideTheProfileFails) {
    // The Butterworth filter of sub-type 0 leaves iEndElemIdx as the host set it.
    const auto ended = [](std::int32_t end) { return trimmed(1, 0, 5, idx_filttyp_bwfilt, end); };
    EXPECT_EQ(ended(INT32_MIN), "0{ 0, 0, 0, 0, 0, 0 }");
    EXPECT_EQ(ended(16), "5{ 0, 0, 0, 0, 0, 0 }");
    EXPECT_EQ(ended(17), "101 2 prefiltering: xDataArrayRefFiltlc size exceeded");
    EXPECT_EQ(ended(21), ended(17));
    EXPECT_EQ(ended(22), "101 2 prefiltering: xDataArrayPadFilt size exceeded");
}

TEST(Resampling, InterpolatesAndHoldsTheLastSample) {
    const Road profile{0, 12, 24, 48};
    EXPECT_EQ(resampled(profile, 0.5F, 0.25F), "7{ 0, 6, 12, 18, 24, 36, 48 }");
    EXPECT_EQ(resampled(profile, 0.75F, 0.5F), "5{ 0, 8, 16, 24, 40 }");
    EXPECT_EQ(resampled({}, 1.0F, 2.0F), "1{ 0 }");
    EXPECT_EQ(resampled({}, 1.0F, 1.0F), "0{}");
    EXPECT_EQ(resampled({}, 2.0F, 0.5F), "-3{}");
    EXPECT_EQ(resampled(profile, 1.0F, 1.0e-9F),
              "100 2 resampling: the resampled profile is too long");
}

} // namespace vialto::test
