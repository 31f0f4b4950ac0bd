#include "filters/moving_average.hpp"

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

tFiltCon box_settings(std::int32_t sub_type, float long_samples, float short_samples,
                      std::int32_t out_type = idx_filtouttyp_elevation) {
    tFiltCon settings{};
    settings.iMainFilterType = idx_filttyp_mvgavg;
    settings.iSubFilterType = sub_type;
    settings.iOutType = out_type;
    settings.xLongWavelength = long_samples * interval;
    settings.xShortWavelength = short_samples * interval;
    settings.iBeginElemIdx = -9;
    settings.iEndElemIdx = -9;
    return settings;
}

std::vector<float> filtered(const std::vector<float>& profile, tFiltCon settings) {
    reset_event();
    std::vector<float> y(profile.size(), stale);
    EXPECT_EQ(filtcon_drv(profile, interval, settings, y), success);
    EXPECT_EQ(settings.iBeginElemIdx, 0);
    EXPECT_EQ(settings.iEndElemIdx, static_cast<std::int32_t>(profile.size()) - 1);
    return y;
}

} // namespace

TEST(MovingAverage, KeepsTheBitsOfTheOneByOneMean) {
    const auto road = random_road(1500, interval, 11);
    for (const std::int32_t base : {1, 2, 3, 64, 65, 128, 511, 1499}) {
        for (const std::int32_t half : {base / 2, (base + 1) / 2}) {
            for (const PassMode mode : {PassMode::high_pass, PassMode::low_pass}) {
                auto w = road;
                mvgavg_pass(w, base, half, mode);
                EXPECT_EQ(w, literal_moving_average(road, static_cast<std::size_t>(base),
                                                    static_cast<std::size_t>(half),
                                                    mode == PassMode::high_pass))
                    << base << " " << half;
            }
        }
    }
}

TEST(MovingAverage, BandPassIsTheHighPassFollowedByTheLowPass) {
    const auto road = random_road(800, interval, 12);
    EXPECT_EQ(filtered(road, box_settings(idx_subfilttyp_bandpass, 101.0F, 10.0F)),
              filtered(filtered(road, box_settings(idx_subfilttyp_highpass, 101.0F, 10.0F)),
                       box_settings(idx_subfilttyp_lowpass, 101.0F, 10.0F)));
}

// The extension is half the length rounded to the nearest whole sample, so the box of 21 samples
// lies about its sample for a length of 20.8 intervals and one sample behind it for 21.2.
TEST(MovingAverage, StraightRoadComesThroughAtTheCentreOfTheBox) {
    constexpr double slope = 0.02;
    constexpr double rise = slope * static_cast<double>(interval); // of one sample
    const auto road = straight_line(400, interval, slope);
    for (const auto& [samples, behind] :
         {std::pair{20.8F, 0.0}, std::pair{20.2F, 0.5}, std::pair{21.2F, 1.0}}) {
        const auto y = filtered(road, box_settings(idx_subfilttyp_lowpass, 0.0F, samples));
        for (std::size_t i = 0; i < road.size(); ++i) {
            EXPECT_NEAR(y[i], static_cast<double>(road[i]) - behind * rise, 1e-5)
                << samples << " " << i;
        }
    }
}

TEST(MovingAverage, SinusoidIsAttenuatedByTheGainOfTheBox) {
    constexpr double wavelength = 2.0;
    const auto road = sinusoid(2000, interval, wavelength, 0.01);
    const double angle = std::numbers::pi * static_cast<double>(interval) / wavelength;
    const double gain = std::sin(31.0 * angle) / (31.0 * std::sin(angle));
    const auto low = filtered(road, box_settings(idx_subfilttyp_lowpass, 0.0F, 30.8F));
    const auto high = filtered(road, box_settings(idx_subfilttyp_highpass, 30.8F, 0.0F));
    for (std::size_t i = 16; i < road.size() - 16; ++i) {
        const auto sample = static_cast<double>(road[i]);
        EXPECT_NEAR(low[i], gain * sample, 1e-6) << i;
        EXPECT_NEAR(high[i], (1.0 - gain) * sample, 1e-6) << i;
    }
}

TEST(MovingAverage, BoxBelowTwoIntervalsBypassesEveryStageOfALowPassAndABandPass) {
    const auto road = random_road(50, interval, 13);
    for (const std::int32_t sub_type : {idx_subfilttyp_lowpass, idx_subfilttyp_bandpass}) {
        EXPECT_EQ(filtered(road, box_settings(sub_type, 9.0F, 1.99F, idx_filtouttyp_slope)), road);
        EXPECT_NE(filtered(road, box_settings(sub_type, 9.0F, 2.0F, idx_filtouttyp_elevation)),
                  road);
    }
    EXPECT_NE(filtered(road, box_settings(idx_subfilttyp_highpass, 9.0F, 0.0F)), road);
}

TEST(MovingAverage, OtherSubTypesRunNoStageButConvertToSlope) {
    const std::vector<float> road{1.0F, 3.0F, 2.0F};
    const float per_step = 1.0F / interval;
    const std::vector<float> slope{0.0F, 2.0F * per_step, -1.0F * per_step};
    for (const std::int32_t sub_type : {-1, 0, 4, 5}) {
        EXPECT_EQ(filtered(road, box_settings(sub_type, 9.0F, 9.0F)), road);
        EXPECT_EQ(filtered(road, box_settings(sub_type, 9.0F, 9.0F, idx_filtouttyp_slope)), slope);
    }
}

TEST(MovingAverage, BoxHasToBeShorterThanTheProfile) {
    const char* const too_long_high = "101 2 mvgavg/filtcon_drv: hi-pass moving average base "
                                      "length is greater the sampling distance";
    const char* const too_long_low = "101 2 mvgavg/filtcon_drv: moving average base length is "
                                     "greater the sampling distance";
    struct Case {
        std::int32_t sub_type;
        float long_samples;
        float short_samples;
        const char* event; // none: the filter runs
    };
    for (const Case& c : {Case{idx_subfilttyp_highpass, 29.0F, 0.0F, ""},
                          Case{idx_subfilttyp_highpass, 30.0F, 0.0F, too_long_high},
                          Case{idx_subfilttyp_lowpass, 0.0F, 29.0F, ""},
                          Case{idx_subfilttyp_lowpass, 0.0F, 30.0F, too_long_low},
                          Case{idx_subfilttyp_bandpass, 30.0F, 30.0F, too_long_high},
                          Case{idx_subfilttyp_bandpass, 29.0F, 1e30F, too_long_low}}) {
        tFiltCon settings = box_settings(c.sub_type, c.long_samples, c.short_samples);
        std::vector<float> y(30, stale);
        reset_event();
        (void)filtcon_drv(random_road(30, interval, 14), interval, settings, y);
        EXPECT_EQ(summary_of_current_event(), c.event);
        const bool runs = *c.event == '\0';
        EXPECT_EQ(y == std::vector<float>(30, stale), !runs);
        EXPECT_EQ(settings.iEndElemIdx, runs ? 29 : -9);
    }
}

TEST(MovingAverage, BoxWithoutASampleLeavesNoNumber) {
    for (const float samples : {0.0F, 0.4F, -1.0F, -1e30F, std::nanf("")}) {
        for (const float sample :
             filtered({1.0F, 2.0F, 3.0F}, box_settings(idx_subfilttyp_highpass, samples, 0.0F))) {
            EXPECT_TRUE(std::isnan(sample)) << samples;
        }
    }
}

TEST(MovingAverage, ShortestProfiles) {
    EXPECT_EQ(filtered({}, box_settings(idx_subfilttyp_highpass, -3.0F, 0.0F)),
              std::vector<float>{});
    EXPECT_EQ(filtered({4.0F, 8.0F}, box_settings(idx_subfilttyp_highpass, 1.0F, 0.0F)),
              (std::vector<float>{0.0F, 4.0F}));
    EXPECT_EQ(filtered({4.0F, 8.0F, 0.0F}, box_settings(idx_subfilttyp_lowpass, 0.0F, 2.0F)),
              (std::vector<float>{4.0F, 6.0F, 4.0F}));
}

} // namespace vialto::test
