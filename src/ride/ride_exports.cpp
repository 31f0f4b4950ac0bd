// The exported ride analyses; their contracts stand in vialto/vialto.h.
#include "frame/analysis_frame.hpp"
#include "ride/ride_drv.hpp"
#include "ride/two_channel.hpp"
#include "vialto/vialto.h"

using namespace vialto;

namespace {

constexpr std::size_t table_rows = 50;
constexpr float wim_base_length = 1.524F; // m; without effect on the analysis

ExportFrame ride_frame(std::string_view name) {
    return {.name = name, .failed_routine = FailedRoutine::export_alone};
}

void log_settings(DiagnosticText& text, int32_t ifExcludeLeaveout, int32_t if250mmFilter,
                  int32_t iRideIndex, int32_t iSizeDataArray, float xStepSize) {
    text.record("ifExcludeLeaveout   :", ifExcludeLeaveout);
    text.record("if250mmFilter :", if250mmFilter);
    text.record("iRideIndex    :", iRideIndex);
    text.record("iSizeDataArray:", iSizeDataArray);
    text.record("xStepSize     :", xStepSize);
}

void log_segments(DiagnosticText& text, std::span<const int32_t> iNumSegmentPoints) {
    text.record("iNumSegmentPoints(iNumSegments)  :");
    for (const int32_t count : iNumSegmentPoints) {
        text.record(count);
    }
}

void log_first_points(DiagnosticText& text, std::span<const float> dataarray) {
    text.record("the first 50 points -");
    text.record("no. dataarray  exclusion_flags");
    for (std::size_t i = 0; i < table_rows; ++i) {
        text.record(static_cast<int32_t>(i + 1), element_or_zero(dataarray, i), int32_t{0});
    }
}

void log_first_points(DiagnosticText& text, std::span<const float> dataarray1,
                      std::span<const float> dataarray2, std::span<const int32_t> exclusion_flags) {
    text.record("the first 50 points -");
    text.record("no. dataarray1 dataarray2 exclusion_flags");
    for (std::size_t i = 0; i < table_rows; ++i) {
        text.record(static_cast<int32_t>(i + 1), element_or_zero(dataarray1, i),
                    element_or_zero(dataarray2, i), element_or_zero(exclusion_flags, i));
    }
}

} // namespace

int32_t VIALTO_CALL ride_dlldrv(int32_t ifExcludeLeaveout, int32_t if250mmFilter,
                                int32_t iRideIndex, int32_t iSizeDataArray, const float* dataarray,
                                const int32_t* exclusion_flags, float xStepSize, float* xRideIndex,
                                tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        log_settings(text, ifExcludeLeaveout, if250mmFilter, iRideIndex, iSizeDataArray, xStepSize);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.array("dataarray", dataarray, iSizeDataArray);
        if (ifExcludeLeaveout == vialto_yes) {
            check.array("exclusion_flags", exclusion_flags, iSizeDataArray);
        }
        check.sample_interval("xStepSize", xStepSize);
        check.address("xRideIndex", xRideIndex);
    };
    const auto drive = [&] {
        return ride_drv(ifExcludeLeaveout, if250mmFilter, iRideIndex,
                        host_array(dataarray, iSizeDataArray),
                        host_array(exclusion_flags, iSizeDataArray), xStepSize, *xRideIndex);
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the ride_drv call");
        text.record("xRideIndex     :", *xRideIndex);
    };
    return run_export(ride_frame("ride_dlldrv"), event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL rideseg_dlldrv(int32_t if250mmFilter, int32_t iRideIndex,
                                   int32_t iSizeDataArray, const float* dataarray, float xStepSize,
                                   int32_t iNumSegments, const int32_t* iNumSegmentPoints,
                                   float* xOutput, float* xSegLength, tEvent* event) {
    constexpr int32_t ifExcludeLeaveout = vialto_no; // so that the flags, all 0, are never read
    const auto log_scalars = [&](DiagnosticText& text) {
        log_settings(text, ifExcludeLeaveout, if250mmFilter, iRideIndex, iSizeDataArray, xStepSize);
        text.record("iNumSegments  :", iNumSegments);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.array("dataarray", dataarray, iSizeDataArray);
        check.sample_interval("xStepSize", xStepSize);
        check.array("iNumSegmentPoints", iNumSegmentPoints, iNumSegments);
        check.array("xOutput", xOutput, iNumSegments);
        check.array("xSegLength", xSegLength, iNumSegments);
    };
    const auto log_arrays = [&](DiagnosticText& text) {
        log_segments(text, host_array(iNumSegmentPoints, iNumSegments));
        log_first_points(text, host_array(dataarray, iSizeDataArray));
    };
    const auto drive = [&] {
        return rideseg_drv(ifExcludeLeaveout, if250mmFilter, iRideIndex,
                           host_array(dataarray, iSizeDataArray), {}, xStepSize,
                           host_array(iNumSegmentPoints, iNumSegments),
                           host_array(xOutput, iNumSegments), host_array(xSegLength, iNumSegments));
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("Done with the rideseg_drv cal");
    };
    return run_export(ride_frame("rideseg_dlldrv"), event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .log_arrays = log_arrays,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL ridecon_dlldrv(int32_t if250mmFilter, float xStepSize, float xBaseLength,
                                   int32_t iRideIndexType, int32_t iSizeDataArray,
                                   const float* dataarray, float* xOutput, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("RideStats Continuous - debug mode");
        text.record("if250mmFilter = ", if250mmFilter);
        text.record("xStepSize (m) = ", xStepSize);
        text.record("xBaseLength (m) = ", xBaseLength);
        text.record("iRideIndexType = ", iRideIndexType);
        text.record("iSizeDataArray = ", iSizeDataArray);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        check.array("dataarray", dataarray, iSizeDataArray);
        check.array("xOutput", xOutput, iSizeDataArray);
    };
    const auto drive = [&] {
        return ridecon_drv(if250mmFilter, xStepSize, xBaseLength, iRideIndexType,
                           host_array(dataarray, iSizeDataArray),
                           host_array(xOutput, iSizeDataArray));
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the ridecon_drv call");
    };
    return run_export(ride_frame("ridecon_dlldrv"), event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL ride2chan_dlldrv(int32_t ifExcludeLeaveout, int32_t if250mmFilter,
                                     int32_t iRideIndex, int32_t iSizeDataArray,
                                     const float* dataarray1, const float* dataarray2,
                                     const int32_t* exclusion_flags, float xStepSize,
                                     float* xRideIndex, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        log_settings(text, ifExcludeLeaveout, if250mmFilter, iRideIndex, iSizeDataArray, xStepSize);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.array("dataarray1", dataarray1, iSizeDataArray);
        check.array("dataarray2", dataarray2, iSizeDataArray);
        if (ifExcludeLeaveout == vialto_yes) {
            check.array("exclusion_flags", exclusion_flags, iSizeDataArray);
        }
        check.sample_interval("xStepSize", xStepSize);
        check.address("xRideIndex", xRideIndex);
    };
    const auto log_arrays = [&](DiagnosticText& text) {
        log_first_points(text, host_array(dataarray1, iSizeDataArray),
                         host_array(dataarray2, iSizeDataArray),
                         host_array(exclusion_flags, iSizeDataArray));
    };
    const auto drive = [&] {
        return ride2chan_drv(ifExcludeLeaveout, if250mmFilter, iRideIndex,
                             host_array(dataarray1, iSizeDataArray),
                             host_array(dataarray2, iSizeDataArray),
                             host_array(exclusion_flags, iSizeDataArray), xStepSize, *xRideIndex);
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the ride2chan_drv call");
        text.record("xRideIndex     :", *xRideIndex);
    };
    return run_export(ride_frame("ride2chan_dlldrv"), event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .log_arrays = log_arrays,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL rideseg2chan_dlldrv(int32_t if250mmFilter, int32_t iRideIndex,
                                        int32_t iSizeDataArray, const float* dataarray1,
                                        const float* dataarray2, float xStepSize,
                                        int32_t iNumSegments, const int32_t* iNumSegmentPoints,
                                        float* xOutput, float* xSegLength, tEvent* event) {
    constexpr int32_t ifExcludeLeaveout = vialto_no; // so that the flags, all 0, are never read
    const auto log_scalars = [&](DiagnosticText& text) {
        log_settings(text, ifExcludeLeaveout, if250mmFilter, iRideIndex, iSizeDataArray, xStepSize);
        text.record("iNumSegments  :", iNumSegments);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.array("dataarray1", dataarray1, iSizeDataArray);
        check.array("dataarray2", dataarray2, iSizeDataArray);
        check.sample_interval("xStepSize", xStepSize);
        check.array("iNumSegmentPoints", iNumSegmentPoints, iNumSegments);
        check.array("xOutput", xOutput, iNumSegments);
        check.array("xSegLength", xSegLength, iNumSegments);
    };
    const auto log_arrays = [&](DiagnosticText& text) {
        log_segments(text, host_array(iNumSegmentPoints, iNumSegments));
        log_first_points(text, host_array(dataarray1, iSizeDataArray),
                         host_array(dataarray2, iSizeDataArray), {});
    };
    const auto drive = [&] {
        return rideseg2chan_drv(
            ifExcludeLeaveout, if250mmFilter, iRideIndex, host_array(dataarray1, iSizeDataArray),
            host_array(dataarray2, iSizeDataArray), {}, xStepSize,
            host_array(iNumSegmentPoints, iNumSegments), host_array(xOutput, iNumSegments),
            host_array(xSegLength, iNumSegments));
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("SegmentNum  Ride_Indexes");
        for (int32_t k = 0; k < iNumSegments; ++k) {
            text.record(k + 1, xOutput[k]);
        }
        text.record("Done with the rideseg2chan_dlldrv cal");
    };
    return run_export(ride_frame("rideseg2chan_dlldrv"), event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .log_arrays = log_arrays,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL ridecon2chan_dlldrv(int32_t if250mmFilter, int32_t iRideIndex,
                                        int32_t iSizeDataArray, const float* dataarray1,
                                        const float* dataarray2, float xStepSize, float xBaseLength,
                                        float* xOutput, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("if250mmFilter = ", if250mmFilter);
        text.record("iRideIndex = ", iRideIndex);
        text.record("iSizeDataArray = ", iSizeDataArray);
        text.record("xStepSize (m) = ", xStepSize);
        text.record("xBaseLength (m) = ", xBaseLength);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.array("dataarray1", dataarray1, iSizeDataArray);
        check.array("dataarray2", dataarray2, iSizeDataArray);
        check.sample_interval("xStepSize", xStepSize);
        check.array("xOutput", xOutput, iSizeDataArray);
    };
    const auto drive = [&] {
        return ridecon2chan_drv(if250mmFilter, iRideIndex, host_array(dataarray1, iSizeDataArray),
                                host_array(dataarray2, iSizeDataArray), xStepSize, xBaseLength,
                                host_array(xOutput, iSizeDataArray));
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("Done with the ridecon2chan_drv cal");
    };
    return run_export(ride_frame("ridecon2chan_dlldrv"), event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}

int32_t VIALTO_CALL wimindex_dlldrv(int32_t iBridgingFilter, float xStepSize,
                                    float xShroudingDistance, int32_t iSizeDataArray,
                                    const float* dataarray, float* xOutput, tEvent* event) {
    const auto log_scalars = [&](DiagnosticText& text) {
        text.record("WIM Error Index - debug mode");
        text.record("iBridgingFilter = ", iBridgingFilter);
        text.record("xStepSize (m) = ", xStepSize);
        text.record("Shrouding distance (m) = ", xShroudingDistance);
        text.record("xBaseLength (m) = ", wim_base_length);
        text.record("iRideIndexType = ", int32_t{idx_ridests_WIM});
        text.record("iSizeDataArray = ", iSizeDataArray);
    };
    const auto check_arguments = [&](ArgumentCheck& check) {
        check.sample_interval("xStepSize", xStepSize);
        check.array("dataarray", dataarray, iSizeDataArray);
        check.array("xOutput", xOutput, iSizeDataArray);
    };
    const auto drive = [&] {
        return ridecon_drv(iBridgingFilter, xStepSize, wim_base_length, idx_ridests_WIM,
                           host_array(dataarray, iSizeDataArray),
                           host_array(xOutput, iSizeDataArray));
    };
    const auto log_results = [&](DiagnosticText& text) {
        text.record("done with the ridecon_drv call for the WIM index analysis");
    };
    return run_export(ride_frame("wimindex_dlldrv"), event,
                      {.log_scalars = log_scalars,
                       .check_arguments = check_arguments,
                       .drive = drive,
                       .log_results = log_results});
}
