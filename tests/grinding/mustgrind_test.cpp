#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "grinding/grindsimu.hpp"
#include "grinding/mustgrind.hpp"
#include "grinding/spot_list.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"
#include "support/literal_grinding.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Flags = std::vector<std::int32_t>;

constexpr float interval = 1.0F; // m; lengths and gaps are then sample numbers
constexpr tGrinderSetup machine{.WheelBase = 5.5F,
                                .HeadPosition = 0.5F,
                                .TandemSpread = 0.9F,
                                .ShortWavelength = 0.3F,
                                .MaxGrindingDepth_mm = 1.0F};

tMustGrindCfg settings(std::int32_t selector) {
    return {.iRideIndexType = selector,
            .if250mmFilter = vialto_yes,
            .xRideThreshold = 0.002F,
            .xSlideBaseLength = 7.62F,
            .ib_grindopt = {vialto_yes, vialto_yes, vialto_yes},
            .x_grinddepth_min = 1000.0F,
            .x_grindlength_min = 0.3F,
            .x_grindgap_min = 0.3F};
}

// One call of the export: the event, empty after a success.
std::string call(tMustGrindCfg& cfg, const std::vector<float>& road, Flags& flags,
                 float step_size = 0.025F, const tGrinderSetup& setup = machine) {
    EventRecord event;
    const auto result = mustgrind_dlldrv(static_cast<std::int32_t>(road.size()), step_size, &cfg,
                                         &setup, road.data(), flags.data(), event);
    EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
    return event.untouched() ? "" : event.summary();
}

// The same for two tracks.
std::string call_2chan(tMustGrindCfg& cfg, const std::vector<float>& left,
                       const std::vector<float>& right, Flags& flags) {
    EventRecord event;
    const auto result =
        mustgrind_2chan_dlldrv(static_cast<std::int32_t>(left.size()), 0.025F, &cfg, &machine,
                               left.data(), right.data(), flags.data(), event);
    EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
    return event.untouched() ? "" : event.summary();
}

// One flag per character.
Flags flags_of(const std::string& text) {
    Flags flags;
    std::transform(text.begin(), text.end(), std::back_inserter(flags),
                   [](char c) { return c - '0'; });
    return flags;
}

std::string text_of(const std::vector<Spot>& spots) {
    std::string text;
    for (const Spot& spot : spots) {
        text += (spot.iStatus == spot_active ? " " : " -") + std::to_string(spot.iStart) + ".." +
                std::to_string(spot.iEnd);
    }
    return text;
}

// The stretches of samples marked x in a walk over the samples first to last of the text.
std::string stretches_of(const std::string& marks, std::int64_t first, std::int64_t last) {
    std::vector<Spot> stretches;
    EXPECT_TRUE(gather_stretches(
        first, last, static_cast<std::int64_t>(marks.size()),
        [&](std::size_t i) { return marks[i] == 'x'; }, stretches));
    return text_of(stretches);
}

} // namespace

TEST(Stretches, AreListedWhenTheyClose) {
    EXPECT_EQ(stretches_of("..xx.xxx.", 1, 9), " 3..4 6..8");
    EXPECT_EQ(stretches_of("xx..xx", 1, 6), " 1..2 5..6");
    EXPECT_EQ(stretches_of("...xx", 1, 4), "") << "opens on the last sample of the walk";
    EXPECT_EQ(stretches_of("x", 1, 1), "");
    EXPECT_EQ(stretches_of("", 1, 0), "");
    EXPECT_EQ(stretches_of("xxxxxx.xx", 3, 9), " 1..4 8..9")
        << "open where the walk begins: from 1 on, with its length";
    EXPECT_EQ(stretches_of("xx..xx", -3, 9), " 1..2 5..6") << "beyond both ends nothing is marked";
    EXPECT_EQ(stretches_of("xxxxxx", 9, INT64_MAX), "");
}

TEST(ShortSpots, AreDroppedByTheDifferenceOfTheirSampleNumbers) {
    Flags flags = flags_of("22311222113");
    SpotList spots;
    EXPECT_EQ(tossout_shortgrindspots(3.0F, interval, flags, spots), success);
    EXPECT_EQ(flags, flags_of("11111111113")) << "the spot at the very end is never closed";
    EXPECT_EQ(text_of(spots.tGrindSpots), " -1..3 -6..8");

    flags = flags_of("12232112221");
    spots = {};
    EXPECT_EQ(tossout_shortgrindspots(3.4F, interval, flags, spots), success);
    EXPECT_EQ(flags, flags_of("12232111111"));
    EXPECT_EQ(text_of(spots.tGrindSpots), " 2..5 -8..10");
    EXPECT_EQ(spots.iActive, std::vector<std::int32_t>({0}));
}

TEST(CloseSpots, AreJoinedWithThePlaceMovingByOne) {
    struct Case {
        const char* flags;
        float gap;
        const char* joined;
        const char* spots;
    };
    for (const Case& c :
         {Case{"331133112", 3.0F, "331133112", " 1..2 5..6 9..9"}, // 3 is not below the gap
          {"3311331122", 4.0F, "3322332222", " 1..10 -5..6 -9..10"},
          {"22122122122", 3.0F, "22222222222", " 1..11 -4..5 -7..8 -10..11"},
          {"2212212", 0.0F, "2212212", " 1..2 4..5 7..7"},
          // After the join at 3 and the wide gap behind 5, the place stands on the joined spot
          // 4..5: the close pair at 12 is not joined, being compared with that spot.
          {"22122111221221", 3.0F, "22222111221221", " 1..5 -4..5 9..10 12..13"},
          // One spot later, the place stands on 10..11, which joins the next but one over the
          // head of 13..13.
          {"221221111331312", 5.0F, "222221111332222", " 1..5 -4..5 10..15 13..13 -15..15"}}) {
        Flags flags = flags_of(c.flags + std::string("1"));
        SpotList spots;
        ASSERT_EQ(tossout_shortgrindspots(0.0F, interval, flags, spots), success);
        merge_closegrindspots(c.gap, interval, flags, spots);
        EXPECT_EQ(flags, flags_of(c.joined + std::string("1")));
        EXPECT_EQ(text_of(spots.tGrindSpots), c.spots) << c.flags;
    }
}

TEST(SpotLimit, LiesAtAHundredThousand) {
    Flags flags;
    for (std::size_t spot = 0; spot < i_maxspots; ++spot) {
        flags.insert(flags.end(), {ground, not_ground});
    }
    Flags kept = flags;
    SpotList spots;
    EXPECT_EQ(tossout_shortgrindspots(0.0F, interval, kept, spots), success);
    EXPECT_EQ(kept, flags);
    flags.push_back(ground);
    spots = {};
    reset_event();
    EXPECT_EQ(tossout_shortgrindspots(1.0F, interval, flags, spots), failure);
    EXPECT_EQ(summary_of_current_event(), "101 2 tossout_shortgrindspots: i_maxspots exceeded for "
                                          "grinding - try smaller sections");
    EXPECT_EQ(flags[2 * i_maxspots - 2], not_ground) << "the short ones before are dropped";
    EXPECT_EQ(flags[2 * i_maxspots], ground);
}

TEST(OutOfSpecification, IsLookedForBetweenTheTrimmedEnds) {
    const auto road = random_road(2000, 0.025, 1);
    std::vector<float> ride(road.size());
    tMustGrindCfg cfg = settings(idx_ridests_IRI);
    cfg.xRideThreshold = -1.0F;
    const auto found = [&] {
        std::vector<Spot> stretches;
        EXPECT_EQ(out_of_spec_spots({0.025F, cfg, machine, road}, ride, stretches), success);
        return text_of(stretches);
    };
    EXPECT_EQ(found(), " 1..1686"); // 152 samples at either end, and 10 for 250 mm
    cfg.if250mmFilter = vialto_no;
    EXPECT_EQ(found(), " 1..1696");
    cfg.xSlideBaseLength = -10.0F; // no smoothing, and the search begins ahead of the road
    EXPECT_EQ(found(), " 1..2000");
    cfg.xRideThreshold = 1.0F;
    EXPECT_EQ(found(), "");
}

TEST(OutOfSpecification, HasALimitOfAHundredThousandStretches) {
    auto road = random_road(600000, 1.0, 1);
    tMustGrindCfg cfg = settings(idx_ridests_IRI);
    cfg.if250mmFilter = vialto_no;
    cfg.xSlideBaseLength = 0.0F;
    cfg.xRideThreshold = 0.001F;
    cfg.ib_grindopt[0] = vialto_no;
    Flags flags(road.size());
    EXPECT_EQ(call(cfg, road, flags, 1.0F),
              "101 2 out_of_spec_spots/mustgrind/mustgrind_dlldrv: i_maxspots exceeded for "
              "out-of-spec - try smaller sections");
}

// Whatever the road, machine and settings: the flags of the definition, in which every candidate
// has the whole road ground and the whole statistic computed.
TEST(MustGrind, HasTheFlagsOfTheLiteralAnalysis) {
    std::mt19937 generator(1);
    const auto pick = [&](const auto& choices) {
        return choices[generator() % std::size(choices)];
    };
    std::size_t dropped = 0;
    std::size_t helpful = 0;
    for (std::uint32_t seed = 0; seed < 250; ++seed) {
        const std::size_t shortest = seed % 5 == 0 ? 20 : 300;
        const std::size_t count =
            seed % 50 == 1 ? 20000 : shortest + generator() % (shortest == 20 ? 100 : 4000);
        const float step = pick(std::array{0.025F, 0.025F, 0.05F, 0.1F, 0.3048F});
        auto road = random_road(count, static_cast<double>(step), seed);
        if (seed % 3 == 0) { // a stretch of even road, and a step
            std::fill_n(road.begin() + static_cast<std::ptrdiff_t>(generator() % (count / 2)),
                        count / 3, 0.0F);
            road[generator() % count] += 0.02F;
        }
        const float length = static_cast<float>(count) * step;
        tMustGrindCfg cfg = settings(pick(std::array{idx_ridests_IRI, idx_ridests_RN}));
        cfg.if250mmFilter = pick(std::array{vialto_yes, vialto_no});
        cfg.xSlideBaseLength = std::min(
            pick(std::array{0.0F, 2.5F * step, 1.0F, 7.62F, 0.2F * length, 0.6F * length, length}),
            length - step);
        cfg.xRideThreshold = pick(std::array{0.0F, 0.001F, 0.002F, 0.003F, 0.005F});
        cfg.x_grindlength_min = pick(std::array{0.0F, 0.3F, 1.0F});
        cfg.x_grindgap_min = pick(std::array{0.0F, 0.3F, 2.0F});
        tGrinderSetup setup = machine;
        setup.HeadPosition = pick(std::array{0.0F, 0.3F, 0.5F, 1.0F});
        setup.WheelBase = pick(std::array{2.0F, 5.5F});

        const auto literal = literal_mustgrind({step, cfg, setup, road});
        Flags flags(count);
        ASSERT_EQ(mustgrind({step, cfg, setup, road}, flags), success);
        EXPECT_EQ(flags, literal.flags) << "seed " << seed;
        helpful += literal.helpful;
        dropped += literal.candidates - literal.helpful;
    }
    // The settings are such that there is something to decide.
    EXPECT_GT(helpful, 1000U);
    EXPECT_GT(dropped, 1000U);
}

TEST(MustGrind, WithoutOptionsIsTheGrinderOverTheWholeRoad) {
    auto road = random_road(3000, 0.025, 1);
    const std::vector<float> untouched = road;
    tMustGrindCfg cfg = settings(idx_ridests_HRI);
    Flags flags(road.size());
    const auto flags_with = [&](std::int32_t drops, std::int32_t joins, std::int32_t tries) {
        cfg.ib_grindopt[0] = drops;
        cfg.ib_grindopt[1] = joins;
        cfg.ib_grindopt[2] = tries;
        EXPECT_EQ(call(cfg, road, flags), "");
        return flags;
    };
    const Flags plain = flags_with(0, 0, 0);
    EXPECT_EQ(cfg.iRideIndexType, idx_ridests_IRI);
    EXPECT_EQ(road, untouched);
    EXPECT_NE(plain, Flags(road.size(), not_ground));
    EXPECT_EQ(flags_with(2, 1, 1), plain) << "no list to join or to try";
    cfg.x_grindlength_min = 0.0F;
    cfg.x_grindgap_min = 1.0e30F;
    EXPECT_EQ(flags_with(1, 2, 2), plain) << "no spot is short";
    const Flags joined = flags_with(1, 1, 2);
    const auto is_ground = [](std::int32_t flag) { return flag != not_ground; };
    const auto ahead = std::find_if(plain.begin(), plain.end(), is_ground) - plain.begin();
    const auto behind = std::find_if(plain.rbegin(), plain.rend(), is_ground) - plain.rbegin();
    EXPECT_EQ(std::count(joined.begin(), joined.end(), not_ground), ahead + behind);
    cfg.xRideThreshold = 1.0F;
    EXPECT_EQ(flags_with(1, 0, 1), Flags(road.size(), not_ground))
        << "nothing out of specification";

    Flags ground_flags(road.size());
    tGrindSpot whole_road{};
    whole_road.iNumPasses = 1;
    whole_road.iDirection[0] = towards_higher_samples;
    whole_road.iEnd = 2999;
    EXPECT_EQ(grindsimu(0.025F, {&whole_road, 1}, machine, road, ground_flags), success);
    EXPECT_EQ(plain, ground_flags);
}

TEST(MustGrind, TakesOrRefusesEachSelector) {
    struct Row {
        std::int32_t selector;
        std::int32_t rewritten; // the host's record after the call
        std::string one_track;  // the failure; empty for a run
        std::string two_tracks;
    };
    const std::string undefined = "Ride Index is un-defined";
    const std::string one = "101 2 mustgrind_dlldrv: ";
    const std::string two = "101 2 mustgrind_2chan_dlldrv: ";
    const auto road = random_road(1500, 0.025, 1);
    for (const Row& row :
         {Row{0, 0, one + "Ride Index None is not allowed in the RideStatCont analysis",
              two + "Ride Index None is not allowed in the mustgrind_2chan_dlldrv analysis"},
          {1, 1, "", two + "idx_ridests_IRI is not allowed in the mustgrind_2chan_dlldrv analysis"},
          {2, 2, "", ""},
          {3, 3,
           "101 2 ride_stats/ridecon_drv/out_of_spec_spots/mustgrind/mustgrind_dlldrv: two RN is "
           "no longer supported",
           ""},
          {4, 1, "", ""},
          {5, 1, one + undefined, ""},
          {6, 6, one + undefined, two + undefined},
          {9, 9, "", two + undefined},
          {-1, -1, one + undefined, two + undefined}}) {
        for (const bool both : {false, true}) {
            const std::string& expected = both ? row.two_tracks : row.one_track;
            tMustGrindCfg cfg = settings(row.selector);
            Flags flags(road.size(), -5);
            EXPECT_EQ(both ? call_2chan(cfg, road, road, flags) : call(cfg, road, flags), expected);
            const bool runs = expected.empty();
            EXPECT_EQ(cfg.iRideIndexType, runs ? row.rewritten : row.selector);
            EXPECT_EQ(flags[0] == -5, !runs && (both || row.selector != 3)) << row.selector;
        }
    }
}

TEST(MustGrind, FailsWhereAGroundRoadHasNoStatistic) {
    // The head stands two thousand wheelbases ahead of the axles, which weigh a step of this height
    // so hard that what is ground is too low for the quarter car.
    const tGrinderSetup absurd{0.025F, 2000.0F, 1.0F, 0.0F, 8.0F};
    std::vector<float> road(6000, -1.0e35F);
    std::fill(road.begin() + 3000, road.end(), 1.0e35F);
    tMustGrindCfg cfg = settings(idx_ridests_IRI);
    cfg.x_grindlength_min = 0.0F;
    Flags flags(road.size());
    EXPECT_EQ(call(cfg, road, flags, 0.025F, absurd),
              "101 2 compute_iri/ride_stats/ridecon_drv/evaluate_impact/mustgrind/"
              "mustgrind_dlldrv: the calculated IRI is not a number");
}

TEST(MustGrind, NamesTheStepsInAFailureAndKeepsTheFlagsReached) {
    const auto road = random_road(1000, 0.025, 1);
    auto broken = road;
    broken[500] = NAN;
    tMustGrindCfg cfg = settings(idx_ridests_RN);
    Flags flags(road.size(), -5);
    const std::string statistic = "101 2 compute_iri/ride_stats/ridecon_drv/out_of_spec_spots/";
    EXPECT_EQ(call_2chan(cfg, road, broken, flags),
              statistic + "mustgrind/mustgrind_2chan/mustgrind_2chan_dlldrv: the calculated IRI is "
                          "not a number");
    EXPECT_EQ(flags, Flags(road.size(), -5));
    EXPECT_EQ(call(cfg, broken, flags),
              statistic + "mustgrind/mustgrind_dlldrv: the calculated IRI is not a number");
    EXPECT_NE(flags[0], -5);

    tGrinderSetup long_average = machine;
    long_average.ShortWavelength = 25.0F;
    EXPECT_EQ(call(cfg, road, flags, 0.025F, long_average),
              "101 2 mvgavg/filtcon_drv/grindsimu/material_takenout_area/mustgrind/"
              "mustgrind_dlldrv: moving average base length is greater the sampling distance");
    EXPECT_EQ(flags, Flags(road.size(), 0));
}

TEST(TwoTrackMustGrind, CombinesTheTracksOnTheRideNumberScale) {
    const auto left = random_road(4000, 0.025, 1);
    const auto right = random_road(4000, 0.025, 2);
    tMustGrindCfg cfg = settings(idx_ridests_TwoRN);
    cfg.xRideThreshold = 3.5F;
    Flags flags(left.size());
    EXPECT_EQ(call_2chan(cfg, left, right, flags), "");
    EXPECT_EQ(cfg.xRideThreshold, 3.5F);
    tMustGrindCfg track_cfg = cfg;
    track_cfg.iRideIndexType = idx_ridests_RN;
    track_cfg.xRideThreshold = 0.0022292185F; // ln(3.5 / 5) / -160
    const Flags first = literal_mustgrind({0.025F, track_cfg, machine, left}).flags;
    const Flags second = literal_mustgrind({0.025F, track_cfg, machine, right}).flags;
    std::size_t in_one_track = 0;
    for (std::size_t i = 0; i < flags.size(); ++i) {
        ASSERT_EQ(flags[i], std::max(first[i], second[i])) << i;
        in_one_track += first[i] != second[i] ? 1 : 0;
    }
    EXPECT_GT(in_one_track, 0U);
}

} // namespace vialto::test
