#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support/host.hpp"
#include "support/roads.hpp"
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

    std::string outcome(std::int32_t code) const {
        return code == vialto_success && event.untouched() ? "" : event.summary();
    }
    std::string plan() { return outcome(CC_CoeffArray(&count, &analysis, profiles, event)); }
    std::string compare() {
        offset = final_cc = Road(static_cast<std::size_t>(std::max(count, 0)));
        return outcome(ccfunc(2000, size, count, reference.data(), test.data(), &analysis, profiles,
                              final_cc.data(), offset.data(), filtered.data(), test_filtered.data(),
                              event));
    }
};

} // namespace

TEST(ComparisonPlan, CountIsOddAndSaturates) {
    const TemporaryDirectory directory;
    std::vector<std::int32_t> counts;
    for (const float offset_max : {0.0F, 1.0F, 0.0374F, 0.0376F, -1.0F, 1.0e30F, -1.0e30F}) {
        Comparison roads{.offset_max = offset_max};
        EXPECT_EQ(roads.plan(), "");
        counts.push_back(roads.count);
    }
    EXPECT_EQ(counts, (std::vector{1, 81, 3, 5, -79, 2147483647, -2147483647}));
    // The step is the reference profile's, whatever the other's is.
    EXPECT_EQ((Comparison{.dx_test = NAN, .if_upsampling = 2}.plan()), "");
}

TEST(ProfileComparison, FindsTheShiftOfTheSectionsAcrossUnequalSteps) {
    const TemporaryDirectory directory;
    for (Comparison roads :
         {Comparison{.dx_test = 0.05F, .shift = -0.35F, .first = 4, .last = 1900},
          Comparison{.dx = 0.05F, .if_padding = 1, .main_filter = idx_filttyp_mvgavg},
          Comparison{.dx = 0.03F, .dx_test = 0.04F, .shift = 0.32F, .if_padding = 1},
          Comparison{.dx = 0.05F, .dx_test = 0.02F, .shift = -0.45F, .if_upsampling = 2}}) {
        EXPECT_EQ(roads.plan(), "");
        EXPECT_EQ(roads.compare(), "");
        const tProfAnalysis& found = roads.analysis;
        const auto best = static_cast<std::size_t>(found.iIndexMaxCorr);
        EXPECT_NEAR(found.x_opt_offset, roads.shift - (roads.first == 4 ? 0.1F : 0.0F), 1e-5F);
        EXPECT_GT(found.x_opt_roughcc, 99.8F);
        EXPECT_EQ(roads.final_cc[best], found.x_opt_roughcc * found.x_opt_shapefactor);
        EXPECT_EQ(roads.final_cc[best], found.x_opt_finalcc);
        EXPECT_EQ(roads.filtered[0] == roads.reference[4], roads.first == 4);
    }
}

TEST(ProfileComparison, RecordLabelsTheOffsetsAndRatesTheRawSections) {
    const TemporaryDirectory directory;
    Comparison roads{.step = 0.5F, .first = 4, .last = 1003};
    EXPECT_EQ(roads.compare(), "");
    EXPECT_EQ(roads.analysis.x_opt_offset, 22.0F); // position 46: 0.15 m at 25 mm
    for (const float step : {0.0F, -0.5F, NAN, INFINITY}) {
        Comparison same{.step = step, .first = 4, .last = 1003};
        EXPECT_EQ(same.compare(), "");
        EXPECT_EQ(same.analysis.iIndexMaxCorr, 46);
    }
    float iri = 0.0F, test_iri = 0.0F;
    ride_dlldrv(2, 1, 1, 1000, &roads.reference[4], nullptr, 0.025F, &iri, nullptr);
    ride_dlldrv(2, 1, 1, 2000, &roads.test[0], nullptr, 0.025F, &test_iri, nullptr);
    const tProfAnalysis& found = roads.analysis;
    EXPECT_EQ((Road{found.x_ref_iri, found.x_test_iri, found.x_iri_diff}),
              (Road{iri, test_iri, (test_iri - iri) / iri * 100.0F}));

    std::istringstream text(directory.text_of("ccfunc.txt"));
    std::string labels;
    for (std::string row; std::getline(text, row);) {
        const std::size_t colon = row.find(':');
        const std::size_t end = row.find_last_not_of(' ', colon - 1);
        labels += colon < row.size() ? row.substr(0, end + 1) + "|" : row + "\n";
    }
    EXPECT_TRUE(
        labels.find(" Opt CC (%)| Opt shapefactor CC(%)| Opt roughness CC(%)| Opt Offset(m)|"
                    " Reference IRI (m/m)| Test IRI (m/m)| Diff in IRI (%)|"
                    "     No.     Offset     roughCC shapeCC FinalCC\n") < labels.size());
}

TEST(ProfileComparison, EmptySweepSucceeds) {
    const TemporaryDirectory directory;
    Comparison roads{.offset_max = NAN, .count = INT32_MIN, .if_outputfilt = 0, .filtered = {}};
    EXPECT_EQ(roads.compare(), "");
    EXPECT_TRUE(roads.analysis.iIndexMaxCorr == 0 && roads.analysis.x_opt_finalcc == 0.0F);
}

TEST(ProfileComparison, RefusalNamesTheArgument) {
    const TemporaryDirectory directory;
    const std::string no_interval = " is not a positive finite number";
    for (auto& [text, roads] : std::vector<std::pair<std::string, Comparison>>{
             {"CC_CoeffArray: x_sampleinterval of the reference profile" + no_interval, {.dx = 0}},
             {"CC_CoeffArray: x_offset_max is not a finite number", {.offset_max = NAN}},
             {"ccfunc: xDataArrayTestFilt is a null pointer", {.test_filtered = {}}},
             {"ccfunc: i_raw_leadin of the reference profile lies before the first sample",
              {.first = -1}},
             {"ccfunc: i_raw_leadout of the reference profile lies behind the last sample",
              {.last = 2000}},
             {"ccfunc: iSizeDataArrayTest is too large for padding",
              {.if_padding = 1, .size = 715827884}}}) {
        EXPECT_EQ(text.starts_with("ccfunc") ? roads.compare() : roads.plan(), "100 2 " + text);
    }
}

TEST(ProfileComparison, FailureLeavesMarksOrTheSweep) {
    const TemporaryDirectory directory;
    // The event, the request, a filtered sample.
    for (auto& [event, roads, filtered] : std::vector<std::tuple<std::string, Comparison, float>>{
             {"101 2 ccfunc: Illegal Main filter type", {.main_filter = 8}, 7.0F},
             {"101 2 ccfunc: x_num_act should not be zero", {.dx = 0.05F, .last = -5}, 0.0F},
             {"101 2 ccfunc: x_num_act should not be zero",
              {.count = 4001},
              chirp(0.025F, 5.0F)[9]},
             {"100 2 ccfunc: the resampled profile is too long",
              {.dx = 1e-7F, .dx_test = 1e5F, .if_upsampling = 2},
              chirp(1e-7F, 5.0F)[9]}}) {
        EXPECT_EQ(roads.compare(), event);
        EXPECT_EQ(roads.filtered[9], filtered);
        EXPECT_EQ(roads.final_cc, Road(roads.final_cc.size(), -999.0F));
        EXPECT_EQ(roads.offset, Road(roads.offset.size(), 999.0F));
        EXPECT_EQ(roads.analysis.iIndexMaxCorr, -7);
    }
    Comparison roads{.if250mmFilter = 0};
    EXPECT_EQ(roads.compare(),
              "101 2 ccfunc: tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-");
    EXPECT_EQ(roads.analysis.iIndexMaxCorr, 50); // 0.25 m
    EXPECT_EQ(roads.analysis.x_opt_finalcc, 55.5F);
}

} // namespace vialto::test
