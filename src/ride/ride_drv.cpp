#include "ride/ride_drv.hpp"

#include "ride/ride_stats.hpp"

namespace vialto {

ReturnCode ride_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                    std::int32_t iRideIndex, std::span<const float> dataarray,
                    std::span<const std::int32_t> exclusion_flags, float xStepSize,
                    float& xRideIndex) {
    const RideRequest request{ifExcludeLeaveout, if250mmFilter,   normal_report, iRideIndex,
                              dataarray,         exclusion_flags, xStepSize};
    return ride_stats(request, {xRideIndex}) == success ? success : pass_failure("ride_drv");
}

ReturnCode rideseg_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                       std::int32_t iRideIndex, std::span<const float> dataarray,
                       std::span<const std::int32_t> exclusion_flags, float xStepSize,
                       std::span<const std::int32_t> iNumSegmentPoints, std::span<float> xOutput,
                       std::span<float> xSegLength) {
    const RideRequest request{ifExcludeLeaveout, if250mmFilter,  segmented_report,
                              iRideIndex,        dataarray,      exclusion_flags,
                              xStepSize,         no_base_length, iNumSegmentPoints};
    float scratch_index = 0.0F;
    return ride_stats(request, {scratch_index, xOutput, xSegLength}) == success
               ? success
               : pass_failure("rideseg_drv");
}

ReturnCode ridecon_drv(std::int32_t if250mmFilter, float xStepSize, float xBaseLength,
                       std::int32_t iRideIndexType, std::span<const float> dataarray,
                       std::span<float> xOutput) {
    // The continuous statistic knows no exclusions, so there are no flags to pass.
    const RideRequest request{vialto_no,      if250mmFilter, continuous_report,
                              iRideIndexType, dataarray,     {},
                              xStepSize,      xBaseLength};
    float scratch_index = 0.0F;
    return ride_stats(request, {scratch_index, xOutput}) == success ? success
                                                                    : pass_failure("ridecon_drv");
}

} // namespace vialto
