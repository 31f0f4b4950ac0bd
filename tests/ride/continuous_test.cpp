#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "ride/ride_drv.hpp"
#include "support/literal_ride.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

TEST(ContinuousIndex, HasTheBitsOfTheLiteralStatisticUnsmoothedWithoutAUsableBaseLength) {
    constexpr float interval = 0.025F; // m
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    const auto road = random_road(2500, 0.025, 8);
    std::vector<float> output(road.size());
    for (const std::int32_t selector : {idx_ridests_IRI, idx_ridests_RN}) {
        for (const float base : {0.049F, 0.05F, 0.25F, 7.62F, 30.0F, 62.47F, -1e30F, nan, 1e-40F}) {
            const float literal_base = base > 0.0F ? base : 0.0F;
            EXPECT_EQ(ridecon_drv(vialto_yes, interval, base, selector, road, output), success);
            EXPECT_EQ(output, literal_continuous(selector, road, interval, literal_base)) << base;
        }
    }
}

} // namespace
} // namespace vialto::test
