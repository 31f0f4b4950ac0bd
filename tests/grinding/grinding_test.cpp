#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <random>
#include <string>

#include "grinding/grindsimu.hpp"
#include "ride/ride_drv.hpp"
#include "support/cases.hpp"
#include "support/host.hpp"
#include "support/literal_grinding.hpp"
#include "support/roads.hpp"

namespace vialto::test {
namespace {

using Flags = std::vector<std::int32_t>;
using Road = std::vector<float>;

// Each call gives the event of its failure, or nothing.
struct Grinding : testing::Test {
    auto* given(const std::string& name, auto* address) { return null == name ? nullptr : address; }

    std::string event_of(auto function, auto... arguments) {
        EventRecord event;
        return event.outcome(function(arguments..., event));
    }
    std::string grind(const std::vector<tGrindSpot>& spots) {
        flags.assign(road.size(), -5);
        return event_of(grindsimu_dlldrv, interval, size_of(spots), size_of(road),
                        given("tGrinderSetup", &setup), given("tGrindSpots", spots.data()),
                        given("xProfile", road.data()), given("iGrindFlags", flags.data()));
    }
    std::string grind_both(const std::vector<tGrindSpot>& spots) {
        flags.assign(road.size(), -5);
        return event_of(grindsimu_2chan_dlldrv, interval, size_of(spots), size_of(road),
                        given("tGrinderSetup", &setup), given("tGrindSpots", spots.data()),
                        given("xProfile1", road.data()), given("xProfile2", right.data()),
                        given("iGrindFlags", flags.data()));
    }
    std::string must_grind() {
        flags.assign(road.size(), -5);
        return event_of(mustgrind_dlldrv, size_of(road), interval, given("tMustGrindCfg", &cfg),
                        given("tGrinderSetup", &setup), given("xProfile", road.data()),
                        given("iGrindFlags", flags.data()));
    }
    std::string must_grind_both() {
        flags.assign(road.size(), -5);
        return event_of(mustgrind_2chan_dlldrv, size_of(road), interval,
                        given("tMustGrindCfg", &cfg), given("tGrinderSetup", &setup),
                        given("xProfile1", road.data()), given("xProfile2", right.data()),
                        given("iGrindFlags", flags.data()));
    }

    TemporaryDirectory directory;
    // Wheels 1 and 3 samples ahead of the head and as many behind it, each with a quarter of the
    // weight, riding on the bare profile: small roads can be ground by hand.
    tGrinderSetup setup{4.0F, 0.5F, 2.0F, 0.0F, 500.0F};
    tMustGrindCfg cfg{idx_ridests_IRI, vialto_yes, 0.002F, 7.62F, {1, 1, 1}, 1000.0F, 0.0F, 0.0F};
    float interval = 1.0F; // m
    Road road = Road(24);
    Road right = road;
    Flags flags;
    std::string null; // the argument that is a null pointer
};

auto pick(std::mt19937& generator, const auto& choices) {
    return choices[generator() % std::size(choices)];
}

Flags greater(Flags first, const Flags& second) {
    std::transform(first.begin(), first.end(), second.begin(), first.begin(),
                   [](std::int32_t a, std::int32_t b) { return std::max(a, b); });
    return first;
}

// Status, first and last sample, counted from 1.
using Stretches = std::vector<std::array<std::int32_t, 3>>;

Stretches listed(const std::vector<Spot>& spots) {
    Stretches stretches;
    for (const Spot& spot : spots) {
        stretches.push_back({spot.iStatus, spot.iStart, spot.iEnd});
    }
    return stretches;
}

TEST_F(Grinding, WritesARoadWhoseTrailingWheelsRodeOnTheCutStep) {
    // Each plane is that of the two wheels ahead, as they lie, and of the two behind, as cut.
    road = {0.0F, 0.0F, 0.0F, 0.0F, 1.0F, 1.0F, 1.0F, 1.0F, 1.0F};
    EXPECT_EQ(grind({{1, {1}, {}, 0, 8}}), "");
    EXPECT_EQ(directory.text_of("grindsimu_dlldrv.txt"),
              "  0 0 0\n  1 0 0\n  2 0 0\n  3 0 0\n  4 1 0.5\n  5 1 0.625\n  6 1 1\n  7 1 1\n"
              "  8 1 1\n");
}

// Among the machines are some with wheels on the other side of the head, with all of them on one
// side, and with none on the road. Roads in steps of an eighth meet levels and limits exactly.
TEST_F(Grinding, CutsAndFlagsTwoTracksAsTheLiteralGrinder) {
    std::mt19937 g(1);
    for (std::uint32_t seed = 0; seed < 1000; ++seed) {
        interval = pick(g, std::array{0.5F, 0.5F, 0.25F, 0.1F, 0.0762F});
        road = random_road(30 + g() % 200, static_cast<double>(interval), seed);
        right = random_road(road.size(), static_cast<double>(interval), ~seed);
        for (float& height : right) {
            height = seed % 2 == 0 ? std::round(height * 1000.0F) / 8.0F : height;
        }
        setup = {pick(g, std::array{4.0F, 3.7F, 5.5F, -4.0F, 1.0e30F}),
                 pick(g, std::array{0.0F, 0.25F, 0.25F, 0.5F, 0.7F, 1.0F, 1.5F}),
                 pick(g, std::array{0.0F, 0.5F, 0.7F, 2.5F}),
                 pick(g, std::array{0.0F, 0.0F, 0.3F, 1.3F}), pick(g, std::array{0.5F, 500.0F})};
        std::vector<tGrindSpot> spots(2);
        for (tGrindSpot& spot : spots) {
            for (std::size_t p = 0; p < 10; ++p) {
                spot.iDirection[p] = pick(g, std::array{1, 2});
                spot.xDepth_mm[p] = pick(g, std::array{0.0F, 0.5F, 500.0F, -0.7F, -3000.0F});
            }
            spot.iNumPasses = pick(g, std::array{-1, 1, 2, 10});
            spot.iStart = pick(g, std::array{INT32_MIN, 0, 13});
            spot.iEnd = pick(g, std::array{INT32_MAX, 20, 40});
        }
        Road left = road;
        Road other = right;
        const Flags expected = greater(literal_grindsimu(interval, spots, setup, left),
                                       literal_grindsimu(interval, spots, setup, other));
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        ASSERT_EQ(grind_both(spots), "");
        ASSERT_TRUE(same(road, left));
        ASSERT_TRUE(same(right, other));
        ASSERT_TRUE(same(flags, expected));
    }
}

TEST_F(Grinding, FailsWithoutATableAndKeepsWhatIsGround) {
    const std::string lost = ": grinding direction is not defined correctly";
    road[12] = right[12] = 8.0F;
    EXPECT_EQ(grind_both({{2, {2, 0}, {5000.0F}, 0, 23}}),
              "101 2 grindsimu/grindsimu_dlldrv/grindsimu_2chan_dlldrv" + lost);
    EXPECT_EQ(road[12], 5.0F);
    EXPECT_EQ(right[12], 8.0F);
    EXPECT_EQ(flags, Flags(24, -5));
    EXPECT_EQ(grind({{2, {1, 3}, {4000.0F}, 0, 23}}), "101 2 grindsimu/grindsimu_dlldrv" + lost);
    EXPECT_EQ(road[12], 4.0F);
    EXPECT_EQ(flags[12], idx_grindflag_deeper);
    EXPECT_EQ(grind({{11, {1}, {}, 0, 23}}),
              "100 2 grindsimu_dlldrv: tGrindSpots holds a spot with more than ten passes");
    EXPECT_EQ(directory.text_of("grindsimu_dlldrv.txt"), "");

    // The file comes last, and when it cannot be opened nothing is ground.
    set_tmp((directory.path() / "absent").string());
    EXPECT_TRUE(grind({{1, {1}, {}, 0, 23}}).starts_with("102 2 io_tmp_file/grindsimu_dlldrv: "));
    EXPECT_EQ(road[12], 4.0F);
    EXPECT_EQ(flags[12], -5);
}

TEST_F(Grinding, KeepsTheFileOfTwoTracksWholeWhereThePathsOfBothFilesAreCutToOne) {
    std::string cut = directory.path().string() + "/";
    cut.resize(118, 'd');
    std::filesystem::create_directory(cut);
    set_tmp(cut);
    for (int call = 0; call < 3; ++call) {
        EXPECT_EQ(grind_both({{}}), "");
        EXPECT_EQ(directory.text_of(cut + "/grindsimu"),
                  " xStepSize      : 1\n iNumGrindSpots : 1\n nsamp          : 24\n"
                  " done with the grindsimu_dlldrv calls\n");
    }
}

TEST_F(Grinding, NamesTheArgumentThatItRefuses) {
    cfg.iRideIndexType = idx_ridests_HRI; // which is rewritten where nothing is refused
    const auto refuses = [&](const std::string& function, const auto& call,
                             const std::vector<std::string>& pointers) {
        const std::string refused = "100 2 " + function + ": ";
        for (const std::string& pointer : pointers) {
            null = pointer;
            EXPECT_EQ(call(), refused + pointer + " is a null pointer");
        }
        null = "";
        interval = 0.0F;
        EXPECT_EQ(call(), refused + "xStepSize is not a positive finite number");
        interval = 1.0F;
        EXPECT_EQ(cfg.iRideIndexType, idx_ridests_HRI);
    };
    refuses("grindsimu_dlldrv", [&] { return grind({{}}); },
            {"tGrinderSetup", "tGrindSpots", "xProfile", "iGrindFlags"});
    refuses("grindsimu_2chan_dlldrv", [&] { return grind_both({{}}); },
            {"tGrinderSetup", "tGrindSpots", "xProfile1", "xProfile2", "iGrindFlags"});
    refuses("mustgrind_dlldrv", [&] { return must_grind(); },
            {"tMustGrindCfg", "tGrinderSetup", "xProfile", "iGrindFlags"});
    refuses("mustgrind_2chan_dlldrv", [&] { return must_grind_both(); },
            {"tMustGrindCfg", "tGrinderSetup", "xProfile1", "xProfile2", "iGrindFlags"});
}

TEST_F(Grinding, DropsSpotsByTheirSampleNumbersAndJoinsThemWithThePlaceMovingByOne) {
    // Lengths in samples; flags of one character each.
    const auto leaves = [&](const Claim& claim, const std::string& before, float shortest,
                            float gap, const std::string& after, const Stretches& stretches) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        flags.assign(before.begin(), before.end());
        std::for_each(flags.begin(), flags.end(), [](std::int32_t& flag) { flag -= '0'; });
        SpotList spots;
        EXPECT_EQ(tossout_shortgrindspots(shortest, 1.0F, flags, spots), success);
        merge_closegrindspots(gap, 1.0F, flags, spots);
        std::string left;
        for (const std::int32_t flag : flags) {
            left += std::to_string(flag);
        }
        EXPECT_EQ(left, after);
        EXPECT_EQ(listed(spots.tGrindSpots), stretches);
    };
    constexpr std::int32_t on = spot_active;
    constexpr std::int32_t off = spot_dropped;
    leaves("the spot at the very end is never closed", "22311222113", 3.0F, 0.0F, "11111111113",
           {{off, 1, 3}, {off, 6, 8}});
    leaves("8 to 10 are less than 2.5 apart", "12232112221", 2.5F, 0.0F, "12232111111",
           {{on, 2, 5}, {off, 8, 10}});
    leaves("a gap of the least length stays", "3311331121", 0.0F, 3.4F, "3311331121",
           {{on, 1, 2}, {on, 5, 6}, {on, 9, 9}});
    // After the join at 3 and the wide gap behind 5, the place stands on the joined spot 4..5.
    leaves("the close pair at 12 is compared with the joined spot", "221221112212211", 0.0F, 2.5F,
           "222221112212211", {{on, 1, 5}, {off, 4, 5}, {on, 9, 10}, {on, 12, 13}});
    leaves("one spot later it joins the next but one over the head of 13..13", "2212211113313121",
           0.0F, 5.0F, "2222211113322221",
           {{on, 1, 5}, {off, 4, 5}, {on, 10, 15}, {on, 13, 13}, {off, 15, 15}});
}

TEST_F(Grinding, LooksForTheOutOfSpecificationBetweenTheTrimmedEnds) {
    const auto found = [&](std::int32_t filter, float base_length, float threshold) {
        cfg.if250mmFilter = filter;
        cfg.xSlideBaseLength = base_length;
        cfg.xRideThreshold = threshold;
        std::vector<Spot> stretches;
        Road ride(2000);
        EXPECT_EQ(out_of_spec_spots({0.025F, cfg, setup, Road(2000)}, ride, stretches), success);
        return listed(stretches);
    };
    const auto one_up_to = [](std::int32_t end) { return Stretches{{spot_active, 1, end}}; };
    EXPECT_EQ(found(vialto_yes, 7.62F, -1.0F), one_up_to(1686))
        << "152 at either end, 10 for 250 mm";
    EXPECT_EQ(found(vialto_no, 7.62F, -1.0F), one_up_to(1696)) << "152 at either end";
    EXPECT_EQ(found(vialto_no, -10.0F, -1.0F), one_up_to(2000)) << "the whole road, not smoothed";
    EXPECT_EQ(found(vialto_no, 0.0F, 0.0F), Stretches{}) << "on the threshold";
}

TEST_F(Grinding, FiftyFeetAheadOfASpotAre1220SamplesOf12AndAHalfMillimetres) {
    // All is out of specification, in one stretch that starts at the first sample.
    cfg.xRideThreshold = -1.0F;
    setup = {0.05F, 0.5F, 0.025F, 0.0F, 500.0F};
    interval = 0.0125F;
    for (const std::size_t place : {1220U, 1221U}) {
        road.assign(3000, 0.0F);
        road[place] = 0.01F;
        EXPECT_EQ(must_grind(), "");
        EXPECT_EQ(flags[place], place == 1220 ? idx_grindflag_within : idx_grindflag_none) << place;
    }
}

TEST_F(Grinding, HasTheFlagsOfTheLiteralMustGrindAnalysis) {
    std::mt19937 g(5); // which finds a road for each of the ways in which a trial ends
    for (std::uint32_t seed = 0; seed < 6000; ++seed) {
        const std::size_t count = 20 + g() % (seed % 2 == 0 ? 100 : 600);
        const auto samples = static_cast<float>(count);
        interval = pick(g, std::array{0.025F, 0.1F, 0.3048F, 1.0F, 1.0F});
        road = random_road(count, static_cast<double>(interval), seed);
        road[0] += pick(g, std::array{0.0F, 0.05F});
        if (seed % 3 == 0) { // a stretch of even road
            std::fill_n(road.begin() + g() % (count / 2), count / 3, 0.0F);
        }
        const float scale = pick(g, std::array{1.0e-4F, 0.01F, 1.0F, 1.0F, 100.0F});
        std::for_each(road.begin(), road.end(), [&](float& height) { height *= scale; });
        const float base = pick(g, std::array{0.0F, 1.3F, 1.7F, 2.5F, 3.5F, 4.0F, 40.0F,
                                              0.2F * samples, 0.6F * samples, samples});
        cfg = {pick(g, std::array{1, 2, 2}),
               pick(g, std::array{vialto_yes, vialto_no}),
               0.0F,
               interval * std::min(samples - 1.0F, base),
               {pick(g, std::array{1, 1, 1, 2}), pick(g, std::array{1, 2}),
                pick(g, std::array{1, 1, 1, 2})},
               1000.0F,
               pick(g, std::array{0.0F, 0.3F, 1.0F}),
               pick(g, std::array{0.0F, 0.3F, 2.0F})};
        setup = {pick(g, std::array{2.0F, 5.5F}), pick(g, std::array{0.0F, 0.3F, 0.5F, 1.0F}), 0.9F,
                 0.3F, 1.0F};
        Road ride(count);
        (void)ridecon_drv(cfg.if250mmFilter, interval, cfg.xSlideBaseLength, cfg.iRideIndexType,
                          road, ride);
        cfg.xRideThreshold = std::max(ride[g() % count], ride[g() % count]);
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        ASSERT_EQ(must_grind(), "");
        ASSERT_TRUE(same(flags, literal_mustgrind({interval, cfg, setup, road}).flags));
    }
}

TEST_F(Grinding, CombinesTwoTracksOnTheRideNumberScale) {
    interval = 0.5F;
    road = random_road(6000, 0.001, 1); // smooth enough for a Ride Number near 5
    right = random_road(6000, 0.001, 2);
    cfg.iRideIndexType = idx_ridests_TwoRN;
    cfg.xRideThreshold = 4.9F;
    EXPECT_EQ(must_grind_both(), "");
    EXPECT_EQ(cfg.iRideIndexType, idx_ridests_TwoRN);
    cfg.iRideIndexType = idx_ridests_RN;
    cfg.xRideThreshold = 1.2626692e-4F; // ln(4.9 / 5) / -160
    EXPECT_TRUE(same(flags, greater(literal_mustgrind({interval, cfg, setup, road}).flags,
                                    literal_mustgrind({interval, cfg, setup, right}).flags)));
}

TEST_F(Grinding, RunsTheSelectorsThatItAllowsAndJudgesThemAheadOfAllElse) {
    cfg.xSlideBaseLength = 2.0F;
    const auto gives = [&](const auto& call, std::int32_t selector, const std::string& event,
                           std::int32_t rewritten) {
        SCOPED_TRACE(testing::Message() << "selector " << selector);
        cfg.iRideIndexType = selector;
        EXPECT_EQ(call(), event);
        EXPECT_EQ(cfg.iRideIndexType, rewritten);
    };
    const auto one = [&] { return must_grind(); };
    const auto both = [&] { return must_grind_both(); };
    interval = 0.1F;
    for (const auto& [selector, rewritten] : {std::pair{1, 1}, {2, 2}, {4, 1}, {9, 9}}) {
        gives(one, selector, "", rewritten);
    }
    for (const auto& [selector, rewritten] : {std::pair{2, 2}, {3, 3}, {4, 1}, {5, 1}}) {
        gives(both, selector, "", rewritten);
    }
    interval = 0.0F;
    const std::string name = "mustgrind_2chan_dlldrv";
    const std::string refused = "101 2 " + name + ": ";
    gives(one, 0,
          "101 2 mustgrind_dlldrv: Ride Index None is not allowed in the RideStatCont analysis", 0);
    for (const std::int32_t selector : {-1, 5, 6}) {
        gives(one, selector, "101 2 mustgrind_dlldrv: Ride Index is un-defined", selector);
    }
    gives(both, 0, refused + "Ride Index None is not allowed in the " + name + " analysis", 0);
    gives(both, 1, refused + "idx_ridests_IRI is not allowed in the " + name + " analysis", 1);
    for (const std::int32_t selector : {-1, 6, 9}) {
        gives(both, selector, refused + "Ride Index is un-defined", selector);
    }
    EXPECT_EQ(flags, Flags(24, -5));
}

TEST_F(Grinding, FailsWithTheStepsNamedAndTheFlagsReached) {
    cfg.xSlideBaseLength = 2.0F;
    interval = 0.1F;
    cfg.iRideIndexType = idx_ridests_TwoRN;
    EXPECT_EQ(must_grind(), "101 2 ride_stats/ridecon_drv/out_of_spec_spots/mustgrind/"
                            "mustgrind_dlldrv: two RN is no longer supported");
    EXPECT_EQ(flags, Flags(24, idx_grindflag_none));
    const std::string average =
        "101 2 mvgavg/filtcon_drv/grindsimu/material_takenout_area/mustgrind/";
    const std::string longer = ": moving average base length is greater the sampling distance";
    setup.ShortWavelength = 50.0F;
    EXPECT_EQ(must_grind(), average + "mustgrind_dlldrv" + longer);
    EXPECT_EQ(flags, Flags(24, 0));
    EXPECT_EQ(must_grind_both(), average + "mustgrind_2chan/mustgrind_2chan_dlldrv" + longer);
    EXPECT_EQ(flags, Flags(24, -5));
    // The head stands two thousand wheelbases ahead of the axles, which weigh a step of this height
    // so hard that what is ground is too low for the quarter car.
    setup = {0.1F, 2000.0F, 4.0F, 0.0F, 8.0F};
    cfg.iRideIndexType = idx_ridests_IRI;
    road.assign(6000, -1.0e35F);
    std::fill(road.begin() + 3000, road.end(), 1.0e35F);
    EXPECT_EQ(must_grind(), "101 2 compute_iri/ride_stats/ridecon_drv/evaluate_impact/mustgrind/"
                            "mustgrind_dlldrv: the calculated IRI is not a number");
    EXPECT_EQ(flags[0], idx_grindflag_deeper);
}

TEST_F(Grinding, ListsAHundredThousandStretchesAtMost) {
    // Bumps so far apart that no wheel is on one while the head is on another.
    road.assign(8 * 100002, 0.0F);
    for (std::size_t bump = 1; bump <= 100001; ++bump) {
        road[8 * bump] = 1.0F;
    }
    cfg.x_grindlength_min = 10.0F;
    EXPECT_EQ(must_grind(), "101 2 tossout_shortgrindspots/mustgrind/mustgrind_dlldrv: i_maxspots "
                            "exceeded for grinding - try smaller sections");
    EXPECT_EQ(flags[8], idx_grindflag_none) << "short ones before the limit are dropped";
    road[8] = 0.0F;
    cfg.xRideThreshold = INFINITY;
    EXPECT_EQ(must_grind(), "");
    road = random_road(600000, 1.0, 1);
    cfg = {idx_ridests_IRI, vialto_no, 0.001F, 0.0F, {2, 2, 2}, 0.0F, 0.0F, 0.0F};
    EXPECT_EQ(must_grind(), "101 2 out_of_spec_spots/mustgrind/mustgrind_dlldrv: i_maxspots "
                            "exceeded for out-of-spec - try smaller sections");
}

} // namespace
} // namespace vialto::test
