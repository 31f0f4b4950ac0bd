// The statistic of a stretch of filtered slope, and the report of one index for a whole profile.
#pragma once

#include <cstdint>
#include <span>

#include "ride/ride_stats.hpp"
#include "vialto/vialto.h"

namespace vialto {

struct StretchStatistic {
    float index;         // in the profile's unit per metre
    std::int32_t actual; // number of samples that counted
};

// The mean of |y|^p over the 0-based samples first to last of y, both included, raised to 1/p, with
// p 1 (mean absolute slope) or 2 (root mean square). With ifExcludeLeaveout 1, samples whose flag
// is not 0 leave both the sum and the divisor, and the index is the hole value -1.0 when none
// remains. Without it an empty stretch gives 0/0, a NaN. `last` lies inside y, and inside the flags
// when they are read.
//
// The sum is taken in four interleaved partial sums: sample first + k goes to sum k mod 4, and the
// four are added as (0 + 1) + (2 + 3).
[[nodiscard]] StretchStatistic postproc_pi(std::span<const float> y,
                                           std::span<const std::int32_t> flags,
                                           std::int32_t ifExcludeLeaveout, std::int32_t first,
                                           std::int32_t last, float p);

// The index of the whole valid range of the filtered slope.
void normal_pi(const RideRequest& request, const tFiltCon& settings,
               std::span<const float> filtered, const RideTrack& track);

} // namespace vialto
