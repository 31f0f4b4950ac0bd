#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "comparison/preparation.hpp"
#include "support/cases.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

// Of the samples first to last of a road, without padding (2) or with it (1).
void trims(const Claim& claim, std::int32_t if_padding, std::int32_t first, std::int32_t last,
           std::int64_t points, const Road& samples, const tFiltCon& filter = {},
           const std::string& event = "") {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    reset_event();
    tProfinfo info{first, last, -7, -7, 0.025F, filter};
    Road filtered;
    (void)prefiltering(Road{10, 11, 12, 13, 14, 15}, if_padding, info, filtered);
    EXPECT_EQ(summary_of_current_event(), event);
    EXPECT_EQ(info.i_filt_leadout + 1, points);
    EXPECT_TRUE(same(filtered, samples));
}

void resamples(const Claim& claim, const Road& profile, float interval, float step,
               std::int64_t points, const Road& samples) {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    Road room;
    PreparedProfile result;
    EXPECT_EQ(resampling(profile, interval, step, room, result), success);
    EXPECT_EQ(result.count, points);
    EXPECT_TRUE(same(Road(result.samples.begin(), result.samples.end()), samples));
}

TEST(ComparisonStep, IsTheFirstFractionThatTheLargerIntervalHoldsWhole) {
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
    trims("the whole road", 2, 0, 5, 5, {10, 11, 12, 13, 14, 15});
    trims("the whole road, padded", 1, 0, 5, 4, {10, 11, 12, 13, 14, 0});
    trims("two samples, padded", 1, 2, 3, 2, {12, 13, 12, 13, 0, 0});
    trims("reversed", 2, 4, 1, 0, {10, 11, 0, 0, 0, 0});
    trims("far beyond", 2, INT32_MAX, INT32_MIN, 0, {0, 0, 0, 0, 0, 0});
}

TEST(Trimming, FilterThatEndsOutsideTheProfileFails) {
    // The Butterworth filter of sub-type 0 leaves iEndElemIdx as the host set it.
    const auto ends = [](std::int32_t end, std::int32_t points, const std::string& event) {
        const tFiltCon filter{idx_filttyp_bwfilt, 0, 0, 0, 0, 0, 0, 0, 0, 0, end};
        trims(std::to_string(end).c_str(), 1, 0, 5, points, Road(6), filter, event);
    };
    ends(INT32_MIN, 0, "");
    ends(16, 5, "");
    ends(17, -6, "101 2 prefiltering: xDataArrayRefFiltlc size exceeded");
    ends(22, -6, "101 2 prefiltering: xDataArrayPadFilt size exceeded");
}

TEST(Resampling, InterpolatesAndHoldsTheLastSample) {
    const Road profile{0, 12, 24, 48};
    resamples("half the interval", profile, 0.5F, 0.25F, 7, {0, 6, 12, 18, 24, 36, 48});
    resamples("two thirds of the interval", profile, 0.75F, 0.5F, 5, {0, 8, 16, 24, 40});
    resamples("nothing, at twice the interval", {}, 1.0F, 2.0F, 1, {0});
    resamples("nothing, at a quarter of the interval", {}, 2.0F, 0.5F, -3, {});
    reset_event();
    Road room;
    PreparedProfile result;
    EXPECT_EQ(resampling(profile, 1.0F, 1.0e-9F, room, result), failure);
    EXPECT_EQ(summary_of_current_event(), "100 2 resampling: the resampled profile is too long");
}

} // namespace
} // namespace vialto::test
