// Repeatability of an instrument: how far repeated runs over one stretch differ from one another
// and from its true profile.
#pragma once

#include <cstdint>
#include <span>

#include "frame/event.hpp"
#include "vialto/vialto.h"

namespace vialto {

inline constexpr std::int32_t repeatability_runs = vialto_repeatability_runs;
inline constexpr std::int32_t repeatability_points = vialto_repeatability_points; // of each run

struct Repeatability {
    float xPrecision = 0.0F; // mm; mean over the points of the standard deviation between the runs
    float xBias = 0.0F;      // mm; mean over the points of |mean of the runs - reference|
    std::int32_t iPrecisionClass = 0; // 1 to 3, or 0 where the limit of class 3 is exceeded
    std::int32_t iBiasClass = 0;      // the same
};

// Given: the runs one after the other [m], each of iSizeDataArray points, and the reference [m].
//
// Fails with "iNumRuns < 3, stats can be calculated"; both results and both classes are then 0.
[[nodiscard]] ReturnCode pcbia(std::int32_t iNumRuns, std::int32_t iSizeDataArray,
                               std::span<const float> data, std::span<const float> reference,
                               Repeatability& result);

} // namespace vialto
