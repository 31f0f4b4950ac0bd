#include <gtest/gtest.h>

#include <cmath>
#include <limits>
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

tFiltCon band(float longest, float shortest) {
    tFiltCon settings{};
    settings.iMainFilterType = idx_filttyp_bwfilt;
    settings.iSubFilterType = idx_subfilttyp_centredband;
    settings.iOutType = idx_filtouttyp_slope; // without effect
    settings.xLongWavelength = longest;
    settings.xShortWavelength = shortest;
    settings.iBeginElemIdx = untouched_index;
    settings.iEndElemIdx = untouched_index;
    return settings;
}

std::vector<float> filtered(const std::vector<float>& profile, float longest, float shortest) {
    tFiltCon settings = band(longest, shortest);
    std::vector<float> y(profile.size(), stale);
    EXPECT_EQ(filtcon_drv(profile, interval, settings, y), success);
    EXPECT_EQ(settings.iBeginElemIdx, 0);
    EXPECT_EQ(settings.iEndElemIdx, static_cast<std::int32_t>(profile.size()) - 1);
    return y;
}

} // namespace

// The library divides complex numbers in an order of its own, which moves the last bits. The band
// of negative width, whose recursion grows along the road, is kept short.
TEST(BandPass, IsTheCascadeOfSectionsOneAfterTheOther) {
    struct Case {
        std::size_t count;
        float longest;
        float shortest;
    };
    for (const auto& [count, longest, shortest] :
         {Case{0, 9.0F, 1.5F}, Case{1, 9.0F, 1.5F}, Case{2, 9.0F, 1.5F}, Case{1500, 9.0F, 1.5F},
          Case{40, 1.5F, 9.0F}}) {
        const auto road = random_road(count, interval, 51);
        const auto signal = literal_band_pass_signal(road, interval, shortest, longest);
        const auto y = filtered(road, longest, shortest);
        for (std::size_t i = 0; i < count; ++i) {
            const double expected = 2.0 * signal[i].real();
            EXPECT_NEAR(y[i], expected, 1e-9 + 1e-7 * std::abs(expected)) << i;
        }
    }
}

TEST(BandPass, SinusoidIsAttenuatedByTheGainOfTheTwoPasses) {
    const auto warped = [](double wavelength) {
        return std::tan(std::numbers::pi * static_cast<double>(interval) / wavelength);
    };
    const double low = warped(4.0);
    const double high = warped(1.0);
    const auto gain = [&](double frequency) {
        const double distance = (frequency - (low + high) / 2.0) / ((high - low) / 2.0);
        return 1.0 / (1.0 + std::pow(distance, 6.0));
    };
    for (const double wavelength : {0.5, 1.0, 1.6, 2.0, 4.0, 8.0}) {
        const auto road = sinusoid(8000, interval, wavelength, 1.0);
        const auto y = filtered(road, 4.0F, 1.0F);
        const double expected = gain(warped(wavelength)) + gain(-warped(wavelength));
        for (std::size_t i = 3000; i < 5000; ++i) {
            EXPECT_NEAR(y[i], expected * static_cast<double>(road[i]), 1e-5) << wavelength;
        }
    }
}

TEST(BandPass, ConstantRoadGivesNothing) {
    EXPECT_EQ(filtered(std::vector<float>(500, 2.5F), 4.0F, 1.0F), std::vector<float>(500, 0.0F));
}

TEST(BandPass, CornersLieAboveZeroAndBelowTheNyquistFrequency) {
    const std::string low = "101 2 DRBWfilt/DRBWfilt_drv_prof/bwfilt_drv/filtcon_drv: low corner "
                            "frequency (f0-fc) <= 0.0";
    const std::string high = "101 2 DRBWfilt/DRBWfilt_drv_prof/bwfilt_drv/filtcon_drv: high corner "
                             "frequency (f0+fc) >= nyquist";
    struct Case {
        float longest;
        float shortest;
        std::string event;
    };
    for (const Case& c :
         {Case{4.0F, 2.0F * interval, high}, Case{4.0F, 2.01F * interval, ""},
          Case{0.0F, 1.0F, high}, Case{4.0F, 0.0F, high}, Case{std::nanf(""), 1.0F, high},
          Case{-4.0F, 1.0F, low}, Case{std::numeric_limits<float>::infinity(), 1.0F, low}}) {
        tFiltCon settings = band(c.longest, c.shortest);
        std::vector<float> y(20, stale);
        reset_event();
        (void)filtcon_drv(random_road(20, interval, 52), interval, settings, y);
        EXPECT_EQ(summary_of_current_event(), c.event);
        EXPECT_EQ(y == std::vector<float>(20, stale), !c.event.empty());
        EXPECT_EQ(settings.iEndElemIdx, c.event.empty() ? 19 : untouched_index);
    }
}

} // namespace vialto::test
