#include "ride/ride_drv.hpp"

#include "ride/ride_stats.hpp"

namespace vialto {

ReturnCode ride_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                    std::int32_t iRideIndex, std::span<const float> dataarray,
                    std::span<const std::int32_t> exclusion_flags, float xStepSize,
                    float& xRideIndex) {
    const RideRequest request{.ifExcludeLeaveout = ifExcludeLeaveout,
                              .if250mmFilter = if250mmFilter,
                              .i_reptype = normal_report,
                              .i_rideindexsel = iRideIndex,
                              .iExclusionFlags = exclusion_flags,
                              .xStepSize = xStepSize};
    const RideTrack track{dataarray, {&xRideIndex, 1}};
    return ride_stats(request, {&track, 1}) == success ? success : pass_failure("ride_drv");
}

ReturnCode rideseg_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                       std::int32_t iRideIndex, std::span<const float> dataarray,
                       std::span<const std::int32_t> exclusion_flags, float xStepSize,
                       std::span<const std::int32_t> iNumSegmentPoints, std::span<float> xOutput,
                       std::span<float> xSegLength) {
    const RideRequest request{.ifExcludeLeaveout = ifExcludeLeaveout,
                              .if250mmFilter = if250mmFilter,
                              .i_reptype = segmented_report,
                              .i_rideindexsel = iRideIndex,
                              .iExclusionFlags = exclusion_flags,
                              .xStepSize = xStepSize,
                              .iNumSegmentPoints = iNumSegmentPoints};
    const RideTrack track{dataarray, xOutput, xSegLength};
    return ride_stats(request, {&track, 1}) == success ? success : pass_failure("rideseg_drv");
}

ReturnCode ridecon_drv(std::int32_t if250mmFilter, float xStepSize, float xBaseLength,
                       std::int32_t iRideIndexType, std::span<const float> dataarray,
                       std::span<float> xOutput) {
    // The continuous statistic knows no exclusions, so there are no flags to pass.
    const RideRequest request{.if250mmFilter = if250mmFilter,
                              .i_reptype = continuous_report,
                              .i_rideindexsel = iRideIndexType,
                              .xStepSize = xStepSize,
                              .xBaseLength = xBaseLength};
    const RideTrack track{dataarray, xOutput};
    return ride_stats(request, {&track, 1}) == success ? success : pass_failure("ridecon_drv");
}

} // namespace vialto
