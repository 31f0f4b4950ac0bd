#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float interval = 0.5F; // m
constexpr float unwritten = -7.0F;
constexpr std::size_t room = 5000;
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

// A host with a trace, of which the samples from `start` on are used.
struct Host {
    std::vector<float> trace;
    std::vector<tPGLot> lots;
    std::vector<float> settings{4.0F, 0.5F, 0.0F, 0.0F, 11.0F, 12.0F};
    std::int32_t start = 0;
    std::vector<tPGDefect> defects = std::vector<tPGDefect>(room);
    std::vector<tPGDefect> bumps = std::vector<tPGDefect>(room);
    std::int32_t defect_count = -7;
    std::int32_t bump_count = 0;

    void add_lot(const std::vector<float>& samples) {
        const auto first = static_cast<std::int32_t>(trace.size());
        trace.insert(trace.end(), samples.begin(), samples.end());
        add_lot(first, static_cast<std::int32_t>(trace.size()) - 1);
    }
    void add_lot(std::int32_t first, std::int32_t last) {
        lots.push_back(
            {first, last, unwritten, unwritten, unwritten, unwritten, unwritten, unwritten});
    }
    // Raw and rounded index of each lot after a success, the whole event after a failure.
    std::string call() {
        const TemporaryDirectory directory;
        EventRecord event;
        if (pgindex_dll(start, static_cast<std::int32_t>(trace.size()) - 1, interval,
                        settings.data(), -1, trace.data(), static_cast<std::int32_t>(lots.size()),
                        lots.data(), &defect_count, defects.data(), &bump_count, bumps.data(),
                        event) != vialto_success) {
            return event.summary();
        }
        EXPECT_TRUE(event.untouched());
        std::ostringstream text;
        for (const tPGLot& lot : lots) {
            text << lot.RawPI << "/" << lot.RndPI << " ";
        }
        return text.str();
    }
    [[nodiscard]] std::string first_defects() const {
        std::string text;
        for (std::size_t k = 0; k < std::min(room, static_cast<std::size_t>(defect_count)); ++k) {
            text += described(defects[k]) + "; ";
        }
        return text;
    }
    // Samples, distance and band at either end, height, type.
    [[nodiscard]] static std::string described(const tPGDefect& d) {
        std::ostringstream text;
        text << d.iStart << "-" << d.iEnd << " " << d.BeginX << "," << d.BeginY << ".." << d.EndX
             << "," << d.EndY << " h" << d.MxHts << " t" << d.Type;
        return text.str();
    }
    [[nodiscard]] std::string band(std::size_t lot) const {
        std::ostringstream text;
        text << lots[lot].xBBLowerStart << ".." << lots[lot].xBBUpperStart << " to "
             << lots[lot].xBBLowerEnd << ".." << lots[lot].xBBUpperEnd;
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

TEST(ProfileIndex, WholeScallopCountsByWidthAndHeight) {
    struct Case {
        float width;
        float height;
        float round;
        std::string indexes;
        std::string above;
        std::string below;
    };
    // The crossings lie 3/5 of an interval off the samples inside the band.
    const Case cases[] = {
        {1.5F, 4.0F, 0.0F, "0.5/0.5 ", "7-9 3.3,2..4.7,2 h4 t1; ", "7-9 3.3,-2..4.7,-2 h4 t2; "},
        {1.5F, 4.0F, 3.0F, "0.5/0.375 ", "7-9 3.3,2..4.7,2 h3 t1; ", "7-9 3.3,-2..4.7,-2 h3 t2; "},
        {1.5F, 4.5F, 0.0F, "0.5/0 ", "", ""},
        {1.6F, 0.0F, 0.0F, "0/0 ", "", ""},
    };
    for (const Case& c : cases) {
        for (const bool upside_down : {false, true}) {
            Host host;
            host.settings = {4.0F, c.width, c.height, c.round, 0.0F, 0.0F};
            host.add_lot(upside_down ? mirrored(whole_lot()) : whole_lot());
            EXPECT_EQ(host.call(), c.indexes);
            EXPECT_EQ(host.first_defects(), upside_down ? c.below : c.above);
            EXPECT_EQ(host.band(0), "-2..2 to -2..2");
        }
    }
}

TEST(ProfileIndex, PartialScallopsOfOneLotBothCount) {
    Host host;
    host.add_lot(edge_lot(4));
    EXPECT_EQ(host.call(), "0.5/0.5 ");
    EXPECT_EQ(host.first_defects(), "0-1 -0.5,2..2,2 h4 t1; 30-32 14.8182,2..16,2 h4 t1; ");
    // Below the band the first one begins at the sample itself.
    host.trace = mirrored(host.trace);
    EXPECT_EQ(host.call(), "0.5/0.5 ");
    EXPECT_EQ(host.first_defects(), "0-1 0,-2..2,-2 h4 t2; 30-32 14.8182,-2..16,-2 h4 t2; ");
}

TEST(ProfileIndex, ScallopAcrossALotBoundaryCountsTwiceOrNotAtAll) {
    // Heights of the partial scallops of each lot, 0 standing for a lot of one sample, 9 for one of
    // height 4 over 32 m instead of 16 m; and the indexes times 16 m.
    struct Case {
        std::vector<int> heights;
        float round;
        std::vector<float> raw;
        std::vector<float> rounded;
        std::int32_t defects;
    };
    const Case cases[] = {
        {{4, 5}, 0.0F, {8, 10}, {8, 10}, 4},
        {{5, 4}, 0.0F, {10, 4}, {10, 4}, 4}, // the second lot takes nothing out
        {{4, 4}, 0.0F, {8, 4}, {8, 4}, 4},
        {{1, 4, 4}, 0.0F, {2, 4, 4}, {2, 4, 4}, 6},
        {{1, 4, 5}, 0.0F, {2, 8, 10}, {2, 8, 10}, 6},
        {{1, 4, 9}, 0.0F, {2, 6, 2}, {2, 6, 2}, 6},
        {{1, 4, 0, 4}, 0.0F, {2, 4, -16, 4}, {2, 4, -16, 4}, 6},
        {{4, 0, 4}, 0.0F, {4, -16, 4}, {4, -16, 4}, 4},
        {{0, 4, 4}, 0.0F, {-16, 4, 4}, {-16, 4, 4}, 4},
        {{0, 0, 4}, 0.0F, {-16, -16, 8}, {-16, -16, 8}, 2},
        // 4 and 5 both become 8, and rounded heights are compared; 1 becomes 0 and is none.
        {{4, 5}, 8.0F, {8, 5}, {16, 8}, 4},
        {{1, 4, 5}, 8.0F, {0, 4, 5}, {0, 8, 8}, 4},
    };
    for (const Case& c : cases) {
        Host host;
        host.settings[3] = c.round;
        for (const int height : c.heights) {
            host.add_lot(height == 0   ? std::vector<float>{9.0F}
                         : height == 9 ? edge_lot(4, 65)
                                       : edge_lot(height));
        }
        std::ostringstream expected;
        for (std::size_t k = 0; k < c.raw.size(); ++k) {
            expected << c.raw[k] / 16.0F << "/" << c.rounded[k] / 16.0F << " ";
        }
        EXPECT_EQ(host.call(), expected.str());
        EXPECT_EQ(host.defect_count, c.defects);
    }
}

TEST(ProfileIndex, SlopingRoadHasItsBandAboutTheTrend) {
    Host host;
    host.add_lot(whole_lot());
    for (std::size_t k = 0; k < host.trace.size(); ++k) {
        host.trace[k] += 1.0F + static_cast<float>(k);
    }
    EXPECT_EQ(host.call(), "0.5/0.5 ");
    EXPECT_EQ(host.band(0), "-1..3 to 15..19");
    // The band rises by 2 a metre and is taken one interval further along: 3 + 2 * 3.8 at 3.3 m.
    EXPECT_EQ(host.first_defects(), "7-9 3.3,10.6..4.7,13.4 h4 t1; ");
}

TEST(ProfileIndex, StretchMovesDefectsAndBumpsAndNothingElse) {
    Host host;
    host.start = 3;
    host.trace.assign(10, 500.0F);
    host.add_lot(whole_lot());
    host.add_lot(10, 10);
    host.bump_count = 2;
    host.bumps[0] = {1, 2, 0.25F, 5.0F, 0.5F, 6.0F, 7.0F, 8};
    host.bumps[1] = {highest - 1, -4, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0};
    EXPECT_EQ(host.call(), "0.5/0.5 -1/-1 ");
    EXPECT_EQ(host.lots[0].iStart, 10);
    EXPECT_EQ(host.lots[0].iEnd, 26);
    EXPECT_EQ(host.band(1), "0..0 to 0..0");
    EXPECT_EQ(host.first_defects(), "17-19 8.3,2..9.7,2 h4 t1; ");
    EXPECT_EQ(Host::described(host.bumps[0]), "4-5 1.75,5..2,6 h7 t8");
    EXPECT_EQ(Host::described(host.bumps[1]), "2147483647--1 1.5,0..1.5,0 h0 t0");
    EXPECT_EQ(Host::described(host.bumps[2]), "0-0 0,0..0,0 h0 t0");

    for (const std::int32_t count : {highest, -1}) {
        host.bump_count = count;
        host.bumps[0].iStart = host.bumps[room - 1].iStart = 0;
        EXPECT_EQ(host.call(), "0.5/0.5 -1/-1 ");
        EXPECT_EQ(host.bumps[0].iStart, count < 0 ? 0 : 3);
        EXPECT_EQ(host.bumps[room - 1].iStart, count < 0 ? 0 : 3);
    }
}

TEST(ProfileIndex, LotOutsideTheStretchIsRefusedUnlessItIsTooShort) {
    struct Bounds {
        std::int32_t first;
        std::int32_t last;
        bool served;
    };
    const Bounds cases[] = {{2, 20, false},
                            {3, 22, false},
                            {lowest, highest, false},
                            {lowest, lowest + 1, false},
                            {highest - 1, highest, false},
                            {highest, lowest, true},
                            {lowest, lowest, true},
                            {22, 22, true},
                            {9, 8, true}};
    for (const Bounds& b : cases) {
        Host host;
        host.start = 3;
        host.trace.assign(5, 0.0F);
        host.add_lot(whole_lot());
        host.add_lot(b.first, b.last);
        if (b.served) {
            EXPECT_EQ(host.call(), "0.5/0.5 -1/-1 ");
            continue;
        }
        EXPECT_EQ(host.call(), "101 2 pgindex/pgindex_dll: End location of a defect exceeds the "
                               "profile length.");
        // The lots stay as they were; the defects of the first one count from the stretch's start.
        EXPECT_EQ(host.lots[0].RawPI, unwritten);
        EXPECT_EQ(host.first_defects(), "9-11 4.3,2..5.7,2 h4 t1; ");
    }
}

TEST(ProfileIndex, LimitsOfScallopsAndDefects) {
    // 1000 whole scallops, above and below by turns.
    std::vector<float> thousand{0.0F};
    for (int i = 0; i < 500; ++i) {
        thousand.insert(thousand.end(), {8.0F, 0.0F, -8.0F, 0.0F});
    }
    Host host;
    for (int lot = 0; lot < 5; ++lot) {
        host.add_lot(thousand);
    }
    EXPECT_EQ(host.call().find("101"), std::string::npos);
    EXPECT_EQ(host.defect_count, 5000);
    host.add_lot(whole_lot());
    EXPECT_EQ(host.call(), "101 2 pgindex/pgindex_dll: maximum allowable scallops exceeded for the "
                           "entire trace");
    EXPECT_EQ(host.defect_count, 5000);

    std::vector<float> one_more = thousand;
    one_more.insert(one_more.end(), {8.0F, 0.0F});
    std::vector<float> start_too = thousand;
    start_too.insert(start_too.begin(), {8.0F, 8.0F, 8.0F});
    const std::pair<std::vector<float>, std::string> too_many[] = {
        {one_more, "101 2 pgindex/pgindex/pgindex_dll: maximum number of scallops exceeds the "
                   "program limits. Try with smaller segments"},
        {start_too, "101 2 pgindex/pgindex_dll: maximum allowable scallops exceeded for a segment"},
    };
    for (const auto& [lot, event] : too_many) {
        Host full;
        full.add_lot(whole_lot());
        full.add_lot(lot);
        EXPECT_EQ(full.call(), event);
        EXPECT_EQ(full.defect_count, 1);
        EXPECT_EQ(full.lots[0].RawPI, unwritten);
    }
}

TEST(ProfileIndex, NoLotsAndNumbersThatAreNoneHaveNoDefects) {
    Host none;
    none.trace.assign(5, 9.0F);
    EXPECT_EQ(none.call(), "");
    EXPECT_EQ(none.defect_count, 0);

    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float sample : {nan, infinite}) {
        Host host;
        host.add_lot(edge_lot(4));
        host.trace[9] = sample;
        EXPECT_EQ(host.call(), "0/0 ");
        EXPECT_TRUE(std::isnan(host.lots[0].xBBUpperStart));
        EXPECT_EQ(host.defect_count, 0);
    }

    // Which of the partial and the whole scallops are left, by the setting that is a NaN.
    const std::string left[] = {"0/0 0/0 ", "0.5/0.5 0/0 ", "0.5/0.5 0.5/0.5 ", "0.5/0.5 0.5/0.5 "};
    for (std::size_t k = 0; k < std::size(left); ++k) {
        for (const float setting : {nan, infinite, -1e30F, 1e-40F}) {
            Host host;
            host.settings[k] = setting;
            host.add_lot(edge_lot(4));
            host.add_lot(whole_lot());
            const std::string indexes = host.call();
            EXPECT_TRUE(std::isnan(setting) ? indexes == left[k] : indexes.size() < 40) << indexes;
        }
    }
}

TEST(ProfileIndex, WhatCannotBeServedIsRefused) {
    const TemporaryDirectory directory;
    Host host;
    host.add_lot(whole_lot());
    host.bump_count = 1;
    struct Case {
        std::string text;
        int null = 0; // position of the argument that is a null pointer
        std::int32_t start = 0;
        std::int32_t end = 16;
        float step = interval;
    };
    const Case cases[] = {
        {"iStartIndex is negative", 0, -1},
        {"iEndIndex lies before iStartIndex", 0, 5, 4},
        {"iEndIndex lies before iStartIndex", 0, highest, lowest},
        {"iEndIndex makes the stretch longer than 2147483647 samples", 0, 0, highest},
        {"xStepSize is not a positive finite number", 0, 0, 16, -0.5F},
        {"xPGSettings is a null pointer", 4},
        {"xPGTrace is a null pointer", 6},
        {"tPGLots is a null pointer", 8},
        {"iNumDefects is a null pointer", 9},
        {"tPGDefects is a null pointer", 10},
        {"iNumBumps is a null pointer", 11},
        {"tPGBumps is a null pointer", 12},
    };
    for (const Case& c : cases) {
        const auto unless = [&](int position, auto* pointer) {
            return c.null == position ? nullptr : pointer;
        };
        EventRecord event;
        EXPECT_EQ(pgindex_dll(c.start, c.end, c.step, unless(4, host.settings.data()), 17,
                              unless(6, host.trace.data()), 1, unless(8, host.lots.data()),
                              unless(9, &host.defect_count), unless(10, host.defects.data()),
                              unless(11, &host.bump_count), unless(12, host.bumps.data()), event),
                  vialto_failure);
        EXPECT_EQ(event.summary(), "100 2 pgindex_dll: " + c.text);
    }
    EXPECT_EQ(host.defect_count, -7);
    EXPECT_EQ(host.lots[0].RawPI, unwritten);
    // Lists without a record need no array.
    host.bump_count = 0;
    EXPECT_EQ(pgindex_dll(0, 16, interval, host.settings.data(), 17, host.trace.data(), -1, nullptr,
                          &host.defect_count, nullptr, &host.bump_count, nullptr, nullptr),
              vialto_success);
    EXPECT_EQ(host.defect_count, 0);
}

TEST(ProfileIndex, DiagnosticFileHoldsSettingsLotsAndDefects) {
    const TemporaryDirectory directory;
    Host host;
    host.add_lot(whole_lot());
    host.trace[7] = host.trace[9] = 5.0F; // crossings at the middle of an interval
    host.trace[0] = host.trace[16] = -2.0F;
    ASSERT_EQ(pgindex_dll(0, 16, interval, host.settings.data(), 17, host.trace.data(), 1,
                          host.lots.data(), &host.defect_count, host.defects.data(),
                          &host.bump_count, nullptr, nullptr),
              vialto_success);
    EXPECT_EQ(directory.text_of("pgindex_dll.txt"),
              " *** Profilogragh Index and Defective Segments ***\n"
              " Number of Points      : 17\n"
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
