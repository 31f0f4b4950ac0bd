#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Values = std::vector<float>;
using Mask = std::vector<std::int32_t>;

constexpr float untouched = -7.0F;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

// One call with room for the classes and what it left. Boundaries begin at 0, the threshold is 5.
struct Histogram {
    float high = 10.0F;
    float step = 2.0F;
    std::int32_t exclude = 2;

    Values percentages{};
    float above = untouched;
    EventRecord event{};

    std::int32_t run(std::int32_t classes, const Values& values, const Mask& mask = {}) {
        percentages.assign(classes > 0 ? static_cast<std::size_t>(classes) : 0, untouched);
        return histgrm_dlldrv(exclude, classes, static_cast<std::int32_t>(values.size()), 0.0F,
                              high, step, 5.0F, values.data(), mask.data(), percentages.data(),
                              &above, event);
    }
};

} // namespace

TEST(Histogram, EveryValueFallsIntoExactlyOneClass) {
    struct Case {
        const char* claim;
        float high, step;
        Values values, expected;
    };
    for (const auto& [claim, high, step, values, expected] :
         {Case{"boundaries 0 2 4 6", 6, 2, {-1, 1, 3, 5, 5, 7, 3, 1}, {12.5, 25, 25, 25, 12.5}},
          Case{"boundaries 0 1 2 10", 10, 1, {-3, 0.5, 1.5, 9, 11}, {20, 20, 20, 20, 20}},
          Case{"two classes part at the high boundary", 10, 2, {-1, 5, 9, 11}, {75, 25}},
          Case{"one class holds everything", 10, 2, {-infinity, nan, infinity, 4}, {100}},
          Case{"a value on a boundary belongs below it", 4, 2, {0, 2, 4, 4.5}, {25, 25, 25, 25}},
          Case{"a NaN belongs to the first class", 4, 2, {nan, 3}, {50, 0, 50, 0}},
          Case{"the outer classes are open", 4, 2, {-infinity, infinity}, {50, 0, 0, 50}},
          // Boundaries 0 3 6 5: 4 lies above two of them, 5.5 above three, 7 above all.
          Case{"boundaries out of order", 5, 3, {-1, 4, 5.5, 7}, {25, 0, 25, 25, 25}},
          Case{"a NaN lies below nothing", nan, 3, {-1, 1, 4, 99}, {25, 25, 50, 0}},
          // A third is rounded before it is multiplied: not the float nearest to its percentage.
          Case{"quotients in 32-bit", 10, 2, {4, 11, 4}, {66.66667175F, 33.33333588F}}}) {
        Histogram histogram{high, step};
        EXPECT_EQ(histogram.run(static_cast<std::int32_t>(expected.size()), values), vialto_success)
            << claim;
        EXPECT_EQ(histogram.percentages, expected) << claim;
        EXPECT_TRUE(histogram.event.untouched()) << claim;
    }
}

TEST(Histogram, BoundariesAreSumsOfFloatSteps) {
    // Ten sums of 0.1 come to the float above 1.0, ten times 0.1 to 1.0.
    Histogram histogram{10.0F, 0.1F};
    ASSERT_EQ(histogram.run(13, {std::nextafter(1.0F, 2.0F)}), vialto_success);
    EXPECT_EQ(histogram.percentages[10], 100.0F);
}

TEST(Histogram, OnlyValuesStrictlyAboveTheThresholdExceedIt) {
    Histogram histogram;
    ASSERT_EQ(histogram.run(3, {5.0F, 5.5F, nan, infinity, 4.0F}), vialto_success);
    EXPECT_EQ(histogram.above, 40.0F);
    ASSERT_EQ(histogram.run(3, {4, 11, 4}), vialto_success);
    EXPECT_EQ(histogram.above, 33.33333588F);
}

TEST(Histogram, AnyMaskOtherThanZeroLeavesTheValueOut) {
    Histogram histogram{.exclude = 1};
    const Mask mask{0, 1, 0, 2, -1, 0, 0};
    ASSERT_EQ(histogram.run(2, {1, 99, 3, 99, 99, 6, 11}, mask), vialto_success);
    EXPECT_EQ(histogram.percentages, (Values{75.0F, 25.0F}));
    EXPECT_EQ(histogram.above, 50.0F);
    histogram.exclude = 0; // only 1 makes the mask count
    ASSERT_EQ(histogram.run(2, {1, 99, 3, 99}, mask), vialto_success);
    EXPECT_EQ(histogram.percentages, (Values{50.0F, 50.0F}));
}

TEST(Histogram, NothingToTallyFails) {
    for (const std::int32_t classes : {3, 0, -1, std::numeric_limits<std::int32_t>::min()}) {
        Histogram histogram;
        histogram.exclude = classes == 3 ? 1 : 2;
        EXPECT_EQ(histogram.run(classes, {1, 2}, {1, 2}), vialto_failure) << classes;
        EXPECT_EQ(histogram.event.summary(),
                  "101 2 imsl_owfrq/histgrm_drv/histgrm_dlldrv: error calling imsl drcurv");
        EXPECT_TRUE(std::all_of(histogram.percentages.begin(), histogram.percentages.end(),
                                [](float percentage) { return std::isnan(percentage); }));
        EXPECT_EQ(histogram.above, untouched);
    }
}

TEST(Histogram, MaskIsRequiredOnlyWhereItIsRead) {
    Histogram histogram;
    histogram.exclude = 1;
    EXPECT_EQ(histogram.run(1, {1.0F}), vialto_failure);
    EXPECT_EQ(histogram.event.summary(), "100 2 histgrm_dlldrv: iMaskArray is a null pointer");
    EXPECT_EQ(histogram.percentages[0], untouched);
}

TEST(Histogram, NeedsNoTemporaryDirectory) {
    const TemporaryDirectory directory;
    set_tmp((directory.path() / "missing").string());
    Histogram histogram;
    EXPECT_EQ(histogram.run(2, {1.0F}), vialto_success);
}

} // namespace vialto::test
