#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
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

struct MustGrind : testing::Test {
    // One call, of the two-track export if there is a right track: the event, empty after a success.
    std::string call() {
        EventRecord event;
        flags.assign(road.size(), -5);
        const auto count = static_cast<std::int32_t>(road.size());
        const auto result =
            right.empty()
                ? mustgrind_dlldrv(count, interval, &cfg, &setup, road.data(), flags.data(), event)
                : mustgrind_2chan_dlldrv(count, interval, &cfg, &setup, road.data(), right.data(),
                                         flags.data(), event);
        EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
        return event.untouched() ? "" : event.summary();
    }

    float interval = 0.025F;
    tMustGrindCfg cfg{.iRideIndexType = idx_ridests_IRI,
                      .if250mmFilter = vialto_yes,
                      .xRideThreshold = 0.002F,
                      .xSlideBaseLength = 7.62F,
                      .ib_grindopt = {vialto_yes, vialto_yes, vialto_yes},
                      .x_grinddepth_min = 1000.0F,
                      .x_grindlength_min = 0.3F,
                      .x_grindgap_min = 0.3F};
    tGrinderSetup setup{.WheelBase = 5.5F,
                        .HeadPosition = 0.5F,
                        .TandemSpread = 0.9F,
                        .ShortWavelength = 0.3F,
                        .MaxGrindingDepth_mm = 1.0F};
    std::vector<float> road = random_road(2000, 0.025, 1);
    std::vector<float> right;
    Flags flags;
};

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

// Short spots dropped, then close ones joined, both counted in samples: the flags, of one character
// each, and the spots listed.
std::string spots_of(const std::string& text, float shortest, float gap) {
    Flags flags(text.begin(), text.end());
    std::for_each(flags.begin(), flags.end(), [](std::int32_t& flag) { flag -= '0'; });
    SpotList spots;
    EXPECT_EQ(tossout_shortgrindspots(shortest, 1.0F, flags, spots), success);
    merge_closegrindspots(gap, 1.0F, flags, spots);
    std::string left;
    for (const std::int32_t flag : flags) {
        left += std::to_string(flag);
    }
    return left + text_of(spots.tGrindSpots);
}

} // namespace

TEST(Stretches, AreListedWhenTheyClose) {
    EXPECT_EQ(stretches_of("..xx.xxx.", 1, 9), " 3..4 6..8");
    EXPECT_EQ(stretches_of("xx..xx", 1, 6), " 1..2 5..6");
    EXPECT_EQ(stretches_of("...xx", 1, 4), "") << "opens on the last sample of the walk";
    EXPECT_EQ(stretches_of("", 1, 0), "");
    EXPECT_EQ(stretches_of("xxxxxx.xx", 3, 9), " 1..4 8..9")
        << "open where the walk begins: from 1 on, with its length";
    EXPECT_EQ(stretches_of("xx..xx", -3, 9), " 1..2 5..6") << "beyond both ends nothing is marked";
    EXPECT_EQ(stretches_of("xxxxxx", 9, INT64_MAX), "");
}

TEST(Spots, AreDroppedByTheirSampleNumbersAndJoinedWithThePlaceMovingByOne) {
    // The spot at the very end is never closed.
    EXPECT_EQ(spots_of("22311222113", 3.0F, 0.0F), "11111111113 -1..3 -6..8");
    EXPECT_EQ(spots_of("12232112221", 3.4F, 0.0F), "12232111111 2..5 -8..10");
    EXPECT_EQ(spots_of("2211211221", 1.0F, 4.0F), "2211111221 1..2 -5..5 8..9");
    // 3 is not below the gap.
    EXPECT_EQ(spots_of("3311331121", 0.0F, 3.0F), "3311331121 1..2 5..6 9..9");
    EXPECT_EQ(spots_of("33113311221", 0.0F, 4.0F), "33223322221 1..10 -5..6 -9..10");
    EXPECT_EQ(spots_of("22122122121", 0.0F, 0.0F), "22122122121 1..2 4..5 7..8 10..10");
    // After the join at 3 and the wide gap behind 5, the place stands on the joined spot 4..5: the
    // close pair at 12 is not joined, being compared with that spot.
    EXPECT_EQ(spots_of("221221112212211", 0.0F, 3.0F), "222221112212211 1..5 -4..5 9..10 12..13");
    // One spot later, the place stands on 10..11, which joins the next but one over the head of
    // 13..13.
    EXPECT_EQ(spots_of("2212211113313121", 0.0F, 5.0F),
              "2222211113322221 1..5 -4..5 10..15 13..13 -15..15");
}

TEST(Spots, AreAHundredThousandAtMost) {
    Flags flags;
    for (std::size_t spot = 0; spot < i_maxspots; ++spot) {
        flags.insert(flags.end(), {ground, not_ground});
    }
    SpotList spots;
    EXPECT_EQ(tossout_shortgrindspots(0.0F, 1.0F, flags, spots), success);
    flags.push_back(ground);
    spots = {};
    reset_event();
    EXPECT_EQ(tossout_shortgrindspots(1.0F, 1.0F, flags, spots), failure);
    EXPECT_EQ(summary_of_current_event(), "101 2 tossout_shortgrindspots: i_maxspots exceeded for "
                                          "grinding - try smaller sections");
    EXPECT_EQ(flags[2 * i_maxspots - 2], not_ground) << "the short ones before are dropped";
    EXPECT_EQ(flags[2 * i_maxspots], ground);
}

TEST_F(MustGrind, LooksForTheOutOfSpecificationBetweenTheTrimmedEnds) {
    const auto found = [&](std::int32_t filter, float base_length, float threshold) {
        cfg.if250mmFilter = filter;
        cfg.xSlideBaseLength = base_length;
        cfg.xRideThreshold = threshold;
        std::vector<Spot> stretches;
        std::vector<float> ride(road.size());
        EXPECT_EQ(out_of_spec_spots({interval, cfg, setup, road}, ride, stretches), success);
        return text_of(stretches);
    };
    EXPECT_EQ(found(vialto_yes, 7.62F, -1.0F), " 1..1686"); // 152 at either end, 10 for 250 mm
    EXPECT_EQ(found(vialto_no, 7.62F, -1.0F), " 1..1696");
    // No smoothing, and the search begins ahead of the road.
    EXPECT_EQ(found(vialto_no, -10.0F, -1.0F), " 1..2000");
    EXPECT_EQ(found(vialto_no, -10.0F, 1.0F), "");
}

// Whatever the road, machine and settings: the flags of the definition, in which every candidate
// has the whole road ground and the whole statistic computed.
TEST_F(MustGrind, HasTheFlagsOfTheLiteralAnalysis) {
    std::mt19937 generator(1);
    const auto pick = [&](const auto& choices) {
        return choices[generator() % std::size(choices)];
    };
    std::size_t dropped = 0;
    std::size_t helpful = 0;
    for (std::uint32_t seed = 0; seed < 250; ++seed) {
        const std::size_t count = seed % 50 == 1  ? 20000
                                  : seed % 5 == 0 ? 20 + generator() % 100
                                                  : 300 + generator() % 4000;
        interval = pick(std::array{0.025F, 0.025F, 0.05F, 0.1F, 0.3048F});
        road = random_road(count, static_cast<double>(interval), seed);
        if (seed % 3 == 0) { // a stretch of even road, and a step
            std::fill_n(road.begin() + static_cast<std::ptrdiff_t>(generator() % (count / 2)),
                        count / 3, 0.0F);
            road[generator() % count] += 0.02F;
        }
        const float length = static_cast<float>(count) * interval;
        cfg.iRideIndexType = pick(std::array{idx_ridests_IRI, idx_ridests_RN});
        cfg.if250mmFilter = pick(std::array{vialto_yes, vialto_no});
        cfg.xSlideBaseLength = std::min(pick(std::array{0.0F, 2.5F * interval, 1.0F, 7.62F,
                                                        0.2F * length, 0.6F * length, length}),
                                        length - interval);
        cfg.xRideThreshold = pick(std::array{0.0F, 0.001F, 0.002F, 0.003F, 0.005F});
        cfg.x_grindlength_min = pick(std::array{0.0F, 0.3F, 1.0F});
        cfg.x_grindgap_min = pick(std::array{0.0F, 0.3F, 2.0F});
        setup.HeadPosition = pick(std::array{0.0F, 0.3F, 0.5F, 1.0F});
        setup.WheelBase = pick(std::array{2.0F, 5.5F});

        const auto literal = literal_mustgrind({interval, cfg, setup, road});
        ASSERT_EQ(call(), "");
        EXPECT_EQ(flags, literal.flags) << "seed " << seed;
        helpful += literal.helpful;
        dropped += literal.candidates - literal.helpful;
    }
    EXPECT_GT(std::min(helpful, dropped), 1000U) << "there is something to decide";
}

TEST_F(MustGrind, WithoutOptionsIsTheGrinderOverTheWholeRoad) {
    const auto flags_with = [&](std::int32_t drops, std::int32_t joins, std::int32_t tries) {
        cfg.ib_grindopt[0] = drops;
        cfg.ib_grindopt[1] = joins;
        cfg.ib_grindopt[2] = tries;
        EXPECT_EQ(call(), "");
        return flags;
    };
    const tGrindSpot whole_road{1, {towards_higher_samples}, {}, 0, 1999};
    std::vector<float> cut = road;
    Flags plain(road.size());
    EXPECT_EQ(grindsimu(interval, {&whole_road, 1}, setup, cut, plain), success);
    EXPECT_EQ(flags_with(0, 0, 0), plain);
    EXPECT_EQ(flags_with(2, 1, 1), plain) << "no list to join or to try";
    cfg.x_grindlength_min = 0.0F;
    cfg.x_grindgap_min = 1.0e30F;
    EXPECT_EQ(flags_with(1, 2, 2), plain) << "no spot is short";
    cfg.xRideThreshold = 1.0F;
    EXPECT_EQ(flags_with(1, 0, 1), Flags(road.size(), not_ground))
        << "nothing out of specification";
}

TEST_F(MustGrind, TakesOrRefusesEachSelector) {
    struct Row {
        std::int32_t selector;
        std::int32_t rewritten; // the host's record after a run
        std::string one_track;  // the failure; empty for a run
        std::string two_tracks;
    };
    const std::string undefined = "Ride Index is un-defined";
    const std::string one = "101 2 mustgrind_dlldrv: ";
    const std::string two = "101 2 mustgrind_2chan_dlldrv: ";
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
            right = both ? road : std::vector<float>{};
            cfg.iRideIndexType = row.selector;
            EXPECT_EQ(call(), expected);
            const bool runs = expected.empty();
            EXPECT_EQ(cfg.iRideIndexType, runs ? row.rewritten : row.selector);
            EXPECT_EQ(flags[0] == -5, !runs && (both || row.selector != 3)) << row.selector;
        }
    }
}

TEST_F(MustGrind, NamesTheStepsInAFailureAndKeepsTheFlagsReached) {
    const std::string statistic = "compute_iri/ride_stats/ridecon_drv/";
    const std::string not_a_number = ": the calculated IRI is not a number";
    const std::vector<float> even = road;
    cfg.iRideIndexType = idx_ridests_RN;
    road[500] = NAN;
    EXPECT_EQ(call(),
              "101 2 " + statistic + "out_of_spec_spots/mustgrind/mustgrind_dlldrv" + not_a_number);
    EXPECT_NE(flags[0], -5);
    right = even;
    EXPECT_EQ(call(), "101 2 " + statistic +
                          "out_of_spec_spots/mustgrind/mustgrind_2chan/mustgrind_2chan_dlldrv" +
                          not_a_number);
    EXPECT_EQ(flags, Flags(road.size(), -5));

    setup.ShortWavelength = 50.0F;
    right.clear();
    EXPECT_EQ(call(), "101 2 mvgavg/filtcon_drv/grindsimu/material_takenout_area/mustgrind/"
                      "mustgrind_dlldrv: moving average base length is greater the sampling "
                      "distance");
    EXPECT_EQ(flags, Flags(road.size(), 0));

    // The head stands two thousand wheelbases ahead of the axles, which weigh a step of this height
    // so hard that what is ground is too low for the quarter car.
    setup = {0.025F, 2000.0F, 1.0F, 0.0F, 8.0F};
    road.assign(6000, -1.0e35F);
    std::fill(road.begin() + 3000, road.end(), 1.0e35F);
    cfg.iRideIndexType = idx_ridests_IRI;
    cfg.x_grindlength_min = 0.0F;
    EXPECT_EQ(call(),
              "101 2 " + statistic + "evaluate_impact/mustgrind/mustgrind_dlldrv" + not_a_number);

    road = random_road(600000, 1.0, 1);
    interval = 1.0F;
    cfg.if250mmFilter = vialto_no;
    cfg.xSlideBaseLength = 0.0F;
    cfg.xRideThreshold = 0.001F;
    cfg.ib_grindopt[0] = vialto_no;
    EXPECT_EQ(call(), "101 2 out_of_spec_spots/mustgrind/mustgrind_dlldrv: i_maxspots exceeded for "
                      "out-of-spec - try smaller sections");
}

TEST_F(MustGrind, CombinesTwoTracksOnTheRideNumberScale) {
    right = random_road(2000, 0.025, 2);
    cfg.iRideIndexType = idx_ridests_TwoRN;
    cfg.xRideThreshold = 3.5F;
    EXPECT_EQ(call(), "");
    EXPECT_EQ(cfg.xRideThreshold, 3.5F);
    cfg.iRideIndexType = idx_ridests_RN;
    cfg.xRideThreshold = 0.0022292185F; // ln(3.5 / 5) / -160
    const Flags first = literal_mustgrind({interval, cfg, setup, road}).flags;
    Flags greater = literal_mustgrind({interval, cfg, setup, right}).flags;
    EXPECT_NE(greater, first);
    std::transform(first.begin(), first.end(), greater.begin(), greater.begin(),
                   [](std::int32_t a, std::int32_t b) { return std::max(a, b); });
    EXPECT_EQ(flags, greater);
}

} // namespace vialto::test
