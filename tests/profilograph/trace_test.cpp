#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "profilograph/scallops.hpp"
#include "support/cases.hpp"
#include "support/host.hpp"
#include "support/literal_profilograph.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

using Samples = std::vector<float>;

// A host's side of a call of pgfilt_dll.
struct Trace {
    Samples offsets{0.0F};  // m
    float interval = 0.25F; // m
    std::int32_t start = 0;
    std::int32_t end = 4999;
    std::string null = {}; // the argument that is a null pointer
    bool in_place = true;
    Samples profile = random_road(5000, 1.0, 5);
    Samples trace = profile;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::string diagnostics = {};

    // Gives the event of a failure, or nothing.
    std::string run() {
        const TemporaryDirectory directory;
        EventRecord event;
        const auto given = [&](const char* name, auto* p) { return null == name ? nullptr : p; };
        const std::int32_t code = pgfilt_dll(
            start, end, interval, size_of(offsets), -1, given("xWheelOffsets", offsets.data()),
            given("xProfile", in_place ? trace.data() : profile.data()),
            given("xPGTrace", trace.data()), given("BeginElemIdx", &first),
            given("EndElemIdx", &last), event);
        diagnostics = directory.text_of("pgfilt_dll.txt");
        return event.outcome(code);
    }
};

TEST(ProfilographTrace, HasTheBitsOfTheLiteralVersionWhereAllWheelsStandOnTheStretch) {
    const auto reaches = [](const Claim& claim, const Samples& offsets, float interval,
                            std::int32_t reach) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        Trace call{offsets, interval};
        EXPECT_EQ(call.run(), "");
        EXPECT_EQ(call.first, reach);
        EXPECT_EQ(call.last, 4999 - reach);
        EXPECT_TRUE(same(call.trace, literal_trace(interval, offsets, call.profile)));
    };
    reaches("six pairs", {3.8F, 2.29F, 3.05F, 0.76F, 1.525F, 0.0F}, 0.025F, 152);
    reaches("between two samples", {1.125F}, 0.25F, 5);
    reaches("a trifle ahead of a sample, so on it", {3.99999022F}, 1.0F, 4);
    reaches("just too far ahead of a sample", {3.99998998F}, 1.0F, 4);
    reaches("a trifle behind a sample, so on it", {4.00000954F}, 1.0F, 4);
    reaches("just too far behind a sample", {4.00001001F}, 1.0F, 5);
    reaches("negative, as far as the longest pair", {1.0F, -1.1F, -1.0F, -0.1F}, 0.25F, 4);
    reaches("negative, within an interval", {-0.1F}, 0.25F, 1);
}

void refuses(const Claim& claim, Trace call, const std::string& event) {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    EXPECT_EQ(call.run(), event);
    EXPECT_TRUE(same(call.trace, call.profile));
    EXPECT_EQ(call.first, -7);
    EXPECT_EQ(call.last, -7);
}

TEST(ProfilographTrace, WritesNothingOfWhatCannotBeServed) {
    const std::string too_short = "101 2 pgfilter/pgfilt_dll: nsamp < 2*maxsampbegin";
    const std::string outside = "100 2 pgfilter/pgfilt_dll: xWheelOffsets holds a negative offset "
                                "that reaches outside the stretch";
    const std::string refused = "100 2 pgfilt_dll: ";
    refuses("ten samples under wheels four samples off", {.offsets{1.0F}, .start = 2, .end = 11},
            too_short);
    refuses("reversed stretch", {.start = INT32_MAX, .end = INT32_MIN}, too_short);
    refuses("beyond all sample numbers", {{0.0F, 3e38F}}, too_short);
    refuses("a sample off, of none that are skipped", {{-0.25F}}, outside);
    refuses("a sample beyond the longest pair", {{1.0F, -1.25F}}, outside);
    refuses("between the samples beyond it", {{-1.3F, 1.0F}}, outside);
    refuses("infinite", {{INFINITY}}, refused + "xWheelOffsets holds an offset that is not finite");
    refuses("no wheels", {Samples{}}, refused + "iNumWheelOffsets is not positive");
    refuses("ahead of the array", {.start = -1}, refused + "iStartIndex is negative");
    refuses("2^31 samples", {.end = INT32_MAX},
            refused + "iEndIndex makes the stretch longer than 2147483647 samples");
    refuses("no interval", {.interval = 0.0F},
            refused + "xStepSize is not a positive finite number");
    for (const char* argument :
         {"xWheelOffsets", "xProfile", "xPGTrace", "BeginElemIdx", "EndElemIdx"}) {
        refuses(argument, {.null = argument}, refused + argument + " is a null pointer");
    }
}

// On a parabola a wheel d samples off the centre stands d squared above it.
TEST(ProfilographTrace, WritesItsValidSamplesAlone) {
    Trace call{.offsets = {0.375F, 0.0F}, .start = 1, .end = 7, .in_place = false};
    call.profile = {0, 1, 4, 9, 16, 25, 36, 49, 64};
    call.trace.assign(9, 7.0F);
    EXPECT_EQ(call.run(), "");
    EXPECT_TRUE(same(call.trace, {7, 7, 7, -1.25F, -1.25F, -1.25F, 7, 7, 7}));
    const std::string table = " Profile   PG_Trace\n  1 0\n  4 0\n  9 -1.25\n  16 -1.25\n"
                              "  25 -1.25\n  36 0\n  49 0\n";
    EXPECT_TRUE(call.diagnostics.ends_with(table)) << call.diagnostics;
}

constexpr std::int32_t above = idx_pgdefect_above;
constexpr std::int32_t below = idx_pgdefect_below;
constexpr ScallopRules band{4, 0, 0, 0}; // of a width of 4, without rules

void expect_whole(const Scallop& found, const Scallop& expected) {
    EXPECT_EQ(found.Type, expected.Type);
    EXPECT_EQ(found.BeginX, expected.BeginX);
    EXPECT_EQ(found.EndX, expected.EndX);
    EXPECT_EQ(found.iStart, expected.iStart);
    EXPECT_EQ(found.iEnd, expected.iEnd);
    EXPECT_EQ(found.MxHts, expected.MxHts);
}

void expect_partial(const char* place, const PartialScallop& found,
                    const PartialScallop& expected) {
    SCOPED_TRACE(place);
    EXPECT_EQ(found.iType, expected.iType);
    EXPECT_EQ(found.iStart, expected.iStart);
    EXPECT_EQ(found.iEnd, expected.iEnd);
    EXPECT_EQ(found.BeginX, expected.BeginX);
    EXPECT_TRUE(same<float>({found.EndX}, {expected.EndX}));
    EXPECT_EQ(found.xRawHt, expected.xRawHt);
    EXPECT_EQ(found.xRndHt, expected.xRndHt);
}

// To the last bit. Whole scallops have a type, distances, samples and a height; partial ones a type,
// samples, distances, the raw height and the height.
void finds(const Claim& claim, const Samples& lot, const ScallopRules& rules, float raw_sum,
           float sum, const std::vector<Scallop>& scallops, const PartialScallop& start = {},
           const PartialScallop& end = {}) {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    LotScallops found;
    EXPECT_EQ(CountScallops(lot, 0.5F, rules, found), success);
    EXPECT_EQ(found.xSumRaw, raw_sum);
    EXPECT_EQ(found.xSumRnd, sum);
    ASSERT_EQ(found.scallops.size(), scallops.size());
    for (std::size_t i = 0; i < scallops.size(); ++i) {
        expect_whole(found.scallops[i], scallops[i]);
    }
    expect_partial("at the start", found.edges.start, start);
    expect_partial("at the end", found.edges.end, end);
}

TEST(Scallops, WholeOnesReachFromCrossingToCrossing) {
    constexpr float epsilon = 0x1p-23F; // of the machine
    const Samples peak{0, 4, 6, 4, 0};
    const Scallop of_peak{above, 0.75F, 2.25F, 2, 4, 4};
    finds("nothing", {}, band, 0, 0, {});
    finds("a sample on the edge is inside", {2, 4, 2, 0, -2}, band, 2, 2,
          {{above, 0.5F, 1.5F, 2, 2, 2}});
    finds("across the whole band in one step", {0, 4, -4, 0}, band, 4, 4,
          {{above, 0.75F, 1.125F, 2, 2, 2}, {below, 1.375F, 1.75F, 3, 3, 2}});
    finds("just wide and high enough", peak, {4, 1.5F, 0, 4}, 4, 4, {of_peak});
    finds("just too narrow", peak, {4, 1.51F, 0, 0}, 0, 0, {});
    finds("just too low, but its raw height counts", peak, {4, 0, 0, 4.01F}, 4, 0, {});
    finds("rounded by 4 milliard steps", peak, {4, 0, 1e-9F, 0}, 4, 4, {of_peak});
    finds("rounded to nothing", {0, 2.75F, 0}, {4, 0, 2, 0}, 0.75F, 0, {});
    finds("rounded up", {1, 3, 1}, {4, 0, 2, 0}, 1, 2, {{above, 0.75F, 1.25F, 2, 2, 2}});
    finds("one epsilon is no height, two are", {epsilon, 0, epsilon, 0, 2 * epsilon, 0},
          {0, 0, 0, 0}, 3 * epsilon, 2 * epsilon, {{above, 2, 3, 5, 5, 2 * epsilon}},
          {no_scallop, 0, 0, 0, 0, epsilon, epsilon});
}

TEST(Scallops, PartialOnesReachFromTheEndsOfTheLotToACrossing) {
    const Samples ends{6, 5, 4, 0, 4, 5, 6};
    finds("0.9999 m are 0.33 of the width", ends, {4, 3.03F, 0, 0}, 0, 0, {},
          {above, 1, 2, 0, 2.5F, 4, 4}, {above, 5, 7, 2.25F, 3.5F, 4, 4});
    finds("too narrow for 1.0032 m", ends, {4, 3.04F, 0, 0}, 0, 0, {});
    finds("below the band", {-6, -5, -4, 0, -4, -6}, band, 0, 0, {},
          {below, 1, 2, 0.5F, 2.5F, 4, 4}, {below, 5, 6, 2.25F, 3, 4, 4});
    finds("on over a sample on the edge", {6, 5, 2, 0}, band, 0, 0, {},
          {above, 1, 2, 0, 1.5F, 4, 4});
    finds("projected along two equal samples", {6, 5, 5, 0}, band, 0, 0, {},
          {above, 1, 2, 0, INFINITY, 4, 4});
    finds("projected along the edge", {6, 2, 2, 0}, band, 0, 0, {}, {above, 1, 2, 0, NAN, 4, 4});
    finds("the end's not into a whole one", {0, 4, 2, 5}, band, 2, 2,
          {{above, 0.75F, 1.5F, 2, 2, 2}}, {}, {above, 3, 4, 0.5F, 2, 3, 3});
    finds("the start's not into a whole one", {6, 5, 4, 2, 4, 2, 0}, band, 2, 2,
          {{above, 2, 3, 5, 5, 2}}, {above, 1, 3, 0, 2, 4, 4});
    finds("one sample has no crossing ahead of it", {6}, band, 0, 0, {},
          {above, 1, 0, 0, 0.5F, 4, 4}, {above, 1, 1, 0, 0.5F, 4, 4});
    finds("nor has one below the band", {-6}, band, 0, 0, {}, {below, 1, 0, 0.5F, 0.5F, 4, 4},
          {below, 1, 1, 0.5F, 0.5F, 4, 4});
}

} // namespace
} // namespace vialto::test
