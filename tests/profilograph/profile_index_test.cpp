#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "support/cases.hpp"
#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

using Samples = std::vector<float>;

// A host's side of a call of pgindex_dll on the samples from `start` on.
struct Index {
    Samples settings{4.0F, 0.5F, 0.6F, 0.0F, 11.0F, 12.0F};
    std::int32_t start = 0;
    std::string null = {}; // the argument that is a null pointer
    Samples trace = {};
    std::vector<tPGLot> lots = {};
    std::int32_t bump_count = 1;
    std::vector<tPGDefect> bumps = std::vector<tPGDefect>(5000);
    std::int32_t defect_count = -7;
    std::string diagnostics = {};

    // With more lots, one behind the other. Gives the event of a failure, or nothing.
    std::string run(const std::vector<Samples>& more = {}) {
        for (const Samples& samples : more) {
            lots.push_back(
                {size_of(trace), size_of(trace) + size_of(samples) - 1, -7, -7, -7, -7, -7, -7});
            trace.insert(trace.end(), samples.begin(), samples.end());
        }
        const TemporaryDirectory directory;
        EventRecord event;
        std::vector<tPGDefect> defects(5000);
        const auto given = [&](const char* name, auto* p) { return null == name ? nullptr : p; };
        const std::int32_t code = pgindex_dll(
            start, size_of(trace) - 1, 0.5F, given("xPGSettings", settings.data()), -1,
            given("xPGTrace", trace.data()), size_of(lots), given("tPGLots", lots.data()),
            given("iNumDefects", &defect_count), given("tPGDefects", defects.data()),
            given("iNumBumps", &bump_count), given("tPGBumps", bumps.data()), event);
        diagnostics = directory.text_of("pgindex_dll.txt");
        return event.outcome(code);
    }

    [[nodiscard]] Samples indexes(float tPGLot::*field) const {
        Samples of_lots;
        for (const tPGLot& lot : lots) {
            of_lots.push_back(lot.*field);
        }
        return of_lots;
    }
};

// Both indexes of the lots are the same, heights not being rounded; none where the host's are left.
void gives(const Claim& claim, Index call, const std::vector<Samples>& lots, const Samples& indexes,
           std::int32_t defect_count, const std::string& event = "") {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    EXPECT_EQ(call.run(lots), event);
    const Samples expected = event.empty() ? indexes : Samples(call.lots.size(), -7.0F);
    EXPECT_TRUE(same(call.indexes(&tPGLot::RawPI), expected)) << "RawPI";
    EXPECT_TRUE(same(call.indexes(&tPGLot::RndPI), expected)) << "RndPI";
    EXPECT_EQ(call.defect_count, defect_count);
}

void fails(const Claim& claim, const Index& call, const std::vector<Samples>& lots,
           const std::string& event, std::int32_t defect_count) {
    gives(claim, call, lots, {}, defect_count, event);
}

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

TEST(ProfileIndex, ScallopAcrossALotBoundaryCountsTwiceOrNotAtAll) {
    // By the height of their partial scallops.
    const Samples one = edges(1);
    const Samples four = edges(4);
    const Samples five = edges(5);
    gives("the second lot takes nothing out", {}, {four, four}, {0.5F, 0.25F}, 4);
    gives("the third takes a higher one out", {}, {one, five, four}, {0.125F, 0.3125F, 0.25F}, 6);
    gives("a lower one counts beside its own", {}, {one, four, five}, {0.125F, 0.5F, 0.625F}, 6);
    gives("4 are taken out over the 32 m of the third lot", {}, {one, four, edges(4, 65)},
          {0.125F, 0.375F, 0.125F}, 6);
    gives("a lot of one sample has a place in the list, and no ends", {}, {four, {9}, four},
          {0.25F, -1, 0.25F}, 4);
    Index rounding_to_8{{4, 0.5F, 0, 8, 0, 0}}; // makes 8 of 4 and of 5, and nothing of 1
    EXPECT_EQ(rounding_to_8.run({one, four, five}), "");
    EXPECT_TRUE(same(rounding_to_8.indexes(&tPGLot::RawPI), {0, 0.25F, 0.3125F}));
    EXPECT_TRUE(same(rounding_to_8.indexes(&tPGLot::RndPI), {0, 0.5F, 0.5F}));
    EXPECT_EQ(rounding_to_8.defect_count, 4);
}

TEST(ProfileIndex, LotOutsideTheStretchFails) {
    const std::string outside = "101 2 pgindex/pgindex_dll: End location of a defect exceeds the "
                                "profile length.";
    // The stretch is that of the samples 3 to 21, and its second lot 5 to 21.
    const auto with_lot = [](std::int32_t first, std::int32_t last) {
        return Index{
            .start = 3, .trace{0, 0, 0, 0, 0}, .lots{{first, last, -7, -7, -7, -7, -7, -7}}};
    };
    fails("a sample ahead", with_lot(2, 20), {whole}, outside, 0);
    fails("a sample behind", with_lot(3, 22), {whole}, outside, 0);
    fails("far beyond both ends", with_lot(INT32_MIN, INT32_MAX), {whole}, outside, 0);
    fails("of a reversed stretch", {.start = 17}, {whole}, outside, 0);
    gives("too short to be looked for", with_lot(22, 22), {whole}, {-1, 0.375F}, 1);
}

TEST(ProfileIndex, MoreThanTheListsHoldFails) {
    const std::string failed =
        "101 2 pgindex/pgindex_dll: maximum allowable scallops exceeded for ";
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
    Index full;
    EXPECT_EQ(full.run(lots), "");
    EXPECT_EQ(full.defect_count, 5000);
    lots.push_back(whole);
    fails("a partial one ahead of a thousand", {}, {whole, start_too}, failed + "a segment", 1);
    fails("a candidate behind a thousand", {}, {whole, one_more},
          "101 2 pgindex/pgindex/pgindex_dll: maximum number of scallops exceeds the "
          "program limits. Try with smaller segments",
          1);
    fails("5001 of all lots", {}, lots, failed + "the entire trace", 5000);
}

TEST(ProfileIndex, RefusesWhatItsLotsNeedAndNothingElse) {
    gives("no trace of a reversed stretch", {.start = 17, .null = "xPGTrace"}, {{9}}, {-1}, 0);
    gives("no trace without lots", {.start = -1, .null = "xPGTrace"}, {}, {}, 0);
    gives("no lots", {.null = "tPGLots", .trace{9}}, {}, {}, 0);
    gives("no room for no defects", {.null = "tPGDefects", .trace{9}}, {}, {}, 0);
    gives("no bumps", {.null = "tPGBumps", .trace{9}, .bump_count = 0}, {}, {}, 0);
    const std::string refused = "100 2 pgindex_dll: ";
    fails("ahead of the array", {.start = -1}, {whole}, refused + "iStartIndex is negative", -7);
    for (const char* argument : {"xPGSettings", "xPGTrace", "tPGLots", "iNumDefects", "tPGDefects",
                                 "iNumBumps", "tPGBumps"}) {
        fails(argument, {.null = argument}, {whole}, refused + argument + " is a null pointer", -7);
    }
}

TEST(ProfileIndex, BumpsMoveWithTheStretch) {
    for (const std::int32_t count : {1, INT32_MAX, -1}) {
        SCOPED_TRACE(count);
        Index call{.start = 3, .bump_count = count};
        call.trace.assign(4, 0.0F);
        call.bumps.front() = {INT32_MAX, 2, 0.25F, 5, 0.5F, 6, 7, 8};
        EXPECT_EQ(call.run(), "");
        const tPGDefect& moved = call.bumps.front();
        EXPECT_EQ(moved.iStart, INT32_MAX);
        EXPECT_EQ(moved.iEnd, count < 0 ? 2 : 5);
        EXPECT_EQ(moved.BeginX, count < 0 ? 0.25F : 1.75F);
        EXPECT_EQ(moved.EndX, count < 0 ? 0.5F : 2.0F);
        EXPECT_TRUE(same<float>({moved.BeginY, moved.EndY, moved.MxHts}, {5, 6, 7}));
        EXPECT_EQ(call.bumps.back().iStart, count == INT32_MAX ? 3 : 0);
    }
}

TEST(ProfileIndex, DefectsStandAboutTheTrendOfTheirLot) {
    // By 2 a metre; the band at a defect is taken one interval farther along.
    const Samples rising{2, 3, 4, 5, 6, 7, 8, 3, 5, 5, 12, 13, 14, 15, 16, 17, 18};
    Index call{.settings{4, 1.5F, 1.75F, 2, 11, 12}, .start = 3};
    call.trace.assign(10, 500.0F);
    EXPECT_EQ(call.run({{9}, rising, edges(2)}), "");
    const std::string results =
        " iStart iEnd xBBUpperStart xBBUpperEnd xBBLowerStart xBBLowerEnd RawPI RndPI\n"
        "  10 10 0 0 0 0 -1 -1\n"
        "  11 27 3 19 -1 15 0.375 0.5\n"
        "  28 60 2 2 -2 -2 0.25 0.25\n"
        " Number of Defects     : 3\n"
        " iStart iEnd BeginX BeginY EndX EndY Length MxHts Type\n"
        "  18 20 8.75 6.5 10.25 9.5 1.5 4 2\n"
        "  28 29 13.5 2 15 2 1.5 2 1\n"
        "  58 60 29 2 30 2 1 2 1\n";
    EXPECT_TRUE(call.diagnostics.ends_with(results)) << call.diagnostics;
}

} // namespace
} // namespace vialto::test
