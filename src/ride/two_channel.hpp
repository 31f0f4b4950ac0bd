// Drivers of the ride analyses of two wheel tracks: channel 1 is the left one, channel 2 the right
// one. The profiles have the same number of samples.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// All three take the selectors idx_ridests_HRI (IRI of the mean profile), idx_ridests_MRI (mean of
// the two tracks' IRI) and idx_ridests_2ChanRN (Ride Number, 0 to 5); the indices of the first two
// have the profile's unit per metre. They fail with "only HRI, MRI, and 2-Chan-RN allowed in the
// 2-channel analysis" for any other selector, before any work, and with the failures of ride_stats
// and of the filters; what was written until then stays.

// One index. With ifExcludeLeaveout 1 the samples whose flag is not 0 leave both tracks.
[[nodiscard]] ReturnCode ride2chan_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                                       std::int32_t iRideIndex, std::span<const float> dataarray1,
                                       std::span<const float> dataarray2,
                                       std::span<const std::int32_t> exclusion_flags,
                                       float xStepSize, float& xRideIndex);

// An index and a length [m] per segment; the segments are those of rideseg_drv.
[[nodiscard]] ReturnCode
rideseg2chan_drv(std::int32_t ifExcludeLeaveout, std::int32_t if250mmFilter,
                 std::int32_t iRideIndex, std::span<const float> dataarray1,
                 std::span<const float> dataarray2, std::span<const std::int32_t> exclusion_flags,
                 float xStepSize, std::span<const std::int32_t> iNumSegmentPoints,
                 std::span<float> xOutput, std::span<float> xSegLength);

// One value per sample, of a moving statistic over xBaseLength [m].
[[nodiscard]] ReturnCode ridecon2chan_drv(std::int32_t if250mmFilter, std::int32_t iRideIndex,
                                          std::span<const float> dataarray1,
                                          std::span<const float> dataarray2, float xStepSize,
                                          float xBaseLength, std::span<float> xOutput);

} // namespace vialto
