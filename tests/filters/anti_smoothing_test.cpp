#include <gtest/gtest.h>

#include <cmath>
#include <limits>
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

    Call(std::vector<float> road, float base_length) : profile(std::move(road)) {
        code = antismth_dlldrv(interval, base_length, static_cast<std::int32_t>(profile.size()),
                               profile.data(), &begin, &end, event);
    }
    [[nodiscard]] bool left_untouched(const std::vector<float>& road) const {
        return code == vialto_failure && profile == road && begin == untouched_index &&
               end == untouched_index;
    }
};

} // namespace

TEST(AntiSmoothing, KeepsTheBitsOfTheRunningSum) {
    const auto road = random_road(1500, 0.25, 71);
    for (const std::size_t base : {1U, 2U, 9U, 100U, 700U}) {
        const auto literal = literal_anti_smoothing(road, base + 1, base / 2 + 1);
        const FilterRun run = anti_smoothed(road, static_cast<float>(base));
        EXPECT_EQ(run.end, static_cast<std::int32_t>(literal.size()) - 1);
        for (std::size_t i = 0; i < road.size(); ++i) {
            const bool valid = i > base / 2 && i < literal.size();
            EXPECT_EQ(run.y[i], valid ? literal[i] : 0.0F) << base << " " << i;
        }
    }
}

TEST(AntiSmoothing, StraightRoadShowsOnlyTheHalfSampleOfAnEvenWindow) {
    const std::vector<float> road = straight_line(60, 0.25, 0.5); // rises 0.125 a sample
    for (const auto& [base, difference] : {std::pair{10.0F, 0.0}, std::pair{11.0F, -0.0625}}) {
        const FilterRun run = anti_smoothed(road, base);
        EXPECT_EQ(run.begin, 6);
        for (std::int32_t i = run.begin; i <= run.end; ++i) {
            EXPECT_NEAR(run.y[static_cast<std::size_t>(i)], difference, 1e-5);
        }
    }
}

TEST(AntiSmoothing, SpikeStandsBeforeItsPlaceByHalfTheWindow) {
    std::vector<float> road(60);
    road[30] = 11.0F;
    const FilterRun run = anti_smoothed(road, 10.0F); // 11 samples, the sixth in the middle
    for (std::int32_t i = run.begin; i <= run.end; ++i) {
        const float inside_window = i >= 19 && i <= 29 ? -1.0F : 0.0F;
        EXPECT_EQ(run.y[static_cast<std::size_t>(i)], i == 24 ? 10.0F : inside_window) << i;
    }
    const FilterRun slope = anti_smoothed(road, 10.0F, idx_filtouttyp_slope);
    EXPECT_EQ(slope.y[24], 11.0F / interval);
    EXPECT_EQ(slope.y[25], -11.0F / interval);
    EXPECT_EQ(slope.y[30], 1.0F / interval);
}

TEST(AntiSmoothing, ValidRangeIsEmptyBelowTheSamplesOfTwoWindows) {
    struct Case {
        std::int32_t count;
        float base;
        std::int32_t begin;
        std::int32_t end;
    };
    for (const Case& c : {Case{12, 10.0F, 6, 0}, Case{17, 10.0F, 6, 5}, Case{18, 10.0F, 6, 6},
                          Case{3, 1.0F, 1, 0}, Case{4, 1.5F, 1, 1}}) {
        const std::vector<float> flat(static_cast<std::size_t>(c.count), 3.0F);
        const FilterRun run = anti_smoothed(flat, c.base);
        EXPECT_EQ(run.begin, c.begin);
        EXPECT_EQ(run.end, c.end);
        EXPECT_EQ(run.y, std::vector<float>(flat.size(), 0.0F));
    }
}

TEST(AntiSmoothing, NegativeWindowLeavesNoNumber) {
    for (const float base : {-0.6F, -2e-8F, -3.0F, -1e38F, std::nanf("")}) {
        const FilterRun run = anti_smoothed({1.0F, 2.0F, 3.0F}, base);
        EXPECT_EQ(run.begin, 0);
        EXPECT_EQ(run.end, 2);
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
    EXPECT_EQ(call.begin, 2);
    EXPECT_EQ(call.end, 4);
    EXPECT_EQ(call.profile, (std::vector<float>{0.0F, 0.0F, 2.0F, 1.0F, 0.0F, 0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(directory.text_of("antismth_dlldrv.txt"), "  0.5 0 2\n  0.75 0 -1\n  1 3 0\n");
}

TEST(AntiSmoothingExport, FailureOfTheFilterLeavesOutputsAndNoFile) {
    const std::string one_interval = "101 2 antismooth/filtcon_drv/antismth_dlldrv: the "
                                     "baselength is only 1 sampling interval- check your input";
    const std::string too_long = "101 2 antismooth/filtcon_drv/antismth_dlldrv: the baselength "
                                 "greater than the profile length - check your input";
    const std::vector<float> road{1.0F, 2.0F, 3.0F, 4.0F};
    for (const auto& [base, summary] :
         {std::pair{0.0F, one_interval}, std::pair{0.9F * interval, one_interval},
          std::pair{3.0F * interval, too_long}, std::pair{1e38F, too_long},
          std::pair{std::numeric_limits<float>::infinity(), too_long}}) {
        const TemporaryDirectory directory;
        const Call call(road, base);
        EXPECT_TRUE(call.left_untouched(road));
        EXPECT_EQ(call.event.summary(), summary);
        EXPECT_FALSE(directory.holds("antismth_dlldrv.txt"));
    }
}

TEST(AntiSmoothingExport, FileThatCannotBeOpenedLeavesOutputs) {
    const TemporaryDirectory directory;
    set_tmp((directory.path() / "missing").string());
    const std::vector<float> road{1.0F, 2.0F, 3.0F, 4.0F};
    const Call call(road, interval);
    EXPECT_TRUE(call.left_untouched(road));
    EXPECT_EQ(call.event.error_code(), 102);
    EXPECT_EQ(call.event.error_type(), 2);
    EXPECT_EQ(call.event.routine(), "io_tmp_file/antismth_dlldrv");
}

TEST(AntiSmoothingExport, RefusesWhatItCannotServe) {
    const TemporaryDirectory directory;
    std::int32_t index = untouched_index;
    float sample = 1.0F;
    const auto refusal = [&](float step, float* profile, std::int32_t* begin, std::int32_t* end) {
        EventRecord event;
        EXPECT_EQ(antismth_dlldrv(step, 1.0F, 1, profile, begin, end, event), vialto_failure);
        return event.summary();
    };
    const std::string head = "100 2 antismth_dlldrv: ";
    EXPECT_EQ(refusal(0.0F, &sample, &index, &index),
              head + "xStepSize is not a positive finite number");
    EXPECT_EQ(refusal(1.0F, nullptr, &index, &index), head + "xProfile is a null pointer");
    EXPECT_EQ(refusal(1.0F, &sample, nullptr, &index), head + "iBeginElemIdx is a null pointer");
    EXPECT_EQ(refusal(1.0F, &sample, &index, nullptr), head + "iEndElemIdx is a null pointer");
    EXPECT_EQ(index, untouched_index);
}

} // namespace vialto::test
