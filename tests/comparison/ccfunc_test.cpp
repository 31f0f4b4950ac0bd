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

using Road = std::vector<float>;

constexpr float untouched = 55.5F;

Road continuous_road(float interval, float start) {
    Road road(2000);
    for (std::size_t i = 0; i < road.size(); ++i) {
        const float x = start + static_cast<float>(i) * interval;
        road[i] = 0.004F * std::sin(x) + 0.003F * std::sin(2.7F * x + 1.0F) +
                  0.002F * std::sin(0.31F * x * std::sqrt(x));
    }
    return road;
}

// A host's side of one comparison: the whole profiles, not filtered, without padding.
struct Comparison {
    Road reference, test;
    tProfAnalysis analysis{1,         2,         1,         -7,        0.0F,
                           1.0F,      untouched, untouched, untouched, untouched,
                           untouched, untouched, untouched};
    tProfinfo profiles[2];
    std::int32_t count = 0;
    Road final_cc, offset, reference_filtered, test_filtered;
    EventRecord event;

    explicit Comparison(Road reference_road = random_road(1200, 0.025, 1),
                        Road test_road = random_road(1100, 0.025, 2), float interval = 0.025F,
                        float test_interval = 0.025F)
        : reference(std::move(reference_road)),
          test(std::move(test_road)), profiles{whole(reference, interval),
                                               whole(test, test_interval)},
          reference_filtered(reference.size(), untouched), test_filtered(test.size(), untouched) {}

    static tProfinfo whole(const Road& road, float interval) {
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

} // namespace

TEST(ComparisonPlan, CountIsOddAndSaturates) {
    const TemporaryDirectory directory;
    struct Case {
        float offset_max;
        std::int32_t count;
    };
    for (const Case& c : {Case{0.0F, 1},
                          {1.0F, 81},
                          {0.0374F, 3},
                          {0.0376F, 5},
                          {-1.0F, -79},
                          {1.0e30F, 2147483647},
                          {-1.0e30F, -2147483647}}) {
        Comparison roads;
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
    const auto refusal = [](float interval, float test_interval, float offset_max) {
        Comparison roads({}, {}, interval, test_interval);
        roads.analysis.x_offset_max = offset_max;
        EXPECT_EQ(roads.plan(), vialto_failure);
        EXPECT_EQ(roads.count, 0);
        EXPECT_EQ(roads.analysis.x_normsampleinterval, 0.0F);
        return roads.event.summary();
    };
    const std::string start = "100 2 CC_CoeffArray: x_";
    const std::string no_interval = " profile is not a positive finite number";
    EXPECT_EQ(refusal(0.0F, 1.0F, 1.0F), start + "sampleinterval of the reference" + no_interval);
    EXPECT_EQ(refusal(1.0F, -FLT_MAX, 1.0F), start + "sampleinterval of the test" + no_interval);
    EXPECT_EQ(refusal(1.0F, 1.0F, NAN), start + "offset_max is not a finite number");
}

// The test profile starts `shift` metres behind the reference.
TEST(ProfileComparison, FindsTheShiftAcrossUnequalSteps) {
    const TemporaryDirectory directory;
    struct Case {
        float interval, test_interval;
        std::int32_t if_padding, if_upsampling;
        float shift, step; // m
    };
    const Case cases[] = {
        {0.025F, 0.025F, 2, 1, 0.25F, 0.025F}, {0.025F, 0.05F, 2, 1, -0.35F, 0.025F},
        {0.05F, 0.025F, 1, 1, 0.25F, 0.025F},  {0.03F, 0.04F, 1, 1, 0.32F, 0.01F},
        {0.05F, 0.02F, 2, 2, -0.45F, 0.05F},   {0.02F, 0.02F, 1, 2, 0.0F, 0.02F},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.interval << " and " << c.test_interval);
        Comparison roads(continuous_road(c.interval, 5.0F),
                         continuous_road(c.test_interval, 5.0F + c.shift), c.interval,
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
        EXPECT_EQ(roads.profiles[0].i_filt_leadout, c.if_padding == 2 ? 1998 : 1997);
    }
}

// Nor does the step in the record do more than label the offsets.
TEST(ProfileComparison, SweepsTheFilteredSectionsAndRatesTheRawOnes) {
    const TemporaryDirectory directory;
    Comparison roads;
    roads.profiles[0].i_raw_leadin = 100;
    roads.profiles[1].i_raw_leadout = 999;
    for (tProfinfo& info : roads.profiles) {
        info.tFilter.iMainFilterType = idx_filttyp_mvgavg;
        info.tFilter.iSubFilterType = idx_subfilttyp_lowpass;
        info.tFilter.iOutType = idx_filtouttyp_elevation;
        info.tFilter.xShortWavelength = 0.25F;
    }
    ASSERT_EQ(roads.plan(), vialto_success);
    roads.analysis.x_normsampleinterval = 0.5F;
    ASSERT_EQ(roads.compare(), vialto_success);
    EXPECT_TRUE(roads.event.untouched());
    EXPECT_EQ(roads.profiles[0].tFilter.iEndElemIdx, 0);

    Road reference = roads.reference_filtered;
    Road test = roads.test_filtered;
    reference.resize(static_cast<std::size_t>(roads.profiles[0].i_filt_leadout) + 1);
    test.resize(static_cast<std::size_t>(roads.profiles[1].i_filt_leadout) + 1);
    const LiteralSweep literal = literal_sweep(reference, test, 81);
    for (std::size_t k = 0; k < 81; ++k) {
        EXPECT_NEAR(roads.final_cc[k], literal.final_cc[k], 1e-4F);
        EXPECT_EQ(roads.offset[k], static_cast<float>(k) * 0.5F - 1.0F);
    }
    EXPECT_EQ(static_cast<std::size_t>(roads.analysis.iIndexMaxCorr), literal.best);

    const auto iri = [](int count, const float* section) {
        float index = 0.0F;
        ride_dlldrv(2, 1, idx_ridests_IRI, count, section, nullptr, 0.025F, &index, nullptr);
        return index;
    };
    const float reference_iri = iri(1100, roads.reference.data() + 100);
    const float test_iri = iri(1000, roads.test.data());
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

TEST(ProfileComparison, EmptySweepSucceeds) {
    const TemporaryDirectory directory;
    for (const std::int32_t count : {0, -79, INT32_MIN}) {
        Comparison roads;
        ASSERT_EQ(roads.plan(), vialto_success);
        roads.count = count;
        roads.analysis.if_outputfilt = 2;
        EXPECT_EQ(roads.compare(), vialto_success);
        EXPECT_EQ(roads.analysis.iIndexMaxCorr, 0);
        EXPECT_EQ(roads.analysis.x_opt_finalcc, 0.0F);
        EXPECT_GT(roads.analysis.x_ref_iri, 0.0F);
        EXPECT_EQ(roads.reference_filtered[0], untouched);
    }
}

TEST(ProfileComparison, LargestOffsetOnlyLabelsTheOffsets) {
    const TemporaryDirectory directory;
    Comparison roads;
    ASSERT_EQ(roads.plan(), vialto_success);
    ASSERT_EQ(roads.compare(), vialto_success);
    const std::int32_t best = roads.analysis.iIndexMaxCorr;
    const Road coefficients = roads.final_cc;
    for (const float offset_max : {INFINITY, -INFINITY, NAN}) {
        roads.analysis.x_offset_max = offset_max;
        EXPECT_EQ(roads.compare(), vialto_success);
        EXPECT_EQ(roads.analysis.iIndexMaxCorr, best);
        EXPECT_EQ(roads.final_cc, coefficients);
        if (std::isnan(offset_max)) {
            EXPECT_TRUE(std::isnan(roads.analysis.x_opt_offset));
        } else {
            EXPECT_EQ(roads.analysis.x_opt_offset, -offset_max);
        }
    }
}

TEST(ProfileComparison, FailuresLeaveMarksOrNothing) {
    const TemporaryDirectory directory;
    enum Left { nothing, marks, sweep };
    struct Case {
        std::function<void(Comparison&)> spoil;
        Left left;
        const char* event;
    };
    const Case cases[] = {
        {[](Comparison& c) { c.profiles[0].i_raw_leadin = -1; }, nothing,
         "100 2 ccfunc: i_raw_leadin of the reference profile lies before the first sample"},
        {[](Comparison& c) { c.profiles[1].i_raw_leadout = 1100; }, nothing,
         "100 2 ccfunc: i_raw_leadout of the test profile lies behind the last sample"},
        {[](Comparison& c) { c.analysis.x_normsampleinterval = 0.0F; }, nothing,
         "100 2 ccfunc: x_normsampleinterval is not a positive finite number"},
        {[](Comparison& c) { c.profiles[1].tFilter.iMainFilterType = 8; }, marks,
         "101 2 ccfunc: Illegal Main filter type"},
        {[](Comparison& c) { c.profiles[0].i_raw_leadout = -5; }, marks,
         "101 2 ccfunc: number of points is less than zero"},
        {[](Comparison& c) {
             c.analysis.if_upsampling = 2, c.profiles[0].x_sampleinterval = 1e-9F;
         },
         marks, "100 2 ccfunc: the resampled profile is too long"},
        {[](Comparison& c) { // 1 - 0.05 / 0.025 samples
             c.profiles[0].i_raw_leadout = -5;
             c.profiles[0].x_sampleinterval = 0.05F;
         },
         marks, "101 2 ccfunc: x_num_act should not be zero"},
        {[](Comparison& c) { c.profiles[1].tFilter.if250mmFilter = 0; }, sweep,
         "101 2 ccfunc: tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.event);
        Comparison roads;
        ASSERT_EQ(roads.plan(), vialto_success);
        c.spoil(roads);
        EXPECT_EQ(roads.compare(), vialto_failure);
        EXPECT_EQ(roads.event.summary(), c.event);
        if (c.left != sweep) {
            EXPECT_EQ(roads.final_cc.back(), c.left == marks ? -999.0F : untouched);
            EXPECT_EQ(roads.offset.back(), c.left == marks ? 999.0F : untouched);
        }
        EXPECT_EQ(roads.analysis.iIndexMaxCorr == -7, c.left != sweep);
        EXPECT_EQ(roads.reference_filtered[0] == untouched, c.left != sweep);
        EXPECT_EQ(roads.profiles[0].i_filt_leadin == -7, c.left == nothing);
        EXPECT_EQ(roads.analysis.x_opt_finalcc, untouched);
        EXPECT_EQ(roads.analysis.x_iri_diff, untouched);
    }
}

} // namespace vialto::test
