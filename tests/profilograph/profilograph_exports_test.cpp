#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/host.hpp"
#include "support/literal_profilograph.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

// What came out, and what should have.
void expect(const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [result, expected] : cases) {
        EXPECT_EQ(result, expected);
    }
}

// A call of pgfilt_dll on samples 7 to 4989 of 5000.
struct Trace {
    std::vector<float> offsets{0.0F};
    float interval = 0.25F;
    std::int32_t start = 7;
    std::int32_t end = 4989;
    std::int32_t pairs = static_cast<std::int32_t>(offsets.size());
    std::size_t null = 0; // which of the pointers is null
    bool in_place = false;
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
        const std::int32_t result =
            pgfilt_dll(start, end, interval, pairs, -1, pointer(1, offsets.data()),
                       pointer(2, in_place ? trace.data() : profile.data()),
                       pointer(3, trace.data()), pointer(4, &first), pointer(5, &last), event);
        diagnostics = directory.text_of("pgfilt_dll.txt");
        if (result == vialto_success && event.untouched()) {
            return std::to_string(first) + " to " + std::to_string(last);
        }
        EXPECT_TRUE(trace == profile && first == -7 && last == -7);
        return event.summary();
    }
};

// A call of pgindex_dll on the samples from `start` on.
struct Index {
    std::vector<float> settings{4.0F, 0.5F, 0.6F, 0.0F, 11.0F, 12.0F};
    std::int32_t start = 0;
    std::optional<std::int32_t> end = {}; // the last sample of the trace
    float interval = 0.5F;                // m
    std::size_t null = 0;                 // which of the pointers is null
    std::vector<float> trace = {};
    std::vector<tPGLot> lots = {};
    std::int32_t defect_count = -7;
    std::int32_t bump_count = 0;
    std::vector<tPGDefect> defects = std::vector<tPGDefect>(5000);
    std::vector<tPGDefect> bumps = defects;
    std::string diagnostics = {};

    Index& lot(std::int32_t first, std::int32_t last) {
        lots.push_back({first, last, -7.0F, -7.0F, -7.0F, -7.0F, -7.0F, -7.0F});
        return *this;
    }
    Index& with(const std::vector<float>& samples) {
        trace.insert(trace.end(), samples.begin(), samples.end());
        return lot(static_cast<std::int32_t>(trace.size() - samples.size()), last());
    }
    [[nodiscard]] std::int32_t last() const { return static_cast<std::int32_t>(trace.size()) - 1; }
    // Raw and rounded index of each lot, or the event of a call that leaves the lots alone; and the
    // number of defects.
    std::string call() {
        const TemporaryDirectory directory;
        EventRecord event;
        const auto pointer = [&](std::size_t k, auto* p) { return k == null ? nullptr : p; };
        const std::int32_t result = pgindex_dll(
            start, end.value_or(last()), interval, pointer(1, settings.data()), -1,
            pointer(2, trace.data()), static_cast<std::int32_t>(lots.size()),
            pointer(3, lots.data()), pointer(4, &defect_count), pointer(5, defects.data()),
            pointer(6, &bump_count), pointer(7, bumps.data()), event);
        diagnostics = directory.text_of("pgindex_dll.txt");
        std::ostringstream text;
        for (const tPGLot& lot : lots) {
            EXPECT_EQ(lot.RawPI == -7.0F, result != vialto_success);
            text << lot.RawPI << "/" << lot.RndPI << " ";
        }
        const bool served = result == vialto_success && event.untouched();
        return (served ? text.str() : event.summary() + " ") + std::to_string(defect_count);
    }
    // The lots and the defects as the diagnostic file shows them, to the last bit.
    std::string tables() {
        call();
        std::istringstream lines(diagnostics);
        std::string text;
        for (std::string line; std::getline(lines, line);) {
            text += line.starts_with("  ") ? line.substr(1) + ";" : "";
        }
        return text;
    }
};

// The lots below are their own mirror images and have a mean of 0.0, so that their trend is exactly
// the line 0.0.

// 17 samples, 8 m, with one whole scallop of height 3 above a band of 4.
const std::vector<float> whole{-1, -1, -1, -1, -1, -1, -1, 5, 4, 5, -1, -1, -1, -1, -1, -1, -1};

// With partial scallops of the height h, 1 to 5, at both ends, falling by 1 a sample towards the
// band; 33 samples, 16 m.
std::vector<float> edges(int h, std::size_t count = 33) {
    std::vector<float> lot(count, 0.0F);
    for (int i = 0; i < 5 + 2 * h; ++i) {
        const float value = i < 3 ? static_cast<float>(h + 2 - i) : -1.5F;
        lot[static_cast<std::size_t>(i)] = lot[count - 1 - static_cast<std::size_t>(i)] = value;
    }
    return lot;
}

} // namespace

TEST(ProfilographTrace, HasTheBitsOfTheLiteralVersionWhereAllWheelsStandOnTheStretch) {
    const std::pair<Trace, std::int32_t> cases[] = {
        {{{3.8F, 2.29F, 3.05F, 0.76F, 1.525F, 0.0F}, 0.025F}, 152},
        {{.offsets = {1.0F, 0.5F, 0.1F}, .interval = 0.025F, .in_place = true}, 40},
        {{{1.125F}}, 5},
        // Within a trifle of a sample, where they are on it, or just not.
        {{{3.99999022F}, 1.0F}, 4},
        {{{3.99998998F}, 1.0F}, 4},
        {{{4.00000954F}, 1.0F}, 4},
        {{{4.00001001F}, 1.0F}, 5},
    };
    for (auto [call, reach] : cases) {
        EXPECT_EQ(call.call(), std::to_string(7 + reach) + " to " + std::to_string(4989 - reach));
        const std::span stretch = std::span(call.profile).subspan(7, 4983);
        const std::vector<float> trace = literal_trace(call.interval, call.offsets, stretch);
        std::vector<float> expected = call.profile;
        std::copy(trace.begin(), trace.end(), expected.begin() + 7);
        EXPECT_EQ(call.trace, expected);
    }
}

TEST(ProfilographTrace, WhatCannotBeServedIsRefused) {
    const std::string too_short = "101 2 pgfilter/pgfilt_dll: nsamp < 2*maxsampbegin";
    const std::string refused = "100 2 pgfilt_dll: ";
    const std::string offset = "xWheelOffsets holds an offset that is negative or not finite";
    expect({
        {Trace{{1.0F}, 0.25F, 2, 12}.call(), "6 to 8"},
        {Trace{{1.0F}, 0.25F, 2, 11}.call(), too_short},
        {Trace{.start = 2, .end = 1}.call(), too_short},
        {Trace{.start = highest, .end = lowest}.call(), too_short},
        {Trace{{0.0F, 3e38F}}.call(), too_short},
        {Trace{.pairs = 0}.call(), refused + "iNumWheelOffsets is not positive"},
        {Trace{{1.0F, -0.1F}}.call(), refused + offset},
        {Trace{{infinite}}.call(), refused + offset},
        {Trace{.start = -1}.call(), refused + "iStartIndex is negative"},
        {Trace{.start = 0, .end = highest}.call(),
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
TEST(ProfilographTrace, DiagnosticFileHoldsTheStretchAndItsTrace) {
    Trace call{.offsets = {0.375F, 0.0F}, .start = 1, .end = 7};
    call.profile = call.trace = {0, 1, 4, 9, 16, 25, 36, 49, 64};
    call.call();
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

// Of a lot: samples, band above and below, indexes. Of a defect: samples, beginning and the band
// there, end and the band there, length, height, type.
TEST(ProfileIndex, ScallopsStandAboutTheTrendOfTheirLot) {
    const std::vector<float> rising{2, 3, 4, 5, 6, 7, 8, 3, 5, 5, 12, 13, 14, 15, 16, 17, 18};
    const std::vector<float> rough{1.3F, 0.2F, 0.5F, 1.2F, 3, 3.2F, 0.3F, 2.9F};
    Index far{{1.3F, 0.1F, 0, 0, 0, 0}, 4, {}, 0.15F, 0, std::vector<float>(11)};
    expect({
        // By 2 a metre, and the band is taken one interval farther.
        {Index{{4, 1.5F, 3, 2, 0, 0}}.with(rising).tables(),
         " 0 16 3 19 -1 15 0.375 0.5; 7 9 3.25 6.5 4.75 9.5 1.5 4 2;"},
        {Index{}.with(edges(4)).tables(), " 0 32 2 2 -2 -2 0.5 0.5; 0 1 -0.5 2 2 2 2.5 4 1;"
                                          " 30 32 14.818182 2 16 2 1.181818 4 1;"},
        // Rounded to float32 at every step, in its order.
        {far.with(rough).tables(),
         " 11 18 1.325 3.125 0.025000036 1.8250002 1.9013606 1.9013606;"
         " 12 13 1.7909212 0.52372193 1.9633065 0.8192398 0.17238533 0.08214295 2;"
         " 15 16 2.1871529 2.5029764 2.427998 2.9158535 0.2408452 0.6464286 1;"
         " 17 17 2.4897628 1.721736 2.631174 1.9641554 0.1414113 1.2678572 2;"},
    });
}

TEST(ProfileIndex, ScallopAcrossALotBoundaryCountsTwiceOrNotAtAll) {
    // By the height of their partial scallops; 4 over 32 m instead of 16 m; and of one sample.
    const std::vector<float> one = edges(1);
    const std::vector<float> four = edges(4);
    const std::vector<float> five = edges(5);
    const std::vector<float> longer = edges(4, 65);
    const std::vector<float> dot{9};
    const std::vector<float> start_inside{2,    2,    2,    2,  -1.5, -1.5, -1.5, -1.5, -1.5,
                                          -1.5, -1.5, -1.5, -2, -2,   -2,   4,    6};
    const auto call = [](const std::vector<std::vector<float>>& lots, float rounding = 0) {
        Index index{{4, 0.5F, 0, rounding, 0, 0}};
        for (const std::vector<float>& lot : lots) {
            index.with(lot);
        }
        return index.call();
    };
    expect({
        {call({four, four}), "0.5/0.5 0.25/0.25 4"}, // the second lot takes nothing out
        {call({one, five, four}), "0.125/0.125 0.3125/0.3125 0.25/0.25 6"},
        {call({one, four, five}), "0.125/0.125 0.5/0.5 0.625/0.625 6"},
        {call({one, four, longer}), "0.125/0.125 0.375/0.375 0.125/0.125 6"},
        {call({one, four, dot, four}), "0.125/0.125 0.25/0.25 -1/-1 0.25/0.25 6"},
        {call({four, dot, four}), "0.25/0.25 -1/-1 0.25/0.25 4"},
        {call({one, start_inside, four}), "0.125/0.125 0.25/0.25 0.25/0.25 5"},
        {call({dot, dot, four}), "-1/-1 -1/-1 0.5/0.5 2"},
        // 4 and 5 both become 8, and rounded heights are compared; 1 becomes 0 and is none.
        {call({one, four, five}, 8), "0/0 0.25/0.5 0.3125/0.5 4"},
    });
}

TEST(ProfileIndex, NumbersThatAreNoneHaveNoDefects) {
    const auto call = [](const std::vector<float>& settings, float sample) {
        return Index{settings}.with(edges(4)).with(whole).with({9, 9, 0, sample, 0, 9}).call();
    };
    expect({
        {call({4, 0, 0, 0, 0, 0}, infinite), "0.5/0.5 0.375/0.375 0/0 3"},
        {call({nan, 0, 0, 0, 0, 0}, nan), "0/0 0/0 0/0 0"},
        {call({4, nan, 0, 0, 0, 0}, nan), "0.5/0.5 0/0 0/0 2"},
        {call({4, 0, nan, 0, 0, 0}, nan), "0.5/0.5 0.375/0.375 0/0 3"},
        {call({4, 0, 0, nan, 0, 0}, nan), "0.5/0.5 0.375/0.375 0/0 3"},
    });
}

TEST(ProfileIndex, LotsOutsideTheStretchAndMoreThanTheListsHoldFail) {
    const std::string failed = "101 2 pgindex/pgindex_dll: ";
    const std::string outside = failed + "End location of a defect exceeds the profile length. 1";
    const auto beside = [](std::int32_t first, std::int32_t last) {
        return Index{.start = 3, .trace = {0, 0, 0, 0, 0}}.with(whole).lot(first, last).call();
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
    Index five;
    five.with(thousand).with(thousand).with(thousand).with(thousand).with(thousand);
    expect({
        {beside(2, 20), outside},
        {beside(3, 22), outside},
        {beside(lowest, highest), outside},
        {beside(22, 22), "0.375/0.375 -1/-1 1"}, // too short to be looked for
        {beside(highest, lowest), "0.375/0.375 -1/-1 1"},
        {Index{}.with(whole).with(start_too).call(),
         failed + "maximum allowable scallops exceeded for a segment 1"},
        {Index{}.with(whole).with(one_more).call(),
         "101 2 pgindex/pgindex/pgindex_dll: maximum number of scallops exceeds the program "
         "limits. Try with smaller segments 1"},
        {Index(five).with(whole).call(),
         failed + "maximum allowable scallops exceeded for the entire trace 5000"},
    });
    five.call();
    EXPECT_EQ(five.defect_count, 5000);
}

TEST(ProfileIndex, WhatCannotBeServedIsRefused) {
    const auto event = [](Index index) { return index.with(whole).call(); };
    const std::string refused = "100 2 pgindex_dll: ";
    expect({
        {event({.start = -1}), refused + "iStartIndex is negative -7"},
        {event({.start = highest, .end = lowest}),
         refused + "iEndIndex lies before iStartIndex -7"},
        {event({.end = highest}),
         refused + "iEndIndex makes the stretch longer than 2147483647 samples -7"},
        {event({.interval = -0.5F}), refused + "xStepSize is not a positive finite number -7"},
        // A list without a record needs no array.
        {Index{.null = 3, .trace = {9}}.call(), "0"},
        {Index{.null = 5, .trace = {9}}.call(), "0"},
        {Index{.null = 7, .trace = {9}}.call(), "0"},
    });
    const char* const names[] = {"xPGSettings", "xPGTrace",  "tPGLots", "iNumDefects",
                                 "tPGDefects",  "iNumBumps", "tPGBumps"};
    for (std::size_t k = 1; k <= std::size(names); ++k) {
        EXPECT_EQ(event({.null = k, .bump_count = 1}),
                  refused + names[k - 1] + " is a null pointer -7");
    }
}

TEST(ProfileIndex, StretchMovesDefectsAndBumpsAndTheDiagnosticFileShowsThem) {
    const tPGDefect given[] = {{1, 2, 0.25F, 5, 0.5F, 6, 7, 8}, {highest, -4, 0, 0, 0, 0, 0, 0}};
    const tPGDefect moved[] = {{4, 5, 1.75F, 5, 2, 6, 7, 8}, {highest, -1, 1.5F, 0, 1.5F, 0, 0, 0}};
    const tPGDefect defect{17, 19, 8.25F, 2, 9.75F, 2, 3, 1};
    for (const std::int32_t count : {2, highest, -1}) {
        Index index{.start = 3, .trace = std::vector<float>(10, 500), .bump_count = count};
        std::copy(std::begin(given), std::end(given), index.bumps.begin());
        index.with(whole).lot(10, 10).call();
        EXPECT_EQ(std::memcmp(index.bumps.data(), count < 0 ? given : moved, sizeof moved), 0);
        EXPECT_EQ(index.bumps.back().iStart, count == highest ? 3 : 0);
        EXPECT_EQ(std::memcmp(index.defects.data(), &defect, sizeof defect), 0);
        EXPECT_EQ(index.diagnostics,
                  " *** Profilogragh Index and Defective Segments ***\n"
                  " Number of Points      : -1\n"
                  " Number of Points used : 24\n"
                  " iStartIndex           : 3\n"
                  " iEndIndex             : 26\n"
                  " Sample Interval (m)   : 0.5\n"
                  " BlankingBand (mm)     : 4\n"
                  " MinScallopWidth (m)   : 0.5\n"
                  " MinScallopHeight (mm) : 0.6\n"
                  " ScallopRound (mm)     : 0\n"
                  " BumpCutoffHeight (mm) : 11\n"
                  " BumpChordlength (m)   : 12\n"
                  " Number of Lots        : 2\n"
                  " iStart iEnd xBBUpperStart xBBUpperEnd xBBLowerStart xBBLowerEnd RawPI RndPI\n"
                  "  10 26 2 2 -2 -2 0.375 0.375\n"
                  "  10 10 0 0 0 0 -1 -1\n"
                  " Number of Defects     : 1\n"
                  " iStart iEnd BeginX BeginY EndX EndY Length MxHts Type\n"
                  "  17 19 8.25 2 9.75 2 1.5 3 1\n");
    }
}

} // namespace vialto::test
