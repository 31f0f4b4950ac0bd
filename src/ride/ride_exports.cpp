// The exported ride analyses; their contracts stand in vialto/vialto.h.
#include "frame/analysis_frame.hpp"
#include "ride/ride_drv.hpp"
#include "vialto/vialto.h"

using namespace vialto;

int32_t VIALTO_CALL ride_dlldrv(int32_t ifExcludeLeaveout, int32_t if250mmFilter,
                                int32_t iRideIndex, int32_t iSizeDataArray, const float* dataarray,
                                const int32_t* exclusion_flags, float xStepSize, float* xRideIndex,
                                tEvent* event) {
    return run_export(
        {.name = "ride_dlldrv", .failed_routine = FailedRoutine::export_alone}, event,
        [&](ArgumentCheck& check) {
            check.array("dataarray", dataarray, iSizeDataArray);
            if (ifExcludeLeaveout == vialto_yes) {
                check.array("exclusion_flags", exclusion_flags, iSizeDataArray);
            }
            check.sample_interval("xStepSize", xStepSize);
            check.address("xRideIndex", xRideIndex);
        },
        [&](DiagnosticText& text) {
            text.record("ifExcludeLeaveout   :", ifExcludeLeaveout);
            text.record("if250mmFilter :", if250mmFilter);
            text.record("iRideIndex    :", iRideIndex);
            text.record("iSizeDataArray:", iSizeDataArray);
            text.record("xStepSize     :", xStepSize);
        },
        [&] {
            return ride_drv(ifExcludeLeaveout, if250mmFilter, iRideIndex,
                            host_array(dataarray, iSizeDataArray),
                            host_array(exclusion_flags, iSizeDataArray), xStepSize, *xRideIndex);
        },
        [&](DiagnosticText& text) {
            text.record("done with the ride_drv call");
            text.record("xRideIndex     :", *xRideIndex);
        });
}
