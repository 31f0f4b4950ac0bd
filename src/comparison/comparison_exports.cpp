// The exported comparison analyses; their contracts stand in vialto/vialto.h.
#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "comparison/comparison.hpp"
#include "comparison/comparison_log.hpp"
#include "comparison/preparation.hpp"
#include "comparison/repeatability.hpp"
#include "frame/analysis_frame.hpp"
#include "frame/diagnostic_headers.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

// What the refusal of a call names.
struct ProfileNames {
    std::string_view size;
    std::string_view interval;
    std::string_view first_sample;
    std::string_view last_sample;
};

constexpr ProfileNames reference_names{
    "iSizeDataArrayRef", "x_sampleinterval of the reference profile",
    "i_raw_leadin of the reference profile", "i_raw_leadout of the reference profile"};
constexpr ProfileNames test_names{"iSizeDataArrayTest", "x_sampleinterval of the test profile",
                                  "i_raw_leadin of the test profile",
                                  "i_raw_leadout of the test profile"};

void check_profile(ArgumentCheck& check, const ProfileNames& names, const tProfinfo& info,
                   std::int32_t size, std::int32_t if_padding) {
    check.sample_interval(names.interval, info.x_sampleinterval);
    if (info.i_raw_leadin < 0) {
        check.refuse(names.first_sample, " lies before the first sample");
    }
    if (info.i_raw_leadout >= std::max(size, 0)) {
        check.refuse(names.last_sample, " lies behind the last sample");
    }
    if (if_padding != filter_unpadded && size > largest_padded_profile) {
        check.refuse(names.size, " is too large for padding");
    }
}

} // namespace

int32_t VIALTO_CALL CC_CoeffArray(int32_t* iCroxCorrPoints, tProfAnalysis* analysis,
                                  const tProfinfo* ptrProfinfo, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        print_datetime(text);
        if (analysis != nullptr) {
            text.record("if_upsampling        :", analysis->if_upsampling);
            text.record("x_offset_max         :", analysis->x_offset_max);
        }
        if (ptrProfinfo != nullptr) {
            text.record("x_sampleinterval     :", ptrProfinfo[0].x_sampleinterval,
                        ptrProfinfo[1].x_sampleinterval);
        }
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.address("iCroxCorrPoints", iCroxCorrPoints);
        check.address("analysis", analysis);
        check.address("ptrProfinfo", ptrProfinfo);
        if (check.refused()) {
            return;
        }
        check.sample_interval(reference_names.interval, ptrProfinfo[0].x_sampleinterval);
        if (analysis->if_upsampling != step_of_reference) {
            check.sample_interval(test_names.interval, ptrProfinfo[1].x_sampleinterval);
        }
        if (!std::isfinite(analysis->x_offset_max)) {
            check.refuse("x_offset_max", " is not a finite number");
        }
    };
    const auto drive = [&] {
        return cc_coefarr(*iCroxCorrPoints, *analysis, ptrProfinfo[0], ptrProfinfo[1]);
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the cc_coefarr call");
        text.record("iCroxCorrPoints      :", *iCroxCorrPoints);
        text.record("x_normsampleinterval :", analysis->x_normsampleinterval);
    };
    return run_export({.name = "CC_CoeffArray"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL ccfunc(int32_t iSizeDataArrayRef, int32_t iSizeDataArrayTest,
                           int32_t iCroxCorrPoints, const float* xDataArrayRef,
                           const float* xDataArrayTest, tProfAnalysis* analysis,
                           tProfinfo* ptrProfinfo, float* xFinalCC, float* xOffsetArray,
                           float* xDataArrayRefFilt, float* xDataArrayTestFilt, tEvent* event) {
    std::vector<float> roughness;
    std::vector<float> shape;
    const auto sweep = [&]() -> SweepArrays {
        return {.final_cc = host_array(xFinalCC, iCroxCorrPoints),
                .roughness = roughness,
                .shape = shape,
                .offset = host_array(xOffsetArray, iCroxCorrPoints)};
    };
    const auto log_scalars = [&](DiagnosticText& text) {
        print_datetime(text);
        text.record("iSizeDataArrayRef    :", iSizeDataArrayRef);
        text.record("iSizeDataArrayTest   :", iSizeDataArrayTest);
        text.record("iCroxCorrPoints      :", iCroxCorrPoints);
        log_comparison_inputs(text, analysis, ptrProfinfo);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.array("xDataArrayRef", xDataArrayRef, iSizeDataArrayRef);
        check.array("xDataArrayTest", xDataArrayTest, iSizeDataArrayTest);
        check.address("analysis", analysis);
        check.address("ptrProfinfo", ptrProfinfo);
        check.array("xFinalCC", xFinalCC, iCroxCorrPoints);
        check.array("xOffsetArray", xOffsetArray, iCroxCorrPoints);
        if (check.refused()) {
            return;
        }
        if (analysis->if_outputfilt == vialto_yes) {
            check.array("xDataArrayRefFilt", xDataArrayRefFilt, iSizeDataArrayRef);
            check.array("xDataArrayTestFilt", xDataArrayTestFilt, iSizeDataArrayTest);
        }
        check_profile(check, reference_names, ptrProfinfo[0], iSizeDataArrayRef,
                      analysis->if_padding);
        check_profile(check, test_names, ptrProfinfo[1], iSizeDataArrayTest, analysis->if_padding);
    };
    const auto drive = [&] {
        roughness.resize(host_array(xFinalCC, iCroxCorrPoints).size());
        shape.resize(roughness.size());
        return compare_profiles({host_array(xDataArrayRef, iSizeDataArrayRef), ptrProfinfo[0],
                                 host_array(xDataArrayRefFilt, iSizeDataArrayRef)},
                                {host_array(xDataArrayTest, iSizeDataArrayTest), ptrProfinfo[1],
                                 host_array(xDataArrayTestFilt, iSizeDataArrayTest)},
                                *analysis, sweep());
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the cc_cal call");
        log_comparison_results(text, *analysis, sweep());
    };
    return run_export({.name = "ccfunc", .failed_routine = FailedRoutine::export_alone}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL pcbia_dlldrv(const float* xRunData, const float* xRefProfile, float* xPrecision,
                                 float* xBias, int32_t* iPrecisionClass, int32_t* iBiasClass,
                                 tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("iNumRuns       :", repeatability_runs);
        text.record("iSizeDataArray :", repeatability_points);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.address("xRunData", xRunData);
        check.address("xRefProfile", xRefProfile);
        check.address("xPrecision", xPrecision);
        check.address("xBias", xBias);
        check.address("iPrecisionClass", iPrecisionClass);
        check.address("iBiasClass", iBiasClass);
    };
    const auto drive = [&] {
        Repeatability result;
        const ReturnCode code =
            pcbia(repeatability_runs, repeatability_points,
                  host_array(xRunData, repeatability_runs * repeatability_points),
                  host_array(xRefProfile, repeatability_points), result);
        *xPrecision = result.xPrecision;
        *xBias = result.xBias;
        *iPrecisionClass = result.iPrecisionClass;
        *iBiasClass = result.iBiasClass;
        return code;
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the pcbia call");
        text.record("xPrecision      :", *xPrecision);
        text.record("xBias           :", *xBias);
        text.record("iPrecisionClass :", *iPrecisionClass);
        text.record("iBiasClass      :", *iBiasClass);
    };
    return run_export({.name = "pcbia_dlldrv"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}
