#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "grinding/grindsimu.hpp"
#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Flags = std::vector<std::int32_t>;
using Road = std::vector<float>;

constexpr std::int32_t up = towards_higher_samples;
constexpr std::int32_t down = towards_lower_samples;

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

const tGrindSpot everywhere = spot_of(INT32_MIN, INT32_MAX, {{up, 0.0F}});

struct Grinder : testing::Test {
    // One call, of the two-track export if there is a right track: the event, empty after a success.
    std::string grind(const std::vector<tGrindSpot>& spots) {
        EventRecord event;
        flags.assign(road.size(), -5);
        const auto count = static_cast<std::int32_t>(road.size());
        const auto spot_count = static_cast<std::int32_t>(spots.size());
        const auto result =
            right.empty()
                ? grindsimu_dlldrv(interval, spot_count, count, &setup, spots.data(), road.data(),
                                   flags.data(), event)
                : grindsimu_2chan_dlldrv(interval, spot_count, count, &setup, spots.data(),
                                         road.data(), right.data(), flags.data(), event);
        EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
        return event.untouched() ? "" : event.summary();
    }

    TemporaryDirectory directory;
    // Wheels 1 and 3 samples ahead of the head and as many behind it, riding on the bare profile;
    // every weight is a quarter, so that small roads can be ground by hand.
    tGrinderSetup setup{.WheelBase = 4.0F,
                        .HeadPosition = 0.5F,
                        .TandemSpread = 2.0F,
                        .ShortWavelength = 0.0F,
                        .MaxGrindingDepth_mm = 500.0F};
    float interval = 1.0F; // m
    Road road = Road(24);
    Road right;
    Flags flags;
};

} // namespace

TEST_F(Grinder, CutsAStepDifferentlyInEitherDirection) {
    // Each number is the plane of the two wheels ahead, as they lie, and of the two behind, as the
    // head has left them.
    std::fill(road.begin() + 10, road.end(), 1.0F);
    const Road step = road;
    EXPECT_EQ(grind({everywhere}), "");
    EXPECT_EQ(Road(road.begin() + 9, road.begin() + 14),
              Road({0.0F, 0.5F, 0.625F, 0.65625F, 0.7890625F}));
    EXPECT_EQ(Flags(flags.begin() + 9, flags.begin() + 14), Flags({1, 2, 2, 2, 2}));
    road = step;
    EXPECT_EQ(grind({spot_of(0, 23, {{down, 0.0F}})}), "");
    EXPECT_EQ(Road(road.begin() + 9, road.begin() + 14),
              Road({0.0F, 0.421875F, 0.6875F, 0.75F, 1.0F}));
}

TEST_F(Grinder, LeavesASampleExactlyAtTheLevelOfThePass) {
    struct Case {
        float depth_mm;
        float left;
        std::int32_t flag;
    };
    setup.MaxGrindingDepth_mm = 5000.0F; // a cut of exactly that depth is within it
    for (const Case& c : {Case{3000.0F, 3.0F, 2},
                          {0.0F, 0.0F, 3},
                          {-3000.0F, -3.0F, 3},
                          {8000.0F, 8.0F, 1},
                          {9000.0F, 8.0F, 1}}) {
        road[12] = 8.0F;
        EXPECT_EQ(grind({spot_of(12, 12, {{up, c.depth_mm}})}), "");
        EXPECT_EQ(flags[12], c.flag);
        EXPECT_EQ(road[12], c.left);
    }
}

TEST_F(Grinder, KeepsHeadAndWheelsOnTheRoad) {
    struct Case {
        float wheel_base;
        float head;
        std::int32_t direction;
        std::ptrdiff_t first; // the samples that the head reaches
        std::ptrdiff_t last;
    };
    for (const Case& c : {Case{4.0F, 0.5F, up, 3, 36},
                          {4.0F, 0.0F, up, 5, 38},
                          {4.0F, 0.0F, down, 1, 34},
                          {4.0F, 1.0F, up, 1, 34},
                          {4.0F, 1.0F, down, 5, 38},
                          // The inner wheels stand beyond the outer ones, on the other side.
                          {-8.0F, 0.5F, up, 5, 34},
                          {-8.0F, 0.5F, down, 5, 34},
                          // The trailing wheels stand 6 and 8 samples ahead of the head.
                          {4.0F, 3.0F, up, 0, 26},
                          {4.0F, 3.0F, down, 13, 39},
                          // No sample has room for all wheels.
                          {1.0e30F, 0.5F, up, 1, 0}}) {
        road.assign(40, 0.0F);
        setup.WheelBase = c.wheel_base;
        setup.HeadPosition = c.head;
        // A head set 3 m below the plane cuts wherever it comes.
        EXPECT_EQ(grind({spot_of(INT32_MIN, INT32_MAX, {{c.direction, -3000.0F}})}), "");
        Flags expected(40, 1);
        std::fill(expected.begin() + c.first, expected.begin() + c.last + 1, 3);
        EXPECT_EQ(flags, expected) << "head at " << c.head << ", direction " << c.direction;
    }
}

TEST_F(Grinder, LaterPassesOverwriteAFlagOnlyWhereTheyCut) {
    road[8] = road[20] = 8.0F;
    road[14] = 2.0F;
    setup.MaxGrindingDepth_mm = 4000.0F;
    EXPECT_EQ(grind({spot_of(4, 16, {{up, 3000.0F}, {down, 0.0F}}),
                     spot_of(20, 20, {{up, 0.0F}, {up, 0.0F}}), spot_of(0, 23, {})}),
              "");
    EXPECT_EQ(flags[8], 2);  // 5 m, then 3 m
    EXPECT_EQ(flags[14], 2); // left alone, then 2 m
    EXPECT_EQ(flags[20], 3); // 8 m, then left alone
    EXPECT_EQ(road, Road(24, 0.0F));
}

TEST_F(Grinder, WheelsRideOnTheMovingAverageAndCutItToo) {
    road[12] = 3.0F;
    setup.ShortWavelength = 2.8F; // three samples: the wheels find 1 m at samples 11 to 13
    EXPECT_EQ(grind({spot_of(12, 13, {{up, -125.0F}})}), "");
    // At sample 12 the wheels stand at 9, 11, 13 and 15: a plane of 0.5 m. The path drops to the
    // same level as the road, so that at 13, with wheels at 10, 12, 14 and 16, the plane is a
    // quarter of that level.
    EXPECT_EQ(road[12], 0.375F);
    EXPECT_EQ(road[13], 0.375F * 0.25F - 0.125F);
    EXPECT_EQ(flags[12], 3);
    EXPECT_EQ(flags[13], 2);
}

TEST_F(Grinder, WritesItsTableAfterASuccess) {
    road = {0.0F, 0.0F, 0.0F, 2.0F, 0.0F, 0.0F, 0.0F};
    interval = 0.5F;
    EXPECT_EQ(grind({everywhere}), "");
    EXPECT_EQ(flags, Flags(7, 1)); // 7 samples have no room for the wheels at half a metre
    EXPECT_EQ(directory.text_of("grindsimu_dlldrv.txt"), "  0 0 0\n  0.5 0 0\n  1 0 0\n  1.5 2 2\n"
                                                         "  2 0 0\n  2.5 0 0\n  3 0 0\n");
}

TEST_F(Grinder, FailsWithoutAFileAndKeepsWhatIsGround) {
    struct Case {
        float average;
        tGrindSpot spot;
        const char* event;
        float left;
        std::int32_t flag;
    };
    tGrindSpot crowded = everywhere;
    crowded.iNumPasses = 11;
    for (const Case& c :
         {Case{0.0F, crowded,
               "100 2 grindsimu_dlldrv: tGrindSpots holds a spot with more than ten passes", 8.0F,
               -5},
          {24.0F, everywhere,
           "101 2 mvgavg/filtcon_drv/grindsimu/grindsimu_dlldrv: moving average base length is "
           "greater the sampling distance",
           8.0F, -5},
          {0.0F, spot_of(0, 23, {{up, 3000.0F}, {3, 0.0F}}),
           "101 2 grindsimu/grindsimu_dlldrv: grinding direction is not defined correctly", 3.0F,
           3}}) {
        road[12] = 8.0F;
        setup.ShortWavelength = c.average;
        EXPECT_EQ(grind({c.spot}), c.event);
        EXPECT_EQ(road[12], c.left);
        EXPECT_EQ(flags[12], c.flag);
    }
    EXPECT_FALSE(directory.holds("grindsimu_dlldrv.txt"));

    // The file comes last: when it alone fails, the road is ground.
    set_tmp((directory.path() / "absent").string());
    EXPECT_EQ(
        grind({everywhere}).find("102 2 io_tmp_file/grindsimu_dlldrv: error opening a new file"),
        0U);
    EXPECT_EQ(road[12], 0.0F);
}

TEST_F(Grinder, TwoTracksAreCombinedByTheGreaterFlag) {
    right = road;
    road[8] = 8.0F;
    right[16] = 0.5F;
    EXPECT_EQ(grind({everywhere}), "");
    Flags expected(24, 1);
    expected[8] = 3;
    expected[16] = 2;
    EXPECT_EQ(flags, expected);
    // The second track's file has taken the place of the first one's.
    EXPECT_NE(directory.text_of("grindsimu_dlldrv.txt").find("  16 0.5 0\n"), std::string::npos);
    EXPECT_TRUE(directory.holds("grindsimu_2chan_dlldrv.txt"));

    road[12] = right[12] = 8.0F;
    EXPECT_EQ(grind({spot_of(0, 23, {{up, 0.0F}, {0, 0.0F}})}),
              "101 2 grindsimu/grindsimu_dlldrv/grindsimu_2chan_dlldrv: grinding direction is not "
              "defined correctly");
    EXPECT_EQ(flags, Flags(24, -5));
    EXPECT_EQ(road[12], 0.0F);
    EXPECT_EQ(right[12], 8.0F);
    EXPECT_NE(directory.text_of("grindsimu_2chan_dlldrv.txt").find("***** Error Message"),
              std::string::npos);
}

} // namespace vialto::test
