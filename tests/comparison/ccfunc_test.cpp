#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
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
struct Comparison {
    float dx = 0.025F, dx_test = 0.025F, shift = 0.25F, offset_max = 1.0F, step = 0.025F;
    std::int32_t if_padding = 2, if_upsampling = 1, first = 0, last = 1999, size = 2000, count = 81;
    std::int32_t main_filter = idx_filttyp_none, if250mmFilter = 1;
    std::string missing = "none"; // null are the pointers whose names end so
    Road reference = chirp(dx, 5.0F), test = chirp(dx_test, 5.0F + shift);
    Road filtered = Road(2000), test_filtered = filtered, final_cc{}, offset{};
    tFiltCon filter{main_filter, 2, 1, if250mmFilter, 0.0F, 0.0F, 0.2F, 0.0F, 0.0F, 0, 0};
    tProfinfo profiles[2]{{first, last, -7, -7, dx, filter}, {0, 1999, -7, -7, dx_test, filter}};
    tProfAnalysis analysis{missing != "Filt",
                           if_padding,
                           if_upsampling,
                           -7,
                           step,
                           offset_max,
                           55.5F,
                           0,
                           0,
                           0,
                           0,
                           0,
                           0};
    EventRecord event{};

    auto* given(const std::string& name, auto* p) const {
        return name.ends_with(missing) ? nullptr : p;
    }
    std::string outcome(std::int32_t code) const {
        return code == vialto_success && event.untouched() ? "" : event.summary();
    }
    std::string plan() {
        return outcome(CC_CoeffArray(given("iCroxCorrPoints", &count), given("analysis", &analysis),
                                     given("ptrProfinfo", profiles), event));
    }
    std::string compare() {
        offset = final_cc = Road(static_cast<std::size_t>(std::max(count, 0)));
        return outcome(ccfunc(2000, size, count, given("xDataArrayRef", &reference[0]),
                              given("xDataArrayTest", &test[0]), given("analysis", &analysis),
                              given("ptrProfinfo", profiles), given("xFinalCC", final_cc.data()),
                              given("xOffsetArray", offset.data()),
                              given("xDataArrayRefFilt", &filtered[0]),
                              given("xDataArrayTestFilt", &test_filtered[0]), event));
    }
    std::string rate() {
        return outcome(pcbia_dlldrv(given("xRunData", &reference[0]),
                                    given("xRefProfile", &test[0]), given("xPrecision", &dx),
                                    given("xBias", &step), given("iPrecisionClass", &first),
                                    given("iBiasClass", &last), event));
    }
    // The call whose name `text` begins with.
    std::string call(const std::string& text) {
        return text.starts_with("ccfunc") ? compare() : text.starts_with("CC") ? plan() : rate();
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
    EXPECT_EQ(directory.text_of("CC_CoeffArray.txt").rfind("Day - Month - Year =     ", 0), 0U);
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
        const float shift = roads.shift - static_cast<float>(roads.first) * roads.dx;
        EXPECT_NEAR(found.x_opt_offset, shift, 1e-5F);
        EXPECT_GT(found.x_opt_finalcc, 99.8F);
        EXPECT_EQ(found.x_opt_finalcc, found.x_opt_roughcc * found.x_opt_shapefactor);
        EXPECT_EQ(roads.final_cc[best], found.x_opt_finalcc);
        EXPECT_EQ(roads.offset[best], found.x_opt_offset);
        EXPECT_EQ(roads.filtered[0] == roads.reference[4], roads.first == 4);
    }
}

TEST(ProfileComparison, RecordLabelsTheOffsetsAndRatesTheRawSections) {
    const TemporaryDirectory directory;
    Comparison roads{.step = 0.5F, .first = 100, .last = 1099};
    for (const float offset_max : {NAN, INFINITY, 1.0F}) {
        roads.analysis.x_offset_max = offset_max;
        EXPECT_EQ(roads.compare(), "");
        EXPECT_EQ(std::isnan(roads.offset[3]), std::isnan(offset_max));
        EXPECT_TRUE(std::isnan(offset_max) || roads.offset[3] == 1.5F - offset_max);
    }
    float iri = 0.0F, test_iri = 0.0F;
    ride_dlldrv(2, 1, 1, 1000, &roads.reference[100], nullptr, 0.025F, &iri, nullptr);
    ride_dlldrv(2, 1, 1, 2000, &roads.test[0], nullptr, 0.025F, &test_iri, nullptr);
    EXPECT_EQ(roads.analysis.x_ref_iri, iri);
    EXPECT_EQ(roads.analysis.x_test_iri, test_iri);
    EXPECT_EQ(roads.analysis.x_iri_diff, (test_iri - iri) / iri * 100.0F);

    const std::string text = directory.text_of("ccfunc.txt");
    std::size_t position = 0;
    for (const char* label : {"Hour : Minute", "  main filter types             =", "Opt CC (%)",
                              "Opt shapefactor CC(%)", "Opt roughness CC(%)", "Opt Offset(m)",
                              "Reference IRI (m/m)", "Test IRI (m/m)", "Diff in IRI (%)",
                              "    No.     Offset     roughCC shapeCC FinalCC\n"}) {
        position = text.find(label, position);
        EXPECT_NE(position, std::string::npos) << label;
    }
}

TEST(ProfileComparison, EmptySweepSucceeds) {
    const TemporaryDirectory directory;
    for (const std::int32_t count : {0, -79, INT32_MIN}) {
        Comparison roads{.count = count, .missing = "Filt"};
        EXPECT_EQ(roads.compare(), "");
        EXPECT_EQ(roads.analysis.iIndexMaxCorr, 0);
        EXPECT_EQ(roads.analysis.x_opt_finalcc, 0.0F);
        EXPECT_GT(roads.analysis.x_ref_iri, 0.0F);
    }
}

TEST(ProfileComparison, RefusalNamesTheArgument) {
    const TemporaryDirectory directory;
    const std::string no_interval = " is not a positive finite number";
    for (auto& [text, roads] : std::vector<std::pair<std::string, Comparison>>{
             {"CC_CoeffArray: x_sampleinterval of the reference profile" + no_interval, {.dx = 0}},
             {"CC_CoeffArray: x_offset_max is not a finite number", {.offset_max = NAN}},
             {"ccfunc: x_sampleinterval of the test profile" + no_interval, {.dx_test = -1}},
             {"ccfunc: x_normsampleinterval" + no_interval, {.step = INFINITY}},
             {"ccfunc: i_raw_leadin of the reference profile lies before the first sample",
              {.first = -1}},
             {"ccfunc: i_raw_leadout of the reference profile lies behind the last sample",
              {.last = 2000}},
             {"ccfunc: iSizeDataArrayTest is too large for padding",
              {.if_padding = 1, .size = 715827884}}}) {
        EXPECT_EQ(roads.call(text), "100 2 " + text);
    }
    for (const std::string text :
         {"CC_CoeffArray: iCroxCorrPoints", "CC_CoeffArray: analysis", "CC_CoeffArray: ptrProfinfo",
          "ccfunc: xDataArrayRef", "ccfunc: xDataArrayTest", "ccfunc: analysis",
          "ccfunc: ptrProfinfo", "ccfunc: xFinalCC", "ccfunc: xOffsetArray",
          "ccfunc: xDataArrayRefFilt", "ccfunc: xDataArrayTestFilt", "pcbia_dlldrv: xRunData",
          "pcbia_dlldrv: xRefProfile", "pcbia_dlldrv: xPrecision", "pcbia_dlldrv: xBias",
          "pcbia_dlldrv: iPrecisionClass", "pcbia_dlldrv: iBiasClass"}) {
        Comparison roads{.missing = text.substr(text.find(' ') + 1)};
        EXPECT_EQ(roads.call(text), "100 2 " + text + " is a null pointer");
    }
}

TEST(ProfileComparison, FailureLeavesMarksOrTheSweep) {
    const TemporaryDirectory directory;
    for (auto& [event, roads] : std::vector<std::pair<std::string, Comparison>>{
             {"101 2 ccfunc: Illegal Main filter type", {.main_filter = 8}},
             {"101 2 ccfunc: number of points is less than zero", {.last = -5}},
             {"101 2 ccfunc: x_num_act should not be zero",
              {.dx = 0.05F, .last = -5}}, // 1 - 2 samples
             {"100 2 ccfunc: the resampled profile is too long",
              {.dx = 1e-9F, .if_upsampling = 2}}}) {
        EXPECT_EQ(roads.compare(), event);
        EXPECT_EQ(roads.final_cc, Road(81, -999.0F));
        EXPECT_EQ(roads.offset, Road(81, 999.0F));
        EXPECT_EQ(roads.analysis.iIndexMaxCorr, -7);
    }
    Comparison roads{.if250mmFilter = 0};
    EXPECT_EQ(roads.compare(),
              "101 2 ccfunc: tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-");
    EXPECT_EQ(roads.analysis.iIndexMaxCorr, 50); // 0.25 m
    EXPECT_EQ(roads.filtered[0], roads.reference[0]);
    EXPECT_EQ(roads.analysis.x_opt_finalcc, 55.5F);
}

} // namespace vialto::test
