#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <iomanip>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "profilograph/scallops.hpp"
#include "support/host.hpp"
#include "support/literal_profilograph.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

// What came out, and what should have.
void expect(const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [result, expected] : cases) {
        EXPECT_EQ(result, expected);
    }
}

// A call of pgfilt_dll on 5000 samples.
struct Trace {
    std::vector<float> offsets{0.0F};
    float interval = 0.25F;
    std::int32_t start = 0;
    std::int32_t end = 4999;
    std::int32_t pairs = static_cast<std::int32_t>(offsets.size());
    std::size_t null = 0; // which of the pointers is null
    bool in_place = true;
    std::vector<float> profile = random_road(5000, 1.0, 5);
    std::vector<float> trace = profile;
    std::string diagnostics = {};

    // The valid indexes, or the event of a call that leaves the outputs alone.
    std::string call() {
        const TemporaryDirectory directory;
        EventRecord event;
        std::int32_t first = -7;
        std::int32_t last = -7;
        const auto pointer = [&](std::size_t k, auto* p) { return k == null ? nullptr : p; };
        const bool served = pgfilt_dll(start, end, interval, pairs, -1, pointer(1, offsets.data()),
                                       pointer(2, in_place ? trace.data() : profile.data()),
                                       pointer(3, trace.data()), pointer(4, &first),
                                       pointer(5, &last), event) == vialto_success;
        diagnostics = directory.text_of("pgfilt_dll.txt");
        EXPECT_TRUE(served ? event.untouched() : trace == profile && first == -7 && last == -7);
        return served ? std::to_string(first) + " to " + std::to_string(last) : event.summary();
    }
};

// A call of pgindex_dll on the samples from `start` on.
struct Index {
    std::vector<float> settings{4.0F, 0.5F, 0.6F, 0.0F, 11.0F, 12.0F};
    std::int32_t start = 0;
    std::size_t null = 0; // which of the pointers is null
    std::vector<float> trace = {};
    std::vector<tPGLot> lots = {};
    float interval = 0.5F;
    std::int32_t bump_count = 1;
    std::vector<tPGDefect> bumps = std::vector<tPGDefect>(5000);
    std::string diagnostics = {};

    // With more lots, one behind the other: raw and rounded index of each lot, or the event of a
    // call that leaves the lots alone; and the number of defects.
    std::string call(const std::vector<std::vector<float>>& more) {
        const auto size = [](const auto& list) { return static_cast<std::int32_t>(list.size()); };
        for (const std::vector<float>& samples : more) {
            lots.push_back({size(trace), size(trace) + size(samples) - 1, -7, -7, -7, -7, -7, -7});
            trace.insert(trace.end(), samples.begin(), samples.end());
        }
        const TemporaryDirectory directory;
        EventRecord event;
        std::int32_t defect_count = -7;
        std::vector<tPGDefect> defects(5000);
        const auto pointer = [&](std::size_t k, auto* p) { return k == null ? nullptr : p; };
        const bool served =
            pgindex_dll(start, size(trace) - 1, interval, pointer(1, settings.data()), -1,
                        pointer(2, trace.data()), size(lots), pointer(3, lots.data()),
                        pointer(4, &defect_count), pointer(5, defects.data()),
                        pointer(6, &bump_count), pointer(7, bumps.data()), event) == vialto_success;
        diagnostics = directory.text_of("pgindex_dll.txt");
        EXPECT_EQ(event.untouched(), served);
        std::ostringstream indexes;
        for (const tPGLot& lot : lots) {
            EXPECT_EQ(lot.RawPI != -7.0F, served);
            indexes << lot.RawPI << "/" << lot.RndPI << " ";
        }
        return (served ? indexes.str() : event.summary() + " ") + std::to_string(defect_count);
    }
};

// To the last bit: raw and final sum, raw heights of the partial scallops at the start and the end;
// then each scallop: type, samples, distances, height.
std::string scallops_of(const std::vector<float>& lot, const ScallopRules& rules = {4, 0, 0, 0},
                        float interval = 0.5F) {
    LotScallops found;
    EXPECT_EQ(CountScallops(lot, interval, rules, found), success);
    const auto& [start, end] = found.edges;
    std::ostringstream text;
    text << std::setprecision(9) << found.xSumRaw << "/" << found.xSumRnd << " " << start.xRawHt
         << "/" << end.xRawHt;
    const auto add = [&](const char* name, std::int32_t type, const auto& s, float height) {
        if (type != no_scallop) {
            text << name << type << ": " << s.iStart << "-" << s.iEnd << " " << s.BeginX << ".."
                 << (std::isnan(s.EndX) ? NAN : s.EndX) << " h" << height;
        }
    };
    add("; start ", start.iType, start, start.xRndHt);
    for (const Scallop& s : found.scallops) {
        add("; ", s.Type, s, s.MxHts);
    }
    add("; end ", end.iType, end, end.xRndHt);
    return text.str();
}

// Lots that are their own mirror images and have a mean of 0.0, so that their trend is 0.0. With one
// whole scallop of height 3 above a band of 4; 8 m.
const std::vector<float> whole{-1, -1, -1, -1, -1, -1, -1, 5, 4, 5, -1, -1, -1, -1, -1, -1, -1};

// With partial scallops of the height h, 1 to 5, at both ends; 16 m.
std::vector<float> edges(std::size_t h, std::size_t count = 33) {
    std::vector<float> lot(count, 0.0F);
    for (std::size_t i = 0; i < 5 + 2 * h; ++i) {
        lot[i] = lot[count - 1 - i] = i < 3 ? static_cast<float>(h + 2 - i) : -1.5F;
    }
    return lot;
}

} // namespace

TEST(ProfilographTrace, HasTheBitsOfTheLiteralVersionWhereAllWheelsStandOnTheStretch) {
    const std::pair<Trace, std::int32_t> cases[] = {
        {{{3.8F, 2.29F, 3.05F, 0.76F, 1.525F, 0.0F}, 0.025F}, 152},
        {{{1.125F}}, 5},
        // Wheels of a negative offset, up to the reach of the longest pair.
        {{{1.0F, -1.1F, -1.0F, -0.1F}}, 4},
        {{{-0.1F}}, 1},
        // Within a trifle of a sample, where they are on it, or just not.
        {{{3.99999022F}, 1.0F}, 4},
        {{{3.99998998F}, 1.0F}, 4},
        {{{4.00000954F}, 1.0F}, 4},
        {{{4.00001001F}, 1.0F}, 5},
    };
    for (auto [call, reach] : cases) {
        EXPECT_EQ(call.call(), std::to_string(reach) + " to " + std::to_string(4999 - reach));
        EXPECT_EQ(call.trace, literal_trace(call.interval, call.offsets, call.profile));
    }
}

TEST(ProfilographTrace, WhatCannotBeServedIsRefused) {
    const std::string too_short = "101 2 pgfilter/pgfilt_dll: nsamp < 2*maxsampbegin";
    const std::string refused = "100 2 pgfilt_dll: ";
    const std::string outside =
        "100 2 pgfilter/pgfilt_dll: xWheelOffsets holds a negative offset that reaches outside the "
        "stretch";
    expect({
        {Trace{{1.0F}, 0.25F, 2, 12}.call(), "6 to 8"},
        {Trace{{1.0F}, 0.25F, 2, 11}.call(), too_short},
        {Trace{.start = INT32_MAX, .end = INT32_MIN}.call(), too_short},
        {Trace{{0.0F, 3e38F}}.call(), too_short},
        {Trace{.pairs = 0}.call(), refused + "iNumWheelOffsets is not positive"},
        {Trace{{-0.25F}}.call(), outside},
        {Trace{{1.0F, -1.25F}}.call(), outside},
        {Trace{{-1.3F, 1.0F}}.call(), outside},
        {Trace{{INFINITY}}.call(), refused + "xWheelOffsets holds an offset that is not finite"},
        {Trace{.end = INT32_MAX}.call(),
         refused + "iEndIndex makes the stretch longer than 2147483647 samples"},
        {Trace{.interval = 0.0F}.call(), refused + "xStepSize is not a positive finite number"},
        {Trace{.null = 1}.call(), refused + "xWheelOffsets is a null pointer"},
        {Trace{.null = 2}.call(), refused + "xProfile is a null pointer"},
        {Trace{.null = 3}.call(), refused + "xPGTrace is a null pointer"},
        {Trace{.null = 4}.call(), refused + "BeginElemIdx is a null pointer"},
        {Trace{.null = 5}.call(), refused + "EndElemIdx is a null pointer"},
    });
}

// On a parabola a wheel d samples off the centre stands d squared above it.
TEST(ProfilographTrace, WritesItsValidSamplesAloneAndADiagnosticFileOfTheStretch) {
    Trace call{.offsets = {0.375F, 0.0F}, .start = 1, .end = 7, .in_place = false};
    call.profile = {0, 1, 4, 9, 16, 25, 36, 49, 64};
    call.trace.assign(9, 7.0F);
    call.call();
    EXPECT_EQ(call.trace, (std::vector<float>{7, 7, 7, -1.25F, -1.25F, -1.25F, 7, 7, 7}));
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
    const std::vector<float> peak{0, 4, 6, 4, 0};
    const std::vector<float> ends{6, 5, 4, 0, 4, 5, 6};
    const std::vector<float> rough{3.9F, 5.6F, 0.3F,  -4.4F, -2.6F, 0.1F,
                                   4.6F, 5.5F, -0.2F, -3.5F, -4};
    expect({
        {scallops_of({2, 4, 2, 0, -2}), "2/2 0/0; 1: 2-2 0.5..1.5 h2"}, // on the edge is inside
        {scallops_of({0, 4, -4, 0}), "4/4 0/0; 1: 2-2 0.75..1.125 h2; 2: 3-3 1.375..1.75 h2"},
        // Just wide and high enough, or not; its raw height counts all the same.
        {scallops_of(peak, {4, 1.5F, 0, 4}), "4/4 0/0; 1: 2-4 0.75..2.25 h4"},
        {scallops_of(peak, {4, 1.51F, 0, 0}), "0/0 0/0"},
        {scallops_of(peak, {4, 0, 0, 4.01F}), "4/0 0/0"},
        {scallops_of(peak, {4, 0, 1e-9F, 0}), "4/4 0/0; 1: 2-4 0.75..2.25 h4"}, // 4 milliard steps
        {scallops_of({0, 2.75F, 0}, {4, 0, 2, 0}), "0.75/0 0/0"},
        {scallops_of({1, 3, 1}, {4, 0, 2, 0}), "1/2 0/0; 1: 2-2 0.75..1.25 h2"},
        // One machine epsilon, twice, and two of them.
        {scallops_of({0x1p-23F, 0, 0x1p-23F, 0, 0x1p-22F, 0}, {0, 0, 0, 0}),
         "3.57627869e-07/2.38418579e-07 1.1920929e-07/0; 1: 5-5 2..3 h2.38418579e-07"},
        // 0.33 of the width is 0.9999 m and 1.0032 m.
        {scallops_of(ends, {4, 3.03F, 0, 0}),
         "0/0 4/4; start 1: 1-2 0..2.5 h4; end 1: 5-7 2.25..3.5 h4"},
        {scallops_of(ends, {4, 3.04F, 0, 0}), "0/0 0/0"},
        {scallops_of({-6, -5, -4, 0, -4, -6}),
         "0/0 4/4; start 2: 1-2 0.5..2.5 h4; end 2: 5-6 2.25..3 h4"},
        // On over a sample on the edge, along two equal samples, but not into a whole one.
        {scallops_of({6, 5, 2, 0}), "0/0 4/0; start 1: 1-2 0..1.5 h4"},
        {scallops_of({6, 5, 5, 0}), "0/0 4/0; start 1: 1-2 0..inf h4"},
        {scallops_of({6, 2, 2, 0}), "0/0 4/0; start 1: 1-2 0..nan h4"},
        {scallops_of({0, 4, 2, 5}), "2/2 0/3; 1: 2-2 0.75..1.5 h2; end 1: 3-4 0.5..2 h3"},
        {scallops_of({6, 5, 4, 2, 4, 2, 0}), "2/2 4/0; start 1: 1-3 0..2 h4; 1: 5-5 2..3 h2"},
        // Without a sample before the first there is no crossing.
        {scallops_of({6}), "0/0 4/4; start 1: 1-0 0..0.5 h4; end 1: 1-1 0..0.5 h4"},
        {scallops_of({-6}), "0/0 4/4; start 2: 1-0 0.5..0.5 h4; end 2: 1-1 0.5..0.5 h4"},
        {scallops_of({}), "0/0 0/0"},
        // Rounded to float32 at every step, in its order.
        {scallops_of(rough, {4, 0.1F, 0, 0}, 0.3F),
         "5.9000001/5.9000001 3.5999999/2; start 1: 1-1 0..1.23529422 h3.5999999; "
         "2: 4-5 1.0468086..1.56666672 h2.4000001; 1: 7-8 1.92666674..2.58421063 h3.5; "
         "end 2: 10-11 2.86363626..3.30000019 h2"},
    });
}

TEST(ProfileIndex, ScallopAcrossALotBoundaryCountsTwiceOrNotAtAll) {
    // By the height of their partial scallops; 4 over 32 m instead of 16 m.
    const std::vector<float> four = edges(4);
    const std::vector<float> five = edges(5);
    expect({
        {Index{}.call({four, four}), "0.5/0.5 0.25/0.25 4"}, // the second takes nothing out
        {Index{}.call({edges(1), five, four}), "0.125/0.125 0.3125/0.3125 0.25/0.25 6"},
        {Index{}.call({edges(1), four, five}), "0.125/0.125 0.5/0.5 0.625/0.625 6"},
        {Index{}.call({edges(1), four, edges(4, 65)}), "0.125/0.125 0.375/0.375 0.125/0.125 6"},
        {Index{}.call({four, {9}, four}), "0.25/0.25 -1/-1 0.25/0.25 4"},
        // 4 and 5 both become 8, and rounded heights are compared; 1 becomes 0 and is none.
        {Index{{4, 0.5F, 0, 8, 0, 0}}.call({edges(1), four, five}), "0/0 0.25/0.5 0.3125/0.5 4"},
    });
}

TEST(ProfileIndex, IsRoundedToFloat32AtEveryStepInItsOrder) {
    Index index{.settings{1.3F, 0.1F, 0, 0, 0, 0}, .start = 4, .interval = 0.15F};
    index.trace.assign(11, 0.0F);
    index.call({{1.3F, 0.2F, 0.5F, 1.2F, 3, 3.2F, 0.3F, 2.9F}});
    for (const char* row :
         {"  11 18 1.325 3.125 0.025000036 1.8250002 1.9013606 1.9013606\n",
          "  12 13 1.7909212 0.52372193 1.9633065 0.8192398 0.17238533 0.08214295 2\n",
          "  15 16 2.1871529 2.5029764 2.427998 2.9158535 0.2408452 0.6464286 1\n",
          "  17 17 2.4897628 1.721736 2.631174 1.9641554 0.1414113 1.2678572 2\n"}) {
        EXPECT_NE(index.diagnostics.find(row), std::string::npos) << row;
    }
}

TEST(ProfileIndex, NumbersThatAreNoneHaveNoDefects) {
    const std::vector<std::vector<float>> lots{edges(4), whole, {9, 9, 0, NAN}, {9, 9, INFINITY}};
    expect({
        {Index{{NAN, 0, 0, 0, 0, 0}}.call(lots), "0/0 0/0 0/0 0/0 0"},
        {Index{{4, NAN, 0, 0, 0, 0}}.call(lots), "0.5/0.5 0/0 0/0 0/0 2"},
        {Index{{4, 0, NAN, 0, 0, 0}}.call(lots), "0.5/0.5 0.375/0.375 0/0 0/0 3"},
        {Index{{4, 0, 0, NAN, 0, 0}}.call(lots), "0.5/0.5 0.375/0.375 0/0 0/0 3"},
    });
}

TEST(ProfileIndex, LotsOutsideTheStretchAndMoreThanTheListsHoldFail) {
    const std::string failed = "101 2 pgindex/pgindex_dll: ";
    const std::string outside = failed + "End location of a defect exceeds the profile length. 0";
    const auto beside = [](std::int32_t first, std::int32_t last) {
        const tPGLot lot{first, last, -7, -7, -7, -7, -7, -7};
        return Index{.start = 3, .trace{0, 0, 0, 0, 0}, .lots{lot}}.call({whole});
    };
    // 1000 whole scallops, above and below by turns.
    std::vector<float> thousand{0};
    for (int i = 0; i < 500; ++i) {
        thousand.insert(thousand.end(), {8, 0, -8, 0});
    }
    std::vector<float> one_more = thousand; // too low to be one
    one_more.insert(one_more.end(), {2.5F, 0});
    std::vector<float> start_too = thousand;
    start_too.insert(start_too.begin(), {8, 8, 8});
    std::vector<std::vector<float>> lots(5, thousand);
    EXPECT_TRUE(Index{}.call(lots).ends_with(" 5000"));
    lots.push_back(whole);
    expect({
        {beside(2, 20), outside},
        {beside(3, 22), outside},
        {beside(INT32_MIN, INT32_MAX), outside},
        {beside(22, 22), "-1/-1 0.375/0.375 1"}, // too short to be looked for
        {Index{}.call({whole, start_too}),
         failed + "maximum allowable scallops exceeded for a segment 1"},
        {Index{}.call({whole, one_more}),
         "101 2 pgindex/pgindex/pgindex_dll: maximum number of scallops exceeds the program "
         "limits. Try with smaller segments 1"},
        {Index{}.call(lots),
         failed + "maximum allowable scallops exceeded for the entire trace 5000"},
    });
}

TEST(ProfileIndex, WhatCannotBeServedIsRefused) {
    const std::string refused = "100 2 pgindex_dll: ";
    expect({
        {Index{.start = -1}.call({whole}), refused + "iStartIndex is negative -7"},
        // A stretch, reversed or not, of which no lot is read.
        {Index{.start = 17}.call({whole}),
         "101 2 pgindex/pgindex_dll: End location of a defect exceeds the profile length. 0"},
        {Index{.start = 17, .null = 2}.call({{9}}), "-1/-1 0"},
        {Index{.start = -1, .null = 2}.call({}), "0"},
        // A list without a record needs no array.
        {Index{.null = 3, .trace{9}}.call({}), "0"},
        {Index{.null = 5, .trace{9}}.call({}), "0"},
        {Index{.null = 7, .trace{9}, .bump_count = 0}.call({}), "0"},
    });
    const char* const names[] = {"xPGSettings", "xPGTrace",  "tPGLots", "iNumDefects",
                                 "tPGDefects",  "iNumBumps", "tPGBumps"};
    for (std::size_t k = 1; k <= std::size(names); ++k) {
        EXPECT_EQ(Index{.null = k}.call({whole}), refused + names[k - 1] + " is a null pointer -7");
    }
}

TEST(ProfileIndex, DefectsStandAboutTheTrendOfTheirLotAndMoveWithTheStretchAsBumpsDo) {
    const tPGDefect given{INT32_MAX, 2, 0.25F, 5, 0.5F, 6, 7, 8};
    const tPGDefect moved{INT32_MAX, 5, 1.75F, 5, 2, 6, 7, 8};
    // By 2 a metre; the band at a defect is taken one interval farther along.
    const std::vector<float> rising{2, 3, 4, 5, 6, 7, 8, 3, 5, 5, 12, 13, 14, 15, 16, 17, 18};
    for (const std::int32_t count : {1, INT32_MAX, -1}) {
        Index index{.settings{4, 1.5F, 1.75F, 2, 11, 12}, .start = 3, .bump_count = count};
        index.trace.assign(10, 500.0F);
        index.bumps.front() = given;
        index.call({{9}, rising, edges(2)});
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
