#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "filters/filter_run.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.125F;   // m; windows are whole numbers of it
constexpr double tolerance = 0.001;  // m; mean height above the level
constexpr double accuracy = 1.01e-6; // m; of that height

FilterRun bridged(const std::vector<float>& profile, float window,
                  std::int32_t out_type = idx_filtouttyp_elevation) {
    return {profile, interval,
            filter_settings(idx_filttyp_bridge, 0, 0.0F, window * interval, out_type)};
}

} // namespace

TEST(Bridge, KeepsTheBitsOfOneWindowAfterTheOther) {
    const auto road = random_road(1100, 0.125, 41);
    for (const std::size_t window : {1U, 2U, 10U, 100U, 1000U}) {
        const FilterRun run = bridged(road, static_cast<float>(window), 7);
        const FilterRun slope = bridged(road, static_cast<float>(window), idx_filtouttyp_slope);
        const std::size_t windows = road.size() - window + 1;
        EXPECT_EQ(run.event, "");
        EXPECT_EQ(run.begin, 0);
        EXPECT_EQ(run.end, static_cast<std::int32_t>(windows) - 1);
        for (std::size_t k = 0; k < road.size(); ++k) {
            const auto level =
                k < windows ? literal_bridge_level(std::span(road).subspan(k, window), 0.001F)
                            : 0.0F;
            EXPECT_EQ(run.y[k], level) << window << " " << k;
            const bool has_slope = k > 0 && k < windows;
            EXPECT_EQ(slope.y[k], has_slope ? (run.y[k] - run.y[k - 1]) * (1.0F / interval) : 0.0F);
        }
    }
}

TEST(Bridge, SpikeCarriesTheLevelOfEveryWindowThatHoldsIt) {
    std::vector<float> road(60);
    road[30] = 1.0F;
    const FilterRun run = bridged(road, 10.0F);
    for (std::int32_t k = 0; k <= run.end; ++k) {
        const bool holds_spike = k > 20 && k <= 30;
        EXPECT_NEAR(run.y[static_cast<std::size_t>(k)], holds_spike ? 1.0 - 9.0 * tolerance : 0.0,
                    10.0 * accuracy)
            << k;
    }
}

TEST(Bridge, WindowOfOneSampleLeavesTheRoadAsItIs) {
    const auto road = random_road(100, 0.125, 42);
    for (const float window : {1.0F, 0.4F, 0.0F, -5.0F, -1e38F, std::nanf("")}) {
        const FilterRun run = bridged(road, window);
        EXPECT_TRUE(run.filtered_all());
        for (std::size_t k = 0; k < road.size(); ++k) {
            EXPECT_NEAR(run.y[k], road[k], accuracy);
        }
    }
}

TEST(Bridge, RoadShorterThanTheWindowHasNoLevel) {
    for (const std::size_t count : {0U, 1U, 9U}) {
        const FilterRun run = bridged(std::vector<float>(count, 3.0F), 10.0F);
        EXPECT_EQ(run.event, "");
        EXPECT_EQ(run.y, std::vector<float>(count, 0.0F));
        EXPECT_EQ(run.end, static_cast<std::int32_t>(count) - 10);
    }
}

TEST(Bridge, WindowHasAtMostAThousandSamples) {
    const auto road = random_road(1100, 0.125, 44);
    for (const float window : {1001.0F, 1e30F, std::numeric_limits<float>::infinity()}) {
        const FilterRun run = bridged(road, window);
        EXPECT_EQ(run.event, "101 2 br_filt/bridge_filter_drv/filtcon_drv: ibase .gt. mxbase");
        EXPECT_EQ(run.y, road);
        EXPECT_EQ(run.end, untouched_index);
    }
}

// A lone spike halves the distance to the level of 400 samples in 277 iterations, so that it takes
// more than a thousand.
TEST(Bridge, LevelThatIsNotFoundEndsTheFilterThere) {
    for (const std::size_t spike : {10U, 399U, 400U, 735U}) {
        std::vector<float> road(1000, 5.0F);
        road[spike] = 50.0F;
        const std::size_t failing = spike < 400 ? 0 : spike - 399;
        const FilterRun run = bridged(road, 400.0F);
        EXPECT_EQ(run.event, "101 2 br_filt/br_filt/bridge_filter_drv/filtcon_drv: iter .gt. "
                             "mxiter, hung up.");
        EXPECT_EQ(run.end, untouched_index);
        EXPECT_EQ(run.y[failing], failing == 0 ? 0.0F : run.y[failing - 1]);
        for (std::size_t k = 0; k < road.size(); ++k) {
            if (k != failing) {
                EXPECT_NEAR(run.y[k], road[k], k < failing ? accuracy : 0.0) << k;
            }
        }
    }
}

TEST(Bridge, SampleThatIsNoNumberStandsOutOfNoWindowAndAnInfiniteOneHasNoLevel) {
    std::vector<float> road(60, 0.25F);
    road[30] = std::nanf("");
    EXPECT_NEAR(bridged(road, 10.0F).y[25], 0.25, tolerance);
    road[30] = std::numeric_limits<float>::infinity();
    EXPECT_EQ(bridged(road, 10.0F).y[22], 0.25F);
}

} // namespace vialto::test
