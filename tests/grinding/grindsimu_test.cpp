#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "grinding/grindsimu.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Flags = std::vector<std::int32_t>;
using Road = std::vector<float>;

constexpr std::int32_t up = towards_higher_samples;
constexpr std::int32_t down = towards_lower_samples;
constexpr float interval = 1.0F; // m

// Wheels 1 and 3 samples ahead of the head and as many behind it, riding on the bare profile; every
// weight is a quarter, so that small roads can be ground by hand.
constexpr tGrinderSetup middle_head{.WheelBase = 4.0F,
                                    .HeadPosition = 0.5F,
                                    .TandemSpread = 2.0F,
                                    .ShortWavelength = 0.0F,
                                    .MaxGrindingDepth_mm = 500.0F};

struct Pass {
    std::int32_t direction;
    float depth_mm;
};

tGrindSpot spot_of(std::int32_t first, std::int32_t last, const std::vector<Pass>& passes) {
    tGrindSpot spot{};
    spot.iNumPasses = static_cast<std::int32_t>(passes.size());
    for (std::size_t p = 0; p < passes.size(); ++p) {
        spot.iDirection[p] = passes[p].direction;
        spot.xDepth_mm[p] = passes[p].depth_mm;
    }
    spot.iStart = first;
    spot.iEnd = last;
    return spot;
}

Flags grind(Road& road, const tGrinderSetup& setup, const std::vector<tGrindSpot>& spots) {
    Flags flags(road.size());
    EXPECT_EQ(grindsimu(interval, spots, setup, road, flags), success);
    return flags;
}

// One call of the export for one spot: the event, empty after a success.
std::string call(const tGrinderSetup& setup, const tGrindSpot& spot, Road& road, Flags& flags,
                 float step_size = interval) {
    EventRecord event;
    const auto count = static_cast<std::int32_t>(road.size());
    const auto result =
        grindsimu_dlldrv(step_size, 1, count, &setup, &spot, road.data(), flags.data(), event);
    EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
    return event.untouched() ? "" : event.summary();
}

// The same for two tracks.
std::string call_2chan(const tGrindSpot& spot, Road& left, Road& right, Flags& flags) {
    EventRecord event;
    const auto count = static_cast<std::int32_t>(left.size());
    const auto result = grindsimu_2chan_dlldrv(interval, 1, count, &middle_head, &spot, left.data(),
                                               right.data(), flags.data(), event);
    EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
    return event.untouched() ? "" : event.summary();
}

// A step of 1 m at sample 10 of 24.
Road step() {
    Road road(24, 0.0F);
    std::fill(road.begin() + 10, road.end(), 1.0F);
    return road;
}

} // namespace

TEST(Grinder, CutsAStepDifferentlyInEitherDirection) {
    // Each number is the plane of the two wheels ahead, as they lie, and of the two behind, as the
    // head has left them.
    Road upwards = step();
    const Flags flags = grind(upwards, middle_head, {spot_of(0, 23, {{up, 0.0F}})});
    EXPECT_EQ(Road(upwards.begin() + 9, upwards.begin() + 14),
              Road({0.0F, 0.5F, 0.625F, 0.65625F, 0.7890625F}));
    EXPECT_EQ(Flags(flags.begin() + 9, flags.begin() + 14), Flags({1, 2, 2, 2, 2}));

    Road downwards = step();
    (void)grind(downwards, middle_head, {spot_of(0, 23, {{down, 0.0F}})});
    EXPECT_EQ(Road(downwards.begin() + 9, downwards.begin() + 14),
              Road({0.0F, 0.421875F, 0.6875F, 0.75F, 1.0F}));
}

TEST(Grinder, LeavesASampleExactlyAtTheLevelOfThePass) {
    struct Case {
        float depth_mm;
        float left;
        std::int32_t flag;
    };
    for (const Case& c : {Case{3000.0F, 3.0F, 2},
                          {0.0F, 0.0F, 3},
                          {-3000.0F, -3.0F, 3},
                          {8000.0F, 8.0F, 1},
                          {9000.0F, 8.0F, 1}}) {
        Road road(24, 0.0F);
        road[12] = 8.0F;
        tGrinderSetup setup = middle_head;
        setup.MaxGrindingDepth_mm = 5000.0F; // a cut of exactly that depth is within it
        EXPECT_EQ(grind(road, setup, {spot_of(12, 12, {{up, c.depth_mm}})})[12], c.flag);
        EXPECT_EQ(road[12], c.left);
    }
}

TEST(Grinder, KeepsHeadAndWheelsOnTheRoad) {
    struct Case {
        float wheel_base;
        float head;
        float spread;
        std::int32_t direction;
        std::size_t first; // the samples that the head reaches
        std::size_t last;
    };
    // 40 samples. A head set 3 m below the plane cuts wherever it comes.
    for (const Case& c : {Case{4.0F, 0.5F, 2.0F, up, 3, 36},
                          {4.0F, 0.0F, 2.0F, up, 5, 38},
                          {4.0F, 0.0F, 2.0F, down, 1, 34},
                          {4.0F, 1.0F, 2.0F, up, 1, 34},
                          {4.0F, 1.0F, 2.0F, down, 5, 38},
                          // The inner wheels stand beyond the outer ones, on the other side.
                          {-8.0F, 0.5F, 2.0F, up, 5, 34},
                          {-8.0F, 0.5F, 2.0F, down, 5, 34},
                          // The trailing wheels stand 6 and 8 samples ahead of the head.
                          {4.0F, 3.0F, 2.0F, up, 0, 26},
                          {4.0F, 3.0F, 2.0F, down, 13, 39},
                          // No sample has room for all wheels.
                          {1.0e30F, 0.5F, 2.0F, up, 1, 0}}) {
        Road road(40, 0.0F);
        const tGrinderSetup setup{c.wheel_base, c.head, c.spread, 0.0F, 500.0F};
        const Flags flags =
            grind(road, setup, {spot_of(INT32_MIN, INT32_MAX, {{c.direction, -3000.0F}})});
        for (std::size_t i = 0; i < flags.size(); ++i) {
            EXPECT_EQ(flags[i] != not_ground, c.first <= i && i <= c.last)
                << "sample " << i << ", head at " << c.head << ", direction " << c.direction;
        }
    }
}

TEST(Grinder, LaterPassesOverwriteAFlagOnlyWhereTheyCut) {
    Road road(40, 0.0F);
    road[12] = 8.0F;
    road[20] = 2.0F;
    road[28] = 8.0F;
    tGrinderSetup setup = middle_head;
    setup.MaxGrindingDepth_mm = 4000.0F;
    const Flags flags = grind(road, setup,
                              {spot_of(8, 22, {{up, 3000.0F}, {down, 0.0F}}),
                               spot_of(28, 28, {{up, 0.0F}, {up, 0.0F}}), spot_of(0, 39, {})});
    EXPECT_EQ(flags[12], 2); // 5 m, then 3 m
    EXPECT_EQ(flags[20], 2); // left alone, then 2 m
    EXPECT_EQ(flags[28], 3); // 8 m, then left alone
    EXPECT_EQ(road, Road(40, 0.0F));
}

TEST(Grinder, WheelsRideOnTheMovingAverageAndCutItToo) {
    Road road(24, 0.0F);
    road[12] = 3.0F;
    tGrinderSetup setup = middle_head;
    setup.ShortWavelength = 2.8F; // three samples: the wheels find 1 m at samples 11 to 13
    const Flags flags = grind(road, setup, {spot_of(12, 13, {{up, -125.0F}})});
    // At sample 12 the wheels stand at 9, 11, 13 and 15: a plane of 0.5 m. The path drops to the
    // same level as the road, so that at 13, with wheels at 10, 12, 14 and 16, the plane is a
    // quarter of that level.
    EXPECT_EQ(road[12], 0.375F);
    EXPECT_EQ(road[13], 0.375F * 0.25F - 0.125F);
    EXPECT_EQ(flags[12], 3);
    EXPECT_EQ(flags[13], 2);
}

TEST(GrinderExport, WritesItsTableAfterASuccess) {
    const TemporaryDirectory directory;
    Road road{0.0F, 0.0F, 0.0F, 2.0F, 0.0F, 0.0F, 0.0F};
    Flags flags(7, -5);
    EXPECT_EQ(call(middle_head, spot_of(0, 6, {{up, 0.0F}}), road, flags, 0.5F), "");
    EXPECT_EQ(flags, Flags(7, 1)); // 7 samples have no room for the wheels at half a metre
    EXPECT_EQ(directory.text_of("grindsimu_dlldrv.txt"), "  0 0 0\n  0.5 0 0\n  1 0 0\n  1.5 2 2\n"
                                                         "  2 0 0\n  2.5 0 0\n  3 0 0\n");
}

TEST(GrinderExport, FailsWithoutAFileAndKeepsWhatIsGround) {
    const TemporaryDirectory directory;
    Road road(24, 0.0F);
    road[12] = 8.0F;
    Flags flags(24, -5);
    tGrindSpot crowded = spot_of(0, 23, {{up, 0.0F}});
    crowded.iNumPasses = 11;
    EXPECT_EQ(call(middle_head, crowded, road, flags),
              "100 2 grindsimu_dlldrv: tGrindSpots holds a spot with more than ten passes");
    tGrinderSetup long_average = middle_head;
    long_average.ShortWavelength = 24.0F;
    EXPECT_EQ(call(long_average, spot_of(0, 23, {{up, 0.0F}}), road, flags),
              "101 2 mvgavg/filtcon_drv/grindsimu/grindsimu_dlldrv: moving average base length is "
              "greater the sampling distance");
    EXPECT_EQ(flags, Flags(24, -5));
    EXPECT_EQ(road[12], 8.0F);
    EXPECT_EQ(call(middle_head, spot_of(0, 23, {{up, 3000.0F}, {3, 0.0F}}), road, flags),
              "101 2 grindsimu/grindsimu_dlldrv: grinding direction is not defined correctly");
    EXPECT_EQ(flags[12], 3);
    EXPECT_EQ(road[12], 3.0F);
    EXPECT_FALSE(directory.holds("grindsimu_dlldrv.txt"));

    // The file comes last: when it alone fails, the road is ground.
    set_tmp((directory.path() / "absent").string());
    EXPECT_EQ(call(middle_head, spot_of(0, 23, {{up, 0.0F}}), road, flags)
                  .find("102 2 io_tmp_file/grindsimu_dlldrv: error opening a new file"),
              0U);
    EXPECT_EQ(road[12], 0.0F);
}

TEST(TwoTrackGrinder, CombinesTheTracksByTheGreaterFlag) {
    const TemporaryDirectory directory;
    Road left(24, 0.0F);
    Road right(24, 0.0F);
    left[8] = 8.0F;
    right[16] = 0.5F;
    Flags flags(24);
    EXPECT_EQ(call_2chan(spot_of(0, 23, {{up, 0.0F}}), left, right, flags), "");
    Flags expected(24, 1);
    expected[8] = 3;
    expected[16] = 2;
    EXPECT_EQ(flags, expected);
    // The second track's file has taken the place of the first one's.
    EXPECT_NE(directory.text_of("grindsimu_dlldrv.txt").find("  16 0.5 0\n"), std::string::npos);
    EXPECT_TRUE(directory.holds("grindsimu_2chan_dlldrv.txt"));
}

TEST(TwoTrackGrinder, NamesBothExportsInAFailureAndLeavesTheFlags) {
    const TemporaryDirectory directory;
    Road left(24, 0.0F);
    Road right(24, 0.0F);
    left[12] = right[12] = 8.0F;
    Flags flags(24, -5);
    EXPECT_EQ(call_2chan(spot_of(0, 23, {{up, 0.0F}, {0, 0.0F}}), left, right, flags),
              "101 2 grindsimu/grindsimu_dlldrv/grindsimu_2chan_dlldrv: grinding direction is not "
              "defined correctly");
    EXPECT_EQ(flags, Flags(24, -5));
    EXPECT_EQ(left[12], 0.0F);
    EXPECT_EQ(right[12], 8.0F);
    EXPECT_NE(directory.text_of("grindsimu_2chan_dlldrv.txt").find("***** Error Message"),
              std::string::npos);
}

} // namespace vialto::test
