#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float unwritten = -7.0F;
constexpr std::size_t room = 5000;
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
const char* const pointers[] = {"none",        "xPGSettings", "xPGTrace",  "tPGLots",
                                "iNumDefects", "tPGDefects",  "iNumBumps", "tPGBumps"};

// Samples, distance and band at either end, height, type.
std::string described(const tPGDefect& d) {
    std::ostringstream text;
    text << d.iStart << "-" << d.iEnd << " " << d.BeginX << "," << d.BeginY << ".." << d.EndX << ","
         << d.EndY << " h" << d.MxHts << " t" << d.Type << "; ";
    return text.str();
}

// A host with a trace, of which the samples from `start` on are used.
struct Host {
    std::vector<float> settings{4.0F, 0.5F, 0.0F, 0.0F, 11.0F, 12.0F};
    std::int32_t start = 0;
    std::optional<std::int32_t> end = {}; // the last sample of the trace
    float interval = 0.5F;                // m
    std::size_t null = 0;                 // which of the pointers is null
    std::vector<float> trace = {};
    std::vector<tPGLot> lots = {};
    std::vector<tPGDefect> defects = std::vector<tPGDefect>(room);
    std::vector<tPGDefect> bumps = std::vector<tPGDefect>(room);
    std::int32_t defect_count = -7;
    std::int32_t bump_count = 1;
    std::string diagnostics = {};

    void add_lot(std::int32_t first, std::int32_t last) {
        lots.push_back(
            {first, last, unwritten, unwritten, unwritten, unwritten, unwritten, unwritten});
    }
    Host& with(const std::vector<float>& samples) {
        const auto first = static_cast<std::int32_t>(trace.size());
        trace.insert(trace.end(), samples.begin(), samples.end());
        add_lot(first, static_cast<std::int32_t>(trace.size()) - 1);
        return *this;
    }
    // Raw and rounded index of each lot, or the event of a call that leaves the lots alone.
    std::string call() {
        const TemporaryDirectory directory;
        EventRecord event;
        const auto pointer = [&](std::size_t k, auto* p) { return k == null ? nullptr : p; };
        const std::int32_t result =
            pgindex_dll(start, end.value_or(static_cast<std::int32_t>(trace.size()) - 1), interval,
                        pointer(1, settings.data()), -1, pointer(2, trace.data()),
                        static_cast<std::int32_t>(lots.size()), pointer(3, lots.data()),
                        pointer(4, &defect_count), pointer(5, defects.data()),
                        pointer(6, &bump_count), pointer(7, bumps.data()), event);
        diagnostics = directory.text_of("pgindex_dll.txt");
        std::ostringstream text;
        for (const tPGLot& lot : lots) {
            text << lot.RawPI << "/" << lot.RndPI << " ";
            EXPECT_EQ(lot.RawPI == unwritten, result != vialto_success);
        }
        return result == vialto_success && event.untouched() ? text.str() : event.summary();
    }
    // The band of the last lot and all defects.
    [[nodiscard]] std::string found() const {
        const tPGLot& lot = lots.back();
        std::ostringstream text;
        text << lot.xBBLowerStart << ".." << lot.xBBUpperStart << " to " << lot.xBBLowerEnd << ".."
             << lot.xBBUpperEnd << ": ";
        std::for_each_n(defects.begin(), defect_count,
                        [&](const tPGDefect& defect) { text << described(defect); });
        return text.str();
    }
};

// The lots below are their own mirror images and have a mean of 0.0, so that their trend is exactly
// the line 0.0.

// 17 samples, 8 m, with one whole scallop of height 4 above a band of 4.
std::vector<float> whole_lot() {
    std::vector<float> lot(17, -1.0F);
    lot[7] = lot[9] = 4.0F;
    lot[8] = 6.0F;
    return lot;
}

// With partial scallops of the height h, 1 to 5, at both ends, falling by 1 a sample towards the
// band; 33 samples, 16 m.
std::vector<float> edge_lot(int h, std::size_t count = 33) {
    std::vector<float> lot(count, 0.0F);
    for (int i = 0; i < 5 + 2 * h; ++i) {
        const float value = i < 3 ? static_cast<float>(h + 2 - i) : -1.5F;
        lot[static_cast<std::size_t>(i)] = lot[count - 1 - static_cast<std::size_t>(i)] = value;
    }
    return lot;
}

std::vector<float> mirrored(std::vector<float> samples) {
    std::transform(samples.begin(), samples.end(), samples.begin(), std::negate<>());
    return samples;
}

} // namespace

TEST(ProfileIndex, ScallopsStandAboutTheTrendOfTheirLot) {
    std::vector<float> sloping = whole_lot();
    for (std::size_t k = 0; k < sloping.size(); ++k) {
        sloping[k] += 1.0F + static_cast<float>(k);
    }
    struct Case {
        std::vector<float> lot;
        std::string expected;
        float width = 0.5F;
        float height = 0.0F;
        float round = 0.0F;
    };
    const std::string level = "-2..2 to -2..2: ";
    // The crossings lie 3/5 of an interval off the samples inside the band.
    const Case cases[] = {
        {whole_lot(), "0.5/0.5 " + level + "7-9 3.3,2..4.7,2 h4 t1; ", 1.5F, 4.0F},
        {mirrored(whole_lot()), "0.5/0.375 " + level + "7-9 3.3,-2..4.7,-2 h3 t2; ", 1.5F, 4.0F,
         3.0F},
        {whole_lot(), "0.5/0 " + level, 1.5F, 4.5F},
        {whole_lot(), "0/0 " + level, 1.6F},
        {edge_lot(4), "0.5/0.5 " + level + "0-1 -0.5,2..2,2 h4 t1; 30-32 14.8182,2..16,2 h4 t1; "},
        // Below the band the first one begins at the sample itself.
        {mirrored(edge_lot(4)),
         "0.5/0.5 " + level + "0-1 0,-2..2,-2 h4 t2; 30-32 14.8182,-2..16,-2 h4 t2; "},
        // The band rises by 2 a metre and is taken one interval farther: 3 + 2 * 3.8 at 3.3 m.
        {sloping, "0.5/0.5 -1..3 to 15..19: 7-9 3.3,10.6..4.7,13.4 h4 t1; "},
    };
    for (const Case& c : cases) {
        Host host{.settings = {4.0F, c.width, c.height, c.round, 0.0F, 0.0F}};
        const std::string indexes = host.with(c.lot).call();
        EXPECT_EQ(indexes + host.found(), c.expected);
    }
}

TEST(ProfileIndex, ScallopAcrossALotBoundaryCountsTwiceOrNotAtAll) {
    // By the height of their partial scallops; 4 over 32 m instead of 16 m; and of one sample.
    const std::vector<float> one = edge_lot(1);
    const std::vector<float> four = edge_lot(4);
    const std::vector<float> five = edge_lot(5);
    const std::vector<float> longer = edge_lot(4, 65);
    const std::vector<float> short_lot{9.0F};
    struct Case {
        std::vector<std::vector<float>> lots;
        float round;
        std::string expected; // indexes and number of defects
    };
    const Case cases[] = {
        {{four, five}, 0.0F, "0.5/0.5 0.625/0.625 4"},
        {{five, four}, 0.0F, "0.625/0.625 0.25/0.25 4"}, // the second lot takes nothing out
        {{four, four}, 0.0F, "0.5/0.5 0.25/0.25 4"},
        {{one, four, four}, 0.0F, "0.125/0.125 0.25/0.25 0.25/0.25 6"},
        {{one, five, four}, 0.0F, "0.125/0.125 0.3125/0.3125 0.25/0.25 6"},
        {{one, four, five}, 0.0F, "0.125/0.125 0.5/0.5 0.625/0.625 6"},
        {{one, four, longer}, 0.0F, "0.125/0.125 0.375/0.375 0.125/0.125 6"},
        {{one, four, short_lot, four}, 0.0F, "0.125/0.125 0.25/0.25 -1/-1 0.25/0.25 6"},
        {{four, short_lot, four}, 0.0F, "0.25/0.25 -1/-1 0.25/0.25 4"},
        {{short_lot, four, four}, 0.0F, "-1/-1 0.25/0.25 0.25/0.25 4"},
        {{short_lot, short_lot, four}, 0.0F, "-1/-1 -1/-1 0.5/0.5 2"},
        // 4 and 5 both become 8, and rounded heights are compared; 1 becomes 0 and is none.
        {{four, five}, 8.0F, "0.5/1 0.3125/0.5 4"},
        {{one, four, five}, 8.0F, "0/0 0.25/0.5 0.3125/0.5 4"},
    };
    for (const Case& c : cases) {
        Host host{.settings = {4.0F, 0.5F, 0.0F, c.round, 0.0F, 0.0F}};
        for (const std::vector<float>& lot : c.lots) {
            host.with(lot);
        }
        const std::string indexes = host.call();
        EXPECT_EQ(indexes + std::to_string(host.defect_count), c.expected);
    }
}

TEST(ProfileIndex, StretchMovesDefectsAndBumpsAndNothingElse) {
    for (const std::int32_t count : {2, highest, -1}) {
        Host host{.start = 3, .trace = std::vector<float>(10, 500.0F), .bump_count = count};
        host.with(whole_lot()).add_lot(10, 10);
        host.bumps[0] = {1, 2, 0.25F, 5.0F, 0.5F, 6.0F, 7.0F, 8};
        host.bumps[1] = {highest - 1, -4, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0};
        EXPECT_EQ(host.call(), "0.5/0.5 -1/-1 ");
        EXPECT_EQ(host.lots[0].iStart, 10);
        EXPECT_EQ(host.lots[0].iEnd, 26);
        EXPECT_EQ(host.found(), "0..0 to 0..0: 17-19 8.3,2..9.7,2 h4 t1; ");
        EXPECT_EQ(described(host.bumps[0]) + described(host.bumps[1]),
                  count < 0 ? "1-2 0.25,5..0.5,6 h7 t8; 2147483646--4 0,0..0,0 h0 t0; "
                            : "4-5 1.75,5..2,6 h7 t8; 2147483647--1 1.5,0..1.5,0 h0 t0; ");
        EXPECT_EQ(host.bumps[room - 1].iStart, count == highest ? 3 : 0);
    }
}

TEST(ProfileIndex, LotOutsideTheStretchIsRefusedUnlessItIsTooShort) {
    using Bounds = std::pair<std::int32_t, std::int32_t>;
    const auto call = [](const Bounds& bounds) {
        Host host{.start = 3, .trace = std::vector<float>(5, 0.0F)};
        host.with(whole_lot()).add_lot(bounds.first, bounds.second);
        const std::string indexes = host.call();
        return indexes + std::to_string(host.defect_count) + " " + described(host.defects[0]);
    };
    for (const Bounds& bounds : {Bounds{2, 20},
                                 {3, 22},
                                 {lowest, highest},
                                 {lowest, lowest + 1},
                                 {highest - 1, highest}}) {
        // The defects of the first lot count from the stretch's start.
        EXPECT_EQ(call(bounds), "101 2 pgindex/pgindex_dll: End location of a defect exceeds the "
                                "profile length.1 9-11 4.3,2..5.7,2 h4 t1; ");
    }
    for (const Bounds& bounds : {Bounds{highest, lowest}, {lowest, lowest}, {22, 22}, {9, 8}}) {
        EXPECT_EQ(call(bounds), "0.5/0.5 -1/-1 1 12-14 5.8,2..7.2,2 h4 t1; ");
    }
}

TEST(ProfileIndex, LimitsOfScallopsAndDefects) {
    // 1000 whole scallops, above and below by turns.
    std::vector<float> thousand{0.0F};
    for (int i = 0; i < 500; ++i) {
        thousand.insert(thousand.end(), {8.0F, 0.0F, -8.0F, 0.0F});
    }
    const Host five =
        Host{}.with(thousand).with(thousand).with(thousand).with(thousand).with(thousand);
    Host host = five;
    EXPECT_EQ(host.call().find("101"), std::string::npos);
    EXPECT_EQ(host.defect_count, 5000);

    std::vector<float> one_more = thousand; // too low to be one
    one_more.insert(one_more.end(), {2.5F, 0.0F});
    std::vector<float> start_too = thousand;
    start_too.insert(start_too.begin(), {8.0F, 8.0F, 8.0F});
    struct Case {
        Host host;
        std::vector<float> lot;
        std::string event;
        std::int32_t defects;
    };
    const Case cases[] = {
        {five, whole_lot(), "pgindex_dll: maximum allowable scallops exceeded for the entire trace",
         5000},
        {Host{}.with(whole_lot()), start_too,
         "pgindex_dll: maximum allowable scallops exceeded for a segment", 1},
        {Host{}.with(whole_lot()), one_more,
         "pgindex/pgindex_dll: maximum number of scallops exceeds the program limits. "
         "Try with smaller segments",
         1},
    };
    for (Case c : cases) {
        c.host.settings[2] = 1.0F; // the least height of a scallop
        EXPECT_EQ(c.host.with(c.lot).call(), "101 2 pgindex/" + c.event);
        EXPECT_EQ(c.host.defect_count, c.defects);
    }
}

TEST(ProfileIndex, NumbersThatAreNoneHaveNoDefects) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float sample : {nan, infinite}) {
        std::vector<float> lot = edge_lot(4);
        lot[9] = sample;
        EXPECT_EQ(Host{}.with(lot).call(), "0/0 ");
    }
    // Which of the partial and the whole scallops are left, by the setting that is a NaN.
    const std::string left[] = {"0/0 0/0 ", "0.5/0.5 0/0 ", "0.5/0.5 0.5/0.5 ", "0.5/0.5 0.5/0.5 "};
    for (std::size_t k = 0; k < std::size(left); ++k) {
        Host host;
        host.with(edge_lot(4)).with(whole_lot());
        for (const float setting : {infinite, -1e30F, 1e-40F, nan}) {
            host.settings[k] = setting;
            EXPECT_LT(host.call().size(), 40U);
        }
        EXPECT_EQ(host.call(), left[k]);
    }
}

TEST(ProfileIndex, WhatCannotBeServedIsRefused) {
    struct Case {
        Host host;
        std::string text;
    };
    std::vector<Case> cases = {
        {{.start = -1}, "iStartIndex is negative"},
        {{.start = 5, .end = 4}, "iEndIndex lies before iStartIndex"},
        {{.start = highest, .end = lowest}, "iEndIndex lies before iStartIndex"},
        {{.end = highest}, "iEndIndex makes the stretch longer than 2147483647 samples"},
        {{.interval = -0.5F}, "xStepSize is not a positive finite number"},
    };
    for (std::size_t k = 1; k < std::size(pointers); ++k) {
        cases.push_back({{.null = k}, std::string(pointers[k]) + " is a null pointer"});
    }
    for (Case& c : cases) {
        EXPECT_EQ(c.host.with(whole_lot()).call(), "100 2 pgindex_dll: " + c.text);
        EXPECT_EQ(c.host.defect_count, -7);
    }
}

TEST(ProfileIndex, ListsWithoutARecordNeedNoArray) {
    for (const std::size_t null : {3U, 5U, 7U}) {
        Host host{.null = null, .trace = std::vector<float>(5, 9.0F), .bump_count = 0};
        EXPECT_EQ(host.call(), "");
        EXPECT_EQ(host.defect_count, 0);
    }
}

TEST(ProfileIndex, DiagnosticFileHoldsSettingsLotsAndDefects) {
    Host host;
    host.with(whole_lot());
    host.trace[7] = host.trace[9] = 5.0F; // crossings at the middle of an interval
    host.trace[0] = host.trace[16] = -2.0F;
    host.call();
    EXPECT_EQ(host.diagnostics,
              " *** Profilogragh Index and Defective Segments ***\n"
              " Number of Points      : -1\n"
              " Number of Points used : 17\n"
              " iStartIndex           : 0\n"
              " iEndIndex             : 16\n"
              " Sample Interval (m)   : 0.5\n"
              " BlankingBand (mm)     : 4\n"
              " MinScallopWidth (m)   : 0.5\n"
              " MinScallopHeight (mm) : 0\n"
              " ScallopRound (mm)     : 0\n"
              " BumpCutoffHeight (mm) : 11\n"
              " BumpChordlength (m)   : 12\n"
              " Number of Lots        : 1\n"
              " iStart iEnd xBBUpperStart xBBUpperEnd xBBLowerStart xBBLowerEnd RawPI RndPI\n"
              "  0 16 2 2 -2 -2 0.5 0.5\n"
              " Number of Defects     : 1\n"
              " iStart iEnd BeginX BeginY EndX EndY Length MxHts Type\n"
              "  7 9 3.25 2 4.75 2 1.5 4 1\n");
}

} // namespace vialto::test
