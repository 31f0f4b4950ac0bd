#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "filters/filter_run.hpp"
#include "filters/slope.hpp"
#include "support/literal_filters.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

constexpr float interval = 0.125F;   // m; windows are whole numbers of it
constexpr double tolerance = 0.001;  // m; mean height above the level
constexpr double accuracy = 1.01e-6; // m; of that height
constexpr float inf = std::numeric_limits<float>::infinity();
constexpr const char* hung_up =
    "101 2 br_filt/br_filt/bridge_filter_drv/filtcon_drv: iter .gt. mxiter, hung up.";

FilterRun bridged(const std::vector<float>& profile, float window,
                  std::int32_t out_type = idx_filtouttyp_elevation) {
    return {profile, interval,
            filter_settings(idx_filttyp_bridge, 0, 0.0F, window * interval, out_type)};
}

// The first `count` levels.
std::vector<float> levels(const std::vector<float>& road, std::size_t window, std::size_t count) {
    std::vector<float> level(count);
    for (std::size_t k = 0; k < count; ++k) {
        level[k] = literal_bridge_level(std::span(road).subspan(k, window), 0.001F).value();
    }
    return level;
}

} // namespace

TEST(Bridge, KeepsTheBitsOfOneWindowAfterTheOther) {
    const auto road = random_road(1100, 0.125, 41);
    for (const std::size_t window : {1U, 2U, 10U, 100U, 1000U}) {
        auto expected = levels(road, window, road.size() - window + 1);
        auto slope = expected;
        covertslope_differences(slope, interval);
        expected.resize(road.size());
        slope.resize(road.size());
        const FilterRun run = bridged(road, static_cast<float>(window), 7);
        EXPECT_EQ(run.range, Range(0, 1100 - static_cast<std::int32_t>(window)));
        EXPECT_EQ(run.y, expected) << window;
        EXPECT_EQ(bridged(road, static_cast<float>(window), idx_filtouttyp_slope).y, slope);
    }
}

TEST(Bridge, SpikeCarriesTheLevelOfEveryWindowThatHoldsIt) {
    std::vector<float> road(60);
    road[30] = 1.0F;
    const FilterRun run = bridged(road, 10.0F);
    for (std::size_t k = 0; k <= 50; ++k) {
        const double level = k > 20 && k <= 30 ? 1.0 - 9.0 * tolerance : 0.0;
        EXPECT_NEAR(run.y[k], level, 10.0 * accuracy) << k;
    }
}

TEST(Bridge, WindowOfOneSampleLeavesTheRoadAsItIs) {
    const std::vector<float> road(20, 0.25F);
    for (const float window : {1.0F, 0.4F, 0.0F, -5.0F, -1e38F, std::nanf("")}) {
        const FilterRun run = bridged(road, window);
        EXPECT_TRUE(run.filtered_all());
        EXPECT_NEAR(run.y[19], 0.25F, accuracy);
    }
}

TEST(Bridge, RoadShorterThanTheWindowHasNoLevel) {
    for (const std::int32_t count : {0, 1, 9}) {
        const std::vector<float> road(static_cast<std::size_t>(count), 3.0F);
        const FilterRun run = bridged(road, 10.0F);
        EXPECT_EQ(run.event, "");
        EXPECT_EQ(run.y, std::vector<float>(road.size()));
        EXPECT_EQ(run.range, Range(0, count - 10));
    }
}

TEST(Bridge, WindowHasAtMostAThousandSamples) {
    const auto road = random_road(1100, 0.125, 44);
    for (const float window : {1001.0F, 1e30F, inf}) {
        const FilterRun run = bridged(road, window);
        EXPECT_EQ(run.event, "101 2 br_filt/bridge_filter_drv/filtcon_drv: ibase .gt. mxbase");
        EXPECT_EQ(run.y, road);
        EXPECT_EQ(run.range, untouched_range);
    }
}

// A lone spike halves the distance to the level of 400 samples in 277 iterations, so that it takes
// more than a thousand. The windows behind the failing one are not filtered, and nothing becomes a
// slope.
TEST(Bridge, LevelThatIsNotFoundEndsTheFilterThere) {
    constexpr std::size_t window = 400;
    for (const std::size_t failing : {0U, 1U, 31U, 32U, 50U}) {
        auto road = random_road(600, 0.125, 43);
        road[failing + window - 1] = 50.0F;
        auto expected = levels(road, window, failing);
        expected.push_back(failing > 0 ? expected.back() : 0.0F);
        expected.insert(expected.end(), road.begin() + static_cast<std::ptrdiff_t>(failing) + 1,
                        road.end());
        const FilterRun run = bridged(road, static_cast<float>(window), idx_filtouttyp_slope);
        EXPECT_EQ(run.event, hung_up);
        EXPECT_EQ(run.range, untouched_range);
        EXPECT_EQ(run.y, expected) << failing;
    }
}

// Six samples of n stand out, so that each iteration takes the share 6 / n off what is left and the
// level is found in ln 0.001 / ln(1 - 6 / n) of them: 999.3 of 871 samples, 1000.5 of 872.
TEST(Bridge, LevelIsSoughtInAThousandIterations) {
    for (const auto& [window, event] : {std::pair{871.0F, ""}, std::pair{872.0F, hung_up}}) {
        std::vector<float> road(static_cast<std::size_t>(window), -1.0F);
        std::fill_n(road.begin(), 6, 0.0F);
        EXPECT_EQ(bridged(road, window).event, event) << window;
    }
}

TEST(Bridge, HeightWithoutTheDigitsForALevelHasNone) {
    EXPECT_EQ(bridged(std::vector<float>(100, 40'000.0F), 10.0F).event, hung_up);
    EXPECT_EQ(bridged(std::vector<float>(100, -2e7F), 10.0F).event, hung_up);
}

TEST(Bridge, SampleThatIsNoNumberStandsOutOfNoWindowAndAnInfiniteOneHasNoLevel) {
    std::vector<float> road(60, 0.25F);
    road[30] = std::nanf("");
    EXPECT_NEAR(bridged(road, 10.0F).y[25], 0.25, tolerance);
    road[30] = inf;
    EXPECT_EQ(bridged(road, 10.0F).y[22], 0.25F);
}

} // namespace vialto::test
