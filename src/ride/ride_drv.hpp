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

} // namespace vialto
