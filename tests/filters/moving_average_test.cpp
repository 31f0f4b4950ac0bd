#include "filters/moving_average.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <utility>

#include "filters/filter_run.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.025F; // m

// The lengths of the boxes are in samples.
std::vector<float> filtered(const std::vector<float>& profile, std::int32_t sub_type,
                            float long_box, float short_box,
                            std::int32_t out_type = idx_filtouttyp_elevation) {
    const FilterRun run(profile, interval,
                        filter_settings(idx_filttyp_mvgavg, sub_type, long_box * interval,
                                        short_box * interval, out_type));
    EXPECT_TRUE(run.filtered_all()) << run.event;
    return run.y;
}

} // namespace

TEST(MovingAverage, KeepsTheBitsOfTheMeanOverASeparateExtendedProfile) {
    const auto road = random_road(1500, 0.025, 11);
    for (const std::int32_t base : {1, 2, 3, 64, 511, 1499}) {
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

// The extension is half the length rounded to the nearest whole sample, so the box of 21 samples
// lies about its sample for a length of 20.8 intervals and one sample behind it for 21 and 21.2.
TEST(MovingAverage, StraightRoadComesThroughAtTheCentreOfTheBox) {
    constexpr double slope = 0.02;
    constexpr double rise = slope * static_cast<double>(interval); // of one sample
    const auto road = straight_line(400, 0.025, slope);
    for (const auto& [box, behind] : {std::pair{20.8F, 0.0}, std::pair{20.2F, 0.5},
                                      std::pair{21.0F, 1.0}, std::pair{21.2F, 1.0}}) {
        const auto y = filtered(road, idx_subfilttyp_lowpass, 0.0F, box);
        for (std::size_t i = 0; i < road.size(); ++i) {
            EXPECT_NEAR(y[i], static_cast<double>(road[i]) - behind * rise, 1e-5) << box;
        }
    }
}

TEST(MovingAverage, SinusoidIsAttenuatedByTheGainOfTheBox) {
    constexpr double wavelength = 2.0;
    const auto road = sinusoid(2000, 0.025, wavelength, 0.01);
    const double angle = std::numbers::pi * static_cast<double>(interval) / wavelength;
    const double gain = std::sin(31.0 * angle) / (31.0 * std::sin(angle));
    const auto low = filtered(road, idx_subfilttyp_lowpass, 0.0F, 30.8F);
    const auto high = filtered(road, idx_subfilttyp_highpass, 30.8F, 0.0F);
    for (std::size_t i = 16; i < road.size() - 16; ++i) {
        EXPECT_NEAR(low[i], gain * static_cast<double>(road[i]), 1e-6) << i;
        EXPECT_NEAR(high[i], (1.0 - gain) * static_cast<double>(road[i]), 1e-6) << i;
    }
    EXPECT_EQ(filtered(road, idx_subfilttyp_bandpass, 30.8F, 5.0F),
              filtered(high, idx_subfilttyp_lowpass, 0.0F, 5.0F));
}

TEST(MovingAverage, BoxBelowTwoIntervalsBypassesEveryStageOfALowPassAndABandPass) {
    const auto road = random_road(50, 0.025, 13);
    for (const std::int32_t sub_type : {idx_subfilttyp_lowpass, idx_subfilttyp_bandpass}) {
        EXPECT_EQ(filtered(road, sub_type, 9.0F, 1.99F, idx_filtouttyp_slope), road);
        EXPECT_NE(filtered(road, sub_type, 9.0F, 2.0F), road);
    }
    EXPECT_NE(filtered(road, idx_subfilttyp_highpass, 9.0F, 0.0F), road);
}

TEST(MovingAverage, OtherSubTypesRunNoStageButConvertToSlope) {
    const std::vector<float> road{1.0F, 3.0F, 2.0F};
    const float per_step = 1.0F / interval;
    const std::vector<float> slope{0.0F, 2.0F * per_step, -1.0F * per_step};
    for (const std::int32_t sub_type : {-1, 0, 4, 5}) {
        EXPECT_EQ(filtered(road, sub_type, 9.0F, 9.0F, 7), road);
        EXPECT_EQ(filtered(road, sub_type, 9.0F, 9.0F, idx_filtouttyp_slope), slope);
    }
}

TEST(MovingAverage, ShortestProfilesAndEmptyBoxes) {
    using Road = std::vector<float>;
    EXPECT_EQ(filtered({}, idx_subfilttyp_highpass, -3.0F, 0.0F), Road{});
    EXPECT_EQ(filtered({4.0F, 8.0F}, idx_subfilttyp_highpass, 1.0F, 0.0F), (Road{0.0F, 4.0F}));
    EXPECT_EQ(filtered({4.0F, 8.0F, 0.0F}, idx_subfilttyp_lowpass, 0.0F, 2.0F),
              (Road{4.0F, 6.0F, 4.0F}));
    for (const float box : {0.0F, 0.4F, -1.0F, -1e30F, std::nanf("")}) {
        EXPECT_TRUE(std::isnan(filtered({1.0F, 2.0F}, idx_subfilttyp_highpass, box, 0.0F)[1]));
    }
}

} // namespace vialto::test
