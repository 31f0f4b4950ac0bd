#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "profilograph/scallops.hpp"
#include "support/host.hpp"
#include "support/literal_profilograph.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Samples = std::vector<float>;

std::int32_t size_of(const auto& list) {
    return static_cast<std::int32_t>(list.size());
}

// A call of pgfilt_dll, and its answer.
struct Trace {
    Samples offsets{0.0F};
    float interval = 0.25F;
    std::int32_t start = 0;
    std::int32_t end = 4999;
    std::string null = {}; // the argument that is a null pointer
    bool in_place = true;
    Samples profile = random_road(5000, 1.0, 5);
    Samples trace = profile;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::string event = {}; // of a failure
    std::string diagnostics = {};

    void run() {
        const TemporaryDirectory directory;
        EventRecord record;
        const auto given = [&](const char* name, auto* p) { return null == name ? nullptr : p; };
        const std::int32_t result = pgfilt_dll(
            start, end, interval, size_of(offsets), -1, given("xWheelOffsets", offsets.data()),
            given("xProfile", in_place ? trace.data() : profile.data()),
            given("xPGTrace", trace.data()), given("BeginElemIdx", &first),
            given("EndElemIdx", &last), record);
        event = result == vialto_success && record.untouched() ? "" : record.summary();
        diagnostics = directory.text_of("pgfilt_dll.txt");
    }

    void fails_with(const std::string& expected, int line = __builtin_LINE()) {
        const testing::ScopedTrace at(__FILE__, line, "the call");
        run();
        EXPECT_EQ(event, expected);
        EXPECT_TRUE(trace == profile && first == -7 && last == -7) << "an output was written";
    }
};

// A call of pgindex_dll on the samples from `start` on, and its answer.
struct Index {
    Samples settings{4.0F, 0.5F, 0.6F, 0.0F, 11.0F, 12.0F};
    std::int32_t start = 0;
    std::string null = {}; // the argument that is a null pointer
    Samples trace = {};
    std::vector<tPGLot> lots = {};
    float interval = 0.5F;
    std::int32_t bump_count = 1;
    std::vector<tPGDefect> bumps = std::vector<tPGDefect>(5000);
    Samples raw = {}; // the indexes of the lots
    Samples rounded = {};
    std::int32_t defect_count = -7;
    std::string event = {}; // of a failure
    std::string diagnostics = {};

    // With more lots, one behind the other.
    Index& run(const std::vector<Samples>& more = {}) {
        for (const Samples& samples : more) {
            lots.push_back(
                {size_of(trace), size_of(trace) + size_of(samples) - 1, -7, -7, -7, -7, -7, -7});
            trace.insert(trace.end(), samples.begin(), samples.end());
        }
        const TemporaryDirectory directory;
        EventRecord record;
        std::vector<tPGDefect> defects(5000);
        const auto given = [&](const char* name, auto* p) { return null == name ? nullptr : p; };
        const std::int32_t result = pgindex_dll(
            start, size_of(trace) - 1, interval, given("xPGSettings", settings.data()), -1,
            given("xPGTrace", trace.data()), size_of(lots), given("tPGLots", lots.data()),
            given("iNumDefects", &defect_count), given("tPGDefects", defects.data()),
            given("iNumBumps", &bump_count), given("tPGBumps", bumps.data()), record);
        for (const tPGLot& lot : lots) {
            raw.push_back(lot.RawPI);
            rounded.push_back(lot.RndPI);
        }
        event = result == vialto_success && record.untouched() ? "" : record.summary();
        diagnostics = directory.text_of("pgindex_dll.txt");
        return *this;
    }

    void gives(const Samples& indexes, std::int32_t defects, const std::string& expected = "",
               int line = __builtin_LINE()) const {
        const testing::ScopedTrace at(__FILE__, line, "the call");
        EXPECT_EQ(event, expected);
        EXPECT_EQ(raw, indexes);
        EXPECT_EQ(rounded, indexes);
        EXPECT_EQ(defect_count, defects);
    }

    void fails_with(const std::string& expected, std::int32_t defects,
                    int line = __builtin_LINE()) const {
        gives(Samples(lots.size(), -7.0F), defects, expected, line); // as the host has left them
    }
};

// Lots that are their own mirror images and have a mean of 0.0, so that their trend is 0.0. With one
// whole scallop of height 3 above a band of 4; 8 m.
const Samples whole{-1, -1, -1, -1, -1, -1, -1, 5, 4, 5, -1, -1, -1, -1, -1, -1, -1};

// With partial scallops of the height h, 1 to 5, at both ends; 16 m.
Samples edges(std::size_t h, std::size_t count = 33) {
    Samples lot(count, 0.0F);
    for (std::size_t i = 0; i < 5 + 2 * h; ++i) {
        lot[i] = lot[count - 1 - i] = i < 3 ? static_cast<float>(h + 2 - i) : -1.5F;
    }
    return lot;
}

} // namespace

TEST(ProfilographTrace, HasTheBitsOfTheLiteralVersionWhereAllWheelsStandOnTheStretch) {
    const auto reaches = [](std::int32_t reach, const Samples& offsets, float interval) {
        SCOPED_TRACE(testing::PrintToString(offsets));
        Trace call{offsets, interval};
        call.run();
        EXPECT_EQ(call.event, "");
        EXPECT_EQ(call.first, reach);
        EXPECT_EQ(call.last, 4999 - reach);
        EXPECT_EQ(call.trace, literal_trace(interval, offsets, call.profile));
    };
    reaches(152, {3.8F, 2.29F, 3.05F, 0.76F, 1.525F, 0.0F}, 0.025F);
    reaches(5, {1.125F}, 0.25F);
    // Within a trifle of a sample, where they are on it, or just not.
    reaches(4, {3.99999022F}, 1.0F);
    reaches(4, {3.99998998F}, 1.0F);
    reaches(4, {4.00000954F}, 1.0F);
    reaches(5, {4.00001001F}, 1.0F);
    // Wheels of a negative offset, up to the reach of the longest pair.
    reaches(4, {1.0F, -1.1F, -1.0F, -0.1F}, 0.25F);
    reaches(1, {-0.1F}, 0.25F);
}

TEST(ProfilographTrace, WhatCannotBeServedIsRefused) {
    const std::string too_short = "101 2 pgfilter/pgfilt_dll: nsamp < 2*maxsampbegin";
    const std::string outside = "100 2 pgfilter/pgfilt_dll: xWheelOffsets holds a negative offset "
                                "that reaches outside the stretch";
    const std::string refused = "100 2 pgfilt_dll: ";
    Trace{.offsets{1.0F}, .start = 2, .end = 11}.fails_with(too_short);
    Trace{.start = INT32_MAX, .end = INT32_MIN}.fails_with(too_short);
    Trace{.offsets{0.0F, 3e38F}}.fails_with(too_short);
    Trace{.offsets{-0.25F}}.fails_with(outside);
    Trace{.offsets{1.0F, -1.25F}}.fails_with(outside);
    Trace{.offsets{-1.3F, 1.0F}}.fails_with(outside);
    Trace{.offsets{INFINITY}}.fails_with(refused +
                                         "xWheelOffsets holds an offset that is not finite");
    Trace{.offsets{}}.fails_with(refused + "iNumWheelOffsets is not positive");
    Trace{.start = -1}.fails_with(refused + "iStartIndex is negative");
    Trace{.end = INT32_MAX}.fails_with(
        refused + "iEndIndex makes the stretch longer than 2147483647 samples");
    Trace{.interval = 0.0F}.fails_with(refused + "xStepSize is not a positive finite number");
    for (const char* argument :
         {"xWheelOffsets", "xProfile", "xPGTrace", "BeginElemIdx", "EndElemIdx"}) {
        Trace{.null = argument}.fails_with(refused + argument + " is a null pointer");
    }
}

// On a parabola a wheel d samples off the centre stands d squared above it.
TEST(ProfilographTrace, WritesItsValidSamplesAloneAndADiagnosticFileOfTheStretch) {
    Trace call{.offsets = {0.375F, 0.0F}, .start = 1, .end = 7, .in_place = false};
    call.profile = {0, 1, 4, 9, 16, 25, 36, 49, 64};
    call.trace.assign(9, 7.0F);
    call.run();
    EXPECT_EQ(call.trace, (Samples{7, 7, 7, -1.25F, -1.25F, -1.25F, 7, 7, 7}));
    EXPECT_EQ(call.diagnostics,
              " *** Profilogragh Filter ***\n"
              " Number of Points      : -1\n"
              " Number of Points used : 7\n"
              " iStartIndex           : 1\n"
              " iEndIndex             : 7\n"
              " Sample Interval (m)   : 0.25\n"
              " Wheel Offsets         : 2\n"
              " Wheel Offsets (m)     :\n"
              "  1 0.375\n  2 0\n  3 0\n  4 0\n  5 0\n  6 0\n"
              " BeginElemIdx(0-based) : 3\n"
              " EndElemIdx            : 5\n"
              " Profile   PG_Trace\n"
              "  1 0\n  4 0\n  9 -1.25\n  16 -1.25\n  25 -1.25\n  36 0\n  49 0\n");
}

TEST(Scallops, AreMeasuredFromCrossingToCrossing) {
    constexpr float above = idx_pgdefect_above;
    constexpr float below = idx_pgdefect_below;
    constexpr float epsilon = 0x1p-23F; // of the machine
    const Samples peak{0, 4, 6, 4, 0};
    const Samples ends{6, 5, 4, 0, 4, 5, 6};
    const Samples rough{3.9F, 5.6F, 0.3F, -4.4F, -2.6F, 0.1F, 4.6F, 5.5F, -0.2F, -3.5F, -4};
    const ScallopRules band{4, 0, 0, 0}; // of a width of 4, without rules
    const Samples none(7);
    // Of whole scallops: type, first and last sample, distances, height; of those at the start and
    // the end: the same, the raw height ahead of the height. To the last bit.
    const auto has = [](const char* claim, const Samples& lot, const ScallopRules& rules,
                        float raw_sum, float sum, const std::vector<Samples>& scallops,
                        const Samples& start = Samples(7), const Samples& end = Samples(7),
                        float interval = 0.5F) {
        SCOPED_TRACE(claim);
        LotScallops found;
        EXPECT_EQ(CountScallops(lot, interval, rules, found), success);
        EXPECT_EQ(found.xSumRaw, raw_sum);
        EXPECT_EQ(found.xSumRnd, sum);
        const auto fields = [](std::int32_t type, const auto& s, const Samples& heights) {
            Samples all{float(type), float(s.iStart), float(s.iEnd), s.BeginX, s.EndX};
            all.insert(all.end(), heights.begin(), heights.end());
            return all;
        };
        std::vector<Samples> whole_ones;
        for (const Scallop& s : found.scallops) {
            whole_ones.push_back(fields(s.Type, s, {s.MxHts}));
        }
        EXPECT_EQ(whole_ones, scallops);
        const auto& [first, last] = found.edges;
        EXPECT_EQ(fields(first.iType, first, {first.xRawHt, first.xRndHt}), start);
        EXPECT_EQ(fields(last.iType, last, {last.xRawHt, last.xRndHt}), end);
    };
    has("on the edge is inside", {2, 4, 2, 0, -2}, band, 2, 2, {{above, 2, 2, 0.5F, 1.5F, 2}});
    has("across the whole band in one step", {0, 4, -4, 0}, band, 4, 4,
        {{above, 2, 2, 0.75F, 1.125F, 2}, {below, 3, 3, 1.375F, 1.75F, 2}});
    has("just wide and high enough", peak, {4, 1.5F, 0, 4}, 4, 4, {{above, 2, 4, 0.75F, 2.25F, 4}});
    has("just too narrow", peak, {4, 1.51F, 0, 0}, 0, 0, {});
    has("just too low, but its raw height counts", peak, {4, 0, 0, 4.01F}, 4, 0, {});
    has("4 milliard steps", peak, {4, 0, 1e-9F, 0}, 4, 4, {{above, 2, 4, 0.75F, 2.25F, 4}});
    has("rounded to nothing", {0, 2.75F, 0}, {4, 0, 2, 0}, 0.75F, 0, {});
    has("rounded up", {1, 3, 1}, {4, 0, 2, 0}, 1, 2, {{above, 2, 2, 0.75F, 1.25F, 2}});
    has("one epsilon is no height, two are", {epsilon, 0, epsilon, 0, 2 * epsilon, 0}, {0, 0, 0, 0},
        3 * epsilon, 2 * epsilon, {{above, 5, 5, 2, 3, 2 * epsilon}},
        {0, 0, 0, 0, 0, epsilon, epsilon});
    has("partial ones of 0.33 of the width, 0.9999 m", ends, {4, 3.03F, 0, 0}, 0, 0, {},
        {above, 1, 2, 0, 2.5F, 4, 4}, {above, 5, 7, 2.25F, 3.5F, 4, 4});
    has("too narrow for 1.0032 m", ends, {4, 3.04F, 0, 0}, 0, 0, {});
    has("lower partial ones", {-6, -5, -4, 0, -4, -6}, band, 0, 0, {},
        {below, 1, 2, 0.5F, 2.5F, 4, 4}, {below, 5, 6, 2.25F, 3, 4, 4});
    has("on over a sample on the edge", {6, 5, 2, 0}, band, 0, 0, {}, {above, 1, 2, 0, 1.5F, 4, 4});
    has("along two equal samples", {6, 5, 5, 0}, band, 0, 0, {}, {above, 1, 2, 0, INFINITY, 4, 4});
    has("but not into a whole one", {0, 4, 2, 5}, band, 2, 2, {{above, 2, 2, 0.75F, 1.5F, 2}}, none,
        {above, 3, 4, 0.5F, 2, 3, 3});
    has("nor from the start", {6, 5, 4, 2, 4, 2, 0}, band, 2, 2, {{above, 5, 5, 2, 3, 2}},
        {above, 1, 3, 0, 2, 4, 4});
    has("no crossing ahead of the first sample", {6}, band, 0, 0, {}, {above, 1, 0, 0, 0.5F, 4, 4},
        {above, 1, 1, 0, 0.5F, 4, 4});
    has("nor of a lower one", {-6}, band, 0, 0, {}, {below, 1, 0, 0.5F, 0.5F, 4, 4},
        {below, 1, 1, 0.5F, 0.5F, 4, 4});
    has("nothing", {}, band, 0, 0, {});
    has("rounded to float32 at every step, in its order", rough, {4, 0.1F, 0, 0}, 5.9000001F,
        5.9000001F,
        {{below, 4, 5, 1.0468086F, 1.56666672F, 2.4000001F},
         {above, 7, 8, 1.92666674F, 2.58421063F, 3.5F}},
        {above, 1, 1, 0, 1.23529422F, 3.5999999F, 3.5999999F},
        {below, 10, 11, 2.86363626F, 3.30000019F, 2, 2}, 0.3F);
    LotScallops along_the_edge;
    EXPECT_EQ(CountScallops(Samples{6, 2, 2, 0}, 0.5F, band, along_the_edge), success);
    EXPECT_TRUE(std::isnan(along_the_edge.edges.start.EndX));
}

TEST(ProfileIndex, ScallopAcrossALotBoundaryCountsTwiceOrNotAtAll) {
    // By the height of their partial scallops.
    const Samples one = edges(1);
    const Samples four = edges(4);
    const Samples five = edges(5);
    Index{}
        .run({four, four})
        .gives({0.5F, 0.25F}, 4); // the second takes nothing out, the third does
    Index{}.run({one, five, four}).gives({0.125F, 0.3125F, 0.25F}, 6);
    Index{}.run({one, four, five}).gives({0.125F, 0.5F, 0.625F}, 6);
    // 4 are taken out over 32 m, the length of the third lot, instead of 16 m.
    Index{}.run({one, four, edges(4, 65)}).gives({0.125F, 0.375F, 0.125F}, 6);
    // A lot of one sample has a place in the list, and no ends.
    Index{}.run({four, {9}, four}).gives({0.25F, -1, 0.25F}, 4);
    // 4 and 5 both become 8, and rounded heights are compared; 1 becomes 0 and is none.
    const Index rounded = Index{{4, 0.5F, 0, 8, 0, 0}}.run({one, four, five});
    EXPECT_EQ(rounded.raw, (Samples{0, 0.25F, 0.3125F}));
    EXPECT_EQ(rounded.rounded, (Samples{0, 0.5F, 0.5F}));
    EXPECT_EQ(rounded.defect_count, 4);
}

TEST(ProfileIndex, IsRoundedToFloat32AtEveryStepInItsOrder) {
    Index index{.settings{1.3F, 0.1F, 0, 0, 0, 0}, .start = 4, .interval = 0.15F};
    index.trace.assign(11, 0.0F);
    index.run({{1.3F, 0.2F, 0.5F, 1.2F, 3, 3.2F, 0.3F, 2.9F}});
    for (const char* row :
         {"  11 18 1.325 3.125 0.025000036 1.8250002 1.9013606 1.9013606\n",
          "  12 13 1.7909212 0.52372193 1.9633065 0.8192398 0.17238533 0.08214295 2\n",
          "  15 16 2.1871529 2.5029764 2.427998 2.9158535 0.2408452 0.6464286 1\n",
          "  17 17 2.4897628 1.721736 2.631174 1.9641554 0.1414113 1.2678572 2\n"}) {
        EXPECT_NE(index.diagnostics.find(row), std::string::npos) << row;
    }
}

TEST(ProfileIndex, NumbersThatAreNoneHaveNoDefects) {
    const std::vector<Samples> lots{edges(4), whole, {9, 9, 0, NAN}, {9, 9, INFINITY}};
    Index{{NAN, 0, 0, 0, 0, 0}}.run(lots).gives({0, 0, 0, 0}, 0);
    Index{{4, NAN, 0, 0, 0, 0}}.run(lots).gives({0.5F, 0, 0, 0}, 2);
    Index{{4, 0, NAN, 0, 0, 0}}.run(lots).gives({0.5F, 0.375F, 0, 0}, 3);
    Index{{4, 0, 0, NAN, 0, 0}}.run(lots).gives({0.5F, 0.375F, 0, 0}, 3);
}

TEST(ProfileIndex, LotsOutsideTheStretchAndMoreThanTheListsHoldFail) {
    const std::string failed = "101 2 pgindex/pgindex_dll: ";
    const std::string outside = failed + "End location of a defect exceeds the profile length.";
    // The stretch is that of the samples 3 to 21, and its second lot 5 to 21.
    const auto beside = [](std::int32_t first, std::int32_t last) {
        const tPGLot lot{first, last, -7, -7, -7, -7, -7, -7};
        return Index{.start = 3, .trace{0, 0, 0, 0, 0}, .lots{lot}}.run({whole});
    };
    beside(2, 20).fails_with(outside, 0);
    beside(3, 22).fails_with(outside, 0);
    beside(INT32_MIN, INT32_MAX).fails_with(outside, 0);
    beside(22, 22).gives({-1, 0.375F}, 1);                  // too short to be looked for
    Index{.start = 17}.run({whole}).fails_with(outside, 0); // the stretch is reversed

    // 1000 whole scallops, above and below by turns.
    Samples thousand{0};
    for (int i = 0; i < 500; ++i) {
        thousand.insert(thousand.end(), {8, 0, -8, 0});
    }
    Samples one_more = thousand; // too low to be one
    one_more.insert(one_more.end(), {2.5F, 0});
    Samples start_too = thousand;
    start_too.insert(start_too.begin(), {8, 8, 8});
    std::vector<Samples> lots(5, thousand);
    EXPECT_EQ(Index{}.run(lots).defect_count, 5000);
    lots.push_back(whole);
    Index{}
        .run({whole, start_too})
        .fails_with(failed + "maximum allowable scallops exceeded for a segment", 1);
    Index{}
        .run({whole, one_more})
        .fails_with("101 2 pgindex/pgindex/pgindex_dll: maximum number of scallops exceeds the "
                    "program limits. Try with smaller segments",
                    1);
    Index{}.run(lots).fails_with(
        failed + "maximum allowable scallops exceeded for the entire trace", 5000);
}

TEST(ProfileIndex, RefusesWhatItsLotsNeedAndNothingElse) {
    Index{.start = 17, .null = "xPGTrace"}.run({{9}}).gives({-1}, 0);
    Index{.start = -1, .null = "xPGTrace"}.run().gives({}, 0);
    Index{.null = "tPGLots", .trace{9}}.run().gives({}, 0);
    Index{.null = "tPGDefects", .trace{9}}.run().gives({}, 0);
    Index{.null = "tPGBumps", .trace{9}, .bump_count = 0}.run().gives({}, 0);
    const std::string refused = "100 2 pgindex_dll: ";
    Index{.start = -1}.run({whole}).fails_with(refused + "iStartIndex is negative", -7);
    for (const char* argument : {"xPGSettings", "xPGTrace", "tPGLots", "iNumDefects", "tPGDefects",
                                 "iNumBumps", "tPGBumps"}) {
        Index{.null = argument}.run({whole}).fails_with(refused + argument + " is a null pointer",
                                                        -7);
    }
}

TEST(ProfileIndex, DefectsStandAboutTheTrendOfTheirLotAndMoveWithTheStretchAsBumpsDo) {
    const tPGDefect given{INT32_MAX, 2, 0.25F, 5, 0.5F, 6, 7, 8};
    const tPGDefect moved{INT32_MAX, 5, 1.75F, 5, 2, 6, 7, 8};
    // By 2 a metre; the band at a defect is taken one interval farther along.
    const Samples rising{2, 3, 4, 5, 6, 7, 8, 3, 5, 5, 12, 13, 14, 15, 16, 17, 18};
    for (const std::int32_t count : {1, INT32_MAX, -1}) {
        Index index{.settings{4, 1.5F, 1.75F, 2, 11, 12}, .start = 3, .bump_count = count};
        index.trace.assign(10, 500.0F);
        index.bumps.front() = given;
        index.run({{9}, rising, edges(2)});
        EXPECT_EQ(std::memcmp(&index.bumps[0], count < 0 ? &given : &moved, sizeof moved), 0);
        EXPECT_EQ(index.bumps.back().iStart, count == INT32_MAX ? 3 : 0);
        EXPECT_EQ(index.diagnostics,
                  " *** Profilogragh Index and Defective Segments ***\n"
                  " Number of Points      : -1\n"
                  " Number of Points used : 58\n"
                  " iStartIndex           : 3\n"
                  " iEndIndex             : 60\n"
                  " Sample Interval (m)   : 0.5\n"
                  " BlankingBand (mm)     : 4\n"
                  " MinScallopWidth (m)   : 1.5\n"
                  " MinScallopHeight (mm) : 1.75\n"
                  " ScallopRound (mm)     : 2\n"
                  " BumpCutoffHeight (mm) : 11\n"
                  " BumpChordlength (m)   : 12\n"
                  " Number of Lots        : 3\n"
                  " iStart iEnd xBBUpperStart xBBUpperEnd xBBLowerStart xBBLowerEnd RawPI RndPI\n"
                  "  10 10 0 0 0 0 -1 -1\n"
                  "  11 27 3 19 -1 15 0.375 0.5\n"
                  "  28 60 2 2 -2 -2 0.25 0.25\n"
                  " Number of Defects     : 3\n"
                  " iStart iEnd BeginX BeginY EndX EndY Length MxHts Type\n"
                  "  18 20 8.75 6.5 10.25 9.5 1.5 4 2\n"
                  "  28 29 13.5 2 15 2 1.5 2 1\n"
                  "  58 60 29 2 30 2 1 2 1\n");
    }
}

} // namespace vialto::test
