// The exported joint analyses; their contracts stand in vialto/vialto.h.
#include <cstdint>

#include "frame/analysis_frame.hpp"
#include "joints/joint_fault.hpp"
#include "joints/joint_id.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

void log_fault(DiagnosticText& text, std::int32_t number, const JointFault& result) {
    if (result.near_end) {
        text.record(number, " too near an end of the profile");
    } else {
        text.record(number, result.left_slope, result.right_slope, result.mean_slope, result.fault);
    }
}

} // namespace

int32_t VIALTO_CALL joint_id_dlldrv(const tJointIDCfg* settings, float xStepSize,
                                    int32_t iSizeDataArray, const float* xLeftProfile,
                                    const float* xRightProfile, int32_t* iLeftTypes,
                                    int32_t* iRightTypes, double* xLeftLocations,
                                    double* xRightLocations, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("Joint ID Analysis");
        if (settings != nullptr) {
            text.record("Joint ID method          : ", settings->i_jntid_method);
            text.record("If skewed joints         : ", settings->if_skewed);
            text.record("Dominating joint spacing : ", settings->xDomJointSpacing);
        }
        text.record("Sample Interval (m)  : ", xStepSize);
        text.record("Num profile Points       : ", iSizeDataArray);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.address("settings", settings);
        check.sample_interval("xStepSize", xStepSize);
        check.array("xLeftProfile", xLeftProfile, iSizeDataArray);
        check.array("xRightProfile", xRightProfile, iSizeDataArray);
        check.array("iLeftTypes", iLeftTypes, iSizeDataArray);
        check.array("iRightTypes", iRightTypes, iSizeDataArray);
        check.array("xLeftLocations", xLeftLocations, iSizeDataArray);
        check.array("xRightLocations", xRightLocations, iSizeDataArray);
    };
    const auto drive = [&] {
        return joint_id(
            *settings, xStepSize,
            {host_array(xLeftProfile, iSizeDataArray), host_array(iLeftTypes, iSizeDataArray),
             host_array(xLeftLocations, iSizeDataArray)},
            {host_array(xRightProfile, iSizeDataArray), host_array(iRightTypes, iSizeDataArray),
             host_array(xRightLocations, iSizeDataArray)});
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the joint_id call");
    };
    return run_export({.name = "joint_id_dlldrv"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL joint_fault_dlldrv(int32_t iSizeDataArray, int32_t iNumJoints, float xStepSize,
                                       float xJointWindow, const float* xProfile,
                                       const double* xJointLoc, float* xFault, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("Num profile Points       : ", iSizeDataArray);
        text.record("Num Joints               : ", iNumJoints);
        text.record("Sample Interval (m)      : ", xStepSize);
        text.record("Joint Window (mm)        : ", xJointWindow);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        if (iNumJoints < 1) {
            return;
        }
        check.sample_interval("xStepSize", xStepSize);
        check.array("xProfile", xProfile, iSizeDataArray);
        check.array("xJointLoc", xJointLoc, iNumJoints);
        check.array("xFault", xFault, iNumJoints);
    };
    const auto drive = [&](DiagnosticText& text) {
        text.record("Joint, left slope, right slope, mean slope (mm/m), fault (mm)");
        return jntfault_drv(xStepSize, xJointWindow, joint_fault_reach,
                            host_array(xProfile, iSizeDataArray), host_array(xJointLoc, iNumJoints),
                            host_array(xFault, iNumJoints),
                            [&](std::int32_t number, const JointFault& result) {
                                log_fault(text, number, result);
                            });
    };
    const auto log_results = [](DiagnosticText& text) {
        text.record("done with the jntfault_drv call");
    };
    return run_export({.name = "joint_fault_dlldrv"}, event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}
