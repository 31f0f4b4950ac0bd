#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "filters/filter_run.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float inf = std::numeric_limits<float>::infinity();

} // namespace

TEST(FilterDispatch, SelectorZeroCopiesTheProfile) {
    const FilterRun run({1.0F, 2.0F, 3.0F}, 1.0F, filter_settings(idx_filttyp_none, 0, 9.0F, 9.0F));
    EXPECT_TRUE(run.filtered_all());
    EXPECT_EQ(run.y, (std::vector<float>{1.0F, 2.0F, 3.0F}));
}

TEST(FilterDispatch, OnlyTheQuarterCarHasAStatistic) {
    const auto road = random_road(600, 0.25, 61);
    for (std::int32_t main_type = -1; main_type <= 8; ++main_type) {
        const FilterRun run(road, 0.25F,
                            filter_settings(main_type, idx_subfilttyp_bandpass, 20.0F, 2.0F));
        const bool quarter_car = main_type == idx_filttyp_IRI || main_type == idx_filttyp_RN;
        EXPECT_EQ(run.statistic > 0.0F, quarter_car) << main_type;
        EXPECT_EQ(run.statistic == 0.0F, !quarter_car) << main_type;
    }
}

TEST(FilterDispatch, ButterworthWithoutASubTypeWritesNothingAndSucceeds) {
    const FilterRun run({1.0F, 2.0F}, 1.0F, filter_settings(idx_filttyp_bwfilt, 0, 9.0F, 9.0F));
    EXPECT_EQ(run.event, "");
    EXPECT_TRUE(run.wrote_nothing());
}

// 30 samples; lengths are in sample intervals.
TEST(FilterDispatch, FailuresLeaveTheOutputUntouched) {
    constexpr float interval = 0.025F;
    const std::string type = "101 2 filtcon_drv: Illegal Main filter type";
    const std::string sub_type = "101 2 bwfilt_drv/filtcon_drv: iBWFilterType is not within range";
    const std::string box = "moving average base length is greater the sampling distance";
    const std::string box_low = "101 2 mvgavg/filtcon_drv: " + box;
    const std::string box_high = "101 2 mvgavg/filtcon_drv: hi-pass " + box;
    const std::string cutoff = "101 2 zeb_bwfilter/bwfilt_drv/filtcon_drv: ";
    const std::string cutoff_high = cutoff + "Highpass cutoff is below the threshold value (~ 2 x "
                                             "Step * 0.86). Try again with a larger value.";
    const std::string cutoff_low = cutoff + "Lowpass cutoff is below the threshold value(~ 2 * "
                                            "Step / 0.86). Try again with a larger value.";
    const std::string corner = "101 2 DRBWfilt/DRBWfilt_drv_prof/bwfilt_drv/filtcon_drv: ";
    const std::string corner_low = corner + "low corner frequency (f0-fc) <= 0.0";
    const std::string corner_high = corner + "high corner frequency (f0+fc) >= nyquist";
    struct Case {
        std::int32_t main_type;
        std::int32_t sub_type;
        float longest;
        float shortest;
        std::string event; // empty: the filter runs
    };
    for (const Case& c : {Case{-1, 0, 9.0F, 9.0F, type},
                          {8, 0, 9.0F, 9.0F, type},
                          {1, idx_subfilttyp_highpass, 29.0F, 0.0F, ""},
                          {1, idx_subfilttyp_highpass, 30.0F, 0.0F, box_high},
                          {1, idx_subfilttyp_lowpass, 0.0F, 29.0F, ""},
                          {1, idx_subfilttyp_lowpass, 0.0F, 30.0F, box_low},
                          {1, idx_subfilttyp_bandpass, 30.0F, 30.0F, box_high},
                          {1, idx_subfilttyp_bandpass, 29.0F, 1e30F, box_low},
                          {4, -1, 9.0F, 9.0F, sub_type},
                          {4, 5, 9.0F, 9.0F, sub_type},
                          {4, idx_subfilttyp_highpass, 1.72676F, 9.0F, cutoff_high},
                          {4, idx_subfilttyp_highpass, 1.72677F, 9.0F, ""},
                          {4, idx_subfilttyp_lowpass, 9.0F, 2.31646F, cutoff_low},
                          {4, idx_subfilttyp_lowpass, 9.0F, 2.31647F, ""},
                          {4, idx_subfilttyp_bandpass, 0.0F, 0.0F, cutoff_high},
                          {4, idx_subfilttyp_bandpass, 9.0F, 0.0F, cutoff_low},
                          {4, idx_subfilttyp_bandpass, 9.0F, 9.0F, ""},
                          {4, idx_subfilttyp_centredband, 99.0F, 2.0F, corner_high},
                          {4, idx_subfilttyp_centredband, 99.0F, 2.01F, ""},
                          {4, idx_subfilttyp_centredband, 0.0F, 9.0F, corner_high},
                          {4, idx_subfilttyp_centredband, 99.0F, 0.0F, corner_high},
                          {4, idx_subfilttyp_centredband, std::nanf(""), 9.0F, corner_high},
                          {4, idx_subfilttyp_centredband, -99.0F, 9.0F, corner_low},
                          {4, idx_subfilttyp_centredband, inf, 9.0F, corner_low}}) {
        const FilterRun run(
            random_road(30, 0.025, 62), interval,
            filter_settings(c.main_type, c.sub_type, c.longest * interval, c.shortest * interval));
        EXPECT_EQ(run.event, c.event);
        EXPECT_EQ(run.wrote_nothing(), !c.event.empty()) << c.main_type << " " << c.sub_type;
    }
}

// No selector, length or step makes a filter reach outside its arrays or hang.
TEST(FilterDispatch, EveryFilterSurvivesEveryLengthAndStep) {
    for (std::int32_t selector = 0; selector < 40; ++selector) {
        for (const std::size_t count : {0U, 1U, 2U, 3U, 34U}) {
            for (const float length : {-inf, -1e9F, -1.0F, -2e-8F, 0.0F, 1e-9F, 0.5F, 1.0F, 1.5F,
                                       2.5F, 3.0F, 33.0F, 1e9F, inf, std::nanf("")}) {
                for (const float step : {1e-30F, 1.0F, 1e30F}) {
                    const FilterRun run(random_road(count, 1.0, 63), step,
                                        filter_settings(selector / 5, selector % 5, length, length,
                                                        idx_filtouttyp_slope));
                    EXPECT_EQ(run.y.size(), count);
                }
            }
        }
    }
}

} // namespace vialto::test
