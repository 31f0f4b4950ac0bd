#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <iomanip>
#include <limits>
#include <numbers>
#include <sstream>
#include <tuple>

#include "filters/filtcon.hpp"
#include "filters/quarter_car.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "support/literal_filters.hpp"
#include "support/quarter_car_model.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

constexpr float nan = std::numeric_limits<float>::quiet_NaN();
constexpr float untouched_sample = -7.5F;

constexpr std::int32_t average = idx_filttyp_mvgavg;
constexpr std::int32_t iri = idx_filttyp_IRI;
constexpr std::int32_t butterworth = idx_filttyp_bwfilt;
constexpr std::int32_t smooth = idx_filttyp_antismooth;
constexpr std::int32_t line = idx_filttyp_detrend;
constexpr std::int32_t bridge = idx_filttyp_bridge;
constexpr std::int32_t band = idx_subfilttyp_bandpass;
constexpr std::int32_t low = idx_subfilttyp_lowpass;
constexpr std::int32_t high = idx_subfilttyp_highpass;
constexpr std::int32_t centred = idx_subfilttyp_centredband;

struct Filter {
    std::int32_t main_type;
    std::int32_t sub_type = idx_subfilttyp_none;
    float longest = 9.0F; // in intervals, as is the next
    float shortest = 9.0F;
    std::int32_t out_type = idx_filtouttyp_elevation;
    std::int32_t if250mmFilter = vialto_yes;
    float interval = 0.125F; // m
};

// "0 to 2: 1.5 nan 3" for the range of the valid elements and all elements.
std::string listing(std::int32_t begin, std::int32_t end, const Road& y) {
    std::ostringstream text;
    text << std::setprecision(9) << begin << " to " << end << ":";
    for (const float value : y) {
        text << " " << (std::isnan(value) ? nan : value);
    }
    return text.str();
}

struct FilterRun {
    Road y;
    float statistic = untouched_sample;
    std::string outcome; // the event of a failure, and the listing if anything was written

    FilterRun(const Road& profile, const Filter& f) : y(profile.size(), untouched_sample) {
        const float longest = f.longest * f.interval;
        const float shortest = f.shortest * f.interval;
        tFiltCon record{f.main_type, f.sub_type, f.out_type, f.if250mmFilter,
                        0.0F,        longest,    shortest,   70.0F,
                        0.0F,        -9,         -9};
        reset_event();
        (void)filtcon_drv(profile, f.interval, record, y, statistic);
        const std::string listed = listing(record.iBeginElemIdx, record.iEndElemIdx, y);
        outcome = summary_of_current_event();
        if (listed != listing(-9, -9, Road(y.size(), untouched_sample))) {
            outcome += (outcome.empty() ? "" : " ") + listed;
        }
    }
};

// The road with the levels of its first `count` windows.
Road levelled(Road road, std::size_t window, std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) {
        road[k] = literal_bridge_level(std::span(road).subspan(k, window), 0.001F);
    }
    return road;
}

// The event of the export, called with the pointer of that name null, and the listing after it.
std::string export_outcome(float interval, float base_length, const std::string& null_pointer) {
    Road y{0, 0, 0, 0, 3, 0, 0, 0};
    std::int32_t begin = -9;
    std::int32_t end = -9;
    EventRecord event;
    const std::int32_t code =
        antismth_dlldrv(interval, base_length, 8, null_pointer == "xProfile" ? nullptr : y.data(),
                        null_pointer == "iBeginElemIdx" ? nullptr : &begin,
                        null_pointer == "iEndElemIdx" ? nullptr : &end, event);
    EXPECT_EQ(code == vialto_success, event.untouched());
    return (event.untouched() ? "" : event.summary() + " ") + listing(begin, end, y);
}

} // namespace

// 1 / interval is 8, or 1 / 0.3F, where a quotient is not the product with it. The line through
// 8388608 needs sums in 64-bit, and 2^24 a running sum that takes a sample before it drops one.
TEST(Filters, HandWorkedRoads) {
    const std::string late = "101 2 qcarfilt_drv/filtcon_drv: tFiltCon%iOutType is not either "
                             "idx_filtouttyp_elevation nor idx_filtouttyp_slope";
    const std::string switches = "101 2 qcarfilt_drv/filtcon_drv: tFiltCon%if250mmFilter is not "
                                 "either 1 -yes- nor 2 -no-";
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
    const std::string too_wide = "101 2 br_filt" + driver + "ibase .gt. mxbase -9 to -9: 3 4";
    const std::string hung_up =
        "101 2 br_filt/br_filt" + driver + "iter .gt. mxiter, hung up. -9 to -9: 0 -20000000";
    const std::tuple<Filter, Road, std::string> cases[] = {
        {{8}, {1, 3}, "101 2 filtcon_drv: Illegal Main filter type"},
        {{idx_filttyp_none}, {1, 3}, "0 to 1: 1 3"},
        {{average, 4, 9.0F, 9.0F, 2}, {1, 3, 2}, "0 to 2: 0 16 -8"},
        {{average, 4, 9.0F, 9.0F, 2, 1, 0.3F}, {0.0F, 1.1F}, "0 to 1: 0 3.66666675"},
        {{average, low, 9.0F, 1.9F, 2}, {1, 3, 2}, "0 to 2: 1 3 2"},
        {{average, band, 9.0F, 1.9F, 2}, {1, 3, 2}, "0 to 2: 1 3 2"},
        {{average, high, 1.0F, 0.0F}, {4, 8}, "0 to 1: 0 4"},
        {{average, low, 9.0F, 2.0F}, {4, 8, 6}, "0 to 2: 4 6 7"},
        {{average, low, 9.0F, 3.0F}, {4, 8, 6}, "101 2 mvgavg/filtcon_drv: " + box},
        {{average, band, 3.0F, 3.0F}, {4, 8, 6}, "101 2 mvgavg/filtcon_drv: hi-pass " + box},
        {{iri}, {1, 1}, "0 to -1: 0 0"}, // the statistic of no sample is 0 / 0
        {{iri}, {1, 1, 1}, "0 to 0: 0 0 0"},
        {{iri, 0, 9.0F, 9.0F, 3}, {1, 1, 1}, late + " -9 to -9: 0 0 0"},
        {{iri, 0, 9.0F, 9.0F, 2, 0}, {1, 1, 1}, switches},
        {{butterworth, 0}, {1, 3}, ""},
        {{butterworth, 5}, {}, "101 2 bwfilt_drv/filtcon_drv: iBWFilterType is not within range"},
        {{butterworth, high, 1.72676F}, {3, 3}, cutoff_high},
        {{butterworth, high, 1.72677F}, {3, 3}, "0 to 1: 0 0"},
        {{butterworth, low, 9.0F, 2.31646F}, {3, 3}, cutoff_low},
        {{butterworth, low, 9.0F, 2.31647F}, {3, 3}, "0 to 1: 3 3"},
        {{butterworth, low, 9.0F, 3.0F, 2}, {3, 3}, "0 to 1: 0 0"},
        {{butterworth, low, 9.0F, nan}, {1, 3}, "0 to 1: nan nan"},
        {{butterworth, band, 0.0F, 0.0F}, {3, 3}, cutoff_high},
        {{butterworth, centred, 99.0F, 2.0F}, {3, 3}, corner_high},
        {{butterworth, centred, 99.0F, 2.01F}, {3, 3}, "0 to 1: 0 0"},
        {{butterworth, centred, nan, 9.0F}, {3, 3}, corner_high},
        {{butterworth, centred, 1e31F, 9.0F}, {3, 3}, corner_low},
        {{smooth, 0, 9.0F, 0.0F}, {1, 3}, one_interval},
        {{smooth, 0, 9.0F, -2e-8F}, {1, 3}, "0 to 1: nan nan"},
        {{smooth, 0, 9.0F, 2.0F}, {1, 1, 1}, too_short},
        {{smooth, 0, 9.0F, 0.99999994F}, {1, 1, 1}, "1 to 0: 0 0 0"},
        {{smooth, 0, 9.0F, 3.0F}, {1, 1, 1, 1, 1, 1}, "2 to 1: 0 0 0 0 0 0"},
        {{smooth, 0, 9.0F, 1.0F}, {0, 1, 0, 16777216}, "1 to 1: 0 -8388607.5 0 0"},
        {{smooth, 0, 9.0F, 1.0F, 2}, {8, 2, 0, 0}, "1 to 1: 0 -8 0 0"},
        {{line}, {12, 14, 16, 18}, "0 to 3: 14 14 14 14"},
        {{line}, {8388608, 8388608, 8388610}, "0 to 2: 8388608 8388607.5 8388608"},
        {{line, 0, 9.0F, 9.0F, 2}, {0, 0, 3}, "0 to 2: 0 -12 12"},
        {{line}, {5}, "0 to 0: 5"},
        {{bridge, 0, 9.0F, 10.0F}, {3, 4}, "0 to -8: 0 0"},
        {{bridge, 0, 9.0F, 1.0F, 2}, {2, 2, 2}, "0 to 2: 0 0 0"},
        {{bridge, 0, 9.0F, 1001.0F, 2}, {3, 4}, too_wide},
        {{bridge, 0, 9.0F, 2.0F, 2}, {-2e7F, -2e7F}, hung_up},
    };
    for (const auto& [filter, road, outcome] : cases) {
        const FilterRun run(road, filter);
        EXPECT_EQ(run.outcome, outcome);
        EXPECT_EQ(run.statistic == 0.0F, outcome != "0 to -1: 0 0") << outcome;
    }
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
        EXPECT_EQ(FilterRun(road, {average, high, length, 0.0F}).y, high_passed) << length;
        EXPECT_EQ(FilterRun(road, {average, low, 0.0F, length}).y, low_passed) << length;
        EXPECT_EQ(FilterRun(road, {average, band, length, 5.0F}).y, both) << length;
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
        EXPECT_EQ(FilterRun(road, {bridge, 0, 9.0F, window, 7}).y, expected) << window;
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
        EXPECT_EQ(FilterRun(road, {bridge, 0, 9.0F, 400.0F, 2}).y, expected) << failing;
    }
}

// Six samples of n stand out, so that each iteration takes the share 6 / n off what is left and the
// level is found in ln 0.001 / ln(1 - 6 / n) of them: 999.3 of 871 samples, 1000.5 of 872.
TEST(Bridge, LevelIsSoughtInAThousandIterations) {
    for (const std::size_t window : {871U, 872U}) {
        Road road(window, -1.0F);
        std::fill_n(road.begin(), 6, 0.0F);
        const FilterRun run(road, {bridge, 0, 9.0F, static_cast<float>(window)});
        EXPECT_EQ(run.outcome.starts_with("0 to 0: "), window == 871U);
    }
}

TEST(Bridge, SpikeStandsOutByTheToleranceTimesAllOtherSamples) {
    EXPECT_NEAR(FilterRun({0, 1, 0}, {bridge, 0, 9.0F, 3.0F}).y[0], 0.998, 3.1e-6);
}

// The cars at the speeds that a Filter asks for: that of the index is its own.
constexpr QuarterCar rn_car_at_70{19.0F, 5120.0F, 390.0F, 17.0F, 0.036F, 70.0F};
constexpr std::tuple<std::int32_t, QuarterCar, float> cars[] = {
    {iri, iri_car, 1.0F}, {idx_filttyp_RN, rn_car_at_70, 2.0F}};

// The integral of the first slope takes it without the interval. The roads of 300 samples may end
// within the initialization length.
TEST(QuarterCar, SameBitsAsTheRecursionWrittenDownLiterally) {
    const std::tuple<std::size_t, float, int, std::int32_t> cases[] = {
        {3000, 0.025F, 10, vialto_yes},
        {300, 0.05F, 5, vialto_yes},
        {3000, 0.6F, 1, vialto_yes},
        {3000, 0.025F, 1, vialto_no}};
    for (const auto& [count, step, base, if250mmFilter] : cases) {
        const auto profile = random_road(count, 0.125, 7);
        for (const auto& [type, car, exponent] : cars) {
            auto [y, statistic] = literal_filter(car, profile, step, base, exponent);
            Filter filter{type, 0, 0.0F, 0.0F, idx_filtouttyp_slope, if250mmFilter, step};
            const FilterRun run(profile, filter);
            EXPECT_EQ(run.y, y) << step << " " << type;
            EXPECT_EQ(run.statistic, statistic) << step << " " << type;
            for (std::size_t i = 1; i < count; ++i) {
                y[i] = y[i - 1] + step * y[i];
            }
            y[0] = 0.0F;
            filter.out_type = idx_filtouttyp_elevation;
            EXPECT_EQ(FilterRun(profile, filter).y, y) << step << " " << type;
        }
    }
}

// One lane may hold what spreads: an infinity, a NaN, or a height that overflows. Behind the whole
// roads go two to four stretches of them that start at different samples.
TEST(QuarterCar, TwoTracksHaveTheBitsThatEachHasAlone) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    for (const float odd : {0.0F, nan, infinity, 3e38F}) {
        for (const std::size_t lane : {0U, 1U}) {
            const std::int32_t type = lane == 0 ? iri : idx_filttyp_RN;
            std::array<Road, 2> roads{random_road(700, 0.125, 8), random_road(700, 0.125, 9)};
            roads[lane][333] = odd;
            std::array<Road, 2> y{Road(700), Road(700)};
            QuarterCarTrack tracks[]{{roads[0], y[0]}, {roads[1], y[1]}};
            tFiltCon record{type, 0, 2, vialto_yes, 0.0F, 0.0F, 0.0F, 70.0F, 0.0F, 0, 0};
            EXPECT_EQ(filtcon_drv(tracks, 0.125F, record), success);
            vialto::QuarterCar car{};
            EXPECT_EQ(set_up_quarter_car(0.125F, 0.25F, 1.0F,
                                         lane == 0 ? iri_parameters() : rn_parameters(70.0F), car),
                      success);
            for (const std::size_t k : {0U, 1U}) {
                const FilterRun alone(roads[k], {type, 0, 0.0F, 0.0F, 2});
                EXPECT_EQ(listing(0, 0, y[k]), listing(0, 0, alone.y)) << odd << " " << lane;
                EXPECT_EQ(listing(0, 0, {tracks[k].xQcarStat}), listing(0, 0, {alone.statistic}));
            }
            for (const std::size_t count : {2U, 3U, 4U}) {
                std::vector<QuarterCarRun> runs(count);
                std::vector<Road> stretch(count, Road(300));
                for (std::size_t k = 0; k < count; ++k) {
                    const std::size_t first = 40 + 60 * k;
                    const Road& road = roads[k % 2];
                    runs[k] = {road, start_state(car, road), std::span(stretch[k]).first(first)};
                    run_quarter_car(car, {&runs[k], 1});
                    runs[k] = {runs[k].profile.subspan(first), runs[k].state, stretch[k]};
                }
                run_quarter_car(car, runs);
                for (std::size_t k = 0; k < count; ++k) {
                    const auto from = y[k % 2].begin() + 40 + 60 * static_cast<std::ptrdiff_t>(k);
                    EXPECT_EQ(listing(0, 0, stretch[k]), listing(0, 0, {from, from + 300}));
                }
            }
        }
    }
}

// Masses, springs and damper in the frequency domain, of which the sinusoid has one radian a metre.
TEST(QuarterCar, SinusoidComesOutWithTheAnalyticGain) {
    const auto profile = sinusoid(24000, 0.025, 2.0 * std::numbers::pi, 1.0);
    for (const auto& [type, car, exponent] : cars) {
        const std::complex<float> s(0.0F, car.speed / 3.6F);
        const auto link = car.k2 + car.c * s;
        const auto sprung = link / (s * s + link);
        const auto unsprung = car.k1 / (car.mu * s * s + car.k1 + link * (1.0F - sprung));
        const auto y = FilterRun(profile, {type, 0, 0.0F, 0.0F, 2, vialto_yes, 0.025F}).y;
        const float amplitude = *std::max_element(y.begin() + 12000, y.end());
        EXPECT_NEAR(amplitude / std::abs(unsprung * (1.0F - sprung)), 1.0F, 0.003F);
    }
}

TEST(QuarterCar, GuardsBehindTheDispatch) {
    const Road profile{1, 2, 3};
    Road y(3);
    QuarterCarTrack track{profile, y};
    tFiltCon settings{};
    const auto event_of = [&](float xInitLength, float xMu) {
        (void)qcar_filter({&track, 1}, 0.025F, 0.25F, 1.0F,
                          {xInitLength, 1.0F, 653.0F, 63.3F, 6.0F, xMu, 80.0F},
                          settings.iBeginElemIdx, settings.iEndElemIdx);
        EXPECT_EQ(y, profile);
        return summary_of_current_event();
    };
    EXPECT_EQ(event_of(11.0F, 0.0F), "101 3 setstm/setstm/qcar_filter: the combination of cutoff "
                                     "wavelengths causes ill-conditioned matrix");
    EXPECT_EQ(event_of(1e-8F, 0.15F),
              "101 2 qcar_filter: initialization length for IRI/PTRN should not be zero");
    (void)qcarfilt_drv({&track, 1}, 0.025F, settings);
    EXPECT_EQ(summary_of_current_event(),
              "101 2 qcarfilt_drv: tFiltCon%iMainFilterType is not either IRI nor RN");
}

TEST(AntiSmoothingExport, GivesTheDistanceFromTheMeanAndListsTheSignedOne) {
    const TemporaryDirectory directory;
    EXPECT_EQ(export_outcome(0.25F, 0.5F, ""), "2 to 4: 0 0 2 1 0 0 0 0"); // window of 3, middle 2
    EXPECT_EQ(directory.text_of("antismth_dlldrv.txt"), "  0.5 0 2\n  0.75 0 -1\n  1 3 0\n");
}

TEST(AntiSmoothingExport, FailureLeavesOutputsAndNoFile) {
    const TemporaryDirectory directory;
    const std::string kept = " -9 to -9: 0 0 0 0 3 0 0 0";
    for (const std::string name : {"xProfile", "iBeginElemIdx", "iEndElemIdx"}) {
        EXPECT_EQ(export_outcome(0.25F, 0.5F, name),
                  "100 2 antismth_dlldrv: " + name + " is a null pointer" + kept);
    }
    EXPECT_EQ(export_outcome(0.0F, 0.5F, ""),
              "100 2 antismth_dlldrv: xStepSize is not a positive finite number" + kept);
    for (const float length : {-1e-6F, -3.0F, -std::numeric_limits<float>::infinity(), nan}) {
        EXPECT_EQ(export_outcome(0.25F, length, ""),
                  "100 2 antismth_dlldrv: xBaseLength is negative or not a number" + kept);
    }
    for (const float length : {-1e-9F, 0.0F}) {
        EXPECT_EQ(export_outcome(0.25F, length, "").find("101 2 antismooth/filtcon_drv/"), 0U);
    }
    EXPECT_FALSE(directory.holds("antismth_dlldrv.txt"));
    set_tmp((directory.path() / "missing").string());
    const std::string unopened = export_outcome(0.25F, 0.5F, "");
    EXPECT_TRUE(unopened.starts_with("102 2 io_tmp_file/antismth_dlldrv: ") &&
                unopened.ends_with(kept));
}

} // namespace vialto::test
