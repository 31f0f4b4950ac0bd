#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "filters/filter_run.hpp"
#include "support/host.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float interval = 0.25F; // m; base lengths are whole numbers of it

FilterRun anti_smoothed(const std::vector<float>& profile, float base_intervals,
                        std::int32_t out_type = idx_filtouttyp_elevation) {
    return {profile, interval,
            filter_settings(idx_filttyp_antismooth, 0, 0.0F, base_intervals * interval, out_type)};
}

// One call of the export, with everything that the host sees of it.
struct Call {
    std::vector<float> profile;
    std::int32_t begin = untouched_index;
    std::int32_t end = untouched_index;
    EventRecord event;
    std::int32_t code = 0;

    Call(std::vector<float> road, float base_length, float step = interval,
         std::string_view null_pointer = "none")
        : profile(std::move(road)) {
        code = antismth_dlldrv(step, base_length, static_cast<std::int32_t>(profile.size()),
                               null_pointer == "xProfile" ? nullptr : profile.data(),
                               null_pointer == "iBeginElemIdx" ? nullptr : &begin,
                               null_pointer == "iEndElemIdx" ? nullptr : &end, event);
    }
    [[nodiscard]] bool left_untouched(const std::vector<float>& road) const {
        return code == vialto_failure && profile == road && Range{begin, end} == untouched_range;
    }
};

const std::vector<float> short_road{1.0F, 2.0F, 3.0F, 4.0F};

} // namespace

TEST(AntiSmoothing, KeepsTheBitsOfTheRunningSum) {
    const auto road = random_road(1500, 0.25, 71);
    for (const std::size_t base : {1U, 2U, 9U, 100U, 700U}) {
        auto expected = literal_anti_smoothing(road, base + 1, base / 2 + 1);
        std::fill_n(expected.begin(), base / 2 + 1, 0.0F);
        expected.resize(road.size());
        EXPECT_EQ(anti_smoothed(road, static_cast<float>(base)).y, expected) << base;
    }
}

TEST(AntiSmoothing, SpikeStandsBeforeItsPlaceByHalfTheWindow) {
    std::vector<float> road(60);
    road[30] = 11.0F;
    std::vector<float> expected(60);
    std::fill_n(expected.begin() + 19, 11, -1.0F); // 11 samples, the sixth in the middle
    expected[24] = 10.0F;
    EXPECT_EQ(anti_smoothed(road, 10.0F).y, expected);
    const FilterRun slope = anti_smoothed(road, 10.0F, idx_filtouttyp_slope);
    EXPECT_EQ(slope.y[24], 11.0F / interval);
    EXPECT_EQ(slope.y[25], -11.0F / interval);
    EXPECT_EQ(slope.y[30], 1.0F / interval);
}

TEST(AntiSmoothing, ValidRangeIsEmptyBelowTheSamplesOfTwoWindows) {
    struct Case {
        std::size_t count;
        float base;
        Range range;
    };
    for (const auto& [count, base, range] :
         {Case{12, 10.0F, {6, 0}}, Case{17, 10.0F, {6, 5}}, Case{18, 10.0F, {6, 6}},
          Case{60, 11.0F, {6, 47}}, Case{3, 1.0F, {1, 0}}, Case{4, 1.5F, {1, 1}}}) {
        const FilterRun run = anti_smoothed(std::vector<float>(count, 3.0F), base);
        EXPECT_EQ(run.range, range);
        EXPECT_EQ(run.y, std::vector<float>(count));
    }
}

TEST(AntiSmoothing, NegativeWindowLeavesNoNumber) {
    for (const float base : {-0.6F, -2e-8F, -3.0F, -1e38F, std::nanf("")}) {
        const FilterRun run = anti_smoothed({1.0F, 2.0F, 3.0F}, base);
        EXPECT_EQ(run.range, Range(0, 2));
        EXPECT_TRUE(std::isnan(run.y[0]) && std::isnan(run.y[2])) << base;
    }
}

TEST(AntiSmoothingExport, GivesTheDistanceFromTheMeanAndListsTheSignedOne) {
    const TemporaryDirectory directory;
    std::vector<float> road(8);
    road[4] = 3.0F;
    const Call call(road, 2.0F * interval); // 3 samples, the second in the middle
    EXPECT_EQ(call.code, vialto_success);
    EXPECT_TRUE(call.event.untouched());
    EXPECT_EQ(Range(call.begin, call.end), Range(2, 4));
    EXPECT_EQ(call.profile, (std::vector<float>{0.0F, 0.0F, 2.0F, 1.0F, 0.0F, 0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(directory.text_of("antismth_dlldrv.txt"), "  0.5 0 2\n  0.75 0 -1\n  1 3 0\n");
}

TEST(AntiSmoothingExport, FailureLeavesOutputsAndNoFile) {
    const std::string one_interval = "101 2 antismooth/filtcon_drv/antismth_dlldrv: the "
                                     "baselength is only 1 sampling interval- check your input";
    const std::string too_long = "101 2 antismooth/filtcon_drv/antismth_dlldrv: the baselength "
                                 "greater than the profile length - check your input";
    const std::string refused = "100 2 antismth_dlldrv: ";
    const TemporaryDirectory directory;
    const auto expect_failure = [&](const Call& call, const std::string& event) {
        EXPECT_TRUE(call.left_untouched(short_road));
        EXPECT_EQ(call.event.summary(), event);
        EXPECT_FALSE(directory.holds("antismth_dlldrv.txt"));
    };
    expect_failure({short_road, 0.0F}, one_interval);
    expect_failure({short_road, 0.9F * interval}, one_interval);
    expect_failure({short_road, 3.0F * interval}, too_long);
    expect_failure({short_road, 1e38F}, too_long);
    expect_failure({short_road, std::numeric_limits<float>::infinity()}, too_long);
    expect_failure({short_road, 1.0F, 0.0F}, refused + "xStepSize is not a positive finite number");
    for (const std::string name : {"xProfile", "iBeginElemIdx", "iEndElemIdx"}) {
        expect_failure({short_road, 1.0F, 1.0F, name}, refused + name + " is a null pointer");
    }
}

TEST(AntiSmoothingExport, FileThatCannotBeOpenedLeavesOutputs) {
    const TemporaryDirectory directory;
    set_tmp((directory.path() / "missing").string());
    const Call call(short_road, interval);
    EXPECT_TRUE(call.left_untouched(short_road));
    EXPECT_EQ(call.event.summary().find("102 2 io_tmp_file/antismth_dlldrv: "), 0U);
}

} // namespace vialto::test
