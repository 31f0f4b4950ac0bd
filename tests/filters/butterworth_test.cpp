#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "filters/filtcon.hpp"
#include "support/current_event.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.025F; // m
constexpr float stale = -7.5F;
constexpr std::int32_t untouched_index = -9;

tFiltCon cutoffs(std::int32_t sub_type, float longest, float shortest,
                 std::int32_t out_type = idx_filtouttyp_elevation) {
    tFiltCon settings{};
    settings.iMainFilterType = idx_filttyp_bwfilt;
    settings.iSubFilterType = sub_type;
    settings.iOutType = out_type;
    settings.xLongWavelength = longest;
    settings.xShortWavelength = shortest;
    settings.iBeginElemIdx = untouched_index;
    settings.iEndElemIdx = untouched_index;
    return settings;
}

std::vector<float> filtered(const std::vector<float>& profile, tFiltCon settings) {
    std::vector<float> y(profile.size(), stale);
    EXPECT_EQ(filtcon_drv(profile, interval, settings, y), success);
    EXPECT_EQ(settings.iBeginElemIdx, 0);
    EXPECT_EQ(settings.iEndElemIdx, static_cast<std::int32_t>(profile.size()) - 1);
    return y;
}

std::vector<double> doubles(const std::vector<float>& x) {
    return {x.begin(), x.end()};
}

std::vector<float> floats(const std::vector<double>& x) {
    std::vector<float> rounded;
    for (const double value : x) {
        rounded.push_back(static_cast<float>(value));
    }
    return rounded;
}

// Gain of the two passes of a third-order low-pass; that of the high-pass is 1 minus it.
double low_pass_gain(double wavelength, double cutoff) {
    const auto tangent = [](double length) {
        return std::tan(std::numbers::pi * static_cast<double>(interval) / length);
    };
    return 1.0 / (1.0 + std::pow(tangent(wavelength) / tangent(cutoff), 6.0));
}

} // namespace

TEST(Butterworth, KeepsTheBitsOfOnePassAfterTheOther) {
    for (const std::size_t count : {0U, 1U, 2U, 3U, 4U, 1000U}) {
        const auto road = random_road(count, interval, 31);
        const auto high = literal_butterworth_high_pass(doubles(road), interval, 3.0F);
        const auto low = literal_butterworth_low_pass(doubles(road), interval, 0.3F);
        const auto band = literal_butterworth_low_pass(high, interval, 0.3F);
        // A cutoff that the sub-type does not read may be anything.
        EXPECT_EQ(filtered(road, cutoffs(idx_subfilttyp_highpass, 3.0F, -1.0F)), floats(high));
        EXPECT_EQ(filtered(road, cutoffs(idx_subfilttyp_lowpass, -1.0F, 0.3F)), floats(low));
        EXPECT_EQ(filtered(road, cutoffs(idx_subfilttyp_bandpass, 3.0F, 0.3F)), floats(band));
    }
}

TEST(Butterworth, SinusoidIsAttenuatedByTheGainOfTheTwoPasses) {
    constexpr double correction = 0.8633841081005059;
    constexpr float cutoff = 2.0F;
    const auto nominal = static_cast<double>(cutoff);
    EXPECT_NEAR(low_pass_gain(nominal, nominal * correction), std::sqrt(0.5), 1e-3);
    for (const double wavelength : {1.0, 2.0, 3.0}) {
        const auto road = sinusoid(8000, interval, wavelength, 1.0);
        const auto low = filtered(road, cutoffs(idx_subfilttyp_lowpass, 0.0F, cutoff));
        const auto high = filtered(road, cutoffs(idx_subfilttyp_highpass, cutoff, 0.0F));
        const double low_gain = low_pass_gain(wavelength, nominal * correction);
        const double high_gain = 1.0 - low_pass_gain(wavelength, nominal / correction);
        for (std::size_t i = 3000; i < 5000; ++i) {
            EXPECT_NEAR(low[i], low_gain * static_cast<double>(road[i]), 1e-6);
            EXPECT_NEAR(high[i], high_gain * static_cast<double>(road[i]), 1e-6);
        }
    }
}

TEST(Butterworth, ConstantRoadPassesTheLowPassAndNotTheHighPass) {
    const std::vector<float> flat(500, 2.5F);
    EXPECT_EQ(filtered(flat, cutoffs(idx_subfilttyp_highpass, 10.0F, 0.0F)),
              std::vector<float>(500, 0.0F));
    for (const float sample : filtered(flat, cutoffs(idx_subfilttyp_lowpass, 0.0F, 10.0F))) {
        EXPECT_NEAR(sample, 2.5F, 1e-6F);
    }
}

TEST(Butterworth, OnlyOutputTypeTwoConvertsToSlope) {
    const auto road = random_road(200, interval, 32);
    const auto y = filtered(road, cutoffs(idx_subfilttyp_lowpass, 0.0F, 0.5F, 7));
    const auto slope =
        filtered(road, cutoffs(idx_subfilttyp_lowpass, 0.0F, 0.5F, idx_filtouttyp_slope));
    EXPECT_EQ(slope[0], 0.0F);
    for (std::size_t i = 1; i < y.size(); ++i) {
        EXPECT_EQ(slope[i], (y[i] - y[i - 1]) * (1.0F / interval));
    }
}

TEST(Butterworth, CutoffsHaveToReachTheThresholds) {
    const char* const high_failure =
        "101 2 zeb_bwfilter/bwfilt_drv/filtcon_drv: Highpass cutoff is below the threshold value "
        "(~ 2 x Step * 0.86). Try again with a larger value.";
    const char* const low_failure =
        "101 2 zeb_bwfilter/bwfilt_drv/filtcon_drv: Lowpass cutoff is below the threshold value(~ "
        "2 * Step / 0.86). Try again with a larger value.";
    struct Case {
        std::int32_t sub_type;
        float long_intervals;
        float short_intervals;
        const char* event;
    };
    for (const Case& c : {Case{idx_subfilttyp_highpass, 1.72676F, 9.0F, high_failure},
                          Case{idx_subfilttyp_highpass, 1.72677F, 9.0F, ""},
                          Case{idx_subfilttyp_lowpass, 9.0F, 2.31646F, low_failure},
                          Case{idx_subfilttyp_lowpass, 9.0F, 2.31647F, ""},
                          Case{idx_subfilttyp_bandpass, 0.0F, 0.0F, high_failure},
                          Case{idx_subfilttyp_bandpass, 9.0F, 0.0F, low_failure},
                          Case{idx_subfilttyp_bandpass, 9.0F, 9.0F, ""}}) {
        tFiltCon settings =
            cutoffs(c.sub_type, c.long_intervals * interval, c.short_intervals * interval);
        std::vector<float> y(20, stale);
        reset_event();
        (void)filtcon_drv(random_road(20, interval, 33), interval, settings, y);
        EXPECT_EQ(summary_of_current_event(), c.event);
        const bool runs = *c.event == '\0';
        EXPECT_EQ(y == std::vector<float>(20, stale), !runs);
        EXPECT_EQ(settings.iEndElemIdx, runs ? 19 : untouched_index);
    }
}

} // namespace vialto::test
