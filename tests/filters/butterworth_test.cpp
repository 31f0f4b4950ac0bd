#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "filters/filter_run.hpp"
#include "filters/slope.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.025F; // m

std::vector<float> filtered(const std::vector<float>& profile, std::int32_t sub_type, float longest,
                            float shortest, std::int32_t out_type = idx_filtouttyp_elevation) {
    const FilterRun run(profile, interval,
                        filter_settings(idx_filttyp_bwfilt, sub_type, longest, shortest, out_type));
    EXPECT_TRUE(run.filtered_all()) << run.event;
    return run.y;
}

std::vector<float> floats(const std::vector<double>& x) {
    std::vector<float> rounded;
    for (const double value : x) {
        rounded.push_back(static_cast<float>(value));
    }
    return rounded;
}

// The frequency that the bilinear transform makes of a wavelength.
double warped(double wavelength) {
    return std::tan(std::numbers::pi * static_cast<double>(interval) / wavelength);
}

// Gain of two passes of a third-order section, at so many half widths from the middle of its band.
double gain_of_two_passes(double distance) {
    return 1.0 / (1.0 + std::pow(distance, 6.0));
}

} // namespace

TEST(Butterworth, KeepsTheBitsOfOnePassAfterTheOther) {
    for (const std::size_t count : {0U, 1U, 2U, 3U, 1000U}) {
        const auto road = random_road(count, 0.025, 31);
        const std::vector<double> x(road.begin(), road.end());
        const auto high = literal_butterworth_high_pass(x, interval, 3.0F);
        const auto low = literal_butterworth_low_pass(x, interval, 0.3F);
        const auto band = literal_butterworth_low_pass(high, interval, 0.3F);
        auto slope = floats(low);
        covertslope_differences(slope, interval);
        // A cutoff that the sub-type does not read may be anything.
        EXPECT_EQ(filtered(road, idx_subfilttyp_highpass, 3.0F, -1.0F), floats(high));
        EXPECT_EQ(filtered(road, idx_subfilttyp_lowpass, -1.0F, 0.3F), floats(low));
        EXPECT_EQ(filtered(road, idx_subfilttyp_bandpass, 3.0F, 0.3F, 7), floats(band));
        EXPECT_EQ(filtered(road, idx_subfilttyp_lowpass, 0.0F, 0.3F, idx_filtouttyp_slope), slope);
    }
}

// The library divides complex numbers in an order of its own, which moves the last bits. The band
// of negative width, whose recursion grows along the road, is kept short. The road lies high, so
// that a mean of other than 32-bit sums leaves a step where the filter begins.
TEST(BandPass, IsTheCascadeOfSectionsOneAfterTheOther) {
    struct Case {
        std::size_t count;
        float longest;
        float shortest;
    };
    for (const auto& [count, longest, shortest] :
         {Case{0, 9.0F, 1.5F}, Case{1, 9.0F, 1.5F}, Case{2, 9.0F, 1.5F}, Case{1500, 9.0F, 1.5F},
          Case{40, 1.5F, 9.0F}}) {
        auto road = random_road(count, 0.025, 51);
        for (float& sample : road) {
            sample += 100.0F;
        }
        const auto signal = literal_band_pass_signal(road, interval, shortest, longest);
        const auto y = filtered(road, idx_subfilttyp_centredband, longest, shortest, 2);
        for (std::size_t i = 0; i < count; ++i) {
            const double expected = 2.0 * signal[i].real();
            EXPECT_NEAR(y[i], expected, 1e-9 + 1e-7 * std::abs(expected)) << i;
        }
    }
}

TEST(Butterworth, SinusoidIsAttenuatedByTheGainOfTheTwoPasses) {
    constexpr double correction = 0.8633841081005059;
    const double middle = (warped(1.0) + warped(4.0)) / 2.0;
    const double half_width = (warped(1.0) - warped(4.0)) / 2.0;
    struct Case {
        std::int32_t sub_type;
        double gain;
    };
    for (const double wavelength : {0.5, 1.0, 1.6, 4.0, 8.0}) {
        const auto road = sinusoid(8000, 0.025, wavelength, 1.0);
        const double w = warped(wavelength);
        for (const auto& [sub_type, gain] :
             {Case{idx_subfilttyp_lowpass, gain_of_two_passes(w / warped(1.0 * correction))},
              Case{idx_subfilttyp_highpass, gain_of_two_passes(warped(4.0 / correction) / w)},
              Case{idx_subfilttyp_centredband,
                   gain_of_two_passes((w - middle) / half_width) +
                       gain_of_two_passes((w + middle) / half_width)}}) {
            const auto y = filtered(road, sub_type, 4.0F, 1.0F);
            for (std::size_t i = 3000; i < 5000; ++i) {
                EXPECT_NEAR(y[i], gain * static_cast<double>(road[i]), 1e-5) << wavelength;
            }
        }
    }
}

} // namespace vialto::test
