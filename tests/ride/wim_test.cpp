#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

#include "filters/filtcon.hpp"
#include "ride/ride_drv.hpp"
#include "support/literal_ride.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

constexpr float interval = 0.025F; // m

using Floats = std::vector<float>;

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
    return literal_shroud(slope, interval, 15.24F, 1.524F);
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

TEST(WimIndex, IsZeroOnAFlatRoadAndOnOneShorterThanTheBridge) {
    for (const std::size_t count : {0U, 1U, 9U, 50000U}) {
        EXPECT_EQ(wim_index(2, Floats(count, 3.0F)), Floats(count, 0.0F));
    }
    for (const std::size_t count : {0U, 1U, 9U}) {
        EXPECT_EQ(wim_index(1, random_road(count, 0.025, 3)), Floats(count, 0.0F));
    }
}

} // namespace
} // namespace vialto::test
