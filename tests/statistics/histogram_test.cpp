#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "numeric/frequency_table.hpp"
#include "support/cases.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

// Boundaries begin at 0, the threshold is 5.
struct Request {
    std::size_t classes = 3;
    std::vector<float> values{4, 11, 4};
    float high = 10.0F;
    float step = 2.0F;
    std::vector<std::int32_t> mask{};
    std::int32_t exclude = mask.empty() ? 2 : 1;
};

// What is untouched reads -7.
void tallies(const Claim& claim, const Request& request, const std::vector<float>& expected,
             float expected_above, const std::string& failure = "") {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    const TemporaryDirectory directory;
    set_tmp((directory.path() / "missing").string()); // none is needed
    std::vector<float> percentages(request.classes, -7.0F);
    float above = -7.0F;
    EventRecord event;
    const auto& [classes, values, high, step, mask, exclude] = request;
    EXPECT_EQ(event.outcome(histgrm_dlldrv(exclude, static_cast<std::int32_t>(classes),
                                           size_of(values), 0.0F, high, step, 5.0F, values.data(),
                                           mask.data(), percentages.data(), &above, event)),
              failure);
    EXPECT_TRUE(same(percentages, expected));
    EXPECT_EQ(above, expected_above);
}

TEST(Histogram, EveryValueFallsIntoExactlyOneClass) {
    tallies("two are parted at the high boundary", {2, {-1, 5, 9, 11}}, {75, 25}, 50);
    tallies("on a boundary is below it", {4, {0, 2, 4, 4.5}, 4}, {25, 25, 25, 25}, 0);
    tallies("no number is in the first", {4, {NAN, 3, -HUGE_VALF, HUGE_VALF}, 4}, {50, 0, 25, 25},
            25);
    // Boundaries 0 2 4 1.
    tallies("the first class that reaches up to the value, the last above all",
            {5, {1.5, 3, 0.5, 7}, 1, 2}, {0, 50, 25, 0, 25}, 25);
    tallies("a boundary that is no number", {4, {-1, 1, 4, 99}, NAN, 3}, {25, 25, 50, 0}, 25);
    tallies("seven sums of 0.1 come to the float above 0.7, seven times 0.1 to 0.7",
            {10, {std::nextafter(0.7F, 1.0F)}, 9, 0.1F}, {0, 0, 0, 0, 0, 0, 0, 100, 0, 0}, 0);
    tallies("a third is rounded before it is multiplied", {2}, {66.6666718F, 33.3333359F},
            33.3333359F);
    tallies("masked values are left out", {2, {1, 99, 6, 99, 99}, 10, 2, {0, 1, 0, 2, -1}},
            {100, 0}, 50);
}

TEST(Histogram, OfNothingFails) {
    const std::string no_tally =
        "101 2 imsl_owfrq/histgrm_drv/histgrm_dlldrv: error calling imsl drcurv";
    tallies("all masked", {.mask = {1, 1, 1}}, {NAN, NAN, NAN}, -7, no_tally);
    tallies("no classes", {0}, {}, -7, no_tally);
    tallies("no mask", {1, {4}, 10, 2, {}, 1}, {-7}, -7,
            "100 2 histgrm_dlldrv: iMaskArray is a null pointer");
}

TEST(Histogram, ClassReachesUpToItsValuesHoweverManyThereAre) {
    const std::vector<float> values = random_road(5000, 0.025, 1);
    for (const std::size_t classes : {12U, 256U, 257U}) {
        std::vector<float> ends = random_road(classes - 1, 10.0, 2);
        ends[classes / 2] = NAN;
        std::vector<std::int32_t> counts(classes, -7), expected(classes);
        for (const float value : values) {
            const auto first =
                std::find_if(ends.begin(), ends.end(), [=](float end) { return !(end < value); });
            ++expected[static_cast<std::size_t>(first - ends.begin())];
        }
        EXPECT_EQ(frequency_table(values, ends, counts), table_made);
        EXPECT_TRUE(same(counts, expected)) << classes << " classes";
    }
}

} // namespace
} // namespace vialto::test
