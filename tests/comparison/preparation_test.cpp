#include <gtest/gtest.h>

#include <cfloat>
#include <string>
#include <vector>

#include "comparison/preparation.hpp"
#include "support/current_event.hpp"

namespace vialto::test {

using Road = std::vector<float>;

TEST(ComparisonStep, IsTheFirstFractionThatTheLargerIntervalHoldsWhole) {
    EXPECT_FLOAT_EQ(upsamp_step(0.025F, 0.05F), 0.025F);
    EXPECT_FLOAT_EQ(upsamp_step(0.05F, 0.025F), 0.025F);
    EXPECT_FLOAT_EQ(upsamp_step(0.03F, 0.04F), 0.01F);
    EXPECT_FLOAT_EQ(upsamp_step(0.0015F, 0.004515F), 0.0015F);  // quotient 3.01 is near 3,
    EXPECT_FLOAT_EQ(upsamp_step(0.0015F, 0.004485F), 0.00508F); // 2.99 is not
    EXPECT_FLOAT_EQ(upsamp_step(0.0005F, 0.0005F), 0.00508F);   // no step of 1 mm or less
    // Nothing is said of these but that the search ends.
    EXPECT_FLOAT_EQ(upsamp_step(FLT_MAX, FLT_MAX), 0.00508F);
    EXPECT_FLOAT_EQ(upsamp_step(FLT_MIN, FLT_MAX), 0.00508F);
    EXPECT_GT(upsamp_step(1.0e6F, 1.0e6F * 1.9999999F), 0.0F);
}

TEST(Padding, ReflectsOddlyAboutBothEnds) {
    const Road profile{1.0F, 2.0F, 4.0F};
    Road padded(7);
    EXPECT_EQ(profpad(profile, padded), success);
    EXPECT_EQ(padded, (Road{-2.0F, 0.0F, 1.0F, 2.0F, 4.0F, 6.0F, 7.0F}));

    reset_event();
    Road short_one(6, 9.0F);
    EXPECT_EQ(profpad(profile, short_one), failure);
    EXPECT_EQ(short_one, Road(6, 9.0F));
    EXPECT_EQ(summary_of_current_event(),
              "101 2 profpad: Padded array should be (3 times - 2) of the org array");
}

TEST(Trimming, SectionMovesToTheFrontAndLosesItsLastPointsAtTheEnd) {
    const Road profile{10.0F, 11.0F, 12.0F, 13.0F, 14.0F, 15.0F};
    struct Case {
        std::int32_t if_padding, first, last;
        std::int32_t points;
        Road filtered;
    };
    const Case cases[] = {
        {2, 0, 5, 5, profile},
        {1, 0, 5, 4, {10.0F, 11.0F, 12.0F, 13.0F, 14.0F, 0.0F}},
        {2, 1, 4, 4, {11.0F, 12.0F, 13.0F, 14.0F, 14.0F, 0.0F}},
        {1, 1, 4, 3, {11.0F, 12.0F, 13.0F, 13.0F, 14.0F, 0.0F}},
        {1, 2, 3, 2, {12.0F, 13.0F, 12.0F, 13.0F, 0.0F, 0.0F}},
        {2, 4, 1, 0, {10.0F, 11.0F, 0.0F, 0.0F, 0.0F, 0.0F}},
        {2, INT32_MAX, INT32_MIN, 0, Road(6)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.if_padding << " from " << c.first << " to " << c.last);
        tProfinfo info{c.first, c.last, -7, -7, 0.025F, {}};
        Road filtered;
        EXPECT_EQ(prefiltering(profile, c.if_padding, info, filtered), success);
        EXPECT_EQ(info.i_filt_leadin, 0);
        EXPECT_EQ(info.i_filt_leadout, c.points - 1);
        EXPECT_EQ(filtered, c.filtered);
    }
}

// The Butterworth filter of sub-type 0 leaves iEndElemIdx as the host set it.
TEST(Trimming, FilterThatEndsOutsideTheProfileFails) {
    const auto outcome = [](std::int32_t end) {
        reset_event();
        tProfinfo info{0, 5, -7, -7, 0.025F, {}};
        info.tFilter.iMainFilterType = idx_filttyp_bwfilt;
        info.tFilter.iEndElemIdx = end;
        Road filtered;
        const ReturnCode code = prefiltering(Road(6, 1.0F), 1, info, filtered); // padded to 16
        EXPECT_EQ(code == success, summary_of_current_event().empty());
        return std::to_string(info.i_filt_leadout) + " " + summary_of_current_event();
    };
    const std::string padded = "-7 101 2 prefiltering: xDataArrayPadFilt size exceeded";
    EXPECT_EQ(outcome(INT32_MIN), "-1 ");
    EXPECT_EQ(outcome(16), "4 ");
    EXPECT_EQ(outcome(17), "-7 101 2 prefiltering: xDataArrayRefFiltlc size exceeded");
    EXPECT_EQ(outcome(22), padded);
    EXPECT_EQ(outcome(INT32_MAX), padded);
}

TEST(Resampling, InterpolatesAndHoldsTheLastSample) {
    const auto resampled = [](const Road& profile, float interval, float step, int count) {
        ResampledProfile result;
        EXPECT_EQ(resampling(profile, interval, step, result), success);
        EXPECT_EQ(result.count, count);
        return result.samples;
    };
    const Road profile{0.0F, 12.0F, 24.0F, 48.0F};
    EXPECT_EQ(resampled(profile, 0.5F, 0.5F, 4), profile);
    EXPECT_EQ(resampled(profile, 0.5F, 0.25F, 7),
              (Road{0.0F, 6.0F, 12.0F, 18.0F, 24.0F, 36.0F, 48.0F}));
    EXPECT_EQ(resampled(profile, 0.25F, 0.5F, 2), (Road{0.0F, 24.0F}));
    EXPECT_EQ(resampled(profile, 0.75F, 0.5F, 5), (Road{0.0F, 8.0F, 16.0F, 24.0F, 40.0F}));
    EXPECT_EQ(resampled({3.0F}, 1.0F, 0.5F, 1), Road{3.0F});
    EXPECT_EQ(resampled({}, 1.0F, 2.0F, 1), Road{0.0F});
    EXPECT_EQ(resampled({}, 1.0F, 1.0F, 0), Road{});
    EXPECT_EQ(resampled({}, 2.0F, 0.5F, -3), Road{});

    reset_event();
    ResampledProfile none;
    EXPECT_EQ(resampling(profile, 1.0F, 1.0e-9F, none), failure);
    EXPECT_EQ(summary_of_current_event(), "100 2 resampling: the resampled profile is too long");
}

} // namespace vialto::test
