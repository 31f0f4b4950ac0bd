// The exported joint analyses; their contracts stand in vialto/vialto.h.
#include <cstddef>
#include <vector>

#include "frame/analysis_frame.hpp"
#include "joints/joint_fault.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

void log_faults(DiagnosticText& text, const std::vector<JointFault>& results) {
    text.record("Joint, left slope, right slope, mean slope (mm/m), fault (mm)");
    for (std::size_t j = 0; j < results.size(); ++j) {
        const JointFault& result = results[j];
        const auto number = static_cast<std::int32_t>(j + 1);
        if (result.near_end) {
            text.record(number, " too near an end of the profile");
        } else {
            text.record(number, result.left_slope, result.right_slope, result.mean_slope,
                        result.fault);
        }
    }
}

} // namespace

int32_t VIALTO_CALL joint_fault_dlldrv(int32_t iSizeDataArray, int32_t iNumJoints, float xStepSize,
                                       float xJointWindow, const float* xProfile,
                                       const double* xJointLoc, float* xFault, tEvent* event) {
    std::vector<JointFault> results;
    return run_export(
        {.name = "joint_fault_dlldrv"}, event,
        [&](ArgumentCheck& check) {
            check.sample_interval("xStepSize", xStepSize);
            check.array("xProfile", xProfile, iSizeDataArray);
            check.array("xJointLoc", xJointLoc, iNumJoints);
            check.array("xFault", xFault, iNumJoints);
        },
        [&](DiagnosticText& text) {
            text.record("Num profile Points       : ", iSizeDataArray);
            text.record("Num Joints               : ", iNumJoints);
            text.record("Sample Interval (m)      : ", xStepSize);
            text.record("Joint Window (mm)        : ", xJointWindow);
        },
        [&] {
            return jntfault_drv(
                xStepSize, xJointWindow, joint_fault_reach, host_array(xProfile, iSizeDataArray),
                host_array(xJointLoc, iNumJoints), host_array(xFault, iNumJoints), results);
        },
        [&](DiagnosticText& text) {
            text.record("done with the jntfault_drv call");
            log_faults(text, results);
        });
}
