// Drivers of the one-track ride analyses.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// One index for a whole profile. Fails with the failures of ride_stats; xRideIndex then holds what
// the filter had put there.
[[nodiscard]] ReturnCode ride_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                                  std::int32_t iRideIndex, std::span<const float> dataarray,
                                  std::span<const std::int32_t> exclusion_flags, float xStepSize,
                                  float& xRideIndex);

// An index and a length [m] for each segment, of which iNumSegmentPoints gives the number of
// samples (SegmentWalk). xOutput and xSegLength are as long as iNumSegmentPoints. Fails with the
// failures of ride_stats; the results of the segments ahead of the failure are written.
[[nodiscard]] ReturnCode rideseg_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                                     std::int32_t iRideIndex, std::span<const float> dataarray,
                                     std::span<const std::int32_t> exclusion_flags, float xStepSize,
                                     std::span<const std::int32_t> iNumSegmentPoints,
                                     std::span<float> xOutput, std::span<float> xSegLength);

// One value per sample: the moving mean of the rectified filtered slope (iRideIndexType 1) or its
// moving root mean square (2) over xBaseLength [m], in the profile's unit per metre; with 9 the WIM
// error index. xOutput is as long as dataarray and does not overlap it. Fails with the failures of
// ride_stats, xOutput as it was.
[[nodiscard]] ReturnCode ridecon_drv(std::int32_t if250mmFilter, float xStepSize, float xBaseLength,
                                     std::int32_t iRideIndexType, std::span<const float> dataarray,
                                     std::span<float> xOutput);

} // namespace vialto
