// The exported analyses of the spectrum and the straightedge; their contracts stand in
// vialto/vialto.h.
#include "frame/analysis_frame.hpp"
#include "spectra/rolling_straightedge.hpp"
#include "vialto/vialto.h"

using namespace vialto;

int32_t VIALTO_CALL rse_dlldrv(int32_t iSizeDataArray, float xStepSize, float xStrLeng,
                               const float* xProfile, float* xDeflection, float* xRMSvertacc,
                               int32_t* iBeginelemIdx, int32_t* iEndelemIdx, tEvent* event) {
    return run_export(
        {.name = "rse_dlldrv", .file_ending = "2.txt"}, event,
        [&](ArgumentCheck& check) {
            check.sample_interval("xStepSize", xStepSize);
            if (!(xStrLeng >= 0.0F)) {
                check.refuse("xStrLeng", " is negative or not a number");
            }
            check.array("xProfile", xProfile, iSizeDataArray);
            check.array("xDeflection", xDeflection, iSizeDataArray);
            check.address("xRMSvertacc", xRMSvertacc);
            check.address("iBeginelemIdx", iBeginelemIdx);
            check.address("iEndelemIdx", iEndelemIdx);
        },
        [&](DiagnosticText& text) {
            text.record("iSizeDataArray:", iSizeDataArray);
            text.record("xStepSize     :", xStepSize);
            text.record("xStrLeng      :", xStrLeng);
        },
        [&] {
            return rse_drv(xStepSize, xStrLeng, host_array(xProfile, iSizeDataArray),
                           host_array(xDeflection, iSizeDataArray), *xRMSvertacc, *iBeginelemIdx,
                           *iEndelemIdx);
        },
        [&](DiagnosticText& text) {
            text.record("done with the rse_drv call");
            text.record("xRMSvertacc   :", *xRMSvertacc);
            text.record("iBeginelemIdx :", *iBeginelemIdx);
            text.record("iEndelemIdx   :", *iEndelemIdx);
        });
}
