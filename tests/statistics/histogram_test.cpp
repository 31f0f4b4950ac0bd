#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float untouched = -7.0F;
constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

// One call with room for the classes and what it left.
struct Histogram {
    std::int32_t exclude = 2;
    float low = 0.0F;
    float high = 10.0F;
    float step = 2.0F;
    float threshold = 5.0F;
    std::vector<std::int32_t> mask;

    std::vector<float> percentages;
    float above = untouched;
    EventRecord event;

    std::int32_t run(std::int32_t classes, const std::vector<float>& values) {
        percentages.assign(classes > 0 ? static_cast<std::size_t>(classes) : 0, untouched);
        return histgrm_dlldrv(exclude, classes, static_cast<std::int32_t>(values.size()), low, high,
                              step, threshold, values.data(), mask.data(), percentages.data(),
                              &above, event);
    }
};

using Percentages = std::vector<float>;

} // namespace

TEST(Histogram, EveryValueFallsIntoExactlyOneClass) {
    struct Case {
        const char* claim;
        float high, step;
        std::int32_t classes;
        std::vector<float> values;
        Percentages expected;
    };
    const Case cases[] = {
        {"boundaries 0 2 4 6 8 10",
         10.0F,
         2.0F,
         7,
         {-1, 1, 3, 5, 5, 7, 9, 11},
         {12.5F, 12.5F, 12.5F, 25.0F, 12.5F, 12.5F, 12.5F}},
        {"boundaries 0 1 2 10: the last one stands wherever the steps are",
         10.0F,
         1.0F,
         5,
         {-3, 0.5F, 1.5F, 2.5F, 9.5F, 10.5F, 99, 7},
         {12.5F, 12.5F, 12.5F, 37.5F, 25.0F}},
        {"two classes part at the high boundary", 10.0F, 2.0F, 2, {-1, 5, 9, 11}, {75.0F, 25.0F}},
        {"one class holds everything", 10.0F, 2.0F, 1, {-infinity, nan, infinity, 4}, {100.0F}},
        {"a value on a boundary belongs below it",
         4.0F,
         2.0F,
         4,
         {0, 2, 4, 4.5F},
         {25.0F, 25.0F, 25.0F, 25.0F}},
        {"a NaN belongs to the first class", 4.0F, 2.0F, 4, {nan, 3}, {50.0F, 0.0F, 50.0F, 0.0F}},
        {"the outer classes are open-ended",
         4.0F,
         2.0F,
         4,
         {-infinity, infinity},
         {50.0F, 0.0F, 0.0F, 50.0F}},
        // Boundaries 0 3 6 5: 4 lies above two of them, 5.5 above three, 7 above all.
        {"boundaries out of order",
         5.0F,
         3.0F,
         5,
         {-1, 4, 5.5F, 7},
         {25.0F, 0.0F, 25.0F, 25.0F, 25.0F}},
        {"a boundary that is a NaN lies below nothing",
         nan,
         3.0F,
         4,
         {-1, 1, 4, 99},
         {25.0F, 25.0F, 50.0F, 0.0F}},
    };
    for (const Case& c : cases) {
        Histogram histogram;
        histogram.high = c.high;
        histogram.step = c.step;
        EXPECT_EQ(histogram.run(c.classes, c.values), vialto_success) << c.claim;
        EXPECT_EQ(histogram.percentages, c.expected) << c.claim;
        EXPECT_TRUE(histogram.event.untouched()) << c.claim;
    }
}

TEST(Histogram, BoundariesAreSumsOfFloatSteps) {
    // Ten sums of 0.1 come to the float above 1.0, ten times 0.1 to 1.0.
    Histogram histogram;
    histogram.step = 0.1F;
    ASSERT_EQ(histogram.run(13, {std::nextafter(1.0F, 2.0F)}), vialto_success);
    EXPECT_EQ(histogram.percentages[10], 100.0F);
}

TEST(Histogram, PercentagesAreQuotientsIn32Bit) {
    // The quotients are rounded before they are multiplied: a third is not the float nearest to it.
    Histogram histogram;
    ASSERT_EQ(histogram.run(2, {4, 11, 4}), vialto_success);
    EXPECT_EQ(histogram.percentages, (Percentages{66.66667175F, 33.33333588F}));
    EXPECT_EQ(histogram.above, 33.33333588F);
}

TEST(Histogram, OnlyValuesStrictlyAboveTheThresholdExceedIt) {
    Histogram histogram;
    ASSERT_EQ(histogram.run(3, {5.0F, 5.5F, nan, infinity, 4.0F}), vialto_success);
    EXPECT_EQ(histogram.above, 40.0F);
}

TEST(Histogram, AnyMaskOtherThanZeroLeavesTheValueOut) {
    Histogram histogram;
    histogram.mask = {0, 1, 0, 2, -1, 0, 0};
    const std::vector<float> values{1, 99, 3, 99, 99, 6, 11};
    histogram.exclude = 1;
    ASSERT_EQ(histogram.run(2, values), vialto_success);
    EXPECT_EQ(histogram.percentages, (Percentages{75.0F, 25.0F}));
    EXPECT_EQ(histogram.above, 50.0F);
    histogram.exclude = 0; // only 1 makes the mask count
    ASSERT_EQ(histogram.run(2, {1, 99, 3, 99}), vialto_success);
    EXPECT_EQ(histogram.percentages, (Percentages{50.0F, 50.0F}));
}

TEST(Histogram, NothingToTallyFails) {
    const char* summary = "101 2 imsl_owfrq/histgrm_drv/histgrm_dlldrv: error calling imsl drcurv";
    Histogram masked;
    masked.exclude = 1;
    masked.mask = {1, 2};
    EXPECT_EQ(masked.run(3, {1, 2}), vialto_failure);
    EXPECT_EQ(masked.event.summary(), summary);
    for (const float percentage : masked.percentages) {
        EXPECT_TRUE(std::isnan(percentage));
    }
    EXPECT_EQ(masked.above, untouched);

    for (const std::int32_t classes : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
        Histogram classless;
        EXPECT_EQ(classless.run(classes, {1, 2}), vialto_failure);
        EXPECT_EQ(classless.event.summary(), summary);
        EXPECT_EQ(classless.above, untouched);
    }
}

TEST(Histogram, MaskIsRequiredOnlyWhereItIsRead) {
    const float value = 1.0F;
    float percentage = untouched;
    float above = untouched;
    EventRecord event;
    EXPECT_EQ(histgrm_dlldrv(1, 1, 1, 0.0F, 1.0F, 1.0F, 0.0F, &value, nullptr, &percentage, &above,
                             event),
              vialto_failure);
    EXPECT_EQ(event.summary(), "100 2 histgrm_dlldrv: iMaskArray is a null pointer");
    EXPECT_EQ(percentage, untouched);
    EXPECT_EQ(histgrm_dlldrv(2, 1, 1, 0.0F, 1.0F, 1.0F, 0.0F, &value, nullptr, &percentage, &above,
                             event),
              vialto_success);
}

TEST(Histogram, NeedsNoTemporaryDirectory) {
    const TemporaryDirectory directory;
    set_tmp((directory.path() / "missing").string());
    Histogram histogram;
    EXPECT_EQ(histogram.run(2, {1.0F}), vialto_success);
}

} // namespace vialto::test
