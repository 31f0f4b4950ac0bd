#include <gtest/gtest.h>

#include <cfloat>
#include <vector>

#include "comparison/preparation.hpp"

namespace vialto::test {

using Road = std::vector<float>;

TEST(ComparisonStep, IsTheFirstFractionThatTheLargerIntervalHoldsWhole) {
    struct Case {
        float first, second, step; // m
    };
    const Case cases[] = {
        {0.025F, 0.025F, 0.025F},       {0.025F, 0.05F, 0.025F},       {0.05F, 0.025F, 0.025F},
        {0.03F, 0.04F, 0.01F},          {0.0015F, 0.004515F, 0.0015F}, // quotient 3.01 is near 3,
        {0.0015F, 0.004485F, 0.00508F},                                // 2.99 is not
        {0.0005F, 0.0005F, 0.00508F},                                  // no step of 1 mm or less
        {FLT_MAX, FLT_MAX, 0.00508F}, // nothing is said of these but that the search ends
        {FLT_MIN, FLT_MAX, 0.00508F},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.first << " and " << c.second);
        EXPECT_FLOAT_EQ(upsamp_step(c.first, c.second), c.step);
    }
    // A long search: the quotient has no fraction left when it passes 2^23.
    EXPECT_GT(upsamp_step(1.0e6F, 1.0e6F * 1.9999999F), 0.0F);
}

TEST(Padding, ReflectsOddlyAboutBothEnds) {
    const Road profile{1.0F, 2.0F, 4.0F};
    Road padded(7);
    ASSERT_EQ(profpad(profile, padded), success);
    EXPECT_EQ(padded, (Road{-2.0F, 0.0F, 1.0F, 2.0F, 4.0F, 6.0F, 7.0F}));

    reset_event();
    Road short_one(6, 9.0F);
    EXPECT_EQ(profpad(profile, short_one), failure);
    EXPECT_EQ(short_one, Road(6, 9.0F));
    EXPECT_EQ(current_event().description.trimmed(),
              "Padded array should be (3 times - 2) of the org array");
}

TEST(Trimming, SectionMovesToTheFrontAndLosesItsLastPointsAtTheEnd) {
    const Road profile{10.0F, 11.0F, 12.0F, 13.0F, 14.0F, 15.0F};
    struct Case {
        const char* name;
        std::int32_t if_padding, first, last;
        std::int32_t points;
        Road filtered;
    };
    const Case cases[] = {
        {"whole, unpadded: n - 1 points", 2, 0, 5, 5, profile},
        {"whole, padded: n - 2 points", 1, 0, 5, 4, {10.0F, 11.0F, 12.0F, 13.0F, 14.0F, 0.0F}},
        {"inside, unpadded", 2, 1, 4, 4, {11.0F, 12.0F, 13.0F, 14.0F, 14.0F, 0.0F}},
        {"inside, padded", 1, 1, 4, 3, {11.0F, 12.0F, 13.0F, 13.0F, 14.0F, 0.0F}},
        {"well inside, padded", 1, 2, 3, 2, {12.0F, 13.0F, 12.0F, 13.0F, 0.0F, 0.0F}},
        {"reversed", 2, 4, 1, 0, {10.0F, 11.0F, 0.0F, 0.0F, 0.0F, 0.0F}},
        {"far reversed", 2, INT32_MAX, INT32_MIN, 0, Road(6)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        tProfinfo info{c.first, c.last, -7, -7, 0.025F, {}};
        Road filtered;
        ASSERT_EQ(prefiltering(profile, c.if_padding, info, filtered), success);
        EXPECT_EQ(info.i_filt_leadin, 0);
        EXPECT_EQ(info.i_filt_leadout, c.points - 1);
        EXPECT_EQ(filtered, c.filtered);
    }
}

// The Butterworth filter of sub-type 0 leaves iEndElemIdx as the host set it.
TEST(Trimming, FilterThatEndsOutsideTheProfileFails) {
    const Road profile(6, 1.0F); // padded to 16 points
    struct Case {
        std::int32_t end;
        const char* description; // empty: no failure
        std::int32_t leadout;
    };
    const Case cases[] = {{17, "xDataArrayRefFiltlc size exceeded", -7},
                          {22, "xDataArrayPadFilt size exceeded", -7},
                          {INT32_MAX, "xDataArrayPadFilt size exceeded", -7},
                          {16, "", 4},
                          {INT32_MIN, "", -1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.end);
        reset_event();
        tProfinfo info{0, 5, -7, -7, 0.025F, {}};
        info.tFilter.iMainFilterType = idx_filttyp_bwfilt;
        info.tFilter.iEndElemIdx = c.end;
        Road filtered;
        const bool fails = c.description[0] != '\0';
        EXPECT_EQ(prefiltering(profile, 1, info, filtered), fails ? failure : success);
        EXPECT_EQ(current_event().description.trimmed(), c.description);
        EXPECT_EQ(current_event().routine.trimmed(), fails ? "prefiltering" : "");
        EXPECT_EQ(info.i_filt_leadout, c.leadout);
    }
}

TEST(Resampling, InterpolatesAndHoldsTheLastSample) {
    const Road profile{0.0F, 10.0F, 20.0F, 40.0F};
    struct Case {
        const char* name;
        Road profile;
        float interval, step;
        Road resampled;
    };
    const Case cases[] = {
        {"same step", profile, 0.5F, 0.5F, profile},
        {"finer", profile, 0.5F, 0.25F, {0.0F, 5.0F, 10.0F, 15.0F, 20.0F, 30.0F, 40.0F}},
        {"coarser", profile, 0.25F, 0.5F, {0.0F, 20.0F}},
        {"unequal", profile, 0.75F, 0.5F, {0.0F, 20.0F / 3.0F, 40.0F / 3.0F, 20.0F, 100.0F / 3.0F}},
        {"one sample", {3.0F}, 1.0F, 0.5F, {3.0F}},
        {"no sample, coarser", {}, 1.0F, 2.0F, {0.0F}},
        {"no sample, same step", {}, 1.0F, 1.0F, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ResampledProfile resampled;
        ASSERT_EQ(resampling(c.profile, c.interval, c.step, resampled), success);
        EXPECT_EQ(resampled.count, std::ssize(c.resampled));
        ASSERT_EQ(resampled.samples.size(), c.resampled.size());
        for (std::size_t i = 0; i < c.resampled.size(); ++i) {
            EXPECT_FLOAT_EQ(resampled.samples[i], c.resampled[i]) << i;
        }
    }
    ResampledProfile none;
    ASSERT_EQ(resampling({}, 2.0F, 0.5F, none), success);
    EXPECT_EQ(none.count, -3);
    EXPECT_TRUE(none.samples.empty());

    reset_event();
    ResampledProfile resampled;
    EXPECT_EQ(resampling(profile, 1.0F, 1.0e-9F, resampled), failure);
    EXPECT_EQ(current_event().error_code, error_code_request);
    EXPECT_EQ(current_event().description.trimmed(), "the resampled profile is too long");
}

} // namespace vialto::test
