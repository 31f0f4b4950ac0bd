#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/host.hpp"
#include "support/literal_sweep.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float untouched = 55.5F;

std::vector<float> continuous_road(std::size_t count, float interval, double start) {
    std::vector<float> road(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double x = start + static_cast<double>(i) * static_cast<double>(interval);
        road[i] = static_cast<float>(0.004 * std::sin(x) + 0.003 * std::sin(2.7 * x + 1.0) +
                                     0.002 * std::sin(0.31 * x * std::sqrt(x)));
    }
    return road;
}

// A host's side of one comparison: the whole profiles, not filtered, without padding.
struct Comparison {
    std::vector<float> reference, test;
    tProfAnalysis analysis{2,         2,         1,         -7,        0.0F,
                           1.0F,      untouched, untouched, untouched, untouched,
                           untouched, untouched, untouched};
    tProfinfo profiles[2];
    std::int32_t count = 0;
    std::vector<float> final_cc, offset, reference_filtered, test_filtered;
    EventRecord event;

    Comparison(std::vector<float> reference_road, float reference_interval,
               std::vector<float> test_road, float test_interval)
        : reference(std::move(reference_road)),
          test(std::move(test_road)), profiles{whole(reference, reference_interval),
                                               whole(test, test_interval)},
          reference_filtered(reference.size(), untouched), test_filtered(test.size(), untouched) {}

    static tProfinfo whole(const std::vector<float>& road, float interval) {
        const auto last = static_cast<std::int32_t>(road.size()) - 1;
        return {0, last, -7, -7, interval, {0, 0, 0, 1, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0, 0}};
    }

    std::int32_t plan() { return CC_CoeffArray(&count, &analysis, profiles, event); }

    std::int32_t compare() {
        final_cc.assign(static_cast<std::size_t>(std::max(count, 0)), untouched);
        offset = final_cc;
        return ccfunc(static_cast<std::int32_t>(reference.size()),
                      static_cast<std::int32_t>(test.size()), count, reference.data(), test.data(),
                      &analysis, profiles, final_cc.data(), offset.data(),
                      reference_filtered.data(), test_filtered.data(), event);
    }
};

Comparison two_roads() {
    return {random_road(1200, 0.025, 1), 0.025F, random_road(1100, 0.025, 2), 0.025F};
}

} // namespace

TEST(ComparisonPlan, CountIsOddAndSaturates) {
    const TemporaryDirectory directory;
    struct Case {
        float offset_max;
        std::int32_t count;
    };
    const Case cases[] = {{0.0F, 1},
                          {1.0F, 81},
                          {0.0374F, 3},
                          {0.0376F, 5},
                          {-1.0F, -79},
                          {1.0e30F, 2147483647},
                          {-1.0e30F, -2147483647}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.offset_max);
        Comparison roads = two_roads();
        roads.analysis.x_offset_max = c.offset_max;
        EXPECT_EQ(roads.plan(), vialto_success);
        EXPECT_EQ(roads.count, c.count);
        EXPECT_EQ(roads.analysis.x_normsampleinterval, 0.025F);
        EXPECT_TRUE(roads.event.untouched());
    }
    EXPECT_EQ(directory.text_of("CC_CoeffArray.txt").rfind("Day - Month - Year =     ", 0), 0U);
}

TEST(ComparisonPlan, RefusesWhatNoStepCanComeFrom) {
    const TemporaryDirectory directory;
    struct Case {
        std::function<void(Comparison&)> spoil;
        const char* problem;
    };
    const Case cases[] = {
        {[](Comparison& c) { c.profiles[0].x_sampleinterval = 0.0F; },
         "x_sampleinterval of the reference profile is not a positive finite number"},
        {[](Comparison& c) { c.profiles[1].x_sampleinterval = -FLT_MAX; },
         "x_sampleinterval of the test profile is not a positive finite number"},
        {[](Comparison& c) { c.analysis.x_offset_max = std::nanf(""); },
         "x_offset_max is not a finite number"},
    };
    for (const Case& c : cases) {
        Comparison roads = two_roads();
        c.spoil(roads);
        EXPECT_EQ(roads.plan(), vialto_failure);
        EXPECT_EQ(roads.event.summary(), std::string("100 2 CC_CoeffArray: ") + c.problem);
        EXPECT_EQ(roads.count, 0);
        EXPECT_EQ(roads.analysis.x_normsampleinterval, 0.0F);
    }
}

// The test profile starts `shift` metres behind the reference.
TEST(ProfileComparison, FindsTheShiftAcrossUnequalSteps) {
    const TemporaryDirectory directory;
    struct Case {
        float reference_interval, test_interval;
        std::int32_t if_padding, if_upsampling;
        float shift, step; // m
    };
    const Case cases[] = {
        {0.025F, 0.025F, 2, 1, 0.25F, 0.025F}, {0.025F, 0.05F, 2, 1, -0.35F, 0.025F},
        {0.05F, 0.025F, 1, 1, 0.25F, 0.025F},  {0.03F, 0.04F, 1, 1, 0.32F, 0.01F},
        {0.05F, 0.02F, 2, 2, -0.45F, 0.05F},   {0.02F, 0.02F, 1, 2, 0.0F, 0.02F},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.reference_interval << " and " << c.test_interval);
        Comparison roads(continuous_road(2000, c.reference_interval, 5.0), c.reference_interval,
                         continuous_road(2000, c.test_interval, 5.0 + static_cast<double>(c.shift)),
                         c.test_interval);
        roads.analysis.if_padding = c.if_padding;
        roads.analysis.if_upsampling = c.if_upsampling;
        ASSERT_EQ(roads.plan(), vialto_success);
        ASSERT_EQ(roads.compare(), vialto_success);
        const tProfAnalysis& found = roads.analysis;
        EXPECT_FLOAT_EQ(found.x_normsampleinterval, c.step);
        EXPECT_NEAR(found.x_opt_offset, c.shift, 1e-5F);
        EXPECT_GT(found.x_opt_finalcc, 99.9F);
        EXPECT_EQ(found.x_opt_finalcc, found.x_opt_roughcc * found.x_opt_shapefactor);
        const auto best = static_cast<std::size_t>(found.iIndexMaxCorr);
        EXPECT_EQ(roads.final_cc[best], found.x_opt_finalcc);
        EXPECT_EQ(roads.offset[best], found.x_opt_offset);
        const std::int32_t lost = c.if_padding == 2 ? 1 : 2;
        EXPECT_EQ(roads.profiles[0].i_filt_leadout + 1, 2000 - lost);
        EXPECT_EQ(roads.reference_filtered[0], untouched);
    }
}

TEST(ProfileComparison, SweepsTheFilteredSectionsAndRatesTheRawOnes) {
    const TemporaryDirectory directory;
    Comparison roads = two_roads();
    roads.analysis.if_outputfilt = 1;
    roads.profiles[0].i_raw_leadin = 100;
    roads.profiles[1].i_raw_leadout = 999;
    for (tProfinfo& info : roads.profiles) {
        info.tFilter.iMainFilterType = idx_filttyp_mvgavg;
        info.tFilter.iSubFilterType = idx_subfilttyp_lowpass;
        info.tFilter.iOutType = idx_filtouttyp_elevation;
        info.tFilter.xShortWavelength = 0.25F;
    }
    const tFiltCon settings = roads.profiles[0].tFilter;
    ASSERT_EQ(roads.plan(), vialto_success);
    ASSERT_EQ(roads.compare(), vialto_success);
    EXPECT_TRUE(roads.event.untouched());
    EXPECT_EQ(roads.profiles[0].tFilter.iEndElemIdx, settings.iEndElemIdx);

    const auto trimmed = [](const std::vector<float>& filtered, const tProfinfo& info) {
        return std::vector<float>(filtered.begin(), filtered.begin() + info.i_filt_leadout + 1);
    };
    const LiteralSweep literal = literal_sweep(trimmed(roads.reference_filtered, roads.profiles[0]),
                                               trimmed(roads.test_filtered, roads.profiles[1]), 81);
    for (std::size_t k = 0; k < 81; ++k) {
        EXPECT_NEAR(roads.final_cc[k], literal.final_cc[k], 1e-4F);
        EXPECT_EQ(roads.offset[k], static_cast<float>(k) * 0.025F - 1.0F);
    }
    EXPECT_EQ(static_cast<std::size_t>(roads.analysis.iIndexMaxCorr), literal.best);

    float reference_iri = 0.0F;
    float test_iri = 0.0F;
    ride_dlldrv(2, 1, idx_ridests_IRI, 1100, roads.reference.data() + 100, nullptr, 0.025F,
                &reference_iri, nullptr);
    ride_dlldrv(2, 1, idx_ridests_IRI, 1000, roads.test.data(), nullptr, 0.025F, &test_iri,
                nullptr);
    EXPECT_EQ(roads.analysis.x_ref_iri, reference_iri);
    EXPECT_EQ(roads.analysis.x_test_iri, test_iri);
    EXPECT_EQ(roads.analysis.x_iri_diff, (test_iri - reference_iri) / reference_iri * 100.0F);

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

TEST(ProfileComparison, StepInTheRecordOnlyLabelsTheOffsets) {
    const TemporaryDirectory directory;
    Comparison roads = two_roads();
    ASSERT_EQ(roads.plan(), vialto_success);
    ASSERT_EQ(roads.compare(), vialto_success);
    const std::vector<float> coefficients = roads.final_cc;
    roads.analysis.x_normsampleinterval = 0.5F;
    ASSERT_EQ(roads.compare(), vialto_success);
    EXPECT_EQ(roads.final_cc, coefficients);
    EXPECT_EQ(roads.offset[80], 39.0F);
}

TEST(ProfileComparison, EmptySweepSucceeds) {
    const TemporaryDirectory directory;
    for (const std::int32_t count : {0, -79, INT32_MIN}) {
        Comparison roads = two_roads();
        ASSERT_EQ(roads.plan(), vialto_success);
        roads.count = count;
        EXPECT_EQ(roads.compare(), vialto_success);
        EXPECT_EQ(roads.analysis.iIndexMaxCorr, 0);
        EXPECT_EQ(roads.analysis.x_opt_finalcc, 0.0F);
        EXPECT_GT(roads.analysis.x_ref_iri, 0.0F);
    }
}

TEST(ProfileComparison, FailuresLeaveMarksOrNothing) {
    const TemporaryDirectory directory;
    enum Left { nothing, marks, sweep };
    struct Case {
        std::function<void(Comparison&)> spoil;
        const char* event;
        Left left;
    };
    const Case cases[] = {
        {[](Comparison& c) { c.profiles[0].i_raw_leadin = -1; },
         "100 2 ccfunc: i_raw_leadin of the reference profile lies before the first sample",
         nothing},
        {[](Comparison& c) { c.profiles[1].i_raw_leadout = 1100; },
         "100 2 ccfunc: i_raw_leadout of the test profile lies behind the last sample", nothing},
        {[](Comparison& c) { c.analysis.x_normsampleinterval = 0.0F; },
         "100 2 ccfunc: x_normsampleinterval is not a positive finite number", nothing},
        {[](Comparison& c) { c.analysis.x_offset_max = INFINITY; },
         "100 2 ccfunc: x_offset_max is not a finite number", nothing},
        {[](Comparison& c) { c.profiles[1].tFilter.iMainFilterType = 8; },
         "101 2 ccfunc: Illegal Main filter type", marks},
        {[](Comparison& c) { c.profiles[0].i_raw_leadout = -5; },
         "101 2 ccfunc: number of points is less than zero", marks},
        {[](Comparison& c) { c.profiles[1].i_raw_leadout = -5; },
         "101 2 ccfunc: x_num_act should not be zero", marks},
        {[](Comparison& c) { // 1 - 0.05 / 0.025 samples
             c.profiles[0].i_raw_leadout = -5;
             c.profiles[0].x_sampleinterval = 0.05F;
         },
         "101 2 ccfunc: x_num_act should not be zero", marks},
        {[](Comparison& c) { // one sample
             c.analysis.if_upsampling = 2;
             c.profiles[1].i_raw_leadout = -5;
             c.profiles[1].x_sampleinterval = 0.02F;
             c.count = 3;
         },
         "101 2 ccfunc: number of points is less than zero", marks},
        {[](Comparison& c) {
             c.analysis.if_upsampling = 2;
             c.profiles[0].x_sampleinterval = 1.0e-9F;
         },
         "100 2 ccfunc: the resampled profile is too long", marks},
        {[](Comparison& c) { c.reference.assign(1200, 0.0F), c.test.assign(1100, 1.0F); },
         "101 2 ccfunc: max(x_rms_test, x_rms_base) is close to zero", marks},
        {[](Comparison& c) { c.profiles[1].tFilter.if250mmFilter = 0; },
         "101 2 ccfunc: tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-", sweep},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.event);
        Comparison roads = two_roads();
        roads.analysis.if_outputfilt = 1;
        ASSERT_EQ(roads.plan(), vialto_success);
        c.spoil(roads);
        EXPECT_EQ(roads.compare(), vialto_failure);
        EXPECT_EQ(roads.event.summary(), c.event);
        EXPECT_EQ(roads.final_cc.back() == untouched, c.left == nothing);
        EXPECT_EQ(roads.final_cc.back() == -999.0F, c.left == marks);
        EXPECT_EQ(roads.offset.back() == 999.0F, c.left == marks);
        EXPECT_EQ(roads.analysis.iIndexMaxCorr == -7, c.left != sweep);
        EXPECT_EQ(roads.reference_filtered[0] == untouched, c.left != sweep);
        EXPECT_EQ(roads.profiles[0].i_filt_leadin == -7, c.left == nothing);
        EXPECT_EQ(roads.analysis.x_opt_finalcc, untouched);
        EXPECT_EQ(roads.analysis.x_iri_diff, untouched);
    }
}

} // namespace vialto::test
