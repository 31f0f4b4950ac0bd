#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
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

struct Trace {
    std::vector<float> trace;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::int32_t result = 0;
    EventRecord event;
};

Trace roll(const std::vector<float>& profile, std::int32_t start, std::int32_t end, float interval,
           const std::vector<float>& offsets) {
    const TemporaryDirectory directory;
    Trace out;
    out.trace.assign(profile.size(), unwritten);
    out.result = pgfilt_dll(start, end, interval, static_cast<std::int32_t>(offsets.size()), -1,
                            offsets.data(), profile.data(), out.trace.data(), &out.first, &out.last,
                            out.event);
    return out;
}

// Elevation i is i squared: a wheel pair d samples off the centre stands d squared above it.
std::vector<float> parabola(std::size_t count) {
    std::vector<float> profile(count);
    for (std::size_t i = 0; i < count; ++i) {
        profile[i] = static_cast<float>(i * i);
    }
    return profile;
}

} // namespace

TEST(ProfilographTrace, ParabolaGivesTheMeanHeightOfTheWheelsAboveTheCentre) {
    struct Case {
        std::vector<float> offsets; // m; the interval is 0.25 m
        std::int32_t reach;
        float height;
    };
    const Case cases[] = {{{1.0F}, 4, 16.0F},                    // on the fourth sample
                          {{1.125F}, 5, (16.0F + 25.0F) / 2.0F}, // halfway to the fifth
                          {{1.0625F}, 5, 16.0F + 9.0F / 4.0F},   // a quarter of the way
                          {{0.0F}, 0, 0.0F},
                          {{0.125F}, 1, 0.5F},
                          {{1.125F, 1.0F}, 5, (20.5F + 16.0F) / 2.0F},
                          {{0.0F, 0.5F, 0.0F, 1.5F}, 6, (4.0F + 36.0F) / 4.0F}};
    for (const Case& c : cases) {
        const Trace out = roll(parabola(40), 3, 36, 0.25F, c.offsets);
        EXPECT_EQ(out.result, vialto_success);
        EXPECT_TRUE(out.event.untouched());
        EXPECT_EQ(out.first, 3 + c.reach);
        EXPECT_EQ(out.last, 36 - c.reach);
        for (std::int32_t i = 0; i < 40; ++i) {
            const bool valid = i >= out.first && i <= out.last;
            EXPECT_EQ(out.trace[static_cast<std::size_t>(i)], valid ? -c.height : unwritten) << i;
        }
    }
}

TEST(ProfilographTrace, WheelWithinATrifleOfASampleStandsOnIt) {
    // A bump at sample 20 shows in the samples that a wheel looks at it from.
    std::vector<float> bump(41, 0.0F);
    bump[20] = 1.0F;
    struct Case {
        float offset; // samples
        std::int32_t first;
        bool sees_from_17; // the neighbour nearer to the centre has a share
    };
    for (const Case& c : {Case{3.99999022F, 4, false}, Case{3.99998998F, 4, true},
                          Case{4.00000954F, 4, false}, Case{4.00001001F, 5, false}}) {
        const Trace out = roll(bump, 0, 40, 1.0F, {c.offset});
        EXPECT_EQ(out.first, c.first) << c.offset;
        EXPECT_EQ(out.trace[17] != 0.0F, c.sees_from_17) << c.offset;
        EXPECT_EQ(out.trace[16] == -0.5F, c.first == 4 && !c.sees_from_17) << c.offset;
    }
}

TEST(ProfilographTrace, HasTheBitsOfTheLiteralVersion) {
    const std::vector<float> road = random_road(5000, 0.025, 5);
    for (const std::vector<float>& offsets :
         {std::vector<float>{3.8F, 2.29F, 3.05F, 0.76F, 1.525F, 0.0F},
          {0.33F},
          {1.0F, 0.5F, 0.1F}}) {
        const Trace out = roll(road, 0, 4999, 0.025F, offsets);
        std::vector<float> expected = literal_trace(0.025F, offsets, road);
        std::fill(expected.begin(), expected.begin() + out.first, unwritten);
        std::fill(expected.begin() + out.last + 1, expected.end(), unwritten);
        EXPECT_EQ(out.trace, expected);
    }
}

TEST(ProfilographTrace, StretchMustBeLongerThanTwiceTheReach) {
    const std::vector<float> profile = parabola(40);
    const Trace shortest = roll(profile, 2, 12, 0.25F, {1.0F});
    EXPECT_EQ(shortest.result, vialto_success);
    EXPECT_EQ(shortest.first, 6);
    EXPECT_EQ(shortest.last, 8);
    struct Case {
        std::int32_t start;
        std::int32_t end;
        float offset;
    };
    for (const Case& c :
         {Case{2, 11, 1.0F}, Case{2, 2, 0.0F}, Case{2, 1, 0.0F}, Case{most, -most, 0.0F},
          Case{-2, -3, 0.0F}, Case{0, 39, 1e9F}, Case{0, 39, 3e38F}}) {
        const Trace out = roll(profile, c.start, c.end, 0.25F, {0.0F, c.offset});
        EXPECT_EQ(out.result, vialto_failure);
        EXPECT_EQ(out.event.summary(), "101 2 pgfilter/pgfilt_dll: nsamp < 2*maxsampbegin");
        EXPECT_EQ(out.trace, std::vector<float>(40, unwritten));
        EXPECT_EQ(out.first, -7);
        EXPECT_EQ(out.last, -7);
    }
}

TEST(ProfilographTrace, MayTakeThePlaceOfTheProfile) {
    std::vector<float> road = parabola(40);
    std::int32_t first = 0;
    std::int32_t last = 0;
    const float offset = 1.0F;
    const TemporaryDirectory directory;
    EXPECT_EQ(
        pgfilt_dll(0, 39, 0.25F, 1, 40, &offset, road.data(), road.data(), &first, &last, nullptr),
        vialto_success);
    EXPECT_EQ(road[3], 9.0F);
    EXPECT_EQ(road[4], -16.0F);
    EXPECT_EQ(road[35], -16.0F);
}

TEST(ProfilographTrace, WhatCannotBeServedIsRefused) {
    const TemporaryDirectory directory;
    std::vector<float> road = parabola(40);
    std::vector<float> trace(40, unwritten);
    std::int32_t index = -7;
    struct Case {
        std::string text;
        std::int32_t pairs = 1;
        std::vector<float> offsets = {1.0F, 1.0F};
        int null = 0; // position of the argument that is a null pointer
        std::int32_t start = 0;
        std::int32_t end = 39;
        float interval = 0.25F;
    };
    const std::string bad_offset = "xWheelOffsets holds an offset that is negative or not finite";
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Case cases[] = {
        {"iNumWheelOffsets is not positive", 0},
        {"iNumWheelOffsets is not positive", -most},
        {bad_offset, 2, {1.0F, -0.1F}},
        {bad_offset, 2, {nan, 1.0F}},
        {bad_offset, 1, {std::numeric_limits<float>::infinity()}},
        {"iStartIndex is negative", 1, {1.0F}, 0, -1},
        {"iEndIndex makes the stretch longer than 2147483647 samples", 1, {1.0F}, 0, 0, most},
        {"xStepSize is not a positive finite number", 1, {1.0F}, 0, 0, 39, 0.0F},
        {"xWheelOffsets is a null pointer", 1, {1.0F}, 6},
        {"xProfile is a null pointer", 1, {1.0F}, 7},
        {"xPGTrace is a null pointer", 1, {1.0F}, 8},
        {"BeginElemIdx is a null pointer", 1, {1.0F}, 9},
        {"EndElemIdx is a null pointer", 1, {1.0F}, 10},
    };
    for (const Case& c : cases) {
        const auto unless = [&](int position, auto* pointer) {
            return c.null == position ? nullptr : pointer;
        };
        EventRecord event;
        EXPECT_EQ(pgfilt_dll(c.start, c.end, c.interval, c.pairs, 40, unless(6, c.offsets.data()),
                             unless(7, road.data()), unless(8, trace.data()), unless(9, &index),
                             unless(10, &index), event),
                  vialto_failure);
        EXPECT_EQ(event.summary(), "100 2 pgfilt_dll: " + c.text);
    }
    EXPECT_EQ(trace, std::vector<float>(40, unwritten));
    EXPECT_EQ(index, -7);
}

TEST(ProfilographTrace, DiagnosticFileHoldsTheStretchAndItsTrace) {
    const TemporaryDirectory directory;
    const std::vector<float> road = parabola(9);
    std::vector<float> trace(9, unwritten);
    std::int32_t first = 0;
    std::int32_t last = 0;
    const std::vector<float> offsets{0.25F, 0.0F};
    ASSERT_EQ(pgfilt_dll(1, 5, 0.25F, 2, 9, offsets.data(), road.data(), trace.data(), &first,
                         &last, nullptr),
              vialto_success);
    EXPECT_EQ(directory.text_of("pgfilt_dll.txt"),
              " *** Profilogragh Filter ***\n"
              " Number of Points      : 9\n"
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
