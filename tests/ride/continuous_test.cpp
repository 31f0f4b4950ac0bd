#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "ride/ride_drv.hpp"
#include "support/literal_ride.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

constexpr float interval = 0.025F; // m

std::vector<float> moving_index(std::int32_t selector, const std::vector<float>& profile,
                                float base_length) {
    std::vector<float> output(profile.size());
    EXPECT_EQ(ridecon_drv(vialto_yes, interval, base_length, selector, profile, output), success);
    return output;
}

TEST(ContinuousIndex, HasTheBitsOfTheLiteralStatistic) {
    const auto road = random_road(2500, 0.025, 8);
    for (const std::int32_t selector : {idx_ridests_IRI, idx_ridests_RN}) {
        for (const float base_length : {0.0F, 0.049F, 0.05F, 0.25F, 7.62F, 30.0F, 62.47F}) {
            EXPECT_EQ(moving_index(selector, road, base_length),
                      literal_continuous(selector, road, interval, base_length))
                << "base length " << base_length;
        }
        EXPECT_EQ(moving_index(selector, std::vector<float>(900, 2.0F), 5.0F),
                  std::vector<float>(900, 0.0F));
    }
}

TEST(ContinuousIndex, WithoutAUsableBaseLengthIsNotSmoothed) {
    const auto road = random_road(700, 0.025, 8);
    const auto bare = moving_index(idx_ridests_IRI, road, 0.0F);
    for (const float base_length : {-1e30F, std::numeric_limits<float>::quiet_NaN(), 1e-40F}) {
        EXPECT_EQ(moving_index(idx_ridests_IRI, road, base_length), bare);
    }
}

} // namespace
} // namespace vialto::test
