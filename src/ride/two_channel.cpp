#include "ride/two_channel.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

#include "ride/ride_stats.hpp"
#include "ride/two_channel_rn.hpp"

namespace vialto {

namespace {

ReturnCode half_car_index(RideRequest request, const RideTrack& left,
                          std::span<const float> right) {
    std::vector<float> mean(left.xDataArray.size());
    for (std::size_t i = 0; i < mean.size(); ++i) {
        mean[i] = (left.xDataArray[i] + right[i]) * 0.5F;
    }
    request.i_rideindexsel = idx_ridests_IRI;
    const RideTrack both{mean, left.xOutput, left.xSegLength};
    return ride_stats(request, {&both, 1});
}

// Each track runs through the whole analysis, the right one into the host's output, and the results
// are averaged, the hole value like any number: deliberate.
ReturnCode mean_roughness_index(RideRequest request, const RideTrack& left,
                                std::span<const float> right) {
    request.i_rideindexsel = idx_ridests_IRI;
    std::vector<float> left_output(left.xOutput.size());
    const std::span<float> output = left.xOutput;
    const RideTrack tracks[] = {{left.xDataArray, left_output, left.xSegLength},
                                {right, output, left.xSegLength}};
    if (ride_stats(request, tracks) != success) {
        return failure;
    }
    for (std::size_t i = 0; i < output.size(); ++i) {
        output[i] = (left_output[i] + output[i]) * 0.5F;
    }
    return success;
}

// What the three drivers do, `driver` being the name of the one that asks. The results of both
// tracks go to the output of the left one.
ReturnCode analyse(const RideRequest& request, const RideTrack& left, std::span<const float> right,
                   std::string_view driver) {
    ReturnCode code = success;
    switch (request.i_rideindexsel) {
    case idx_ridests_HRI:
        code = half_car_index(request, left, right);
        break;
    case idx_ridests_MRI:
        code = mean_roughness_index(request, left, right);
        break;
    case idx_ridests_2ChanRN:
        code = twochan_rn(request, left, right);
        break;
    default:
        return raise_failure("only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis",
                             driver, vialto_code_request);
    }
    return code == success ? success : pass_failure(driver);
}

} // namespace

ReturnCode ride2chan_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                         std::int32_t iRideIndex, std::span<const float> dataarray1,
                         std::span<const float> dataarray2,
                         std::span<const std::int32_t> exclusion_flags, float xStepSize,
                         float& xRideIndex) {
    const RideRequest request{.ifExcludeLeaveout = ifExcludeLeaveout,
                              .if250mmFilter = if250mmFilter,
                              .i_reptype = normal_report,
                              .i_rideindexsel = iRideIndex,
                              .iExclusionFlags = exclusion_flags,
                              .xStepSize = xStepSize};
    return analyse(request, {dataarray1, {&xRideIndex, 1}}, dataarray2, "ride2chan_drv");
}

ReturnCode rideseg2chan_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                            std::int32_t iRideIndex, std::span<const float> dataarray1,
                            std::span<const float> dataarray2,
                            std::span<const std::int32_t> exclusion_flags, float xStepSize,
                            std::span<const std::int32_t> iNumSegmentPoints,
                            std::span<float> xOutput, std::span<float> xSegLength) {
    const RideRequest request{.ifExcludeLeaveout = ifExcludeLeaveout,
                              .if250mmFilter = if250mmFilter,
                              .i_reptype = segmented_report,
                              .i_rideindexsel = iRideIndex,
                              .iExclusionFlags = exclusion_flags,
                              .xStepSize = xStepSize,
                              .iNumSegmentPoints = iNumSegmentPoints};
    return analyse(request, {dataarray1, xOutput, xSegLength}, dataarray2, "rideseg2chan_drv");
}

ReturnCode ridecon2chan_drv(std::int32_t if250mmFilter, std::int32_t iRideIndex,
                            std::span<const float> dataarray1, std::span<const float> dataarray2,
                            float xStepSize, float xBaseLength, std::span<float> xOutput) {
    const RideRequest request{.if250mmFilter = if250mmFilter,
                              .i_reptype = continuous_report,
                              .i_rideindexsel = iRideIndex,
                              .xStepSize = xStepSize,
                              .xBaseLength = xBaseLength};
    return analyse(request, {dataarray1, xOutput}, dataarray2, "ridecon2chan_drv");
}

} // namespace vialto
