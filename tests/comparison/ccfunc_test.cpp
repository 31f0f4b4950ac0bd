#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/cases.hpp"
#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

Road chirp(float interval, float start) {
    Road road(2000);
    for (std::size_t i = 0; i < road.size(); ++i) {
        const float x = start + static_cast<float>(i) * interval;
        road[i] = 0.01F * std::sin(0.3F * x * std::sqrt(x));
    }
    return road;
}

// A host's side of one comparison: the test profile starts `shift` metres behind the reference.
// The pointers to empty arrays are null.
struct Comparison {
    float dx = 0.025F, dx_test = 0.025F, shift = 0.25F, offset_max = 1.0F, step = 0.025F;
    std::int32_t if_padding = 2, if_upsampling = 1, first = 0, last = 1999, size = 2000, count = 81;
    std::int32_t main_filter = idx_filttyp_none, if250mmFilter = 1, if_outputfilt = 1;
    Road reference = chirp(dx, 5.0F), test = chirp(dx_test, 5.0F + shift);
    Road filtered = Road(2000, 7.0F), test_filtered = filtered, final_cc{}, offset{};
    tFiltCon filter{main_filter, 2, 1, if250mmFilter, 0.0F, 0.0F, 0.2F, 0.0F, 0.0F, 0, 0};
    tProfinfo profiles[2]{{first, last, -7, -7, dx, filter}, {0, 1999, -7, -7, dx_test, filter}};
    tProfAnalysis analysis{
        if_outputfilt, if_padding, if_upsampling, -7, step, offset_max, 55.5F, 0, 0, 0, 0, 0, 0};
    EventRecord event{};

    // Each gives the event of a failure, or nothing.
    std::string plan() { return event.outcome(CC_CoeffArray(&count, &analysis, profiles, event)); }
    std::string compare() {
        offset = final_cc = Road(static_cast<std::size_t>(std::max(count, 0)));
        return event.outcome(ccfunc(2000, size, count, reference.data(), test.data(), &analysis,
                                    profiles, final_cc.data(), offset.data(), filtered.data(),
                                    test_filtered.data(), event));
    }
};

TEST(ComparisonPlan, CountIsOddAndSaturates) {
    const TemporaryDirectory directory;
    const std::pair<float, std::int32_t> cases[] = {
        {0.0F, 1},    {1.0F, 81},           {0.0374F, 3},          {0.0376F, 5},
        {-1.0F, -79}, {1.0e30F, INT32_MAX}, {-1.0e30F, -INT32_MAX}};
    for (const auto& [offset_max, count] : cases) {
        Comparison roads{.offset_max = offset_max};
        EXPECT_EQ(roads.plan(), "");
        EXPECT_EQ(roads.count, count) << offset_max;
    }
    // The step is the reference profile's, whatever the other's is.
    EXPECT_EQ((Comparison{.dx_test = NAN, .if_upsampling = 2}.plan()), "");
}

TEST(ProfileComparison, FindsTheShiftOfTheSectionsAcrossUnequalSteps) {
    const TemporaryDirectory directory;
    const auto finds = [](const Claim& claim, Comparison roads, float shift) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        EXPECT_EQ(roads.plan(), "");
        EXPECT_EQ(roads.compare(), "");
        const tProfAnalysis& found = roads.analysis;
        const auto best = static_cast<std::size_t>(found.iIndexMaxCorr);
        EXPECT_NEAR(found.x_opt_offset, shift, 1e-5F);
        EXPECT_GT(found.x_opt_roughcc, 99.8F);
        EXPECT_EQ(roads.final_cc[best], found.x_opt_roughcc * found.x_opt_shapefactor);
        EXPECT_EQ(roads.final_cc[best], found.x_opt_finalcc);
    };
    finds("a section that begins 0.1 m behind the profile",
          {.dx_test = 0.05F, .shift = -0.35F, .first = 4, .last = 1900}, -0.45F);
    finds("averaged and padded", {.dx = 0.05F, .if_padding = 1, .main_filter = idx_filttyp_mvgavg},
          0.25F);
    finds("30 mm and 40 mm brought to 10 mm",
          {.dx = 0.03F, .dx_test = 0.04F, .shift = 0.32F, .if_padding = 1}, 0.32F);
    finds("at the step of the reference profile",
          {.dx = 0.05F, .dx_test = 0.02F, .shift = -0.45F, .if_upsampling = 2}, -0.45F);
}

TEST(ProfileComparison, RecordLabelsTheOffsetsAndRatesTheRawSections) {
    const TemporaryDirectory directory;
    for (const float step : {0.5F, 0.0F, -0.5F, NAN, INFINITY}) {
        Comparison same{.step = step, .first = 4, .last = 1003};
        EXPECT_EQ(same.compare(), "");
        EXPECT_EQ(same.analysis.iIndexMaxCorr, 46) << step; // 0.15 m at 25 mm
    }
    Comparison roads{.step = 0.5F, .first = 4, .last = 1003};
    EXPECT_EQ(roads.compare(), "");
    EXPECT_EQ(roads.analysis.x_opt_offset, 22.0F);
    EXPECT_EQ(roads.filtered[0], roads.reference[4]);
    float iri = 0.0F, test_iri = 0.0F;
    ride_dlldrv(2, 1, 1, 1000, &roads.reference[4], nullptr, 0.025F, &iri, nullptr);
    ride_dlldrv(2, 1, 1, 2000, &roads.test[0], nullptr, 0.025F, &test_iri, nullptr);
    EXPECT_EQ(roads.analysis.x_ref_iri, iri);
    EXPECT_EQ(roads.analysis.x_test_iri, test_iri);
    EXPECT_EQ(roads.analysis.x_iri_diff, (test_iri - iri) / iri * 100.0F);
}

TEST(ProfileComparison, RefusalNamesTheArgument) {
    const TemporaryDirectory directory;
    EXPECT_EQ((Comparison{.offset_max = NAN}.plan()),
              "100 2 CC_CoeffArray: x_offset_max is not a finite number");
    const std::string refused = "100 2 ccfunc: ";
    EXPECT_EQ((Comparison{.first = -1}.compare()),
              refused + "i_raw_leadin of the reference profile lies before the first sample");
    EXPECT_EQ((Comparison{.last = 2000}.compare()),
              refused + "i_raw_leadout of the reference profile lies behind the last sample");
    EXPECT_EQ((Comparison{.if_padding = 1, .size = 715827884}.compare()),
              refused + "iSizeDataArrayTest is too large for padding");
}

TEST(ProfileComparison, FailureLeavesMarksOrTheSweep) {
    const TemporaryDirectory directory;
    const auto fails = [](const Claim& claim, Comparison roads, const std::string& event,
                          float filtered) {
        const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
        EXPECT_EQ(roads.compare(), event);
        EXPECT_EQ(roads.filtered[9], filtered);
        EXPECT_TRUE(same(roads.final_cc, Road(roads.final_cc.size(), -999.0F)));
        EXPECT_TRUE(same(roads.offset, Road(roads.offset.size(), 999.0F)));
        EXPECT_EQ(roads.analysis.iIndexMaxCorr, -7);
    };
    const std::string no_overlap = "101 2 ccfunc: x_num_act should not be zero";
    fails("no filter", {.main_filter = -1}, "101 2 ccfunc: Illegal Main filter type", 7.0F);
    fails("an empty section", {.dx = 0.05F, .last = -5}, no_overlap, 0.0F);
    fails("offsets beyond the roads", {.count = 4001}, no_overlap, chirp(0.025F, 5.0F)[9]);
    fails("too fine a step", {.dx = 1e-7F, .dx_test = 1e5F, .if_upsampling = 2},
          "100 2 ccfunc: the resampled profile is too long", chirp(1e-7F, 5.0F)[9]);
    Comparison roads{.if250mmFilter = 0};
    EXPECT_EQ(roads.compare(),
              "101 2 ccfunc: tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-");
    EXPECT_EQ(roads.analysis.iIndexMaxCorr, 50); // 0.25 m
    EXPECT_EQ(roads.analysis.x_opt_finalcc, 55.5F);
}

} // namespace
} // namespace vialto::test
