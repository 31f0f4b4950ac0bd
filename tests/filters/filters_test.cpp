#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "filters/filter_run.hpp"
#include "support/cases.hpp"
#include "support/host.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {
namespace {

// The road with the levels of its first `count` windows.
Road levelled(Road road, std::size_t window, std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) {
        road[k] = literal_bridge_level(std::span(road).subspan(k, window), 0.001F);
    }
    return road;
}

void gives(const Filter& filter, const Road& road, std::int32_t begin, std::int32_t end,
           const Road& y, float statistic = 0.0F, const std::string& event = "") {
    SCOPED_TRACE(testing::Message() << filter << ", over " << testing::PrintToString(road));
    const FilterRun run(road, filter);
    EXPECT_EQ(run.event, event);
    EXPECT_EQ(run.begin, begin);
    EXPECT_EQ(run.end, end);
    EXPECT_TRUE(same(run.y, y));
    EXPECT_TRUE(same<float>({run.statistic}, {statistic}));
}

// No samples where they are left untouched.
void fails(const Filter& filter, const Road& road, const std::string& event, const Road& y = {}) {
    gives(filter, road, untouched_index, untouched_index,
          y.empty() ? Road(road.size(), untouched_sample) : y, 0.0F, event);
}

// 1 / interval is 8, or 1 / 0.3F, where a quotient is not the product with it. The line through
// 8388608 needs sums in 64-bit, and 2^24 a running sum that takes a sample before it drops one.
TEST(Filters, GiveTheRoadsWorkedByHand) {
    gives({idx_filttyp_none}, {1, 3}, 0, 1, {1, 3});
    gives({average, 4, 9.0F, 9.0F, 2}, {1, 3, 2}, 0, 2, {0, 16, -8});
    gives({average, 4, 9.0F, 9.0F, 2, 1, 0.3F}, {0.0F, 1.1F}, 0, 1, {0, 3.66666675F});
    gives({average, low, 9.0F, 1.9F, 2}, {1, 3, 2}, 0, 2, {1, 3, 2});
    gives({iri}, {1, 1}, 0, -1, {0, 0}, nan); // the statistic of no sample is 0 / 0
    gives({iri}, {1, 1, 1}, 0, 0, {0, 0, 0});
    gives({butterworth, 0}, {1, 3}, untouched_index, untouched_index,
          {untouched_sample, untouched_sample});
    gives({butterworth, high, 1.72677F}, {3, 3}, 0, 1, {0, 0});
    gives({butterworth, low, 9.0F, 2.31647F}, {3, 3}, 0, 1, {3, 3});
    gives({butterworth, low, 9.0F, 3.0F, 2}, {3, 3}, 0, 1, {0, 0});
    gives({butterworth, low, 9.0F, nan}, {1, 3}, 0, 1, {nan, nan});
    gives({butterworth, centred, 99.0F, 2.01F}, {3, 3}, 0, 1, {0, 0});
    gives({smooth, 0, 9.0F, -2e-8F}, {1, 3}, 0, 1, {nan, nan});
    gives({smooth, 0, 9.0F, 0.99999994F}, {1, 1, 1}, 1, 0, {0, 0, 0});
    gives({smooth, 0, 9.0F, 3.0F}, {1, 1, 1, 1, 1, 1}, 2, 1, {0, 0, 0, 0, 0, 0});
    gives({smooth, 0, 9.0F, 1.0F}, {0, 1, 0, 16777216}, 1, 1, {0, -8388607.5F, 0, 0});
    gives({smooth, 0, 9.0F, 1.0F, 2}, {8, 2, 0, 0}, 1, 1, {0, -8, 0, 0});
    gives({line}, {12, 14, 16, 18}, 0, 3, {14, 14, 14, 14});
    gives({line}, {8388608, 8388608, 8388610}, 0, 2, {8388608, 8388607.5F, 8388608});
    gives({line, 0, 9.0F, 9.0F, 2}, {0, 0, 3}, 0, 2, {0, -12, 12});
    gives({line}, {5}, 0, 0, {5});
    gives({bridge, 0, 9.0F, 10.0F}, {3, 4}, 0, -8, {0, 0});
    gives({bridge, 0, 9.0F, 1.0F, 2}, {2, 2, 2}, 0, 2, {0, 0, 0});
}

TEST(Filters, RefuseWhatTheyCannotDoAndLeaveTheRest) {
    const std::string late = "101 2 qcarfilt_drv/filtcon_drv: tFiltCon%iOutType is not either "
                             "idx_filtouttyp_elevation nor idx_filtouttyp_slope";
    const std::string box = "moving average base length is greater the sampling distance";
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
    const std::string too_short = window + "greater than the profile length - check your input";
    const std::string driver = "/bridge_filter_drv/filtcon_drv: ";
    const std::string too_wide = "101 2 br_filt" + driver + "ibase .gt. mxbase";
    const std::string hung_up = "101 2 br_filt/br_filt" + driver + "iter .gt. mxiter, hung up.";
    fails(Filter{-1}, {1, 3}, "101 2 filtcon_drv: Illegal Main filter type");
    fails({average, low, 9.0F, 3.0F}, {4, 8, 6}, "101 2 mvgavg/filtcon_drv: " + box);
    fails({average, band, 3.0F, 3.0F}, {4, 8, 6}, "101 2 mvgavg/filtcon_drv: hi-pass " + box);
    fails({iri, 0, 9.0F, 9.0F, 3}, {1, 1, 1}, late, {0, 0, 0});
    fails({butterworth, 5}, {}, "101 2 bwfilt_drv/filtcon_drv: iBWFilterType is not within range");
    fails({butterworth, high, 1.72676F}, {3, 3}, cutoff_high);
    fails({butterworth, low, 9.0F, 2.31646F}, {3, 3}, cutoff_low);
    fails({butterworth, band, 0.0F, 0.0F}, {3, 3}, cutoff_high);
    fails({butterworth, centred, 99.0F, 2.0F}, {3, 3}, corner_high);
    fails({butterworth, centred, nan, 9.0F}, {3, 3}, corner_high);
    fails({butterworth, centred, 1e31F, 9.0F}, {3, 3}, corner_low);
    fails({smooth, 0, 9.0F, 0.0F}, {1, 3}, one_interval);
    fails({smooth, 0, 9.0F, 2.0F}, {1, 1, 1}, too_short);
    fails({bridge, 0, 9.0F, 1001.0F, 2}, {3, 4}, too_wide, {3, 4});
    fails({bridge, 0, 9.0F, 2.0F, 2}, {-2e7F, -2e7F}, hung_up, {0, -20000000});
}

// The extension is half the length rounded to the nearest whole sample: the box of 21 samples lies
// about its sample for a length of 20.8 intervals, and one sample behind it for 21.
TEST(MovingAverage, KeepsTheBitsOfTheMeanOverASeparateExtendedProfile) {
    const auto road = random_road(1500, 0.125, 11);
    const std::tuple<float, std::size_t, std::size_t> boxes[] = {
        {2.4F, 2, 1}, {20.8F, 21, 10}, {21.0F, 21, 11}, {510.6F, 511, 255}, {1499.0F, 1499, 750}};
    for (const auto& [length, base, half] : boxes) {
        const auto high_passed = literal_moving_average(road, base, half, true);
        const auto low_passed = literal_moving_average(road, base, half, false);
        const auto both = literal_moving_average(high_passed, 5, 3, false);
        EXPECT_TRUE(same(FilterRun(road, {average, high, length, 0.0F}).y, high_passed)) << length;
        EXPECT_TRUE(same(FilterRun(road, {average, low, 0.0F, length}).y, low_passed)) << length;
        EXPECT_TRUE(same(FilterRun(road, {average, band, length, 5.0F}).y, both)) << length;
    }
}

// Cutoffs so long bring the last bits of the 64-bit work up to those of the result.
TEST(Butterworth, KeepsTheBitsOfOnePassAfterTheOther) {
    for (const std::size_t count : {0U, 1U, 2U, 3U, 20000U}) {
        const auto road = random_road(count, 0.125, 31);
        const auto expect = [&](const Filter& filter, const std::vector<double>& y) {
            EXPECT_TRUE(same(FilterRun(road, filter).y, Road(y.begin(), y.end())))
                << count << " samples, " << filter;
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
// of negative width, whose recursion grows along the road, are kept short. The road climbs so high
// that a mean of other than 32-bit sums leaves a step where the filter begins.
TEST(BandPass, IsTheCascadeOfSectionsOneAfterTheOther) {
    const std::tuple<std::size_t, float, float> bands[] = {
        {0, 36.0F, 6.0F}, {1500, 36.0F, 6.0F}, {40, 6.0F, 36.0F}, {40, 36.0F, -6.0F}};
    for (const auto& [count, longest, shortest] : bands) {
        const auto road = straight_line(count, 0.125, 100.0);
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
    const std::pair<float, std::size_t> windows[] = {{0.0F, 1}, {nan, 1},   {2.4F, 2},
                                                     {2.5F, 3}, {9.6F, 10}, {1000.0F, 1000}};
    for (const auto& [window, iBase] : windows) {
        auto expected = levelled(road, iBase, 1101 - iBase);
        std::fill_n(expected.rbegin(), iBase - 1, 0.0F);
        EXPECT_TRUE(same(FilterRun(road, {bridge, 0, 9.0F, window, 7}).y, expected)) << window;
    }
}

// A lone spike halves the distance to the level of 400 samples in 277 iterations, so that it takes
// more than a thousand. The windows behind it are not filtered, and nothing becomes a slope.
TEST(Bridge, LevelThatIsNotFoundEndsTheFilterThere) {
    for (const std::size_t failing : {0U, 1U, 31U, 32U, 50U}) {
        auto road = random_road(600, 0.125, 43);
        road[failing + 399] = 50.0F;
        auto expected = levelled(road, 400, failing);
        expected[failing] = failing > 0 ? expected[failing - 1] : 0.0F;
        EXPECT_TRUE(same(FilterRun(road, {bridge, 0, 9.0F, 400.0F, 2}).y, expected)) << failing;
    }
}

// Six samples of n stand out, so that each iteration takes the share 6 / n off what is left and the
// level is found in ln 0.001 / ln(1 - 6 / n) of them: 999.3 of 871 samples, 1000.5 of 872.
TEST(Bridge, LevelIsSoughtInAThousandIterations) {
    for (const std::size_t window : {871U, 872U}) {
        Road road(window, -1.0F);
        std::fill_n(road.begin(), 6, 0.0F);
        const FilterRun run(road, {bridge, 0, 9.0F, static_cast<float>(window)});
        EXPECT_EQ(run.event.empty(), window == 871U) << window;
    }
}

TEST(Bridge, SpikeStandsOutByTheToleranceTimesAllOtherSamples) {
    EXPECT_NEAR(FilterRun({0, 1, 0}, {bridge, 0, 9.0F, 3.0F}).y[0], 0.998, 3.1e-6);
}

const Road spike{0, 0, 0, 0, 3, 0, 0, 0};

// A host's side of antismth_dlldrv.
struct AntiSmoothing {
    float interval = 0.25F;   // m
    float base_length = 0.5F; // m
    std::string null = {};    // the argument that is a null pointer
    Road y = spike;
    std::int32_t begin = -9;
    std::int32_t end = -9;

    // Gives the event of a failure, or nothing.
    std::string run() {
        EventRecord event;
        const auto given = [&](const char* name, auto* p) { return null == name ? nullptr : p; };
        return event.outcome(antismth_dlldrv(interval, base_length, 8, given("xProfile", y.data()),
                                             given("iBeginElemIdx", &begin),
                                             given("iEndElemIdx", &end), event));
    }
};

// Gives the event.
std::string expect_untouched(AntiSmoothing call) {
    const std::string event = call.run();
    EXPECT_TRUE(same(call.y, spike));
    EXPECT_EQ(call.begin, -9);
    EXPECT_EQ(call.end, -9);
    return event;
}

TEST(AntiSmoothingExport, GivesTheDistanceFromTheMeanAndListsTheSignedOne) {
    const TemporaryDirectory directory;
    AntiSmoothing call; // window of 3, middle 2
    EXPECT_EQ(call.run(), "");
    EXPECT_EQ(call.begin, 2);
    EXPECT_EQ(call.end, 4);
    EXPECT_TRUE(same(call.y, {0, 0, 2, 1, 0, 0, 0, 0}));
    EXPECT_EQ(directory.text_of("antismth_dlldrv.txt"), "  0.5 0 2\n  0.75 0 -1\n  1 3 0\n");
}

TEST(AntiSmoothingExport, FailureLeavesOutputsAndNoFile) {
    const TemporaryDirectory directory;
    const std::string refused = "100 2 antismth_dlldrv: ";
    for (const std::string name : {"xProfile", "iBeginElemIdx", "iEndElemIdx"}) {
        EXPECT_EQ(expect_untouched({.null = name}), refused + name + " is a null pointer");
    }
    EXPECT_EQ(expect_untouched({.interval = 0.0F}),
              refused + "xStepSize is not a positive finite number");
    for (const float length : {-1e-6F, -3.0F, -std::numeric_limits<float>::infinity(),
                               std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_EQ(expect_untouched({.base_length = length}),
                  refused + "xBaseLength is negative or not a number")
            << length;
    }
    for (const float length : {-1e-9F, 0.0F}) { // refused by the filter
        const std::string event = AntiSmoothing{.base_length = length}.run();
        EXPECT_TRUE(event.starts_with("101 2 antismooth/filtcon_drv/")) << event;
    }
    EXPECT_EQ(directory.text_of("antismth_dlldrv.txt"), "");
}

} // namespace
} // namespace vialto::test
