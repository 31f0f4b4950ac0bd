#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "filters/filtcon.hpp"
#include "support/current_event.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.125F;   // m; windows are whole numbers of it
constexpr float tolerance = 0.001F;  // m; mean height above the level
constexpr float accuracy = 1.01e-6F; // m; of that height
constexpr std::int32_t untouched_index = -9;

struct Result {
    std::vector<float> y;
    std::int32_t begin = untouched_index;
    std::int32_t end = untouched_index;
    std::string event;
};

Result bridged(const std::vector<float>& profile, float window,
               std::int32_t out_type = idx_filtouttyp_elevation) {
    tFiltCon settings{};
    settings.iMainFilterType = idx_filttyp_bridge;
    settings.iOutType = out_type;
    settings.xShortWavelength = window * interval;
    settings.iBeginElemIdx = untouched_index;
    settings.iEndElemIdx = untouched_index;
    Result result{std::vector<float>(profile.size(), -7.5F), 0, 0, {}};
    reset_event();
    (void)filtcon_drv(profile, interval, settings, result.y);
    result.begin = settings.iBeginElemIdx;
    result.end = settings.iEndElemIdx;
    result.event = summary_of_current_event();
    return result;
}

} // namespace

TEST(Bridge, KeepsTheBitsOfOneWindowAfterTheOther) {
    const auto road = random_road(1100, interval, 41);
    for (const std::size_t window : {1U, 2U, 9U, 10U, 100U, 1000U}) {
        const Result result = bridged(road, static_cast<float>(window));
        const std::size_t windows = road.size() - window + 1;
        EXPECT_EQ(result.event, "");
        EXPECT_EQ(result.begin, 0);
        EXPECT_EQ(result.end, static_cast<std::int32_t>(windows) - 1);
        for (std::size_t k = 0; k < road.size(); ++k) {
            const auto level =
                k < windows ? literal_bridge_level(std::span(road).subspan(k, window), tolerance)
                            : 0.0F;
            EXPECT_EQ(result.y[k], level) << window << " " << k;
        }
    }
}

TEST(Bridge, LevelOfAFlatRoadIsItsHeight) {
    const Result result = bridged(std::vector<float>(50, 2.5F), 20.0F);
    for (std::int32_t k = 0; k <= result.end; ++k) {
        EXPECT_NEAR(result.y[static_cast<std::size_t>(k)], 2.5F, accuracy);
    }
}

TEST(Bridge, SpikeCarriesTheLevelOfEveryWindowThatHoldsIt) {
    std::vector<float> road(60);
    road[30] = 1.0F;
    const Result result = bridged(road, 10.0F);
    for (std::int32_t k = 0; k <= result.end; ++k) {
        const bool holds_spike = k > 20 && k <= 30;
        EXPECT_NEAR(result.y[static_cast<std::size_t>(k)],
                    holds_spike ? 1.0F - 9.0F * tolerance : 0.0F, 10.0F * accuracy)
            << k;
    }
}

TEST(Bridge, WindowOfOneSampleLeavesTheRoadAsItIs) {
    const auto road = random_road(100, interval, 42);
    for (const float window : {1.0F, 0.4F, 0.0F, -5.0F, -1e38F, std::nanf("")}) {
        const Result result = bridged(road, window);
        EXPECT_EQ(result.end, 99);
        for (std::size_t k = 0; k < road.size(); ++k) {
            EXPECT_NEAR(result.y[k], road[k], accuracy);
        }
    }
}

TEST(Bridge, OnlyOutputTypeTwoConvertsToSlope) {
    const auto road = random_road(80, interval, 43);
    const auto y = bridged(road, 10.0F, 0).y;
    const auto slope = bridged(road, 10.0F, idx_filtouttyp_slope).y;
    for (std::size_t k = 0; k < road.size(); ++k) {
        const bool inside = k > 0 && k < 71;
        EXPECT_EQ(slope[k], inside ? (y[k] - y[k - 1]) * (1.0F / interval) : 0.0F) << k;
    }
}

TEST(Bridge, RoadShorterThanTheWindowHasNoLevel) {
    for (const std::size_t count : {0U, 1U, 9U}) {
        const Result result = bridged(std::vector<float>(count, 3.0F), 10.0F);
        EXPECT_EQ(result.event, "");
        EXPECT_EQ(result.y, std::vector<float>(count, 0.0F));
        EXPECT_EQ(result.begin, 0);
        EXPECT_EQ(result.end, static_cast<std::int32_t>(count) - 10);
    }
}

TEST(Bridge, WindowHasAtMostAThousandSamples) {
    const auto road = random_road(1100, interval, 44);
    for (const float window : {1001.0F, 1e30F, std::numeric_limits<float>::infinity()}) {
        const Result result = bridged(road, window);
        EXPECT_EQ(result.event, "101 2 br_filt/bridge_filter_drv/filtcon_drv: ibase .gt. mxbase");
        EXPECT_EQ(result.y, road);
        EXPECT_EQ(result.end, untouched_index);
    }
}

// A lone spike halves the distance to the level of 400 samples in 277 iterations, so that it takes
// more than a thousand.
TEST(Bridge, LevelThatIsNotFoundEndsTheFilterThere) {
    for (const std::size_t spike : {10U, 399U, 400U, 735U}) {
        std::vector<float> road(1000, 5.0F);
        road[spike] = 50.0F;
        const std::size_t failing = spike < 400 ? 0 : spike - 399;
        const Result result = bridged(road, 400.0F);
        EXPECT_EQ(result.event, "101 2 br_filt/br_filt/bridge_filter_drv/filtcon_drv: iter .gt. "
                                "mxiter, hung up.");
        EXPECT_EQ(result.end, untouched_index);
        for (std::size_t k = 0; k < failing; ++k) {
            EXPECT_NEAR(result.y[k], 5.0F, accuracy) << k;
        }
        EXPECT_EQ(result.y[failing], failing == 0 ? 0.0F : result.y[failing - 1]);
        for (std::size_t k = failing + 1; k < road.size(); ++k) {
            EXPECT_EQ(result.y[k], road[k]) << k;
        }
    }
}

TEST(Bridge, SampleThatIsNoNumberStandsOutOfNoWindowAndAnInfiniteOneHasNoLevel) {
    std::vector<float> road(60, 0.25F);
    road[30] = std::nanf("");
    EXPECT_NEAR(bridged(road, 10.0F).y[25], 0.25F, 1e-3F);
    road[30] = std::numeric_limits<float>::infinity();
    EXPECT_EQ(bridged(road, 10.0F).y[22], 0.25F);
}

} // namespace vialto::test
