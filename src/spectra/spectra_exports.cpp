// The exported analyses of the spectrum and the straightedge; their contracts stand in
// vialto/vialto.h.
#include <algorithm>
#include <cstdint>

#include "frame/analysis_frame.hpp"
#include "spectra/psd_drv.hpp"
#include "spectra/rolling_straightedge.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

// The elements of the whole profile that belong to a stretch of N points from iBeginElemIdx on:
// none behind iEndElemIdx is read.
std::int32_t held_points(std::int32_t iBeginElemIdx, std::int32_t iEndElemIdx, std::int32_t N) {
    const std::int64_t upto_end = std::int64_t{iEndElemIdx} - iBeginElemIdx + 1;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(upto_end, 0, std::max(N, 0)));
}

} // namespace

int32_t VIALTO_CALL psd_dll(int32_t iBeginElemIdx, int32_t iEndElemIdx, int32_t iPSDType,
                            int32_t iOctaveBands, int32_t iPointsPerOctave, float xFreqInterval,
                            int32_t iSizeDataArray, float xStepSize, const float* xProfile,
                            float* xFreq, float* xPSD, int32_t* iFreqBegin, int32_t* iFreqEnd,
                            tEvent* event) {
    const std::int32_t held = held_points(iBeginElemIdx, iEndElemIdx, iSizeDataArray);
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("PSD Type              :", iPSDType);
        text.record("iOctaveBands          :", iOctaveBands);
        text.record("Sample interval(m)    :", xStepSize);
        text.record("Num Profile Points    :", iSizeDataArray);
        text.record("PSD Points            :", iSizeDataArray);
        text.record("BeginElemIdx          :", iBeginElemIdx);
        text.record("EndElemIdx            :", iEndElemIdx);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        if (held > 0 && iBeginElemIdx < 0) {
            check.refuse("iBeginElemIdx", " is negative");
        }
        check.sample_interval("xStepSize", xStepSize);
        check.array("xProfile", xProfile, held);
        check.array("xFreq", xFreq, iSizeDataArray);
        check.array("xPSD", xPSD, iSizeDataArray);
        check.address("iFreqBegin", iFreqBegin);
        check.address("iFreqEnd", iFreqEnd);
    };
    const auto drive = [&] {
        const float* first = held > 0 ? xProfile + iBeginElemIdx : nullptr;
        return psd_drv({iPSDType, iOctaveBands, iPointsPerOctave, xFreqInterval}, iSizeDataArray,
                       xStepSize, host_array(first, held), host_array(xFreq, iSizeDataArray),
                       host_array(xPSD, iSizeDataArray), *iFreqBegin, *iFreqEnd);
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("Freq   PSD");
        for (std::int32_t i = *iFreqBegin; i <= *iFreqEnd; ++i) {
            text.record(xFreq[i], xPSD[i]);
        }
    };
    return run_export({.name = "psd_dll"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL rse_dlldrv(int32_t iSizeDataArray, float xStepSize, float xStrLeng,
                               const float* xProfile, float* xDeflection, float* xRMSvertacc,
                               int32_t* iBeginelemIdx, int32_t* iEndelemIdx, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("iSizeDataArray:", iSizeDataArray);
        text.record("xStepSize     :", xStepSize);
        text.record("xStrLeng      :", xStrLeng);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        if (!(xStrLeng >= 0.0F)) {
            check.refuse("xStrLeng", " is negative or not a number");
        }
        check.array("xProfile", xProfile, iSizeDataArray);
        check.array("xDeflection", xDeflection, iSizeDataArray);
        check.address("xRMSvertacc", xRMSvertacc);
        check.address("iBeginelemIdx", iBeginelemIdx);
        check.address("iEndelemIdx", iEndelemIdx);
    };
    const auto drive = [&] {
        return rse_drv(xStepSize, xStrLeng, host_array(xProfile, iSizeDataArray),
                       host_array(xDeflection, iSizeDataArray), *xRMSvertacc, *iBeginelemIdx,
                       *iEndelemIdx);
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the rse_drv call");
        text.record("xRMSvertacc   :", *xRMSvertacc);
        text.record("iBeginelemIdx :", *iBeginelemIdx);
        text.record("iEndelemIdx   :", *iEndelemIdx);
    };
    return run_export({.name = "rse_dlldrv", .file_ending = "2.txt"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}
