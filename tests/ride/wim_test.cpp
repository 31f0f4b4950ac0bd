#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "filters/filtcon.hpp"
#include "ride/ride_drv.hpp"
#include "ride/shroud.hpp"
#include "support/literal_ride.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

constexpr float back = 15.24F;     // m
constexpr float fore = 1.524F;     // m
constexpr float interval = 0.025F; // m
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

using Floats = std::vector<float>;

bool same_bits(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

// A road whose samples fall to 1/e over a number of samples.
auto fading(double samples, double first = 1.0) {
    return [=](int i, double) { return first * std::exp(-i / samples); };
}

TEST(Shroud, HasTheBitsOfVisitingEveryPair) {
    struct Case {
        std::string road;
        float dx;
        std::function<double(int i, double random)> value;
    };
    const Case cases[] = {
        {"noise", interval, [](int, double r) { return 0.01 * r; }},
        {"rare peaks", interval, [](int i, double r) { return i % 397 == 5 ? r : 1e-3 * r; }},
        {"one peak", interval, [](int i, double) { return i == 600 ? 0.5 : 0.0; }},
        {"plateaus", interval, [](int i, double) { return 0.01 * (i / 100 % 7); }},
        // Every pair a near-tie, then slightly slower and faster than the shadow dies.
        {"as the shadow", interval, fading(609.6)},
        {"slower", interval, fading(612.0)},
        {"faster", interval, fading(607.0)},
        {"as the shadow behind", interval, fading(-60.96)},
        {"as the shadow, subnormal", interval, fading(609.6, 1e-38)},
        {"subnormal", interval, [](int, double r) { return 1e-43 * r; }},
        {"all magnitudes", 2.0F, [](int, double r) { return std::exp(190.0 * r - 102.0); }},
        {"peaks beyond reach", 1.0F, [](int i, double) { return i % 700 == 0 ? 3e38 : 0.0; }},
        {"tiny step", 1e-45F, [](int i, double r) { return r - 1e-4 * i; }},
        {"huge step", 1e38F, [](int, double r) { return r; }},
        {"infinities", 1.0F, [](int i, double r) { return i % 301 == 7 ? infinity : r; }},
        {"infinite half", 1.0F, [](int i, double) { return i < 400 ? infinity : 0.0; }},
        {"not a number", interval, [](int i, double r) { return i % 5 == 0 ? nan : r; }},
    };
    for (const Case& c : cases) {
        for (const std::size_t count : {0U, 1U, 2U, 64U, 65U, 1100U}) {
            std::mt19937 generator(5);
            Floats x;
            for (std::size_t i = 0; i < count; ++i) {
                const double random = static_cast<double>(generator()) / 4294967296.0;
                x.push_back(std::fabs(static_cast<float>(c.value(static_cast<int>(i), random))));
            }
            Floats y(count);
            shroud(x, c.dx, y, back, fore);
            const Floats expected = literal_shroud(x, c.dx, back, fore);
            EXPECT_TRUE(std::equal(y.begin(), y.end(), expected.begin(), same_bits))
                << c.road << ", " << count << " samples";
        }
    }
}

Floats wim_index(std::int32_t bridging, const Floats& profile, float base_length = 1.524F) {
    Floats index(profile.size(), -7.0F);
    EXPECT_EQ(ridecon_drv(bridging, interval, base_length, idx_ridests_WIM, profile, index),
              success);
    return index;
}

Floats filtered(std::int32_t type, float longest, float shortest, std::int32_t output_type,
                const Floats& profile) {
    tFiltCon settings{};
    settings.iMainFilterType = type;
    settings.iSubFilterType = idx_subfilttyp_bandpass;
    settings.iOutType = output_type;
    settings.xLongWavelength = longest;
    settings.xShortWavelength = shortest;
    Floats output(profile.size());
    EXPECT_EQ(filtcon_drv(profile, interval, settings, output), success);
    return output;
}

// Band-passed slope, rectified, under the literal shroud.
Floats literal_index(const Floats& elevation) {
    Floats slope = filtered(idx_filttyp_bwfilt, 16.45F, 1.07F, idx_filtouttyp_slope, elevation);
    for (float& value : slope) {
        value = std::sqrt(std::fabs(value) * std::fabs(value));
    }
    return literal_shroud(slope, interval, back, fore);
}

TEST(WimIndex, IsTheShroudOfTheBandPassedSlope) {
    const Floats road = random_road(1500, 0.025, 41);
    for (const std::int32_t no_bridging : {2, 0, -1, 3}) {
        EXPECT_EQ(wim_index(no_bridging, road, 1e9F), literal_index(road));
    }
    Floats bridged = filtered(idx_filttyp_bridge, 0.0F, 0.25F, idx_filtouttyp_elevation, road);
    bridged.resize(1500 - 9); // a window of 10 samples fits as often
    Floats expected = literal_index(bridged);
    expected.resize(1500, 0.0F);
    EXPECT_EQ(wim_index(1, road), expected);
}

TEST(WimIndex, IsZeroOnTheLongestFlatRoadAndOnOneShorterThanTheBridge) {
    EXPECT_EQ(wim_index(2, Floats(50000, 3.0F)), Floats(50000, 0.0F));
    for (const std::size_t count : {0U, 1U, 9U}) {
        EXPECT_EQ(wim_index(1, random_road(count, 0.025, 3)), Floats(count, 0.0F));
    }
}

} // namespace
} // namespace vialto::test
