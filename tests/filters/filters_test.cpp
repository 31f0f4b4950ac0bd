#include <gtest/gtest.h>

#include <tuple>

#include "filters/filter_run.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

// Filters as their outcomes name them.
constexpr std::int32_t average = idx_filttyp_mvgavg;
constexpr std::int32_t car = idx_filttyp_IRI;
constexpr std::int32_t butterworth = idx_filttyp_bwfilt;
constexpr std::int32_t smooth = idx_filttyp_antismooth;
constexpr std::int32_t line = idx_filttyp_detrend;
constexpr std::int32_t bridge = idx_filttyp_bridge;
constexpr std::int32_t band = idx_subfilttyp_bandpass;
constexpr std::int32_t low = idx_subfilttyp_lowpass;
constexpr std::int32_t high = idx_subfilttyp_highpass;
constexpr std::int32_t centred = idx_subfilttyp_centredband;

// The window is in intervals.
FilterRun bridged(const Road& profile, float window, std::int32_t out_type = 7) {
    return {profile, {.main_type = idx_filttyp_bridge, .shortest = window, .out_type = out_type}};
}

// The first `count` levels.
Road levels(const Road& road, std::size_t window, std::size_t count) {
    Road level;
    for (std::size_t k = 0; k < count; ++k) {
        level.push_back(literal_bridge_level(std::span(road).subspan(k, window), 0.001F).value());
    }
    return level;
}

} // namespace

// 1 / interval is 8. The third road of the line needs sums in 64-bit, the second arithmetic in
// 32-bit; the second road of anti-smoothing has 2^24 - 1 for a running sum that takes the new sample
// before it drops the old one, and 2^24 for every other.
TEST(Filters, HandWorkedRoads) {
    const std::string late = "101 2 qcarfilt_drv/filtcon_drv: tFiltCon%iOutType is not either "
                             "idx_filtouttyp_elevation nor idx_filtouttyp_slope";
    const std::string driver = "/bridge_filter_drv/filtcon_drv: ";
    const std::string too_wide = "101 2 br_filt" + driver + "ibase .gt. mxbase -9 to -9: 3 4";
    const std::string hung_up =
        "101 2 br_filt/br_filt" + driver + "iter .gt. mxiter, hung up. -9 to -9:";
    const std::tuple<Filter, Road, std::string> cases[] = {
        {{idx_filttyp_none}, {1.0F, 3.0F}, "0 to 1: 1 3"},
        {{average, 4, 9.0F, 9.0F, 2}, {1.0F, 3.0F, 2.0F}, "0 to 2: 0 16 -8"},
        {{average, low, 9.0F, 1.9F, 2}, {1.0F, 3.0F, 2.0F}, "0 to 2: 1 3 2"},
        {{average, band, 9.0F, 1.9F, 2}, {1.0F, 3.0F, 2.0F}, "0 to 2: 1 3 2"},
        {{average, high, 1.0F, 0.0F}, {4.0F, 8.0F}, "0 to 1: 0 4"},
        {{average, high, 0.4F}, {4.0F, 8.0F}, "0 to 1: nan nan"},
        {{average, high, -1e30F}, {}, "0 to -1:"},
        {{car}, {1.0F, 1.0F}, "0 to -1: 0 0"},
        {{car}, {1.0F, 1.0F, 1.0F}, "0 to 0: 0 0 0"},
        {{car, 0, 9.0F, 9.0F, 3}, {1.0F, 1.0F, 1.0F}, late + " -9 to -9: 0 0 0"},
        {{butterworth, 0}, {1.0F, 3.0F}, ""},
        {{butterworth, high, inf}, {1.0F, 3.0F}, "0 to 1: 0 nan"},
        {{butterworth, low, 9.0F, nan}, {1.0F, 3.0F}, "0 to 1: nan nan"},
        {{butterworth, centred, 9.0F, 4.0F}, {3.0F, 3.0F}, "0 to 1: 0 0"},
        {{smooth, 0, 9.0F, 3.0F}, {1, 1, 1, 1, 1, 1}, "2 to 1: 0 0 0 0 0 0"},
        {{smooth, 0, 9.0F, 1.0F}, {0, 1, 0, 16777216}, "1 to 1: 0 -8388607.5 0 0"},
        {{smooth, 0, 9.0F, 1.0F, 2}, {8, 2, 0, 0}, "1 to 1: 0 -8 0 0"},
        {{smooth, 0, 9.0F, -2e-8F}, {1.0F, 3.0F}, "0 to 1: nan nan"},
        {{smooth, 0, 9.0F, nan}, {1.0F, 3.0F}, "0 to 1: nan nan"},
        {{line}, {12.0F, 14.0F, 16.0F, 18.0F}, "0 to 3: 14 14 14 14"},
        {{line}, {0, 0, 0, 1}, "0 to 3: 0.300000012 0 -0.300000012 0.399999976"},
        {{line}, {8388608, 8388608, 8388610}, "0 to 2: 8388608 8388607.5 8388608"},
        {{line, 0, 9.0F, 9.0F, 2}, {0.0F, 0.0F, 3.0F}, "0 to 2: 0 -12 12"},
        {{line, 0, 9.0F, 9.0F, 2}, {5.0F}, "0 to 0: 0"},
        {{line, 0, 9.0F, 9.0F, 3}, {}, "0 to -1:"},
        {{bridge, 0, 9.0F, 10.0F, 2}, {3.0F, 4.0F}, "0 to -8: 0 0"},
        {{bridge, 0, 9.0F, 1001.0F, 2}, {3, 4}, too_wide},
        {{bridge, 0, 9.0F, 2.0F, 2}, {-2e7F, -2e7F}, hung_up + " 0 -20000000"},
        {{bridge, 0, 9.0F, 2.0F, 2}, {inf, 0.0F}, hung_up + " 0 0"},
    };
    for (const auto& [filter, road, outcome] : cases) {
        EXPECT_EQ(FilterRun(road, filter).outcome(), outcome);
    }
}

TEST(Filters, FailuresLeaveTheOutputUntouched) {
    const std::string box = "moving average base length is greater the sampling distance";
    const std::string box_high = "101 2 mvgavg/filtcon_drv: hi-pass " + box;
    const std::string cutoff = "101 2 zeb_bwfilter/bwfilt_drv/filtcon_drv: ";
    const std::string cutoff_high = cutoff + "Highpass cutoff is below the threshold value (~ 2 x "
                                             "Step * 0.86). Try again with a larger value.";
    const std::string cutoff_low = cutoff + "Lowpass cutoff is below the threshold value(~ 2 * "
                                            "Step / 0.86). Try again with a larger value.";
    const std::string corner = "101 2 DRBWfilt/DRBWfilt_drv_prof/bwfilt_drv/filtcon_drv: ";
    const std::string corner_low = corner + "low corner frequency (f0-fc) <= 0.0";
    const std::string corner_high = corner + "high corner frequency (f0+fc) >= nyquist";
    const std::string window = "101 2 antismooth/filtcon_drv: the baselength ";
    const std::string one_interval = window + "is only 1 sampling interval- check your input";
    const std::string switches = "101 2 qcarfilt_drv/filtcon_drv: tFiltCon%if250mmFilter is not "
                                 "either 1 -yes- nor 2 -no-";
    const std::string runs;
    const std::pair<Filter, std::string> cases[] = {
        {{8}, "101 2 filtcon_drv: Illegal Main filter type"},
        {{average, high, 29.0F, 0.0F}, runs},
        {{average, high, 30.0F, 0.0F}, box_high},
        {{average, low, 0.0F, 29.0F}, runs},
        {{average, low, 0.0F, 30.0F}, "101 2 mvgavg/filtcon_drv: " + box},
        {{average, band, 30.0F, 30.0F}, box_high},
        {{car, 0, 9.0F, 9.0F, 2, 0}, switches},
        {{idx_filttyp_RN, 0, 9.0F, 9.0F, 2, 2, 1e-38F}, runs},
        {{idx_filttyp_RN, 0, 9.0F, 9.0F, 2, 2, 3e38F}, runs},
        {{butterworth, 5}, "101 2 bwfilt_drv/filtcon_drv: iBWFilterType is not within range"},
        {{butterworth, high, 1.72676F}, cutoff_high},
        {{butterworth, high, 1.72677F}, runs},
        {{butterworth, low, 9.0F, 2.31646F}, cutoff_low},
        {{butterworth, low, 9.0F, 2.31647F}, runs},
        {{butterworth, band, 0.0F, 0.0F}, cutoff_high},
        {{butterworth, band, 9.0F, 0.0F}, cutoff_low},
        {{butterworth, centred, 99.0F, 2.0F}, corner_high},
        {{butterworth, centred, 99.0F, 2.01F}, runs},
        {{butterworth, centred, nan, 9.0F}, corner_high},
        {{butterworth, centred, inf, 9.0F}, corner_low},
        {{butterworth, centred, 1e31F, 9.0F}, corner_low},
        {{smooth, 0, 9.0F, -1.4e-8F}, one_interval},
        {{smooth, 0, 9.0F, 0.9F}, one_interval},
        {{smooth, 0, 9.0F, 28.9F}, runs},
        {{smooth, 0, 9.0F, 29.0F}, window + "greater than the profile length - check your input"},
    };
    for (const auto& [filter, event] : cases) {
        const FilterRun run(random_road(30, 0.125, 62), filter);
        EXPECT_EQ(event == runs ? run.event : run.outcome(), event);
        EXPECT_TRUE(event == runs || run.statistic == 0.0F);
    }
}

TEST(Filters, SlopeIsTheDifferenceTimesTheReciprocalOfTheInterval) {
    const auto road = random_road(300, 0.3048, 64);
    for (Filter filter : {Filter{average, low}, {butterworth, low}, {smooth}, {line}, {bridge}}) {
        filter.interval = 0.3048F;
        const Road elevation = FilterRun(road, filter).y;
        filter.out_type = idx_filtouttyp_slope;
        const FilterRun slope(road, filter);
        EXPECT_EQ(slope.y[0], 0.0F);
        for (auto i = static_cast<std::size_t>(slope.record.iBeginElemIdx) + 1; i < 290; ++i) {
            EXPECT_EQ(slope.y[i], (elevation[i] - elevation[i - 1]) * (1.0F / 0.3048F)) << i;
        }
    }
}

// The extension is half the length rounded to the nearest whole sample: the box of 21 samples lies
// about its sample for a length of 20.8 intervals, and one sample behind it for 21 and 21.2.
TEST(MovingAverage, KeepsTheBitsOfTheMeanOverASeparateExtendedProfile) {
    const auto road = random_road(1500, 0.125, 11);
    const auto expect = [&](const Filter& filter, const Road& y) {
        EXPECT_EQ(FilterRun(road, filter).y, y) << filter.longest << " " << filter.shortest;
    };
    const std::tuple<float, std::size_t, std::size_t> boxes[] = {
        {2.0F, 2, 1},    {2.4F, 2, 1},       {20.8F, 21, 10},     {21.0F, 21, 11},
        {21.2F, 21, 11}, {510.6F, 511, 255}, {1499.0F, 1499, 750}};
    for (const auto& [length, base, half] : boxes) {
        const auto high_passed = literal_moving_average(road, base, half, true);
        expect({average, high, length, 0.0F}, high_passed);
        expect({average, low, 0.0F, length}, literal_moving_average(road, base, half, false));
        expect({average, band, length, 5.0F}, literal_moving_average(high_passed, 5, 3, false));
    }
}

// Cutoffs so long bring the last bits of the 64-bit work up to those of the result.
TEST(Butterworth, KeepsTheBitsOfOnePassAfterTheOther) {
    for (const std::size_t count : {0U, 1U, 2U, 3U, 20000U}) {
        const auto road = random_road(count, 0.125, 31);
        const auto expect = [&](const Filter& filter, const std::vector<double>& y) {
            EXPECT_EQ(FilterRun(road, filter).y, Road(y.begin(), y.end())) << count;
        };
        const std::vector<double> x(road.begin(), road.end());
        const auto high_passed = literal_butterworth_high_pass(x, 0.125F, 15000.0F);
        expect({butterworth, high, 120000.0F, -1.0F, 7}, high_passed);
        expect({butterworth, low, -1.0F, 12e3F}, literal_butterworth_low_pass(x, 0.125F, 1500.0F));
        expect({butterworth, band, 120000.0F, 12e3F},
               literal_butterworth_low_pass(high_passed, 0.125F, 1500.0F));
    }
}

// The library divides complex numbers in an order of its own, which moves the last bits. The bands
// of negative width, whose recursion grows along the road, are kept short. The road lies high, so
// that a mean of other than 32-bit sums leaves a step where the filter begins.
TEST(BandPass, IsTheCascadeOfSectionsOneAfterTheOther) {
    using Band = std::tuple<std::size_t, float, float>;
    for (const auto& [count, longest, shortest] :
         {Band{0, 36.0F, 6.0F}, Band{1, 36.0F, 6.0F}, Band{1500, 36.0F, 6.0F},
          Band{40, 6.0F, 36.0F}, Band{40, 36.0F, -6.0F}}) {
        auto road = random_road(count, 0.125, 51);
        for (float& sample : road) {
            sample += 100.0F;
        }
        const auto signal =
            literal_band_pass_signal(road, 0.125F, shortest * 0.125F, longest * 0.125F);
        const Road y = FilterRun(road, {butterworth, centred, longest, shortest, 2}).y;
        for (std::size_t i = 0; i < count; ++i) {
            const double expected = 2.0 * signal[i].real();
            EXPECT_NEAR(y[i], expected, 1e-9 + 1e-7 * std::abs(expected)) << i;
        }
    }
}

TEST(Bridge, KeepsTheBitsOfOneWindowAfterTheOther) {
    const auto road = random_road(1100, 0.125, 41);
    const std::pair<float, std::size_t> windows[] = {
        {0.0F, 1}, {-1e38F, 1}, {nan, 1}, {2.4F, 2}, {2.5F, 3}, {9.6F, 10}, {1000.0F, 1000}};
    for (const auto& [window, iBase] : windows) {
        auto expected = levels(road, iBase, 1101 - iBase);
        expected.resize(road.size());
        EXPECT_EQ(bridged(road, window).y, expected) << window;
        EXPECT_EQ(bridged(road, window).range(), "0 to " + std::to_string(1100 - iBase));
    }
}

// A lone spike halves the distance to the level of 400 samples in 277 iterations, so that it takes
// more than a thousand. The windows behind the failing one are not filtered, and nothing becomes a
// slope.
TEST(Bridge, LevelThatIsNotFoundEndsTheFilterThere) {
    for (const std::size_t failing : {0U, 1U, 31U, 32U, 50U}) {
        auto road = random_road(600, 0.125, 43);
        road[failing + 399] = 50.0F;
        auto expected = road;
        const auto found = levels(road, 400, failing);
        std::copy(found.begin(), found.end(), expected.begin());
        expected[failing] = failing > 0 ? found.back() : 0.0F;
        EXPECT_EQ(bridged(road, 400.0F, idx_filtouttyp_slope).y, expected) << failing;
    }
}

// Six samples of n stand out, so that each iteration takes the share 6 / n off what is left and the
// level is found in ln 0.001 / ln(1 - 6 / n) of them: 999.3 of 871 samples, 1000.5 of 872.
TEST(Bridge, LevelIsSoughtInAThousandIterations) {
    for (const std::size_t window : {871U, 872U}) {
        Road road(window, -1.0F);
        std::fill_n(road.begin(), 6, 0.0F);
        EXPECT_EQ(bridged(road, static_cast<float>(window)).event.empty(), window == 871U);
    }
}

TEST(Bridge, SpikeStandsOutByTheToleranceTimesAllOtherSamples) {
    EXPECT_NEAR(bridged({0.0F, 1.0F, 0.0F}, 3.0F).y[0], 0.998, 3.1e-6);
    EXPECT_NEAR(bridged({0.25F, nan, 0.25F}, 3.0F).y[0], 0.2495, 1.6e-6);
}

} // namespace vialto::test
