#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "support/host.hpp"
#include "support/literal_profilograph.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float unwritten = -7.0F;
constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
const char* const pointers[] = {"none",     "xWheelOffsets", "xProfile",
                                "xPGTrace", "BeginElemIdx",  "EndElemIdx"};

// Elevation i is i squared: a wheel pair d samples off the centre stands d squared above it.
std::vector<float> parabola() {
    std::vector<float> profile(40);
    for (std::size_t i = 0; i < profile.size(); ++i) {
        profile[i] = static_cast<float>(i * i);
    }
    return profile;
}

struct Call {
    std::int32_t start = 0;
    std::int32_t end = 39;
    std::vector<float> offsets{1.0F};
    float interval = 0.25F;
    std::optional<std::int32_t> pairs = {}; // as many as there are offsets
    std::size_t null = 0;                   // which of the pointers is null
    std::vector<float> profile = parabola();
    std::vector<float> trace = std::vector<float>(profile.size(), unwritten);
    std::string diagnostics = {};

    // The valid indexes, or the event of a call that leaves the outputs alone.
    std::string run() {
        const TemporaryDirectory directory;
        EventRecord event;
        std::int32_t first = -7;
        std::int32_t last = -7;
        const auto pointer = [&](std::size_t k, auto* p) { return k == null ? nullptr : p; };
        const std::int32_t result = pgfilt_dll(
            start, end, interval, pairs.value_or(static_cast<std::int32_t>(offsets.size())), -1,
            pointer(1, offsets.data()), pointer(2, profile.data()), pointer(3, trace.data()),
            pointer(4, &first), pointer(5, &last), event);
        diagnostics = directory.text_of("pgfilt_dll.txt");
        const std::string indexes = std::to_string(first) + " to " + std::to_string(last);
        if (result == vialto_success) {
            EXPECT_TRUE(event.untouched());
            return indexes;
        }
        EXPECT_EQ(indexes, "-7 to -7");
        EXPECT_EQ(trace, std::vector<float>(profile.size(), unwritten));
        return event.summary();
    }
};

} // namespace

TEST(ProfilographTrace, ParabolaGivesTheMeanHeightOfTheWheelsAboveTheCentre) {
    struct Case {
        std::vector<float> offsets; // m
        std::int32_t reach;
        float height;
    };
    const Case cases[] = {{{1.0F}, 4, 16.0F},                    // on the fourth sample
                          {{1.125F}, 5, (16.0F + 25.0F) / 2.0F}, // halfway to the fifth
                          {{1.0625F}, 5, 16.0F + 9.0F / 4.0F},   // a quarter of the way
                          {{0.0F}, 0, 0.0F},
                          {{0.125F}, 1, 0.5F},
                          {{0.0F, 0.5F, 0.0F, 1.5F}, 6, (4.0F + 36.0F) / 4.0F}};
    for (const Case& c : cases) {
        Call call{.start = 3, .end = 36, .offsets = c.offsets};
        EXPECT_EQ(call.run(), std::to_string(3 + c.reach) + " to " + std::to_string(36 - c.reach));
        std::vector<float> expected(40, unwritten);
        std::fill(expected.begin() + 3 + c.reach, expected.end() - 3 - c.reach, -c.height);
        EXPECT_EQ(call.trace, expected);
    }
}

TEST(ProfilographTrace, HasTheBitsOfTheLiteralVersion) {
    // The last four offsets stand within a trifle of a sample, where they are on it, or just not.
    const Call calls[] = {
        {0, 4999, {3.8F, 2.29F, 3.05F, 0.76F, 1.525F, 0.0F}, 0.025F},
        {0, 4999, {1.0F, 0.5F, 0.1F}, 0.025F},
        {0, 4999, {3.99999022F}, 1.0F},
        {0, 4999, {3.99998998F}, 1.0F},
        {0, 4999, {4.00000954F}, 1.0F},
        {0, 4999, {4.00001001F}, 1.0F},
    };
    for (Call call : calls) {
        call.profile = random_road(5000, 1.0, 5);
        call.trace.assign(5000, unwritten);
        call.run();
        EXPECT_EQ(call.trace, literal_trace(call.interval, call.offsets, call.profile, unwritten));
    }
}

TEST(ProfilographTrace, MayTakeThePlaceOfTheProfile) {
    const TemporaryDirectory directory;
    std::vector<float> road = parabola();
    std::int32_t first = 0;
    std::int32_t last = 0;
    const float offset = 1.0F;
    pgfilt_dll(0, 39, 0.25F, 1, 40, &offset, road.data(), road.data(), &first, &last, nullptr);
    std::vector<float> expected = parabola();
    std::fill(expected.begin() + 4, expected.end() - 4, -16.0F);
    EXPECT_EQ(road, expected);
}

TEST(ProfilographTrace, StretchMustBeLongerThanTwiceTheReach) {
    EXPECT_EQ((Call{2, 12}.run()), "6 to 8");
    for (Call call :
         {Call{2, 11}, Call{2, 2, {0.0F}}, Call{2, 1, {0.0F}}, Call{most, -most, {0.0F}},
          Call{-2, -3, {0.0F}}, Call{0, 39, {0.0F, 1e9F}}, Call{0, 39, {3e38F}}}) {
        EXPECT_EQ(call.run(), "101 2 pgfilter/pgfilt_dll: nsamp < 2*maxsampbegin");
    }
}

TEST(ProfilographTrace, WhatCannotBeServedIsRefused) {
    const std::string pairs = "iNumWheelOffsets is not positive";
    const std::string offset = "xWheelOffsets holds an offset that is negative or not finite";
    struct Case {
        Call call;
        std::string text;
    };
    std::vector<Case> cases = {
        {{.pairs = 0}, pairs},
        {{.pairs = -most}, pairs},
        {{.offsets = {1.0F, -0.1F}}, offset},
        {{.offsets = {std::numeric_limits<float>::quiet_NaN(), 1.0F}}, offset},
        {{.offsets = {std::numeric_limits<float>::infinity()}}, offset},
        {{.start = -1}, "iStartIndex is negative"},
        {{.end = most}, "iEndIndex makes the stretch longer than 2147483647 samples"},
        {{.interval = 0.0F}, "xStepSize is not a positive finite number"},
    };
    for (std::size_t k = 1; k < std::size(pointers); ++k) {
        cases.push_back({{.null = k}, std::string(pointers[k]) + " is a null pointer"});
    }
    for (Case& c : cases) {
        EXPECT_EQ(c.call.run(), "100 2 pgfilt_dll: " + c.text);
    }
}

TEST(ProfilographTrace, DiagnosticFileHoldsTheStretchAndItsTrace) {
    Call call{.start = 1, .end = 5, .offsets = {0.25F, 0.0F}};
    EXPECT_EQ(call.run(), "2 to 4");
    EXPECT_EQ(call.diagnostics, " *** Profilogragh Filter ***\n"
                                " Number of Points      : -1\n"
                                " Number of Points used : 5\n"
                                " iStartIndex           : 1\n"
                                " iEndIndex             : 5\n"
                                " Sample Interval (m)   : 0.25\n"
                                " Wheel Offsets         : 2\n"
                                " Wheel Offsets (m)     :\n"
                                "  1 0.25\n  2 0\n  3 0\n  4 0\n  5 0\n  6 0\n"
                                " BeginElemIdx(0-based) : 2\n"
                                " EndElemIdx            : 4\n"
                                " Profile   PG_Trace\n"
                                "  1 0\n  4 -0.5\n  9 -0.5\n  16 -0.5\n  25 0\n");
}

} // namespace vialto::test
